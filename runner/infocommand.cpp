#include "callsyntax.h"
#include "commands.h"
#include "facts.h"
#include "progress.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

namespace Vorkel::Runner {

namespace {

constexpr int LabelWidth = 19;

struct Duration
{
    const char *label;
    const char *key;
    qint64 Milestones::*from; // null: the start of the program
    qint64 Milestones::*to;
};

// clang-format off
constexpr Duration Durations[] = {
    { "Connect",    "connectMs",   nullptr,                  &Milestones::connected   },
    { "Handshake",  "handshakeMs", &Milestones::connected,   &Milestones::shookHands  },
    { "Bring-up",   "bringUpMs",   &Milestones::shookHands,  &Milestones::initialised },
    { "Event loop", "eventLoopMs", &Milestones::initialised, &Milestones::ready       },
};
// clang-format on

double milliseconds(const Duration &duration, const Milestones &milestones)
{
    const qint64 from = duration.from ? milestones.*duration.from : 0;
    return static_cast<double>(milestones.*duration.to - from) / 1e6;
}

void printLine(const char *label, const QString &text)
{
    const QByteArray aligned = QByteArray(label).leftJustified(LabelWidth);
    if (!text.contains(u'\n')) {
        std::printf("%s%s\n", aligned.constData(), qUtf8Printable(text));
        return;
    }
    std::printf("%s\n", label);
    for (const QString &line : text.trimmed().split(u'\n'))
        std::printf("  | %s\n", qUtf8Printable(line));
}

void printText(const QString &name, const QVariantList &values, const Milestones &milestones)
{
    printLine("Program", name);
    qsizetype i = 0;
    for (const Fact &fact : facts())
        printLine(fact.label, fact.text(values.at(i++)));
    for (const Duration &duration : Durations)
        printLine(duration.label,
                  QString::number(milliseconds(duration, milestones), 'f', 2) + QStringLiteral(" ms"));
}

void printJson(const QString &name, const QVariantList &values, const Milestones &milestones)
{
    QJsonObject object { { QStringLiteral("name"), name } };
    qsizetype i = 0;
    for (const Fact &fact : facts())
        object.insert(QLatin1String(fact.key), toJson(values.at(i++)));
    for (const Duration &duration : Durations)
        object.insert(QLatin1String(duration.key), milliseconds(duration, milestones));
    std::printf("%s", QJsonDocument(object).toJson().constData());
}

} // namespace

Failure infoCommand(const Options &options)
{
    Session session(options.session);
    const Progress progress(&session);
    if (const Failure failure = session.start(options.command); failure.isFailure())
        return failure;
    QVariantList values;
    for (const Fact &fact : facts()) {
        ArgumentList arguments;
        if (fact.argument)
            arguments.append(QString::fromLatin1(fact.argument));
        ArgumentList reply;
        const Failure failure = session.call(QString::fromLatin1(fact.function), arguments, &reply);
        if (failure.isFailure())
            return failure;
        values.append(reply.value(0));
    }
    (options.json ? printJson : printText)(session.programName(), values, session.milestones());
    return {};
}

} // namespace Vorkel::Runner
