#include "argumentgrammar.h"

#include <QHash>
#include <QRegularExpression>

namespace {

struct KindRule
{
    const char *kind;
    char conversion;
    const char *expression;
    const char *alphabet;
    const char *summary;
};

const char Digits[] = "0123456789";
const char WordBytes[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-.";

// The longest long long is 19 digits, with its sign 20 bytes.
const KindRule Rules[] = {
    {"number", 'd', "-?[0-9]{1,19}", "-0123456789", "any integer, in decimal"},
    {"adapter", 'd', "[01]", "01", "wired port 0 or 1 (eth0, eth1)"},
    {"processId", 'd', "[1-9][0-9]{0,18}", Digits, "a process id above 1 (never 0, -1 or a group)"},
    {"ipv4", 's', "[0-9]{1,3}\\.[0-9]{1,3}\\.[0-9]{1,3}\\.[0-9]{1,3}", "0123456789.",
     "four decimal octets 0..255 joined by dots, nothing else"},
    {"interfaceName", 's', "eth0|eth1|wlan0|ppp0", "ethwlanp0123", "eth0, eth1, wlan0 or ppp0"},
    {"word", 's', "[A-Za-z0-9_.][A-Za-z0-9_.-]{0,63}", WordBytes,
     "letters, digits, '_', '-', '.', not starting with '-', at most 64"},
};

const KindRule *rule(const QString &kind)
{
    for (const KindRule &r : Rules) {
        if (kind == QLatin1String(r.kind))
            return &r;
    }
    return nullptr;
}

bool withinBounds(const QString &kind, const QByteArray &text)
{
    if (kind == QLatin1String("ipv4")) {
        for (const QByteArray &octet : text.split('.')) {
            if (octet.toInt() > 255)
                return false;
        }
    }
    if (kind == QLatin1String("processId")) {
        bool ok = false;
        const qlonglong pid = text.toLongLong(&ok);
        return ok && pid > 1;
    }
    if (kind == QLatin1String("number")) {
        bool ok = false;
        text.toLongLong(&ok);
        return ok;
    }
    return true;
}

// Compiling is most of the cost of a check, and the fuzz targets check
// millions of texts against the same few dozen expressions.
const QRegularExpression &compiled(const QString &expression)
{
    constexpr int MaxKept = 512;
    static QHash<QString, QRegularExpression> kept;
    auto it = kept.constFind(expression);
    if (it != kept.constEnd())
        return *it;
    if (kept.size() >= MaxKept)
        kept.clear();
    return *kept.insert(expression, QRegularExpression(expression));
}

} // namespace

QStringList ArgumentGrammar::kinds()
{
    QStringList names;
    for (const KindRule &r : Rules)
        names << QLatin1String(r.kind);
    return names;
}

bool ArgumentGrammar::isKind(const QString &kind)
{
    return rule(kind) != nullptr;
}

char ArgumentGrammar::conversion(const QString &kind)
{
    const KindRule *r = rule(kind);
    return r ? r->conversion : '\0';
}

QString ArgumentGrammar::expression(const QString &kind)
{
    const KindRule *r = rule(kind);
    return r ? QLatin1String(r->expression) : QString();
}

QByteArray ArgumentGrammar::alphabet(const QString &kind)
{
    const KindRule *r = rule(kind);
    return r ? QByteArray(r->alphabet) : QByteArray();
}

QString ArgumentGrammar::summary(const QString &kind)
{
    const KindRule *r = rule(kind);
    return r ? QLatin1String(r->summary) : QString();
}

bool ArgumentGrammar::matches(const QString &kind, const QByteArray &text)
{
    const KindRule *r = rule(kind);
    if (!r)
        return false;
    const QRegularExpression &whole = compiled(QStringLiteral("\\A(?:%1)\\z").arg(QLatin1String(r->expression)));
    return whole.match(QString::fromLatin1(text)).hasMatch() && withinBounds(kind, text);
}

QByteArray ArgumentGrammar::conversions(const QByteArray &pattern)
{
    QByteArray found("");
    for (int i = 0; i < pattern.size(); ++i) {
        if (pattern.at(i) != '%')
            continue;
        const char next = i + 1 < pattern.size() ? pattern.at(i + 1) : '\0';
        if (next != '%' && next != 'd' && next != 's')
            return QByteArray();
        if (next != '%')
            found += next;
        ++i;
    }
    return found;
}

bool ArgumentGrammar::conforms(const QByteArray &pattern, const QStringList &kinds, const QByteArray &text)
{
    const QByteArray wanted = conversions(pattern);
    if (wanted.isNull() || wanted.size() != kinds.size())
        return false;
    // The pattern as one expression: its own bytes literally, each
    // conversion as a group of its kind's grammar.
    QString expression = QStringLiteral("\\A");
    QByteArray literal;
    int next = 0;
    for (int i = 0; i < pattern.size(); ++i) {
        const char c = pattern.at(i);
        if (c != '%') {
            literal += c;
            continue;
        }
        const char conversion = pattern.at(++i);
        if (conversion == '%') {
            literal += '%';
            continue;
        }
        const QString &kind = kinds.at(next++);
        if (ArgumentGrammar::conversion(kind) != conversion)
            return false;
        expression += QRegularExpression::escape(QString::fromLatin1(literal));
        literal.clear();
        expression += QStringLiteral("(%1)").arg(ArgumentGrammar::expression(kind));
    }
    expression += QRegularExpression::escape(QString::fromLatin1(literal)) + QStringLiteral("\\z");
    const QRegularExpressionMatch match = compiled(expression).match(QString::fromLatin1(text));
    if (!match.hasMatch())
        return false;
    for (int k = 0; k < kinds.size(); ++k) {
        if (!matches(kinds.at(k), match.captured(k + 1).toLatin1()))
            return false;
    }
    return true;
}
