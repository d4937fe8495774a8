#include "serverlib/incomingmessages.h"

#include "serverlib/asyncipc.h"
#include "serverlib/ipcresponsehandleriface.h"

#include <QTimerEvent>

#include <memory>

namespace Vorkel {

namespace {

struct Invocation
{
    QString name;
    ArgumentList arguments;
};

Invocation readInvocation(QDataStream &stream)
{
    Invocation invocation;
    stream >> invocation.name;
    invocation.arguments = readArguments(stream);
    return invocation;
}

} // namespace

IncomingCall::IncomingCall(AsyncIPC *ipc, FUInt32 sender, FInt32 transId)
    : m_ipc(ipc)
    , m_sender(sender)
    , m_transId(transId)
{
}

void IncomingCall::detach()
{
    m_ipc = nullptr;
    // One that is being served ends with its answer.
    if (!m_finalized)
        delete this;
}

void IncomingCall::finalize(QDataStream &stream)
{
    m_finalized = true;
    m_ipc->m_servedCalls.insert(this);
    const Invocation call = readInvocation(stream);
    if (const QString error = parseError(stream); !error.isEmpty()) {
        response(FunctionCallResult<ArgumentList>::failure(
                QStringLiteral("Call parsing failed: %1").arg(error)));
        return;
    }
    IPCResponseHandlerIface *handler = m_ipc->handler();
    if (!handler) {
        response(ArgumentList(QVariant()));
    } else if (handler->callRequest(m_sender, m_transId, call.name, call.arguments)) {
        if (m_ipc)
            m_ipc->m_servedCalls.remove(this);
        delete this;
    } else {
        handler->handleCall(m_sender, call.name, call.arguments, this);
    }
}

void IncomingCall::response(const FunctionCallResult<ArgumentList> &result)
{
    if (m_ipc) {
        m_ipc->m_servedCalls.remove(this);
        m_ipc->callReply(m_sender, m_transId, result);
    }
    delete this;
}

IncomingSend::IncomingSend(AsyncIPC *ipc, FUInt32 sender, FUInt32 destination)
    : m_ipc(ipc)
    , m_sender(sender)
    , m_destination(destination)
{
}

void IncomingSend::detach()
{
    delete this;
}

void IncomingSend::finalize(QDataStream &stream)
{
    const std::unique_ptr<IncomingSend> self(this);
    IPCResponseHandlerIface *handler = m_ipc->handler();
    if (!handler)
        return;
    const Invocation message = readInvocation(stream);
    if (const QString error = parseError(stream); !error.isEmpty())
        handler->handleError(QStringLiteral("Send parsing failed: %1").arg(error));
    else if (m_destination == Protocol::BroadcastAddress)
        handler->handleBroadcast(m_sender, message.name, message.arguments);
    else
        handler->handleSend(m_sender, message.name, message.arguments);
}

IncomingReply::IncomingReply(AsyncIPC *ipc, FInt32 transId, FUInt32 destination,
                             ResponseListener<ArgumentList> *listener)
    : m_ipc(ipc)
    , m_transId(transId)
    , m_destination(destination)
    , m_listener(listener)
{
}

void IncomingReply::startTimeout(int ms)
{
    m_timer.start(ms, Qt::CoarseTimer, this);
}

void IncomingReply::detach()
{
    delete this;
}

void IncomingReply::fail(const QString &text)
{
    const std::unique_ptr<IncomingReply> self(this);
    m_listener->response(FunctionCallResult<ArgumentList>::failure(text));
}

void IncomingReply::finalize(QDataStream &stream)
{
    m_timer.stop();
    QString error;
    ArgumentList values;
    if (flags() & Protocol::ErrorFlag) {
        stream >> error;
        if (error.isEmpty())
            error = QStringLiteral("Unknown error");
    } else {
        values = readArguments(stream);
    }
    if (const QString unreadable = parseError(stream); !unreadable.isEmpty())
        error = QStringLiteral("Reply parsing failed: %1").arg(unreadable);
    if (!error.isEmpty())
        return fail(error);
    const std::unique_ptr<IncomingReply> self(this);
    m_listener->response(values);
}

void IncomingReply::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_timer.timerId())
        return QObject::timerEvent(event);
    m_timer.stop();
    m_ipc->m_awaitedReplies.remove(m_transId);
    // Deleted later: Qt is still delivering an event to this object.
    m_listener->response(FunctionCallResult<ArgumentList>::failure(QStringLiteral("Call timeout")));
    deleteLater();
}

} // namespace Vorkel
