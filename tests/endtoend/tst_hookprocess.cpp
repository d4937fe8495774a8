#include "support/session.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Variables = Session::Variables;

const QByteArray noBroadcast = "Could not send broadcast message to server, aborting hookup";
const QByteArray badPrefix = "Invalid message size prefix";
const QByteArray duringInit = " during AUT initialization, aborting hookup";
const QString announced = u"accept handshake expect=requestDescriptorData"_s;
const QString up = announced + u" send=initDone expect=completed"_s;

[[nodiscard]] bool isConnected(ChildProcess &program)
{
    program.say("traces");
    return program.line("sockets ").startsWith('1');
}

/// The connection goes. The program runs on and costs nothing: its event loop wakes up for its own timer
/// only. It ends when told to, and well.
void verifyLife(ChildProcess &program)
{
    QTRY_VERIFY_WITH_TIMEOUT(!isConnected(program), 30000);
    program.say("rest");
    const QByteArrayList numbers = program.line("rested ").split(' '); // ticks, wake-ups
    QCOMPARE(numbers.size(), 2);
    QVERIFY2(numbers[1].toInt() < 4 * numbers[0].toInt(), numbers[1].constData());
    program.say("quit");
    QCOMPARE(program.finish(), 0);
}

} // namespace

/// A hook in a real process: what it makes of its environment, what its runner hears, and that the program
/// goes on whatever becomes of the runner.
class tst_hookprocess : public QObject
{
    Q_OBJECT

private slots:
    void cannotConnect_data();
    void cannotConnect();
    void bringsUp_data();
    void bringsUp();
    void outlivesRunner_data();
    void outlivesRunner();
};

void tst_hookprocess::cannotConnect_data()
{
    QTest::addColumn<QString>("host");
    QTest::addColumn<QString>("port");
    QTest::addColumn<QString>("failure");
    const QString nobody = QString::number(FakeRunner().port());
    const QString name(70, u'x');
    const QString refused = u", port %1: Connection refused"_s.arg(nobody);
    const QString notFound = u", port %1: Host name not found"_s;
    QTest::newRow("nobody there") << u""_s << nobody << u"127.0.0.1"_s + refused;
    QTest::newRow("given host") << u"127.0.0.2"_s << nobody << u"127.0.0.2"_s + refused;
    QTest::newRow("largest port") << name << u"65535"_s << name + notFound.arg(65535);
    for (const QString &bad : { u"0"_s, u"abc"_s, u"65536"_s, QString() })
        QTest::newRow(qPrintable(u"port '%1'"_s.arg(bad))) << name << bad << name + notFound.arg(4322);
}

void tst_hookprocess::cannotConnect()
{
    QFETCH(const QString, host);
    QFETCH(const QString, port);
    QFETCH(const QString, failure);
    Session session;
    session.start({ { u"VORKEL_SERVERADDRESS"_s, host }, { u"VORKEL_PORT"_s, port } });
    verifyLife(session.program);
    QByteArrayList lines = session.program.errorLines();
    if (failure.endsWith(u"not found"_s)) // the resolver's own words
        QVERIFY(lines.takeFirst().startsWith("FHostAddress::getHostByName: could not resolve"));
    QCOMPARE(lines.join('|'),
             "Could not connect to Vorkel server at host " + failure.toUtf8() + '|' + noBroadcast);
}

void tst_hookprocess::bringsUp_data()
{
    QTest::addColumn<Variables>("variables");
    QTest::addColumn<QString>("orders");
    QTest::addColumn<QStringList>("heard");
    QTest::addColumn<QByteArrayList>("logged");
    const auto row = [](const char *title, const Variables &variables, const QString &orders,
                        const QStringList &heard, const QByteArrayList &logged = {}) {
        QTest::newRow(title) << variables << orders << heard << logged;
    };
    const QByteArray noAppId = "VORKEL_APPID was not set or set to a null string";
    const QByteArray noRecord = "VORKEL_RECORD was not set or set to a null string";
    const QString all = u" expect=log expect=subprocessHooked expect=requestDescriptorData"_s;
    const QString done = u" send=initDone expect=completed"_s;
    // clang-format off
    row("as expected", {}, u"accept handshake send=setRunnerId:30"_s + all + done, {
            u"announced 9 7 4 coreprogram"_s,
            u"send 9>-1 log(7,\tApplication connected...)"_s,
            u"send 9>-1 subprocessHooked(9)"_s,
            u"send 9>7 requestDescriptorData(9,Qt)"_s,
            u"send 9>-1 log(7,\tHook-up completed...)"_s });
    row("as a subprocess", {}, u"accept handshake=12 send=setRunnerId:30"_s + all + done, {
            u"announced 9 7 4 coreprogram"_s,
            u"send 12>-1 log(7,\tApplication connected...)"_s,
            u"send 12>-1 subprocessHooked(12)"_s,
            u"send 12>7 requestDescriptorData(12,Qt)"_s,
            u"send 12>-1 log(30,\tHook-up completed...)"_s });
    row("little said", { { u"VORKEL_APPID"_s, {} }, { u"VORKEL_RECORD"_s, u""_s }, { u"VORKEL_SERVERADDRESS"_s, u"localhost"_s } },
        u"accept handshake=5"_s + done,
        { u"announced 0 7 4 coreprogram"_s, u"send 5>-1 log(7,\tHook-up completed...)"_s }, { noAppId, noAppId, noRecord });
    row("odd numbers", { { u"VORKEL_APPID"_s, u"x"_s }, { u"VORKEL_RECORD"_s, u"y"_s } }, u"accept handshake"_s + done,
        { u"announced 0 7 4 coreprogram"_s, u"send 0>-1 log(7,\tHook-up completed...)"_s });
    row("served meanwhile", {}, u"accept slow handshake call=getOSName call=setError:oops call=getLastError call=nothing"_s + done, {
            u"announced 9 7 4 coreprogram"_s,
            u"reply 9>1 #1 (Linux)"_s,
            u"reply 9>1 #2 ()"_s,
            u"reply 9>1 #3 (oops)"_s,
            u"reply 9>1 #4 ()"_s,
            u"send 9>-1 log(7,\tHook-up completed...)"_s },
        { "Hook::handleCall: unhandled function nothing" });
    // clang-format on
}

