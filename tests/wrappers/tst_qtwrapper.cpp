#include "application.h"
#include "callsyntax.h"
#include "registrar.h"
#include "support/childprocess.h"
#include "tcpserver.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;
using Vorkel::Runner::Application;

// Programs that know nothing of the hook, started with it preloaded.

namespace {

constexpr int LimitMs = 60000;
const QString designer = u"/usr/lib/qt6/bin/designer"_s;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool isSanitized = true;
#else
constexpr bool isSanitized = false;
#endif

QString built(const QString &path)
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + u'/' + path);
}

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

struct Trace
{
    int code = -1;
    QByteArray out;
    QByteArray err;
};

/// What the process leaves when it has ended by itself; whoever it talks to here can answer meanwhile.
Trace traceOf(ChildProcess &process)
{
    process.closeWriteChannel();
    const bool ended = QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, LimitMs);
    const bool byItself = ended && process.exitStatus() == QProcess::NormalExit;
    return { byItself ? process.exitCode() : -1, process.readAllStandardOutput(),
             process.readAllStandardError() };
}

Trace traceOf(const QStringList &command, const QProcessEnvironment &environment)
{
    ChildProcess process;
    process.launch(command.first(), command.mid(1), environment);
    return traceOf(process);
}

/// Serves whoever connects.
class Server : public QObject
{
    Q_OBJECT

public:
    Server()
    {
        connect(&m_server, &Vorkel::MessagingServer::newChannel, &m_registrar,
                &Vorkel::IPCHandshaker::addChannel);
        connect(&m_registrar, &Vorkel::IPCHandshaker::newChannel, this,
                [this](Vorkel::AsyncMessageChannel *channel, const Vorkel::ClientData &data) {
                    auto &application = applications.emplace_back(new Application(channel, data, nullptr));
                    connect(application.get(), &Application::aboutToExit, this, [this] { ++exits; });
                });
        if (!m_server.listen(u"127.0.0.1"_s, 0).isOk())
            qFatal("cannot listen on loopback");
    }

    /// What an application needs to find this; without preloading, for a command that does so itself.
    [[nodiscard]] QProcessEnvironment environment(bool preload = true) const
    {
        QProcessEnvironment environment = preload ? preloaded(u"1"_s) : QProcessEnvironment();
        environment.insert(u"VORKEL_RUNNERID"_s, u"1"_s);
        environment.insert(u"VORKEL_SERVERADDRESS"_s, u"127.0.0.1"_s);
        environment.insert(u"VORKEL_PORT"_s, QString::number(m_server.port()));
        environment.insert(u"VORKEL_APPID"_s, QString::number(Vorkel::Runner::Registrar::FirstApplication));
        environment.insert(u"VORKEL_RECORD"_s, u"0"_s);
        return environment;
    }

    [[nodiscard]] bool await(size_t count, Application::Stage stage) const
    {
        return QTest::qWaitFor(
                [&] {
                    return applications.size() == count
                            && std::ranges::all_of(applications,
                                                   [&](const auto &one) { return one->stage() == stage; });
                },
                LimitMs);
    }

    std::vector<std::unique_ptr<Application>> applications;
    int exits = 0;

private:
    Vorkel::Runner::TcpServer m_server;
    Vorkel::Runner::Registrar m_registrar { nullptr };
};

/// The reply to a call as JSON text.
QString answer(Application &application, const QString &function, const Vorkel::ArgumentList &arguments = {})
{
    struct Listener : Vorkel::ResponseListener<Vorkel::ArgumentList>
    {
        void response(const Vorkel::FunctionCallResult<Vorkel::ArgumentList> &result) override
        {
            text = result.isOk() ? Vorkel::Runner::toJsonText(result.value().value(0)) : result.error();
        }
        QString text;
    };
    Listener listener;
    const int id = application.call(function, arguments, &listener);
    if (!QTest::qWaitFor([&] { return !listener.text.isEmpty(); }, LimitMs))
        application.cancelCall(id);
    return listener.text;
}

} // namespace

class tst_qtwrapper : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void staysSilentWithoutRunner_data();
    void staysSilentWithoutRunner();
    void saysWhyThereIsNoRunner_data();
    void saysWhyThereIsNoRunner();
    void leavesChildrenWithoutQtAlone();
    void reachesTheRunner_data();
    void reachesTheRunner();
    void reachesTheRunnerBriefly_data();
    void reachesTheRunnerBriefly();
    void takesQtChildrenAsSubprocesses();
    void goesOnWithoutRunner();
    void becomesTheProgram();
    void handsOnWhatItWasGiven();
    void hooksForeignPrograms_data();
    void hooksForeignPrograms();

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
    const Trace expected = traceOf(command, {});
    QVERIFY2(expected.out.endsWith("sockets 0, hook 0\n"), expected.out.constData());
    for (const QString &runnerId : { QString(), u""_s }) {
        const Trace trace = traceOf(command, preloaded(runnerId));
        QCOMPARE(trace.out, expected.out);
        QCOMPARE(trace.err, expected.err);
        QCOMPARE(trace.code, expected.code);
    }
}

