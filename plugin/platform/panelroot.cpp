#include "panelroot.h"

#ifndef SETTINGS_NO_PANEL_ROOT
#include "platformlog.h"

#include <QtGlobal>
#include <cstring>
#endif

// A panel build leaves the mapping out altogether: no root is ever read, so
// nothing in the environment of the host can move the plug-in's files.
#ifdef SETTINGS_NO_PANEL_ROOT

namespace PanelRoot {

QByteArray root()
{
    return QByteArray();
}

QByteArray path(const char *absolutePath)
{
    return absolutePath ? QByteArray(absolutePath) : QByteArray();
}

QString path(const QString &absolutePath)
{
    return absolutePath;
}

QByteArray command(const char *commandText)
{
    return commandText ? QByteArray(commandText) : QByteArray();
}

} // namespace PanelRoot

#else

namespace {

// Where the shell stands at a point of a command text.
enum class Quoting { None, Double, Single };

// Runs instead of a command whose root cannot be placed: it starts nothing
// and fails, like a tool that is missing.
const char RefusedCommand[] = "false";

// A root made of these alone needs no quotes anywhere in a command.
bool isPlainRoot(const QByteArray &root)
{
    for (const char c : root) {
        const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')
            || (c != '\0' && std::strchr("/._-+,:@%", c) != nullptr);
        if (!plain)
            return false;
    }
    return true;
}

// A line break or other control byte in a path would split the lines of
// tools that print paths (ps, the logs), and cannot be told apart there.
bool hasControlByte(const QByteArray &root)
{
    for (const char c : root) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7f)
            return true;
    }
    return false;
}

// The root as shell text for a place with the given quoting. Outside quotes
// it is single-quoted; inside double quotes the four characters that keep a
// meaning there are escaped; inside single quotes nothing can be escaped,
// so a quote in the root closes the quoted text, adds an escaped quote and
// opens it again, which the shell joins into one word.
QByteArray quotedRoot(const QByteArray &root, Quoting quoting)
{
    if (isPlainRoot(root))
        return root;
    QByteArray out;
    out.reserve(root.size() * 2 + 2);
    switch (quoting) {
    case Quoting::None:
        out += '\'';
        for (const char c : root)
            out += c == '\'' ? QByteArray("'\\''") : QByteArray(1, c);
        out += '\'';
        break;
    case Quoting::Double:
        for (const char c : root) {
            if (std::strchr("\"\\$`", c))
                out += '\\';
            out += c;
        }
        break;
    case Quoting::Single:
        for (const char c : root)
            out += c == '\'' ? QByteArray("'\\''") : QByteArray(1, c);
        break;
    }
    return out;
}

bool startsWord(char previous)
{
    return std::strchr(" \t\n\"'=<>;|&(", previous) != nullptr;
}

// The quoting after character c, and whether c escapes the next one.
Quoting follow(Quoting quoting, char c, bool *escapeNext)
{
    *escapeNext = false;
    switch (quoting) {
    case Quoting::None:
        if (c == '\\')
            *escapeNext = true;
        else if (c == '\'')
            return Quoting::Single;
        else if (c == '"')
            return Quoting::Double;
        return Quoting::None;
    case Quoting::Double:
        if (c == '\\')
            *escapeNext = true;
        else if (c == '"')
            return Quoting::None;
        return Quoting::Double;
    case Quoting::Single:
        return c == '\'' ? Quoting::None : Quoting::Single;
    }
    return quoting;
}

} // namespace

namespace PanelRoot {

QByteArray root()
{
    QByteArray r = qgetenv("PANEL_ROOT");
    while (r.size() > 1 && r.endsWith('/'))
        r.chop(1);
    if (r == "/")
        return QByteArray();
    return r;
}

QByteArray path(const char *absolutePath)
{
    if (!absolutePath)
        return QByteArray();
    const QByteArray r = root();
    if (r.isEmpty() || absolutePath[0] != '/')
        return QByteArray(absolutePath);
    return r + absolutePath;
}

QString path(const QString &absolutePath)
{
    const QByteArray r = root();
    if (r.isEmpty() || !absolutePath.startsWith(QLatin1Char('/')))
        return absolutePath;
    return QString::fromLocal8Bit(r) + absolutePath;
}

QByteArray command(const char *commandText)
{
    if (!commandText)
        return QByteArray();
    const QByteArray r = root();
    const QByteArray text(commandText);
    if (r.isEmpty())
        return text;
    if (hasControlByte(r)) {
        qCWarning(lcPlatform, "command not run: the panel root holds a control character");
        return QByteArray(RefusedCommand);
    }
    QByteArray out;
    out.reserve(text.size() + 4 * r.size());
    Quoting quoting = Quoting::None;
    bool escaped = false;
    for (int i = 0; i < text.size(); ++i) {
        const char c = text.at(i);
        if (!escaped && c == '/' && (i == 0 || startsWord(text.at(i - 1))))
            out += quotedRoot(r, quoting);
        out += c;
        if (escaped) {
            escaped = false;
            continue;
        }
        quoting = follow(quoting, c, &escaped);
    }
    // Where a quote is left open the shell would read on past the text, so
    // no place in it is known for sure.
    if (quoting != Quoting::None || escaped) {
        qCWarning(lcPlatform, "command not run: its quotes do not close: %s", text.constData());
        return QByteArray(RefusedCommand);
    }
    return out;
}

} // namespace PanelRoot

#endif
