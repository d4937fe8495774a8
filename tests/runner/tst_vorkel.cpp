#include "support/childprocess.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

// The command as a real process that starts real programs.

namespace {

constexpr int LimitMs = 60000;

using Variables = QList<std::pair<QString, QString>>;

/// A shell that starts a child, says its process id and becomes the program.
QStringList family(const QString &before = {})
{
    return { u"sh"_s, u"-c"_s, before + u"sleep 300 & echo $!; exec \"$0\" run"_s, built(u"coreprogram"_s) };
}

} // namespace

class tst_vorkel : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void tellsFacts();
    void tellsFactsToTools();
    void says_data();
    void says();
    void endsWhatItStarted_data();
    void endsWhatItStarted();
    void keepsIgnoredSignals();
    void showsProgressOnTerminal();

private:
    void launch(ChildProcess &process, const QStringList &arguments, const Variables &variables = {});
    Outcome run(const QStringList &arguments, const Variables &variables = {});
    pid_t launchFrozen(ChildProcess &process, const QStringList &program);

    const QString m_program = built(u"coreprogram"_s);
    const QTemporaryDir m_folder;
};

void tst_vorkel::cleanup()
{
    QCOMPARE(QDir(m_folder.path()).entryList({ u"vorkel*"_s }), QStringList());
}

void tst_vorkel::launch(ChildProcess &process, const QStringList &arguments, const Variables &variables)
{
    QProcessEnvironment environment;
    environment.insert(u"TMPDIR"_s, m_folder.path());
    for (const auto &[name, value] : variables)
        environment.insert(name, value);
    process.launch(built(u"../bin/vorkel"_s), arguments, environment);
}

Outcome tst_vorkel::run(const QStringList &arguments, const Variables &variables)
{
    ChildProcess process;
    launch(process, arguments, variables);
    return process.outcome();
}

/// Starts the command on a program that never comes back from a call, and gives the program's process id.
pid_t tst_vorkel::launchFrozen(ChildProcess &process, const QStringList &program)
{
    launch(process, QStringList { u"call"_s, u"getPID"_s, u"readStdout"_s, u"freeze"_s, u"--"_s } + program);
    return process.line("getPID = ").toInt();
}

void tst_vorkel::tellsFacts()
{
    const Outcome outcome =
            run({ u"info"_s, u"--"_s, m_program, u"run"_s, u"a b"_s, u""_s, u"it's"_s, u"ü"_s });
    QCOMPARE(outcome.err, QString());
    QCOMPARE(outcome.code, 0);
    const QRegularExpression form(QRegularExpression::anchoredPattern(uR"(Program            coreprogram
Process id         \d+
Working directory  %1
Operating system   Linux
Memory             (unknown|[\d.]+ \w+)
CPU time           (unknown|\d+ ms)
Started            (unknown|\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3})
Arguments          \S+/coreprogram run 'a b' '' 'it'\\''s' ü
Standard output
  \| running
Standard error     nothing so far
Connect            \d+\.\d\d ms
Handshake          \d+\.\d\d ms
Bring-up           \d+\.\d\d ms
Event loop         \d+\.\d\d ms
)"_s.arg(QRegularExpression::escape(QDir::currentPath()))));
    QVERIFY2(form.match(outcome.out).hasMatch(), qPrintable(outcome.out));
}

void tst_vorkel::tellsFactsToTools()
{
    // What stands behind the first "--" is the program's.
    const QStringList command { u"guiprogram"_s, u"run"_s, u"--json"_s, u""_s, u"--"_s, u" ü\n"_s };
    const QString path = QCoreApplication::applicationDirPath() + u':' + qEnvironmentVariable("PATH");
    const Outcome outcome =
            run(QStringList { u"info"_s, u"--json"_s, u"--"_s } + command, { { u"PATH"_s, path } });
    QCOMPARE(outcome.code, 0);
    const QJsonObject facts = QJsonDocument::fromJson(outcome.out.toUtf8()).object();
    QCOMPARE(facts.keys().join(u' '),
             u"arguments bringUpMs connectMs cpuTimeMs eventLoopMs handshakeMs memoryBytes name "
             u"operatingSystem "
             "processId startedMs stderr stdout workingDirectory"_s);
    QCOMPARE(facts[u"name"_s].toString(), u"guiprogram"_s);
    QCOMPARE(facts[u"arguments"_s].toVariant().toStringList().mid(1), command.mid(1));
    QCOMPARE(facts[u"stdout"_s].toString(), u"running\n"_s);
    QVERIFY(facts[u"connectMs"_s].toDouble() > 0 && facts[u"eventLoopMs"_s].toDouble() > 0);
}

