#include "processcost.h"

#include <QFile>
#include <QStandardPaths>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace {

// One shell word, whatever the argument holds.
QByteArray shellWord(const QString &text)
{
    QByteArray word = QFile::encodeName(text);
    word.replace('\'', "'\\''");
    return '\'' + word + '\'';
}

} // namespace

namespace ProcessCost {

qint64 cpuMicroseconds()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return qint64(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1000000 + usage.ru_utime.tv_usec
        + usage.ru_stime.tv_usec;
}

int readFrom(const QByteArray &path, char *buf, int size)
{
    FILE *pipe = ::popen(path.constData(), "re");
    if (!pipe)
        return -1;
    const size_t got = std::fread(buf, 1, size_t(size), pipe);
    ::pclose(pipe);
    return int(got);
}

int writeTo(const QByteArray &path, const char *buf, int size)
{
    FILE *pipe = ::popen(path.constData(), "we");
    if (!pipe)
        return -1;
    std::fwrite(buf, 1, size_t(size), pipe);
    ::pclose(pipe);
    return 0;
}

int runCall(const QStringList &call)
{
    if (call.isEmpty())
        return -1;
    QByteArray command;
    for (const QString &word : call)
        command += (command.isEmpty() ? QByteArray() : QByteArray(" ")) + shellWord(word);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    char shell[] = "/bin/sh";
    char dashC[] = "-c";
    char *argv[] = {shell, dashC, command.data(), nullptr};
    pid_t pid = -1;
    const int started = posix_spawn(&pid, shell, &actions, nullptr, argv, environ);
    posix_spawn_file_actions_destroy(&actions);
    if (started != 0)
        return -1;
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0) {
        if (errno != EINTR)
            return -1;
    }
    return status;
}

QStringList resolvedCall(const QStringList &recorded, const QString &panelRoot, const QString &standInDir)
{
    if (recorded.isEmpty() || recorded.first().contains(QLatin1Char('/')))
        return {};
    QStringList call = recorded;
    const QString firmware = panelRoot + QStringLiteral("/root/plat-intf/") + recorded.first();
    call.first() = QFile::exists(firmware) ? firmware : QStandardPaths::findExecutable(recorded.first());
    // Only ever a stand-in: a name that resolves elsewhere is not run.
    if (!call.first().startsWith(panelRoot + QLatin1Char('/'))
        && !call.first().startsWith(standInDir + QLatin1Char('/')))
        return {};
    return call;
}

} // namespace ProcessCost
