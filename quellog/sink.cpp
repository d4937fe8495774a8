#include "quellog/sink.h"

#include "quellog/line.h"

#include <system_error>

#include <errno.h>
#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

namespace halvex::quellog {

namespace {

constexpr mode_t newFileMode = 0666;

// Keeps a pipe that nobody reads any more from ending the host program.
class BrokenPipeGuard
{
public:
    BrokenPipeGuard() noexcept
    {
        sigset_t pending;
        sigpending(&pending);
        m_wasPending = sigismember(&pending, SIGPIPE) == 1;
        sigemptyset(&m_brokenPipe);
        sigaddset(&m_brokenPipe, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &m_brokenPipe, &m_previousMask);
    }

    ~BrokenPipeGuard()
    {
        const timespec noWait = {};
        if (!m_wasPending) {
            while (sigtimedwait(&m_brokenPipe, nullptr, &noWait) < 0 && errno == EINTR) {
            }
        }
        pthread_sigmask(SIG_SETMASK, &m_previousMask, nullptr);
    }

    BrokenPipeGuard(const BrokenPipeGuard &) = delete;
    BrokenPipeGuard &operator=(const BrokenPipeGuard &) = delete;

private:
    sigset_t m_brokenPipe;
    sigset_t m_previousMask;
    bool m_wasPending;
};

void reportOpenFailure(const std::string &path, int error)
{
    std::string line = "VORKEL_TRACE: cannot open \"";
    appendEscaped(line, path);
    line += "\" for appending: " + std::generic_category().message(error) + "; tracing is off\n";
    Sink::standardError().write(line);
}

// O_NONBLOCK is for the opening alone, where a named pipe would wait for its reader.
int openForAppending(const std::string &path) noexcept
{
    constexpr int flags = O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY;
    const int opened = open(path.c_str(), flags | O_NONBLOCK, newFileMode);
    if (opened < 0)
        return opened;
    fcntl(opened, F_SETFL, fcntl(opened, F_GETFL) & ~O_NONBLOCK);
    if (opened > STDERR_FILENO)
        return opened;

    // The host runs without standard streams; what it prints must not end up among our lines.
    const int moved = fcntl(opened, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const int error = errno;
    close(opened);
    errno = error;
    return moved;
}

} // namespace

Sink::Sink(int descriptor) noexcept
    : m_descriptor(descriptor)
{
    struct stat status = {};
    if (fstat(descriptor, &status) == 0) {
        m_device = status.st_dev;
        m_inode = status.st_ino;
    }
}

Sink Sink::standardError() noexcept
{
    return Sink(STDERR_FILENO);
}

std::optional<Sink> Sink::openFile(const std::string &path)
{
    const int descriptor = openForAppending(path);
    if (descriptor < 0) {
        reportOpenFailure(path, errno);
        return std::nullopt;
    }
    return Sink(descriptor);
}

// A host that closes every descriptor it does not know may have been given our number for a file of its own.
bool Sink::isStillOurs() const noexcept
{
    if (m_descriptor == STDERR_FILENO)
        return true;
    struct stat status = {};
    return fstat(m_descriptor, &status) == 0 && status.st_dev == m_device && status.st_ino == m_inode;
}

void Sink::write(std::string_view line) const noexcept
{
    if (!isStillOurs())
        return;
    const BrokenPipeGuard guard;
    while (!line.empty()) {
        const ssize_t written = ::write(m_descriptor, line.data(), line.size());
        if (written > 0)
            line.remove_prefix(static_cast<std::size_t>(written));
        else if (written == 0 || errno != EINTR)
            return;
    }
}

} // namespace halvex::quellog
