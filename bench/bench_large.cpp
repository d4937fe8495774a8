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

/// A fork of this process with one of the servers, and a connection to it.
struct Peer
{
    explicit Peer(void (*server)(const Listener &))
        : process(Child::running([=, this] { server(listener); }))
    {
    }

    void connect()
    {
        auto *channel = new Vorkel::TCPMessageChannel(new FSocket(listener.connect().release()));
        ipc = std::make_unique<Vorkel::IPC>(channel, Vorkel::ClientData { 1, 1, 0, {} }, nullptr, nullptr);
    }

    Listener listener;
    Child process;
    std::unique_ptr<Vorkel::IPC> ipc;
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

    void addMemory(const std::string &label, double kibibytes)
    {
        m_most = std::max(m_most, kibibytes);
        m_memory.add({ label, number(kibibytes, 1) });
    }

    void print() const
    {
        m_table.print();
        if (m_busiest > BusyMachine)
            std::printf("The machine was busy: zlib took %.1f times its processor time.\n", m_busiest);
        printTarget("bare zlib / ours, the worst", m_worst, ThroughputLimit, 2, true);
        m_memory.print();
        printTarget("sender's memory beside zlib's, KiB, the most", m_most, MemoryLimitKiB, 1);
    }

private:
    Table m_table { { "32 MiB, in ms", "sender (cpu)", "receiver (cpu)", "deflate", "inflate", "zlib", "took",
                      "zlib/ours (cpu)", "zlib/ours" } };
    Table m_memory { { "sender's memory beside zlib's", "KiB" } };
    double m_worst = 1e9;
    double m_busiest = 0;
    double m_most = 0;
};

/// The bytes of one kind, as the two sorts of values that carry them.
struct Values
{
    std::string kind;
    QByteArray bytes;
    QString text = textOf(bytes);
};

void measureTransfers(const Values &values, HookedProgram &program, const Peer &keeper, Report *report)
{
    const auto keep = [&](const ArgumentList &arguments) {
        (void)keeper.ipc->callFunc(BlockingRunner::Program, QStringLiteral("keep"), arguments);
    };
    const auto call = [&](const QString &name, const ArgumentList &arguments) {
        return [&program, name, arguments] { program.runner().call(name, arguments); };
    };
    const auto setText = call(QStringLiteral("setError"), { values.text });
    keep({ values.bytes });
    const Transfer transfers[] = {
        { "bytes as argument", &program.process(), false, [] {},
          call(QStringLiteral("getPID"), { values.bytes }) },
        { "bytes as reply", &keeper.process, true, [] {}, [&] { keep({}); } },
        { "text as argument", &program.process(), false, [] {}, setText },
        { "text as reply", &program.process(), true, setText, call(QStringLiteral("getLastError"), {}) },
    };
    const std::vector<QByteArray> pieces = deflated(values.bytes);
    for (const Transfer &transfer : transfers) {
        Times times;
        for (int round = 0; round < Rounds; ++round) {
            measureFloor(values.bytes, pieces, &times);
            measureTransfer(transfer, &times);
        }
        report->add(transfer.label + values.kind, times);
    }
}

void measureMemory(const Values &values, const Peer &drainer, Report *report)
{
    for (const QVariant &value : { QVariant(values.bytes), QVariant(values.text) }) {
        const std::size_t zlib = heapGrowth([&] { deflateInPieces(values.bytes); });
        const std::size_t ours =
                heapGrowth([&] { (void)drainer.ipc->send(QStringLiteral("take"), { value }); });
        report->addMemory(value.typeName() + values.kind,
                          (static_cast<double>(ours) - static_cast<double>(zlib)) / 1024);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const std::vector<int> available = cores();
    pinTo(available.back());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "*.warning=false");
    // Forks of this process come before its first Qt object.
    Peer keeper(keep);
    Peer drainer(drain);
    const QCoreApplication application(argc, argv);
    HookedProgram program({ BENCH_EXAMPLE });
    pinTo(available.front());
    keeper.connect();
    drainer.connect();

    Report report;
    for (const Values &values :
         { Values { ", deflates well", deflatable() }, Values { ", does not deflate", undeflatable() } })
    {
        measureTransfers(values, program, keeper, &report);
        measureMemory(values, drainer, &report);
    }
    report.print();
    return 0;
}
