#include "hook/hook.h"

#include "fkit/environment.h"
#include "fkit/fsocket.h"
#include "hook/autprocess.h"
#include "hook/hook_p.h"
#include "hook/wrapper.h"
#include "objectmodel/inspector.h"
#include "serverlib/nullmessagechannel.h"
#include "serverlib/tcpmessagechannel.h"
#include "shared/logline.h"
#include "shared/trace.h"

#include <QCoreApplication>

namespace Vorkel {

namespace {

constexpr quint16 DefaultPort = 4322;

int runnerIdFromEnvironment()
{
    const int id = Environment::number("VORKEL_RUNNERID").value_or(0);
    if (id <= 0) {
        logLine(QStringLiteral(
                "VORKEL_RUNNERID was not set, set to an empty string or is not a positive number"));
        return 0;
    }
    return id;
}

/// `whenUnset` applies to an unset or empty variable; what does not parse is 0.
int appIdFromEnvironment(int whenUnset)
{
    if (Environment::value("VORKEL_APPID").isEmpty()) {
        logLine(QStringLiteral("VORKEL_APPID was not set or set to a null string"));
        return whenUnset;
    }
    return Environment::number("VORKEL_APPID").value_or(0);
}

SocketAddress serverAddressFromEnvironment()
{
    SocketAddress address { Environment::value("VORKEL_SERVERADDRESS"), DefaultPort };
    if (address.host.isEmpty())
        address.host = QStringLiteral("127.0.0.1");
    bool ok = false;
    const quint16 port = Environment::value("VORKEL_PORT").toUShort(&ok, 10);
    if (ok && port != 0)
        address.port = port;
    return address;
}

ClientData announcement(int appId, int runnerId, const AUTProcess &process)
{
    return { static_cast<FUInt32>(appId), static_cast<FUInt32>(runnerId), Hook::ApplicationClientType,
             process.name() };
}

void readRecordFlag()
{
    const QString value = Environment::value("VORKEL_RECORD");
    if (value.isEmpty())
        logLine(QStringLiteral("VORKEL_RECORD was not set or set to a null string"));
    else
        Inspector::self()->setEventRecording(Environment::number("VORKEL_RECORD").value_or(0) != 0);
}

} // namespace

Hook *Hook::connectAndCreateHook(Wrapper *wrapper, AUTProcess *process, PlatformPlugin *plugin, int hookFlags)
{
    const int runnerId = runnerIdFromEnvironment();
    if (runnerId <= 0) {
        auto *ipc = new IPC(new NullMessageChannel, ClientData(), nullptr, nullptr);
        return new Hook(ipc, NoRunner, wrapper, process, plugin, hookFlags);
    }
    const SocketAddress server = serverAddressFromEnvironment();
    const int appId = appIdFromEnvironment(0);
    const auto connection = IPC::connectTo(server, announcement(appId, runnerId, *process));
    if (!connection.isOk())
        logLine(connection.error());
    return createHook(connection, runnerId, wrapper, process, plugin, hookFlags);
}

Hook *Hook::createHookForConnection(FSocket *socket, Wrapper *wrapper, AUTProcess *process,
                                    PlatformPlugin *plugin, int hookFlags)
{
    const int runnerId = runnerIdFromEnvironment();
    const int appId = appIdFromEnvironment(-1);
    const auto connection =
            IPC::connectTo(new TCPMessageChannel(socket), announcement(appId, runnerId, *process));
    return createHook(connection, runnerId, wrapper, process, plugin, hookFlags);
}

Hook *Hook::createHook(const FunctionCallResult<IPC *> &connection, int runnerId, Wrapper *wrapper,
                       AUTProcess *process, PlatformPlugin *plugin, int hookFlags)
{
    IPC *ipc = connection.isOk() ? connection.value()
                                 : new IPC(new NullMessageChannel, ClientData(), nullptr, nullptr);
    return new Hook(ipc, runnerId, wrapper, process, plugin, hookFlags);
}

void Hook::hookUp()
{
    VORKEL_TRACE("Hook", "Starting hookup");
    const int inheritedId = appIdFromEnvironment(-1);
    VORKEL_TRACE("Hook", "runnerId:", { "runnerId", m_runnerId });
    VORKEL_TRACE("Hook", " appId:", { "appId", inheritedId });
    // A process started by an application under test inherits that one's id and is given another.
    m_isSubprocess = inheritedId != appId();
    readRecordFlag();
    if (!announceApplication()) {
        logLine(QStringLiteral("Could not send broadcast message to server, aborting hookup"));
        close();
        return;
    }
    const QPointer<Hook> guard(this);
    VORKEL_TRACE("Hook", "Waiting for AUT initialization to finish on remote side");
    if (!waitForInitDone())
        return;
    VORKEL_TRACE("Hook", "AUT initialization on remote side finished");
    if (m_ipc->dispatchMessages() && guard)
        finalizeHookUp();
}

bool Hook::announceApplication()
{
    const auto broadcast = static_cast<int>(AsyncIPC::BroadcastAddress);
    if (send(broadcast, QStringLiteral("log"), { m_runnerId, QStringLiteral("\tApplication connected...") })
        == -1)
        return false;
    send(broadcast, QStringLiteral("subprocessHooked"), { appId() });
    if (!d->wrappers.isEmpty())
        requestDescriptorData(QString());
    return true;
}

/// False when the hook-up has failed; the hook may be gone then.
bool Hook::waitForInitDone()
{
    const QPointer<Hook> guard(this);
    while (!m_initDone) {
        const auto message = m_ipc->waitForSingleMessage(-1);
        if (!message.isOk()) {
            logLine(message.error() + QStringLiteral(" during AUT initialization, aborting hookup"));
            if (guard)
                close();
            return false;
        }
        if (!guard) {
            VORKEL_TRACE("Hook", "Hook deleted during AUT initialization, aborting hookup");
            return false;
        }
    }
    return true;
}

void Hook::finalizeHookUp()
{
    VORKEL_TRACE("Hook", "Finished hookup");
}

void Hook::completeHookUp()
{
    VORKEL_TRACE("Hook", "Hooking completed");
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, &Hook::notifyApplicationExit);
    send(static_cast<int>(AsyncIPC::BroadcastAddress), QStringLiteral("log"),
         { haveRecorderId() ? m_recorderId : m_runnerId, QStringLiteral("\tHook-up completed...") });
}

void Hook::requestDescriptorData(const QString &wrapperName)
{
    QString name = wrapperName;
    if (name.isEmpty() && !d->wrappers.isEmpty())
        name = d->wrappers.first()->name();
    VORKEL_TRACE("Hook", "Requesting descriptor data for wrapper ", { "name", name });
    if (send(m_runnerId, QStringLiteral("requestDescriptorData"), { appId(), name }) == -1)
        logLine(QStringLiteral("Request for descriptor data could not be sent"));
}

void Hook::addObjectDescriptorData(const QByteArray &data)
{
    emit objectDescriptorDataReceived(data + '\0');
}

void Hook::initDone()
{
    m_initDone = true;
    emit initDoneReceived();
}

} // namespace Vorkel
