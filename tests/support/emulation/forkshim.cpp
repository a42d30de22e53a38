// Loaded (LD_PRELOAD) into the suite's programs only when they run under
// qemu-user. Qt starts processes with clone(CLONE_PIDFD) when the kernel
// answers waitid(P_PIDFD) -- and the kernel does, since qemu passes waitid
// through -- but qemu itself refuses CLONE_PIDFD, so every QProcess would
// fail to start. Saying P_PIDFD is unknown sends Qt down its plain fork path.

#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <dlfcn.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#ifndef P_PIDFD
#define P_PIDFD 3
#endif

extern "C" __attribute__((visibility("default"))) long syscall(long number, ...)
{
    va_list list;
    va_start(list, number);
    long a[6];
    for (long &argument : a)
        argument = va_arg(list, long);
    va_end(list);
    if (number == SYS_waitid && a[0] == P_PIDFD) {
        errno = ENOSYS;
        return -1;
    }
    using Syscall = long (*)(long, ...);
    static const Syscall next = reinterpret_cast<Syscall>(dlsym(RTLD_NEXT, "syscall"));
    return next(number, a[0], a[1], a[2], a[3], a[4], a[5]);
}

// Programs of the build machine that the test starts (/bin/sh, the tool
// stand-ins) must not be asked to preload a library of another architecture.
__attribute__((constructor)) static void forgetPreload()
{
    unsetenv("LD_PRELOAD");
}
