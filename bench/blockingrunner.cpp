#include "blockingrunner.h"

#include "serverlib/ipchandshake.h"
#include "serverlib/tcpmessagechannel.h"

namespace Bench {

using namespace Vorkel;

namespace {

constexpr int WaitLimitMs = 30000;

/// The value of what a wait gave; without one the benchmark ends.
template <typename T>
T valueOf(const FunctionCallResult<T> &result)
{
    if (result.isOk())
        return result.value();
    std::fprintf(stderr, "%s\n", qPrintable(result.error()));
    std::exit(1);
}

} // namespace

Child::Variables BlockingRunner::environment(const Listener &listener)
{
    return { { "LD_PRELOAD", BENCH_PRELOAD },
             { "VORKEL_RUNNERID", "1" },
             { "VORKEL_APPID", std::to_string(Program) },
             { "VORKEL_RECORD", "0" },
             { "VORKEL_SERVERADDRESS", "127.0.0.1" },
             { "VORKEL_PORT", std::to_string(listener.port()) } };
}

BlockingRunner::BlockingRunner(const Listener &listener)
    : m_descriptor(listener.accept().release())
{
    m_milestones.connected = Clock::now();
    auto *channel = new TCPMessageChannel(new FSocket(m_descriptor));
    ClientData client =
            valueOf(IPCHandshake::processHanshake(valueOf(channel->waitForSingleMessage(WaitLimitMs))));
    client.id = Program;
    IPCHandshake::sendHandshake(channel, client);
    m_ipc = std::make_unique<IPC>(
            channel, ClientData { Protocol::ServerAddress, Protocol::ServerAddress, 0, {} }, this, nullptr);
    while (!m_completed)
        wait();
}

void BlockingRunner::wait()
{
    (void)valueOf(m_ipc->waitForSingleMessage(WaitLimitMs));
}

QVariant BlockingRunner::call(const QString &name, const ArgumentList &arguments)
{
    return valueOf(m_ipc->callFunc(Program, name, arguments)).value(0);
}

void BlockingRunner::send(const QString &name, const ArgumentList &arguments)
{
    if (m_ipc->send(Program, name, arguments) == -1)
        fail("send");
}

void BlockingRunner::handleSend(FUInt32, const QString &name, const ArgumentList &)
{
    // The last thing that a program asks before it waits.
    if (name != QLatin1String("requestDescriptorData"))
        return;
    send(QStringLiteral("objectDescriptorData"), { QByteArray() });
    send(QStringLiteral("initDone"), {});
    m_milestones.released = Clock::now();
}

void BlockingRunner::handleBroadcast(FUInt32, const QString &name, const ArgumentList &arguments)
{
    if (name == QLatin1String("subprocessHooked")) {
        m_milestones.announced = Clock::now();
    } else if (arguments.value(1) == QStringLiteral("\tHook-up completed...")) {
        m_completed = true;
    }
}

HookedProgram::HookedProgram(const std::vector<std::string> &command)
    : m_process(Child::executing(command, BlockingRunner::environment(m_listener), m_output.second.get()))
    , m_runner(m_listener)
{
}

} // namespace Bench
