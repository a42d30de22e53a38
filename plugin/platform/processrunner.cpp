#include "processrunner.h"

#include "commandtext.h"
#include "panelroot.h"
#include "platformlog.h"
#include "sigpipeguard.h"

#include <QtGlobal>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace {

const char ShellPath[] = "/bin/sh";

// A child killed at its bound is normally gone at once; one stuck in the
// kernel is left for a later call to reap rather than waited for here.
constexpr int ReapMs = 1000;
// The longest pause between two looks at a running child: short commands
// come back within a millisecond or two, long ones cost a few wake-ups.
constexpr int MaxPauseMs = 20;
// Children ended at their bound but not reaped yet. Bounded: should all
// slots fill, a further one stays a zombie until the host exits.
constexpr int MaxUnreaped = 16;
pid_t unreaped[MaxUnreaped] = {};

using Clock = std::chrono::steady_clock;

class Deadline
{
public:
    explicit Deadline(int ms)
        : m_end(Clock::now() + std::chrono::milliseconds(qMax(0, ms)))
    {
    }
    int remainingMs() const
    {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(m_end - Clock::now());
        return left.count() > 0 ? int(left.count()) : 0;
    }

private:
    Clock::time_point m_end;
};

void pauseMs(int ms)
{
    const timespec pause = {ms / 1000, long(ms % 1000) * 1000000L};
    nanosleep(&pause, nullptr);
}

void reapLeftovers()
{
    for (pid_t &pid : unreaped) {
        if (pid > 0 && waitpid(pid, nullptr, WNOHANG) != 0)
            pid = 0;
    }
}

void keepForLater(pid_t pid)
{
    for (pid_t &slot : unreaped) {
        if (slot == 0) {
            slot = pid;
            return;
        }
    }
}

// True once `pid` has ended, without reaping it: while it is an unreaped
// zombie its id cannot be reused, so its group may still be signalled.
bool hasEnded(pid_t pid)
{
    siginfo_t info = {};
    if (waitid(P_PID, id_t(pid), &info, WEXITED | WNOHANG | WNOWAIT) != 0)
        return errno != EINTR;      // reaped elsewhere: the host ignores SIGCHLD
    return info.si_pid == pid;
}

// A descriptor that becomes readable when `pid` ends (Linux 5.3 and later),
// or -1 where the kernel (or an emulator) has none.
int endNotice(pid_t pid)
{
#ifdef SYS_pidfd_open
    return int(syscall(SYS_pidfd_open, pid, 0));
#else
    Q_UNUSED(pid)
    errno = ENOSYS;
    return -1;
#endif
}

bool waitForEnd(pid_t pid, const Deadline &deadline)
{
    // Sleeping until the kernel says the child ended: the window starts a
    // score of short programs when it opens, and looking at them at growing
    // intervals would add several milliseconds to each.
    if (!hasEnded(pid)) {
        const int notice = endNotice(pid);
        if (notice >= 0) {
            pollfd entry = {notice, POLLIN, 0};
            while (poll(&entry, 1, deadline.remainingMs()) < 0 && errno == EINTR) {
                entry.revents = 0;
            }
            close(notice);
        }
    }
    // Where no such descriptor exists, and to confirm the end.
    int pause = 1;
    for (;;) {
        if (hasEnded(pid))
            return true;
        const int left = deadline.remainingMs();
        if (left <= 0)
            return false;
        pauseMs(qMin(pause, left));
        pause = qMin(pause * 2, MaxPauseMs);
    }
}

struct Outcome
{
    bool inTime;        // ended by itself within its bound
    int status;         // its wait status, -1 when unknown
};

// Waits for the shell until the deadline (or not at all when `overdue`);
// past it ends the shell's whole group and reaps the shell.
Outcome finish(pid_t pid, const Deadline &deadline, bool overdue, const char *command, int boundMs)
{
    const bool inTime = !overdue && waitForEnd(pid, deadline);
    if (!inTime) {
        qCWarning(lcPlatform, "\"%s\" did not end within %d ms; ending it and what it started",
                  command, boundMs);
        // The shell started the tool as its own child, in the same group.
        if (pid > 1)
            kill(-pid, SIGKILL);
        if (!waitForEnd(pid, Deadline(ReapMs))) {
            keepForLater(pid);
            return {false, -1};
        }
    }
    int status = -1;
    while (waitpid(pid, &status, 0) < 0) {
        if (errno != EINTR)
            return {inTime, -1};
    }
    return {inTime, status};
}

