#ifndef INPUTDIALOG_H
#define INPUTDIALOG_H

#include <QDialog>

// The on-screen numeric keypad. Only the drag flag shared with the settings
// window lives here so far: a dragged dialog sets it, and the window clears
// it and repaints so the dialog leaves no trail behind.
class InputDialog : public QDialog
{
    Q_OBJECT

public:
    static bool p_move;
};

#endif // INPUTDIALOG_H
