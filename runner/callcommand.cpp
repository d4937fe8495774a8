#include "callsyntax.h"
#include "commands.h"
#include "progress.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

namespace Vorkel::Runner {

namespace {

/// Makes one call and prints its reply. A call that is refused is printed too, and does not keep
/// the next one from being made.
Failure makeCall(Session &session, const QString &text, const CallText &call, bool json)
{
    ArgumentList reply;
    const Failure failure = call.isSend ? session.send(call.name, call.arguments)
                                        : session.call(call.name, call.arguments, &reply);
    if (failure.isFailure() && failure.code != ExitCode::CallFailed)
        return failure;
    QJsonObject record { { QStringLiteral("call"), text } };
    if (failure.isFailure())
        record.insert(QStringLiteral("error"), failure.text);
    else if (!call.isSend)
        record.insert(QStringLiteral("reply"), toJson(reply.value(0)));
    if (json)
        std::printf("%s\n", QJsonDocument(record).toJson(QJsonDocument::Compact).constData());
    else if (failure.isFailure())
        std::printf("%s: error: %s\n", qUtf8Printable(text), qUtf8Printable(failure.text));
    else if (!call.isSend)
        std::printf("%s = %s\n", qUtf8Printable(text), qUtf8Printable(toJsonText(reply.value(0))));
    std::fflush(stdout);
    return failure;
}

} // namespace

Failure callCommand(const Options &options)
{
    QList<CallText> calls;
    for (const QString &word : options.words) {
        const auto call = parseCall(word);
        if (!call.isOk())
            return { ExitCode::BadUsage, call.error() };
        calls.append(call.value());
    }
    Session session(options.session);
    const Progress progress(&session);
    if (const Failure failure = session.start(options.command); failure.isFailure())
        return failure;
    int refused = 0;
    for (qsizetype i = 0; i < calls.size(); ++i) {
        const Failure failure = makeCall(session, options.words.at(i), calls.at(i), options.json);
        if (failure.code == ExitCode::CallFailed)
            ++refused;
        else if (failure.isFailure())
            return failure;
    }
    return refused == 0 ? Failure()
                        : Failure { ExitCode::CallFailed,
                                    QStringLiteral("%1 of %2 calls failed").arg(refused).arg(calls.size()) };
}

} // namespace Vorkel::Runner
