#include "endtoend/session.h"

using namespace Qt::StringLiterals;

/// Whatever becomes of the runner, the application goes on.
class tst_runnerloss : public QObject
{
    Q_OBJECT

private slots:
    void outlivesRunner_data();
    void outlivesRunner();
    void outlivesGarbage_data();
    void outlivesGarbage();
    void outlivesRunnerThatReadsNoMore();
};

void tst_runnerloss::outlivesRunner_data()
{
    QTest::addColumn<QString>("orders");
    QTest::addColumn<QByteArrayList>("logged");
    static const QByteArray duringInit = " during AUT initialization, aborting hookup";
    static const QByteArray noBroadcast = "Could not send broadcast message to server, aborting hookup";
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
    const QString handshake = u"accept handshake"_s;
    const QString announced = handshake + u" expect=requestDescriptorData"_s;
    const QString up = announced + u" send=initDone expect=completed"_s;
    // clang-format off
    QTest::newRow("before it accepts")         << u"await"_s                                       << any;
    QTest::newRow("before the handshake")      << u"accept"_s                                      << any;
    QTest::newRow("behind our handshake")      << u"accept await=66"_s                             << noHandshake;
    QTest::newRow("in the handshake")          << u"accept await=66 raw=0000002A00000000070101"_s  << noHandshake;
    QTest::newRow("behind the handshake")      << handshake                                        << any;
    QTest::newRow("in the announcement")       << handshake + u" expect=log"_s                     << any;
    QTest::newRow("reset in the announcement") << handshake + u" expect=log reset"_s               << any;
    QTest::newRow("behind the announcement")   << announced                                        << closed;
    QTest::newRow("in a prefix")               << announced + u" raw=0000"_s                       << closed;
    QTest::newRow("in a message")              << announced + u" half=getPID"_s                    << closed;
    QTest::newRow("between chunks")            << announced + u" raw=000000180000000900000001000000010000000500000002"_s << closed;
    QTest::newRow("behind a call")             << announced + u" call=getPID"_s                    << closed;
    QTest::newRow("reset in the wait")         << announced + u" reset"_s                          << closed;
    QTest::newRow("at the end of bring-up")    << announced + u" send=initDone"_s                  << QByteArrayList();
    QTest::newRow("reset at its end")          << announced + u" send=initDone reset"_s            << QByteArrayList();
    QTest::newRow("when it is up")             << up                                               << QByteArrayList();
    QTest::newRow("reset when it is up")       << up + u" reset"_s                                 << QByteArrayList();
    QTest::newRow("up, in a message")          << up + u" half=getPID"_s                           << QByteArrayList();
    QTest::newRow("up, in a huge message")     << up + u" raw=FFFFFFFF0102"_s                      << QByteArrayList();
    QTest::newRow("up, behind a call")         << up + u" call=getPID half=getPID"_s               << QByteArrayList();
    // clang-format on
}

void tst_runnerloss::outlivesRunner()
{
    QFETCH(QString, orders);
    QFETCH(QByteArrayList, logged);
    Session session;
    session.startRunner((orders + u" sit"_s).split(u' '));
    session.startAut();
    QVERIFY(!session.runner.line("sitting").isNull());
    session.killRunner();
    QVERIFY(!session.aut.line("running").isNull());
    session.verifyLife("0");
    const QByteArrayList lines = session.aut.errorLines();
    if (!logged.contains("one of"))
        QCOMPARE(lines, logged);
    for (const QByteArray &line : lines)
        QVERIFY2(logged.contains(line), line.constData());
}

void tst_runnerloss::outlivesGarbage_data()
{
    QTest::addColumn<QString>("orders");
    QTest::addColumn<bool>("isEnd");
    const QString handshake = u"accept handshake expect=requestDescriptorData"_s;
    const QString up = handshake + u" send=initDone expect=completed"_s;
    QTest::newRow("in bring-up") << handshake + u" garbage=500 send=initDone"_s << false;
    QTest::newRow("when it is up") << up + u" garbage=500"_s << false;
    QTest::newRow("bad prefix in bring-up") << handshake + u" raw=00000002"_s << true;
    QTest::newRow("bad prefix when it is up") << up + u" raw=0000000041414141"_s << true;
}

// Messages that mean nothing are told and left; a stream that is none of messages is closed.
void tst_runnerloss::outlivesGarbage()
{
    QFETCH(QString, orders);
    QFETCH(bool, isEnd);
    Session session;
    session.startRunner((orders + (isEnd ? u" drain"_s : u" call=getOSName sit"_s)).split(u' '));
    session.startAut();
    QVERIFY(!session.aut.line("running").isNull());
    if (isEnd)
        QCOMPARE(session.runner.finish(), 0);
    else
        QCOMPARE(session.runner.line("reply 9>1 #1 "), "(Linux)");
    session.verifyLife(isEnd ? "0" : "1");
    QVERIFY(!session.aut.errorLines().isEmpty());
}

// Takes ten seconds: as long as a runner is given to read on.
void tst_runnerloss::outlivesRunnerThatReadsNoMore()
{
    Session session;
    session.startRunner({ u"accept"_s, u"handshake"_s, u"send=initDone"_s, u"expect=completed"_s,
                          u"flood=autInfo:environmentVariable:VORKEL_TST_LONG"_s, u"sit"_s });
    session.startAut({ { u"VORKEL_TST_LONG"_s, QString(5000, u'x') } });
    QVERIFY(!session.aut.line("running").isNull());
    session.verifyLife("0");
    QCOMPARE(session.aut.errorLines(),
             QByteArrayList { "IPC::sendData: couldn't write to socket for 10s, "
                              "assume that the peer closed the connection" });
}

QTEST_GUILESS_MAIN(tst_runnerloss)
#include "tst_runnerloss.moc"
