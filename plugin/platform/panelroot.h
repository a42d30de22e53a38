#ifndef PANELROOT_H
#define PANELROOT_H

#include <QByteArray>
#include <QString>

// Every absolute path the plug-in touches goes through here. When the
// environment variable PANEL_ROOT is set and non-empty, absolute paths are
// resolved below it, so a development machine, the simulator or a test can
// play a whole panel inside one folder. Unset, paths and command texts pass
// through unchanged. No other code concatenates roots.
//
// A panel build (SETTINGS_PANEL_ROOT=OFF, which defines
// SETTINGS_NO_PANEL_ROOT) leaves the mapping out: root() is always empty and
// the environment is never read.
namespace PanelRoot {

// The current root without a trailing slash, or empty when none is set.
// Read from the environment on every call so a test may switch roots.
QByteArray root();

// "/tmp/mw.dat" -> "$PANEL_ROOT/tmp/mw.dat"; relative paths are unchanged.
QByteArray path(const char *absolutePath);
QString path(const QString &absolutePath);

// Maps every absolute path inside a shell command text: a '/' that starts a
// word (at the start, after white space, a quote, '=', or a redirection or
// command separator) begins a path. "cp /etc/a /etc/b" names both files
// under the root; "10.0.0.0/8" is left alone. A root with blanks or other
// shell characters is quoted for the place it goes: outside quotes, inside
// "..." or inside '...'. A root holding a control character, or a text
// whose quotes do not close, gives "false" instead (logged), which runs
// nothing.
QByteArray command(const char *commandText);

} // namespace PanelRoot

#endif // PANELROOT_H
