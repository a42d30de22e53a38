#include "wlanstatus.h"

#include <QCoreApplication>
#include <QStringList>

namespace {
constexpr int MacDigits = 12;
const char NoMac[] = "00:00:00:00:00:00";
} // namespace

namespace WlanStatus {

Tick decide(int state, bool disabled, int lastState, bool promptAllowed)
{
    Tick tick;
    tick.lastState = lastState;
    if (state == Connected && !disabled) {
        tick.action = ShowOnline;
    } else if (state == PasswordError && !disabled && lastState != PasswordError) {
        tick.lastState = PasswordError;
        tick.action = promptAllowed ? PromptPassword : PromptSuppressed;
    } else {
        tick.lastState = state;
        tick.action = ShowOffline;
    }
    if (state == Connected && !disabled && tick.lastState != Connected) {
        tick.lastState = Connected;
        tick.scrollToTop = true;
    }
    return tick;
}

const char *statusSource(Action action)
{
    return action == ShowOnline ? QT_TRANSLATE_NOOP("WirelessWgtUI", "Online")
                                : QT_TRANSLATE_NOOP("WirelessWgtUI", "Disabled");
}

QString macText(const QByteArray &raw, const QString &previous)
{
    QByteArray digits = raw.left(MacDigits);
    const int end = digits.indexOf('\0');
    if (end >= 0)
        digits.truncate(end);
    if (digits.isEmpty())
        return previous.isEmpty() ? QString::fromLatin1(NoMac) : previous;
    const QString text = QString::fromLatin1(digits);
    QStringList groups;
    for (int i = 0; i < text.size(); i += 2)
        groups << text.mid(i, 2);
    return groups.join(QLatin1Char(':'));
}

} // namespace WlanStatus
