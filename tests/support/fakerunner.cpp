#include "support/fakerunner.h"

#include <QtEndian>

#include <netinet/in.h>
#include <sys/socket.h>

namespace {

constexpr int LimitMs = 30000;
const FHostAddress loopback(INADDR_LOOPBACK);

} // namespace

FakeRunner::FakeRunner()
{
    if (!m_listener.bind(loopback, 0) || !m_listener.listen(8))
        qFatal("FakeRunner: cannot listen on loopback");
    m_port = m_listener.localPort();
}

bool FakeRunner::awaitConnection()
{
    bool timedOut = false;
    (void)m_listener.waitForMore(LimitMs, &timedOut);
    return m_listener.isValid() && !timedOut;
}

bool FakeRunner::accept()
{
    if (!awaitConnection())
        return false;
    m_connection = std::make_unique<FSocket>(m_listener.accept());
    m_connection->setTcpNoDelay(true);
    return m_connection->isValid();
}

FSocket *FakeRunner::connectedSocket()
{
    auto socket = std::make_unique<FSocket>();
    if (!socket->connectToHost(loopback, m_port, true) || !accept())
        qFatal("FakeRunner: cannot connect on loopback");
    return socket.release();
}

bool FakeRunner::write(const QByteArray &bytes)
{
    for (qsizetype done = 0; done < bytes.size();) {
        const auto count = static_cast<int>(m_slow ? 1 : bytes.size() - done);
        const int written = m_connection->writeBlock(bytes.constData() + done, count);
        if (written <= 0)
            return false;
        done += written;
    }
    return true;
}

QByteArray FakeRunner::read(qsizetype count)
{
    QByteArray bytes(count, Qt::Uninitialized);
    qsizetype done = 0;
    bool timedOut = false;
    while (done < count && m_connection->waitForMore(LimitMs, &timedOut) >= 0 && !timedOut) {
        const int got = m_connection->readBlock(bytes.data() + done, static_cast<int>(count - done));
        if (got <= 0)
            break;
        done += got;
    }
    return bytes.first(done);
}

QByteArray FakeRunner::readMessage()
{
    const QByteArray prefix = read(4);
    const auto length = prefix.size() == 4 ? qFromBigEndian<quint32>(prefix.constData()) : 0;
    return length < 4 ? QByteArray() : prefix + read(static_cast<qsizetype>(length) - 4);
}

bool FakeRunner::readToEnd()
{
    while (!read(1).isEmpty()) {
    }
    return !m_connection->isValid();
}

void FakeRunner::reset()
{
    const linger abort = { 1, 0 };
    m_connection->setSocketOption(SOL_SOCKET, SO_LINGER, &abort, sizeof abort);
    close();
}

bool FakeRunner::awaitBytes(FSocket *socket, qsizetype count)
{
    bool timedOut = false;
    int available = 0;
    do
        available = socket->waitForMore(LimitMs, &timedOut);
    while (available > 0 && available < count);
    return available >= count;
}
