#include "resolverfile.h"

#include "commandtext.h"
#include "panelroot.h"
#include "processrunner.h"

#include <QFile>
#include <QFileInfo>

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

QString ResolverFile::lastServer(const QString &text, const QString &tag)
{
    QString found = QStringLiteral("0.0.0.0");
    for (const QString &line : text.split(LineBreak)) {
        if (!belongsTo(line, tag))
            continue;
        const QStringList words = line.split(QLatin1Char(' '));
        if (words.size() >= 2)
            found = words.at(1);
    }
    return found;
}

QString ResolverFile::ownerFirst(const QString &text, const QString &tag)
{
    QStringList owned;
    QStringList others;
    for (const QString &line : text.split(LineBreak))
        (belongsTo(line, tag) ? owned : others).append(line);
    if (owned.isEmpty())
        return QString();
    return (owned + others).join(LineBreak);
}

const char ResolverFile::Path[] = "/etc/resolv.conf";
const char ResolverFile::BackupPath[] = "/etc/resolvbak.conf";

QString ResolverFile::readText(QIODevice &file)
{
    const QByteArray data = file.read(MaxFileSize + 1);
    if (data.size() > MaxFileSize)
        return QString();
    // With a length: the QByteArray overload stops at the first NUL.
    return QString::fromLatin1(data.constData(), data.size());
}

QByteArray ResolverFile::bytes(const QString &text)
{
    return text.toLatin1();
}

void ResolverFile::ensureFiles()
{
    if (!QFile::exists(PanelRoot::path(QString::fromLatin1(BackupPath))))
        runCommand(CommandText("touch /etc/resolvbak.conf"));
    if (!QFile::exists(PanelRoot::path(QString::fromLatin1(Path))))
        runCommand(CommandText("cp /etc/resolvbak.conf /etc/resolv.conf"));
}

QString ResolverFile::systemServer(const QString &tag, int role)
{
    ensureFiles();
    QFile file(PanelRoot::path(QString::fromLatin1(Path)));
    QString found;
    // Only a plain file: reading a FIFO put in its place would block.
    if (QFileInfo(file).isFile() && file.open(QIODevice::ReadOnly | QIODevice::Text))
        found = server(readText(file), tag, role);
    return found.isEmpty() ? QStringLiteral("0.0.0.0") : found;
}

void ResolverFile::rewrite(QFile &file, const QString &tag, int role, const QString &serverText)
{
    if (file.isOpen())
        file.close();
    // Anything but a plain file in its place (a folder, a FIFO) is left
    // alone: reading a FIFO would block and writing one feeds a stranger.
    const QFileInfo info(file);
    const bool usable = !info.exists() || info.isFile();
    QString text;
    if (usable && file.open(QIODevice::ReadWrite | QIODevice::Text)) {
        text = readText(file);
        file.close();
    }
    const QString updated = replaced(text, tag, role, nameserverLine(serverText, tag));
    if (usable && file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) {
        file.write(bytes(updated));
        file.close();
    }
    // The backup restores the resolver file after a volatile restart, so it
    // is refreshed even when the rewrite failed; not from a FIFO, which
    // would hold cp until its bound.
    if (usable)
        runCommand(CommandText("cp /etc/resolv.conf /etc/resolvbak.conf"));
}

bool ResolverFile::putFirst(const QString &tag)
{
    QFile file(PanelRoot::path(QString::fromLatin1(Path)));
    // Only a plain file: a folder cannot be opened, a FIFO would block.
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadWrite | QIODevice::Text))
        return false;
    const QString text = readText(file);
    file.close();
    const QString updated = ownerFirst(text, tag);
    if (updated.isEmpty())
        return false;
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text))
        return false;
    file.write(bytes(updated));
    file.close();
    runCommand(CommandText("cp /etc/resolv.conf /etc/resolvbak.conf"));
    return true;
}
