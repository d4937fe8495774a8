#pragma once

#include "fkit/export.h"
#include "hook/platform/mousebutton.h"
#include "objectmodel/object.h"
#include "serverlib/ipc.h"
#include "serverlib/ipcresponsehandleriface.h"
#include "shared/geometry/geometry.h"

#include <QObject>
#include <QPointer>

#include <list>
#include <memory>
#include <optional>

class FSocket;

namespace Vorkel {

class AUTProcess;
class GlobalMethod;
class HookPrivate;
class Method;
class Namespace;
class NativeInterface;
class PlatformPlugin;
class Property;
class Screen;
class Wrapper;
struct SpyObject;

/// The one object of an application through which the library meets the runner.
///
/// A wrapper library calls one of the two entries once the application object exists, and
/// `completeHookUp` when the event loop is about to run. Everything runs on the thread that called
/// the entry. The hook goes when the connection goes, and the application runs on: whatever runs
/// an event loop or waits for messages tests `Hook::hook` again.
class VORKEL_EXPORT Hook : public QObject, public IPCResponseHandlerIface
{
    Q_OBJECT

public:
    static constexpr int NoRunner = -1;
    static constexpr int NoClient = -1;
    static constexpr FUInt32 ApplicationClientType = 4;

    /// The instance; null when there is none.
    static Hook *hook;

    // Bring-up (hook_bringup.cpp)

    /// Connects to the runner that the environment names, then lets it set up the hook; blocks until
    /// the runner is done. Always returns a hook; one without a runner does nothing. `wrapper` and
    /// `plugin` stay the caller's and may be null, `process` becomes the hook's. `hookFlags` is kept.
    static Hook *connectAndCreateHook(Wrapper *wrapper, AUTProcess *process, PlatformPlugin *plugin,
                                      int hookFlags);
    /// The same over `socket`, which is connected already and becomes the hook's.
    static Hook *createHookForConnection(FSocket *socket, Wrapper *wrapper, AUTProcess *process,
                                         PlatformPlugin *plugin, int hookFlags);

    /// For the entries: takes `ipc` as a child and brings the hook up if `runnerId` is above 0.
    Hook(IPC *ipc, int runnerId, Wrapper *wrapper, AUTProcess *process, PlatformPlugin *plugin,
         int hookFlags);
    ~Hook() override;

    /// The wrapper is ready, and the application is about to enter its event loop.
    void completeHookUp();
    /// Adds a wrapper, which stays the caller's; one that is there already is not added again.
    void addWrapper(Wrapper *wrapper);
    [[nodiscard]] const QList<Wrapper *> &wrappers() const;
    /// Asks the runner for descriptor data; an empty name stands for the first wrapper's.
    void requestDescriptorData(const QString &wrapperName);
    void addObjectDescriptorData(const QByteArray &data);
    void initDone();

    // The connection (hook.cpp)

    /// This application's address.
    [[nodiscard]] int appId() const;
    [[nodiscard]] int runnerId() const { return m_runnerId; }
    [[nodiscard]] bool isSubprocess() const { return m_isSubprocess; }
    [[nodiscard]] int hookFlags() const { return m_hookFlags; }
    [[nodiscard]] bool haveRecorderId() const { return m_recorderId >= 0 && m_recorderId != m_runnerId; }
    [[nodiscard]] bool haveSpyId() const { return m_spyId >= 0 && m_spyId != m_runnerId; }
    int send(const QString &name, const ArgumentList &arguments);
    int send(int destination, const QString &name, const ArgumentList &arguments);
    int asyncCall(int destination, const QString &name, const ArgumentList &arguments,
                  ResponseListener<ArgumentList> *listener);
    void cancelAsyncCall(int callId);
    /// Has the connection watched by the event dispatcher of a further application object, which knows
    /// nothing of what the one before had to watch.
    void watchConnection();

    // Dispatch (hook_dispatch.cpp)

    void handleSend(FUInt32 sender, const QString &name, const ArgumentList &arguments) override;
    QVariant handleCall(FUInt32 caller, const QString &name, const ArgumentList &arguments) override;
    void handleCall(FUInt32 caller, const QString &name, const ArgumentList &arguments,
                    ResponseListener<ArgumentList> *listener) override;
    void ping() {}
    void setRunnerId(int id);
    void setTestSuiteVersion(int version) { m_testSuiteVersion = version; }
    [[nodiscard]] int testSuiteVersion() const { return m_testSuiteVersion; }
    QVariant configureBinaryStream(unsigned int streamId, const QVariantMap &settings);

