// The example's window in a program that ends as soon as its event loop runs, and tells on its standard
// output what it took to get there. One line of numbers: nanoseconds from the start of the program to
// main(), to an application object, and to the first turn of the event loop; nanoseconds of processor
// time up to there; resident, proportional and private dirty memory in KiB.

#include "../examples/addressbook/mainwindow.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <ctime>

namespace {

long long nanoseconds(clockid_t clock)
{
    timespec time = {};
    ::clock_gettime(clock, &time);
    return static_cast<long long>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

long long sinceStart()
{
    static const long long started = std::atoll(std::getenv("BENCH_STARTED"));
    return nanoseconds(CLOCK_MONOTONIC) - started;
}

/// The number behind `field` at the start of a line of the file at `path`; 0 when it is not there.
long kibibytes(const char *path, const char *field)
{
    std::FILE *file = std::fopen(path, "re");
    char line[256];
    long result = 0;
    while (file && std::fgets(line, sizeof line, file)) {
        if (std::strncmp(line, field, std::strlen(field)) == 0)
            result = std::atol(line + std::strlen(field));
    }
    if (file)
        std::fclose(file);
    return result;
}

} // namespace

int main(int argc, char *argv[])
{
    const long long mainReached = sinceStart();
    QApplication application(argc, argv);
    const long long applicationMade = sinceStart();
    MainWindow window;
    window.show();
    // Behind everything that is posted already.
    QMetaObject::invokeMethod(
            &window,
            [&] {
                const long long loopRuns = sinceStart();
                const long long used = nanoseconds(CLOCK_PROCESS_CPUTIME_ID);
                const char *rollup = "/proc/self/smaps_rollup";
                std::printf("%lld %lld %lld %lld %ld %ld %ld\n", mainReached, applicationMade, loopRuns, used,
                            kibibytes("/proc/self/status", "VmRSS:"), kibibytes(rollup, "Pss:"),
                            kibibytes(rollup, "Private_Dirty:"));
                QApplication::quit();
            },
            Qt::QueuedConnection);
    return QApplication::exec();
}
