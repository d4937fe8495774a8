#include "interrupt.h"

#include <QSocketNotifier>

#include <atomic>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace Vorkel::Runner {

namespace {

constexpr int Signals[] = { SIGINT, SIGTERM, SIGHUP };

int wakeUpPipe[2] = { -1, -1 };
std::atomic<void (*)()> immediately = nullptr;

QList<Interrupt *> &instances()
{
    static QList<Interrupt *> all;
    return all;
}

void onSignal(int)
{
    const int kept = errno;
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = ::write(wakeUpPipe[1], &byte, 1);
    if (void (*const call)() = immediately.load())
        call();
    errno = kept;
}

void setHandlers(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int signal : Signals) {
        struct sigaction present = {};
        if (::sigaction(signal, nullptr, &present) == 0 && present.sa_handler != SIG_IGN)
            ::sigaction(signal, &action, nullptr);
    }
}

} // namespace

Interrupt::Interrupt(QObject *parent)
    : QObject(parent)
{
    instances().append(this);
    if (instances().size() == 1) {
        if (::pipe2(wakeUpPipe, O_CLOEXEC | O_NONBLOCK) != 0)
            return;
        setHandlers(onSignal);
    }
    auto *notifier = new QSocketNotifier(wakeUpPipe[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &Interrupt::drain);
}

Interrupt::~Interrupt()
{
    instances().removeOne(this);
    if (!instances().isEmpty())
        return;
    setHandlers(SIG_DFL);
    for (int &end : wakeUpPipe) {
        ::close(end);
        end = -1;
    }
}

void Interrupt::drain()
{
    char dropped[64];
    while (::read(wakeUpPipe[0], dropped, sizeof dropped) > 0) {
    }
    const QList<Interrupt *> all = instances();
    for (Interrupt *instance : all)
        emit instance->requested();
}

void Interrupt::setImmediate(void (*immediate)())
{
    immediately = immediate;
}

} // namespace Vorkel::Runner
