#include "serverlib/wire.h"

#include <QSignalSpy>

#include <zlib.h>

using namespace Qt::StringLiterals;
using Bytes::message;
using Vorkel::ArgumentList;
using Vorkel::AsyncIPC;

namespace {

QByteArray deflated(const QByteArray &body)
{
    return qCompress(body, 1).mid(4);
}

} // namespace

/// What an endpoint makes of messages, good and bad.
class tst_messages : public QObject
{
    Q_OBJECT

private slots:
    void hears_data();
    void hears();
    void refusesBadBodies_data();
    void refusesBadBodies();
    void refusesBadReplies();
    void assemblesInterleavedChunks();
    void isNotFooledByItsOwnAddress();
    void boundsIncompleteMessages();
    void boundsInflatedBodies();
    void forgetsPeerThatHasGone();
};

void tst_messages::hears_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("heard");
    const auto row = [](const char *name, const QByteArray &bytes, const QString &heard = {}) {
        QTest::newRow(name) << bytes << heard;
    };
    const auto header = [](quint32 type) { return message({ Own, type, Peer }); };
    const auto sent = [](const QByteArray &body, quint32 flags = 0) {
        return message({ Own, Bytes::Send, Peer, 3, flags }, body);
    };
    const QByteArray good = Bytes::invocation(u"hi"_s, { 1, u"x"_s });
    const QString tooSmall = u"error Received a message smaller than the header"_s;
    const QString misaddressed = u"error Received a misaddressed message"_s;
    // clang-format off
    row("send",             sent(good),                                       u"send 1 hi(1,x)"_s);
    row("broadcast",        message({ 0xFFFFFFFF, Bytes::Send, Peer }, good), u"broadcast 1 hi(1,x)"_s);
    row("deflated",         sent(deflated(good), 4),                          u"send 1 hi(1,x)"_s);
    row("junk behind",      sent(good + "junk"),                              u"send 1 hi(1,x)"_s);
    row("junk behind zlib", sent(deflated(good) + "junk", 4),                 u"send 1 hi(1,x)"_s);
    row("23 bytes",         header(Bytes::Ping).chopped(1),                   tooSmall);
    row("to another",       message({ Own + 1, Bytes::Send, Peer }, good),    misaddressed);
    row("type 0",           header(0),                                        u"error Unexpected header message"_s);
    row("last type",        header(0xFFFFFFFF),                               u"error Unknown message type: 4294967295"_s);
    row("ping",             header(Bytes::Ping));
    row("peer arrived",     header(16));
    row("unknown has gone", header(Bytes::PeerGone));
    row("unawaited reply",  message({ Own, Bytes::Reply, Peer, 77 }, Bytes::arguments({ 1 })));
    // clang-format on
}

// Whatever it was, the next message is heard.
void tst_messages::hears()
{
    QFETCH(QByteArray, bytes);
    Wire wire(Direct);
    wire.feed(bytes);
    wire.settle();
    QTEST(wire.handler.heard.join(u'|'), "heard");
    QVERIFY(wire.arrived.isEmpty());
}

void tst_messages::refusesBadBodies_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *name, const QByteArray &body, const char *reason) {
        QTest::newRow(name) << body << QString::fromLatin1(reason);
    };
    // clang-format off
    row("too short",          Bytes::hex("00000000 00000001 00000010"),         "Message too short");
    row("corrupt",            Bytes::hex("00000000 00000001 00000005"),         "Message corrupt");
    row("deflated too short", deflated(Bytes::hex("00000000 00000001")),        "Message too short");
    row("deflated nothing",   QByteArray(),                                     "Zlib stream premature end");
    row("cut short",          deflated(Bytes::hex("00000000 00")).chopped(7),   "Zlib stream premature end");
    row("not deflated",       "yyyy",                                           "Zlib inflate error: incorrect header check");
    // clang-format on
}

