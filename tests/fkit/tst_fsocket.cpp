#include "support/fakerunner.h"

#include <QTest>

#include <functional>

#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>

using namespace Qt::StringLiterals;
using Deed = std::function<void(FSocket &)>;

class tst_fsocket : public QObject
{
    Q_OBJECT

private slots:
    void tellsWhatFailed_data();
    void tellsWhatFailed();
    void waitsForMoreAndMeetsEnd();
};

void tst_fsocket::tellsWhatFailed_data()
{
    QTest::addColumn<bool>("isSocket");
    QTest::addColumn<FSocket::Error>("error");
    QTest::addColumn<Deed>("fail");
    const auto row = [](const char *name, bool isSocket, FSocket::Error error, Deed fail) {
        QTest::newRow(name) << isSocket << error << std::move(fail);
    };
    static const FHostAddress loopback(INADDR_LOOPBACK);
    static const auto refusingPort = [] { return FakeRunner().port(); };
    // clang-format off
    row("read unconnected", true,  FSocket::InvalidSocket,     [](FSocket &s) { char byte; QCOMPARE(s.readBlock(&byte, 1), -1); });
    row("write no socket",  false, FSocket::InvalidSocket,     [](FSocket &s) { QCOMPARE(s.writeBlock("x", 1), -1); });
    row("set no socket",    false, FSocket::InvalidSocket,     [](FSocket &s) { s.setTcpNoDelay(true); });
    row("bind twice",       true,  FSocket::AlreadyBound,      [](FSocket &s) { QVERIFY(s.bind(loopback, 0) && !s.bind(loopback, 0)); });
    row("bind foreign",     true,  FSocket::UnknownError,      [](FSocket &s) { QVERIFY(!s.bind(FHostAddress(0x08080808), 0)); });
    row("refused",          true,  FSocket::ConnectionRefused, [](FSocket &s) { QVERIFY(!s.connectToHost(u"127.0.0.1"_s, refusingPort())); });
    row("refused later",    true,  FSocket::ConnectionRefused, [](FSocket &s) {
        s.setBlocking(false);
        if (s.connectToHost(loopback, refusingPort(), false))
            s.finishNonBlockingConnect();
    });
    row("unknown name",     true,  FSocket::HostNotFound,      [](FSocket &s) { QVERIFY(!s.connectToHost(QString(70, u'x'), 9)); });
    // clang-format on
}

void tst_fsocket::tellsWhatFailed()
{
    QFETCH(bool, isSocket);
    QFETCH(Deed, fail);
    FSocket socket(isSocket ? ::socket(AF_INET, SOCK_STREAM, 0) : ::open("/dev/null", O_RDWR));
    fail(socket);
    QTEST(socket.error(), "error");
}

// Whether the peer closes or resets.
void tst_fsocket::waitsForMoreAndMeetsEnd()
{
    for (const bool reset : { false, true }) {
        FakeRunner runner;
        const std::unique_ptr<FSocket> socket(runner.connectedSocket());
        for (const FSocket *end : { socket.get(), runner.connection() })
            QVERIFY(::fcntl(end->descriptor(), F_GETFD) & FD_CLOEXEC);
        bool timedOut = false;
        QVERIFY(socket->waitForMore(0, &timedOut) == 0 && timedOut);
        runner.write("ab");
        char bytes[3];
        QVERIFY(socket->waitForMore(-1, &timedOut) == 2 && !timedOut);
        QCOMPARE(socket->readBlock(bytes, 3), 2);
        reset ? runner.reset() : runner.close();
        QVERIFY(socket->waitForMore(-1, &timedOut) == 0 && !timedOut && socket->isOpen());
        // Either way a read gives 0 and closes; nothing of the connection is left.
        QCOMPARE(socket->readBlock(bytes, 1), 0);
        QVERIFY(!socket->isOpen() && socket->error() == FSocket::NoError);
        QVERIFY(socket->peerPort() == 0 && socket->localAddress() == FHostAddress());
        QCOMPARE(socket->waitForMore(-1, &timedOut), -1);
    }
}

QTEST_GUILESS_MAIN(tst_fsocket)
#include "tst_fsocket.moc"
