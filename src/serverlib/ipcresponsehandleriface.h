#pragma once

#include "fkit/export.h"
#include "serverlib/argumentlist.h"
#include "shared/responselistener.h"

namespace Vorkel {

/// What an endpoint does with what arrives. Every operation has a default, so that a handler
/// replaces only what it serves.
class VORKEL_EXPORT IPCResponseHandlerIface
{
public:
    virtual ~IPCResponseHandlerIface() = default;

    /// A one-way message addressed to this endpoint. Default: nothing.
    virtual void handleSend(FUInt32 sender, const QString &name, const ArgumentList &arguments);
    /// A one-way message addressed to everybody. Default: nothing.
    virtual void handleBroadcast(FUInt32 sender, const QString &name, const ArgumentList &arguments);
    /// A call; the result is its reply. Default: an invalid value.
    virtual QVariant handleCall(FUInt32 sender, const QString &name, const ArgumentList &arguments);
    /// A message that could not be understood. Default: a warning in the log.
    virtual void handleError(const QString &text);
    /// A call, before `handleCall`. True: the handler takes it and owes `AsyncIPC::callReply`.
    virtual bool callRequest(FUInt32 sender, FInt32 transId, const QString &name,
                             const ArgumentList &arguments);
    /// The connection has ended.
    virtual void connectionClosed();
    /// A call that is answered through `listener`, now or later, once. Default: answers with the
    /// result of the other `handleCall`.
    virtual void handleCall(FUInt32 sender, const QString &name, const ArgumentList &arguments,
                            ResponseListener<ArgumentList> *listener);
};

} // namespace Vorkel
