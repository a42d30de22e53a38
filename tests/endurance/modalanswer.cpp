#include "modalanswer.h"

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace {
constexpr int PollMs = 5;
}

bool answerModalDuring(const std::function<void()> &trigger, const std::function<bool(QWidget *)> &answer,
                       int timeoutMs)
{
    bool answered = false;
    bool gaveUp = false;
    QElapsedTimer waited;
    QTimer poll;
    poll.setInterval(PollMs);
    QObject::connect(&poll, &QTimer::timeout, [&]() {
        QWidget *modal = QApplication::activeModalWidget();
        if (!modal || !modal->isVisible() || answered)
            return;
        if (!waited.isValid())
            waited.start();
        // The answer may run a nested loop of its own (a message box).
        poll.stop();
        answered = answer(modal);
        if (answered)
            return;
        if (waited.elapsed() > timeoutMs) {
            gaveUp = true;
            if (auto *dialog = qobject_cast<QDialog *>(modal))
                dialog->reject();
            return;
        }
        poll.start();
    });
    poll.start();
    trigger();
    poll.stop();
    return answered && !gaveUp;
}

bool clickButtons(QWidget *widget, const char *const *names, int count)
{
    QPointer<QWidget> target(widget);
    for (int i = 0; i < count; ++i) {
        if (!target)
            return false;
        auto *button = target->findChild<QPushButton *>(QLatin1String(names[i]));
        if (!button)
            return false;
        QTest::mouseClick(button, Qt::LeftButton);
    }
    return true;
}
