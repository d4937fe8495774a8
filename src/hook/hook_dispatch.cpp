#include "hook/hook.h"

#include "hook/remotefunctions.h"
#include "shared/logline.h"
#include "shared/trace.h"

namespace Vorkel {

namespace {

QVariant unhandled(const QString &name)
{
    logLine(QStringLiteral("Hook::handleCall: unhandled function ") + name);
    return QVariant();
}

QVariant refuseCount(const RemoteFunction &function)
{
    const QString text = wrongCountText(function.id);
    if (function.wrongCount.way == WrongCount::IsReply)
        return text;
    logLine(text);
    return QVariant();
}

/// The reply to a call that is answered at once; `function` is what `name` stands for.
QVariant answer(Hook &hook, const RemoteFunction *function, const QString &name,
                const ArgumentList &arguments)
{
    if (!function || function->kind == FunctionKind::Send)
        return unhandled(name);
    if (function->kind == FunctionKind::LaterCall)
        return QStringLiteral("Internal error: synchronous call to ") + QLatin1String(function->label);
    if (!function->arguments.accepts(arguments.size()))
        return refuseCount(*function);
    return function->handler.answer ? function->handler.answer(hook, arguments) : unhandled(name);
}

void traceCall(FUInt32 caller, const QString &name, const ArgumentList &arguments)
{
    VORKEL_TRACE("Hook", "Processing IPC call", { "caller", caller }, { "func", name },
                 { "args.size()", arguments.size() });
}

} // namespace

QVariant Hook::handleCall(FUInt32 caller, const QString &name, const ArgumentList &arguments)
{
    traceCall(caller, name, arguments);
    return answer(*this, remoteFunction(name), name, arguments);
}

void Hook::handleCall(FUInt32 caller, const QString &name, const ArgumentList &arguments,
                      ResponseListener<ArgumentList> *listener)
{
    traceCall(caller, name, arguments);
    const RemoteFunction *function = remoteFunction(name);
    if (!function || function->kind != FunctionKind::LaterCall)
        return listener->response(ArgumentList(answer(*this, function, name, arguments)));
    if (!function->arguments.accepts(arguments.size()))
        return listener->response(FunctionCallResult<ArgumentList>::failure(wrongCountText(function->id)));
    if (!function->handler.answerLater)
        return listener->response(ArgumentList(unhandled(name)));
    function->handler.answerLater(*this, arguments, listener);
}

void Hook::handleSend(FUInt32 sender, const QString &name, const ArgumentList &arguments)
{
    VORKEL_TRACE("Hook", "Processing IPC send", { "sender", sender }, { "func", name },
                 { "args.size()", arguments.size() });
    const RemoteFunction *function = remoteFunction(name);
    if (!function || function->kind != FunctionKind::Send)
        return;
    if (!function->arguments.accepts(arguments.size()))
        logLine(wrongCountText(function->id));
    else if (function->handler.answer)
        function->handler.answer(*this, arguments);
}

void Hook::setRunnerId(int id)
{
    if (m_isSubprocess)
        m_runnerId = id;
}

/// No stream has been started, so no id is known.
QVariant Hook::configureBinaryStream(unsigned int, const QVariantMap &)
{
    return QStringLiteral("Unknown stream id");
}

} // namespace Vorkel
