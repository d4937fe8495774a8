#include "serverlib/asyncipc.h"
#include "serverlib/ipchandshake.h"
#include "serverlib/tcpmessagechannel.h"
#include "support/fakerunner.h"
#include "support/recorders.h"

#include <QBitArray>
#include <QDateTime>
#include <QRect>
#include <QTest>
#include <QtEndian>

using namespace Qt::StringLiterals;
using Vorkel::ArgumentList;
using Vorkel::AsyncIPC;
using Vorkel::ClientData;
using Vorkel::IPCHandshake;
using Deed = std::function<void(AsyncIPC &, Vorkel::AsyncMessageChannel *)>;

namespace {

const ClientData identity { 9, 7, 4, u"app"_s };

QByteArray nested(int depth, const char *innermost)
{
    return Bytes::hex("00000002 00000001").repeated(depth) + Bytes::hex(innermost);
}

QDataStream::Status statusAfterReading(const QByteArray &bytes, ArgumentList *arguments)
{
    QDataStream stream(bytes);
    stream.setVersion(QDataStream::Version(6));
    *arguments = Vorkel::readArguments(stream);
    return stream.status();
}

} // namespace

/// What is on the wire, byte by byte.
class tst_golden : public QObject
{
    Q_OBJECT

private slots:
    void messages_data();
    void messages();
    void deflatedMessage();
    void values_data();
    void values();
    void badValues_data();
    void badValues();
};

void tst_golden::messages_data()
{
    QTest::addColumn<Deed>("deed");
    QTest::addColumn<QByteArray>("bytes");
    static RecordingListener listener;
    const auto row = [](const char *name, const char *digits, Deed deed) {
        QTest::newRow(name) << std::move(deed) << Bytes::hex(digits);
    };
    // clang-format off
    row("handshake",       "0000002A 00000000 070101F0 070000A0 00000000 00000009 00000007 00000004 00000006 006100700070"
                           "00000018 FFFFFFFF 00000020 00000000 00000000 00000000",
        [](AsyncIPC &, auto *channel) { QVERIFY(IPCHandshake::sendHandshake(channel, identity)); });
    row("refused",         "0000001C 00000000 070101F0 070000A0 00000001 00000004 006E006F"
                           "00000018 FFFFFFFF 00000020 00000000 00000000 00000000",
        [](AsyncIPC &, auto *channel) { QVERIFY(IPCHandshake::sendHandshake(channel, Vorkel::FunctionCallResult<ClientData>::failure(u"no"_s))); });
    row("first call",      "0000002A 00000001 00000001 00000009 00000001 00000000 0000000A 0067006500740041 0042 00000000",
        [](AsyncIPC &ipc, auto *) { QCOMPARE(ipc.asyncCall(u"getAB"_s, {}, &listener), 1); });
    row("two sends",       "00000020 00000005 00000003 00000009 00000001 00000000 FFFFFFFF 00000000"
                           "00000028 FFFFFFFF 00000003 00000009 00000002 00000000 00000000 00000001 00000010 00000003",
        [](AsyncIPC &ipc, auto *) { ipc.send(5, QString(), {}); QCOMPARE(ipc.send(AsyncIPC::BroadcastAddress, u""_s, { 3 }), 2); });
    row("reply",           "00000029 00000003 00000002 00000009 7FFFFFFF 00000000 00000002 00000012 01 00000010 00000005",
        [](AsyncIPC &ipc, auto *) { ipc.callReply(3, 0x7FFFFFFF, ArgumentList { true, 5 }); });
    row("error reply",     "00000020 00000003 00000002 00000009 FFFFFFFF 00000001 00000004 006E006F",
        [](AsyncIPC &ipc, auto *) { ipc.callReply(3, -1, Vorkel::FunctionCallResult<ArgumentList>::failure(u"no"_s)); });
    row("bare header",     "00000018 00000008 00000011 00000009 FFFFFFFE 00000007",
        [](AsyncIPC &ipc, auto *channel) { channel->enqueueMessage(ipc.createHeader(8, -2, Vorkel::Protocol::MessageType::PeerGone, 7)); });
    // clang-format on
}

