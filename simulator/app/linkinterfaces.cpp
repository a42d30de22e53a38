#include "linkinterfaces.h"

#include <QFileInfo>
#include <QProcess>

namespace {

const int IpTimeoutMs = 5000;

bool parseIpv4(const QString &text, quint32 *value)
{
    const QStringList parts = text.split(QLatin1Char('.'));
    if (parts.size() != 4)
        return false;
    *value = 0;
    for (const QString &part : parts) {
        bool ok = false;
        const uint octet = part.toUInt(&ok);
        if (!ok || octet > 255 || part.size() > 3)
            return false;
        *value = (*value << 8) | octet;
    }
    return true;
}

} // namespace

LinkInterfaces::LinkInterfaces(const QString &ipTool, QObject *parent)
    : QObject(parent)
    , m_ip(ipTool)
{
}

bool LinkInterfaces::isLinkInterface(const QString &name)
{
    return name == QLatin1String("wlan0") || name == QLatin1String("ppp0");
}

int LinkInterfaces::prefixLength(const QString &mask)
{
    quint32 bits = 0;
    if (!parseIpv4(mask, &bits))
        return -1;
    int length = 0;
    while (bits & 0x80000000u) {
        ++length;
        bits <<= 1;
    }
    // A mask with holes is no mask.
    return bits == 0 ? length : -1;
}

void LinkInterfaces::apply(const QString &interfaceName, const QString &address, const QString &mask)
{
    if (!isLinkInterface(interfaceName))
        return;
    if (!QFileInfo::exists(QStringLiteral("/sys/class/net/") + interfaceName)) {
        emit logLine(QStringLiteral("lab: no %1 in this lab; the link exists in the registers only").arg(interfaceName));
        return;
    }
    if (address.isEmpty()) {
        if (ip({QStringLiteral("address"), QStringLiteral("flush"), QStringLiteral("dev"), interfaceName})
            && ip({QStringLiteral("link"), QStringLiteral("set"), interfaceName, QStringLiteral("down")}))
            emit logLine(QStringLiteral("lab: %1 down, its address removed").arg(interfaceName));
        return;
    }
    quint32 parsed = 0;
    const int prefix = prefixLength(mask);
    if (!parseIpv4(address, &parsed) || prefix < 1) {
        emit logLine(QStringLiteral("lab: %1/%2 is no address for %3").arg(address, mask, interfaceName));
        return;
    }
    const QString cidr = QStringLiteral("%1/%2").arg(address).arg(prefix);
    if (ip({QStringLiteral("address"), QStringLiteral("flush"), QStringLiteral("dev"), interfaceName})
        && ip({QStringLiteral("address"), QStringLiteral("add"), cidr, QStringLiteral("dev"), interfaceName})
        && ip({QStringLiteral("link"), QStringLiteral("set"), interfaceName, QStringLiteral("up")}))
        emit logLine(QStringLiteral("lab: %1 up with %2").arg(interfaceName, cidr));
}

bool LinkInterfaces::ip(const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(m_ip, arguments);
    if (process.waitForFinished(IpTimeoutMs) && process.exitStatus() == QProcess::NormalExit
        && process.exitCode() == 0)
        return true;
    if (process.state() != QProcess::NotRunning) {
        process.kill();
        process.waitForFinished(IpTimeoutMs);
    }
    emit logLine(QStringLiteral("lab: ip %1 failed: %2")
                     .arg(arguments.join(QLatin1Char(' ')), QString::fromLocal8Bit(process.readAll()).trimmed()));
    return false;
}
