#include "networklab.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sched.h>
#include <sys/wait.h>
#include <cstring>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#ifndef SIMULATOR_NETLAB_RUNNER
#define SIMULATOR_NETLAB_RUNNER "run-in-netlab"
#endif

namespace {

const char *const LabTools[] = {"unshare", "ip", "ifconfig", "route", "udhcpc", "ping", "killall", "dnsmasq"};
const QStringList SystemFolders = {QStringLiteral("/usr/sbin"), QStringLiteral("/usr/bin"),
                                   QStringLiteral("/sbin"), QStringLiteral("/bin")};

bool sameNamespace(const char *kind, QString *why)
{
    struct stat mine {};
    struct stat first {};
    const QByteArray own = QByteArray("/proc/self/ns/") + kind;
    const QByteArray init = QByteArray("/proc/1/ns/") + kind;
    if (::stat(own.constData(), &mine) != 0 || ::stat(init.constData(), &first) != 0) {
        *why = QStringLiteral("cannot compare the %1 namespace with /proc/1's: %2")
                   .arg(QLatin1String(kind), QString::fromLocal8Bit(std::strerror(errno)));
        return true;
    }
    return mine.st_dev == first.st_dev && mine.st_ino == first.st_ino;
}

// The kernel's fixed inode number of the machine's first PID namespace.
constexpr ino_t FirstPidNamespaceInode = 0xEFFFFFFCU;

bool ownPidNamespaceIsFirst()
{
    struct stat mine {};
    return ::stat("/proc/self/ns/pid", &mine) != 0 || mine.st_ino == FirstPidNamespaceInode;
}

// The lab's process group: the runner, the namespace tool that started
// its init, and everything in the lab that did not leave the group.
volatile sig_atomic_t labGroup = 0;

extern "C" void forwardToLab(int signal)
{
    if (labGroup > 1)
        ::kill(-pid_t(labGroup), signal);
}

// The namespace tool ignores SIGTERM and SIGINT and leaves them to the lab's
// init: they are handed on to the whole group, so that the runner tears the
// lab down whichever of its processes the signal was meant for.
int waitForLab(pid_t child)
{
    labGroup = child;
    struct sigaction forward {};
    forward.sa_handler = forwardToLab;
    sigemptyset(&forward.sa_mask);
    for (int signal : {SIGINT, SIGTERM, SIGHUP})
        ::sigaction(signal, &forward, nullptr);
    int raw = 0;
    while (::waitpid(child, &raw, 0) < 0 && errno == EINTR) {
    }
    labGroup = 0;
    return WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw);
}

} // namespace

QString NetworkLab::runnerPath()
{
    return QStringLiteral(SIMULATOR_NETLAB_RUNNER);
}

QString NetworkLab::realTool(const QString &name)
{
    return QStandardPaths::findExecutable(name, SystemFolders);
}

QString NetworkLab::whyUnavailable()
{
    if (!QFileInfo(runnerPath()).isExecutable())
        return QStringLiteral("no lab runner at %1").arg(runnerPath());
    if (::geteuid() != 0)
        return QStringLiteral("namespaces need root (CAP_SYS_ADMIN and CAP_NET_ADMIN)");
    for (const char *tool : LabTools) {
        if (realTool(QLatin1String(tool)).isEmpty())
            return QStringLiteral("%1 is not installed (scripts/install-deps installs it)").arg(QLatin1String(tool));
    }
    QProcess probe;
    probe.setProcessChannelMode(QProcess::MergedChannels);
    probe.start(realTool(QStringLiteral("unshare")),
                {QStringLiteral("--pid"), QStringLiteral("--fork"), QStringLiteral("--mount"), QStringLiteral("--net"),
                 QStringLiteral("--propagation"), QStringLiteral("private"), QStringLiteral("true")});
    if (!probe.waitForFinished(10000) || probe.exitStatus() != QProcess::NormalExit || probe.exitCode() != 0) {
        probe.kill();
        probe.waitForFinished(2000);
        const QString said = QString::fromLocal8Bit(probe.readAll()).trimmed();
        return QStringLiteral("the kernel refuses new namespaces: %1").arg(said.isEmpty() ? probe.errorString() : said);
    }
    return QString();
}