    // Handles and objects (hook_objects.cpp). An id or class that is not known gives a line in the log
    // and null, nothing, false or an empty value.

    /// Null when the runner holds no such handle.
    [[nodiscard]] SharedPtr<Object> objectById(int id) const;
    /// "object id,class id", which gives the runner one more handle; an invalid value for null.
    QVariant objectToVariant(const SharedPtr<Object> &object);
    /// One entry for each id, null where it is not known.
    [[nodiscard]] ObjectList idsToObjects(const FList<int> &ids) const;
    void clearObjectDict();
    void remoteObjectDestroyed(int id);
    /// `parent` 0 is the top level.
    [[nodiscard]] std::optional<int> numObjects(int parent) const;
    [[nodiscard]] SharedPtr<Object> objectByName(int parent, const QString &name) const;
    [[nodiscard]] SharedPtr<Object> objectByIndex(int parent, int index) const;
    QStringList objects(int parent);
    [[nodiscard]] SharedPtr<Object> parent(int id) const;
    [[nodiscard]] std::optional<QString> objectName(int id) const;
    [[nodiscard]] std::optional<QString> qualifiedObjectName(int id) const;
    [[nodiscard]] bool objectIsNull(int id) const;
    [[nodiscard]] bool objectCompare(int first, int second) const;
    [[nodiscard]] QByteArray getObjectAttribute(int id) const;
    [[nodiscard]] SharedPtr<Object> objectReference(int id) const;
    [[nodiscard]] SharedPtr<Object> objectDereference(int id) const;
    std::optional<int> objectCastTo(int id, int classId);
    [[nodiscard]] QString objectToDebugString(int id) const;
    [[nodiscard]] std::optional<int> objectToInteger(int id) const;
    [[nodiscard]] std::optional<long long> objectToInt64(int id) const;
    [[nodiscard]] std::optional<QString> objectToString(int id) const;
    [[nodiscard]] std::optional<double> objectToDouble(int id) const;
    [[nodiscard]] std::optional<bool> objectToBoolean(int id) const;
    void objectFromInteger(int id, int value);
    void objectFromInt64(int id, long long value);
    void objectFromString(int id, const QString &value);
    void objectFromDouble(int id, double value);
    void objectFromBoolean(int id, bool value);
    [[nodiscard]] SharedPtr<Object> createPrimitive(const QString &className, const QVariant &value) const;
    [[nodiscard]] SharedPtr<Object> createNull(const QString &className) const;
    [[nodiscard]] SharedPtr<Object> getVoidObject() const;
    [[nodiscard]] bool canConvertTo(int fromClassId, int toClassId, bool fromPointer, bool toPointer) const;
    [[nodiscard]] SharedPtr<Object> convertTo(int fromClassId, int id, int toClassId, bool toPointer) const;
    [[nodiscard]] SharedPtr<Object> convertToInterface(int fromClassId, int id, const QString &name) const;

    // Names (hook_names.cpp)

    /// The object called `name`; null with the reason as last error.
    SharedPtr<Object> objectFind(const QString &name);
    /// The first wrapper that owns the object; null when none does.
    [[nodiscard]] Wrapper *wrapperForObject(const SharedPtr<Object> &object) const;
    /// Replaces the object map by the one that `text` describes.
    void setObjectMap(const QString &text);
    void addToObjectMap(const QString &realName, const QString &symbolicName);
    [[nodiscard]] int namingScheme() const;
    void setNamingScheme(int scheme);
    /// The name of the object called `name` under another naming scheme; `name` when there is none.
    QString convertName(const QString &name, int scheme);
    /// The properties that did not match when an object was last looked for in vain, by candidate.
    [[nodiscard]] QVariantMap getUnmatchedProperties() const;

    // Readiness (hook_readiness.cpp): asked again and again until the object is ready; nothing here waits

