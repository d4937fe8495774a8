// A program as anybody could have written it. Its first argument says what it does, its standard input what
// it does once its event loop runs, a line each:
//   quit     leaves the event loop
//   traces   prints what is left of the hook in this process
// Any other line it prints as it came.

#include PROGRAM_APPLICATION_HEADER

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QSocketNotifier>

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
        } else {
            say("%s\n", order.constData());
        }
    }

    LogStream m_log;
    QSocketNotifier m_input { STDIN_FILENO, QSocketNotifier::Read };
    QByteArray m_pending;
    bool m_ended = false;
};

int run(int &argc, char **argv)
{
    const Application application(argc, argv);
    const Orders orders;
    return Application::exec();
}

int pump(int &argc, char **argv)
{
    const Application application(argc, argv);
    const Orders orders;
    while (!orders.haveEnded())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return 0;
}

int nest(int &argc, char **argv)
{
    const Application application(argc, argv);
    QEventLoop loop;
    QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    loop.exec();
    const Orders orders;
    return Application::exec();
}

int quitAtOnce(int &argc, char **argv)
{
    const Application application(argc, argv);
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    return Application::exec();
}

int runTwice(int &argc, char **argv)
{
    quitAtOnce(argc, argv);
    return run(argc, argv);
}

int wasteOne(int &argc, char **argv)
{
    delete new Application(argc, argv);
    return run(argc, argv);
}

int doWithout(int &, char **)
{
    say("no application object\n");
    return 0;
}

int skipTheLoop(int &argc, char **argv)
{
    const Application application(argc, argv);
    std::fputs("nothing to do\n", stderr);
    return 7;
}

int crash(int &, char **)
{
    std::fputs("about to crash\n", stderr);
    std::abort();
}

int stickBeforeTheLoop(int &argc, char **argv)
{
    const Application application(argc, argv);
    pauseForGood();
}

int stickAtTheStart(int &, char **)
{
    pauseForGood();
}

int ignoreTerm(int &argc, char **argv)
{
    std::signal(SIGTERM, SIG_IGN);
    say("pid %d\n", ::getpid());
    return run(argc, argv);
}

int hangUp(int &argc, char **argv)
{
    const Application application(argc, argv);
    const Orders orders;
    const auto end = [] {
        for (const int socket : sockets())
            ::shutdown(socket, SHUT_RDWR);
    };
    QMetaObject::invokeMethod(qApp, end, Qt::QueuedConnection);
    return Application::exec();
}

int parent(int &argc, char **argv)
{
    const Application application(argc, argv);
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedChannels);
    child.setInputChannelMode(QProcess::ForwardedInputChannel);
    QObject::connect(&child, &QProcess::finished, [](int code) { QCoreApplication::exit(code); });
    const QStringList command = QCoreApplication::arguments().mid(2);
    child.start(command.first(), command.mid(1));
    return Application::exec();
}

struct Deed
{
    const char *name;
    int (*carryOut)(int &argc, char **argv);
};

// clang-format off
constexpr Deed Deeds[] = {
    { "run",         run                },
    { "pump",        pump               },
    { "nest",        nest               },
    { "quit",        quitAtOnce         },
    { "twice",       runTwice           },
    { "waste",       wasteOne           },
    { "none",        doWithout          },
    { "noloop",      skipTheLoop        },
    { "crash",       crash              },
    { "stick",       stickBeforeTheLoop },
    { "stickearly",  stickAtTheStart    },
    { "ignoreterm",  ignoreTerm         },
    { "hangup",      hangUp             },
    { "parent",      parent             },
};
// clang-format on

} // namespace

int main(int argc, char *argv[])
{
    ::alarm(DeadlineSeconds);
    for (const Deed &deed : Deeds) {
        if (argc > 1 && QByteArrayView(deed.name) == argv[1]) {
            const int code = deed.carryOut(argc, argv);
            sayTraces();
            return code;
        }
    }
    return 2;
}
