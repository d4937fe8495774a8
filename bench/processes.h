#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>

/// Processes and plain blocking sockets. Whatever fails here ends the benchmark with a message.
namespace Bench {

/// A process that lives as long as the object, and not longer than this process.
class Child
{
public:
    using Variables = std::vector<std::pair<std::string, std::string>>;

    /// Runs `body` in a fork of this process, which should not have made Qt objects yet.
    static Child running(const std::function<void()> &body);
    /// Runs the program `command` with `variables` added to the environment, its standard output
    /// going to the descriptor `output`. The variable BENCH_STARTED holds the monotonic clock in
    /// nanoseconds just before.
    static Child executing(const std::vector<std::string> &command, const Variables &variables, int output);

    Child(Child &&other) noexcept
        : m_pid(std::exchange(other.m_pid, -1))
    {
    }
    Child &operator=(Child &&) = delete;
    ~Child();

    /// Seconds of processor time that it has used.
    [[nodiscard]] double processorTime() const;
    /// Waits for the end of the process.
    void wait();

private:
    explicit Child(pid_t pid)
        : m_pid(pid)
    {
    }

    pid_t m_pid;
};

/// Seconds of processor time that this process has used.
[[nodiscard]] double ownProcessorTime();

/// A descriptor that is closed with the object.
class Descriptor
{
public:
    explicit Descriptor(int descriptor = -1)
        : m_descriptor(descriptor)
    {
    }
    Descriptor(Descriptor &&other) noexcept
        : m_descriptor(other.release())
    {
    }
    Descriptor &operator=(Descriptor &&other) noexcept;
    ~Descriptor();

    [[nodiscard]] int get() const { return m_descriptor; }
    int release() { return std::exchange(m_descriptor, -1); }

private:
    int m_descriptor;
};

/// Listens on loopback, on a port that the system picks.
class Listener
{
public:
    Listener();

    [[nodiscard]] unsigned short port() const { return m_port; }
    [[nodiscard]] int descriptor() const { return m_socket.get(); }
    /// The next connection from outside; waits for it.
    [[nodiscard]] Descriptor accept() const;
    /// A connection to this listener.
    [[nodiscard]] Descriptor connect() const;

private:
    Descriptor m_socket;
    unsigned short m_port = 0;
};

/// A pipe: first what to read from, second what to write to.
[[nodiscard]] std::pair<Descriptor, Descriptor> makePipe();

/// Small messages leave at once.
void setNoDelay(int descriptor);
/// Sends all `length` bytes. Ends the benchmark when the peer has gone.
void sendAll(int descriptor, const void *data, std::size_t length);
/// Reads exactly `length` bytes; false at the end of the stream.
[[nodiscard]] bool receiveAll(int descriptor, void *data, std::size_t length);
/// All that comes until the end of the stream.
[[nodiscard]] std::string readToEnd(int descriptor);

[[noreturn]] void fail(const char *what);

} // namespace Bench
