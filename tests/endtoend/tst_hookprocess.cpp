#include "endtoend/session.h"

#include "support/fakerunner.h"

using namespace Qt::StringLiterals;

/// What the environment makes of the hook of a real process, and what its runner hears.
class tst_hookprocess : public QObject
{
    Q_OBJECT

private slots:
    void isInert_data();
    void isInert();
    void cannotConnect_data();
    void cannotConnect();
    void isRefused_data();
    void isRefused();
    void bringsUp_data();
    void bringsUp();
};

namespace {

const QByteArray noBroadcast = "Could not send broadcast message to server, aborting hookup";

} // namespace

void tst_hookprocess::isInert_data()
{
    QTest::addColumn<QString>("runnerId");
    for (const QString &id : { QString(), u""_s, u"0"_s, u"-7"_s, u"7a"_s })
        QTest::newRow(id.isNull() ? "unset" : qPrintable(u'\'' + id + u'\'')) << id;
}

void tst_hookprocess::isInert()
{
    QFETCH(QString, runnerId);
    Session session;
    session.startAut(
            { { u"VORKEL_RUNNERID"_s, runnerId }, { u"VORKEL_APPID"_s, {} }, { u"VORKEL_RECORD"_s, {} } });
    QCOMPARE(session.aut.line("created "), "runner=-1 app=0 subprocess=0");
    session.verifyLife("1");
    QCOMPARE(session.aut.errorLines(),
             QByteArrayList {
                     "VORKEL_RUNNERID was not set, set to an empty string or is not a positive number" });
}

void tst_hookprocess::cannotConnect_data()
{
    QTest::addColumn<QString>("host");
    QTest::addColumn<QString>("port");
    QTest::addColumn<QString>("failure");
    const QString nobody = QString::number(FakeRunner().port());
    const QString name(70, u'x');
    QTest::newRow("nobody there") << u""_s << nobody
                                  << u"127.0.0.1, port %1: Connection refused"_s.arg(nobody);
    QTest::newRow("given host") << u"127.0.0.2"_s << nobody
                                << u"127.0.0.2, port %1: Connection refused"_s.arg(nobody);
    QTest::newRow("largest port") << name << u"65535"_s << name + u", port 65535: Host name not found"_s;
    for (const QString &bad : { u""_s, u"0"_s, u"abc"_s, u"65536"_s, u"-1"_s, QString() })
        QTest::newRow(qPrintable(u"port '%1'"_s.arg(bad)))
                << name << bad << name + u", port 4322: Host name not found"_s;
}

void tst_hookprocess::cannotConnect()
{
    QFETCH(QString, host);
    QFETCH(QString, port);
    QFETCH(QString, failure);
    Session session;
    session.startAut({ { u"VORKEL_SERVERADDRESS"_s, host }, { u"VORKEL_PORT"_s, port } });
    QCOMPARE(session.aut.line("created "), "runner=7 app=0 subprocess=1");
    session.verifyLife("0");
    QByteArrayList lines = session.aut.errorLines();
    if (failure.endsWith(u"not found"_s)) // the resolver's own words
        QVERIFY(lines.takeFirst().startsWith("FHostAddress::getHostByName: could not resolve"));
    QCOMPARE(lines,
             (QByteArrayList { "Could not connect to Vorkel server at host " + failure.toUtf8(),
                               noBroadcast }));
}

void tst_hookprocess::isRefused_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QByteArray>("failure");
    // clang-format off
    QTest::newRow("with a reason")      << u"raw=0000001C00000000070101F0070000A0000000010000000400480069"_s << QByteArray("Hi");
    QTest::newRow("too old")            << u"raw=0000001C000000000700009F070000A0000000000000000000000000"_s << QByteArray("Incompatible protocol versions. Remote side is version 7.0.0 but we need at least 7.0.0");
    QTest::newRow("no message")         << u"raw=00000001"_s               << QByteArray("Connection is closed during handshake");
    QTest::newRow("no answer for 10 s") << u"raw="_s                       << QByteArray("Timeout expired during handshake");
    // clang-format on
}

void tst_hookprocess::isRefused()
{
    QFETCH(QString, answer);
    QFETCH(QByteArray, failure);
    Session session;
    session.startRunner({ u"accept"_s, answer, u"drain"_s });
    session.startAut();
    QCOMPARE(session.aut.line("created "), "runner=7 app=0 subprocess=1");
    QCOMPARE(session.runner.finish(), 0);
    session.verifyLife("0");
    QByteArrayList lines = session.aut.errorLines();
    lines.removeOne("Invalid message size prefix");
    QCOMPARE(lines, (QByteArrayList { failure, noBroadcast }));
}

