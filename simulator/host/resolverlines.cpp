#include "resolverlines.h"

#include <QFile>
#include <QList>

namespace ResolverLines {

namespace {

// Bounded: a resolver file is a few lines; anything larger is not read whole.
const qint64 MaxFileSize = 64 * 1024;

bool carriesInterface(const QByteArray &text, const QString &interfaceName)
{
    const int hash = text.indexOf('#');
    return hash > 0 && text.mid(hash + 1).trimmed() == interfaceName.toLatin1();
}

} // namespace

QString line(const QString &server, const QString &interfaceName)
{
    return QStringLiteral("nameserver %1 # %2").arg(server, interfaceName);
}

QByteArray withLines(const QByteArray &file, const QStringList &lines)
{
    QByteArray result = file;
    for (const QString &text : lines) {
        const QByteArray wanted = text.toLatin1();
        if (result.split('\n').contains(wanted))
            continue;
        if (!result.isEmpty() && !result.endsWith('\n'))
            result += '\n';
        result += wanted + '\n';
    }
    return result;
}

QByteArray withoutLines(const QByteArray &file, const QStringList &lines)
{
    QList<QByteArray> kept;
    for (const QByteArray &text : file.split('\n')) {
        if (!lines.contains(QString::fromLatin1(text)))
            kept << text;
    }
    return kept.join('\n');
}

QByteArray withoutInterface(const QByteArray &file, const QString &interfaceName)
{
    QList<QByteArray> kept;
    for (const QByteArray &text : file.split('\n')) {
        if (!carriesInterface(text, interfaceName))
            kept << text;
    }
    return kept.join('\n');
}

bool hasInterface(const QByteArray &file, const QString &interfaceName)
{
    for (const QByteArray &text : file.split('\n')) {
        if (carriesInterface(text, interfaceName))
            return true;
    }
    return false;
}

bool rewrite(const QString &path, const QByteArray &contents)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(contents) == contents.size();
}

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(MaxFileSize) : QByteArray();
}

} // namespace ResolverLines
