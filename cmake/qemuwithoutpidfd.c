/*
 * Preloaded into every emulated ARM program of the tests. qemu-arm 7.2 passes waitid(P_PIDFD) on to the kernel
 * but refuses clone(CLONE_PIDFD). Qt asks for the first before it relies on the second, and then cannot start
 * processes. With the first refused as well it falls back to fork().
 */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <stdarg.h>
#include <sys/syscall.h>
#include <sys/wait.h>

long syscall(long number, ...)
{
    static long (*next)(long, ...);
    if (!next)
        next = (long (*)(long, ...))dlsym(RTLD_NEXT, "syscall");

    long argument[6];
    va_list arguments;
    va_start(arguments, number);
    for (int i = 0; i < 6; ++i)
        argument[i] = va_arg(arguments, long);
    va_end(arguments);

    if (number == SYS_waitid && argument[0] == P_PIDFD) {
        errno = EINVAL;
        return -1;
    }
    return next(number, argument[0], argument[1], argument[2], argument[3], argument[4], argument[5]);
}