void tst_vorkel::says_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("out"); // part of it, or nothing
    QTest::addColumn<QString>("err");
    QTest::addColumn<Variables>("variables");
    const auto row = [](const char *name, const QStringList &arguments, int code, const QString &out,
                        const QString &err, const Variables &variables = {}) {
        QTest::newRow(name) << arguments << code << out << err << variables;
    };
    const auto explain = [&](const char *name, const QString &arguments, const QString &out) {
        row(name, arguments.split(u' '), 0, out, {});
    };
    const auto usage = [&](const char *name, const QString &arguments, const QString &err) {
        row(name, arguments.split(u' ', Qt::SkipEmptyParts), 2, {}, err);
    };
    const auto start = [&](const char *name, const QStringList &command, int code, const QString &err) {
        row(name, QStringList { u"info"_s, u"--timeout"_s, u"30"_s, u"--"_s } + command, code, {}, err);
    };
    const auto call = [&](const char *name, const QStringList &words, int code, const QString &out,
                          const QString &err = {}, const Variables &variables = {}) {
        row(name, QStringList(u"call"_s) + words + QStringList { u"--"_s, m_program, u"run"_s }, code, out,
            err, variables);
    };
    const auto passes = [&](const char *name, const QStringList &options, const Variables &variables,
                            const QString &variable, const QString &value) {
        const QString ask = u"autInfo(\"environmentVariable\", \"%1\")"_s.arg(variable);
        call(name, options + QStringList(ask), 0, ask + u" = \""_s + value + u"\"\n"_s, {}, variables);
    };
    const QString platform = u"QT_QPA_PLATFORM"_s;
    const QString server = u"VORKEL_SERVERADDRESS"_s;
    const QString locked = m_folder.filePath(u"locked"_s);
    QFile file(locked);
    QVERIFY(file.open(QIODevice::WriteOnly));
    const QString noQt =
            u"is no dynamically linked Qt 6 program (it does not load libQt6Core.so.6), and nothing connected "_s;
    // clang-format off
    explain("help",            u"--help"_s,                   u"'vorkel COMMAND --help' tells more"_s);
    explain("command's help",  u"call --help"_s,              u"Usage: vorkel call [options] CALL... -- COMMAND"_s);
    explain("help on command", u"help info"_s,                u"Usage: vorkel info [options] -- COMMAND"_s);
    explain("no options",      u"inject --help"_s,            u"VORKEL_SERVERADDRESS"_s);
    explain("version",         u"--version"_s,                u"vorkel 0."_s);
    call("one after the other", { u"setError(\"a\\nü\")"_s, u"getLastError"_s, u"getLastError()"_s, u"autInfo(\"arguments\")"_s }, 0,
         u"setError(\"a\\nü\") = null\ngetLastError = \"a\\nü\"\ngetLastError() = \"\"\nautInfo(\"arguments\") = [\"%1\",\"run\"]\n"_s.arg(m_program));
    call("one way",            { u"send:ping"_s, u"send:nosuch(1)"_s, u"nosuch(1)"_s }, 0, u"nosuch(1) = null\n"_s);
    call("refused",            { u"rawScreenshot"_s, u"getLastError"_s }, 1,
         u"rawScreenshot: error: Hook::handleCall: F_RawScreenshot: wrong number of arguments\ngetLastError = \"\"\n"_s, u"vorkel: 1 of 2 calls failed\n"_s);
    call("for tools",          { u"--json"_s, u"getLastError"_s, u"send:ping"_s, u"rawScreenshot"_s }, 1,
         u"{\"call\":\"getLastError\",\"reply\":\"\"}\n{\"call\":\"send:ping\"}\n"
         "{\"call\":\"rawScreenshot\",\"error\":\"Hook::handleCall: F_RawScreenshot: wrong number of arguments\"}\n"_s, u"vorkel: 1 of 3 calls failed\n"_s);
    call("until it dies",      { u"getLastError"_s, u"die"_s, u"getLastError"_s }, 8, u"getLastError = \"\"\n"_s, u"vorkel: 'coreprogram' was ended by signal 9 (Killed)\n"_s);
    passes("any variable",     {}, { { u"TEXT"_s, u" a=b;ü"_s } },                   u"TEXT"_s, u" a=b;ü"_s);
    passes("preloaded before", {}, { { u"LD_PRELOAD"_s, u"libm.so.6"_s } },          u"LD_PRELOAD"_s, built(u"../lib/libvorkelqtpreload.so:libm.so.6"_s));
    passes("chosen platform",  { u"--platform"_s, u"minimal"_s }, { { platform, u"offscreen"_s } }, platform, u"minimal"_s);
    passes("caller's platform", {}, { { platform, u"minimal"_s } },                  platform, u"minimal"_s);
    passes("no display",       {}, { { platform, u""_s }, { u"DISPLAY"_s, u""_s }, { u"WAYLAND_DISPLAY"_s, u""_s } }, platform, u"offscreen"_s);
    usage("nothing",           u""_s,                         u"vorkel: a command is missing. Try 'vorkel --help'.\n"_s);
    usage("unknown command",   u"show"_s,                     u"vorkel: there is no command 'show'. Try 'vorkel --help'.\n"_s);
    usage("no program",        u"info"_s,                     u"vorkel: the program to start is missing: it stands behind '--'. Try 'vorkel info --help'.\n"_s);
    usage("no --",             u"info true"_s,                u"vorkel: 'true' is not understood; the program to start stands behind '--'. Try 'vorkel info --help'.\n"_s);
    usage("unknown option",    u"info --fast -- true"_s,      u"vorkel: Unknown option 'fast'. Try 'vorkel info --help'.\n"_s);
    for (const char *port : { "1x", "65536" })
        usage(port, u"info --port=%1 -- true"_s.arg(QLatin1String(port)), u"vorkel: --port takes a number from 0 to 65535, not '%1'. Try 'vorkel info --help'.\n"_s.arg(QLatin1String(port)));
    for (const char *limit : { "0", "s", "nan", "1e9" })
        usage(limit, u"info --timeout=%1 -- true"_s.arg(QLatin1String(limit)), u"vorkel: --timeout takes a number of seconds above 0, not '%1'. Try 'vorkel info --help'.\n"_s.arg(QLatin1String(limit)));
    usage("malformed call",    u"call getPID f( -- true"_s,   u"vorkel: 'f(' is no call; write NAME or NAME(JSON, ...)\n"_s);
    row("no such host",        { u"info"_s, u"--host="_s, u"--"_s, u"true"_s },          3, {}, u", port 0: no such host\n"_s);
    row("foreign host",        { u"info"_s, u"--host=192.0.2.1"_s, u"--"_s, u"true"_s }, 3, {}, u"vorkel: cannot listen on 192.0.2.1, port 0: Cannot assign requested address\n"_s);
    start("not executable",    { locked },                                 4, u"vorkel: cannot start '%1': Permission denied\n"_s.arg(locked));
    start("no Qt",             { u"true"_s },                              5, u"vorkel: 'true' "_s + noQt + u"before it ended with code 0"_s);
    row("no Qt, no end",       { u"info"_s, u"--timeout=0.3"_s, u"--"_s, u"sleep"_s, u"300"_s }, 5, {}, u"vorkel: 'sleep' "_s + noQt + u"within 0.3 s"_s);
    start("no application",    { m_program, u"none"_s },                   6, u"vorkel: '%1' ended with code 0 before it connected\n"_s.arg(m_program));
    row("stuck early",         { u"info"_s, u"--timeout=2"_s, u"--"_s, m_program, u"stickearly"_s },    7, {}, u"vorkel: waiting for %1 to connect\nvorkel: waited 2 s in vain for %1 to connect\n"_s.arg(m_program));
    row("stuck",               { u"info"_s, u"--timeout=8"_s, u"--"_s, m_program, u"stick"_s },         7, {}, u"vorkel: waited 8 s in vain for %1 to reach its event loop\n"_s.arg(m_program));
    start("no event loop",     { m_program, u"noloop"_s },                 8, u"vorkel: 'coreprogram' ended with code 7 before it reached its event loop; its last words:\nnothing to do\n"_s);
    start("short event loop",  { m_program, u"quit"_s },                   8, u"vorkel: 'coreprogram' ended with code 0\n"_s);
    start("hang-up",           { m_program, u"hangup"_s },                 8, u"vorkel: 'coreprogram' closed the connection\n"_s);
    // clang-format on
}

