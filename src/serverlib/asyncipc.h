#pragma once

#include "serverlib/argumentlist.h"
#include "serverlib/clientdata.h"
#include "serverlib/messagechannel.h"
#include "serverlib/protocol.h"
#include "shared/responselistener.h"

#include <QMap>
#include <QSet>

#include <functional>
#include <utility>

namespace Vorkel {

class ChunkedMessageReceiver;
class IncomingCall;
class IncomingReply;
class IPCResponseHandlerIface;

/// The protocol endpoint on one message channel: sends calls, one-way messages and replies, and
/// hands what arrives to a handler. It never waits.
class VORKEL_EXPORT AsyncIPC : public QObject
{
    Q_OBJECT

public:
    using ClientData = Vorkel::ClientData;

    static constexpr FUInt32 InvalidAddress = Protocol::InvalidAddress;
    static constexpr FUInt32 ServerAddress = Protocol::ServerAddress;
    static constexpr FUInt32 BroadcastAddress = Protocol::BroadcastAddress;

    static constexpr int HandshakeTimeoutMs = 10000;
    /// How many messages may be incomplete at a time; a peer that opens more is not listened to.
    static constexpr int MaxIncompleteMessages = 1024;

    /// Takes `channel`, on which the handshake is over, as a child. `data` is what the handshake
    /// gave; its id is this endpoint's address. `handler` stays the caller's and may be null.
    AsyncIPC(AsyncMessageChannel *channel, const ClientData &data, IPCResponseHandlerIface *handler,
             QObject *parent);
    ~AsyncIPC() override;

    /// Shakes hands on `channel`; `listener` receives the new endpoint, which it then owns, or the
    /// failure, in which case the channel stays as it is.
    static void connectTo(AsyncMessageChannel *channel, const ClientData &data,
                          ResponseListener<AsyncIPC *> *listener);
    /// Connects first, waiting for the outcome.
    static void connectTo(const QString &host, quint16 port, const ClientData &data,
                          ResponseListener<AsyncIPC *> *listener);

    [[nodiscard]] const ClientData &clientData() const { return m_clientData; }
    void setHandler(IPCResponseHandlerIface *handler) { m_handler = handler; }
    [[nodiscard]] IPCResponseHandlerIface *handler() const { return m_handler; }

    /// Sends a one-way message. The trans id that it got, or -1 when it did not go out.
    int send(FUInt32 destination, const QString &name, const ArgumentList &arguments);
    int send(const QString &name, const ArgumentList &arguments);

    /// Sends a call. `listener` hears the reply or the failure once, unless the call is cancelled.
    /// `timeoutMs` above 0 bounds the wait for the reply. The trans id, or -1 when the call failed
    /// and the listener has been told.
    int asyncCall(FUInt32 destination, const QString &name, const ArgumentList &arguments,
                  ResponseListener<ArgumentList> *listener, int timeoutMs);
    int asyncCall(FUInt32 destination, const QString &name, const ArgumentList &arguments,
                  ResponseListener<ArgumentList> *listener);
    int asyncCall(const QString &name, const ArgumentList &arguments,
                  ResponseListener<ArgumentList> *listener);

    void callReply(FUInt32 caller, FInt32 callId, const FunctionCallResult<ArgumentList> &result);
    void callReply(FUInt32 caller, FInt32 callId, const ArgumentList &values);

    /// Forgets a call that awaits its reply; its listener is not called.
    void cancelAsyncCall(FInt32 callId);
    /// Whether no reply is awaited under `callId`.
    [[nodiscard]] bool isCallCompleted(FInt32 callId) const { return !m_awaitedReplies.contains(callId); }
    /// Fails all calls that await a reply with `text`.
    void cancelOutgoingCalls(const QString &text);

    /// Closes the channel and fails the calls that await a reply.
    void closeSocket();
    [[nodiscard]] bool isOpen() const { return m_channel->isOpen(); }
    [[nodiscard]] bool socketClosed() const { return !isOpen(); }
    [[nodiscard]] FHostAddress peerAddress() const { return m_channel->peerAddress(); }
    [[nodiscard]] quint16 peerPort() const { return m_channel->peerPort(); }
    [[nodiscard]] std::string debugName() const { return m_channel->debugName(); }
    [[nodiscard]] std::string description() const { return debugName(); }

    [[nodiscard]] int newTransId();
    [[nodiscard]] QByteArray createHeader(FUInt32 destination, FInt32 transId, Protocol::MessageType type,
                                          FUInt32 flags) const;

signals:
    void connectionClosed();
    void peerGone(FUInt32 peer);

public slots:
    void onMessageArrived(const QByteArray &message);
    void onChannelClosed();

protected:
    [[nodiscard]] int defaultCallTimeout() const { return m_defaultCallTimeout; }

private:
    friend class IncomingCall;
    friend class IncomingReply;
    friend class IncomingSend;

    using MessageKey = std::pair<FUInt32, FInt32>; // sender, trans id

    [[nodiscard]] QString sendMessage(const Protocol::Header &header,
                                      const std::function<void(QDataStream &)> &writeBody);
    [[nodiscard]] Protocol::Header headerFor(FUInt32 destination, FInt32 transId, Protocol::MessageType type,
                                             FUInt32 flags) const;
    void addChunk(const Protocol::Header &header, const QByteArray &message);
    ChunkedMessageReceiver *receiverFor(const Protocol::Header &header);
    void forgetReceiver(const Protocol::Header &header);
    void notifyPeerGone(FUInt32 peer);
    void failAwaited(const QString &text, const std::function<bool(const IncomingReply &)> &concerns);
    void reportError(const QString &text);

    QMap<FInt32, IncomingReply *> m_awaitedReplies;
    QMap<MessageKey, ChunkedMessageReceiver *> m_incomplete;
    QSet<IncomingCall *> m_servedCalls;
    int m_defaultCallTimeout = 300000;
    int m_lastTransId = 0;
    bool m_isEnding = false;
    ClientData m_clientData;
    AsyncMessageChannel *m_channel;
    IPCResponseHandlerIface *m_handler;
};

} // namespace Vorkel
