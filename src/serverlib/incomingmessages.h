#pragma once

#include "serverlib/argumentlist.h"
#include "serverlib/chunkedmessagereceiver.h"
#include "shared/responselistener.h"

#include <QBasicTimer>

namespace Vorkel {

class AsyncIPC;

/// A call from a peer. It lives until it has been answered; when the endpoint has let go, the
/// answer goes nowhere.
class IncomingCall : public ChunkedMessageReceiver, public ResponseListener<ArgumentList>
{
    Q_OBJECT

public:
    IncomingCall(AsyncIPC *ipc, FUInt32 sender, FInt32 transId);

    [[nodiscard]] FUInt32 sender() const { return m_sender; }

    void detach() override;
    void finalize(QDataStream &stream) override;
    void response(const FunctionCallResult<ArgumentList> &result) override;

private:
    AsyncIPC *m_ipc;
    FUInt32 m_sender;
    FInt32 m_transId;
    bool m_finalized = false;
};

/// A one-way message from a peer.
class IncomingSend : public ChunkedMessageReceiver
{
    Q_OBJECT

public:
    IncomingSend(AsyncIPC *ipc, FUInt32 sender, FUInt32 destination);

    void detach() override;
    void finalize(QDataStream &stream) override;

private:
    AsyncIPC *m_ipc;
    FUInt32 m_sender;
    FUInt32 m_destination;
};

/// The reply that a call of ours awaits.
class IncomingReply : public ChunkedMessageReceiver
{
    Q_OBJECT

public:
    IncomingReply(AsyncIPC *ipc, FInt32 transId, FUInt32 destination,
                  ResponseListener<ArgumentList> *listener);

    [[nodiscard]] FUInt32 destination() const { return m_destination; }

    void startTimeout(int ms);
    /// Tells the listener that the call failed; ends this object.
    void fail(const QString &text);

    void detach() override;
    void finalize(QDataStream &stream) override;

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    AsyncIPC *m_ipc;
    FInt32 m_transId;
    FUInt32 m_destination;
    ResponseListener<ArgumentList> *m_listener;
    QBasicTimer m_timer;
};

} // namespace Vorkel
