#include "serverlib/asyncipc.h"

#include "serverlib/incomingmessages.h"
#include "serverlib/ipcresponsehandleriface.h"
#include "shared/trace.h"

#include <QPointer>

namespace Vorkel {

using Protocol::MessageType;

void AsyncIPC::onMessageArrived(const QByteArray &message)
{
    if (message.size() < Protocol::HeaderLength)
        return reportError(QStringLiteral("Received a message smaller than the header"));
    const Protocol::Header header = Protocol::readHeader(message.constData());
    if (header.destination != m_clientData.id && header.destination != BroadcastAddress)
        return reportError(QStringLiteral("Received a misaddressed message"));
    switch (static_cast<MessageType>(header.type)) {
    case MessageType::Header:
        return reportError(QStringLiteral("Unexpected header message"));
    case MessageType::Call:
    case MessageType::Reply:
    case MessageType::Send:
        return addChunk(header, message);
    case MessageType::PeerArrived:
        return;
    case MessageType::PeerGone:
        return notifyPeerGone(header.sender);
    case MessageType::Ping:
        VORKEL_TRACE("IPC", "Received ping");
        return;
    }
    reportError(QStringLiteral("Unknown message type: %1").arg(header.type));
}

void AsyncIPC::addChunk(const Protocol::Header &header, const QByteArray &message)
{
    ChunkedMessageReceiver *receiver = receiverFor(header);
    if (!receiver)
        return;
    receiver->addChunk(message);
    if (header.flags & Protocol::MoreChunks)
        return;
    forgetReceiver(header);
    receiver->open(QIODevice::ReadOnly);
    QDataStream stream(receiver);
    stream.setVersion(Protocol::StreamVersion);
    // May destroy the receiver and this endpoint.
    receiver->finalize(stream);
}

ChunkedMessageReceiver *AsyncIPC::receiverFor(const Protocol::Header &header)
{
    const auto type = static_cast<MessageType>(header.type);
    if (type == MessageType::Reply)
        return m_awaitedReplies.value(header.transId);
    const MessageKey key(header.sender, header.transId);
    if (ChunkedMessageReceiver *known = m_incomplete.value(key))
        return known;
    if (m_incomplete.size() >= MaxIncompleteMessages) {
        reportError(QStringLiteral("More than %1 incomplete messages").arg(MaxIncompleteMessages));
        return nullptr;
    }
    ChunkedMessageReceiver *created = nullptr;
    if (type == MessageType::Call)
        created = new IncomingCall(this, header.sender, header.transId);
    else
        created = new IncomingSend(this, header.sender, header.destination);
    m_incomplete.insert(key, created);
    return created;
}

void AsyncIPC::forgetReceiver(const Protocol::Header &header)
{
    if (static_cast<MessageType>(header.type) == MessageType::Reply)
        m_awaitedReplies.remove(header.transId);
    else
        m_incomplete.remove(MessageKey(header.sender, header.transId));
}

void AsyncIPC::notifyPeerGone(FUInt32 peer)
{
    const QPointer<AsyncIPC> guard(this);
    failAwaited(QStringLiteral("Peer gone"),
                [=](const IncomingReply &reply) { return reply.destination() == peer; });
    if (!guard)
        return;
    for (const MessageKey &key : m_incomplete.keys()) {
        if (key.first == peer)
            m_incomplete.take(key)->detach();
    }
    for (IncomingCall *call : QSet<IncomingCall *>(m_servedCalls)) {
        if (call->sender() == peer) {
            m_servedCalls.remove(call);
            call->detach();
        }
    }
    emit peerGone(peer);
}

void AsyncIPC::reportError(const QString &text)
{
    if (m_handler)
        m_handler->handleError(text);
}

} // namespace Vorkel
