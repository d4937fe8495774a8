#include "options.h"

#include <QCommandLineParser>

namespace Vorkel::Runner {

namespace {

const QCommandLineOption HostOption(QStringLiteral("host"),
                                    QStringLiteral("Listen on this address instead of 127.0.0.1."),
                                    QStringLiteral("address"), QStringLiteral("127.0.0.1"));
const QCommandLineOption PortOption(
        QStringLiteral("port"), QStringLiteral("Listen on this port instead of one that the system picks."),
        QStringLiteral("number"), QStringLiteral("0"));
const QCommandLineOption TimeoutOption(
        QStringLiteral("timeout"), QStringLiteral("Wait this long for the program and for each reply (30)."),
        QStringLiteral("seconds"), QStringLiteral("30"));
const QCommandLineOption PlatformOption(
        QStringLiteral("platform"),
        QStringLiteral("Qt's platform plug-in for the program. Without a display in "
                       "the environment it is 'offscreen', else Qt's own choice."),
        QStringLiteral("name"));
const QCommandLineOption DepthLimitOption(
        QStringLiteral("depth"), QStringLiteral("Look at this many levels of objects instead of all."),
        QStringLiteral("levels"));
const QCommandLineOption JsonOption(QStringLiteral("json"), QStringLiteral("Print JSON, for tools."));

/// Without a display Qt programs do not start, so they get a platform that needs none.
QString defaultPlatform()
{
    for (const char *variable : { "QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY" }) {
        if (!qEnvironmentVariableIsEmpty(variable))
            return QString();
    }
    return QStringLiteral("offscreen");
}

QString badValue(const QCommandLineParser &parser, const QCommandLineOption &option, const QString &expected)
{
    return QStringLiteral("--%1 takes %2, not '%3'")
            .arg(option.names().constFirst(), expected, parser.value(option));
}

void readSession(const QCommandLineParser &parser, Options *options)
{
    bool ok = false;
    options->session.host = parser.value(HostOption);
    options->session.port = parser.value(PortOption).toUShort(&ok);
    if (!ok)
        options->error = badValue(parser, PortOption, QStringLiteral("a number from 0 to 65535"));
    const double seconds = parser.value(TimeoutOption).toDouble(&ok);
    if (!ok || !(seconds > 0 && seconds <= 1000000))
        options->error = badValue(parser, TimeoutOption, QStringLiteral("a number of seconds above 0"));
    else
        options->session.timeoutMs = static_cast<int>(seconds * 1000);
    options->session.platform =
            parser.isSet(PlatformOption) ? parser.value(PlatformOption) : defaultPlatform();
    options->json = parser.isSet(JsonOption);
}

void readDepth(const QCommandLineParser &parser, Options *options)
{
    if (!parser.isSet(DepthLimitOption))
        return;
    bool ok = false;
    options->depth = parser.value(DepthLimitOption).toInt(&ok);
    if (!ok || options->depth < 1)
        options->error = badValue(parser, DepthLimitOption, QStringLiteral("a number above 0"));
}

/// Why the words between the options and "--" are not what the command takes.
QString badWords(const CommandInfo &info, const Options &options)
{
    const qsizetype count = options.words.size();
    if (count > info.maxWords) {
        return QStringLiteral("'%1' is not understood; the program to start stands behind '--'")
                .arg(options.words.at(info.maxWords));
    }
    if (options.command.isEmpty())
        return QStringLiteral("the program to start is missing: it stands behind '--'");
    return count < info.minWords ? QStringLiteral("'%1' takes %2 before '--'")
                                           .arg(QLatin1String(info.name), QLatin1String(info.wordsHelp))
                                 : QString();
}

QString helpText(const CommandInfo &info, const QCommandLineParser &parser)
{
    // The parser knows nothing of the part behind "--", so its first line is replaced.
    const QString options = parser.helpText();
    const QString words = info.wordsHelp ? QLatin1String(info.wordsHelp) + u' ' : QString();
    return QStringLiteral("Usage: vorkel %1 [options] %2-- COMMAND [ARGUMENT...]\n%3\n%4\n%5")
            .arg(QLatin1String(info.name), words, QLatin1String(info.summary), QLatin1String(info.details),
                 options.mid(options.indexOf(QLatin1String("Options:"))));
}

} // namespace

Options readOptions(const CommandInfo &info, const QStringList &arguments)
{
    Options options;
    QCommandLineParser parser;
    const QCommandLineOption helpOption(QStringList { QStringLiteral("h"), QStringLiteral("help") },
                                        QStringLiteral("Show this help."));
    parser.addOption(helpOption);
    if (info.options & SessionOptions)
        parser.addOptions({ HostOption, PortOption, TimeoutOption, PlatformOption, JsonOption });
    if (info.options & DepthOption)
        parser.addOption(DepthLimitOption);

    const qsizetype separator = arguments.indexOf(QLatin1String("--"));
    const QStringList own = separator < 0 ? arguments : arguments.first(separator);
    options.command = separator < 0 ? QStringList() : arguments.mid(separator + 1);
    if (!parser.parse(QStringList(QStringLiteral("vorkel")) + own)) {
        options.error = parser.errorText();
        if (options.error.endsWith(u'.'))
            options.error.chop(1);
        return options;
    }
    options.words = parser.positionalArguments();
    if (parser.isSet(helpOption)) {
        options.help = helpText(info, parser);
        return options;
    }
    if (info.options & SessionOptions)
        readSession(parser, &options);
    if (info.options & DepthOption)
        readDepth(parser, &options);
    if (const QString error = badWords(info, options); !error.isEmpty())
        options.error = error;
    return options;
}

} // namespace Vorkel::Runner
