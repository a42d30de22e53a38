#ifndef COMMANDTEXT_H
#define COMMANDTEXT_H

#include <QByteArray>
#include <QString>
#include <QVector>

#include <string>

// Builds the text of a shell command from a printf-style pattern whose only
// conversions are %d and %s ("ifconfig eth%d %s"), with one typed argument
// per conversion. Every value is checked by its kind before it is placed,
// so nothing that came from a file, a register or the user can end up as
// shell syntax: a value that fails its check, a missing or extra argument,
// a kind that does not suit its conversion, or a text that does not fit the
// command buffer makes the whole command invalid, and it must not be run.
class CommandText
{
public:
    // The firmware's command buffer: the text and its terminating NUL.
    static constexpr int DefaultCapacity = 128;

    explicit CommandText(const char *pattern, int capacity = DefaultCapacity);

    // %d: any integer.
    CommandText &number(long long value);
    // %d: a wired adapter number, 0 or 1 (the text becomes "eth0"/"eth1").
    CommandText &adapter(int index);
    // %d: a process id; only ids above 1 are real single processes.
    CommandText &processId(long long pid);
    // %s: a dotted IPv4 address, four decimal octets 0..255, no blanks.
    CommandText &ipv4(const QString &address);
    CommandText &ipv4(const std::string &address);
    // %s: a network interface the panel has: eth0, eth1, wlan0, ppp0.
    CommandText &interfaceName(const QString &name);
    // %s: a fixed word of the program's own ("long", "short", a process
    // name): letters, digits, '_', '-' and '.', not starting with '-'.
    CommandText &word(const char *text);

    bool isValid() const;
    // The finished text, or empty when the command is invalid.
    QByteArray text() const;
    // Why the command is invalid, for the log; empty when it is valid.
    QString errorString() const;

    static bool isIpv4(const QString &address);
    static bool isInterfaceName(const QString &name);
    static bool isWord(const char *text);

private:
    enum class Kind { Number, Text };
    struct Argument
    {
        Kind kind;
        QByteArray text;
    };

    CommandText &add(Kind kind, const QByteArray &text);
    CommandText &reject(const QString &why);
    void assemble() const;

    QByteArray m_pattern;
    int m_capacity;
    QVector<Argument> m_arguments;
    QString m_rejection;            // the first argument that failed its check
    // Filled when the text is first asked for.
    mutable QString m_error;
    mutable QByteArray m_text;
    mutable bool m_assembled = false;
};

#endif // COMMANDTEXT_H
