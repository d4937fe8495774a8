#include "serverlib/ipchandshake.h"
#include "serverlib/ipchandshaker.h"
#include "serverlib/tcpmessagechannel.h"
#include "support/fakerunner.h"

#include <QPointer>
#include <QTest>

using namespace Qt::StringLiterals;
using Vorkel::AsyncMessageChannel;
using Vorkel::ClientData;
using Vorkel::IPCHandshake;
using Result = Vorkel::FunctionCallResult<ClientData>;

namespace {

const ClientData announced { 5, 7, 4, u"app"_s };
const ClientData assigned { 9, 8, 3, u"renamed"_s };
const QByteArray good = Bytes::handshake(assigned);
const QString goneText = u"Connection closed during handshake"_s;

/// Takes everybody but those called "stranger".
class Handshaker : public Vorkel::IPCHandshaker
{
public:
    using IPCHandshaker::IPCHandshaker;

protected:
    Result answerTo(const ClientData &data) override
    {
        return data.name == u"stranger"_s ? Result::failure(u"Not you"_s) : Result(assigned);
    }
};

} // namespace

class tst_handshake : public QObject
{
    Q_OBJECT

private slots:
    void reads_data();
    void reads();
    void finishes_data();
    void finishes();
};

void tst_handshake::reads_data()
{
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const QByteArray &message, const QString &error = {}) {
        QTest::newRow(name) << message << error;
    };
    const QString tooOld =
            u"Incompatible protocol versions. Remote side is version %1 but we need at least 7.0.0"_s;
    const QString tooNew =
            u"Incompatible protocol versions. We are version 7.1.1 but remote side expects at least %1"_s;
    // clang-format off
    row("good",                   good);
    row("oldest version",         Bytes::handshake(assigned, 0x070000A0));
    row("older version",          Bytes::handshake(assigned, 0x0700009F), tooOld.arg(u"7.0.0"_s));
    row("far older version",      Bytes::handshake(assigned, 0x06AB0CFF), tooOld.arg(u"6.ab.c"_s));
    row("newest demand",          Bytes::handshake(assigned, 0xFFFFFFFF, 0x070101F0));
    row("newer demand",           Bytes::handshake(assigned, 0xFFFFFFFF, 0x070101F1), tooNew.arg(u"7.1.1"_s));
    row("wrong identification",   QByteArray(good).replace(4, 4, Bytes::u32(1)), u"Protocol error: invalid protocol identification"_s);
    row("27 bytes",               good.first(27), u"Protocol error: handshake header too short"_s);
    row("refusal without a word", Bytes::refusal(QString()) + "junk", u"Handshake refused without a reason"_s);
    row("other status",           Bytes::refusal(u"Huge"_s).replace(16, 4, Bytes::u32(0xFFFFFFFF)), u"Huge"_s);
    // clang-format on
}

void tst_handshake::reads()
{
    QFETCH(const QByteArray, message);
    QFETCH(const QString, error);
    const auto result = IPCHandshake::processHanshake(message);
    QCOMPARE(result.error(), error);
    QCOMPARE(result.value(), error.isEmpty() ? assigned : ClientData());
}

void tst_handshake::finishes_data()
{
    QTest::addColumn<bool>("accepts");
    QTest::addColumn<QByteArray>("message"); // from the other side
    QTest::addColumn<QString>("outcome");
    QTest::newRow("connecting") << false << good << assigned.name;
    QTest::newRow("connecting, gone") << false << QByteArray() << goneText;
    QTest::newRow("connecting, silent") << false << QByteArray() << u"Handshake timeout"_s;
    QTest::newRow("accepting") << true << Bytes::handshake(announced) << assigned.name;
    QTest::newRow("accepting, gone") << true << QByteArray() << goneText;
    QTest::newRow("refusing") << true << Bytes::handshake({ 5, 7, 4, u"stranger"_s }) << u"Not you"_s;
}

// What it says is heard, it says how it went once, and only the accepting side ends a channel.
void tst_handshake::finishes()
{
    QFETCH(const bool, accepts);
    QFETCH(const QByteArray, message);
    QFETCH(const QString, outcome);
    FakeRunner peer;
    const QPointer<AsyncMessageChannel> channel = new Vorkel::TCPMessageChannel(peer.connectedSocket());
    QStringList outcomes;
    Handshaker handshaker(nullptr);
    connect(&handshaker, &Handshaker::newChannel, this,
            [&](auto *, const ClientData &data) { outcomes << data.name; });
    connect(&handshaker, &Handshaker::channelRejected, this,
            [&](auto *, const QString &reason) { outcomes << reason; });
    const QPointer<IPCHandshake> handshake = new IPCHandshake(announced, channel, 200, &handshaker);
    connect(handshake, qOverload<AsyncMessageChannel *, const Result &>(&IPCHandshake::finished), this,
            [&](auto *, const Result &result) { outcomes << result.error() + result.value().name; });
    accepts ? handshaker.addChannel(channel) : handshake->start();
    peer.write(message);
    if (outcome == goneText || accepts)
        peer.halfClose(); // closing waits for the other side
    QTRY_COMPARE(outcomes, QStringList { outcome });
    const bool isTaken = outcome == assigned.name;
    if (!accepts || !message.isEmpty()) {
        QCOMPARE(peer.readMessage(),
                 !accepts          ? Bytes::handshake(announced)
                         : isTaken ? good
                                   : Bytes::refusal(outcome));
        QCOMPARE(Bytes::told(peer.readMessage()), u"type 32"_s);
    }
    QTRY_COMPARE(channel.isNull(), accepts && !isTaken);
    peer.write(good);
    QCoreApplication::processEvents();
    QCOMPARE(outcomes.size(), 1);
    QCOMPARE(handshake.isNull(), !accepts);
    delete channel;
}

QTEST_GUILESS_MAIN(tst_handshake)
#include "tst_handshake.moc"
