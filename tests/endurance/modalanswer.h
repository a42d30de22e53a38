#ifndef MODALANSWER_H
#define MODALANSWER_H

#include <functional>

class QWidget;

// Runs trigger() and, while it sits in a modal loop, offers the active modal
// widget to answer() until answer() takes it (returns true). Unlike a timer
// armed ahead, nothing stays armed once trigger() returns, so a touch that
// opens no dialog costs no waiting. Returns whether a modal was answered;
// a modal left unanswered for timeoutMs is rejected, and false returned.
bool answerModalDuring(const std::function<void()> &trigger, const std::function<bool(QWidget *)> &answer,
                       int timeoutMs = 5000);

// Clicks the named push buttons of the widget, in order. False when one is
// missing.
bool clickButtons(QWidget *widget, const char *const *names, int count);

#endif // MODALANSWER_H
