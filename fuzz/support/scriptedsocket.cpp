#include "support/scriptedsocket.h"

#include "support/harness.h"

#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

using ScriptedSocket::state;

ScriptedSocket::State &ScriptedSocket::state()
{
    static State current;
    return current;
}

int ScriptedSocket::open()
{
    state() = { .descriptor = ::socket(AF_INET, SOCK_STREAM, 0) };
    return state().descriptor;
}

bool ScriptedSocket::isOpen()
{
    return ::fcntl(state().descriptor, F_GETFD) != -1;
}

extern "C" {

ssize_t __wrap_recv(int descriptor, void *buffer, size_t length, int)
{
    FUZZ_CHECK(descriptor == state().descriptor);
    QByteArray &readable = state().readable;
    const bool wouldBlock = readable.isEmpty() && !state().peerClosed;
    if (const int error = std::exchange(state().readError, 0); error != 0 || wouldBlock) {
        errno = error != 0 ? error : EAGAIN;
        return -1;
    }
    qsizetype count = qMin(static_cast<qsizetype>(length), readable.size());
    if (const int most = std::exchange(state().longestRead, 0))
        count = qMin<qsizetype>(count, most);
    std::memcpy(buffer, readable.constData(), static_cast<size_t>(count));
    readable.remove(0, count);
    return count;
}

int __wrap_ioctl(int descriptor, unsigned long request, ...)
{
    FUZZ_CHECK(descriptor == state().descriptor && request == FIONREAD);
    va_list arguments;
    va_start(arguments, request);
    *va_arg(arguments, int *) = static_cast<int>(state().readable.size());
    va_end(arguments);
    return 0;
}

int __wrap_poll(pollfd *entry, nfds_t, int)
{
    FUZZ_CHECK(entry->fd == state().descriptor);
    const bool hasFailed = state().readError != 0 && state().readError != EINTR;
    return !state().readable.isEmpty() || state().peerClosed || hasFailed ? 1 : 0;
}

} // extern "C"