void tst_hookprocess::bringsUp()
{
    QFETCH(const Variables, variables);
    QFETCH(const QString, orders);
    QFETCH(const QByteArrayList, logged);
    Session session;
    session.start(variables);
    QCOMPARE(session.carryOut(orders), QString());
    QTEST(session.heard, "heard");
    QVERIFY(isConnected(session.program));
    QCOMPARE(session.carryOut(u"close"_s), QString());
    verifyLife(session.program);
    QCOMPARE(session.program.errorLines(), logged);
}

void tst_hookprocess::outlivesRunner_data()
{
    QTest::addColumn<QString>("orders");
    QTest::addColumn<QByteArrayList>("logged");
    const QByteArrayList closed { "Peer closed the connection" + duringInit };
    const QByteArrayList noHandshake { "Peer closed the connection during handshake", noBroadcast };
    // Where it depends on who is faster.
    const QByteArrayList any { "one of",
                               closed.first(),
                               "Connection is closed" + duringInit,
                               noHandshake.first(),
                               noBroadcast,
                               "Connection closed while sending handshake",
                               "Request for descriptor data could not be sent" };
    // clang-format off
    QTest::newRow("before it accepts")         << u"await"_s                                       << any;
    QTest::newRow("before the handshake")      << u"accept"_s                                      << any;
    QTest::newRow("behind our handshake")      << u"accept await=82"_s                             << noHandshake;
    QTest::newRow("in the handshake")          << u"accept await=82 raw=0000002A00000000070101"_s  << noHandshake;
    QTest::newRow("refusing")                  << u"accept raw=0000001C00000000070101F0070000A0000000010000000400480069 drain"_s << QByteArrayList { "Hi", noBroadcast };
    QTest::newRow("with no message")           << u"accept raw=00000001 drain"_s                   << QByteArrayList { badPrefix, "Connection is closed during handshake", noBroadcast };
    QTest::newRow("silent for 10 s")           << u"accept drain"_s                                << QByteArrayList { "Timeout expired during handshake", noBroadcast };
    QTest::newRow("behind the handshake")      << u"accept handshake"_s                            << any;
    QTest::newRow("reset in the announcement") << u"accept handshake expect=log reset"_s           << any;
    QTest::newRow("in a message")              << announced + u" half=getPID"_s                    << closed;
    QTest::newRow("between chunks")            << announced + u" raw=000000180000000900000001000000010000000500000002"_s << closed;
    QTest::newRow("reset in the wait")         << announced + u" reset"_s                          << closed;
    QTest::newRow("bad prefix")                << announced + u" raw=00000002 drain"_s             << QByteArrayList { badPrefix, "Connection is closed" + duringInit };
    QTest::newRow("at the end of bring-up")    << announced + u" send=initDone"_s                  << QByteArrayList();
    QTest::newRow("reset when it is up")       << up + u" reset"_s                                 << QByteArrayList();
    QTest::newRow("up, bad prefix")            << up + u" raw=0000000041414141 drain"_s            << QByteArrayList { badPrefix };
    // clang-format on
}

void tst_hookprocess::outlivesRunner()
{
    QFETCH(const QString, orders);
    QFETCH(const QByteArrayList, logged);
    Session session;
    session.start();
    QCOMPARE(session.carryOut(orders + u" close"_s), QString());
    QVERIFY(!session.program.line("running").isNull());
    verifyLife(session.program);
    const QByteArrayList lines = session.program.errorLines();
    if (!logged.contains("one of"))
        QCOMPARE(lines.join('|'), logged.join('|'));
    for (const QByteArray &line : lines)
        QVERIFY2(logged.contains(line), line.constData());
}

QTEST_GUILESS_MAIN(tst_hookprocess)
#include "tst_hookprocess.moc"