    /// The object, or null with the reason as last error.
    SharedPtr<Object> getObjectIfReady(const SharedPtr<Object> &object);
    SharedPtr<Object> getObjectIfReady(const QString &name);
    /// An item of the object, by its text or by row and column; or null with the reason as last error.
    SharedPtr<Object> getObjectItemIfReady(const SharedPtr<Object> &object, const QString &item);
    SharedPtr<Object> getObjectItemIfReady(const QString &name, const QString &item);
    SharedPtr<Object> getObjectItemIfReady(const SharedPtr<Object> &object, int row, int column);
    SharedPtr<Object> getObjectItemIfReady(const QString &name, int row, int column);
    /// A "ScreenRectangle"; null with the reason as last error.
    [[nodiscard]] SharedPtr<Object> objectGlobalBounds(const SharedPtr<Object> &object) const;
    /// Appends what stands below the object called `name`, or at the top for an empty name. False when that
    /// cannot be told.
    bool spyObjects(const QString &name, std::list<SpyObject> *list);
    /// The same as a record for the runner.
    std::optional<QByteArray> spiedObjects(const QString &name);

    // Input (hook_input.cpp): by the platform plug-in. The reason of a failure is the last error.

    /// A key by its one character, or by its name in angle brackets.
    bool keyPress(const QString &key, bool press) const;
    /// Moves the pointer or presses a button, on an object, a "ScreenRectangle", a "ScreenPoint" or the
    /// screen. Bits of `flags` say what was given: 1 the object, 2 the modifiers, 4 the button, 8 the point.
    bool mousePress(const SharedPtr<Object> &object, int flags, int x, int y, int button, int modifiers,
                    bool isButton, bool press) const;
    /// Clicks on an object, which is a name or an id, in the same moment in which it is ready: presses and
    /// releases once, or twice for a double click. `isPointGiven` says whether x and y count, which are from
    /// the object's top left corner. Nothing, with the reason as last error, when it is not ready; a failure
    /// when nobody could click on it at all.
    std::optional<VoidResult> clickIfReady(const QVariant &target, int clicks, bool isPointGiven, int x,
                                           int y, int button, int modifiers);
    /// Answers with how much input the application has handled from here on: once that is `count`, or none
    /// more has come for `quietMs` milliseconds, or somebody else waits. At once, with nothing, where no
    /// wrapper tells of input.
    void awaitInput(ResponseListener<ArgumentList> *listener, int count, int quietMs);

    // The same without objects; points are native pixels. What the numbers of touches and key codes mean is
    // the platform's own.

    VoidResult rawMouseEvent(int type, int x, int y, int button) const;
    VoidResult rawScrollEvent(int delta) const;
    VoidResult rawKeycodeEvent(unsigned int code, unsigned int modifiers, unsigned int set, bool down) const;
    VoidResult rawKeyEvent(const QString &key, bool down) const;
    VoidResult rawTouchEvent(unsigned int type, int x, int y, unsigned int first, unsigned int second) const;
    [[nodiscard]] QStringList nativeCapabilities() const;
    /// Answers with a list of pairs, name and number.
    void getExtraKeys(ResponseListener<ArgumentList> *listener, const ArgumentList &arguments);
    /// The plug-in's; null without one.
    [[nodiscard]] NativeInterface *nativeInterface() const;

    // Pictures (hook_images.cpp), in the form in which they travel; an invalid value where there is none

    /// By the platform plug-in, else by the first wrapper that can.
    QVariant desktopScreenshot();
    /// After `delayMs` milliseconds, in which the application goes on. `argument` is the toolkit's own.
    QVariant grabObjectScreenshot(int id, int argument, int delayMs);
    /// A picture of the application's own, as PNG.
    QVariant getPixmapAsImage(int id);
    void rawScreenshot(ResponseListener<ArgumentList> *listener, int argument);
    [[nodiscard]] Screen *screen() const;
    void setScreen(const SharedPtr<Screen> &screen);

    // Members (hook_members.cpp). A target is an object id, or a class id with its sign turned. Lists
    // of arguments hold two numbers, as the comments say, and object ids behind them.

    [[nodiscard]] SharedPtr<Object> getProperty(int target, int index);
    bool setProperty(int target, int index, int valueId);
    /// Target and method index.
    SharedPtr<Object> invoke(const ArgumentList &arguments);
    /// Constructor index and class id.
    SharedPtr<Object> construct(const ArgumentList &arguments);
    /// Index of a global event and receiver.
    void sendEvent(const ArgumentList &arguments);

