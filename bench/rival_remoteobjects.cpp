#include "rivals.h"

#include "processes.h"
#include "rep_processinfo_merged.h"

#include <QCoreApplication>
#include <QRemoteObjectHost>
#include <QTcpServer>
#include <QTcpSocket>

#include <unistd.h>

namespace Bench {

namespace {

class Source : public ProcessInfoSimpleSource
{
public:
    int getPID() override { return static_cast<int>(::getpid()); }
};

void serve(int listener)
{
    char name[] = "bench";
    char *words[] = { name, nullptr };
    int count = 1;
    QCoreApplication application(count, words);
    Source source;
    QRemoteObjectHost host;
    host.setHostUrl(QUrl(QStringLiteral("bench:source")), QRemoteObjectHost::AllowExternalRegistration);
    host.enableRemoting(&source);
    QTcpServer server;
    server.setSocketDescriptor(listener);
    QObject::connect(&server, &QTcpServer::newConnection, [&] {
        QTcpSocket *socket = server.nextPendingConnection();
        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        host.addHostSideConnection(socket);
    });
    QCoreApplication::exec();
}

class RemoteObjects : public Rival
{
public:
    [[nodiscard]] const char *name() const override { return "Qt Remote Objects over TCP"; }

    void connect() override
    {
        m_socket.connectToHost(QStringLiteral("127.0.0.1"), m_listener.port());
        m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
        m_node.addClientSideConnection(&m_socket);
        m_replica.reset(m_node.acquire<ProcessInfoReplica>());
        if (!m_replica->waitForSource())
            fail("no source");
    }

    void call() override
    {
        QRemoteObjectPendingReply<int> reply = m_replica->getPID();
        if (!reply.waitForFinished() || reply.returnValue() <= 0)
            fail("remote objects");
    }

private:
    Listener m_listener;
    Child m_server = Child::running([this] { serve(m_listener.descriptor()); });
    QTcpSocket m_socket;
    QRemoteObjectNode m_node;
    std::unique_ptr<ProcessInfoReplica> m_replica;
};

} // namespace

std::unique_ptr<Rival> makeRemoteObjects()
{
    return std::make_unique<RemoteObjects>();
}

} // namespace Bench
