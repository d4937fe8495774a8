// What large arguments and replies cost beside zlib alone. Sender and receiver have a core each. The sender
// deflates while it sends, but the receiver inflates once the last piece has come, so the two add up, and
// the floor is bare zlib deflating the same bytes and then inflating them to the value.

#include "barezlib.h"
#include "blockingrunner.h"
#include "heap.h"
#include "measure.h"
#include "processes.h"

#include "serverlib/tcpmessagechannel.h"

#include <QCoreApplication>
#include <QtEndian>

#include <ctime>

namespace {

using namespace Bench;
using Vorkel::ArgumentList;

constexpr qsizetype Length = 32 * 1024 * 1024;
constexpr int Rounds = 5;
constexpr double ThroughputLimit = 0.9;
constexpr double MemoryLimitKiB = 64;
constexpr double BusyMachine = 1.1;

/// The sort of text that a program reports of itself.
QByteArray deflatable()
{
    QByteArray bytes;
    for (int i = 0; bytes.size() < Length; ++i) {
        bytes += "<object id=\"" + QByteArray::number(i)
                + "\" class=\"QPushButton\"><property name=\"geometry\">" + QByteArray::number(i * 7 % 1920)
                + ',' + QByteArray::number(i * 13 % 1080) + "</property><property name=\"text\">Button "
                + QByteArray::number(i % 97) + "</property></object>\n";
    }
    return bytes.first(Length);
}

QByteArray undeflatable()
{
    QByteArray bytes(Length, Qt::Uninitialized);
    quint64 state = 0x9E3779B97F4A7C15;
    for (qsizetype i = 0; i < Length; i += qsizetype(sizeof state)) {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        qToBigEndian(state, bytes.data() + i);
    }
    return bytes;
}

/// A string that has `bytes` on the wire.
QString textOf(const QByteArray &bytes)
{
    QString text(bytes.size() / 2, Qt::Uninitialized);
    qFromBigEndian<char16_t>(bytes.constData(), text.size(), text.data());
    return text;
}

/// Keeps what it is given and gives it back: for the values that no function of the hook gives.
class KeepingHandler : public Vorkel::IPCResponseHandlerIface
{
public:
    using Vorkel::IPCResponseHandlerIface::handleCall;
    QVariant handleCall(FUInt32, const QString &, const ArgumentList &arguments) override
    {
        if (arguments.isEmpty())
            return m_value;
        m_value = arguments.first();
        return QVariant();
    }
    void connectionClosed() override { QCoreApplication::quit(); }

private:
    QVariant m_value;
};

void keep(const Listener &listener)
{
    char name[] = "bench";
    char *words[] = { name, nullptr };
    int count = 1;
    const QCoreApplication application(count, words);
    KeepingHandler handler;
    auto *channel = new Vorkel::TCPMessageChannel(new FSocket(listener.accept().release()));
    const Vorkel::IPC ipc(channel, { BlockingRunner::Program, 1, 4, {} }, &handler, nullptr);
    QCoreApplication::exec();
}

void drain(const Listener &listener)
{
    const Descriptor peer = listener.accept();
    (void)readToEnd(peer.get());
}

std::unique_ptr<Vorkel::IPC> clientOf(const Listener &peer)
{
    auto *channel = new Vorkel::TCPMessageChannel(new FSocket(peer.connect().release()));
    return std::make_unique<Vorkel::IPC>(channel, Vorkel::ClientData { 1, 1, 0, {} }, nullptr, nullptr);
}

/// Who answers for what the hooked program has no function for.
struct Peers
{
    Listener keeperListener;
    Child keeper = Child::running([this] { keep(keeperListener); });
    Listener drainListener;
    Child drainer = Child::running([this] { drain(drainListener); });
};

/// One way for a value to go through.
struct Transfer
{
    std::string label;
    const Child *peer;
    bool fromPeer;
    std::function<void()> prepare;
    std::function<void()> run;
};

/// In seconds: by the clock, or of processor time.
struct Times
{
    Samples deflate, inflate, zlib, took;
    Samples zlibProcessor, sender, receiver, processor;
};

void measureFloor(const QByteArray &bytes, const std::vector<QByteArray> &pieces, Times *times)
{
    const double used = ownProcessorTime();
    const double deflating = seconds([&] { deflateInPieces(bytes); });
    const double inflating = seconds([&] { (void)inflated(pieces, bytes.size()); });
    times->zlibProcessor.values.push_back(ownProcessorTime() - used);
    times->deflate.values.push_back(deflating);
    times->inflate.values.push_back(inflating);
    times->zlib.values.push_back(deflating + inflating);
}

void measureTransfer(const Transfer &transfer, Times *times)
{
    transfer.prepare();
    const double own = ownProcessorTime();
    const double peers = transfer.peer->processorTime();
    times->took.values.push_back(seconds(transfer.run));
    const double here = ownProcessorTime() - own;
    const double there = transfer.peer->processorTime() - peers;
    times->sender.values.push_back(transfer.fromPeer ? there : here);
    times->receiver.values.push_back(transfer.fromPeer ? here : there);
    times->processor.values.push_back(here + there);
}

/// The figures of all transfers.
class Report
{
public:
    void add(const std::string &label, const Times &times)
    {
        const double ratio = times.zlib.ratioTo(times.took);
        m_worst = std::min(m_worst, ratio);
        m_busiest = std::max(m_busiest, times.zlib.ratioTo(times.zlibProcessor));
        std::vector<std::string> row = { label };
        for (const Samples *column :
             { &times.sender, &times.receiver, &times.deflate, &times.inflate, &times.zlib, &times.took })
            row.push_back(number(column->median() * 1e3, 0));
        row.push_back(number(times.zlibProcessor.ratioTo(times.processor), 2));
        row.push_back(number(ratio, 2));
        m_table.add(std::move(row));
    }

