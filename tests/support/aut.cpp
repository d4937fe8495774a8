#include "hook/autprocess.h"
#include "hook/hook.h"
#include "hook/wrapper.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>

#include <cstdio>
#include <ctime>

#include <unistd.h>

// An application with a hook in it, as small as it can be. It does what standard input says, a line each:
//   status   prints "status hook=1", or 0 when the hook has gone
//   rest     lets its event loop run for some ticks of a timer, then prints what that cost
//   quit     leaves the event loop, as the end of the input and a deadline do

using Vorkel::Hook;

namespace {

class TinyWrapper : public Vorkel::Wrapper
{
public:
    QString name() const override { return QStringLiteral("tiny"); }
    void parseDescriptorData(const QByteArray &data) override
    {
        std::printf("descriptor %s\n", data.toHex().constData());
    }
};

void rest()
{
    static int ticks;
    static int wakeUps;
    static std::clock_t start;
    static QTimer *timer = nullptr;
    ticks = wakeUps = 0;
    start = std::clock();
    if (timer)
        return timer->start();
    timer = new QTimer(QCoreApplication::instance());
    auto *const loop = QAbstractEventDispatcher::instance();
    QObject::connect(loop, &QAbstractEventDispatcher::awake, loop, [] { ++wakeUps; });
    timer->callOnTimeout([] {
        if (++ticks < 12)
            return;
        timer->stop();
        const auto ms = (std::clock() - start) * 1000 / CLOCKS_PER_SEC;
        std::printf("rested ticks=%d wakeups=%d ms=%ld\n", ticks, wakeUps, static_cast<long>(ms));
    });
    timer->start(20);
}

void obeyInput()
{
    char piece[256];
    const ssize_t count = ::read(STDIN_FILENO, piece, sizeof piece);
    if (count <= 0)
        QCoreApplication::quit();
    for (const QByteArray &order : QByteArray(piece, std::max<qsizetype>(count, 0)).split('\n')) {
        if (order == "status")
            std::printf("status hook=%d\n", Hook::hook != nullptr);
        else if (order == "rest")
            rest();
        else if (order == "quit")
            QCoreApplication::quit();
    }
}

} // namespace

int main(int argc, char *argv[])
{
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
    QCoreApplication application(argc, argv);
    TinyWrapper wrapper;
    const Hook *hook = Hook::connectAndCreateHook(&wrapper, new Vorkel::AUTProcess, nullptr, 0);
    std::printf("created runner=%d app=%d subprocess=%d\n", hook->runnerId(), hook->appId(),
                hook->isSubprocess());
    QTimer::singleShot(0, [] {
        if (Hook::hook)
            Hook::hook->completeHookUp();
        std::puts("running");
    });
    QTimer::singleShot(120000, [] { QCoreApplication::exit(3); });
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, obeyInput);
    return QCoreApplication::exec();
}
