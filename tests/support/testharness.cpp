#include "testharness.h"

#include "simulatedpanel.h"

#include <QProcess>
#include <QStandardPaths>
#include <QStringList>

#include <cerrno>
#include <cstring>
#include <sys/stat.h>

namespace {

// The inode of the machine's first PID namespace: fixed by the kernel
// (PROC_PID_INIT_INO), unlike those of the first network and mount
// namespaces.
constexpr ino_t FirstPidNamespaceInode = 0xEFFFFFFCU;

bool insideFakes(const QString &resolved, const QString &dir)
{
    return resolved.startsWith(dir + QLatin1Char('/'));
}

// What /bin/sh (and so system() and popen()) finds for each tool name.
QStringList shellResolution(const QStringList &tools)
{
    QProcess shell;
    shell.start(QStringLiteral("/bin/sh"),
                {QStringLiteral("-c"), QStringLiteral("for t in %1; do command -v \"$t\" || echo missing; done")
                                           .arg(tools.join(QLatin1Char(' ')))});
    if (!shell.waitForFinished(10000))
        return {};
    return QString::fromLocal8Bit(shell.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

struct Namespace
{
    dev_t device = 0;
    ino_t inode = 0;
    bool operator==(const Namespace &other) const { return device == other.device && inode == other.inode; }
};

bool readNamespace(const char *path, Namespace *ns, QString *error)
{
    struct stat info;
    if (::stat(path, &info) != 0) {
        *error = QStringLiteral("cannot read %1 (%2), so no private namespace can be proven")
                     .arg(QLatin1String(path), QString::fromLocal8Bit(strerror(errno)));
        return false;
    }
    ns->device = info.st_dev;
    ns->inode = info.st_ino;
    return true;
}

} // namespace

TestHarness::TestHarness(Mode mode)
    : m_mode(mode)
{
    if (!m_dir.isValid()) {
        m_error = QStringLiteral("no temporary folder for the tool stand-ins");
        return;
    }
    if (mode == RealNetwork) {
        m_ready = setUpRealNetwork();
        return;
    }
    if (!SimulatedPanel::writeHostToolFakes(m_dir.path(), &m_error))
        return;
    qputenv("PATH", QFile::encodeName(m_dir.path()) + ':' + qgetenv("PATH"));
    qunsetenv("PANEL_ROOT");

    m_error = escapingTool(m_dir.path());
    if (!m_error.isEmpty())
        return;
    m_ready = true;
}

bool TestHarness::setUpRealNetwork()
{
    // Checked before anything is written or PATH is touched.
    const QString outside = notInPrivateLab();
    if (!outside.isEmpty()) {
        m_error = QStringLiteral("the real network tools run only inside a private network lab "
                                 "(tests/support/netlab/run-in-netlab): %1").arg(outside);
        return false;
    }
    if (!SimulatedPanel::writeHostToolFakes(m_dir.path(), &m_error))
        return false;
    for (const QString &tool : realNetworkTools()) {
        if (!QFile::remove(m_dir.path() + QLatin1Char('/') + tool)) {
            m_error = QStringLiteral("cannot remove the stand-in of %1").arg(tool);
            return false;
        }
    }
    qputenv("PATH", QFile::encodeName(m_dir.path()) + ':' + qgetenv("PATH"));
    qunsetenv("PANEL_ROOT");

    m_error = escapingTool(m_dir.path(), alwaysFakedTools());
    if (!m_error.isEmpty())
        return false;

    const QStringList real = realNetworkTools();
    const QStringList fromShell = shellResolution(real);
    if (fromShell.size() != real.size()) {
        m_error = QStringLiteral("could not ask /bin/sh where the network tools are");
        return false;
    }
    for (int i = 0; i < real.size(); ++i) {
        const QString fromQt = QStandardPaths::findExecutable(real.at(i));
        if (fromQt.isEmpty() || fromShell.at(i) == QLatin1String("missing")) {
            m_error = QStringLiteral("'%1' is not installed (scripts/install-deps)").arg(real.at(i));
            return false;
        }
        if (insideFakes(fromQt, m_dir.path()) || insideFakes(fromShell.at(i), m_dir.path())) {
            m_error = QStringLiteral("'%1' resolves to a stand-in").arg(real.at(i));
            return false;
        }
    }
    return true;
}

QStringList TestHarness::alwaysFakedTools()
{
    return {QStringLiteral("reboot"), QStringLiteral("date"), QStringLiteral("hwclock")};
}

QStringList TestHarness::realNetworkTools()
{
    QStringList tools = SimulatedPanel::hostToolNames();
    for (const QString &faked : alwaysFakedTools())
        tools.removeAll(faked);
    return tools;
}

QString TestHarness::notInPrivateLab()
{
    QString error;
    Namespace ownNet, initNet, ownMount, initMount, ownPid, initPid;
    if (!readNamespace("/proc/self/ns/net", &ownNet, &error)
        || !readNamespace("/proc/1/ns/net", &initNet, &error)
        || !readNamespace("/proc/self/ns/mnt", &ownMount, &error)
        || !readNamespace("/proc/1/ns/mnt", &initMount, &error)
        || !readNamespace("/proc/self/ns/pid", &ownPid, &error)
        || !readNamespace("/proc/1/ns/pid", &initPid, &error))
        return error;
    if (ownNet == initNet)
        return QStringLiteral("this process shares the network namespace of /proc/1");
    if (ownMount == initMount)
        return QStringLiteral("this process shares the mount namespace of /proc/1");
    if (ownPid.inode == FirstPidNamespaceInode)
        return QStringLiteral("this process runs in the machine's first PID namespace");
    if (!(ownPid == initPid))
        return QStringLiteral("/proc is not the lab's own: /proc/1 lies outside this PID namespace");
    return QString();
}

QString TestHarness::escapingTool(const QString &fakeDir)
{
    return escapingTool(fakeDir, SimulatedPanel::hostToolNames());
}

QString TestHarness::escapingTool(const QString &fakeDir, const QStringList &tools)
{
    const QStringList fromShell = shellResolution(tools);
    if (fromShell.size() != tools.size())
        return QStringLiteral("could not ask /bin/sh where the system tools are");
    for (int i = 0; i < tools.size(); ++i) {
        const QString fromQt = QStandardPaths::findExecutable(tools.at(i));
        if (!insideFakes(fromQt, fakeDir) || !insideFakes(fromShell.at(i), fakeDir))
            return QStringLiteral("'%1' would reach the real tool (%2)").arg(tools.at(i), fromShell.at(i));
    }
    return QString();
}