void tst_messages::refusesBadBodies()
{
    QFETCH(const QByteArray, body);
    QFETCH(const QString, reason);
    const FUInt32 flags = body.startsWith('\0') ? 0U : FUInt32(Bytes::Deflated);
    Wire wire(Direct);
    wire.feed(Bytes::Send, Peer, 3, flags, body);
    wire.feed(Bytes::Call, Peer, 5, flags, body);
    QCOMPARE(wire.handler.heard, QStringList { u"error Send parsing failed: "_s + reason });
    QCOMPARE(Bytes::told(wire.arrived.value(0)), u"error 9>1 #5 Call parsing failed: "_s + reason);
}

void tst_messages::refusesBadReplies()
{
    RecordingListener listener;
    Wire wire(Direct);
    wire.peer.keepsCalls = true;
    const int id = wire.ours->asyncCall(u"ask"_s, {}, &listener);
    wire.feed(Bytes::Reply, Peer, id, 0, Bytes::hex("00000001 00000010"));
    QCOMPARE(listener.outcomes, QStringList { u"failed Reply parsing failed: Message too short"_s });
    wire.answerKept();
}

// Two peers use the same trans id, and one of them two ids; each has its own message.
void tst_messages::assemblesInterleavedChunks()
{
    RecordingListener listener;
    Wire wire(Direct);
    wire.peer.keepsCalls = true;
    const int id = wire.ours->asyncCall(u"ask"_s, {}, &listener);
    struct Part
    {
        Vorkel::Protocol::Header header;
        QByteArray body;
        qsizetype length;
    } parts[] = {
        { { Own, Bytes::Send, Peer, 3, 0 }, Bytes::invocation(u"first"_s, { u"1"_s }), 5 },
        { { Own, Bytes::Call, Other, 3, 0 }, Bytes::invocation(u"second"_s, { u"2"_s }), 3 },
        { { Own, Bytes::Send, Peer, id, 4 }, deflated(Bytes::invocation(u"third"_s, { u"3"_s })), 1 },
        { { Own, Bytes::Reply, Peer, id, 0 }, Bytes::arguments({ u"4"_s }), 2 },
    };
    for (int i = 0; i < 100; ++i) {
        for (auto &[header, body, length] : parts) {
            if (body.isEmpty())
                continue;
            header.flags = (header.flags & Bytes::Deflated) | (body.size() > length ? Bytes::More : 0U);
            wire.feed(message(header, body.first(std::min(length, body.size()))));
            body = body.mid(length);
        }
        wire.feed(Bytes::Call, Peer, 1000, Bytes::More);
    }
    QCOMPARE(listener.outcomes, QStringList { u"ok 4"_s });
    wire.handler.heard.sort();
    QCOMPARE(wire.handler.heard,
             (QStringList { u"call 8 second(2)"_s, u"send 1 first(1)"_s, u"send 1 third(3)"_s }));
    wire.answerKept();
}

// A peer that says it is this endpoint neither answers its calls nor ends them by other means.
void tst_messages::isNotFooledByItsOwnAddress()
{
    RecordingListener listener;
    Wire wire(Direct);
    wire.peer.keepsCalls = true;
    const int id = wire.ours->asyncCall(u"ask"_s, {}, &listener);
    wire.feed(Bytes::Call, Own, id, Bytes::More, Bytes::invocation(u"a"_s));
    wire.feed(Bytes::Call, Own, id, 0, Bytes::invocation(u"b"_s));
    wire.feed(Bytes::PeerGone, Own, 0);
    QVERIFY(listener.outcomes.isEmpty());
    wire.answerKept();
    QCOMPARE(listener.outcomes, QStringList { u"ok 1"_s });
}