void tst_qtwrapper::saysWhyThereIsNoRunner_data()
{
    QTest::addColumn<QString>("runnerId");
    for (const char *id : { "abc", "0", "-1", "1x", "99999999999" })
        QTest::newRow(id) << QString::fromLatin1(id);
}

void tst_qtwrapper::saysWhyThereIsNoRunner()
{
    QFETCH(const QString, runnerId);
    const Trace trace = traceOf({ m_core, u"quit"_s }, preloaded(runnerId));
    QCOMPARE(trace.err, "VORKEL_RUNNERID was not set, set to an empty string or is not a positive number\n");
    QCOMPARE(trace.out, "sockets 0, hook 1\n");
    QCOMPARE(trace.code, 0);
}

void tst_qtwrapper::leavesChildrenWithoutQtAlone()
{
    if (machineOf(u"/bin/sh"_s) != machineOf(QCoreApplication::applicationFilePath()))
        QSKIP("The shell is for another machine and cannot load our library");
    const QStringList command { m_core, u"parent"_s, u"sh"_s, u"-c"_s, u"env; echo it works; exit 5"_s };
    const Server server;
    Trace trace = traceOf(command, server.environment());
    QCOMPARE(trace.code, 5);
    QCOMPARE(trace.err, "");
    QCOMPARE(server.applications.size(), 1U);

    const auto lines = [](const QByteArray &out) {
        QByteArrayList all = out.split('\n');
        all.removeIf([](const QByteArray &line) {
            return line.startsWith("VORKEL_") || line.startsWith("LD_PRELOAD=");
        });
        std::ranges::sort(all);
        return all;
    };
    QCOMPARE(lines(trace.out.replace("sockets 1, hook 1\n", "sockets 0, hook 0\n")),
             lines(traceOf(command, {}).out));
}

void tst_qtwrapper::reachesTheRunner_data()
{
    QTest::addColumn<QStringList>("command");
    QTest::addColumn<int>("exits");
    // clang-format off
    QTest::newRow("core")                      << QStringList { m_core, u"run"_s }   << 1;
    QTest::newRow("gui")                       << QStringList { m_gui, u"run"_s }    << 1;
    QTest::newRow("events pumped by hand")     << QStringList { m_core, u"pump"_s }  << 0;
    QTest::newRow("nested loop first")         << QStringList { m_core, u"nest"_s }  << 1;
    QTest::newRow("two applications")          << QStringList { m_core, u"twice"_s } << 1;
    QTest::newRow("first application unused")  << QStringList { m_gui, u"waste"_s }  << 1;
    // clang-format on
}

void tst_qtwrapper::reachesTheRunner()
{
    QFETCH(const QStringList, command);
    const Server server;
    ChildProcess process;
    process.launch(command.first(), command.mid(1), server.environment());
    QVERIFY(server.await(1, Application::Stage::Ready));
    Application &application = *server.applications.front();
    QCOMPARE(application.name(), QFileInfo(command.first()).fileName());
    QCOMPARE(answer(application, u"getPID"_s), QString::number(process.processId()));
    process.say("quit");
    const Trace trace = traceOf(process);
    QCOMPARE(trace.code, 0);
    QCOMPARE(trace.out, "running\nsockets 1, hook 1\n");
    QCOMPARE(trace.err, "");
    QTRY_VERIFY_WITH_TIMEOUT(!application.isOpen(), LimitMs);
    QTEST(server.exits, "exits");
}

void tst_qtwrapper::reachesTheRunnerBriefly_data()
{
    QTest::addColumn<QString>("deed");
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("stage");
    QTest::newRow("quits in its first event") << u"quit"_s << 0 << int(Application::Stage::Ready);
    QTest::newRow("runs no event loop") << u"noloop"_s << 7 << int(Application::Stage::Initialised);
}

void tst_qtwrapper::reachesTheRunnerBriefly()
{
    QFETCH(const QString, deed);
    QFETCH(const int, stage);
    const Server server;
    const Trace trace = traceOf({ m_core, deed }, server.environment());
    QTEST(trace.code, "code");
    QCOMPARE(server.applications.size(), 1U);
    QTRY_VERIFY_WITH_TIMEOUT(!server.applications.front()->isOpen(), LimitMs);
    QCOMPARE(int(server.applications.front()->stage()), stage);
}

