#include "serverlib/wire.h"

using namespace Qt::StringLiterals;
using Vorkel::ArgumentList;
using Vorkel::AsyncIPC;

/// Two endpoints and what passes between them. The kind of channel differs where it matters.
class tst_wire : public QObject
{
    Q_OBJECT

private slots:
    void failsWithoutPeer();
    void answersLater();
    void carriesBodies_data();
    void carriesBodies();
    void timesOut();
    void cancelsWhileFailing();
    void failsPendingCallsAtTheEnd_data();
    void failsPendingCallsAtTheEnd();
    void survivesItsOwnEnd_data();
    void survivesItsOwnEnd();
};

void tst_wire::failsWithoutPeer()
{
    RecordingListener listener;
    Wire wire(Null);
    QVERIFY(!wire.ours->isOpen());
    QCOMPARE(wire.ours->send(u"one"_s, {}), -1);
    QCOMPARE(wire.ours->asyncCall(u"echo"_s, {}, &listener), -1);
    QTRY_COMPARE(listener.outcomes, QStringList { u"failed Call failed: Failed enqueing message chunk"_s });
}

// By listener or as a request; and with nobody there to serve, at once.
void tst_wire::answersLater()
{
    RecordingListener listener;
    Wire wire(Direct);
    wire.peer.keepsCalls = true;
    (void)wire.ours->asyncCall(u"keep"_s, {}, &listener);
    QVERIFY(listener.outcomes.isEmpty());
    wire.answerKept(Vorkel::FunctionCallResult<ArgumentList>::failure(u"sorry"_s));
    wire.peer.takesCalls = true;
    const int taken = wire.ours->asyncCall(u"take"_s, {}, &listener);
    QVERIFY(!wire.ours->isCallCompleted(taken));
    wire.peers->callReply(Own, taken, ArgumentList { u"a"_s, u"b"_s });
    wire.peers->setHandler(nullptr);
    (void)wire.ours->asyncCall(u"void"_s, {}, &listener);
    QCOMPARE(wire.peer.heard, (QStringList { u"kept 9 keep()"_s, u"taken 9 take()"_s }));
    QCOMPARE(listener.outcomes, (QStringList { u"failed sorry"_s, u"ok a,b"_s, u"ok "_s }));
}

void tst_wire::carriesBodies_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QByteArray>("content");
    const qsizetype around = Bytes::invocation(u"x"_s, { QByteArray("") }).size();
    for (const int size : { 100, 10216, 10217, 10216 + 10240, 10216 + 10241, 3000000 })
        QTest::addRow("direct, %d bytes", size) << int(Direct) << Bytes::noise(size - around);
    QTest::newRow("tcp") << int(Tcp) << Bytes::noise(3000000);
    QTest::newRow("mixed") << int(Direct)
                           << Bytes::noise(2000000) + QByteArray(9000000, 'x') + Bytes::noise(300000);
}

// The answer brings the argument back. What does not deflate must not hide what does.
void tst_wire::carriesBodies()
{
    QFETCH(const int, kind);
    QFETCH(const QByteArray, content);
    const qsizetype size = Bytes::invocation(u"x"_s, { content }).size();
    RecordingListener listener;
    Wire wire(kind);
    (void)wire.ours->asyncCall(u"x"_s, { content }, &listener);
    QTRY_COMPARE(listener.outcomes.size(), 1);
    QVERIFY(listener.outcomes.first() == u"ok "_s + QString::fromLatin1(content.toHex()));
    QCOMPARE(wire.arrived.size() == 1, size <= 10216);
    QVERIFY(wire.arrived.size() < 600);
}

void tst_wire::timesOut()
{
    RecordingListener listener, patient;
    Wire wire(Direct);
    wire.peer.keepsCalls = true;
    const int id = wire.ours->asyncCall(Peer, u"a"_s, {}, &listener, 1);
    (void)wire.ours->asyncCall(Peer, u"b"_s, {}, &patient, 0);
    QTRY_COMPARE(listener.outcomes, QStringList { u"failed Call timeout"_s });
    QVERIFY(wire.ours->isCallCompleted(id));
    wire.answerKept();
    QCOMPARE(patient.outcomes, QStringList { u"ok 1"_s });
    QVERIFY(listener.outcomes.size() == 1 && wire.handler.heard.isEmpty());
}

