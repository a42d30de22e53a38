#ifndef PANELSCREEN_H
#define PANELSCREEN_H

#include <QSize>

// Pages size themselves from the panel's screen. A host that has lost its
// screen still gets the smallest panel's layout rather than a crash.
namespace PanelScreen {

QSize size();

// The row of a page's size table (rows in rising `minWidth`) for a panel
// `width` pixels wide: the last row whose minWidth it reaches, else the first.
template <typename Row, int N>
const Row &rowFor(const Row (&table)[N], int width)
{
    const Row *chosen = &table[0];
    for (const Row &row : table) {
        if (width >= row.minWidth)
            chosen = &row;
    }
    return *chosen;
}

} // namespace PanelScreen

#endif // PANELSCREEN_H
