#include "processes.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Bench {

namespace {

constexpr int AcceptLimitSeconds = 30;

sockaddr_in loopback(unsigned short port)
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

/// As fork(); the child ends with its parent.
pid_t forked()
{
    std::fflush(stdout);
    const pid_t parent = ::getpid();
    const pid_t pid = ::fork();
    if (pid < 0)
        fail("fork");
    if (pid == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::getppid() != parent)
            std::_Exit(1);
    }
    return pid;
}

long long nanoseconds(clockid_t clock)
{
    timespec time = {};
    ::clock_gettime(clock, &time);
    return static_cast<long long>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

} // namespace

void fail(const char *what)
{
    std::fprintf(stderr, "%s: %s\n", what, std::strerror(errno));
    std::exit(1);
}

Child Child::running(const std::function<void()> &body)
{
    const pid_t pid = forked();
    if (pid == 0) {
        body();
        std::_Exit(0);
    }
    return Child(pid);
}

Child Child::executing(const std::vector<std::string> &command, const Variables &variables, int output)
{
    const pid_t pid = forked();
    if (pid != 0)
        return Child(pid);
    ::dup2(output, STDOUT_FILENO);
    for (const auto &[name, value] : variables)
        ::setenv(name.c_str(), value.c_str(), 1);
    std::vector<char *> words;
    words.reserve(command.size() + 1);
    for (const std::string &word : command)
        words.push_back(const_cast<char *>(word.c_str()));
    words.push_back(nullptr);
    ::setenv("BENCH_STARTED", std::to_string(nanoseconds(CLOCK_MONOTONIC)).c_str(), 1);
    ::execv(words.front(), words.data());
    fail(words.front());
}

Child::~Child()
{
    if (m_pid > 0) {
        ::kill(m_pid, SIGTERM);
        wait();
    }
}

double Child::processorTime() const
{
    clockid_t clock = 0;
    if (::clock_getcpuclockid(m_pid, &clock) != 0)
        fail("the process has ended");
    return static_cast<double>(nanoseconds(clock)) / 1e9;
}

double ownProcessorTime()
{
    return static_cast<double>(nanoseconds(CLOCK_PROCESS_CPUTIME_ID)) / 1e9;
}

void Child::wait()
{
    while (::waitpid(m_pid, nullptr, 0) == -1 && errno == EINTR) {
    }
    m_pid = -1;
}

Descriptor &Descriptor::operator=(Descriptor &&other) noexcept
{
    std::swap(m_descriptor, other.m_descriptor);
    return *this;
}

Descriptor::~Descriptor()
{
    if (m_descriptor != -1)
        ::close(m_descriptor);
}

Listener::Listener()
    : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in address = loopback(0);
    socklen_t length = sizeof address;
    auto *name = reinterpret_cast<sockaddr *>(&address);
    if (::bind(m_socket.get(), name, length) != 0 || ::listen(m_socket.get(), 8) != 0
        || ::getsockname(m_socket.get(), name, &length) != 0)
        fail("listen");
    m_port = ntohs(address.sin_port);
    // A program that never connects ends the benchmark.
    const timeval limit = { AcceptLimitSeconds, 0 };
    ::setsockopt(m_socket.get(), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
}

Descriptor Listener::accept() const
{
    Descriptor peer(::accept4(m_socket.get(), nullptr, nullptr, SOCK_CLOEXEC));
    if (peer.get() == -1)
        fail("accept");
    setNoDelay(peer.get());
    return peer;
}

Descriptor Listener::connect() const
{
    Descriptor peer(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const sockaddr_in address = loopback(m_port);
    if (::connect(peer.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
        fail("connect");
    setNoDelay(peer.get());
    return peer;
}

std::pair<Descriptor, Descriptor> makePipe()
{
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        fail("pipe");
    return { Descriptor(ends[0]), Descriptor(ends[1]) };
}

void setNoDelay(int descriptor)
{
    const int on = 1;
    ::setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

void sendAll(int descriptor, const void *data, std::size_t length)
{
    const auto *bytes = static_cast<const char *>(data);
    while (length > 0) {
        const ssize_t count = ::send(descriptor, bytes, length, MSG_NOSIGNAL);
        if (count <= 0)
            fail("send");
        bytes += count;
        length -= static_cast<std::size_t>(count);
    }
}

bool receiveAll(int descriptor, void *data, std::size_t length)
{
    auto *bytes = static_cast<char *>(data);
    while (length > 0) {
        const ssize_t count = ::recv(descriptor, bytes, length, 0);
        if (count <= 0)
            return false;
        bytes += count;
        length -= static_cast<std::size_t>(count);
    }
    return true;
}

std::string readToEnd(int descriptor)
{
    std::string text;
    char piece[4096];
    ssize_t count = 0;
    while ((count = ::read(descriptor, piece, sizeof piece)) > 0)
        text.append(piece, static_cast<std::size_t>(count));
    return text;
}

} // namespace Bench
