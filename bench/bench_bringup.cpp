// What the hook adds to a program's start and to its memory: the same program with and without it, in
// turn, until its event loop runs. The runner is in here, on a core of its own, and answers at once.

#include "blockingrunner.h"
#include "measure.h"
#include "processes.h"

#include <QCoreApplication>

#include <array>
#include <cstdlib>
#include <sstream>

namespace {

using namespace Bench;

constexpr int Rounds = 30;
constexpr double TimeLimitMs = 5;
constexpr double MemoryLimitMiB = 4;

/// One start of the program, all in milliseconds and MiB.
struct Start
{
    double mainReached = 0;
    double applicationMade = 0;
    double loopRuns = 0;
    double processorTime = 0;
    double resident = 0;
    double proportional = 0;
    double privateDirty = 0;
    // Of a hooked one, as the runner sees it.
    double handshake = 0;
    double bringUp = 0;
};

/// What the program told of itself.
Start readStart(const std::string &line)
{
    std::array<double, 7> numbers = {};
    std::istringstream stream(line);
    for (double &value : numbers)
        stream >> value;
    if (!stream)
        fail("the program did not tell its figures");
    return { numbers[0] / 1e6,  numbers[1] / 1e6,  numbers[2] / 1e6, numbers[3] / 1e6,
             numbers[4] / 1024, numbers[5] / 1024, numbers[6] / 1024 };
}

/// Runs the program once on the core `core`.
Start start(bool hooked, int core, int ownCore)
{
    const Listener listener;
    auto output = makePipe();
    Child::Variables variables;
    if (hooked)
        variables = BlockingRunner::environment(listener);
    pinTo(core);
    Child program = Child::executing({ BENCH_PROGRAM }, variables, output.second.get());
    pinTo(ownCore);
    output.second = Descriptor();
    BlockingRunner::Milestones milestones;
    if (hooked) {
        const BlockingRunner runner(listener);
        milestones = runner.milestones();
    }
    Start result = readStart(readToEnd(output.first.get()));
    program.wait();
    const auto ms = [](auto from, auto to) {
        return std::chrono::duration<double, std::milli>(to - from).count();
    };
    result.handshake = ms(milestones.connected, milestones.announced);
    result.bringUp = ms(milestones.announced, milestones.released);
    return result;
}

struct Row
{
    const char *label;
    double Start::*value;
    double Start::*since; // null: counted from the start
};

// clang-format off
constexpr Row Rows[] = {
    { "start to main(): load libraries (ms)",          &Start::mainReached,     nullptr                 },
    { "  application object: connect, bring up (ms)",  &Start::applicationMade, &Start::mainReached     },
    { "  window, first turn of the event loop (ms)",   &Start::loopRuns,        &Start::applicationMade },
    { "start to event loop (ms)",                      &Start::loopRuns,        nullptr                 },
    { "processor time up to there (ms)",               &Start::processorTime,   nullptr                 },
    { "resident memory (MiB)",                         &Start::resident,        nullptr                 },
    { "proportional share of memory (MiB)",            &Start::proportional,    nullptr                 },
    { "private dirty memory (MiB)",                    &Start::privateDirty,    nullptr                 },
};
// clang-format on

/// The values of one row over all starts.
Samples column(const std::vector<Start> &starts, double Start::*value, double Start::*since = nullptr)
{
    Samples samples;
    for (const Start &entry : starts)
        samples.values.push_back(entry.*value - (since ? entry.*since : 0));
    return samples;
}

/// The median of what the hook added, start by start.
double added(const Samples &hooked, const Samples &plain)
{
    std::vector<double> differences;
    for (std::size_t i = 0; i < hooked.values.size(); ++i)
        differences.push_back(hooked.values[i] - plain.values[i]);
    return median(differences);
}

void report(const std::vector<Start> &plain, const std::vector<Start> &hooked)
{
    Table table({ "until the event loop runs", "without", "with", "added", "ratio" });
    for (const Row &row : Rows) {
        const Samples without = column(plain, row.value, row.since);
        const Samples with = column(hooked, row.value, row.since);
        table.add({ row.label, number(without.median(), 2), number(with.median(), 2),
                    number(added(with, without), 2), number(with.ratioTo(without), 3) });
    }
    table.print();
    std::printf(
            "The runner saw %.2f ms from the connection to the end of the handshake, then %.2f ms until it "
            "let the program go on.\n",
            column(hooked, &Start::handshake).median(), column(hooked, &Start::bringUp).median());
    const auto difference = [&](double Start::*value) {
        return added(column(hooked, value), column(plain, value));
    };
    printTarget("added processor time, ms", difference(&Start::processorTime), TimeLimitMs, 2);
    printTarget("added time until the event loop runs, ms", difference(&Start::loopRuns), TimeLimitMs, 2);
    printTarget("added resident memory, MiB", difference(&Start::resident), MemoryLimitMiB, 2);
}

} // namespace

int main(int argc, char *argv[])
{
    const std::vector<int> available = cores();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "*.warning=false");
    const QCoreApplication application(argc, argv);
    std::vector<Start> plain;
    std::vector<Start> hooked;
    for (int round = -1; round < Rounds; ++round) {
        const Start without = start(false, available.back(), available.front());
        const Start with = start(true, available.back(), available.front());
        if (round < 0)
            continue;
        plain.push_back(without);
        hooked.push_back(with);
    }
    report(plain, hooked);
    return 0;
}
