#include "serverlib/asyncipc.h"

#include "serverlib/chunkedmessagesender.h"
#include "serverlib/incomingmessages.h"
#include "serverlib/ipchandshake.h"
#include "serverlib/ipcresponsehandleriface.h"
#include "serverlib/tcpmessagechannel.h"
#include "shared/trace.h"

#include <QPointer>

#include <limits>

namespace Vorkel {

using Protocol::MessageType;

namespace {

QString destroyedText()
{
    return QStringLiteral("IPC destroyed");
}

/// Shakes hands for `AsyncIPC::connectTo` and turns the outcome into an endpoint.
class ConnectingHandshake : public IPCHandshake
{
public:
    ConnectingHandshake(const ClientData &data, AsyncMessageChannel *channel,
                        ResponseListener<AsyncIPC *> *listener)
        : IPCHandshake(data, channel, AsyncIPC::HandshakeTimeoutMs, nullptr)
        , m_listener(listener)
    {
    }

protected:
    void finished(const FunctionCallResult<ClientData> &result) override
    {
        if (result.isOk())
            m_listener->response(new AsyncIPC(channel(), result.value(), nullptr, nullptr));
        else
            m_listener->response(FunctionCallResult<AsyncIPC *>::failure(result.error()));
    }

private:
    ResponseListener<AsyncIPC *> *m_listener;
};

} // namespace

AsyncIPC::AsyncIPC(AsyncMessageChannel *channel, const ClientData &data, IPCResponseHandlerIface *handler,
                   QObject *parent)
    : QObject(parent)
    , m_clientData(data)
    , m_channel(channel)
    , m_handler(handler)
{
    channel->setParent(this);
    connect(channel, &AsyncMessageChannel::messageArrived, this, &AsyncIPC::onMessageArrived);
    connect(channel, &AsyncMessageChannel::channelClosed, this, &AsyncIPC::onChannelClosed);
}

AsyncIPC::~AsyncIPC()
{
    m_isEnding = true;
    cancelOutgoingCalls(destroyedText());
    for (ChunkedMessageReceiver *receiver : std::exchange(m_incomplete, {}))
        receiver->detach();
    for (IncomingCall *call : std::exchange(m_servedCalls, {}))
        call->detach();
}

void AsyncIPC::connectTo(AsyncMessageChannel *channel, const ClientData &data,
                         ResponseListener<AsyncIPC *> *listener)
{
    // Deletes itself when it has finished.
    (new ConnectingHandshake(data, channel, listener))->start();
}

void AsyncIPC::connectTo(const QString &host, quint16 port, const ClientData &data,
                         ResponseListener<AsyncIPC *> *listener)
{
    const auto channel = TCPMessageChannel::connectTo(host, port);
    if (channel.isOk())
        connectTo(channel.value(), data, listener);
    else
        listener->response(FunctionCallResult<AsyncIPC *>::failure(channel.error()));
}

Protocol::Header AsyncIPC::headerFor(FUInt32 destination, FInt32 transId, MessageType type,
                                     FUInt32 flags) const
{
    return { destination, static_cast<FUInt32>(type), m_clientData.id, transId, flags };
}

QByteArray AsyncIPC::createHeader(FUInt32 destination, FInt32 transId, MessageType type, FUInt32 flags) const
{
    QByteArray bytes(Protocol::HeaderLength, Qt::Uninitialized);
    Protocol::writeHeader(bytes.data(), headerFor(destination, transId, type, flags));
    return bytes;
}

int AsyncIPC::newTransId()
{
    m_lastTransId = m_lastTransId == std::numeric_limits<FInt32>::max() ? 0 : m_lastTransId + 1;
    return m_lastTransId;
}

/// The failure text, empty when all of the message went out. Inside one process the receiver acts before
/// this returns, and may destroy the endpoint.
QString AsyncIPC::sendMessage(const Protocol::Header &header,
                              const std::function<void(QDataStream &)> &writeBody)
{
    ChunkedMessageSender sender(m_channel, header);
    sender.open(QIODevice::WriteOnly);
    QDataStream stream(&sender);
    stream.setVersion(Protocol::StreamVersion);
    writeBody(stream);
    sender.close();
    return sender.errorText();
}

int AsyncIPC::send(const QString &name, const ArgumentList &arguments)
{
    return send(ServerAddress, name, arguments);
}

int AsyncIPC::send(FUInt32 destination, const QString &name, const ArgumentList &arguments)
{
    const QPointer<AsyncIPC> guard(this);
    const int transId = newTransId();
    const QString error =
            sendMessage(headerFor(destination, transId, MessageType::Send, 0), [&](QDataStream &stream) {
                stream << name;
                writeArguments(stream, arguments);
            });
    return guard && error.isEmpty() && isOpen() ? transId : -1;
}

int AsyncIPC::asyncCall(const QString &name, const ArgumentList &arguments,
                        ResponseListener<ArgumentList> *listener)
{
    return asyncCall(ServerAddress, name, arguments, listener);
}

int AsyncIPC::asyncCall(FUInt32 destination, const QString &name, const ArgumentList &arguments,
                        ResponseListener<ArgumentList> *listener)
{
    return asyncCall(destination, name, arguments, listener, m_defaultCallTimeout);
}

int AsyncIPC::asyncCall(FUInt32 destination, const QString &name, const ArgumentList &arguments,
                        ResponseListener<ArgumentList> *listener, int timeoutMs)
{
    if (m_isEnding) {
        // A listener that has just been told so calls again.
        listener->response(FunctionCallResult<ArgumentList>::failure(destroyedText()));
        return -1;
    }
    const QPointer<AsyncIPC> guard(this);
    const int transId = newTransId();
    // Awaited before it is sent: inside one process the reply is there before the send returns.
    auto *reply = new IncomingReply(this, transId, destination, listener);
    m_awaitedReplies.insert(transId, reply);
    QString error =
            sendMessage(headerFor(destination, transId, MessageType::Call, 0), [&](QDataStream &stream) {
                stream << name;
                writeArguments(stream, arguments);
            });
    if (!guard)
        return -1;
    if (isCallCompleted(transId))
        return transId;
    if (!error.isEmpty())
        error = QStringLiteral("Call failed: %1").arg(error);
    else if (!isOpen())
        error = QStringLiteral("Channel closed");
    if (!error.isEmpty()) {
        m_awaitedReplies.remove(transId);
        reply->fail(error);
        return -1;
    }
    if (timeoutMs > 0)
        reply->startTimeout(timeoutMs);
    return transId;
}

void AsyncIPC::callReply(FUInt32 caller, FInt32 callId, const ArgumentList &values)
{
    callReply(caller, callId, FunctionCallResult<ArgumentList>(values));
}

void AsyncIPC::callReply(FUInt32 caller, FInt32 callId, const FunctionCallResult<ArgumentList> &result)
{
    const QPointer<AsyncIPC> guard(this);
    const FUInt32 flags = result.isOk() ? FUInt32(0) : Protocol::ErrorFlag;
    (void)sendMessage(headerFor(caller, callId, MessageType::Reply, flags), [&](QDataStream &stream) {
        if (result.isOk())
            writeArguments(stream, result.value());
        else
            stream << result.error();
    });
    if (guard && !isOpen())
        VORKEL_TRACE("IPC", "Failed to send call return value ");
}

void AsyncIPC::cancelAsyncCall(FInt32 callId)
{
    if (IncomingReply *reply = m_awaitedReplies.take(callId))
        reply->detach();
}

void AsyncIPC::cancelOutgoingCalls(const QString &text)
{
    failAwaited(text, [](const IncomingReply &) { return true; });
}

/// Listeners may call, cancel or destroy the endpoint: each call is looked up anew.
void AsyncIPC::failAwaited(const QString &text, const std::function<bool(const IncomingReply &)> &concerns)
{
    const QPointer<AsyncIPC> guard(this);
    for (const FInt32 callId : m_awaitedReplies.keys()) {
        const auto entry = m_awaitedReplies.constFind(callId);
        if (entry == m_awaitedReplies.constEnd() || !concerns(**entry))
            continue;
        IncomingReply *reply = *entry;
        m_awaitedReplies.erase(entry);
        reply->fail(text);
        if (!guard)
            return;
    }
}

void AsyncIPC::closeSocket()
{
    m_channel->close();
    cancelOutgoingCalls(QStringLiteral("Connection closed"));
}

void AsyncIPC::onChannelClosed()
{
    const QPointer<AsyncIPC> guard(this);
    cancelOutgoingCalls(QStringLiteral("Connection closed by peer"));
    if (guard && m_handler)
        m_handler->connectionClosed();
    if (guard)
        emit connectionClosed();
}

} // namespace Vorkel
