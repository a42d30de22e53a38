#ifndef PAINTCOUNTER_H
#define PAINTCOUNTER_H

#include <QEvent>
#include <QObject>
#include <QWidget>

// Counts the paint events a widget receives from the moment it is watched.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget *widget) { widget->installEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            ++count;
        return false;
    }
};

#endif // PAINTCOUNTER_H
