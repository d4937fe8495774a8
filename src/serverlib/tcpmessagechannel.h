#pragma once

#include "fkit/fsocket.h"
#include "serverlib/messagechannel.h"

#include <memory>
#include <optional>

class QSocketNotifier;

namespace Vorkel {

/// A message channel on a TCP connection: each message goes behind its own length.
///
/// Once the connection has ended, for whatever reason, the channel stays closed; the peer's address
/// and the debug name remain. Sending blocks the caller while the peer does not read, for about
/// ten seconds at most.
class VORKEL_EXPORT TCPMessageChannel : public MessageChannel
{
    Q_OBJECT

public:
    /// Takes over `socket`, which should be connected.
    explicit TCPMessageChannel(FSocket *socket, QObject *parent = nullptr);
    ~TCPMessageChannel() override;

    /// Connects to a runner, waiting for the outcome. The caller owns the channel, which has no
    /// parent; the failure text names host, port and reason.
    [[nodiscard]] static FunctionCallResult<TCPMessageChannel *> connectTo(const QString &host, quint16 port);
    [[nodiscard]] static FunctionCallResult<TCPMessageChannel *> connectTo(const SocketAddress &address);

    [[nodiscard]] std::string debugName() const override { return m_debugName; }
    [[nodiscard]] FHostAddress peerAddress() const override { return m_peerAddress; }
    [[nodiscard]] quint16 peerPort() const override { return m_peerPort; }
    [[nodiscard]] bool isOpen() const override;
    bool enqueueMessage(QByteArray message) override;
    /// Tells the peer, waits up to 30 s for its end, then closes.
    void close() override;
    [[nodiscard]] quint16 localPort() const override;
    [[nodiscard]] FHostAddress localAddress() const override;
    FunctionCallResult<QByteArray> waitForSingleMessage(int ms) override;
    bool dispatchMessages() override { return dispatchMessages(false); }

    /// As `dispatchMessages()`, whatever the argument.
    bool dispatchMessages(bool fromNotifier);
    /// Reads `count` bytes behind what is buffered. False when the connection failed or ended.
    bool fillReadBuffer(int count);
    /// Takes the first whole message out of the buffer, stores it in `*out` and emits
    /// `messageArrived`. False when there is none, or its length prefix is invalid.
    bool processSingleMessage(QByteArray *out);
    /// Ends the channel because the connection has ended; emits `channelClosed` if nobody did.
    void closeOnEnd();

public slots:
    void readIncomingData();

private:
    enum class Dispatch { Ended, NothingArrived, Delivered };

    Dispatch dispatchArrived();
    [[nodiscard]] std::optional<quint32> nextLength() const;
    [[nodiscard]] bool hasWholeMessage() const;
    void wakeUpForBuffered();
    [[nodiscard]] bool sendAll(const char *data, qsizetype length, bool moreFollows);
    void dropConnection();
    void reportEnd();
    void endAfterFailedWrite();
    void rest();
    void lookAfterRest();

    std::string m_debugName;
    std::unique_ptr<FSocket> m_socket;
    QByteArray m_readBuffer;
    FHostAddress m_peerAddress;
    quint16 m_peerPort;
    QSocketNotifier *m_notifier = nullptr;
    bool m_closing = false;
    bool m_endReported = false;
    bool m_wakeUpIsPosted = false;
};

} // namespace Vorkel
