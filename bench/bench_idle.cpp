// What the hook costs a program while nobody asks it anything: the processor time of the same work with
// and without it, in turn. The runner is in here, on a core of its own.

#include "blockingrunner.h"
#include "measure.h"
#include "processes.h"

#include <QCoreApplication>

#include <cstdlib>
#include <optional>

namespace {

using namespace Bench;

constexpr int Rounds = 25;
constexpr double Limit = 1.02;

/// Milliseconds of processor time that the program's work took.
double run(bool hooked, int core, int ownCore)
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
    std::optional<BlockingRunner> runner;
    if (hooked)
        runner.emplace(listener);
    const std::string line = readToEnd(output.first.get());
    program.wait();
    const double time = std::atof(line.c_str()) / 1e6;
    if (time <= 0)
        fail("the program did not tell its figures");
    return time;
}

} // namespace

int main(int argc, char *argv[])
{
    const std::vector<int> available = cores();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "*.warning=false");
    const QCoreApplication application(argc, argv);
    const auto contender = [&](bool hooked) {
        return [&, hooked] { return run(hooked, available.back(), available.front()); };
    };
    const std::vector<Samples> samples = alternate(Rounds, { contender(false), contender(true) });
    Table table({ "the same work", "ms of processor time", "ratio" });
    table.add({ "without the hook", number(samples[0].median(), 1), "1.000" });
    table.add({ "with the hook, idle", number(samples[1].median(), 1),
                number(samples[1].ratioTo(samples[0]), 3) });
    table.print();
    printTarget("processor time with the hook over without", samples[1].ratioTo(samples[0]), Limit, 3);
    return 0;
}
