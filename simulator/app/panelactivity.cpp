#include "panelactivity.h"
#include "networkactivity.h"

namespace PanelActivity {

namespace {

QString describeBrightness(const QString &value)
{
    bool ok = false;
    const int level = value.toInt(&ok);
    if (!ok)
        return QStringLiteral("backlight: unreadable level \"%1\" ignored").arg(value);
    if (level == 0)
        return QStringLiteral("backlight off");
    return QStringLiteral("backlight set to %1").arg(level);
}

QString describeDate(const QStringList &args)
{
    const int set = args.indexOf(QStringLiteral("-s"));
    if (set < 0 || set + 1 >= args.size())
        return QString();
    return QStringLiteral("clock: the panel sets %1 (recorded only; the host clock is untouched)")
        .arg(args.at(set + 1));
}

} // namespace

QString describe(const QStringList &argv)
{
    if (argv.isEmpty())
        return QString();
    const QString tool = argv.first();
    const QStringList args = argv.mid(1);
    if (tool == QLatin1String("setbeep"))
        return QStringLiteral("beep (%1)").arg(args.value(0));
    if (tool == QLatin1String("setbright"))
        return describeBrightness(args.value(0));
    if (tool == QLatin1String("date"))
        return describeDate(args);
    if (tool == QLatin1String("hwclock") && args.contains(QStringLiteral("--systohc")))
        return QStringLiteral("clock: the panel copies it to the hardware clock (recorded only)");
    if (tool == QLatin1String("writeee"))
        return QStringLiteral("device image written");
    if (tool == QLatin1String("reboot"))
        return QStringLiteral("the panel would reboot now (recorded only)");
    return NetworkActivity::describe(argv);
}

} // namespace PanelActivity
