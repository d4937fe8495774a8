#include "serverlib/ipc.h"

#include "serverlib/ipchandshake.h"
#include "serverlib/tcpmessagechannel.h"
#include "shared/trace.h"

#include <QElapsedTimer>
#include <QPointer>

namespace Vorkel {

namespace {

constexpr int NoTimer = -1;

class ValueListener : public ResponseListener<ArgumentList>
{
public:
    void response(const FunctionCallResult<ArgumentList> &result) override
    {
        if (!result.isOk())
            VORKEL_TRACE("IPC", "Error during call:", { "error", result.error() });
        value = result.isOk() ? result.value().value(0) : QVariant();
    }

    QVariant value;
};

class ResultListener : public ResponseListener<ArgumentList>
{
public:
    void response(const FunctionCallResult<ArgumentList> &outcome) override { result = outcome; }

    FunctionCallResult<ArgumentList> result =
            FunctionCallResult<ArgumentList>::failure(QStringLiteral("Not executed yet"));
};

} // namespace

IPC::IPC(MessageChannel *channel, const ClientData &data, IPCResponseHandlerIface *handler, QObject *parent)
    : AsyncIPC(channel, data, handler, parent)
    , m_channel(channel)
{
}

FunctionCallResult<IPC *> IPC::connectTo(MessageChannel *channel, const ClientData &data)
{
    const auto answer = IPCHandshake::synchronous(data, channel, HandshakeTimeoutMs);
    if (answer.isOk())
        return new IPC(channel, answer.value(), nullptr, nullptr);
    channel->close();
    channel->deleteLater();
    return FunctionCallResult<IPC *>::failure(answer.error());
}

FunctionCallResult<IPC *> IPC::connectTo(const QString &host, quint16 port, const ClientData &data)
{
    const auto channel = TCPMessageChannel::connectTo(host, port);
    return channel.isOk() ? connectTo(channel.value(), data)
                          : FunctionCallResult<IPC *>::failure(channel.error());
}

FunctionCallResult<IPC *> IPC::connectTo(const SocketAddress &address, const ClientData &data)
{
    return connectTo(address.host, address.port, data);
}

QVariant IPC::call(const QString &name, const ArgumentList &arguments, bool *timedOut, bool noDispatch)
{
    return callAndWait(ServerAddress, name, arguments, timedOut, noDispatch);
}

QVariant IPC::call(FUInt32 destination, const QString &name, const ArgumentList &arguments, bool *timedOut)
{
    return callAndWait(destination, name, arguments, timedOut, false);
}

QVariant IPC::callAndWait(FUInt32 destination, const QString &name, const ArgumentList &arguments,
                          bool *timedOut, bool noDispatch)
{
    ValueListener listener;
    const QPointer<IPC> guard(this);
    const int callId = asyncCall(destination, name, arguments, &listener, NoTimer);
    if (callId < 0)
        return QVariant();
    const VoidResult waited = awaitAsyncCall(callId, timedOut, noDispatch);
    if (waited.isOk())
        return listener.value;
    if (timedOut && waited.error() == QLatin1String("Timeout expired"))
        *timedOut = true;
    if (guard)
        cancelAsyncCall(callId);
    return QVariant();
}

FunctionCallResult<ArgumentList> IPC::callFunc(const QString &name, const ArgumentList &arguments,
                                               bool noDispatch)
{
    return callFuncAndWait(ServerAddress, name, arguments, noDispatch);
}

FunctionCallResult<ArgumentList> IPC::callFunc(FUInt32 destination, const QString &name,
                                               const ArgumentList &arguments)
{
    return callFuncAndWait(destination, name, arguments, false);
}

FunctionCallResult<ArgumentList> IPC::callFuncAndWait(FUInt32 destination, const QString &name,
                                                      const ArgumentList &arguments, bool noDispatch)
{
    ResultListener listener;
    const QPointer<IPC> guard(this);
    const int callId = asyncCall(destination, name, arguments, &listener, NoTimer);
    if (callId < 0)
        return listener.result;
    const VoidResult waited = awaitAsyncCall(callId, nullptr, noDispatch);
    if (waited.isOk())
        return listener.result;
    if (guard)
        cancelAsyncCall(callId);
    return FunctionCallResult<ArgumentList>::failure(waited.error());
}

void IPC::setCallDepth(int depth)
{
    m_callDepth = depth;
    m_inCall = depth > 0;
}

VoidResult IPC::awaitAsyncCall(FInt32 callId, bool *timedOut, bool noDispatch)
{
    if (timedOut)
        *timedOut = false;
    setCallDepth(m_callDepth + 1);
    const QPointer<IPC> guard(this);
    // The limit is a thousand times the default call time-out: a last resort, not a time-out.
    const qint64 limitMs = qint64(defaultCallTimeout()) * 1000;
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        if (isCallCompleted(callId)) {
            setCallDepth(m_callDepth - 1);
            if (!noDispatch)
                dispatchMessages();
            return VoidResult();
        }
        const qint64 remaining = limitMs - timer.elapsed();
        if (remaining <= 0) {
            VORKEL_TRACE("IPC", "response timeout reached during call, aborting");
            if (timedOut)
                *timedOut = true;
            return VoidResult::failure(QStringLiteral("Call timed out"));
        }
        if (!m_inCall || socketClosed()) {
            VORKEL_TRACE("IPC", "error during call", { "inCall", m_inCall }, { "channel", description() });
            setCallDepth(0);
            return VoidResult::failure(QStringLiteral("Connection closed"));
        }
        const auto waited = waitForSingleMessage(static_cast<int>(remaining));
        if (!waited.isOk())
            return VoidResult::failure(waited.error());
        if (!guard)
            return VoidResult::failure(QStringLiteral("Connection closed"));
    }
}

} // namespace Vorkel
