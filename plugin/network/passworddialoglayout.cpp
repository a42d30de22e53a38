#include "passworddialoglayout.h"

#include <QtGlobal>

namespace {

const QSize SmallestPanel(800, 480);

// Wider panels get the keypad's larger key text.
constexpr int LargeKeysFromWidth = 1280;
constexpr int KeyPointSize = 13;
constexpr int LargeKeyPointSize = 15;

int scaled(double base, double factor, int measure)
{
    return qRound(base + factor * measure);
}

} // namespace

PasswordDialogLayout PasswordDialogLayout::forScreen(const QSize &screen)
{
    // A lost or odd screen gets the smallest panel's layout.
    const QSize s = screen.width() > 0 && screen.height() > 0 ? screen : SmallestPanel;
    const int x = s.width();
    const int y = s.height();

    PasswordDialogLayout l;
    l.dialog = QSize(qMin(x, scaled(300, 0.25, x)), qMin(y, scaled(150, 0.2, y)));
    l.titleHeight = scaled(30, 0.025, y);
    l.closeSide = l.titleHeight - 10;
    l.fieldHeight = scaled(20, 0.03, y);
    l.actionButton = QSize(scaled(60, 0.06, x), scaled(20, 0.03, y));
    l.margin = scaled(0, 0.02, x);
    l.checkIndicator = scaled(16, 0.01, y);

    // The keyboard keeps the proportions the panel's keyboard always had.
    l.keyboard = QSize(qMin(x, scaled(300, 0.625, x)), qMin(y, scaled(144, 0.2833, y)));
    l.keyboardCloseSide = scaled(23, 0.025, y);
    l.clearMinWidth = scaled(17.14, 0.0536, x);
    l.keyboardLineHeight = l.keyboardCloseSide;
    l.keySpacing = scaled(3, 0.002, x);
    l.keyPointSize = x >= LargeKeysFromWidth ? LargeKeyPointSize : KeyPointSize;
    return l;
}
