#ifndef PANELSCREEN_H
#define PANELSCREEN_H

#include <QSize>

// Pages size themselves from the panel's screen. A host that has lost its
// screen still gets the smallest panel's layout rather than a crash.
namespace PanelScreen {

QSize size();

} // namespace PanelScreen

#endif // PANELSCREEN_H
