#include "support/harness.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QTimerEvent>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <sanitizer/allocator_interface.h>
#include <unistd.h>

namespace {

qint64 heldBytes = 0;
qint64 peakBytes = 0;

void onAllocation(const volatile void *, size_t size)
{
    heldBytes += static_cast<qint64>(size);
    peakBytes = std::max(peakBytes, heldBytes);
}

void onRelease(const volatile void *block)
{
    if (block)
        heldBytes -= static_cast<qint64>(__sanitizer_get_allocated_size(const_cast<const void *>(block)));
}

/// Keeps timers in the order in which they were started and lets none of them fire by itself.
class ManualDispatcher : public QAbstractEventDispatcher
{
public:
    bool processEvents(QEventLoop::ProcessEventsFlags) override { return false; }
    void registerSocketNotifier(QSocketNotifier *) override {}
    void unregisterSocketNotifier(QSocketNotifier *) override {}
    void wakeUp() override {}
    void interrupt() override {}

    void registerTimer(int id, qint64, Qt::TimerType, QObject *object) override
    {
        timers.push_back({ id, object });
    }
    bool unregisterTimer(int id) override
    {
        return std::erase_if(timers, [=](const Timer &timer) { return timer.id == id; }) > 0;
    }
    bool unregisterTimers(QObject *object) override
    {
        return std::erase_if(timers, [=](const Timer &timer) { return timer.object == object; }) > 0;
    }
    QList<TimerInfo> registeredTimers(QObject *) const override { return {}; }
    int remainingTime(int) override { return 0; }

    struct Timer
    {
        int id;
        QObject *object;
    };
    std::vector<Timer> timers;
};

ManualDispatcher *dispatcher = nullptr;

} // namespace

/// Made for speed: freed memory is kept from reuse for long enough to notice its use within one execution,
/// not for so long that each execution touches fresh pages. ASAN_OPTIONS overrides this, for a closer look.
extern "C" const char *__asan_default_options()
{
    return "quarantine_size_mb=8:thread_local_quarantine_size_kb=256:malloc_context_size=3:"
           "detect_stack_use_after_return=0:clear_shadow_mmap_threshold=100000000:max_malloc_fill_size=0";
}

void Harness::start()
{
    if (dispatcher)
        return;
    // Local times must mean the same everywhere.
    qputenv("TZ", "UTC");
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    static int argc = 1;
    static char name[] = "fuzz";
    static char *argv[] = { name, nullptr };
    dispatcher = new ManualDispatcher;
    // Memory that grows between executions looks like a leak.
    dispatcher->timers.reserve(1024);
    QCoreApplication::setEventDispatcher(dispatcher);
    static QCoreApplication application(argc, argv);
    // What the code under test prints is of no interest; the fuzzer and the sanitizers have ways of their
    // own.
    stderr = std::fopen("/dev/null", "w");
}

void Harness::fail(const char *condition, const char *file, int line)
{
    ::dprintf(STDERR_FILENO, "%s:%d: does not hold: %s\n", file, line, condition);
    std::abort();
}

int Harness::timerCount()
{
    return static_cast<int>(dispatcher->timers.size());
}

void Harness::fireTimer(int index)
{
    if (dispatcher->timers.empty())
        return;
    const auto timer = dispatcher->timers[static_cast<size_t>(index) % dispatcher->timers.size()];
    QTimerEvent event(timer.id);
    QCoreApplication::sendEvent(timer.object, &event);
}

void Harness::fireAllTimers()
{
    while (timerCount() > 0)
        fireTimer(0);
}

void Harness::deliverPostedEvents()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

Harness::MemoryPeak::MemoryPeak()
    : m_start(heldBytes)
{
    static const int isCounting = __sanitizer_install_malloc_and_free_hooks(onAllocation, onRelease);
    FUZZ_CHECK(isCounting > 0);
    peakBytes = heldBytes;
}

qint64 Harness::MemoryPeak::bytes() const
{
    return peakBytes - m_start;
}
