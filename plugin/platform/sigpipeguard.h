#ifndef SIGPIPEGUARD_H
#define SIGPIPEGUARD_H

#include <signal.h>

// Writing to a pipe or FIFO whose reader has gone raises SIGPIPE, which
// would end the host application. For its lifetime this guard blocks SIGPIPE
// on the calling thread, so the write fails with EPIPE instead, and it
// swallows a SIGPIPE raised meanwhile before restoring the old mask.
// Create it after starting any child process: children inherit the mask.
class SigPipeGuard
{
public:
    SigPipeGuard();
    ~SigPipeGuard();
    SigPipeGuard(const SigPipeGuard &) = delete;
    SigPipeGuard &operator=(const SigPipeGuard &) = delete;

private:
    sigset_t m_oldMask;
    bool m_wasPending = false;
    bool m_blocked = false;
};

#endif // SIGPIPEGUARD_H
