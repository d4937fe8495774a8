#include "roundtripservers.h"

#include "processes.h"
#include "serverlib/ipc.h"
#include "serverlib/ipcresponsehandleriface.h"
#include "serverlib/tcpmessagechannel.h"

#include <QApplication>
#include <QDataStream>
#include <QIODevice>
#include <QSocketNotifier>

#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace Bench {

namespace {

constexpr int HeaderLength = 24;

Descriptor acceptOn(int listener)
{
    Descriptor peer(::accept(listener, nullptr, nullptr));
    if (peer.get() == -1)
        fail("accept");
    setNoDelay(peer.get());
    return peer;
}

/// An application object that needs no arguments.
template <typename Application>
class WithoutArguments
{
public:
    void exec() { m_application.exec(); }

private:
    char m_name[6] = "bench";
    char *m_words[2] = { m_name, nullptr };
    int m_count = 1;
    Application m_application { m_count, m_words };
};

/// Runs the event loop of an `Application`; `answer` gets every message that arrives.
template <typename Application, typename Answer>
void serve(int listener, Answer answer)
{
    WithoutArguments<Application> application;
    const Descriptor peer = acceptOn(listener);
    QSocketNotifier notifier(peer.get(), QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, [&] {
        int count = 0;
        ::ioctl(peer.get(), FIONREAD, &count);
        if (count == 0)
            return QCoreApplication::quit();
        QByteArray message(count, Qt::Uninitialized);
        (void)!::recv(peer.get(), message.data(), static_cast<size_t>(count), MSG_NOSIGNAL);
        const QByteArray reply = answer(message);
        (void)!::send(peer.get(), reply.constData(), static_cast<size_t>(reply.size()), MSG_NOSIGNAL);
    });
    application.exec();
}

QByteArray decodeAndEncode(const QByteArray &message)
{
    QDataStream in(message);
    in.setVersion(QDataStream::Qt_3_3);
    in.skipRawData(HeaderLength);
    QString name;
    QList<QVariant> arguments;
    in >> name >> arguments;

    QByteArray reply;
    QDataStream out(&reply, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_3_3);
    for (quint32 word : { quint32(ReplyLength), 1U, 2U, 2U, 1U, 0U })
        out << word;
    out << QList<QVariant> { static_cast<int>(::getpid()) };
    return reply;
}

class ProcessIdHandler : public Vorkel::IPCResponseHandlerIface
{
public:
    QVariant handleCall(FUInt32, const QString &, const Vorkel::ArgumentList &) override
    {
        return static_cast<int>(::getpid());
    }
    using Vorkel::IPCResponseHandlerIface::handleCall;
    void connectionClosed() override { QCoreApplication::quit(); }
};

} // namespace

void serveRaw(int listener)
{
    const Descriptor peer = acceptOn(listener);
    char message[CallLength];
    while (receiveAll(peer.get(), message, sizeof message))
        sendAll(peer.get(), message, ReplyLength);
}

void serveFromEventLoop(int listener)
{
    serve<QCoreApplication>(listener, [](const QByteArray &message) { return message.first(ReplyLength); });
}

void serveDecoding(int listener, bool gui)
{
    if (gui)
        serve<QApplication>(listener, decodeAndEncode);
    else
        serve<QCoreApplication>(listener, decodeAndEncode);
}

void serveByIpc(int listener)
{
    WithoutArguments<QCoreApplication> application;
    ProcessIdHandler handler;
    auto *channel = new Vorkel::TCPMessageChannel(new FSocket(acceptOn(listener).release()));
    const Vorkel::IPC ipc(channel, Vorkel::ClientData { 2, 1, 4, {} }, &handler, nullptr);
    application.exec();
}

} // namespace Bench
