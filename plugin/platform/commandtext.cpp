#include "commandtext.h"

#include <QStringList>

#include <cstring>

namespace {

// Names the kernel gives the panel's network interfaces.
const char *const InterfaceNames[] = {"eth0", "eth1", "wlan0", "ppp0"};

// A word longer than this is not one of the program's own.
constexpr size_t MaxWordLength = 64;

QString shown(const QString &value)
{
    // Enough of a hostile value to recognise it in the log, never all of it.
    constexpr int Shown = 40;
    QString text = value.left(Shown);
    text.replace(QLatin1Char('\n'), QLatin1String("\\n"));
    return QLatin1Char('"') + text + (value.size() > Shown ? QLatin1String("...\"") : QLatin1String("\""));
}

} // namespace

CommandText::CommandText(const char *pattern, int capacity)
    : m_pattern(pattern ? pattern : "")
    , m_capacity(capacity)
{
    if (!pattern)
        m_rejection = QStringLiteral("no pattern");
}

CommandText &CommandText::add(Kind kind, const QByteArray &text)
{
    m_arguments.append({kind, text});
    m_assembled = false;
    return *this;
}

CommandText &CommandText::reject(const QString &why)
{
    if (m_rejection.isEmpty())
        m_rejection = why;
    m_assembled = false;
    return *this;
}

CommandText &CommandText::number(long long value)
{
    return add(Kind::Number, QByteArray::number(value));
}

CommandText &CommandText::adapter(int index)
{
    if (index != 0 && index != 1)
        return reject(QStringLiteral("adapter %1 is not 0 or 1").arg(index));
    return add(Kind::Number, QByteArray::number(index));
}

CommandText &CommandText::processId(long long pid)
{
    // 0 is the caller's own group, -1 every process, below that a group.
    if (pid <= 1)
        return reject(QStringLiteral("process id %1 names no single process").arg(pid));
    return add(Kind::Number, QByteArray::number(pid));
}

CommandText &CommandText::ipv4(const QString &address)
{
    if (!isIpv4(address))
        return reject(QStringLiteral("%1 is not an IPv4 address").arg(shown(address)));
    return add(Kind::Text, address.toLatin1());
}

CommandText &CommandText::ipv4(const std::string &address)
{
    // An embedded NUL would hide the rest of the text from the check.
    if (address.find('\0') != std::string::npos)
        return reject(QStringLiteral("address holds a NUL byte"));
    return ipv4(QString::fromStdString(address));
}

CommandText &CommandText::interfaceName(const QString &name)
{
    if (!isInterfaceName(name))
        return reject(QStringLiteral("%1 is not a network interface of the panel").arg(shown(name)));
    return add(Kind::Text, name.toLatin1());
}

CommandText &CommandText::word(const char *text)
{
    if (!isWord(text))
        return reject(QStringLiteral("%1 is not a plain word").arg(shown(QString::fromLocal8Bit(text ? text : ""))));
    return add(Kind::Text, QByteArray(text));
}

bool CommandText::isIpv4(const QString &address)
{
    // Only the four decimal octets a person types: inet_aton would also take
    // "1", "1.2" or "0x7f.1", which the tools read differently.
    const QStringList octets = address.split(QLatin1Char('.'));
    if (octets.size() != 4)
        return false;
    for (const QString &octet : octets) {
        if (octet.isEmpty() || octet.size() > 3)
            return false;
        for (const QChar c : octet) {
            if (c < QLatin1Char('0') || c > QLatin1Char('9'))
                return false;
        }
        if (octet.toInt() > 255)
            return false;
    }
    return true;
}

bool CommandText::isInterfaceName(const QString &name)
{
    for (const char *known : InterfaceNames) {
        if (name == QLatin1String(known))
            return true;
    }
    return false;
}

bool CommandText::isWord(const char *text)
{
    if (!text || !*text || *text == '-')
        return false;
    const size_t length = strnlen(text, MaxWordLength + 1);
    if (length > MaxWordLength)
        return false;
    for (size_t i = 0; i < length; ++i) {
        const char c = text[i];
        const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')
            || c == '_' || c == '-' || c == '.';
        if (!plain)
            return false;
    }
    return true;
}

void CommandText::assemble() const
{
    m_error = m_rejection;
    m_text.clear();
    int next = 0;
    for (int i = 0; i < m_pattern.size() && m_error.isEmpty(); ++i) {
        const char c = m_pattern.at(i);
        if (c != '%') {
            m_text += c;
            continue;
        }
        const char conversion = i + 1 < m_pattern.size() ? m_pattern.at(++i) : '\0';
        if (conversion == '%') {
            m_text += '%';
        } else if (conversion != 'd' && conversion != 's') {
            m_error = QStringLiteral("pattern has a conversion other than %d and %s");
        } else if (next >= m_arguments.size()) {
            m_error = QStringLiteral("pattern wants more arguments than were given");
        } else if ((conversion == 'd') != (m_arguments.at(next).kind == Kind::Number)) {
            m_error = QStringLiteral("argument %1 does not suit its conversion").arg(next + 1);
        } else {
            m_text += m_arguments.at(next++).text;
        }
    }
    if (m_error.isEmpty() && next != m_arguments.size())
        m_error = QStringLiteral("more arguments than the pattern uses");
    if (m_error.isEmpty() && m_text.size() >= m_capacity)
        m_error = QStringLiteral("command text of %1 bytes does not fit %2").arg(m_text.size()).arg(m_capacity);
    if (!m_error.isEmpty())
        m_text.clear();
    m_assembled = true;
}

bool CommandText::isValid() const
{
    if (!m_assembled)
        assemble();
    return m_error.isEmpty();
}

QByteArray CommandText::text() const
{
    return isValid() ? m_text : QByteArray();
}

QString CommandText::errorString() const
{
    isValid();
    return m_error;
}
