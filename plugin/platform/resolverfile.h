#ifndef RESOLVERFILE_H
#define RESOLVERFILE_H

#include <QString>
#include <QStringList>

// The resolver file keeps one "nameserver" line per server, tagged with the
// interface that owns it ("nameserver 8.8.8.8 # eth0"). Among the lines of
// one interface, order gives the role: the first is the first server, the
// second the backup. Lines of other owners (a DHCP client, the user) stay
// as they are. Pure text logic; callers do the file access.
class ResolverFile
{
public:
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

private:
    static int lineOf(const QStringList &lines, const QString &tag, int role);
};

#endif // RESOLVERFILE_H
