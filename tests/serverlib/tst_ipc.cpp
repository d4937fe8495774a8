#include "serverlib/ipc.h"
#include "serverlib/tcpmessagechannel.h"
#include "support/fakerunner.h"
#include "support/recorders.h"

#include <QTest>

using namespace Qt::StringLiterals;
using Vorkel::ArgumentList;
using Vorkel::IPC;

namespace {

constexpr FUInt32 Own = 9;

/// An endpoint that waits, and a runner that has said everything before it is asked: the trans ids of the
/// calls to come are known.
struct Endpoint
{
    FakeRunner runner;
    FSocket *socket = runner.connectedSocket();
    RecordingHandler handler;
    std::unique_ptr<IPC> ipc =
            std::make_unique<IPC>(new Vorkel::TCPMessageChannel(socket),
                                  Vorkel::ClientData { Own, 7, 4, u"app"_s }, &handler, nullptr);

    void write(FUInt32 type, int id, const QByteArray &body, FUInt32 flags = 0)
    {
        runner.write(Bytes::message({ Own, type, 1, id, flags }, body));
    }
    void reply(int id, const ArgumentList &values) { write(Bytes::Reply, id, Bytes::arguments(values)); }
    void ask(const QString &name) { write(Bytes::Call, 500, Bytes::invocation(name)); }
    void tell(const QString &name) { write(Bytes::Send, 0, Bytes::invocation(name)); }
    [[nodiscard]] QString heard() { return Bytes::told(runner.readMessage()); }
};

} // namespace

/// Calls that wait for their answer without an event loop.
class tst_ipc : public QObject
{
    Q_OBJECT

private slots:
    void callsAndServesWhileWaiting();
    void nests();
    void leavesTheRestWhereItIs();
    void failsWhenConnectionEnds();
    void survivesDestructionWhileWaiting();
};

void tst_ipc::callsAndServesWhileWaiting()
{
    Endpoint endpoint;
    endpoint.tell(u"told"_s);
    endpoint.ask(u"asked"_s);
    endpoint.reply(77, { u"of no interest"_s });
    endpoint.reply(1, { u"one"_s, 2 });
    bool timedOut = true;
    QCOMPARE(endpoint.ipc->call(u"a"_s, ArgumentList { 5 }, &timedOut), QVariant(u"one"_s));
    QVERIFY(!timedOut);
    QCOMPARE(endpoint.handler.heard, (QStringList { u"send 1 told()"_s, u"call 1 asked()"_s }));
    QCOMPARE(endpoint.heard(), u"call 9>1 #1 a(5)"_s);
    QCOMPARE(endpoint.heard(), u"reply 9>1 #500 ()"_s);
    endpoint.reply(2, { u"one"_s, 2 });
    QCOMPARE(endpoint.ipc->callFunc(8, u"b"_s, {}).value(), (ArgumentList { u"one"_s, 2 }));
    QCOMPARE(endpoint.heard(), u"call 9>8 #2 b()"_s);
    // An answer without a value is one, but no value.
    endpoint.reply(3, {});
    QVERIFY(!endpoint.ipc->call(8, u"c"_s, {}).isValid());
    endpoint.reply(4, {});
    QVERIFY(endpoint.ipc->callFunc(u"d"_s, {}).isOk());
    endpoint.write(Bytes::Reply, 5, Bytes::text(u"No such thing"_s), Bytes::Error);
    QCOMPARE(endpoint.ipc->callFunc(u"e"_s, {}).error(), u"No such thing"_s);
    endpoint.write(Bytes::Reply, 6, Bytes::text(QString()), Bytes::Error);
    QVERIFY(!endpoint.ipc->call(u"f"_s, {}, &timedOut).isValid() && !timedOut);
}

void tst_ipc::nests()
{
    Endpoint endpoint;
    QStringList values;
    endpoint.handler.onCall = [&](const QString &name) {
        values << name + endpoint.ipc->call(u"inner"_s, {}).toString();
    };
    endpoint.ask(u"first "_s);
    endpoint.ask(u"second "_s);
    endpoint.reply(3, { u"three"_s });
    endpoint.reply(2, { u"two"_s });
    endpoint.reply(1, { u"one"_s });
    values << endpoint.ipc->call(u"outer"_s, {}).toString();
    QCOMPARE(values, (QStringList { u"second three"_s, u"first two"_s, u"one"_s }));
    // The depth is back where it was: a call still waits.
    endpoint.reply(4, { u"four"_s });
    QCOMPARE(endpoint.ipc->call(u"again"_s, {}), QVariant(u"four"_s));
}

void tst_ipc::leavesTheRestWhereItIs()
{
    Endpoint endpoint;
    endpoint.reply(1, { 1 });
    endpoint.tell(u"a"_s);
    QCOMPARE(endpoint.ipc->call(u"x"_s, {}, nullptr, true), QVariant(1));
    QVERIFY(endpoint.handler.heard.isEmpty());
    endpoint.reply(2, { 2 });
    endpoint.tell(u"b"_s);
    QCOMPARE(endpoint.ipc->callFunc(u"x"_s, {}, true).value(), ArgumentList { 2 });
    QCOMPARE(endpoint.handler.heard, QStringList { u"send 1 a()"_s });
    endpoint.reply(3, { 3 });
    endpoint.tell(u"c"_s);
    QCOMPARE(endpoint.ipc->call(u"x"_s, {}), QVariant(3));
    QCOMPARE(endpoint.handler.heard.size(), 3);
}

void tst_ipc::failsWhenConnectionEnds()
{
    Endpoint byPeer;
    byPeer.runner.halfClose();
    QCOMPARE(byPeer.ipc->callFunc(u"a"_s, {}).error(), u"Peer closed the connection"_s);
    QCOMPARE(byPeer.handler.heard, QStringList { u"closed"_s });
    bool timedOut = false;
    QVERIFY(!byPeer.ipc->call(u"b"_s, {}, &timedOut).isValid() && !timedOut);

    Endpoint whileServing;
    whileServing.ask(u"asked"_s);
    whileServing.handler.onCall = [&](const QString &) {
        whileServing.runner.close();
        whileServing.ipc->closeSocket();
    };
    QCOMPARE(whileServing.ipc->callFunc(u"a"_s, {}).error(), u"Connection closed"_s);
    QCOMPARE(whileServing.handler.heard.size(), 1);
}

// One level deeper, to unwind two waits.
void tst_ipc::survivesDestructionWhileWaiting()
{
    Endpoint endpoint;
    endpoint.handler.onCall = [&](const QString &name) {
        if (name == u"nest"_s)
            QVERIFY(!endpoint.ipc->call(u"inner"_s, {}).isValid());
        else
            endpoint.ipc.reset();
    };
    for (const QString &name : { u"nest"_s, u"die"_s, u"never heard"_s })
        endpoint.ask(name);
    QCOMPARE(endpoint.ipc->callFunc(u"a"_s, {}).error(), u"Connection closed"_s);
    QVERIFY(!endpoint.ipc && endpoint.handler.heard.size() == 2);
}

QTEST_GUILESS_MAIN(tst_ipc)
#include "tst_ipc.moc"
