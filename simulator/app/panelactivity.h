#ifndef PANELACTIVITY_H
#define PANELACTIVITY_H

#include <QString>
#include <QStringList>

// What a command the plug-in ran means at the simulated panel, in words for
// the simulator's log: the buzzer sounding, the backlight changing, the
// clock being set (only recorded: the host's own clock is never touched).
// Empty for commands that change nothing the user would notice.
namespace PanelActivity {

QString describe(const QStringList &argv);

} // namespace PanelActivity

#endif // PANELACTIVITY_H
