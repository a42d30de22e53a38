#include "netlab.h"

#include "testharness.h"

#include <QDir>
#include <QFile>
#include <QHostAddress>
#include <QNetworkAddressEntry>
#include <QNetworkInterface>
#include <QProcess>
#include <QTest>

#include <cerrno>
#include <cstring>
#include <sched.h>
#include <sys/mount.h>

namespace NetLab {

namespace {

QString environment(const char *name, const char *fallback)
{
    const QString value = qEnvironmentVariable(name);
    return value.isEmpty() ? QString::fromLatin1(fallback) : value;
}

QStringList lines(const QByteArray &text)
{
    QStringList out;
    for (const QByteArray &line : text.split('\n')) {
        const QString trimmed = QString::fromLocal8Bit(line).trimmed();
        if (!trimmed.isEmpty())
            out << trimmed;
    }
    return out;
}

QByteArray procFile(pid_t pid, const char *name)
{
    QFile file(QStringLiteral("/proc/%1/%2").arg(pid).arg(QLatin1String(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

QString portName(int port) { return QStringLiteral("eth%1").arg(port); }
QString farLink(int port) { return QStringLiteral("far%1").arg(port); }
QString farAddress(int port) { return subnetPrefix(port) + QLatin1Char('1'); }
QString subnetPrefix(int port) { return QStringLiteral("10.%1.0.").arg(77 + port); }
QString pidFile(int port) { return QStringLiteral("/var/run/udhcpc%1.pid").arg(port); }

QString farNamespace() { return environment("NETLAB_FAR_NS", ""); }
QString pingHost() { return environment("NETLAB_PING_HOST", "www.baidu.com"); }
QString labDir() { return environment("NETLAB_LAB_DIR", ""); }

QByteArray run(const QString &program, const QStringList &arguments, bool *ok, int timeoutMs,
               QByteArray *errorOutput)
{
    QProcess process;
    process.start(program, arguments);
    bool done = process.waitForStarted(timeoutMs) && process.waitForFinished(timeoutMs);
    if (!done && process.state() != QProcess::NotRunning) {
        process.kill();
        process.waitForFinished(1000);
    }
    done = done && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    if (ok)
        *ok = done;
    if (errorOutput)
        *errorOutput = process.readAllStandardError();
    return process.readAllStandardOutput();
}

QStringList routes()
{
    return lines(run(QStringLiteral("ip"), {QStringLiteral("-4"), QStringLiteral("route"), QStringLiteral("show")}));
}

QStringList defaultRoutes()
{
    return lines(run(QStringLiteral("ip"), {QStringLiteral("-4"), QStringLiteral("route"), QStringLiteral("show"),
                                            QStringLiteral("default")}));
}

QStringList kernelAddresses(const QString &interface)
{
    QStringList found;
    const QStringList output = lines(run(QStringLiteral("ip"), {QStringLiteral("-4"), QStringLiteral("-o"),
                                                               QStringLiteral("address"), QStringLiteral("show"),
                                                               QStringLiteral("dev"), interface}));
    for (const QString &line : output) {
        // "3: eth0    inet 10.77.0.57/24 brd 10.77.0.255 scope global eth0 ..."
        const QStringList words = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        const int at = words.indexOf(QStringLiteral("inet"));
        if (at >= 0 && at + 1 < words.size())
            found << words.at(at + 1);
    }
    return found;
}

QStringList interfaceAddresses(const QString &interface)
{
    QStringList found;
    for (const QNetworkAddressEntry &entry : QNetworkInterface::interfaceFromName(interface).addressEntries()) {
        if (entry.ip().protocol() == QAbstractSocket::IPv4Protocol)
            found << entry.ip().toString();
    }
    return found;
}

bool isUp(const QString &interface)
{
    const QNetworkInterface found = QNetworkInterface::interfaceFromName(interface);
    return found.isValid() && found.flags().testFlag(QNetworkInterface::IsUp);
}

bool isRunning(const QString &interface)
{
    const QNetworkInterface found = QNetworkInterface::interfaceFromName(interface);
    return found.isValid() && found.flags().testFlag(QNetworkInterface::IsRunning);
}

bool waitForAddress(const QString &interface, int timeoutMs, QString *address)
{
    QStringList found;
    const bool got = QTest::qWaitFor([&] {
        found = interfaceAddresses(interface);
        return !found.isEmpty();
    }, timeoutMs);
    if (got && address)
        *address = found.first();
    return got;
}

bool setFarLink(int port, bool up, int timeoutMs)
{
    if (farNamespace().isEmpty() || (port != 0 && port != 1))
        return false;
    bool ok = false;
    run(QStringLiteral("ip"), {QStringLiteral("-n"), farNamespace(), QStringLiteral("link"), QStringLiteral("set"),
                               farLink(port), up ? QStringLiteral("up") : QStringLiteral("down")},
        &ok);
    if (!ok)
        return false;
    // Both ends must have followed, or the first packets after "up" are
    // still dropped on the far end.
    const QString state = up ? QStringLiteral("state UP") : QStringLiteral("state DOWN");
    return QTest::qWaitFor([&] {
        if (isRunning(portName(port)) != up)
            return false;
        const QString far = QString::fromLocal8Bit(run(QStringLiteral("ip"), {QStringLiteral("-n"), farNamespace(),
                                                       QStringLiteral("-o"), QStringLiteral("link"), QStringLiteral("show"),
                                                       QStringLiteral("dev"), farLink(port)}));
        if (!far.contains(state))
            return false;
        // An address resolution begun while the cable was out keeps counting
        // its unanswered probes after it is back, and the next packet would
        // fail with it: wait until it has given up.
        return !up
            || run(QStringLiteral("ip"), {QStringLiteral("neigh"), QStringLiteral("show"), QStringLiteral("dev"),
                                          portName(port), QStringLiteral("nud"), QStringLiteral("incomplete")})
                   .trimmed()
                   .isEmpty();
    }, timeoutMs);
}

bool bindResolverFile(const QString &file, QString *error)
{
    const QString outside = TestHarness::notInPrivateLab();
    if (!outside.isEmpty()) {
        if (error)
            *error = QStringLiteral("not in a private lab: %1").arg(outside);
        return false;
    }
    // A mount namespace of this process's own: the cover goes when the test
    // ends, even when it crashes, and a later test in the same lab starts
    // from the lab's file.
    static bool ownNamespace = false;
    if (!ownNamespace) {
        if (::unshare(CLONE_NEWNS) != 0
            || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
            if (error)
                *error = QStringLiteral("no mount namespace of the test's own: %1")
                             .arg(QString::fromLocal8Bit(strerror(errno)));
            return false;
        }
        ownNamespace = true;
    }
    const QByteArray source = QFile::encodeName(file);
    if (::mount(source.constData(), "/etc/resolv.conf", nullptr, MS_BIND, nullptr) != 0) {
        if (error)
            *error = QStringLiteral("cannot put %1 over /etc/resolv.conf: %2")
                         .arg(file, QString::fromLocal8Bit(strerror(errno)));
        return false;
    }
    return true;
}

QList<pid_t> processes(const QString &name, const QString &argument)
{
    QList<pid_t> found;
    const QStringList entries = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &entry : entries) {
        bool numeric = false;
        const pid_t pid = pid_t(entry.toInt(&numeric));
        if (!numeric || !isAlive(pid))
            continue;
        if (QString::fromLocal8Bit(procFile(pid, "comm")).trimmed() != name)
            continue;
        if (!argument.isEmpty()) {
            const QList<QByteArray> words = procFile(pid, "cmdline").split('\0');
            if (!words.contains(argument.toLocal8Bit()))
                continue;
        }
        found << pid;
    }
    return found;
}

bool isAlive(pid_t pid)
{
    if (pid <= 0)
        return false;
    // "pid (comm) S ...": the state follows the last ')'.
    const QByteArray stat = procFile(pid, "stat");
    const int close = stat.lastIndexOf(')');
    if (close < 0 || close + 2 >= stat.size())
        return false;
    const char state = stat.at(close + 2);
    return state != 'Z' && state != 'X' && state != 'x';
}

pid_t readPidFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    bool ok = false;
    const long long value = file.readLine(64).trimmed().toLongLong(&ok);
    return ok && value > 1 && value < (1LL << 22) ? pid_t(value) : 0;
}

} // namespace NetLab
