#include "support/session.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

// Programs that know nothing of the hook, started with it preloaded.

namespace {

/// The part of a program's file that tells which machine it is for.
QByteArray machineOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(20).remove(5, 13) : QByteArray();
}

QProcessEnvironment preloaded(const QString &runnerId)
{
    QProcessEnvironment environment;
    environment.insert(u"LD_PRELOAD"_s, built(u"../lib/libvorkelqtpreload.so"_s));
    if (!runnerId.isNull())
        environment.insert(u"VORKEL_RUNNERID"_s, runnerId);
    return environment;
}

/// What the process leaves: standard output, standard error and exit code, with bars between.
QByteArray traceOf(ChildProcess &process)
{
    process.closeWriteChannel();
    const int code = process.finish();
    return process.readAllStandardOutput() + '|' + process.readAllStandardError() + '|'
            + QByteArray::number(code);
}

QByteArray traceOf(const QStringList &command, const QProcessEnvironment &environment)
{
    ChildProcess process;
    process.launch(command.first(), command.mid(1), environment);
    return traceOf(process);
}

const QString up = u"accept handshake send=initDone expect=completed call=getPID"_s;

} // namespace

class tst_qtwrapper : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void staysSilentWithoutRunner_data();
    void staysSilentWithoutRunner();
    void saysWhyThereIsNoRunner();
    void reachesTheRunner_data();
    void reachesTheRunner();
    void reachesTheRunnerBriefly();
    void takesQtChildrenAsSubprocesses();
    void leavesOtherChildrenAlone();
    void becomesTheProgram_data();
    void becomesTheProgram();
    void handsOnWhatItWasGiven();

private:
    const QString m_command = built(u"../bin/vorkel"_s);
    const QString m_core = built(u"coreprogram"_s);
    const QString m_gui = built(u"guiprogram"_s);
    const QTemporaryDir m_folder;
};

void tst_qtwrapper::initTestCase()
{
    // Without one Qt's platforms warn.
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_folder.path()));
    qputenv("HOME", QFile::encodeName(m_folder.path()));
}

void tst_qtwrapper::staysSilentWithoutRunner_data()
{
    QTest::addColumn<QStringList>("command");
    QTest::newRow("core") << QStringList { m_core, u"quit"_s };
    QTest::newRow("gui") << QStringList { m_gui, u"quit"_s };
    QTest::newRow("no application") << QStringList { m_core, u"none"_s };
    QTest::newRow("with a child") << QStringList { m_core, u"parent"_s, m_core, u"noloop"_s };
}

void tst_qtwrapper::staysSilentWithoutRunner()
{
    QFETCH(const QStringList, command);
    const QByteArray expected = traceOf(command, {});
    QVERIFY2(expected.contains("sockets 0, hook 0\n|"), expected.constData());
    QCOMPARE(traceOf(command, preloaded(QString())), expected);
    QCOMPARE(traceOf(command, preloaded(u""_s)), expected);
}

void tst_qtwrapper::saysWhyThereIsNoRunner()
{
    for (const QString &runnerId : { u"abc"_s, u"0"_s, u"-1"_s, u"1x"_s, u"99999999999"_s }) {
        QCOMPARE(traceOf({ m_core, u"quit"_s }, preloaded(runnerId)),
                 "sockets 0, hook 1\n|"
                 "VORKEL_RUNNERID was not set, set to an empty string or is not a positive number\n|0");
    }
}

void tst_qtwrapper::reachesTheRunner_data()
{
    QTest::addColumn<QStringList>("command");
    QTest::addColumn<bool>("tellsExit"); // when it is told to quit
    // clang-format off
    QTest::newRow("core")                      << QStringList { m_core, u"run"_s }   << true;
    QTest::newRow("gui")                       << QStringList { m_gui, u"run"_s }    << true;
    QTest::newRow("events pumped by hand")     << QStringList { m_core, u"pump"_s }  << false;
    QTest::newRow("nested loop first")         << QStringList { m_core, u"nest"_s }  << true;
    QTest::newRow("two applications")          << QStringList { m_core, u"twice"_s } << false;
    QTest::newRow("first application unused")  << QStringList { m_gui, u"waste"_s }  << true;
    // clang-format on
}

