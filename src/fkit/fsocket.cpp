#include "fkit/fsocket.h"

#include "fkit/socketerrors.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

constexpr int MinWritePiece = 4096;
constexpr int MaxWritePiece = 0x200000;

template <typename Call>
auto retried(Call call)
{
    decltype(call()) result;
    do {
        result = call();
    } while (result == -1 && errno == EINTR);
    return result;
}

sockaddr_in systemAddress(const FHostAddress &address, quint16 port)
{
    sockaddr_in result = {};
    result.sin_family = AF_INET;
    result.sin_port = htons(port);
    result.sin_addr.s_addr = htonl(address.ipv4());
    return result;
}

} // namespace

FSocket::FSocket()
{
    m_descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (m_descriptor == -1)
        store(SocketOperation::Create, errno);
}

FSocket::FSocket(int descriptor)
    : m_descriptor(descriptor)
    , m_adopted(true)
{
    getConnectionParameters();
}

FSocket::~FSocket()
{
    close();
}

QString FSocket::errorString() const
{
    return m_systemError == 0 ? QStringLiteral("Unknown Error")
                              : QString::fromLocal8Bit(std::strerror(m_systemError));
}

void FSocket::store(SocketOperation operation, int systemError)
{
    if (m_error != NoError)
        return;
    m_systemError = systemError;
    m_error = socketError(operation, systemError);
}

int FSocket::option(int which)
{
    int name = 0;
    switch (which) {
    case ReceiveBufferSize:
        name = SO_RCVBUF;
        break;
    case SendBufferSize:
        name = SO_SNDBUF;
        break;
    case AddressReuse:
        name = SO_REUSEADDR;
        break;
    case PendingError:
        name = SO_ERROR;
        break;
    default:
        return -1;
    }
    if (!isValid())
        return -1;
    int value = 0;
    socklen_t length = sizeof value;
    if (::getsockopt(m_descriptor, SOL_SOCKET, name, &value, &length) == -1) {
        store(SocketOperation::Option, errno);
        return -1;
    }
    return value;
}

void FSocket::setSocketOption(int level, int name, const void *value, unsigned length)
{
    if (isValid() && ::setsockopt(m_descriptor, level, name, value, length) == -1)
        store(SocketOperation::Option, errno);
}

void FSocket::setSendBufferSize(int size)
{
    setSocketOption(SOL_SOCKET, SO_SNDBUF, &size, sizeof size);
    m_writePiece = 0;
}

void FSocket::setReceiveBufferSize(int size)
{
    setSocketOption(SOL_SOCKET, SO_RCVBUF, &size, sizeof size);
}

