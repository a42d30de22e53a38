#include "modaldriver.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace ModalDriver {

namespace {

int g_pending = 0;

QString keyObjectName(const QString &key)
{
    static const QHash<QString, QString> names = {
        {QStringLiteral("CLR"), QStringLiteral("pushButtonClear")},
        {QStringLiteral("<-"), QStringLiteral("pushButtonBackspace")},
        {QStringLiteral("-"), QStringLiteral("pushButtonNegative")},
        {QStringLiteral("."), QStringLiteral("pushButtonDot")},
        {QStringLiteral("ENTER"), QStringLiteral("pushButtonEnter")},
        {QStringLiteral("close"), QStringLiteral("closePushButton")},
    };
    return names.value(key, QStringLiteral("pushButton") + key);
}

} // namespace

void onNextModal(const std::function<bool(QWidget *)> &action, int timeoutMs)
{
    ++g_pending;
    auto *timer = new QTimer;
    auto waited = std::make_shared<int>(0);
    constexpr int PollMs = 10;
    QObject::connect(timer, &QTimer::timeout, [timer, action, waited, timeoutMs]() {
        // The action may run a nested event loop (a message box): the timer
        // must not fire into it again.
        timer->stop();
        QWidget *modal = QApplication::activeModalWidget();
        bool done = false;
        if (modal && modal->isVisible())
            done = action(modal);
        *waited += PollMs;
        if (done || *waited >= timeoutMs) {
            if (!done)
                qWarning("ModalDriver: no modal dialog to answer within %d ms", timeoutMs);
            --g_pending;
            timer->deleteLater();
        } else {
            timer->start(PollMs);
        }
    });
    timer->start(PollMs);
}

void typeOnKeypad(const QStringList &keys, QStringList *shown)
{
    onNextModal([keys, shown](QWidget *w) {
        if (!w->inherits("InputDialog"))
            return false;
        QPointer<QWidget> keypad(w);
        for (const QString &key : keys) {
            if (!keypad)
                break;
            auto *button = keypad->findChild<QPushButton *>(keyObjectName(key));
            if (!button) {
                qWarning("ModalDriver: keypad has no key %s", qPrintable(key));
                continue;
            }
            QTest::mouseClick(button, Qt::LeftButton);
            if (shown && keypad)
                shown->append(keypad->findChild<QLineEdit *>(QStringLiteral("numLineEdit"))->text());
        }
        return true;
    });
}

void acceptMessageBox(QString *title, QString *text)
{
    onNext<QMessageBox>([title, text](QMessageBox *box) {
        if (title)
            *title = box->windowTitle();
        if (text)
            *text = box->text();
        const QList<QAbstractButton *> buttons = box->buttons();
        if (!buttons.isEmpty())
            buttons.first()->click();
        else
            box->close();
    });
}

int pending()
{
    return g_pending;
}

} // namespace ModalDriver
