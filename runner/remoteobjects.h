#pragma once

#include "classrecords.h"
#include "session.h"

namespace Vorkel::Runner {

/// A handle to an object of the program, with its class at the time it was given.
struct ObjectHandle
{
    int id = 0; ///< 0: the top level
    int classId = -1;
};

/// The objects of a running program, and what can be done with them. Every operation waits for the
/// program's answer; what the program refuses has the code `ExitCode::CallFailed`.
class RemoteObjects
{
public:
    /// `session` has started its program and lives longer.
    explicit RemoteObjects(Session *session);

    /// Reads the classes that the program has announced so far.
    Failure readClasses();
    [[nodiscard]] const ClassRecords &classes() const { return m_classes; }
    /// The class of an object; one that is new is read first. `*found` lives until classes are read again.
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
    Failure setProperty(const ObjectHandle &object, const QString &property, const QVariant &value);
    /// Calls the first overload of `method` that takes so many arguments and accepts them. `*result` is
    /// empty when the method gives nothing.
    Failure invoke(const ObjectHandle &object, const QString &method, const QVariantList &arguments,
                   QString *result);

private:
    Failure call(const QString &function, const ArgumentList &arguments, QVariant *reply);
    Failure callObject(const QString &function, const ArgumentList &arguments, const QString &otherwise,
                       ObjectHandle *result);
    Failure lastError(const QString &otherwise);
    Failure createContainer(const QVariant &value, ObjectHandle *created);
    Failure createValue(const QVariant &value, const QString &className, ObjectHandle *created);
    Failure valueOf(const ObjectHandle &object, QVariant *value);
    Failure contentsOf(const ObjectHandle &container, const ClassRecord &record, QVariant *value);
    Failure textOf(const ObjectHandle &object, QString *text);
    Failure propertyText(const ObjectHandle &object, const PropertyRecord &record, const QString &otherwise,
                         QString *value);
    Failure findProperty(const ObjectHandle &object, const QString &name, const PropertyRecord **found,
                         QString *className);

    Session *m_session;
    ClassRecords m_classes;
};

} // namespace Vorkel::Runner
