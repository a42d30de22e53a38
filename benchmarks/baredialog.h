#ifndef BAREDIALOG_H
#define BAREDIALOG_H

#include <QDialog>

// The settings window's baseline: a dialog of the panel's size holding as
// many child widgets as the window does (labels with a short text, so that
// each one paints), and nothing else. With the repaint poll it also runs a
// 10 ms coarse timer that checks a flag, as the window does, to tell that
// poll's share of the window's idle cost.
class BareDialog : public QDialog
{
public:
    explicit BareDialog(int widgets, bool repaintPoll = false);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    int m_pollTimer = 0;
};

#endif // BAREDIALOG_H
