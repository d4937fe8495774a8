#pragma once

#include "fkit/export.h"
#include "serverlib/ipc.h"
#include "serverlib/ipcresponsehandleriface.h"

#include <QObject>
#include <QPointer>

#include <memory>

class FSocket;

namespace Vorkel {

class AUTProcess;
class HookPrivate;
class PlatformPlugin;
class Wrapper;

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
    bool m_deletionWaits = false;
    std::unique_ptr<AUTProcess> m_autProcess;
    int m_testSuiteVersion = -1;
    int m_hookFlags;
};

} // namespace Vorkel