void tst_hookprocess::bringsUp_data()
{
    QTest::addColumn<Session::Variables>("variables");
    QTest::addColumn<QString>("orders");
    QTest::addColumn<QByteArrayList>("said"); // by the runner
    QTest::addColumn<QByteArray>("created");
    QTest::addColumn<QByteArrayList>("logged");
    const auto row = [](const char *title, const Session::Variables &variables, const QString &orders,
                        const QByteArrayList &said, const char *created, const QByteArrayList &logged) {
        QTest::newRow(title) << variables << orders << said << QByteArray(created) << logged;
    };
    const QByteArray noAppId = "VORKEL_APPID was not set or set to a null string";
    const QByteArray noRecord = "VORKEL_RECORD was not set or set to a null string";
    const QString announced = u" expect=log expect=subprocessHooked expect=requestDescriptorData"_s;
    const QString done = u" send=initDone expect=completed"_s;
    // clang-format off
    row("as expected", {}, u"handshake"_s + announced + done, {
            "announced 9 7 4 aut",
            "send 9>-1 log(7,\tApplication connected...)",
            "send 9>-1 subprocessHooked(9)",
            "send 9>7 requestDescriptorData(9,tiny)",
            "send 9>-1 log(7,\tHook-up completed...)" },
        "runner=7 app=9 subprocess=0", {});
    row("as a subprocess", {}, u"handshake=12 send=setRunnerId:30"_s + announced + done, {
            "announced 9 7 4 aut",
            "send 12>-1 log(7,\tApplication connected...)",
            "send 12>-1 subprocessHooked(12)",
            "send 12>7 requestDescriptorData(12,tiny)",
            "send 12>-1 log(30,\tHook-up completed...)" },
        "runner=30 app=12 subprocess=1", {});
    row("runner id kept", {}, u"handshake send=setRunnerId:30"_s + done,
        { "announced 9 7 4 aut", "send 9>-1 log(7,\tHook-up completed...)" },
        "runner=7 app=9 subprocess=0", {});
    row("little said", { { u"VORKEL_APPID"_s, {} }, { u"VORKEL_RECORD"_s, u""_s }, { u"VORKEL_SERVERADDRESS"_s, u"localhost"_s } },
        u"handshake=5"_s + done, { "announced 0 7 4 aut" },
        "runner=7 app=5 subprocess=1", { noAppId, noAppId, noRecord });
    row("odd numbers", { { u"VORKEL_APPID"_s, u"x"_s }, { u"VORKEL_RECORD"_s, u"y"_s } },
        u"handshake"_s + done, { "announced 0 7 4 aut" },
        "runner=7 app=0 subprocess=0", {});
    row("served meanwhile", {}, u"handshake call=getOSName call=setError:oops call=getLastError call=nothing send=objectDescriptorData:0x610062"_s + done, {
            "announced 9 7 4 aut",
            "reply 9>1 #1 (Linux)",
            "reply 9>1 #2 ()",
            "reply 9>1 #3 (oops)",
            "reply 9>1 #4 ()" },
        "runner=7 app=9 subprocess=0", { "Hook::handleCall: unhandled function nothing" });
    row("byte by byte", {}, u"slow handshake call=getOSName send=objectDescriptorData:0x610062"_s + done + u" call=autInfo:environmentVariable:VORKEL_APPID"_s, {
            "announced 9 7 4 aut",
            "reply 9>1 #1 (Linux)",
            "send 9>-1 log(7,\tHook-up completed...)",
            "reply 9>1 #2 (9)" },
        "runner=7 app=9 subprocess=0", {});
    // clang-format on
}

// Then the runner is killed, and the hook goes.
void tst_hookprocess::bringsUp()
{
    QFETCH(Session::Variables, variables);
    QFETCH(QString, orders);
    QFETCH(QByteArrayList, said);
    QFETCH(QByteArrayList, logged);
    Session session;
    session.startRunner((u"accept "_s + orders + u" sit"_s).split(u' '));
    session.startAut(variables);
    for (const QByteArray &expected : std::as_const(said))
        QCOMPARE(session.runner.line(""), expected);
    QVERIFY(!session.runner.line("sitting").isNull());
    if (orders.contains(u"objectDescriptorData"_s))
        QCOMPARE(session.aut.line("descriptor "), "61006200");
    QTEST(session.aut.line("created "), "created");
    QVERIFY(session.hookIs("1"));
    session.killRunner();
    session.verifyLife("0");
    QCOMPARE(session.aut.errorLines(), logged);
}

QTEST_GUILESS_MAIN(tst_hookprocess)
#include "tst_hookprocess.moc"
