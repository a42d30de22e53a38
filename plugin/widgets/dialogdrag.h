#ifndef DIALOGDRAG_H
#define DIALOGDRAG_H

#include <QPoint>

class QFrame;
class QMouseEvent;
class QPushButton;
class QWidget;

// The title bar of the plug-in's frameless dialogs (the keypad and the date
// and time dialog): its look, and dragging the dialog by it. A drag sets
// InputDialog::p_move so that the settings window repaints and the dialog
// leaves no trail on it.
class DialogDrag
{
public:
    // The title bar's picture and its 45 x 45 close button.
    static void decorate(QFrame *titleBar, QPushButton *closeButton);

    // A left press inside titleBar (dialog coordinates) starts a drag and
    // remembers where the dialog was taken; any other left press ends it.
    // margin is the dialog's outer layout margin. Releases change nothing.
    void press(const QMouseEvent *event, const QFrame *titleBar, const QPoint &margin);

    // Moves dialog with the mouse while the left button alone is held and a
    // drag is under way. True when it moved.
    bool move(const QMouseEvent *event, QWidget *dialog) const;

    bool pressed() const { return m_pressed; }
    QPoint offset() const { return QPoint(m_x, m_y); }

    // Inside the frame's geometry, one pixel beyond its right and bottom
    // edges included.
    static bool inRange(const QPoint &p, const QFrame *frame);

private:
    bool m_pressed = false;
    int m_x = 0;
    int m_y = 0;
};

#endif // DIALOGDRAG_H
