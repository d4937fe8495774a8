#include "tcpserver.h"

#include "serverlib/tcpmessagechannel.h"

#include <QSocketNotifier>

#include <cerrno>
#include <cstring>

namespace Vorkel::Runner {

namespace {

constexpr int Backlog = 16;

} // namespace

VoidResult TcpServer::listen(const QString &host, quint16 port)
{
    const auto failure = [&](const QString &reason) {
        return VoidResult::failure(
                QStringLiteral("cannot listen on %1, port %2: %3").arg(host, QString::number(port), reason));
    };
    FHostAddress address;
    if (!FHostAddress::getHostByName(host, &address))
        return failure(QStringLiteral("no such host"));
    m_socket.setAddressReusable(true);
    if (!m_socket.bind(address, port) || !m_socket.listen(Backlog))
        return failure(m_socket.errorString());
    m_socket.setBlocking(false);
    m_notifier = new QSocketNotifier(m_socket.descriptor(), QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &TcpServer::acceptWaiting);
    return VoidResult();
}

void TcpServer::acceptWaiting()
{
    const int descriptor = m_socket.accept();
    if (descriptor != -1) {
        emit newChannel(new TCPMessageChannel(new FSocket(descriptor)));
    } else if (errno != EAGAIN && errno != ECONNABORTED) {
        const int systemError = errno;
        m_notifier->setEnabled(false);
        emit serverFailed(systemError, QString::fromLocal8Bit(std::strerror(systemError)));
    }
}

} // namespace Vorkel::Runner