void FSocket::setSendTimeout(int ms)
{
    const timeval limit = { ms / 1000, ms % 1000 * 1000 };
    setSocketOption(SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
}

void FSocket::setReceiveTimeout(int ms)
{
    const timeval limit = { ms / 1000, ms % 1000 * 1000 };
    setSocketOption(SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
}

void FSocket::setTcpNoDelay(bool on)
{
    const int value = on;
    setSocketOption(IPPROTO_TCP, TCP_NODELAY, &value, sizeof value);
}

void FSocket::setAddressReusable(bool on)
{
    const int value = on;
    setSocketOption(SOL_SOCKET, SO_REUSEADDR, &value, sizeof value);
}

bool FSocket::isBlocking() const
{
    if (!isValid())
        return true;
    const int flags = ::fcntl(m_descriptor, F_GETFL);
    if (flags == -1) {
        const int systemError = errno;
        qWarning("FSocket::isBlocking: fcntl returned error %d: %s", systemError, std::strerror(systemError));
        return false;
    }
    return (flags & O_NONBLOCK) == 0;
}

void FSocket::setBlocking(bool on)
{
    const int flags = ::fcntl(m_descriptor, F_GETFL);
    if (flags == -1 || ::fcntl(m_descriptor, F_SETFL, on ? flags & ~O_NONBLOCK : flags | O_NONBLOCK) == -1)
        store(SocketOperation::SetBlocking, errno);
}

bool FSocket::bind(const FHostAddress &address, quint16 port)
{
    const sockaddr_in local = systemAddress(address, port);
    if (::bind(m_descriptor, reinterpret_cast<const sockaddr *>(&local), sizeof local) == -1) {
        store(SocketOperation::Bind, errno);
        return false;
    }
    getConnectionParameters();
    return true;
}

bool FSocket::listen(int backlog)
{
    if (::listen(m_descriptor, backlog) == -1) {
        m_systemError = errno;
        m_error = InvalidSocket;
        return false;
    }
    return true;
}

int FSocket::accept()
{
    return retried([this] { return ::accept4(m_descriptor, nullptr, nullptr, SOCK_CLOEXEC); });
}

bool FSocket::connectToHost(const FHostAddress &address, quint16 port, bool block)
{
    const bool wasBlocking = isBlocking();
    if (block) {
        setBlocking(true);
        if (m_error != NoError)
            return false;
    }
    const sockaddr_in remote = systemAddress(address, port);
    const auto *remoteAddress = reinterpret_cast<const sockaddr *>(&remote);
    const int result = retried([&] { return ::connect(m_descriptor, remoteAddress, sizeof remote); });
    int systemError = result == 0 ? 0 : errno;
    if (!wasBlocking && !block)
        return result == 0 || systemError == EINPROGRESS;

    // A blocking connect that reaches the send time-out comes back as one still in progress.
    if (systemError == EINPROGRESS)
        systemError = ETIMEDOUT;
    getConnectionParameters();
    if (block)
        setBlocking(wasBlocking);
    if (result == 0 || systemError == EISCONN || systemError == EALREADY)
        return true;
    if (systemError != EAGAIN)
        store(SocketOperation::Connect, systemError);
    return false;
}

bool FSocket::connectToHost(const QString &host, quint16 port)
{
    if (!isValid())
        return false;
    FHostAddress address;
    if (!FHostAddress::getHostByName(host, &address)) {
        m_error = HostNotFound;
        return false;
    }
    return connectToHost(address, port, true);
}

void FSocket::finishNonBlockingConnect()
{
    if (const int pending = option(PendingError); pending != 0)
        store(SocketOperation::Connect, pending);
    getConnectionParameters();
}

void FSocket::shutdown()
{
    if (isValid())
        ::shutdown(m_descriptor, SHUT_WR);
}

int FSocket::readBlock(char *buffer, int length)
{
    if (!isValid() || (!buffer && length != 0))
        return -1;
    const ssize_t result = retried([&]() -> ssize_t {
        return ::recv(m_descriptor, buffer, static_cast<size_t>(length), MSG_NOSIGNAL);
    });
    if (result == -1)
        return transferFailed();
    if (result == 0 && length > 0)
        close();
    return static_cast<int>(result);
}

int FSocket::writeBlock(const char *buffer, int length, bool moreFollows)
{
    if (!isValid() || (!buffer && length != 0))
        return -1;
    if (m_writePiece == 0)
        m_writePiece = std::clamp(2 * sendBufferSize(), MinWritePiece, MaxWritePiece);
    const int piece = std::min(m_writePiece, length);
    const int flags = moreFollows ? MSG_NOSIGNAL | MSG_MORE : MSG_NOSIGNAL;
    const ssize_t result = retried(
            [&]() -> ssize_t { return ::send(m_descriptor, buffer, static_cast<size_t>(piece), flags); });
    return result == -1 ? transferFailed() : static_cast<int>(result);
}

int FSocket::transferFailed()
{
    const int systemError = errno;
    if (m_error != NoError || systemError == EAGAIN)
        return -1;
    if (systemError == EPIPE || systemError == ECONNRESET) {
        close();
        return 0;
    }
    store(SocketOperation::ReadWrite, systemError);
    return -1;
}

int FSocket::bytesAvailable() const
{
    if (!isValid())
        return -1;
    int count = 0;
    return retried([&] { return ::ioctl(m_descriptor, FIONREAD, &count); }) == -1 ? -1 : count;
}

int FSocket::waitForMore(int ms, bool *timedOut)
{
    if (!isValid())
        return -1;
    if (timedOut)
        *timedOut = false;
    pollfd entry = { m_descriptor, POLLIN, 0 };
    const int result = retried([&] { return ::poll(&entry, 1, ms < 0 ? -1 : ms); });
    if (result == -1)
        return -1;
    if (result == 0 && timedOut)
        *timedOut = true;
    return bytesAvailable();
}

bool FSocket::waitForDisconnected(int ms)
{
    QElapsedTimer timer;
    timer.start();
    char dropped[512];
    while (isValid()) {
        const qint64 left = ms - timer.elapsed();
        if (left <= 0)
            return false;
        bool timedOut = false;
        const int available = waitForMore(static_cast<int>(left), &timedOut);
        if (timedOut || available < 1)
            return false;
        const int count = readBlock(dropped, sizeof dropped);
        if (count <= 0)
            return count == 0;
    }
    return false;
}

void FSocket::close()
{
    if (!isValid())
        return;
    // Not retried: the system has let go of the descriptor even when it was interrupted.
    ::close(m_descriptor);
    m_descriptor = -1;
    m_error = NoError;
    m_systemError = 0;
    getConnectionParameters();
}

void FSocket::getConnectionParameters()
{
    if (!isValid()) {
        m_localPort = m_peerPort = 0;
        m_localAddress = m_peerAddress = FHostAddress();
        return;
    }
    const auto fetch = [this](auto call, quint16 *port, FHostAddress *address) {
        sockaddr_in name = {};
        socklen_t length = sizeof name;
        if (call(m_descriptor, reinterpret_cast<sockaddr *>(&name), &length) == 0) {
            *port = ntohs(name.sin_port);
            *address = FHostAddress(ntohl(name.sin_addr.s_addr));
        }
    };
    fetch(::getsockname, &m_localPort, &m_localAddress);
    fetch(::getpeername, &m_peerPort, &m_peerAddress);
}
