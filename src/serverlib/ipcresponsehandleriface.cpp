#include "serverlib/ipcresponsehandleriface.h"

#include <QtGlobal>

namespace Vorkel {

void IPCResponseHandlerIface::handleSend(FUInt32, const QString &, const ArgumentList &) {}
void IPCResponseHandlerIface::handleBroadcast(FUInt32, const QString &, const ArgumentList &) {}
void IPCResponseHandlerIface::connectionClosed() {}

QVariant IPCResponseHandlerIface::handleCall(FUInt32, const QString &, const ArgumentList &)
{
    return QVariant();
}

void IPCResponseHandlerIface::handleError(const QString &text)
{
    qWarning("%s", qPrintable(text));
}

bool IPCResponseHandlerIface::callRequest(FUInt32, FInt32, const QString &, const ArgumentList &)
{
    return false;
}

void IPCResponseHandlerIface::handleCall(FUInt32 sender, const QString &name, const ArgumentList &arguments,
                                         ResponseListener<ArgumentList> *listener)
{
    listener->response(ArgumentList(handleCall(sender, name, arguments)));
}

} // namespace Vorkel