void tst_qtwrapper::takesQtChildrenAsSubprocesses()
{
    const Server server;
    ChildProcess process;
    process.launch(m_core, { u"parent"_s, m_gui, u"run"_s }, server.environment());
    QVERIFY(server.await(2, Application::Stage::Ready));
    Application &parent = *server.applications.front();
    Application &child = *server.applications.back();
    QCOMPARE(parent.address(), 2U);
    QCOMPARE(child.address(), 3U);
    QCOMPARE(child.name(), u"guiprogram"_s);
    QCOMPARE(answer(parent, u"getPID"_s), QString::number(process.processId()));
    const QString childId = answer(child, u"getPID"_s);
    QVERIFY2(childId.toInt() > 0 && childId != answer(parent, u"getPID"_s), qPrintable(childId));
    process.say("quit");
    QCOMPARE(traceOf(process).code, 0);
    QTRY_COMPARE_WITH_TIMEOUT(server.exits, 2, LimitMs);
}

void tst_qtwrapper::goesOnWithoutRunner()
{
    Server server;
    ChildProcess process;
    process.launch(m_gui, { u"run"_s }, server.environment());
    QVERIFY(server.await(1, Application::Stage::Ready));
    server.applications.clear();
    const auto hasLetGo = [&] {
        process.say("traces");
        return process.line("sockets ").startsWith('0');
    };
    QVERIFY(QTest::qWaitFor(hasLetGo, LimitMs));
    process.say("still here");
    QCOMPARE(process.line("still "), "here");
    process.say("quit");
    QCOMPARE(traceOf(process).code, 0);
}

void tst_qtwrapper::becomesTheProgram()
{
    const Server server;
    ChildProcess process;
    const QStringList words { u"run"_s, u"a b"_s, u""_s, u"--"_s, u"--help"_s, u"ü"_s };
    process.launch(m_command, QStringList { u"inject"_s, u"--"_s, m_core } + words,
                   server.environment(false));
    QVERIFY(server.await(1, Application::Stage::Ready));
    Application &application = *server.applications.front();
    QCOMPARE(answer(application, u"getPID"_s), QString::number(process.processId()));
    QCOMPARE(answer(application, u"autInfo"_s, { u"arguments"_s }),
             Vorkel::Runner::toJsonText(QStringList(m_core) + words));
    process.say("quit");
    QCOMPARE(traceOf(process).code, 0);
}

void tst_qtwrapper::handsOnWhatItWasGiven()
{
    // Neither is text, and the option is one that Qt would keep to itself.
    qputenv("TEXT", "\xFF\n\xC3");
    const QStringList command { m_command, u"inject"_s,
                                u"--"_s,   u"sh"_s,
                                u"-c"_s,   u"printf '<%s>' \"$@\"; printenv TEXT; exit 9"_s,
                                u"sh"_s,   u"-qmljsdebugger=x"_s,
                                u"a  b"_s, u""_s };
    const Trace trace = traceOf(command, {});
    qunsetenv("TEXT");
    QCOMPARE(trace.out, "<-qmljsdebugger=x><a  b><>\xFF\n\xC3\n");
    QCOMPARE(trace.code, 9);

    const Trace nobody = traceOf({ m_command, u"inject"_s, u"--"_s, u"./no such"_s }, {});
    QCOMPARE(nobody.err, "vorkel: cannot start './no such': No such file or directory\n");
    QCOMPARE(nobody.code, 4);
}

void tst_qtwrapper::hooksForeignPrograms_data()
{
    QTest::addColumn<QStringList>("command");
    QTest::newRow("preloaded") << QStringList { designer };
    QTest::newRow("injected") << QStringList { m_command, u"inject"_s, u"--"_s, designer };
}

void tst_qtwrapper::hooksForeignPrograms()
{
    if (isSanitized)
        QSKIP("A program without the sanitizer's runtime cannot load our libraries");
    if (machineOf(designer) != machineOf(QCoreApplication::applicationFilePath()))
        QSKIP("Qt Designer is not installed for this machine");
    QFETCH(const QStringList, command);
    const Server server;
    ChildProcess process;
    process.launch(command.first(), command.mid(1), server.environment(command.size() == 1));
    QVERIFY(server.await(1, Application::Stage::Ready));
    Application &application = *server.applications.front();
    QCOMPARE(application.name(), u"designer"_s);
    QCOMPARE(answer(application, u"getPID"_s), QString::number(process.processId()));
}

QTEST_GUILESS_MAIN(tst_qtwrapper)
#include "tst_qtwrapper.moc"
