// What a call of the smallest function costs: through a real program with the hook inside, and through
// ever less, down to what two processes need to wake each other. All of them on one core, a slice each
// in turn, the client the same few bytes written and read.

#include "blockingrunner.h"
#include "measure.h"
#include "processes.h"
#include "rivals.h"
#include "roundtripservers.h"

#include <QCoreApplication>
#include <QtEndian>

#include <array>
#include <cstdlib>

namespace {

using namespace Bench;

constexpr int Rounds = 300;
constexpr int CallsPerSlice = 100;
constexpr double Limit = 1.25;

/// The bytes of a call of `getPID`, as the protocol has them.
std::array<char, CallLength> callMessage()
{
    std::array<char, CallLength> message = {};
    const quint32 words[] = { CallLength, BlockingRunner::Program, 1, 1, 7, 0, 12 };
    char *end = message.data();
    for (const quint32 word : words) {
        qToBigEndian(word, end);
        end += sizeof word;
    }
    for (const char character : { 'g', 'e', 't', 'P', 'I', 'D' }) {
        end[1] = character;
        end += 2;
    }
    return message;
}

/// Microseconds a round trip on the connection `descriptor`.
double slice(int descriptor)
{
    static const auto message = callMessage();
    std::array<char, ReplyLength> reply;
    const double time = seconds([&] {
        for (int i = 0; i < CallsPerSlice; ++i) {
            sendAll(descriptor, message.data(), message.size());
            if (!receiveAll(descriptor, reply.data(), reply.size()))
                fail("receive");
        }
    });
    return time / CallsPerSlice * 1e6;
}

double slice(const std::function<void()> &call)
{
    return seconds([&] {
               for (int i = 0; i < CallsPerSlice; ++i)
                   call();
           })
            / CallsPerSlice * 1e6;
}

/// A process of ours with one of the servers.
class Floor
{
public:
    explicit Floor(const std::function<void(int)> &server)
        : m_process(Child::running([&] { server(m_listener.descriptor()); }))
        , m_connection(m_listener.connect())
    {
    }

    [[nodiscard]] std::function<double()> contender() const
    {
        return [this] { return slice(m_connection.get()); };
    }

private:
    Listener m_listener;
    Child m_process;
    Descriptor m_connection;
};

std::vector<std::unique_ptr<Rival>> startRivals()
{
    std::vector<std::unique_ptr<Rival>> rivals;
#ifdef BENCH_REMOTEOBJECTS
    rivals.push_back(makeRemoteObjects());
#else
    std::puts("Qt Remote Objects is not installed (qt6-remoteobjects-dev) and left out");
#endif
#ifdef BENCH_DBUS
    rivals.push_back(makePeerToPeerDBus());
#else
    std::puts("QtDBus is not installed (qt6-base-dev) and left out");
#endif
#ifdef BENCH_DBUS_DAEMON
    rivals.push_back(makeBusDBus());
#elif defined(BENCH_DBUS)
    std::puts("dbus-daemon is not installed (dbus) and left out");
#endif
    return rivals;
}

/// Whatever runs `command` gets the hook, and its program is called `calls` times: for a profiler.
void callOnly(int calls, const std::vector<std::string> &command)
{
    HookedProgram program(command);
    for (int done = 0; done < calls; done += CallsPerSlice)
        slice(program.runner().descriptor());
}

struct Contender
{
    std::string name;
    std::function<double()> slice;
};

constexpr std::size_t RawRow = 0;
constexpr std::size_t FloorRow = 2;
constexpr std::size_t HookedRow = 5;

void race(const std::vector<Contender> &contenders)
{
    std::vector<std::function<double()>> slices;
    for (const Contender &contender : contenders)
        slices.push_back(contender.slice);
    const std::vector<Samples> samples = alternate(Rounds, slices);
    Table table({ "round trip of getPID", "us", "x (a)", "x (b)" });
    for (std::size_t i = 0; i < samples.size(); ++i) {
        table.add({ contenders[i].name, number(samples[i].median(), 1),
                    number(samples[i].ratioTo(samples[RawRow]), 2),
                    number(samples[i].ratioTo(samples[FloorRow]), 2) });
    }
    table.print();
    printTarget("hooked program over (b)", samples[HookedRow].ratioTo(samples[FloorRow]), Limit, 2);
}

} // namespace

int main(int argc, char *argv[])
{
    pinTo(cores().back());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "*.warning=false");
    if (argc > 2) {
        const QCoreApplication application(argc, argv);
        callOnly(std::atoi(argv[1]), { argv + 2, argv + argc });
        return 0;
    }

    // Forks of this process come before its first Qt object.
    const Floor raw(serveRaw);
    const Floor eventLoop(serveFromEventLoop);
    const Floor decoding([](int listener) { serveDecoding(listener, false); });
    const Floor decodingGui([](int listener) { serveDecoding(listener, true); });
    const Floor byIpc(serveByIpc);
    const std::vector<std::unique_ptr<Rival>> rivals = startRivals();

    const QCoreApplication application(argc, argv);
    HookedProgram program({ BENCH_EXAMPLE });
    BlockingRunner &runner = program.runner();
    const auto callByIpc = [&] { (void)runner.call(QStringLiteral("getPID")); };
    std::vector<Contender> contenders = {
        { "(a) raw ping-pong", raw.contender() },
        { "    + event loop", eventLoop.contender() },
        { "(b) + decode and encode", decoding.contender() },
        { "    (b) in a program with windows", decodingGui.contender() },
        { "    this wire alone, no program", byIpc.contender() },
        { "hooked program", [&] { return slice(runner.descriptor()); } },
        { "hooked program, by our own client", [&] { return slice(callByIpc); } },
    };
    for (const auto &rival : rivals) {
        rival->connect();
        contenders.push_back({ rival->name(), [&] { return slice([&] { rival->call(); }); } });
    }
    race(contenders);
    return 0;
}