void tst_golden::messages()
{
    QFETCH(Deed, deed);
    QFETCH(QByteArray, bytes);
    FakeRunner runner;
    {
        auto *const channel = new Vorkel::TCPMessageChannel(runner.connectedSocket());
        AsyncIPC ipc(channel, identity, nullptr, nullptr);
        deed(ipc, channel);
    }
    QCOMPARE(runner.read(bytes.size() + 1), bytes);
}

// A long body is one zlib stream in chunks of 10240 bytes; only the last one is shorter.
void tst_golden::deflatedMessage()
{
    const QByteArray noise = Bytes::noise(40000);
    FakeRunner runner;
    {
        AsyncIPC ipc(new Vorkel::TCPMessageChannel(runner.connectedSocket()), identity, nullptr, nullptr);
        QCOMPARE(ipc.send(5, u"put"_s, { noise }), 1);
    }
    QByteArray deflated;
    quint32 flags = 6;
    while (flags == 6) {
        const QByteArray chunk = runner.readMessage();
        QCOMPARE(chunk.mid(4, 16), Bytes::hex("00000005 00000003 00000009 00000001"));
        flags = qFromBigEndian<quint32>(chunk.constData() + 20);
        QCOMPARE(chunk.size() == 10240, flags == 6);
        deflated += chunk.mid(24);
    }
    QCOMPARE(flags, 4U);
    QVERIFY(runner.read(1).isEmpty());
    QCOMPARE(deflated.first(2), Bytes::hex("789C"));
    const QByteArray body = Bytes::invocation(u"put"_s, { noise });
    QCOMPARE(qUncompress(Bytes::u32(quint32(body.size())) + deflated), body);
}

void tst_golden::values_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArray>("bytes");
    const auto row = [](const char *name, const QVariant &value, const char *digits) {
        QTest::newRow(name) << value << Bytes::hex(digits);
    };
    QBitArray bits(11);
    for (const int bit : { 0, 2, 10 })
        bits.setBit(bit);
    const QDate date(2000, 1, 1);
    const QTime time(1, 0, 0, 5);
    // clang-format off
    row("nothing",       QVariant(),                       "00000000 FFFFFFFF");
    row("map",           QVariantMap { { u"a"_s, 2 }, { u"b"_s, QVariant() } }, "00000001 00000002 00000002 0061 00000010 00000002 00000002 0062 00000000 FFFFFFFF");
    row("list",          QVariantList { 1, true },         "00000002 00000002 00000010 00000001 00000012 01");
    row("empty list",    QVariantList(),                   "00000002 00000000");
    row("text",          u"a\u00e9\u20ac\U0001F600"_s,     "00000003 0000000A 0061 00E9 20AC D83D DE00");
    row("empty text",    u""_s,                            "00000003 00000000");
    row("null text",     QString(),                        "00000003 FFFFFFFF");
    row("text list",     QStringList { u"a"_s, QString() }, "00000004 00000002 00000002 0061 FFFFFFFF");
    row("rectangle",     QRect(1, 2, 3, 4),                "00000008 00000001 00000002 00000003 00000005");
    row("size",          QSize(3, -1),                     "00000009 00000003 FFFFFFFF");
    row("point",         QPoint(-1, 2),                    "0000000E FFFFFFFF 00000002");
    row("int",           -2,                               "00000010 FFFFFFFE");
    row("uint",          4000000000U,                      "00000011 EE6B2800");
    row("bool",          true,                             "00000012 01");
    row("double",        1.5,                              "00000013 3FF8000000000000");
    row("date",          date,                             "0000001A 00256859");
    row("time",          time,                             "0000001B 0036EE85");
    row("date and time", QDateTime(date, time),            "0000001C 00256859 0036EE85");
    row("bytes",         QByteArray("\0\xff", 2),          "0000001D 00000002 00FF");
    row("null bytes",    QByteArray(),                     "0000001D FFFFFFFF");
    row("bits",          bits,                             "0000001E 0000000B 0504");
    row("64-bit int",    qlonglong(-2),                    "00000021 FFFFFFFFFFFFFFFE");
    row("64-bit uint",   qulonglong(1) << 63,              "00000022 8000000000000000");
    // clang-format on
    QVariant nest = 7;
    for (int i = 0; i < Vorkel::MaxArgumentDepth; ++i)
        nest = QVariantList { nest };
    const QString longText(3000, QChar(0x20AC));
    QTest::newRow("long text") << QVariant(longText) << Bytes::u32(3) + Bytes::text(longText);
    QTest::newRow("as deep as allowed") << nest << nested(Vorkel::MaxArgumentDepth, "00000010 00000007");
}