    // What an object consists of, as texts (hook_components.cpp). A request starts with the object's id.

    [[nodiscard]] bool objectHasComponents(const QStringList &request) const;
    [[nodiscard]] QStringList fetchObjectComponents(const QStringList &request) const;
    /// The request holds pairs of object id and property index; a pair that is no good gives no entry.
    [[nodiscard]] QStringList fetchPropertyValuesAsString(const QStringList &request) const;

    // Announcements (hook_announcements.cpp)

    [[nodiscard]] int numClasses() const;
    [[nodiscard]] int numNamespaces() const;
    /// The records of all classes; from here on only new ones are announced.
    QByteArray allClasses();
    [[nodiscard]] QByteArray allNamespaces() const;
    /// Announces the classes from `firstId` on, once the runner has read the others.
    void registerClasses(int firstId);
    void registerNamespace(const Namespace *nameSpace);
    void registerGlobalMethod(const GlobalMethod *method);

    // The process (hook_process.cpp)

    [[nodiscard]] AUTProcess *autProcess() const { return m_autProcess.get(); }
    QVariant autInfo(const ArgumentList &arguments);
    /// The runner's environment, as NAME=VALUE; waits for its answer.
    [[nodiscard]] QStringList getClientEnvironment();

    // The end (hook_exit.cpp)

    /// Closes the connection; the hook goes once the event loop runs.
    void close();

signals:
    void connectionClosed() override;
    void guiBlockedChanged(bool on);
    void inspectingChanged(bool on);
    void autCrashed(const QString &text);
    void notifyEventRecordingEnabled(bool on);
    void exitReceived();
    void initDoneReceived();
    void exitDoneReceived();
    void cleanUpTestData();
    void namingSchemeChanged(int scheme);
    void objectDescriptorDataReceived(const QByteArray &data);
    void eventHandlerRegistered(const QString &name);
    /// Somebody waits for input. A wrapper that connects to this emits `inputHandled` from here on.
    void inputAwaited();
    /// From a wrapper: a pressed or released button, a released key other than a modifier, a turned wheel,
    /// a touch that began or ended, something dropped is about to be handled.
    void inputHandled();

public slots:
    void notifyApplicationExit();
    void deleteHook();

private:
    static Hook *createHook(const FunctionCallResult<IPC *> &connection, int runnerId, Wrapper *wrapper,
                            AUTProcess *process, PlatformPlugin *plugin, int hookFlags);
    void hookUp();
    [[nodiscard]] bool announceApplication();
    [[nodiscard]] bool waitForInitDone();
    void finalizeHookUp();
    void writeEventQueue();
    void cleanup();

    struct Target
    {
        SharedPtr<Object> object;
        const Class *objectClass = nullptr;
    };

    [[nodiscard]] SharedPtr<Object> knownObject(int id, const char *complaint) const;
    template <typename Value>
    [[nodiscard]] std::optional<Value> valueOf(int id, const char *complaint,
                                               Value (Object::*conversion)() const) const;
    template <typename Argument, typename Value>
    void setValueOf(int id, const char *complaint, void (Object::*conversion)(Argument), const Value &value);
    [[nodiscard]] Target resolveTarget(int target, const char *function) const;
    [[nodiscard]] const Property *resolveProperty(const Target &target, int id, int index,
                                                  const char *verb) const;
    SharedPtr<Object> invokeChecked(const Method &method, const SharedPtr<Object> &object,
                                    const ObjectList &arguments) const;
    void announce(const QString &name, const QByteArray &record);
    bool pressOnScreen(const NativePoint &point, MouseButton::Value button, int modifiers, bool isButton,
                       bool press) const;

    std::unique_ptr<HookPrivate> d;
    IPC *m_ipc;
    int m_runnerId;
    int m_spyId = NoClient;
    int m_recorderId = NoClient;
    bool m_initDone = false;
    bool m_isSubprocess = false;
    bool m_appAboutToExitSent = false;
    bool m_exitNotified = false;
    bool m_constructed = false;
    bool m_classesSent = false;
    bool m_deletionWaits = false;
    std::unique_ptr<AUTProcess> m_autProcess;
    int m_testSuiteVersion = -1;
    int m_hookFlags;
};

} // namespace Vorkel