void tst_qtwrapper::reachesTheRunner()
{
    QFETCH(const QStringList, command);
    QFETCH(const bool, tellsExit);
    Session session;
    session.start({}, command);
    QCOMPARE(session.carryOut(up), QString());
    QVERIFY(command.first().endsWith(session.heard.first().section(u' ', -1)));
    QCOMPARE(session.heard.last(), u"reply 9>1 #1 (%1)"_s.arg(session.program.processId()));
    session.program.say("quit");
    QCOMPARE(traceOf(session.program), "running\nsockets 1, hook 1\n||0");
    QCOMPARE(session.carryOut(u"expect=appAboutToExit"_s).isNull(), tellsExit);
    QCOMPARE(session.carryOut(u"expect=anything"_s), u"expect=anything"_s);
}

// One quits in its first event, the other runs no event loop.
void tst_qtwrapper::reachesTheRunnerBriefly()
{
    for (const auto &[deed, orders, code] :
         { std::tuple(u"quit"_s, u" expect=completed drain"_s, 0), std::tuple(u"noloop"_s, u" drain"_s, 7) })
    {
        Session session;
        session.start({}, { m_core, deed });
        QCOMPARE(session.carryOut(u"accept handshake send=initDone"_s + orders), QString());
        QCOMPARE(session.program.finish(), code);
    }
}

void tst_qtwrapper::takesQtChildrenAsSubprocesses()
{
    Session session;
    session.start({}, { m_core, u"parent"_s, m_gui, u"run"_s });
    QCOMPARE(session.carryOut(u"accept handshake call=getPID send=initDone"_s), QString());
    const std::unique_ptr<FSocket> parent(session.runner.takeConnection());
    QCOMPARE(session.carryOut(u"accept handshake=12 send=initDone expect=completed call=getPID"_s),
             QString());
    QCOMPARE(session.heard.value(1), u"reply 9>1 #1 (%1)"_s.arg(session.program.processId()));
    QCOMPARE(session.heard.value(2), u"announced 9 7 4 guiprogram"_s);
    const int child = session.heard.last().section(u'(', 1).chopped(1).toInt();
    QVERIFY2(child > 0 && child != session.program.processId(), qPrintable(session.heard.last()));
    session.program.say("quit");
    QCOMPARE(session.program.finish(), 0);
}

void tst_qtwrapper::leavesOtherChildrenAlone()
{
    if (machineOf(u"/bin/sh"_s) != machineOf(m_core))
        QSKIP("The shell is for another machine and cannot load our library");
    Session session;
    session.start({}, { m_core, u"parent"_s, u"sh"_s, u"-c"_s, u"echo it works; exit 5"_s });
    QCOMPARE(session.carryOut(u"accept handshake send=initDone"_s), QString());
    QCOMPARE(traceOf(session.program), "it works\nsockets 1, hook 1\n||5");
}

void tst_qtwrapper::becomesTheProgram_data()
{
    QTest::addColumn<QStringList>("program");
    QTest::newRow("of ours") << QStringList { m_core, u"run"_s };
    QTest::newRow("foreign") << QStringList { u"/usr/lib/qt6/bin/designer"_s };
}

void tst_qtwrapper::becomesTheProgram()
{
    QFETCH(const QStringList, program);
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    if (program.first() != m_core)
        QSKIP("A program without the sanitizer's runtime cannot load our libraries");
#endif
    if (machineOf(program.first()) != machineOf(m_core))
        QSKIP("Qt Designer is not installed for this machine");
    Session session;
    session.start({ { u"LD_PRELOAD"_s, {} } }, QStringList { m_command, u"inject"_s, u"--"_s } + program);
    QCOMPARE(session.carryOut(up), QString());
    QCOMPARE(session.heard.last(), u"reply 9>1 #1 (%1)"_s.arg(session.program.processId()));
}

void tst_qtwrapper::handsOnWhatItWasGiven()
{
    // Neither is text, and the option is one that Qt would keep to itself.
    qputenv("TEXT", "\xFF\n\xC3");
    const QString script = u"printf '<%s>' \"$@\"; printenv TEXT; exit 9"_s;
    const QStringList inject { m_command, u"inject"_s, u"--"_s };
    const QStringList words { u"sh"_s, u"-c"_s, script, u"sh"_s, u"-qmljsdebugger=x"_s, u"a  b"_s, u""_s };
    const QByteArray trace = traceOf(inject + words, {});
    // A shell for another machine complains of our library.
    QVERIFY2(trace.startsWith("<-qmljsdebugger=x><a  b><>\xFF\n\xC3\n|") && trace.endsWith("|9"),
             trace.constData());
    qunsetenv("TEXT");
    QCOMPARE(traceOf(inject + QStringList(u"./no such"_s), {}),
             "|vorkel: cannot start './no such': No such file or directory\n|4");
}

QTEST_GUILESS_MAIN(tst_qtwrapper)
#include "tst_qtwrapper.moc"