void tst_golden::values()
{
    QFETCH(QVariant, value);
    QFETCH(QByteArray, bytes);
    QCOMPARE(Bytes::arguments({ value, 1 }), Bytes::u32(2) + bytes + Bytes::hex("00000010 00000001"));
    const QByteArray alone = Bytes::u32(1) + bytes;
    ArgumentList read;
    QCOMPARE(statusAfterReading(alone, &read), QDataStream::Ok);
    QCOMPARE(read, ArgumentList { value });
    QCOMPARE(read.at(0).typeId(), value.typeId());
    for (qsizetype length = 0; length < alone.size(); ++length) {
        QVERIFY(statusAfterReading(alone.first(length), &read) != QDataStream::Ok);
        QVERIFY(read.isEmpty());
    }
}

void tst_golden::badValues_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QDataStream::Status>("status");
    const auto row = [](const char *name, const QByteArray &bytes, QDataStream::Status status) {
        QTest::newRow(name) << Bytes::u32(1) + bytes << status;
    };
    constexpr auto tooShort = QDataStream::ReadPastEnd;
    constexpr auto corrupt = QDataStream::ReadCorruptData;
    constexpr int depth = Vorkel::MaxArgumentDepth;
    constexpr int tooMany = Vorkel::MaxArgumentValues + 1;
    // clang-format off
    row("huge list",             Bytes::hex("00000002 FFFFFFFF 00000012 01"),  tooShort);
    row("huge map",              Bytes::hex("00000001 FFFFFFFF 00000000"),     tooShort);
    row("huge text",             Bytes::hex("00000003 FFFFFFFE 0061"),         tooShort);
    row("huge bits",             Bytes::hex("0000001E FFFFFFFF 00"),           tooShort);
    row("huge signed bits",      Bytes::hex("0000001E 7FFFFFFF 00"),           tooShort);
    row("huge lists in lists",   nested(60, "00000002 FFFFFFFF 00000002 FFFFFFFF"), tooShort);
    row("odd text",              Bytes::hex("00000003 00000003 006100"),       corrupt);
    row("user type",             Bytes::hex("0000007F 00000002 6100"),         corrupt);
    row("one too deep",          nested(depth + 1, "00000010 00000007"), corrupt);
    row("far too deep",          nested(200000, "00000010 00000007"),   corrupt);
    row("map too deep",          nested(depth, "00000001 00000001 00000000 00000010 00000001"), corrupt);
    row("too many",              Bytes::hex("00000004") + Bytes::u32(tooMany) + QByteArray(tooMany * 4, '\0'), corrupt);
    // clang-format on
}

void tst_golden::badValues()
{
    QFETCH(QByteArray, bytes);
    ArgumentList read;
    QTEST(statusAfterReading(bytes, &read), "status");
    QVERIFY(read.isEmpty());
}

QTEST_GUILESS_MAIN(tst_golden)
#include "tst_golden.moc"
