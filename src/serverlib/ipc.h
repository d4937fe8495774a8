#pragma once

#include "fkit/fhostaddress.h"
#include "serverlib/asyncipc.h"

namespace Vorkel {

/// An endpoint that can also wait, on one thread and without an event loop.
///
/// While it waits it serves what arrives, so calls nest in both directions to any depth; an outer
/// call cannot return before the inner ones have.
class VORKEL_EXPORT IPC : public AsyncIPC
{
    Q_OBJECT

public:
    /// As `AsyncIPC`, on a channel that can wait.
    IPC(MessageChannel *channel, const ClientData &data, IPCResponseHandlerIface *handler, QObject *parent);

    /// Shakes hands on `channel`, waiting for the outcome. The caller owns the endpoint, which has
    /// no handler yet. On failure `channel` is closed and deleted.
    static FunctionCallResult<IPC *> connectTo(MessageChannel *channel, const ClientData &data);
    /// Connects first.
    static FunctionCallResult<IPC *> connectTo(const QString &host, quint16 port, const ClientData &data);
    static FunctionCallResult<IPC *> connectTo(const SocketAddress &address, const ClientData &data);

    FunctionCallResult<QByteArray> waitForSingleMessage(int ms)
    {
        return m_channel->waitForSingleMessage(ms);
    }
    bool dispatchMessages() { return m_channel->dispatchMessages(); }

    /// Calls the server and waits: the first value of the reply, or an invalid value on any
    /// failure. `*timedOut` tells whether it was for lack of time. With `noDispatch`, messages
    /// that arrived behind the reply stay where they are.
    QVariant call(const QString &name, const ArgumentList &arguments, bool *timedOut = nullptr,
                  bool noDispatch = false);
    QVariant call(FUInt32 destination, const QString &name, const ArgumentList &arguments,
                  bool *timedOut = nullptr);

    /// The same, with all values of the reply or the failure text.
    FunctionCallResult<ArgumentList> callFunc(const QString &name, const ArgumentList &arguments,
                                              bool noDispatch = false);
    FunctionCallResult<ArgumentList> callFunc(FUInt32 destination, const QString &name,
                                              const ArgumentList &arguments);

    /// Waits until no reply is awaited under `callId` any more.
    VoidResult awaitAsyncCall(FInt32 callId, bool *timedOut, bool noDispatch);

private:
    QVariant callAndWait(FUInt32 destination, const QString &name, const ArgumentList &arguments,
                         bool *timedOut, bool noDispatch);
    FunctionCallResult<ArgumentList> callFuncAndWait(FUInt32 destination, const QString &name,
                                                     const ArgumentList &arguments, bool noDispatch);
    void setCallDepth(int depth);

    MessageChannel *m_channel;
    bool m_inCall = false;
    int m_callDepth = 0;
};

} // namespace Vorkel
