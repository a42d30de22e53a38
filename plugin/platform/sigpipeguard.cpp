#include "sigpipeguard.h"

#include <pthread.h>
#include <time.h>

static sigset_t pipeSet()
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGPIPE);
    return set;
}

SigPipeGuard::SigPipeGuard()
{
    sigemptyset(&m_oldMask);
    sigset_t pending;
    sigemptyset(&pending);
    if (sigpending(&pending) == 0)
        m_wasPending = sigismember(&pending, SIGPIPE) == 1;
    const sigset_t set = pipeSet();
    m_blocked = pthread_sigmask(SIG_BLOCK, &set, &m_oldMask) == 0;
}

SigPipeGuard::~SigPipeGuard()
{
    if (!m_blocked)
        return;
    // A SIGPIPE that was pending before we started is not ours to eat.
    if (!m_wasPending) {
        sigset_t pending;
        sigemptyset(&pending);
        if (sigpending(&pending) == 0 && sigismember(&pending, SIGPIPE) == 1) {
            const sigset_t set = pipeSet();
            const timespec noWait = {0, 0};
            sigtimedwait(&set, nullptr, &noWait);
        }
    }
    pthread_sigmask(SIG_SETMASK, &m_oldMask, nullptr);
}
