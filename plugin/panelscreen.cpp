#include "panelscreen.h"

#include <QGuiApplication>
#include <QScreen>

namespace PanelScreen {

namespace {
const QSize SmallestPanel(800, 480);
}

QSize size()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen ? screen->geometry().size() : SmallestPanel;
}

} // namespace PanelScreen
