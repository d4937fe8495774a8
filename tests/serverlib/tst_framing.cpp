#include "serverlib/tcpmessagechannel.h"
#include "support/fakerunner.h"

#include <QAbstractEventDispatcher>
#include <QSignalSpy>
#include <QTest>

#include <sys/socket.h>

using namespace Qt::StringLiterals;
using Vorkel::AsyncMessageChannel;
using Vorkel::TCPMessageChannel;

namespace {

enum Way { ByDispatch, ByEventLoop, ByWaiting };

/// A channel and the bare connection at its other end.
struct Connection
{
    FakeRunner runner;
    FSocket *socket = runner.connectedSocket();
    std::unique_ptr<TCPMessageChannel> channel = std::make_unique<TCPMessageChannel>(socket);
    QByteArrayList arrived;
    std::function<void()> onMessage; ///< done once, when the next message has arrived
    QSignalSpy closed { channel.get(), &AsyncMessageChannel::channelClosed };

    Connection()
    {
        QObject::connect(channel.get(), &AsyncMessageChannel::messageArrived,
                         [this](const QByteArray &message) {
                             arrived << message;
                             if (const auto deed = std::exchange(onMessage, nullptr))
                                 deed();
                         });
    }

    /// Sends `piece` and lets the channel read it.
    void feed(const QByteArray &piece, Way way)
    {
        QVERIFY(runner.write(piece) && FakeRunner::awaitBytes(socket, piece.size()));
        if (way == ByDispatch)
            (void)channel->dispatchMessages();
        else if (way == ByEventLoop)
            QCoreApplication::processEvents();
        while (way == ByWaiting && channel->waitForSingleMessage(0).isOk()) {
        }
    }
};

const QByteArray someMessage(4, '?');
const QByteArrayList three { Bytes::framed("1"), Bytes::framed("2"), Bytes::framed("3") };

} // namespace

/// Messages on a TCP connection, each behind its length, and the ends that a connection can have.
class tst_framing : public QObject
{
    Q_OBJECT

private slots:
    void delivers_data();
    void delivers();
    void reachesEventLoopsInside();
    void reachesEventLoopsAfterWait();
    void forgetsTheRestWithTheChannel();
    void waitsForMessages();
    void closesInSilence();
    void noticesEndOfStream();
    void goesOnAfterFalseAlarm();
    void endsAfterFailedWrite_data();
    void endsAfterFailedWrite();
};

void tst_framing::delivers_data()
{
    QTest::addColumn<QByteArrayList>("pieces");
    QTest::addColumn<QByteArrayList>("messages");
    QTest::addColumn<bool>("endsBadly");
    const QByteArray a = Bytes::framed("abc");
    const QByteArray b = Bytes::framed("defgh");
    const QByteArray empty = Bytes::framed("");
    const QByteArray large = Bytes::framed(QByteArray(60000, 'l'));
    QByteArrayList bytes;
    for (const char byte : a + b)
        bytes << QByteArray(1, byte);
    const auto row = [](const char *name, const QByteArrayList &pieces, const QByteArrayList &messages,
                        bool endsBadly) { QTest::newRow(name) << pieces << messages << endsBadly; };
    // clang-format off
    row("two in one piece",      { a + b },                            { a, b },            false);
    row("byte by byte",          bytes,                                { a, b },            false);
    row("split across",          { a + b.first(2), b.mid(2) + a.first(5), a.mid(5) }, { a, b, a }, false);
    row("prefix of 4",           { empty + a + empty },                { empty, a, empty }, false);
    row("larger than buffers",   { large.first(50000), large.mid(50000) + a }, { large, a }, false);
    row("small behind large",    { large.first(50000), large.mid(50000), a + b }, { large, a, b }, false);
    row("prefix of 0",           { Bytes::hex("00000000 41424344") },  {},                  true);
    row("prefix of 3",           { a + Bytes::hex("00000003 41") },    { a },               true);
    row("huge prefix",           { Bytes::hex("FFFFFFFF 41"), b },     {},                  false);
    // clang-format on
}

void tst_framing::delivers()
{
    QFETCH(QByteArrayList, pieces);
    QFETCH(QByteArrayList, messages);
    QFETCH(bool, endsBadly);
    for (const Way way : { ByDispatch, ByEventLoop, ByWaiting }) {
        Connection connection;
        if (endsBadly)
            QTest::ignoreMessage(QtWarningMsg, "Invalid message size prefix");
        for (const QByteArray &piece : std::as_const(pieces))
            connection.feed(piece, way);
        QCOMPARE(connection.arrived, messages);
        QCOMPARE(connection.channel->isOpen(), !endsBadly);
        QCOMPARE(connection.closed.size(), endsBadly ? 1 : 0);
        QVERIFY(!endsBadly || connection.runner.readToEnd());
    }
}