// Starts "/bin/sh -c command" in a new process group. With `stream` 0 or 1
// that standard stream of the shell is a pipe whose other end, non-blocking,
// goes to *ourEnd. The shell's pid, or -1 with errno set.
pid_t spawnShell(const char *command, int stream, int *ourEnd)
{
    int fds[2] = {-1, -1};
    if (stream >= 0 && pipe2(fds, O_CLOEXEC) != 0)
        return -1;
    const int childEnd = stream == STDIN_FILENO ? fds[0] : fds[1];
    const int parentEnd = stream == STDIN_FILENO ? fds[1] : fds[0];

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (stream >= 0)
        posix_spawn_file_actions_adddup2(&actions, childEnd, stream);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setpgroup(&attributes, 0);
    sigset_t noneBlocked;
    sigemptyset(&noneBlocked);
    posix_spawnattr_setsigmask(&attributes, &noneBlocked);
    // The host may ignore some of these; the tools expect the defaults.
    sigset_t defaults;
    sigemptyset(&defaults);
    for (int signal : {SIGPIPE, SIGCHLD, SIGINT, SIGQUIT, SIGTERM, SIGHUP})
        sigaddset(&defaults, signal);
    posix_spawnattr_setsigdefault(&attributes, &defaults);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK
                                              | POSIX_SPAWN_SETSIGDEF);

    char shellName[] = "sh";
    char option[] = "-c";
    char *const argv[] = {shellName, option, const_cast<char *>(command), nullptr};
    pid_t pid = -1;
    const int error = posix_spawn(&pid, ShellPath, &actions, &attributes, argv, environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (stream >= 0)
        close(childEnd);
    if (error != 0) {
        if (stream >= 0)
            close(parentEnd);
        errno = error;
        return -1;
    }
    if (stream >= 0) {
        fcntl(parentEnd, F_SETFL, fcntl(parentEnd, F_GETFL) | O_NONBLOCK);
        *ourEnd = parentEnd;
    }
    return pid;
}

// Waits until `fd` is ready for `events` or the deadline passes.
bool waitReady(int fd, short events, const Deadline &deadline)
{
    for (;;) {
        pollfd entry = {fd, events, 0};
        const int ready = poll(&entry, 1, deadline.remainingMs());
        if (ready > 0)
            return true;
        if (ready == 0 || errno != EINTR)
            return false;
    }
}

// Runs `command` with `stream` (its input or output) on a pipe and moves up
// to `size` bytes through it until the buffer is done, the tool closes its
// end, or the bound passes.
int exchange(const char *command, int stream, char *buf, int size, int boundMs, int *count)
{
    if (count)
        *count = 0;
    if (!command || (!buf && size > 0) || size < 0) {
        errno = EINVAL;
        return ProcessRunner::NotStarted;
    }
    reapLeftovers();
    const Deadline deadline(boundMs);
    int fd = -1;
    const pid_t pid = spawnShell(command, stream, &fd);
    if (pid < 0)
        return ProcessRunner::NotStarted;
    const bool reading = stream == STDOUT_FILENO;
    int done = 0;
    bool overdue = false;
    while (done < size) {
        if (!waitReady(fd, reading ? POLLIN : POLLOUT, deadline)) {
            overdue = true;
            break;
        }
        const ssize_t n = reading ? read(fd, buf + done, size_t(size - done))
                                  : write(fd, buf + done, size_t(size - done));
        if (n < 0 && (errno == EINTR || errno == EAGAIN))
            continue;
        if (n <= 0)
            break;          // end of the tool's output, or it closed its input
        done += int(n);
    }
    // Closing our end first lets a tool with more to say end on SIGPIPE.
    close(fd);
    if (count)
        *count = done;
    return finish(pid, deadline, overdue, command, boundMs).inTime ? ProcessRunner::Done
                                                                   : ProcessRunner::TimedOut;
}

} // namespace

namespace ProcessRunner {

int system(const QByteArray &command, int boundMs)
{
    reapLeftovers();
    const Deadline deadline(boundMs);
    const pid_t pid = spawnShell(command.constData(), -1, nullptr);
    if (pid < 0)
        return -1;
    const Outcome outcome = finish(pid, deadline, false, command.constData(), boundMs);
    return outcome.inTime ? outcome.status : -1;
}

int readFrom(const char *command, char *buf, int size, int boundMs, int *count)
{
    return exchange(command, STDOUT_FILENO, buf, size, boundMs, count);
}

int writeTo(const char *command, const char *buf, int size, int boundMs)
{
    // A tool that exits without reading its input must not take the host down.
    SigPipeGuard guard;
    return exchange(command, STDIN_FILENO, const_cast<char *>(buf), size, boundMs, nullptr);
}

} // namespace ProcessRunner

int runCommand(const CommandText &command, int boundMs)
{
    if (!command.isValid()) {
        qCWarning(lcPlatform, "command not run: %s", qPrintable(command.errorString()));
        return -1;
    }
    return ProcessRunner::system(PanelRoot::command(command.text().constData()), boundMs);
}
