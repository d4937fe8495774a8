#pragma once

#include "serverlib/clientdata.h"
#include "serverlib/messagechannel.h"

#include <QBasicTimer>
#include <QMap>

namespace Vorkel {

/// The accepting side's handshake: hears who a peer says it is and answers with the identity under
/// which it is taken, or with a refusal.
class VORKEL_EXPORT IPCHandshaker : public QObject
{
    Q_OBJECT

public:
    static constexpr int TimeoutMs = 10000;

    /// `tag` is kept and means nothing here.
    explicit IPCHandshaker(QObject *parent, int tag = 0);
    [[nodiscard]] int tag() const { return m_tag; }

    /// Waits for the peer's handshake on `channel`. The channel belongs to the handshaker until one
    /// of the signals has carried it.
    void addChannel(AsyncMessageChannel *channel);
    /// Lets go of `channel`, tells so with `reason`, then closes and deletes it.
    void emitChannelRejected(AsyncMessageChannel *channel, const QString &reason);

signals:
    /// The handshake is over; `data` is what the peer was answered.
    void newChannel(Vorkel::AsyncMessageChannel *channel, const Vorkel::ClientData &data);
    void channelRejected(Vorkel::AsyncMessageChannel *channel, const QString &reason);

protected:
    /// The answer to a peer that announced itself with `data`: its final identity or a failure text.
    virtual FunctionCallResult<ClientData> answerTo(const ClientData &data) = 0;
    void timerEvent(QTimerEvent *event) override;

private:
    void onMessageArrived(AsyncMessageChannel *channel, const QByteArray &message);
    void forget(AsyncMessageChannel *channel);

    int m_tag;
    QMap<AsyncMessageChannel *, int> m_timers;
};

} // namespace Vorkel
