#pragma once

#include "fkit/export.h"
#include "fkit/fhostaddress.h"
#include "shared/functioncallresult.h"

#include <QByteArray>
#include <QObject>

#include <string>
#include <utility>

namespace Vorkel {

/// Moves whole byte messages between two endpoints and reports its end.
///
/// Every message starts with `MessagePrefixLength` bytes that belong to the channel: whoever sends
/// reserves them, whoever receives finds them in place.
class VORKEL_EXPORT AsyncMessageChannel : public QObject
{
    Q_OBJECT

public:
    static constexpr int MessagePrefixLength = 4;

    using QObject::QObject;

    [[nodiscard]] virtual std::string debugName() const = 0;
    [[nodiscard]] virtual FHostAddress peerAddress() const = 0;
    [[nodiscard]] virtual quint16 peerPort() const = 0;
    [[nodiscard]] virtual bool isOpen() const = 0;
    /// Sends `message`, which is at least `MessagePrefixLength` bytes long; what it reserves is
    /// overwritten. False when it could not be sent.
    virtual bool enqueueMessage(QByteArray message) = 0;
    /// Ends the channel from this side; no `channelClosed` follows.
    virtual void close() = 0;

    /// Tells that the next message will have another right behind it, so that the channel may hold it
    /// back for a moment and send both together.
    void setMoreFollows() { m_moreFollows = true; }

signals:
    void messageArrived(const QByteArray &message);
    /// The channel has ended, and not by `close()`. Emitted once.
    void channelClosed();

protected:
    /// Whether `setMoreFollows` was called for the message that is being sent.
    [[nodiscard]] bool takeMoreFollows() { return std::exchange(m_moreFollows, false); }

private:
    bool m_moreFollows = false;
};

/// A channel on which one can also wait.
class VORKEL_EXPORT MessageChannel : public AsyncMessageChannel
{
    Q_OBJECT

public:
    using AsyncMessageChannel::AsyncMessageChannel;

    [[nodiscard]] virtual quint16 localPort() const = 0;
    [[nodiscard]] virtual FHostAddress localAddress() const = 0;
    /// Waits for one message and returns it, after `messageArrived` has carried it too. `ms` bounds,
    /// in milliseconds, each wait for more bytes; negative waits without limit.
    virtual FunctionCallResult<QByteArray> waitForSingleMessage(int ms) = 0;
    /// Delivers what has arrived, without waiting. False when the channel has ended or was
    /// destroyed by a receiver.
    virtual bool dispatchMessages() = 0;
};

} // namespace Vorkel
