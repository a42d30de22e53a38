#ifndef ARGUMENTGRAMMAR_H
#define ARGUMENTGRAMMAR_H

#include <QByteArray>
#include <QString>
#include <QStringList>

// What each typed argument of a CommandText may put into a command, written
// down a second time, independently of the checks in CommandText: the
// audit, its test and the fuzz targets hold every built command against it.
// Kinds are named as the CommandText methods that add them.
class ArgumentGrammar
{
public:
    // number, adapter, processId, ipv4, interfaceName, word.
    static QStringList kinds();
    static bool isKind(const QString &kind);
    // 'd' or 's': the conversion a kind fills; 0 for an unknown kind.
    static char conversion(const QString &kind);
    // The regular expression a placed argument matches whole.
    static QString expression(const QString &kind);
    // Every byte an argument of the kind can consist of.
    static QByteArray alphabet(const QString &kind);
    // A one-line account for the document.
    static QString summary(const QString &kind);

    // True when `text` matches the kind's grammar whole, including the bounds
    // a regular expression does not say (octets up to 255, pids above 1).
    static bool matches(const QString &kind, const QByteArray &text);

    // The conversions of a printf-style pattern in order ("ds" for
    // "ifconfig eth%d %s"); "%%" is none. Null when the pattern has any
    // other conversion or a lone '%' at its end.
    static QByteArray conversions(const QByteArray &pattern);

    // True when `text` is `pattern` with each conversion replaced by a text
    // of the matching kind's grammar, and everything else byte for byte.
    static bool conforms(const QByteArray &pattern, const QStringList &kinds, const QByteArray &text);
};

#endif // ARGUMENTGRAMMAR_H