void tst_messages::boundsIncompleteMessages()
{
    Wire wire(Direct);
    const QByteArray body = Bytes::invocation(u"hi"_s);
    for (int id = 0; id <= AsyncIPC::MaxIncompleteMessages; ++id)
        wire.feed(Bytes::Send, Peer, id, Bytes::More, body.first(3));
    QCOMPARE(wire.handler.heard, QStringList { u"error More than 1024 incomplete messages"_s });
    // Those that are known go on, each that ends makes room, and with the peer all of them go.
    wire.feed(Bytes::Send, Peer, 17, 0, body.mid(3));
    QCOMPARE(wire.handler.heard.last(), u"send 1 hi()"_s);
    wire.settle();
    wire.feed(Bytes::PeerGone, Peer, 0);
    wire.feed(Bytes::Send, Peer, 18, 0, body.mid(3));
    QVERIFY(wire.handler.heard.last().startsWith(u"error Send parsing failed: "_s));
}

// A few bytes that become many. What is inflated is dropped again: every value of the map has the same key.
void tst_messages::boundsInflatedBodies()
{
    const auto deflatedPart = [](const QByteArray &plain) {
        QByteArray part(plain.size() / 100 + 100, Qt::Uninitialized);
        z_stream zlib = {};
        deflateInit2(&zlib, 1, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
        zlib.next_in = reinterpret_cast<const Bytef *>(plain.constData());
        zlib.avail_in = uInt(plain.size());
        zlib.next_out = reinterpret_cast<Bytef *>(part.data());
        zlib.avail_out = uInt(part.size());
        deflate(&zlib, Z_FULL_FLUSH);
        deflateEnd(&zlib);
        return part.first(qsizetype(zlib.total_out));
    };
    const QByteArray start = Bytes::text(u""_s) + Bytes::hex("00000001 00000001 000000FF");
    const QByteArray entry = Bytes::hex("00000000 0000001D 00110000") + QByteArray(0x110000, '\0');
    Wire wire(Direct);
    wire.feed(Bytes::Send, Peer, 3, Bytes::Deflated,
              Bytes::hex("789C") + deflatedPart(start) + deflatedPart(entry).repeated(0xFF));
    QCOMPARE(wire.handler.heard,
             QStringList { u"error Send parsing failed: Message body larger than 268435456 bytes"_s });
}

// What awaits that peer's answer fails, and what is served for it is answered to nobody.
void tst_messages::forgetsPeerThatHasGone()
{
    RecordingListener toPeer, toOther, again;
    Wire wire(Direct);
    AsyncIPC &ipc = *wire.ours;
    wire.peer.keepsCalls = wire.handler.keepsCalls = true;
    (void)ipc.asyncCall(Other, u"a"_s, {}, &toOther); // misaddressed, so never answered
    (void)ipc.asyncCall(u"b"_s, {}, &toPeer);
    toOther.onResponse = [&] { (void)ipc.asyncCall(u"c"_s, {}, &again); };
    for (const FUInt32 caller : { Other, Peer })
        wire.feed(Bytes::Call, caller, 40, 0, Bytes::invocation(u"serve"_s));
    wire.feed(Bytes::Call, Other, 41, Bytes::More);
    QSignalSpy gone(&ipc, &AsyncIPC::peerGone);
    wire.feed(Bytes::PeerGone, Other, 0);
    QCOMPARE(gone, QList<QVariantList> { { Other } });
    QCOMPARE(toOther.outcomes, QStringList { u"failed Peer gone"_s });
    QCOMPARE(wire.peer.kept.size(), 2);
    wire.answerKept();
    QCOMPARE(toPeer.outcomes + again.outcomes, (QStringList { u"ok 1"_s, u"ok 1"_s }));
    wire.arrived.clear();
    for (RecordingHandler::Listener *listener : std::exchange(wire.handler.kept, {}))
        listener->response(ArgumentList { 2 });
    QCOMPARE(wire.arrived.size(), 1);
    QCOMPARE(Bytes::told(wire.arrived.first()), u"reply 9>1 #40 (2)"_s);
}

QTEST_GUILESS_MAIN(tst_messages)
#include "tst_messages.moc"