void tst_vorkel::says()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const QString, out);
    QFETCH(const QString, err);
    QFETCH(const Variables, variables);
    const Outcome outcome = run(arguments, variables);
    QVERIFY2(outcome.err.contains(err) && outcome.err.isEmpty() == err.isEmpty(), qPrintable(outcome.err));
    QVERIFY2(outcome.out.contains(out) && outcome.out.isEmpty() == out.isEmpty(), qPrintable(outcome.out));
    QTEST(outcome.code, "code");
}

void tst_vorkel::endsWhatItStarted_data()
{
    QTest::addColumn<int>("signal");
    QTest::addColumn<QString>("before");
    QTest::newRow("interrupted") << SIGINT << u""_s;
    QTest::newRow("hung up") << SIGHUP << u""_s;
    QTest::newRow("against their will") << SIGINT << u"trap '' TERM; "_s;
}

void tst_vorkel::endsWhatItStarted()
{
    QFETCH(const int, signal);
    QFETCH(const QString, before);
    ChildProcess process;
    const pid_t program = launchFrozen(process, family(before));
    const pid_t child = process.line("readStdout = \"").split('\\').constFirst().toInt();
    QVERIFY(program > 0 && child > 0);
    QVERIFY(!isGone(program) && !isGone(child));
    ::kill(static_cast<pid_t>(process.processId()), signal);
    QCOMPARE(process.finish(), 130);
    QCOMPARE(process.errorLines().constLast(), "vorkel: interrupted");
    QVERIFY(isGone(program));
    QTRY_VERIFY_WITH_TIMEOUT(isGone(child), LimitMs);
}

