#include "networkactivity.h"

namespace NetworkActivity {

namespace {

// The value after a keyword ("dev eth0"), or empty.
QString after(const QStringList &args, const char *keyword)
{
    const int at = args.indexOf(QLatin1String(keyword));
    return at >= 0 ? args.value(at + 1) : QString();
}

bool looksLikeAddress(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char('.'));
    if (parts.size() != 4)
        return false;
    for (const QString &part : parts) {
        bool ok = false;
        const int value = part.toInt(&ok);
        if (!ok || value < 0 || value > 255)
            return false;
    }
    return true;
}

QString describeIfconfig(const QStringList &args)
{
    const QString port = args.value(0);
    if (port.isEmpty() || args.size() < 2)
        return QString();
    QStringList what;
    for (int i = 1; i < args.size(); ++i) {
        const QString &arg = args.at(i);
        if (arg == QLatin1String("netmask") && i + 1 < args.size())
            what << QStringLiteral("netmask set to %1").arg(args.at(++i));
        else if (looksLikeAddress(arg))
            what << QStringLiteral("address set to %1").arg(arg);
        else if (arg == QLatin1String("up"))
            what << QStringLiteral("brought up");
        else if (arg == QLatin1String("down"))
            what << QStringLiteral("taken down");
    }
    if (what.isEmpty())
        return QString();
    return port + QLatin1Char(' ') + what.join(QStringLiteral(", "));
}

QString describeRoute(const QStringList &args)
{
    if (args.value(1) != QLatin1String("default"))
        return QString();
    const QString gateway = after(args, "gw");
    const QString port = after(args, "dev");
    const QString metric = after(args, "metric");
    // What is asked for: whether the kernel took it the table shows next.
    QString route = QStringLiteral("default route");
    if (!gateway.isEmpty())
        route += QStringLiteral(" via ") + gateway;
    if (!port.isEmpty())
        route += QStringLiteral(" on ") + port;
    if (!metric.isEmpty())
        route += QStringLiteral(", metric ") + metric;
    if (args.value(0) == QLatin1String("add"))
        return QStringLiteral("adds ") + route;
    if (args.value(0) == QLatin1String("del"))
        return QStringLiteral("removes ") + route;
    return QString();
}

QString describePing(const QStringList &args)
{
    for (int i = 0; i < args.size(); ++i) {
        const QString &arg = args.at(i);
        if (arg == QLatin1String("-W") || arg == QLatin1String("-c"))
            ++i;
        else if (!arg.startsWith(QLatin1Char('-')))
            return QStringLiteral("outer-network test: one ping to %1").arg(arg);
    }
    return QString();
}

} // namespace

QString describe(const QStringList &argv)
{
    const QString tool = argv.value(0);
    const QStringList args = argv.mid(1);
    if (tool == QLatin1String("ifconfig"))
        return describeIfconfig(args);
    if (tool == QLatin1String("route"))
        return describeRoute(args);
    if (tool == QLatin1String("udhcpc")) {
        const QString port = after(args, "-i");
        return port.isEmpty() ? QString() : QStringLiteral("DHCP client started on %1").arg(port);
    }
    if (tool == QLatin1String("killall") && args.value(0) == QLatin1String("ping"))
        return QStringLiteral("a ping still running is ended");
    if (tool == QLatin1String("ping"))
        return describePing(args);
    return QString();
}

bool changesRoutes(const QStringList &argv)
{
    const QString tool = argv.value(0);
    return tool == QLatin1String("ifconfig") || tool == QLatin1String("route") || tool == QLatin1String("ip")
        || tool == QLatin1String("udhcpc");
}

} // namespace NetworkActivity
