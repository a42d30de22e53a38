#ifndef PASSWORDDIALOGLAYOUT_H
#define PASSWORDDIALOGLAYOUT_H

#include <QSize>

// The measures of the WLAN password dialog and of its on-screen keyboard,
// taken from the panel's screen so that both read the same on the smallest
// panel (800 x 480) and on the largest (1920 x 1080).
struct PasswordDialogLayout
{
    // The dialog's text, as on every page.
    static constexpr int PointSize = 13;

    // The password dialog.
    QSize dialog;
    int titleHeight = 0;
    int closeSide = 0;          // the title bar's close button
    int fieldHeight = 0;        // the password field
    QSize actionButton;         // Cancel and Connect
    int margin = 0;             // around the dialog's contents
    int checkIndicator = 0;     // side of the "Show password" box

    // The keyboard.
    QSize keyboard;
    int keyboardCloseSide = 0;  // the square "X" button
    int clearMinWidth = 0;
    int keyboardLineHeight = 0;
    int keySpacing = 0;
    int keyPointSize = 0;

    static PasswordDialogLayout forScreen(const QSize &screen);
};

#endif // PASSWORDDIALOGLAYOUT_H
