#include "support/scriptedsocket.h"

#include "support/harness.h"

#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <utility>

#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/types.h>

using ScriptedSocket::state;

namespace {

void checkOpen(int descriptor)
{
    FUZZ_CHECK(descriptor == ScriptedSocket::Descriptor && state().isOpen);
}

size_t limited(size_t length, int *limit)
{
    const int most = std::exchange(*limit, 0);
    return most > 0 ? qMin(length, static_cast<size_t>(most)) : length;
}

} // namespace

ScriptedSocket::State &ScriptedSocket::state()
{
    static State current;
    return current;
}

extern "C" {

ssize_t __wrap_recv(int descriptor, void *buffer, size_t length, int)
{
    checkOpen(descriptor);
    if (const int error = std::exchange(state().readError, 0)) {
        errno = error;
        return -1;
    }
    QByteArray &readable = state().readable;
    if (readable.isEmpty() && !state().peerClosed) {
        errno = EAGAIN; // where the kernel would block for ever
        return -1;
    }
    const size_t count = limited(qMin(length, static_cast<size_t>(readable.size())), &state().longestRead);
    std::memcpy(buffer, readable.constData(), count);
    readable.remove(0, static_cast<qsizetype>(count));
    return static_cast<ssize_t>(count);
}

ssize_t __wrap_send(int descriptor, const void *buffer, size_t length, int)
{
    checkOpen(descriptor);
    if (const int error = std::exchange(state().writeError, 0)) {
        errno = error;
        return -1;
    }
    const size_t count = limited(length, &state().longestWrite);
    state().written.append(static_cast<const char *>(buffer), static_cast<qsizetype>(count));
    return static_cast<ssize_t>(count);
}

int __wrap_ioctl(int descriptor, unsigned long request, ...)
{
    checkOpen(descriptor);
    FUZZ_CHECK(request == FIONREAD);
    va_list arguments;
    va_start(arguments, request);
    *va_arg(arguments, int *) = static_cast<int>(state().readable.size());
    va_end(arguments);
    return 0;
}

int __wrap_poll(pollfd *entries, nfds_t count, int)
{
    FUZZ_CHECK(count == 1);
    checkOpen(entries->fd);
    const bool hasFailed = state().readError != 0 && state().readError != EINTR;
    const bool isReady = !state().readable.isEmpty() || state().peerClosed || hasFailed;
    entries->revents = isReady ? POLLIN : 0;
    return isReady ? 1 : 0;
}

int __wrap_shutdown(int descriptor, int)
{
    checkOpen(descriptor);
    return 0;
}

int __wrap_close(int descriptor)
{
    checkOpen(descriptor);
    state().isOpen = false;
    return 0;
}

int __wrap_setsockopt(int descriptor, int, int, const void *, socklen_t)
{
    checkOpen(descriptor);
    return 0;
}

int __wrap_getsockopt(int descriptor, int, int, void *value, socklen_t *length)
{
    checkOpen(descriptor);
    std::memset(value, 0, *length);
    return 0;
}

int __wrap_getsockname(int descriptor, sockaddr *address, socklen_t *length)
{
    checkOpen(descriptor);
    std::memset(address, 0, *length);
    return 0;
}

int __wrap_getpeername(int descriptor, sockaddr *address, socklen_t *length)
{
    return __wrap_getsockname(descriptor, address, length);
}

} // extern "C"
