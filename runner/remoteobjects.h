#pragma once

#include "classrecords.h"
#include "session.h"

#include <QRect>

namespace Vorkel::Runner {

/// A handle to an object of the program, with its class at the time it was given.
struct ObjectHandle
{
    int id = 0; ///< 0: the top level
    int classId = -1;

    friend bool operator==(const ObjectHandle &, const ObjectHandle &) = default;
};

/// A pointer action on an object, or on the screen where it has none.
struct PointerAction
{
    enum Kind { Move, Press, Release };

    Kind kind = Move;
    std::optional<QPoint> at {}; ///< from the object's top left corner; none: its middle
    int button = 1; ///< of the system's mouse buttons; 1 is the left one
    int modifiers = 0; ///< of the system's keyboard modifiers, or'ed
};

/// Where and how a button is pressed.
struct ClickSettings
{
    std::optional<QPoint> at {}; ///< from the object's top left corner; none: where a person would press
    int button = 1; ///< of the system's mouse buttons; 1 is the left one
    int modifiers = 0; ///< of the system's keyboard modifiers, or'ed
};

/// The objects of a running program, and what can be done with them. Every operation waits for the
/// program's answer; what the program refuses has the code `ExitCode::CallFailed`.
class RemoteObjects
{
public:
    /// `session` has started its program and lives longer.
    explicit RemoteObjects(Session *session);
    ~RemoteObjects();
    RemoteObjects(const RemoteObjects &) = delete;
    RemoteObjects &operator=(const RemoteObjects &) = delete;

    /// Reads the classes that the program has announced so far.
    Failure readClasses();
    [[nodiscard]] const ClassRecords &classes() const { return m_classes; }
    /// The class of an object; one that has not been announced is read first. `*found` lives until classes
    /// are read again.
    Failure classOf(const ObjectHandle &object, const ClassRecord **found);

    Failure children(const ObjectHandle &object, QList<ObjectHandle> *found);
    Failure name(const ObjectHandle &object, QString *name);
    /// The object called `name`: real, hierarchical, mixed or symbolic. Waits until it is there, for at
    /// most `waitMs`; the failure is the program's whole reason.
    Failure find(const QString &name, int waitMs, ObjectHandle *found);
    /// The name by which exactly this object is found; empty where the program has none.
    Failure realName(const ObjectHandle &object, QString *name);
    /// From here on the program knows symbolic names by this object map, in its text form.
    Failure setObjectMap(const QString &text);

    /// All properties with a value, as text, in the order in which they are declared.
    Failure properties(const ObjectHandle &object, QList<std::pair<QString, QString>> *found);
    /// The value of a property as text.
    Failure getProperty(const ObjectHandle &object, const QString &property, QString *value);
    /// The value of a property: a plain value, a list, a map, the parts of a value such as a rectangle as a
    /// map, the key of an enum, else an `ObjectHandle`.
    /// Invalid when the property has none.
    Failure getProperty(const ObjectHandle &object, const QString &property, QVariant *value);
    /// A map changes the parts that it names of a value that has such.
    Failure setProperty(const ObjectHandle &object, const QString &property, const QVariant &value);
    /// Calls the first overload of `method` that takes so many arguments and accepts them. `*result` is
    /// empty when the method gives nothing.
    Failure invoke(const ObjectHandle &object, const QString &method, const QVariantList &arguments,
                   QString *result);
    /// The same with the result as a value, of the kinds that `getProperty` gives.
    Failure invoke(const ObjectHandle &object, const QString &method, const QVariantList &arguments,
                   QVariant *result);
    /// Calls a global function of the program.
    Failure invokeGlobal(const QString &function, const QVariantList &arguments, QVariant *result);
    /// Whether the program has a global function of this name.
    [[nodiscard]] bool hasGlobal(const QString &function) const;
    /// An object as text: what it says of itself, else a description.
    Failure describe(const ObjectHandle &object, QString *text);

    /// Fails with the reason until a person could use the object.
    Failure checkReady(const ObjectHandle &object);
    /// The object called `name`, once a person could use it.
    Failure findReady(const QString &name, ObjectHandle *found);
    /// The item of `container` that shows `text`, once a person could use it.
    Failure readyItem(const ObjectHandle &container, const QString &text, ObjectHandle *item);
    Failure readyItem(const ObjectHandle &container, int row, int column, ObjectHandle *item);
    Failure pointer(const ObjectHandle &object, const PointerAction &action);
    /// Clicks once or twice on an object that a person could use now, or fails with the reason why nobody
    /// could. `target` is a name or an id.
    Failure clickIfReady(const QVariant &target, int clicks, const ClickSettings &settings);
    /// The program counts the input that it handles from here on.
    Session::PendingCall beginInput(int count, int quietMs);
    /// Waits until it has handled so much, or for so long none.
    Failure awaitInput(const Session::PendingCall &call);
    /// Where the object is on the screen.
    Failure bounds(const ObjectHandle &object, QRect *bounds);
    /// Calls a remote function that answers true, or else has set the last error.
    Failure request(const QString &function, const ArgumentList &arguments);
    /// Calls a remote function; its reply as it comes.
    Failure call(const QString &function, const ArgumentList &arguments, QVariant *reply);
    /// Lets the program forget what it has given handles to since the last time, but for the objects that
    /// came out as values.
    Failure giveBack();
    /// The failure that a call which gave nothing has left behind; `otherwise` when it has left none.
    Failure lastError(const QString &otherwise);

private:
    /// The handle that the program gave as `text`; its id is 0 when it gave none.
    ObjectHandle takeHandle(const QString &text);
    /// The object as a value, whose handle stays with whoever gets it.
    QVariant keptValue(const ObjectHandle &object);
    void forgetLastError();
    Failure callObject(const QString &function, const ArgumentList &arguments, const QString &otherwise,
                       ObjectHandle *result);
    Failure callMethod(const ArgumentList &arguments, ObjectHandle *result);
    Failure invokeOn(int target, const ClassRecord &record, const QString &method,
                     const QVariantList &arguments, ObjectHandle *result);
    Failure invokeOn(const ObjectHandle &object, const QString &method, const QVariantList &arguments,
                     ObjectHandle *result);
    Failure toValue(const ObjectHandle &object, const ArgumentRecord &type, QVariant *value);
    Failure createContainer(const QVariant &value, ObjectHandle *created);
    Failure createValue(const QVariant &value, const QString &className, ObjectHandle *created);
    Failure valueOf(const ObjectHandle &object, QVariant *value);
    Failure partsOf(const ObjectHandle &object, const QStringList &names, QVariant *value);
    Failure setParts(const ObjectHandle &object, const PropertyRecord &property, const QVariantMap &parts,
                     ObjectHandle *changed);
    Failure contentsOf(const ObjectHandle &container, const ClassRecord &record, QVariant *value);
    Failure textOf(const ObjectHandle &object, QString *text);
    Failure propertyText(const ObjectHandle &object, const PropertyRecord &record, const QString &otherwise,
                         QString *value);
    Failure findProperty(const ObjectHandle &object, const QString &name, const PropertyRecord **found,
                         QString *className);

    Session *m_session;
    QMetaObject::Connection m_announcements;
    ClassRecords m_classes;
    QList<int> m_lent; // one entry for each time that a handle was given
};

} // namespace Vorkel::Runner
