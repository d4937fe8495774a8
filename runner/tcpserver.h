#pragma once

#include "fkit/fsocket.h"
#include "serverlib/messagingserver.h"

class QSocketNotifier;

namespace Vorkel::Runner {

/// Listens for applications.
class TcpServer : public MessagingServer
{
    Q_OBJECT

public:
    using MessagingServer::MessagingServer;

    /// Listens on `host`, on a port that the system picks when `port` is 0. The failure text names
    /// host, port and reason.
    VoidResult listen(const QString &host, quint16 port);
    [[nodiscard]] quint16 port() const { return m_socket.localPort(); }

private:
    void acceptWaiting();

    FSocket m_socket;
    QSocketNotifier *m_notifier = nullptr;
};

} // namespace Vorkel::Runner