void tst_vorkel::keepsIgnoredSignals()
{
    if (qEnvironmentVariableIsSet("QEMU_LD_PREFIX"))
        QSKIP("The emulator takes all signals itself, so the kernel does not show which ones are ignored");
    ChildProcess process;
    process.setChildProcessModifier([] { ::signal(SIGHUP, SIG_IGN); });
    QVERIFY(launchFrozen(process, { m_program, u"run"_s }) > 0);
    QFile status(u"/proc/%1/status"_s.arg(process.processId()));
    QVERIFY(status.open(QIODevice::ReadOnly));
    const auto mask = QRegularExpression(u"SigIgn:\\s*(\\w+)"_s).match(QString::fromLatin1(status.readAll()));
    QVERIFY(mask.captured(1).toULongLong(nullptr, 16) & (1U << (SIGHUP - 1)));
    ::kill(static_cast<pid_t>(process.processId()), SIGINT);
    QCOMPARE(process.finish(), 130);
}

void tst_vorkel::showsProgressOnTerminal()
{
    const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
    QVERIFY(terminal != -1 && ::grantpt(terminal) == 0 && ::unlockpt(terminal) == 0);
    ChildProcess process;
    process.setStandardErrorFile(QString::fromLocal8Bit(::ptsname(terminal)));
    // Slow to start, then slow to answer.
    launch(process,
           { u"call"_s, u"--timeout=8"_s, u"getLastError"_s, u"freeze"_s, u"--"_s, u"sh"_s, u"-c"_s,
             u"sleep 2; exec \"$0\" run"_s, m_program });
    QCOMPARE(process.finish(), 7);
    QCOMPARE(process.readAllStandardOutput(), "getLastError = \"\"\n");
    // A terminal hands out what it has got so far.
    QByteArray shown;
    char part[1000];
    for (ssize_t length; (length = ::read(terminal, part, sizeof part)) > 0;)
        shown.append(part, length);
    ::close(terminal);
    const QByteArray erase = "\r\x1b[K";
    QVERIFY2(shown.startsWith(erase + "vorkel: waiting for sh to connect, 1 s" + erase), shown.constData());
    QVERIFY2(shown.contains(erase + "vorkel: waiting for the reply to freeze, 1 s" + erase),
             shown.constData());
    QVERIFY2(shown.endsWith(erase + "vorkel: waited 8 s in vain for the reply to freeze\r\n"),
             shown.constData());
}

QTEST_GUILESS_MAIN(tst_vorkel)
#include "tst_vorkel.moc"
