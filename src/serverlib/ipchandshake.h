#pragma once

#include "serverlib/clientdata.h"
#include "serverlib/messagechannel.h"

#include <QBasicTimer>

namespace Vorkel {

/// The connecting side's handshake on a new channel: announces who we are and learns under which
/// identity the peer takes us. Deletes itself once it has finished.
class VORKEL_EXPORT IPCHandshake : public QObject
{
    Q_OBJECT

public:
    /// `channel` stays the caller's and must outlive the handshake.
    IPCHandshake(const ClientData &data, AsyncMessageChannel *channel, int timeoutMs, QObject *parent);

    /// Starts now, or after `ms` milliseconds.
    void start();
    void startDelayed(int ms);
    [[nodiscard]] AsyncMessageChannel *channel() const { return m_channel; }

    /// The same, waiting for the outcome up to `timeoutMs` milliseconds a read.
    static FunctionCallResult<ClientData> synchronous(const ClientData &data, MessageChannel *channel,
                                                      int timeoutMs);

    /// Sends a handshake message, and a ping behind it. An answer that failed travels as its text.
    static bool sendHandshake(AsyncMessageChannel *channel, const ClientData &data);
    static bool sendHandshake(AsyncMessageChannel *channel, const FunctionCallResult<ClientData> &answer);
    /// Reads a handshake message: the peer's data, or why there is none.
    static FunctionCallResult<ClientData> processHanshake(const QByteArray &message);

signals:
    void finished(Vorkel::AsyncMessageChannel *channel,
                  const Vorkel::FunctionCallResult<Vorkel::ClientData> &result);

protected:
    virtual void finished(const FunctionCallResult<ClientData> &result);
    void timerEvent(QTimerEvent *event) override;

private:
    void onMessageArrived(const QByteArray &message);
    void onChannelClosed();
    void done(const FunctionCallResult<ClientData> &result);

    ClientData m_data;
    AsyncMessageChannel *m_channel;
    int m_timeoutMs;
    QBasicTimer m_timeoutTimer;
    QBasicTimer m_delayTimer;
};

} // namespace Vorkel
