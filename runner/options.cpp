#include "options.h"

#include <QCommandLineParser>
#include <QRegularExpression>

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
const QCommandLineOption MapFileOption(QStringLiteral("map"),
                                       QStringLiteral("Use this object map: names in it stand for objects."),
                                       QStringLiteral("file"));
const QCommandLineOption WaitLimitOption(
        QStringLiteral("wait"), QStringLiteral("Wait this long for an object that is not there yet (5)."),
        QStringLiteral("seconds"), QStringLiteral("5"));
const QCommandLineOption OutputFileOption(
        QStringList { QStringLiteral("o"), QStringLiteral("output") },
        QStringLiteral("Write to this file instead of the standard output."), QStringLiteral("file"));
const QCommandLineOption JudgeOption(QStringLiteral("audit"),
                                     QStringLiteral("List the objects that lack a lasting name instead, and "
                                                    "what would help."));
const QCommandLineOption JsonOption(QStringLiteral("json"), QStringLiteral("Print JSON, for tools."));

const QCommandLineOption StepLimitOption(QStringLiteral("timeout"),
                                         QStringLiteral("Wait this long for what a step needs (10)."),
                                         QStringLiteral("seconds"), QStringLiteral("10"));
const QCommandLineOption JunitOption(QStringLiteral("junit"),
                                     QStringLiteral("Write the results to this file as JUnit XML."),
                                     QStringLiteral("file"));
const QCommandLineOption EvidenceOption(
        QStringLiteral("evidence"),
        QStringLiteral("Keep message, screenshot and objects of each failure below this folder "
                       "(vorkel-failures)."),
        QStringLiteral("folder"), QStringLiteral("vorkel-failures"));
const QCommandLineOption FilterOption(
        QStringLiteral("filter"),
        QStringLiteral("Run only the tests whose names this regular expression matches."),
        QStringLiteral("pattern"));
const QCommandLineOption XvfbOption(
        QStringLiteral("xvfb"),
        QStringLiteral(
                "Run the programs on an X server without a screen, started for this run, with a desktop "
                "of this size (1280x1024)."),
        QStringLiteral("size"));

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

int readSeconds(const QCommandLineParser &parser, const QCommandLineOption &option, bool canBeZero,
                QString *error)
{
    constexpr double Most = 1000000;
    bool ok = false;
    const double seconds = parser.value(option).toDouble(&ok);
    if (ok && seconds <= Most && (seconds > 0 || (canBeZero && seconds == 0)))
        return static_cast<int>(seconds * 1000);
    *error = badValue(parser, option,
                      canBeZero ? QStringLiteral("a number of seconds from 0 on")
                                : QStringLiteral("a number of seconds above 0"));
    return 0;
}

void readSession(const QCommandLineParser &parser, Options *options)
{
    bool ok = false;
    options->session.host = parser.value(HostOption);
    options->session.port = parser.value(PortOption).toUShort(&ok);
    if (!ok)
        options->error = badValue(parser, PortOption, QStringLiteral("a number from 0 to 65535"));
    options->session.timeoutMs = readSeconds(parser, TimeoutOption, false, &options->error);
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

void readTest(const QCommandLineParser &parser, Options *options)
{
    options->stepLimitMs = readSeconds(parser, StepLimitOption, false, &options->error);
    options->session.platform =
            parser.isSet(PlatformOption) ? parser.value(PlatformOption) : defaultPlatform();
    options->isPlatformGiven = parser.isSet(PlatformOption);
    options->junitFile = parser.value(JunitOption);
    options->evidenceFolder = parser.value(EvidenceOption);
    options->filter = parser.value(FilterOption);
    if (!parser.isSet(XvfbOption))
        return;
    const QStringList numbers = parser.value(XvfbOption).split(u'x');
    options->displaySize = QSize(numbers.value(0).toInt(), numbers.value(1).toInt());
    if (numbers.size() != 2 || options->displaySize.isEmpty())
        options->error = badValue(parser, XvfbOption, QStringLiteral("a size like 1280x1024"));
}

/// The size of the X server's desktop may be left out, which the parser has no form for.
QStringList withDisplaySize(QStringList arguments)
{
    static const QRegularExpression size(QStringLiteral("^\\d+x\\d+$"));
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        if (arguments.at(i) == QLatin1String("--xvfb") && !size.match(arguments.value(i + 1)).hasMatch())
            arguments[i] = QStringLiteral("--xvfb=1280x1024");
    }
    return arguments;
}

/// Why the words between the options and "--" are not what the command takes.
QString badWords(const CommandInfo &info, const Options &options)
{
    const qsizetype count = options.words.size();
    if (count > info.maxWords) {
        return QStringLiteral("'%1' is not understood; the program to start stands behind '--'")
                .arg(options.words.at(info.maxWords));
    }
    if (options.command.isEmpty() && !(info.options & CommandIsOptional))
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
    const QString command = info.options & CommandIsOptional ? QStringLiteral("[-- COMMAND [ARGUMENT...]]")
                                                             : QStringLiteral("-- COMMAND [ARGUMENT...]");
    return QStringLiteral("Usage: vorkel %1 [options] %2%3\n%4\n%5\n%6")
            .arg(QLatin1String(info.name), words, command, QLatin1String(info.summary),
                 QLatin1String(info.details), options.mid(options.indexOf(QLatin1String("Options:"))));
}

} // namespace

Options readOptions(const CommandInfo &info, const QStringList &arguments)
{
    Options options;
    QCommandLineParser parser;
    // Where a word may be a negative number, the options stand before the words.
    if (!(info.options & (OutputOption | TestOptions)))
        parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    const QCommandLineOption helpOption(QStringList { QStringLiteral("h"), QStringLiteral("help") },
                                        QStringLiteral("Show this help."));
    parser.addOption(helpOption);
    if (info.options & SessionOptions)
        parser.addOptions({ HostOption, PortOption, TimeoutOption, PlatformOption, JsonOption });
    if (info.options & DepthOption)
        parser.addOption(DepthLimitOption);
    if (info.options & MapOption)
        parser.addOption(MapFileOption);
    if (info.options & WaitOption)
        parser.addOption(WaitLimitOption);
    if (info.options & OutputOption)
        parser.addOption(OutputFileOption);
    if (info.options & AuditOption)
        parser.addOption(JudgeOption);
    if (info.options & TestOptions)
        parser.addOptions(
                { StepLimitOption, PlatformOption, XvfbOption, FilterOption, JunitOption, EvidenceOption });

    const qsizetype separator = arguments.indexOf(QLatin1String("--"));
    const QStringList own = separator < 0 ? arguments : arguments.first(separator);
    options.command = separator < 0 ? QStringList() : arguments.mid(separator + 1);
    if (!parser.parse(QStringList(QStringLiteral("vorkel")) + withDisplaySize(own))) {
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
    if (info.options & MapOption)
        options.mapFile = parser.value(MapFileOption);
    if (info.options & WaitOption)
        options.waitMs = readSeconds(parser, WaitLimitOption, true, &options.error);
    if (info.options & OutputOption)
        options.outputFile = parser.value(OutputFileOption);
    if (info.options & AuditOption)
        options.audit = parser.isSet(JudgeOption);
    if (info.options & TestOptions)
        readTest(parser, &options);
    if (const QString error = badWords(info, options); !error.isEmpty())
        options.error = error;
    return options;
}

} // namespace Vorkel::Runner