    void print() const
    {
        m_table.print();
        if (m_busiest > BusyMachine)
            std::printf("The machine was busy: zlib took %.1f times its processor time.\n", m_busiest);
        printTarget("bare zlib / ours, the worst", m_worst, ThroughputLimit, 2, true);
    }

private:
    Table m_table { { "32 MiB, in ms", "sender (cpu)", "receiver (cpu)", "deflate", "inflate", "zlib", "took",
                      "zlib/ours (cpu)", "zlib/ours" } };
    double m_worst = 1e9;
    double m_busiest = 0;
};

double extraMemoryKiB(Vorkel::IPC &ipc, const QVariant &value, const QByteArray &bytes)
{
    const std::size_t zlib = heapGrowth([&] { deflateInPieces(bytes); });
    const std::size_t ours = heapGrowth([&] { (void)ipc.send(QStringLiteral("take"), { value }); });
    return (static_cast<double>(ours) - static_cast<double>(zlib)) / 1024;
}

} // namespace

int main(int argc, char *argv[])
{
    const std::vector<int> available = cores();
    pinTo(available.back());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "*.warning=false");
    Peers peers;
    const QCoreApplication application(argc, argv);
    const Listener listener;
    const auto output = makePipe();
    const auto program =
            Child::executing({ BENCH_EXAMPLE }, BlockingRunner::environment(listener), output.second.get());
    pinTo(available.front());
    BlockingRunner runner(listener);
    const auto keeper = clientOf(peers.keeperListener);
    const auto drainer = clientOf(peers.drainListener);

    Report report;
    Table memory({ "sender's memory beside zlib's", "KiB" });
    double most = 0;
    for (const bool well : { true, false }) {
        const QByteArray bytes = well ? deflatable() : undeflatable();
        const std::vector<QByteArray> pieces = deflated(bytes);
        const QString text = textOf(bytes);
        const std::string how = well ? ", deflates well" : ", does not deflate";
        const auto keep = [&](const ArgumentList &arguments) {
            (void)keeper->callFunc(BlockingRunner::Program, QStringLiteral("keep"), arguments);
        };
        const auto setText = [&] { runner.call(QStringLiteral("setError"), { text }); };
        const Transfer transfers[] = {
            { "bytes as argument", &program, false, [] {},
              [&] { runner.call(QStringLiteral("getPID"), { bytes }); } },
            { "bytes as reply", &peers.keeper, true, [&] { keep({ bytes }); }, [&] { keep({}); } },
            { "text as argument", &program, false, [] {}, setText },
            { "text as reply", &program, true, setText,
              [&] { runner.call(QStringLiteral("getLastError")); } },
        };
        for (const Transfer &transfer : transfers) {
            Times times;
            for (int round = 0; round < Rounds; ++round) {
                measureFloor(bytes, pieces, &times);
                measureTransfer(transfer, &times);
            }
            report.add(transfer.label + how, times);
        }
        for (const QVariant &value : { QVariant(bytes), QVariant(text) }) {
            const double extra = extraMemoryKiB(*drainer, value, bytes);
            most = std::max(most, extra);
            memory.add({ value.typeName() + how, number(extra, 1) });
        }
    }
    report.print();
    memory.print();
    printTarget("sender's memory beside zlib's, most KiB", most, MemoryLimitKiB, 1);
    return 0;
}