QString NetworkLab::runInLab(const QStringList &arguments, int *status)
{
    QList<QByteArray> storage;
    // No application object exists yet: the kernel names this program.
    storage << QFile::encodeName(runnerPath())
            << QFile::encodeName(QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath());
    for (const QString &argument : arguments)
        storage << argument.toLocal8Bit();
    std::vector<char *> argv;
    for (QByteArray &item : storage)
        argv.push_back(item.data());
    argv.push_back(nullptr);
    // The runner builds the lab with the system's tools, never with
    // stand-ins a caller put first in PATH; inside, the simulator puts its
    // own first again. It would fail rather than skip on CI; the simulator
    // falls back instead.
    const QByteArray path = "/usr/sbin:/usr/bin:/sbin:/bin:" + qgetenv("PATH");
    int execFailure[2];
    if (::pipe2(execFailure, O_CLOEXEC) != 0)
        return QStringLiteral("no pipe: %1").arg(QString::fromLocal8Bit(std::strerror(errno)));
    const pid_t child = ::fork();
    if (child == 0) {
        ::setpgid(0, 0);
        ::unsetenv("CI");
        ::setenv("PATH", path.constData(), 1);
        // The host's WLAN and 4G links get their interfaces in the lab.
        ::setenv("NETLAB_LINKS", "wlan0 ppp0", 1);
        ::execv(argv.front(), argv.data());
        const int error = errno;
        ssize_t written = ::write(execFailure[1], &error, sizeof error);
        Q_UNUSED(written)
        ::_exit(127);
    }
    ::close(execFailure[1]);
    if (child < 0) {
        ::close(execFailure[0]);
        return QStringLiteral("cannot fork: %1").arg(QString::fromLocal8Bit(std::strerror(errno)));
    }
    ::setpgid(child, child);
    int error = 0;
    ssize_t got;
    while ((got = ::read(execFailure[0], &error, sizeof error)) < 0 && errno == EINTR) {
    }
    ::close(execFailure[0]);
    *status = waitForLab(child);
    if (got == sizeof error)
        return QStringLiteral("cannot start %1: %2").arg(runnerPath(), QString::fromLocal8Bit(std::strerror(error)));
    return QString();
}

QString NetworkLab::notInsideLab()
{
    QString why;
    if (sameNamespace("net", &why) || sameNamespace("mnt", &why))
        return why.isEmpty() ? QStringLiteral("this process shares its network or mount namespace with /proc/1") : why;
    if (ownPidNamespaceIsFirst())
        return QStringLiteral("this process runs in the machine's first PID namespace: killall would reach beyond the lab");
    if (!sameNamespace("pid", &why))
        return QStringLiteral("/proc is not the lab's own: /proc/1 lies outside this PID namespace");
    if (!why.isEmpty())
        return why;
    if (qEnvironmentVariableIsEmpty("NETLAB_FAR_NS"))
        return QStringLiteral("no far side named (NETLAB_FAR_NS): not started by the lab runner");
    return QString();
}

bool NetworkLab::isolateFromMachineNetwork()
{
    return ::geteuid() == 0 && ::unshare(CLONE_NEWNET) == 0;
}

bool NetworkLab::coverResolver(const QString &panelFile, QString *error)
{
    const QByteArray source = QFile::encodeName(panelFile);
    int result = ::mount(source.constData(), "/etc/resolv.conf", nullptr, MS_BIND, nullptr);
    // The runner's own cover is a file of the lab that lives as long as the
    // lab: a cover whose file is gone is an earlier simulator's in this lab
    // (a screenshot pass before this one), and only that one is taken away.
    if (result != 0 && errno == ENOENT && ::umount2("/etc/resolv.conf", MNT_DETACH) == 0)
        result = ::mount(source.constData(), "/etc/resolv.conf", nullptr, MS_BIND, nullptr);
    if (result != 0) {
        *error = QStringLiteral("cannot put %1 over /etc/resolv.conf: %2")
                     .arg(panelFile, QString::fromLocal8Bit(std::strerror(errno)));
        return false;
    }
    return true;
}

void NetworkLab::uncoverResolver()
{
    ::umount2("/etc/resolv.conf", MNT_DETACH);
}

bool NetworkLab::setFarLinks(bool up, QString *error)
{
    const QString far = qEnvironmentVariable("NETLAB_FAR_NS");
    for (const QString &link : {QStringLiteral("far0"), QStringLiteral("far1")}) {
        QProcess ip;
        ip.setProcessChannelMode(QProcess::MergedChannels);
        ip.start(realTool(QStringLiteral("ip")), {QStringLiteral("-n"), far, QStringLiteral("link"), QStringLiteral("set"),
                                                  link, QLatin1String(up ? "up" : "down")});
        if (!ip.waitForFinished(5000) || ip.exitStatus() != QProcess::NormalExit || ip.exitCode() != 0) {
            *error = QStringLiteral("cannot bring the far side's %1 %2: %3")
                         .arg(link, QLatin1String(up ? "up" : "down"), QString::fromLocal8Bit(ip.readAll()).trimmed());
            return false;
        }
    }
    return true;
}
