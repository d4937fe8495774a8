// A program as anybody could have written it. Its first argument is a word that says what it does (see
// carryOut), its standard input what it does once its event loop runs, a line each:
//   quit     leaves the event loop
//   traces   prints what is left of the hook in this process
//   rest     lets the event loop run for some ticks of a timer, then prints what that cost
// Any other line it prints as it came.

#include PROGRAM_APPLICATION_HEADER

#include <QAbstractEventDispatcher>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QSocketNotifier>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <sstream>

#include <sys/socket.h>
#include <unistd.h>

using Application = PROGRAM_APPLICATION;

namespace {

/// The end of whatever nobody ends.
constexpr unsigned DeadlineSeconds = 300;

template <typename... Values>
void say(const char *format, Values... values)
{
    std::printf(format, values...);
    std::fflush(stdout);
}

QList<int> sockets()
{
    QList<int> found;
    const QDir descriptors(QStringLiteral("/proc/self/fd"));
    for (const QString &name : descriptors.entryList(QDir::Files | QDir::System)) {
        if (QFile::symLinkTarget(descriptors.filePath(name)).contains(QLatin1String("socket:[")))
            found << name.toInt();
    }
    return found;
}

void sayTraces()
{
    QFile maps(QStringLiteral("/proc/self/maps"));
    const bool hooked = maps.open(QIODevice::ReadOnly) && maps.readAll().contains("/libvorkelhook.so");
    say("sockets %d, hook %d\n", static_cast<int>(sockets().size()), hooked);
}

[[noreturn]] void pauseForGood()
{
    for (;;)
        ::pause();
}

/// Makes this process die or stop in the middle of a call: of the functions "die" and "freeze", which nobody
/// knows, the hook says so on the log stream.
class LogStream : public std::stringbuf
{
public:
    LogStream() { std::clog.rdbuf(this); }
    ~LogStream() override { std::clog.rdbuf(m_before); }

protected:
    int sync() override
    {
        if (str().ends_with("function die\n"))
            ::raise(SIGKILL);
        if (str().ends_with("function freeze\n"))
            pauseForGood();
        std::cerr << str();
        str({});
        return 0;
    }

private:
    std::streambuf *m_before = std::clog.rdbuf();
};

/// What is done in an event loop.
class Orders
{
public:
    Orders()
    {
        QObject::connect(&m_input, &QSocketNotifier::activated, &m_input, [this] { read(); });
        QMetaObject::invokeMethod(
                &m_input, [] { say("running\n"); }, Qt::QueuedConnection);
    }
    [[nodiscard]] bool haveEnded() const { return m_ended; }

private:
    void read()
    {
        char piece[256];
        const ssize_t count = ::read(STDIN_FILENO, piece, sizeof piece);
        m_input.setEnabled(count > 0);
        m_pending.append(piece, std::max<ssize_t>(count, 0));
        for (qsizetype end; (end = m_pending.indexOf('\n')) >= 0; m_pending.remove(0, end + 1))
            obey(m_pending.first(end));
    }

    void obey(const QByteArray &order)
    {
        if (order == "quit") {
            m_ended = true;
            QCoreApplication::quit();
        } else if (order == "traces") {
            sayTraces();
        } else if (order == "rest") {
            rest();
        } else {
            say("%s\n", order.constData());
        }
    }

    void rest()
    {
        auto *const timer = new QTimer(&m_input);
        QObject::connect(timer->thread()->eventDispatcher(), &QAbstractEventDispatcher::awake, timer,
                         [this] { ++m_wakeUps; });
        timer->callOnTimeout([this, timer] {
            if (++m_ticks == 12) {
                say("rested %d %d\n", m_ticks, m_wakeUps);
                timer->stop();
            }
        });
        timer->start(20);
    }

    LogStream m_log;
    QSocketNotifier m_input { STDIN_FILENO, QSocketNotifier::Read };
    QByteArray m_pending;
    bool m_ended = false;
    int m_ticks = 0;
    int m_wakeUps = 0;
};

/// Runs a child and ends with its code.
int runChild(const QStringList &command)
{
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedChannels);
    child.setInputChannelMode(QProcess::ForwardedInputChannel);
    QObject::connect(&child, &QProcess::finished, [](int code) { QCoreApplication::exit(code); });
    child.start(command.first(), command.mid(1));
    return Application::exec();
}

void hangUp()
{
    for (const int socket : sockets())
        ::shutdown(socket, SHUT_RDWR);
}

int carryOut(std::string_view deed, int &argc, char **argv)
{
    if (deed == "none")
        return 0;
    if (deed == "stickearly")
        pauseForGood();
    if (deed == "crash") {
        std::fputs("about to crash\n", stderr);
        std::abort();
    }
    if (deed == "waste")
        delete new Application(argc, argv);
    if (deed == "twice")
        carryOut("quit", argc, argv);

    const Application application(argc, argv);
    if (deed == "stick")
        pauseForGood();
    if (deed == "noloop") {
        std::fputs("nothing to do\n", stderr);
        return 7;
    }
    if (deed == "parent")
        return runChild(QCoreApplication::arguments().mid(2));
    if (deed == "quit") {
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
        return Application::exec();
    }
    if (deed == "nest") {
        QEventLoop loop;
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
        loop.exec();
    }
    const Orders orders;
    if (deed == "hangup")
        QMetaObject::invokeMethod(qApp, hangUp, Qt::QueuedConnection);
    while (deed == "pump" && !orders.haveEnded())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return deed == "pump" ? 0 : Application::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    ::alarm(DeadlineSeconds);
    const int code = carryOut(argc > 1 ? argv[1] : "run", argc, argv);
    sayTraces();
    return code;
}