// Of messages that arrive together, the first one's receiver runs an event loop.
void tst_framing::reachesEventLoopsInside()
{
    Connection connection;
    bool inside = false;
    connection.onMessage = [&] {
        QTRY_COMPARE(connection.arrived, three);
        inside = true;
    };
    connection.runner.write(three.join());
    QTRY_VERIFY(inside);
    QCOMPARE(connection.arrived, three);
}

void tst_framing::reachesEventLoopsAfterWait()
{
    Connection connection;
    connection.runner.write(three.join());
    QCOMPARE(connection.channel->waitForSingleMessage(-1).value(), three.first());
    QCOMPARE(connection.arrived.size(), 1);
    QTRY_COMPARE(connection.arrived, three);
}

void tst_framing::forgetsTheRestWithTheChannel()
{
    Connection connection;
    connection.onMessage = [&] { connection.channel.reset(); };
    connection.runner.write(three.join());
    QTRY_VERIFY(!connection.channel);
    QCoreApplication::processEvents();
    QCOMPARE(connection.arrived.size(), 1);
}

void tst_framing::waitsForMessages()
{
    Connection connection;
    TCPMessageChannel &channel = *connection.channel;
    QCOMPARE(channel.waitForSingleMessage(0).error(), u"Timeout expired"_s);
    connection.runner.write(Bytes::framed("a") + Bytes::framed("b"));
    connection.runner.close();
    QCOMPARE(channel.waitForSingleMessage(-1).value(), Bytes::framed("a"));
    QCOMPARE(connection.arrived.size(), 1);
    // The second is there already, so nobody looks at the connection.
    ::shutdown(connection.socket->descriptor(), SHUT_RDWR);
    QCOMPARE(channel.waitForSingleMessage(-1).value(), Bytes::framed("b"));
    QCOMPARE(channel.waitForSingleMessage(-1).error(), u"Peer closed the connection"_s);
    QCOMPARE(channel.waitForSingleMessage(-1).error(), u"Connection is closed"_s);
    QVERIFY(!channel.dispatchMessages());
    QCOMPARE(connection.arrived.size(), 2);
    QCOMPARE(connection.closed.size(), 1);
}

void tst_framing::closesInSilence()
{
    Connection connection;
    TCPMessageChannel &channel = *connection.channel;
    const std::string name = channel.debugName();
    QVERIFY(name.ends_with(",peer=127.0.0.1:" + std::to_string(connection.runner.port()) + ')'));
    connection.runner.write(Bytes::framed("late"));
    connection.runner.close();
    channel.close();
    QTest::ignoreMessage(QtWarningMsg, "IPC::sendData: write failed, socket suddenly is NULL");
    QVERIFY(!channel.isOpen() && !channel.enqueueMessage(someMessage) && !channel.dispatchMessages());
    channel.closeOnEnd();
    QCOMPARE(connection.closed.size(), 0);
    QCOMPARE(channel.debugName(), name);
}

// The event loop learns of it without turning round and round until it does.
void tst_framing::noticesEndOfStream()
{
    for (const bool reset : { false, true }) {
        Connection connection;
        connection.runner.write(Bytes::hex("00000009 41"));
        reset ? connection.runner.reset() : connection.runner.close();
        QSignalSpy wakeUps(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake);
        QVERIFY(connection.closed.wait());
        QVERIFY2(wakeUps.size() < 20, qPrintable(QString::number(wakeUps.size())));
        QVERIFY(!connection.channel->isOpen() && !connection.channel->enqueueMessage(someMessage));
        QCoreApplication::processEvents();
        QCOMPARE(connection.closed.size(), 1);
    }
}

// A wake-up that finds nothing, because a wait has been faster, costs nothing that comes later.
void tst_framing::goesOnAfterFalseAlarm()
{
    Connection connection;
    connection.channel->readIncomingData();
    connection.runner.write(Bytes::framed("a"));
    QTRY_COMPARE(connection.arrived.size(), 1);
    connection.runner.close();
    QTRY_COMPARE(connection.closed.size(), 1);
}

void tst_framing::endsAfterFailedWrite_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("reset") << 4;
    QTest::newRow("blocked for 10 s") << (64 << 20);
}

// The sender is told at once, the others from the event loop.
void tst_framing::endsAfterFailedWrite()
{
    QFETCH(const int, size);
    Connection connection;
    bool timedOut = false;
    if (size == 4) {
        connection.runner.reset();
        QCOMPARE(connection.socket->waitForMore(-1, &timedOut), 0);
    } else {
        QTest::ignoreMessage(QtWarningMsg,
                             "IPC::sendData: couldn't write to socket for 10s, "
                             "assume that the peer closed the connection");
    }
    QVERIFY(!connection.channel->enqueueMessage(QByteArray(size, '?')));
    QVERIFY(!connection.channel->isOpen() && !connection.channel->enqueueMessage(someMessage));
    QCOMPARE(connection.closed.size(), 0);
    QVERIFY(connection.closed.wait());
    QCoreApplication::processEvents();
    QCOMPARE(connection.closed.size(), 1);
}

QTEST_GUILESS_MAIN(tst_framing)
#include "tst_framing.moc"
