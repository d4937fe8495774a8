// What a trace point costs while nobody listens, against the least it could cost: a load and a branch.

#include "shared/trace.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>

namespace {

constexpr int visits = 20'000'000;
constexpr int rounds = 9;

std::atomic<bool> listening = false;
int sink = 0;

[[gnu::noinline]] void floorLoop(const QString &text)
{
    for (int i = 0; i < visits; ++i) {
        if (listening.load(std::memory_order_relaxed)) [[unlikely]]
            sink += i + static_cast<int>(text.size());
    }
}

[[gnu::noinline]] void traceLoop(const QString &text)
{
    for (int i = 0; i < visits; ++i)
        VORKEL_TRACE("Hook", "visit", { "i", i }, { "text", text + text }, { "sink", std::to_string(sink) });
}

double nanosecondsPerVisit(void (*loop)(const QString &), const QString &text)
{
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    loop(text);
    return std::chrono::duration<double, std::nano>(Clock::now() - start).count() / visits;
}

} // namespace

int main()
{
    unsetenv("VORKEL_TRACE");
    const QString text = QStringLiteral("argument");
    double least = std::numeric_limits<double>::max();
    double ours = least;
    for (int round = 0; round < rounds; ++round) {
        least = std::min(least, nanosecondsPerVisit(floorLoop, text));
        ours = std::min(ours, nanosecondsPerVisit(traceLoop, text));
    }
    std::printf("load and branch       %.3f ns\n", least);
    std::printf("inactive trace point  %.3f ns\n", ours);
    std::printf("ratio                 %.2f\n", ours / least);
    return 0;
}
