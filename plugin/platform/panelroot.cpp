#include "panelroot.h"

#include <QtGlobal>
#include <cstring>

namespace PanelRoot {

QByteArray root()
{
    QByteArray r = qgetenv("PANEL_ROOT");
    while (r.size() > 1 && r.endsWith('/'))
        r.chop(1);
    if (r == "/")
        return QByteArray();
    return r;
}

QByteArray path(const char *absolutePath)
{
    if (!absolutePath)
        return QByteArray();
    const QByteArray r = root();
    if (r.isEmpty() || absolutePath[0] != '/')
        return QByteArray(absolutePath);
    return r + absolutePath;
}

QString path(const QString &absolutePath)
{
    const QByteArray r = root();
    if (r.isEmpty() || !absolutePath.startsWith(QLatin1Char('/')))
        return absolutePath;
    return QString::fromLocal8Bit(r) + absolutePath;
}

static bool startsWord(char previous)
{
    return std::strchr(" \t\n\"'=<>;|&(", previous) != nullptr;
}

QByteArray command(const char *commandText)
{
    if (!commandText)
        return QByteArray();
    const QByteArray r = root();
    const QByteArray text(commandText);
    if (r.isEmpty())
        return text;
    QByteArray out;
    out.reserve(text.size() + 4 * r.size());
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i) == '/' && (i == 0 || startsWord(text.at(i - 1))))
            out += r;
        out += text.at(i);
    }
    return out;
}

} // namespace PanelRoot
