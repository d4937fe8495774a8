#include "serverlib/ipchandshaker.h"

#include "serverlib/ipchandshake.h"

#include <QTimerEvent>

namespace Vorkel {

namespace {

QString closedDuringHandshake()
{
    return QStringLiteral("Connection closed during handshake");
}

} // namespace

IPCHandshaker::IPCHandshaker(QObject *parent, int tag)
    : QObject(parent)
    , m_tag(tag)
{
}

void IPCHandshaker::addChannel(AsyncMessageChannel *channel)
{
    connect(channel, &AsyncMessageChannel::messageArrived, this,
            [=, this](const QByteArray &message) { onMessageArrived(channel, message); });
    connect(channel, &AsyncMessageChannel::channelClosed, this,
            [=, this] { emitChannelRejected(channel, closedDuringHandshake()); });
    m_timers.insert(channel, startTimer(TimeoutMs, Qt::CoarseTimer));
}

void IPCHandshaker::forget(AsyncMessageChannel *channel)
{
    if (m_timers.contains(channel))
        killTimer(m_timers.take(channel));
    disconnect(channel, nullptr, this, nullptr);
}

void IPCHandshaker::onMessageArrived(AsyncMessageChannel *channel, const QByteArray &message)
{
    forget(channel);
    FunctionCallResult<ClientData> answer = IPCHandshake::processHanshake(message);
    if (answer.isOk())
        answer = answerTo(answer.value());
    if (!IPCHandshake::sendHandshake(channel, answer))
        emitChannelRejected(channel, closedDuringHandshake());
    else if (!answer.isOk())
        emitChannelRejected(channel, answer.error());
    else
        emit newChannel(channel, answer.value());
}

void IPCHandshaker::timerEvent(QTimerEvent *event)
{
    if (AsyncMessageChannel *channel = m_timers.key(event->timerId()))
        emitChannelRejected(channel, QStringLiteral("Handshake timeout"));
    else
        QObject::timerEvent(event);
}

void IPCHandshaker::emitChannelRejected(AsyncMessageChannel *channel, const QString &reason)
{
    forget(channel);
    emit channelRejected(channel, reason);
    channel->close();
    channel->deleteLater();
}

} // namespace Vorkel
