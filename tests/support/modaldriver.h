#ifndef MODALDRIVER_H
#define MODALDRIVER_H

#include <QApplication>
#include <QStringList>
#include <QWidget>
#include <functional>

class QMessageBox;

// Answers modal dialogs from a timer, the way a user at the panel would,
// while the code under test sits in exec(). Each call arms one answer: it
// waits for a visible modal widget of the wanted type to become the active
// modal widget, acts on it once, and gives up after timeoutMs.
namespace ModalDriver {

void onNextModal(const std::function<bool(QWidget *)> &action, int timeoutMs = 5000);

template <typename T>
void onNext(const std::function<void(T *)> &action, int timeoutMs = 5000)
{
    onNextModal([action](QWidget *w) {
        T *dialog = qobject_cast<T *>(w);
        if (!dialog)
            return false;
        action(dialog);
        return true;
    }, timeoutMs);
}

// Clicks keys of the next numeric keypad, in order. A key is named by its
// caption ("0".."9", "CLR", "<-", "-", ".", "ENTER") or "close" for the
// title bar's close button. The texts seen in the number field after each
// key are appended to *shown when it is given.
void typeOnKeypad(const QStringList &keys, QStringList *shown = nullptr);

// Presses the first button of the next message box; its title and text are
// stored when the pointers are given.
void acceptMessageBox(QString *title = nullptr, QString *text = nullptr);

// Number of modal answers armed and not yet given.
int pending();

} // namespace ModalDriver

#endif // MODALDRIVER_H
