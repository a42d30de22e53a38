#ifndef RESOLVERFILE_H
#define RESOLVERFILE_H

#include <QString>
#include <QStringList>

class QFile;
class QIODevice;

// The resolver file keeps one "nameserver" line per server, tagged with the
// interface that owns it ("nameserver 8.8.8.8 # eth0"). Among the lines of
// one interface, order gives the role: the first is the first server, the
// second the backup. Lines of other owners (a DHCP client, the user) stay
// as they are. The text rules are pure; the file functions below them are
// the one place that reads and rewrites the system's resolver file.
class ResolverFile
{
public:
    static const char Path[];           // "/etc/resolv.conf"
    static const char BackupPath[];     // "/etc/resolvbak.conf"
    // A resolver file holds a few lines; anything larger is not one.
    static constexpr qint64 MaxFileSize = 64 * 1024;

    enum Role { First = 0, Backup = 1 };

    static QString ethTag(int port);                 // "eth%1"
    static QString wlanTag();                        // "wlan0"
    // "nameserver %1 # %2"
    static QString nameserverLine(const QString &server, const QString &tag);

    // A line belongs to an interface when its tag stands after the start of
    // the line; a tag at position 0 is someone else's text.
    static bool belongsTo(const QString &line, const QString &tag);

    // Second word of the role's line of `tag`, or "0.0.0.0" without one.
    static QString server(const QString &text, const QString &tag, int role);

    // `text` with the role's line of `tag` replaced by `newLine`, or with
    // `newLine` appended when there is no such line. Blank lines are
    // dropped and no newline follows the last line.
    static QString replaced(const QString &text, const QString &tag, int role,
                            const QString &newLine);

    // Second word of the last line of `tag` that has one, or "0.0.0.0".
    // A link that keeps a single server (the 4G modem) shows that one.
    static QString lastServer(const QString &text, const QString &tag);

    // `text` with the lines of `tag` before all others, each group in file
    // order, joined by "\n" with none after the last line. Empty when `tag`
    // owns no line: there is nothing to put first.
    static QString ownerFirst(const QString &text, const QString &tag);

    // The text of an opened file, byte for byte: read as Latin-1 so that
    // bytes that are not UTF-8 survive a rewrite unchanged. Empty for a file
    // larger than MaxFileSize.
    static QString readText(QIODevice &file);
    static QByteArray bytes(const QString &text);

    // Makes sure both files exist below the panel root: a missing backup is
    // created empty, a missing resolver file is restored from the backup.
    static void ensureFiles();

    // The server of `tag` in `role` in the system's resolver file, after
    // ensureFiles(); "0.0.0.0" when there is none or the file cannot be read.
    static QString systemServer(const QString &tag, int role);

    // Rewrites `file` so that the role's server of `tag` is `server` (see
    // replaced()); a file that cannot be read counts as empty, one that
    // cannot be written stays as it was. Then refreshes the backup copy.
    static void rewrite(QFile &file, const QString &tag, int role, const QString &server);

    // Puts the name servers of `tag` first in the system's resolver file so
    // that the chosen default adapter's servers are asked first, then
    // refreshes the backup copy. A file that cannot be opened, or that has
    // no line of `tag`, stays as it is and no backup is made. True when the
    // file was rewritten.
    static bool putFirst(const QString &tag);

private:
    static int lineOf(const QStringList &lines, const QString &tag, int role);
};

#endif // RESOLVERFILE_H
