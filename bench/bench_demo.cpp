// The example's script from the start of the command to its verdict, and where the time goes. The floor is
// what takes place without any test, too: an X server's start and as many starts of the example's window.

#include "measure.h"
#include "processes.h"

#include "driving/virtualdisplay.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <cstdlib>
#include <sstream>

#include <unistd.h>

namespace {

using namespace Bench;

constexpr int Rounds = 7;

/// One run of the script, in milliseconds.
struct Run
{
    double whole = 0;
    int launches = 0;
    double launching = 0; ///< until the event loops run, with the hook
    double steps = 0; ///< all others
};

Run run()
{
    auto output = makePipe();
    std::string text;
    Run result;
    result.whole = 1e3 * seconds([&] {
                       Child command = Child::executing(
                               { BENCH_COMMAND, "test", "--xvfb", BENCH_SCRIPT, "--", BENCH_EXAMPLE }, {},
                               output.second.get());
                       output.second = Descriptor();
                       text = readToEnd(output.first.get());
                       command.wait();
                   });
    if (text.find(" 0 failed") == std::string::npos) {
        std::fputs(text.c_str(), stderr);
        std::exit(1);
    }
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string ok, unit, action;
        double ms = 0;
        if (!(words >> ok >> ms >> unit >> action) || ok != "ok")
            continue;
        const bool isLaunch = action == "launch";
        result.launches += isLaunch;
        (isLaunch ? result.launching : result.steps) += ms;
    }
    return result;
}

/// Milliseconds until an X server tells its display; the name goes to `*display`.
double startServer(std::unique_ptr<Vorkel::Runner::VirtualDisplay> *display)
{
    *display = std::make_unique<Vorkel::Runner::VirtualDisplay>();
    return 1e3 * seconds([&] {
               if ((*display)->start(QSize(1280, 1024)).isFailure())
                   fail("Xvfb");
           });
}

/// Milliseconds from the start of the example's window, without the hook, until the event loop runs.
double startPlainly(const QString &display)
{
    auto output = makePipe();
    Child program = Child::executing({ BENCH_PROGRAM }, { { "DISPLAY", display.toStdString() } },
                                     output.second.get());
    output.second = Descriptor();
    std::istringstream numbers(readToEnd(output.first.get()));
    program.wait();
    double mainReached = 0, applicationMade = 0, loopRuns = 0;
    if (!(numbers >> mainReached >> applicationMade >> loopRuns))
        fail("the program did not tell its figures");
    return loopRuns / 1e6;
}

/// Where the time of the runs went, each row with its share of the whole.
void printRuns(const std::vector<Run> &runs, const Samples &server, const Samples &plain)
{
    const auto column = [&](const auto &value) {
        Samples samples;
        for (std::size_t i = 0; i < runs.size(); ++i)
            samples.values.push_back(value(runs[i], i));
        return samples;
    };
    const int launches = runs.front().launches;
    const Samples whole = column([](const Run &run, std::size_t) { return run.whole; });
    const Samples floor = column(
            [&](const Run &run, std::size_t i) { return server.values[i] + run.launches * plain.values[i]; });
    Table table({ "the demo, from start to verdict", "ms", "share" });
    const auto add = [&](const std::string &label, const Samples &samples) {
        table.add({ label, number(samples.median(), 0), number(samples.ratioTo(whole), 2) });
    };
    add("the whole", whole);
    add("  the X server's start", server);
    add("  " + std::to_string(launches) + " launches, until the event loop runs",
        column([](const Run &run, std::size_t) { return run.launching; }));
    add("    of these the program's own start, without the hook",
        column([&](const Run &run, std::size_t i) { return run.launches * plain.values[i]; }));
    add("  all other steps", column([](const Run &run, std::size_t) { return run.steps; }));
    add("  ends of the programs, the command itself", column([&](const Run &run, std::size_t i) {
            return run.whole - server.values[i] - run.launching - run.steps;
        }));
    table.print();
    std::printf("the whole over the starts of X server and programs: %.2f\n", whole.ratioTo(floor));
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    // The demo leaves a picture where it runs.
    const QTemporaryDir folder;
    if (::chdir(folder.path().toLocal8Bit().constData()) != 0)
        fail("chdir");
    qunsetenv("QT_QPA_PLATFORM");
    std::vector<Run> runs;
    std::unique_ptr<Vorkel::Runner::VirtualDisplay> display;
    const std::vector<Samples> samples = alternate(Rounds,
                                                   {
                                                           [&] { return startServer(&display); },
                                                           [&] { return startPlainly(display->name()); },
                                                           [&] {
                                                               runs.push_back(run());
                                                               return runs.back().whole;
                                                           },
                                                   });
    runs.erase(runs.begin());
    printRuns(runs, samples[0], samples[1]);
    return 0;
}
