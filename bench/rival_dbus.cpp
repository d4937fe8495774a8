#include "rivals.h"

#include "processes.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServer>

#include <unistd.h>

namespace Bench {

namespace {

const QString ServiceName = QStringLiteral("org.example.Bench");
const QString ObjectPath = QStringLiteral("/");
const QString InterfaceName = QStringLiteral("org.example.Bench");

class ProcessInfo : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.example.Bench")

public slots:
    int getPID()
    {
        return static_cast<int>(::getpid());
    } // NOLINT(readability-convert-member-functions-to-static)
};

/// An object for whoever connects, told to the client by a line on `output`.
void runServer(const std::function<QString(ProcessInfo *)> &offer, int output)
{
    char name[] = "bench";
    char *words[] = { name, nullptr };
    int count = 1;
    QCoreApplication application(count, words);
    ProcessInfo info;
    const QByteArray line = offer(&info).toUtf8() + '\n';
    (void)!::write(output, line.constData(), static_cast<size_t>(line.size()));
    QCoreApplication::exec();
}

void servePeers(int output)
{
    std::unique_ptr<QDBusServer> server;
    runServer(
            [&](ProcessInfo *info) {
                server = std::make_unique<QDBusServer>(QStringLiteral("unix:tmpdir=/tmp"));
                QObject::connect(
                        server.get(), &QDBusServer::newConnection, info, [=](QDBusConnection connection) {
                            connection.registerObject(ObjectPath, info, QDBusConnection::ExportAllSlots);
                        });
                return server->address();
            },
            output);
}

void serveBus(const QString &address, int output)
{
    runServer(
            [&](ProcessInfo *info) {
                QDBusConnection bus = QDBusConnection::connectToBus(address, QStringLiteral("server"));
                bus.registerObject(ObjectPath, info, QDBusConnection::ExportAllSlots);
                bus.registerService(ServiceName);
                return address;
            },
            output);
}

QString readLine(int descriptor)
{
    QByteArray line;
    char character = 0;
    while (::read(descriptor, &character, 1) == 1 && character != '\n')
        line.append(character);
    return QString::fromUtf8(line);
}

class DBus : public Rival
{
public:
    void call() override
    {
        const auto request = QDBusMessage::createMethodCall(service(), ObjectPath, InterfaceName,
                                                            QStringLiteral("getPID"));
        if (m_connection.call(request).arguments().value(0).toInt() <= 0)
            fail("D-Bus");
    }

protected:
    [[nodiscard]] virtual QString service() const = 0;

    std::pair<Descriptor, Descriptor> m_pipe = makePipe();
    QDBusConnection m_connection { QString() };
};

class PeerToPeer : public DBus
{
public:
    [[nodiscard]] const char *name() const override { return "QtDBus, peer to peer"; }
    void connect() override
    {
        m_connection = QDBusConnection::connectToPeer(readLine(m_pipe.first.get()), QStringLiteral("peer"));
    }

protected:
    [[nodiscard]] QString service() const override { return QString(); }

private:
    Child m_server = Child::running([this] { servePeers(m_pipe.second.get()); });
};

class Bus : public DBus
{
public:
    [[nodiscard]] const char *name() const override { return "QtDBus, through a daemon"; }
    void connect() override
    {
        const QString address = readLine(m_pipe.first.get());
        m_connection = QDBusConnection::connectToBus(address, QStringLiteral("client"));
    }

protected:
    [[nodiscard]] QString service() const override { return ServiceName; }

private:
    std::pair<Descriptor, Descriptor> m_daemonPipe = makePipe();
    Child m_daemon = Child::executing({ "/bin/sh", "-c",
                                        "exec " BENCH_DBUS_DAEMON " --session --nofork --nopidfile "
                                        "--print-address=1 --address=unix:tmpdir=/tmp 2>/dev/null" },
                                      {}, m_daemonPipe.second.get());
    Child m_server =
            Child::running([this] { serveBus(readLine(m_daemonPipe.first.get()), m_pipe.second.get()); });
};

} // namespace

std::unique_ptr<Rival> makePeerToPeerDBus()
{
    return std::make_unique<PeerToPeer>();
}

std::unique_ptr<Rival> makeBusDBus()
{
    return std::make_unique<Bus>();
}

} // namespace Bench

#include "rival_dbus.moc"
