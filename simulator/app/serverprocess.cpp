#include "serverprocess.h"

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

// Runs in the forked child before exec: only async-signal-safe calls.
void ServerProcess::setupChildProcess()
{
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
}
