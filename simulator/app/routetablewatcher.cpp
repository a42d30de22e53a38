#include "routetablewatcher.h"

#include <QFile>
#include <QProcess>

namespace {

// "ip route" answers at once; this only bounds a wedged tool.
const int IpTimeoutMs = 2000;

QStringList lines(const QByteArray &text)
{
    QStringList result;
    for (const QByteArray &line : text.split('\n')) {
        const QString trimmed = QString::fromLocal8Bit(line).trimmed();
        if (!trimmed.isEmpty())
            result << trimmed;
    }
    return result;
}

} // namespace

RouteTableWatcher::RouteTableWatcher(const QString &tableFile, const QString &realIp, QObject *parent)
    : QObject(parent)
    , m_file(tableFile)
    , m_ip(realIp)
{
    connect(&m_timer, &QTimer::timeout, this, &RouteTableWatcher::check);
}

void RouteTableWatcher::start(int intervalMs)
{
    m_timer.start(intervalMs);
}

void RouteTableWatcher::check()
{
    bool ok = false;
    const QStringList routes = read(&ok);
    if (!ok || (m_reported && routes == m_last))
        return;
    m_last = routes;
    m_reported = true;
    emit tableChanged(routes);
}

QStringList RouteTableWatcher::read(bool *ok) const
{
    if (m_ip.isEmpty()) {
        QFile file(m_file);
        // The stand-ins replace the file whole: a read sees one table or the other.
        *ok = file.open(QIODevice::ReadOnly);
        return *ok ? lines(file.readAll()) : QStringList();
    }
    QProcess ip;
    ip.start(m_ip, {QStringLiteral("-4"), QStringLiteral("route"), QStringLiteral("show")});
    *ok = ip.waitForFinished(IpTimeoutMs) && ip.exitStatus() == QProcess::NormalExit && ip.exitCode() == 0;
    if (!*ok) {
        ip.kill();
        ip.waitForFinished(IpTimeoutMs);
        return {};
    }
    return lines(ip.readAllStandardOutput());
}
