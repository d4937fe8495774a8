#pragma once

#include "processes.h"

#include "serverlib/ipc.h"
#include "serverlib/ipcresponsehandleriface.h"

#include <chrono>
#include <memory>

namespace Bench {

/// The runner's end of one connection to a hooked program: answers its bring-up at once, then calls it.
/// Everything blocks and no event loop runs, so between the calls the descriptor is free for others.
class BlockingRunner : public Vorkel::IPCResponseHandlerIface
{
public:
    using Clock = std::chrono::steady_clock;

    /// The address that the program is given.
    static constexpr FUInt32 Program = 2;

    /// What a program needs in its environment to connect to `listener` with the hook inside.
    [[nodiscard]] static Child::Variables environment(const Listener &listener);

    /// Waits until a program has connected to `listener`, shakes hands, and leads it through its
    /// bring-up until its event loop runs.
    explicit BlockingRunner(const Listener &listener);

    [[nodiscard]] int descriptor() const { return m_descriptor; }
    [[nodiscard]] Vorkel::IPC &ipc() { return *m_ipc; }
    /// Calls a function of the program; ends the benchmark when that fails.
    QVariant call(const QString &name, const Vorkel::ArgumentList &arguments = {});
    void send(const QString &name, const Vorkel::ArgumentList &arguments);

    /// When the program connected, when it had shaken hands and announced itself, and when it was told to
    /// go on.
    struct Milestones
    {
        Clock::time_point connected, announced, released;
    };
    [[nodiscard]] const Milestones &milestones() const { return m_milestones; }

    void handleSend(FUInt32 sender, const QString &name, const Vorkel::ArgumentList &arguments) override;
    void handleBroadcast(FUInt32 sender, const QString &name, const Vorkel::ArgumentList &arguments) override;

private:
    void wait();

    int m_descriptor;
    std::unique_ptr<Vorkel::IPC> m_ipc;
    Milestones m_milestones;
    bool m_completed = false;
};

/// A program with the hook inside whose event loop runs, and its runner.
class HookedProgram
{
public:
    /// Starts `command`, whose first word is a path.
    explicit HookedProgram(const std::vector<std::string> &command);

    [[nodiscard]] const Child &process() const { return m_process; }
    [[nodiscard]] BlockingRunner &runner() { return m_runner; }

private:
    Listener m_listener;
    std::pair<Descriptor, Descriptor> m_output = makePipe();
    Child m_process;
    BlockingRunner m_runner;
};

} // namespace Bench
