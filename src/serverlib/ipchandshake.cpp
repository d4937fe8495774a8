#include "serverlib/ipchandshake.h"

#include "serverlib/protocol.h"

#include <QIODevice>
#include <QTimerEvent>

namespace Vorkel {

using namespace Protocol::Handshake;

namespace {

using Result = FunctionCallResult<ClientData>;

QByteArray pingMessage()
{
    QByteArray message(Protocol::HeaderLength, Qt::Uninitialized);
    Protocol::writeHeader(message.data(),
                          { Protocol::BroadcastAddress, static_cast<FUInt32>(Protocol::MessageType::Ping),
                            Protocol::InvalidAddress, 0, 0 });
    return message;
}

QByteArray handshakeMessage(const Result &answer)
{
    constexpr char prefix[AsyncMessageChannel::MessagePrefixLength] = {};
    QByteArray message;
    QDataStream stream(&message, QIODevice::WriteOnly);
    stream.setVersion(Protocol::StreamVersion);
    stream.writeRawData(prefix, sizeof prefix);
    stream << Identification << Version << LowestVersion;
    if (answer.isOk()) {
        stream << StatusOk << answer.value().id << answer.value().runnerId << answer.value().clientType
               << answer.value().name;
    } else {
        stream << StatusError << answer.error();
    }
    return message;
}

} // namespace

IPCHandshake::IPCHandshake(const ClientData &data, AsyncMessageChannel *channel, int timeoutMs,
                           QObject *parent)
    : QObject(parent)
    , m_data(data)
    , m_channel(channel)
    , m_timeoutMs(timeoutMs)
{
}

void IPCHandshake::start()
{
    if (!sendHandshake(m_channel, m_data))
        return done(Result::failure(QStringLiteral("Connection closed when sending handshake")));
    connect(m_channel, &AsyncMessageChannel::messageArrived, this, &IPCHandshake::onMessageArrived);
    connect(m_channel, &AsyncMessageChannel::channelClosed, this, &IPCHandshake::onChannelClosed);
    m_timeoutTimer.start(m_timeoutMs, Qt::CoarseTimer, this);
}

void IPCHandshake::startDelayed(int ms)
{
    m_delayTimer.start(ms, Qt::CoarseTimer, this);
}

void IPCHandshake::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_timeoutTimer.timerId()) {
        done(Result::failure(QStringLiteral("Handshake timeout")));
    } else if (event->timerId() == m_delayTimer.timerId()) {
        m_delayTimer.stop();
        start();
    } else {
        QObject::timerEvent(event);
    }
}

void IPCHandshake::onMessageArrived(const QByteArray &message)
{
    done(processHanshake(message));
}

void IPCHandshake::onChannelClosed()
{
    done(Result::failure(QStringLiteral("Connection closed during handshake")));
}

void IPCHandshake::done(const Result &result)
{
    m_timeoutTimer.stop();
    disconnect(m_channel, nullptr, this, nullptr);
    deleteLater();
    finished(result);
    emit finished(m_channel, result);
}

void IPCHandshake::finished(const Result &) {}

Result IPCHandshake::synchronous(const ClientData &data, MessageChannel *channel, int timeoutMs)
{
    if (!sendHandshake(channel, data))
        return Result::failure(QStringLiteral("Connection closed while sending handshake"));
    const auto message = channel->waitForSingleMessage(timeoutMs);
    if (!message.isOk())
        return Result::failure(QStringLiteral("%1 during handshake").arg(message.error()));
    return processHanshake(message.value());
}

bool IPCHandshake::sendHandshake(AsyncMessageChannel *channel, const ClientData &data)
{
    return sendHandshake(channel, Result(data));
}

bool IPCHandshake::sendHandshake(AsyncMessageChannel *channel, const Result &answer)
{
    return channel->enqueueMessage(handshakeMessage(answer)) && channel->enqueueMessage(pingMessage());
}

Result IPCHandshake::processHanshake(const QByteArray &message)
{
    if (message.size() < MinLength)
        return Result::failure(QStringLiteral("Protocol error: handshake header too short"));
    QDataStream stream(message);
    stream.setVersion(Protocol::StreamVersion);
    stream.skipRawData(AsyncMessageChannel::MessagePrefixLength);
    FUInt32 identification = 0;
    FUInt32 version = 0;
    FUInt32 lowestVersion = 0;
    FUInt32 status = 0;
    stream >> identification >> version >> lowestVersion >> status;
    if (identification != Identification)
        return Result::failure(QStringLiteral("Protocol error: invalid protocol identification"));
    if (version < LowestVersion) {
        return Result::failure(QStringLiteral("Incompatible protocol versions. Remote side is version %1 "
                                              "but we need at least %2")
                                       .arg(versionText(version), versionText(LowestVersion)));
    }
    if (lowestVersion > Version) {
        return Result::failure(QStringLiteral("Incompatible protocol versions. We are version %1 "
                                              "but remote side expects at least %2")
                                       .arg(versionText(Version), versionText(lowestVersion)));
    }
    if (status != StatusOk) {
        QString reason;
        stream >> reason;
        // An empty reason would read as success.
        return Result::failure(reason.isEmpty() ? QStringLiteral("Handshake refused without a reason")
                                                : reason);
    }
    ClientData data;
    stream >> data.id >> data.runnerId >> data.clientType >> data.name;
    return data;
}

} // namespace Vorkel
