#include "resolverfile.h"

static const QChar LineBreak = QLatin1Char('\n');

QString ResolverFile::ethTag(int port)
{
    return QStringLiteral("eth%1").arg(port);
}

QString ResolverFile::wlanTag()
{
    return QStringLiteral("wlan0");
}

QString ResolverFile::nameserverLine(const QString &server, const QString &tag)
{
    return QStringLiteral("nameserver %1 # %2").arg(server, tag);
}

bool ResolverFile::belongsTo(const QString &line, const QString &tag)
{
    return line.indexOf(tag) > 0;
}

int ResolverFile::lineOf(const QStringList &lines, const QString &tag, int role)
{
    int k = 0;
    for (int i = 0; i < lines.size(); ++i) {
        if (!belongsTo(lines.at(i), tag))
            continue;
        if (k == role)
            return i;
        ++k;
    }
    return -1;
}

QString ResolverFile::server(const QString &text, const QString &tag, int role)
{
    const QStringList lines = text.split(LineBreak);
    const int at = lineOf(lines, tag, role);
    if (at < 0)
        return QStringLiteral("0.0.0.0");
    const QStringList words = lines.at(at).split(QLatin1Char(' '));
    return words.size() > 1 ? words.at(1) : QString();
}

QString ResolverFile::replaced(const QString &text, const QString &tag, int role,
                               const QString &newLine)
{
    QStringList lines = text.split(LineBreak);
    const int at = lineOf(lines, tag, role);
    if (at >= 0)
        lines[at] = newLine;
    else
        lines.append(newLine);
    lines.removeAll(QString());
    return lines.join(LineBreak);
}