// One that hears of its end cancels another, and makes a third that is not touched by this.
void tst_wire::cancelsWhileFailing()
{
    RecordingListener first, second, third;
    Wire wire(Direct);
    wire.peer.keepsCalls = true;
    (void)wire.ours->asyncCall(u"a"_s, {}, &first);
    const int id = wire.ours->asyncCall(u"b"_s, {}, &second);
    first.onResponse = [&] {
        wire.ours->cancelAsyncCall(id);
        (void)wire.ours->asyncCall(u"c"_s, {}, &third);
    };
    wire.ours->cancelOutgoingCalls(u"enough"_s);
    wire.answerKept();
    QCOMPARE(third.outcomes, QStringList { u"ok 1"_s });
    QCOMPARE(first.outcomes + second.outcomes, QStringList { u"failed enough"_s });
}

void tst_wire::failsPendingCallsAtTheEnd_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("end");
    QTest::newRow("by the peer") << int(Tcp) << u"Connection closed by peer"_s;
    QTest::newRow("closed") << int(Direct) << u"Connection closed"_s;
    QTest::newRow("destroyed") << int(Direct) << u"IPC destroyed"_s;
}

void tst_wire::failsPendingCallsAtTheEnd()
{
    QFETCH(const int, kind);
    QFETCH(const QString, end);
    RecordingListener listener;
    Wire wire(kind);
    wire.peer.keepsCalls = true;
    for (const QString &name : { u"a"_s, u"b"_s })
        (void)wire.ours->asyncCall(name, {}, &listener);
    QTRY_COMPARE(wire.peer.kept.size(), 2);
    const bool byPeer = end.endsWith(u"peer"_s);
    const bool destroyed = end.endsWith(u"destroyed"_s);
    destroyed ? wire.ours.reset() : wire.peers.reset();
    if (!byPeer && !destroyed)
        wire.ours->closeSocket();
    const QString failed = u"failed "_s + end;
    QTRY_COMPARE(listener.outcomes, (QStringList { failed, failed }));
    QTRY_COMPARE(wire.handler.heard.join(u'|'), byPeer ? u"closed"_s : QString());
    wire.answerKept(); // to nobody
    if (wire.ours)
        QCOMPARE(wire.ours->asyncCall(u"c"_s, {}, &listener), -1);
}

void tst_wire::survivesItsOwnEnd_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("size");
    QTest::newRow("tcp") << int(Tcp) << 0;
    QTest::newRow("direct") << int(Direct) << 0;
    QTest::newRow("direct, in chunks") << int(Direct) << 30000;
}

// Endpoints are destroyed by the listener that hears an answer, by another that hears of that and calls
// again, and by the handler that serves a call; on a direct channel all of it happens inside the sending of
// something.
void tst_wire::survivesItsOwnEnd()
{
    QFETCH(const int, kind);
    QFETCH(const int, size);
    const ArgumentList large { Bytes::noise(size) };
    RecordingListener first, second;
    Wire wire(kind);
    wire.peer.keepsCalls = true;
    (void)wire.ours->asyncCall(u"b"_s, large, &second);
    QTRY_COMPARE(wire.peer.kept.size(), 1);
    wire.peer.keepsCalls = false;
    first.onResponse = [&] { wire.ours.reset(); };
    second.onResponse = [&, ipc = wire.ours.get()] {
        if (second.outcomes.size() == 1)
            QCOMPARE(ipc->asyncCall(u"c"_s, large, &second), -1);
    };
    (void)wire.ours->asyncCall(u"a"_s, large, &first);
    QTRY_VERIFY(!wire.ours);
    QCOMPARE(first.outcomes.size(), 1);
    QCOMPARE(second.outcomes, (QStringList { u"failed IPC destroyed"_s, u"failed IPC destroyed"_s }));
    wire.answerKept(ArgumentList(large));

    Wire other(kind);
    first.onResponse = second.onResponse = nullptr;
    other.peer.onCall = [&](const QString &) { other.peers.reset(); };
    (void)other.ours->asyncCall(u"a"_s, large, &first);
    (void)other.ours->asyncCall(u"b"_s, large, &second);
    QTRY_VERIFY(!other.peers);
    QCOMPARE(other.peer.heard.size(), 1);
    other.ours.reset();
    QCOMPARE(first.outcomes.size() + second.outcomes.size(), 5);
}

QTEST_GUILESS_MAIN(tst_wire)
#include "tst_wire.moc"
