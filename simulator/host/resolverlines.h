#ifndef RESOLVERLINES_H
#define RESOLVERLINES_H

#include <QByteArray>
#include <QString>
#include <QStringList>

// The host's edits of the panel's resolver file: the name servers a link
// brings ("nameserver A # ppp0") are added when it comes up and taken away
// when it goes, leaving every other line where it was.
namespace ResolverLines {

QString line(const QString &server, const QString &interfaceName);

// Appends each line not yet present; a file without a final newline gets one first.
QByteArray withLines(const QByteArray &file, const QStringList &lines);
QByteArray withoutLines(const QByteArray &file, const QStringList &lines);
// Every line that carries the interface's comment ("# ppp0").
QByteArray withoutInterface(const QByteArray &file, const QString &interfaceName);
bool hasInterface(const QByteArray &file, const QString &interfaceName);

// Rewrites the file in place (truncate and write): inside the network lab
// it is bind-mounted over /etc/resolv.conf, which a rename would undo.
bool rewrite(const QString &path, const QByteArray &contents);
QByteArray read(const QString &path);

} // namespace ResolverLines

#endif // RESOLVERLINES_H
