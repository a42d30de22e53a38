#include "baredialog.h"

#include <QLabel>
#include <QTimerEvent>

namespace {

constexpr int PanelWidth = 800;
constexpr int PanelHeight = 480;
constexpr int Columns = 20;
constexpr int CellWidth = PanelWidth / Columns;
constexpr int CellHeight = 16;
constexpr int PollMs = 10;

// Never set: the poll only looks, like the window's when no keypad moved.
int moved = 0;

} // namespace

BareDialog::BareDialog(int widgets, bool repaintPoll)
{
    resize(PanelWidth, PanelHeight);
    for (int i = 0; i < widgets; ++i) {
        auto *label = new QLabel(QString::number(i), this);
        label->setGeometry((i % Columns) * CellWidth, (i / Columns % (PanelHeight / CellHeight)) * CellHeight,
                           CellWidth, CellHeight);
    }
    if (repaintPoll)
        m_pollTimer = startTimer(PollMs, Qt::CoarseTimer);
}

void BareDialog::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_pollTimer || moved != 1)
        return;
    moved = 0;
    repaint();
}
