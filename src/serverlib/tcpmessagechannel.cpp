#include "serverlib/tcpmessagechannel.h"

#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QPointer>
#include <QSocketNotifier>
#include <QTimer>
#include <QtEndian>

#include <algorithm>
#include <chrono>
#include <climits>

using namespace std::chrono_literals;

namespace Vorkel {

namespace {

constexpr int MinSocketBuffer = 49152;
constexpr int WriteLimitMs = 10000;
/// How long one write may block before the write limit is looked at again.
constexpr int WriteSliceMs = 500;
/// Messages may be kept for long, so a buffer with more room to spare is not handed on as one.
constexpr int MaxRoomToSpare = 8192;
constexpr int ConnectLimitMs = 10000;
constexpr int CloseLimitMs = 30000;
constexpr auto RestAfterEmptyWakeUp = 1ms;

QString connectFailure(const FSocket &socket)
{
    switch (socket.error()) {
    case FSocket::HostNotFound:
        return QStringLiteral("Host name not found");
    case FSocket::ConnectionRefused:
        return QStringLiteral("Connection refused");
    default:
        return socket.errorString();
    }
}

std::string endpointName(const FHostAddress &address, quint16 port)
{
    return address.toString().toStdString() + ':' + std::to_string(port);
}

} // namespace

TCPMessageChannel::TCPMessageChannel(FSocket *socket, QObject *parent)
    : MessageChannel(parent)
    , m_socket(socket)
    , m_peerAddress(socket->peerAddress())
    , m_peerPort(socket->peerPort())
{
    m_socket->setSendBufferSize(std::max(m_socket->sendBufferSize(), MinSocketBuffer));
    m_socket->setReceiveBufferSize(std::max(m_socket->receiveBufferSize(), MinSocketBuffer));
    m_socket->setTcpNoDelay(true);
    m_socket->setSendTimeout(WriteSliceMs);
    if (!m_socket->isOpen())
        qDebug("TCPIPC:setSocket: Unconnected socket for IPC");
    if (m_socket->isValid()) {
        m_notifier = new QSocketNotifier(m_socket->descriptor(), QSocketNotifier::Read, this);
        connect(m_notifier, &QSocketNotifier::activated, this, &TCPMessageChannel::readIncomingData);
    }
    m_debugName = "TCP(fd=" + std::to_string(m_socket->descriptor())
            + ",addr=" + endpointName(m_socket->localAddress(), m_socket->localPort())
            + ",peer=" + endpointName(m_peerAddress, m_peerPort) + ')';
}

TCPMessageChannel::~TCPMessageChannel()
{
    // Before the descriptor that it watches is closed.
    delete m_notifier;
}

FunctionCallResult<TCPMessageChannel *> TCPMessageChannel::connectTo(const QString &host, quint16 port)
{
    auto socket = std::make_unique<FSocket>();
    socket->setSendTimeout(ConnectLimitMs);
    if (socket->connectToHost(host, port))
        return new TCPMessageChannel(socket.release());
    return FunctionCallResult<TCPMessageChannel *>::failure(
            QStringLiteral("Could not connect to Vorkel server at host %1, port %2: %3")
                    .arg(host, QString::number(port), connectFailure(*socket)));
}

FunctionCallResult<TCPMessageChannel *> TCPMessageChannel::connectTo(const SocketAddress &address)
{
    return connectTo(address.host, address.port);
}

bool TCPMessageChannel::isOpen() const
{
    return m_socket && m_socket->isOpen();
}

quint16 TCPMessageChannel::localPort() const
{
    return m_socket ? m_socket->localPort() : quint16(0);
}

FHostAddress TCPMessageChannel::localAddress() const
{
    return m_socket ? m_socket->localAddress() : FHostAddress();
}

bool TCPMessageChannel::enqueueMessage(QByteArray message)
{
    Q_ASSERT(message.size() >= MessagePrefixLength);
    qToBigEndian(static_cast<quint32>(message.size()), message.data());
    if (!m_socket) {
        qWarning("IPC::sendData: write failed, socket suddenly is NULL");
        return false;
    }
    if (!m_socket->isOpen())
        return false;
    if (sendAll(message.constData(), message.size(), takeMoreFollows()))
        return true;
    endAfterFailedWrite();
    return false;
}

bool TCPMessageChannel::sendAll(const char *data, qsizetype length, bool moreFollows)
{
    QElapsedTimer timer;
    timer.start();
    qsizetype offset = 0;
    while (m_socket->isValid()) {
        const auto rest = static_cast<int>(std::min<qsizetype>(length - offset, INT_MAX));
        const int written = m_socket->writeBlock(data + offset, rest, moreFollows);
        if (written > 0) {
            offset += written;
            if (offset == length)
                return true;
        } else if (written < 0) {
            if (m_socket->error() != FSocket::NoError) {
                qWarning("IPC::sendData: write to socket %d failed with error %d", m_socket->descriptor(),
                         m_socket->error());
                return false;
            }
            if (timer.elapsed() > WriteLimitMs) {
                qWarning("IPC::sendData: couldn't write to socket for 10s, "
                         "assume that the peer closed the connection");
                return false;
            }
        }
    }
    return false;
}

void TCPMessageChannel::close()
{
    m_closing = true;
    if (m_notifier)
        m_notifier->setEnabled(false);
    if (m_socket) {
        m_socket->shutdown();
        m_socket->waitForDisconnected(CloseLimitMs);
        m_socket.reset();
    }
}

void TCPMessageChannel::dropConnection()
{
    if (m_notifier) {
        m_notifier->setEnabled(false);
        // The notifier may be the one whose signal runs below on this stack.
        m_notifier->deleteLater();
        m_notifier = nullptr;
    }
    if (m_socket)
        m_socket->close();
}

void TCPMessageChannel::reportEnd()
{
    if (m_closing || std::exchange(m_endReported, true))
        return;
    emit channelClosed();
}

void TCPMessageChannel::closeOnEnd()
{
    dropConnection();
    reportEnd();
}

/// Receivers of `channelClosed` may delete whoever is sending, so they hear it from the event loop.
void TCPMessageChannel::endAfterFailedWrite()
{
    dropConnection();
    QMetaObject::invokeMethod(this, &TCPMessageChannel::reportEnd, Qt::QueuedConnection);
}

bool TCPMessageChannel::fillReadBuffer(int count)
{
    const qsizetype oldSize = m_readBuffer.size();
    m_readBuffer.resize(oldSize + count);
    const int result = m_socket ? m_socket->readBlock(m_readBuffer.data() + oldSize, count) : -1;
    m_readBuffer.truncate(oldSize + std::max(result, 0));
    if (result < 0)
        return false;
    if (result == 0) {
        closeOnEnd();
        return false;
    }
    return true;
}

/// The length of the message that the buffer starts with; nothing while that is not known.
std::optional<quint32> TCPMessageChannel::nextLength() const
{
    if (m_readBuffer.size() < MessagePrefixLength)
        return std::nullopt;
    return qFromBigEndian<quint32>(m_readBuffer.constData());
}

bool TCPMessageChannel::processSingleMessage(QByteArray *out)
{
    const quint32 length = nextLength().value_or(MessagePrefixLength);
    if (length < MessagePrefixLength) {
        qWarning("Invalid message size prefix");
        m_readBuffer.clear();
        closeOnEnd();
        return false;
    }
    if (!hasWholeMessage())
        return false;
    const bool isFilled = m_readBuffer.capacity() - m_readBuffer.size() <= MaxRoomToSpare;
    if (isFilled && static_cast<quint64>(m_readBuffer.size()) == length) {
        *out = std::exchange(m_readBuffer, QByteArray());
    } else {
        *out = m_readBuffer.first(length);
        m_readBuffer.remove(0, length);
    }
    if (hasWholeMessage())
        wakeUpForBuffered();
    emit messageArrived(*out);
    return true;
}

bool TCPMessageChannel::hasWholeMessage() const
{
    const auto length = nextLength();
    return length && static_cast<quint64>(m_readBuffer.size()) >= *length;
}

/// Whoever takes a message may run an event loop, or leave the rest for one. The notifier would not fire for
/// what has been read already.
void TCPMessageChannel::wakeUpForBuffered()
{
    if (std::exchange(m_wakeUpIsPosted, true))
        return;
    const auto deliver = [this] {
        m_wakeUpIsPosted = false;
        const QPointer<TCPMessageChannel> guard(this);
        QByteArray message;
        while (guard && processSingleMessage(&message)) {
        }
    };
    QMetaObject::invokeMethod(this, deliver, Qt::QueuedConnection);
}

FunctionCallResult<QByteArray> TCPMessageChannel::waitForSingleMessage(int ms)
{
    const auto failure = [](const QString &text) { return FunctionCallResult<QByteArray>::failure(text); };
    QByteArray message;
    QPointer<TCPMessageChannel> guard(this);
    while (!processSingleMessage(&message)) {
        if (!guard || !isOpen())
            return failure(QStringLiteral("Connection is closed"));
        bool timedOut = false;
        const int available = m_socket->waitForMore(ms, &timedOut);
        if (timedOut)
            return failure(QStringLiteral("Timeout expired"));
        if (available <= 0) {
            closeOnEnd();
            return failure(available == 0 ? QStringLiteral("Peer closed the connection")
                                          : QStringLiteral("I/O error"));
        }
        if (!fillReadBuffer(available))
            return failure(QStringLiteral("Read error"));
    }
    return message;
}

bool TCPMessageChannel::dispatchMessages(bool)
{
    return dispatchArrived() != Dispatch::Ended;
}

TCPMessageChannel::Dispatch TCPMessageChannel::dispatchArrived()
{
    QPointer<TCPMessageChannel> guard(this);
    QByteArray message;
    const auto deliverBuffered = [&] {
        while (guard && processSingleMessage(&message)) {
        }
        return guard && isOpen();
    };
    if (!deliverBuffered())
        return Dispatch::Ended;
    const int available = m_socket->bytesAvailable();
    if (available < 0) {
        closeOnEnd();
        return Dispatch::Ended;
    }
    if (available == 0)
        return Dispatch::NothingArrived;
    if (!fillReadBuffer(available) || !deliverBuffered())
        return Dispatch::Ended;
    return Dispatch::Delivered;
}

void TCPMessageChannel::readIncomingData()
{
    QPointer<TCPMessageChannel> guard(this);
    if (dispatchArrived() == Dispatch::NothingArrived && guard)
        rest();
}

/// A wake-up that finds nothing is the end of the stream or a false alarm. The notifier would fire
/// without pause at the end of the stream, so it stays off until a wait has told which it is.
void TCPMessageChannel::rest()
{
    m_notifier->setEnabled(false);
    QTimer::singleShot(RestAfterEmptyWakeUp, this, &TCPMessageChannel::lookAfterRest);
}

void TCPMessageChannel::lookAfterRest()
{
    if (!m_notifier || !isOpen())
        return;
    bool timedOut = false;
    if (m_socket->waitForMore(0, &timedOut) <= 0 && !timedOut)
        closeOnEnd();
    else
        m_notifier->setEnabled(true);
}

} // namespace Vorkel
