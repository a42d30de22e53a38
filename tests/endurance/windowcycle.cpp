#include "windowcycle.h"

#include "iplineedit.h"
#include "modalanswer.h"
#include "settingsinterface.h"
#include "sysreg.h"
#include "wirelesswgtui.h"

#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTest>

namespace {

constexpr unsigned LanguageRegister = 20;
constexpr unsigned WindowOpenRegister = 86;

quint8 registerByte(unsigned index)
{
    quint8 value[8] = {};
    SysReg_Read(index, value);
    return value[0];
}

// Makes every stacked or tab widget above the widget show the page that
// holds it.
void bringForward(QWidget *widget)
{
    for (QWidget *child = widget, *parent = widget->parentWidget(); parent;
         child = parent, parent = parent->parentWidget()) {
        if (auto *stack = qobject_cast<QStackedWidget *>(parent)) {
            if (auto *tabs = qobject_cast<QTabWidget *>(stack->parentWidget()))
                tabs->setCurrentWidget(child);
            else
                stack->setCurrentWidget(child);
        }
    }
}

// Presses a modal dialog's own close button.
std::function<bool(QWidget *)> dismiss(const char *className)
{
    return [className](QWidget *modal) {
        static const char *const close[] = {"closePushButton"};
        return modal->inherits(className) && clickButtons(modal, close, 1);
    };
}

} // namespace

bool WindowCycle::fail(const QString &why)
{
    m_error = why;
    return false;
}

QDialog *WindowCycle::open()
{
    QDialog *window = m_plugin->createInstance();
    if (!window) {
        fail(QStringLiteral("createInstance() gave no window"));
        return nullptr;
    }
    window->show();
    if (!QTest::qWaitForWindowExposed(window)) {
        delete window;
        fail(QStringLiteral("the window was never shown"));
        return nullptr;
    }
    if (registerByte(WindowOpenRegister) != 1) {
        delete window;
        fail(QStringLiteral("register 86 does not say the window is open"));
        return nullptr;
    }
    return window;
}

bool WindowCycle::visitPages(QWidget *window)
{
    m_pagesVisited = 0;
    const QList<QStackedWidget *> stacks = window->findChildren<QStackedWidget *>();
    for (QStackedWidget *stack : stacks) {
        // A tab widget's own stack is walked through its tabs below.
        if (qobject_cast<QTabWidget *>(stack->parentWidget()))
            continue;
        const int shown = stack->currentIndex();
        for (int page = 0; page < stack->count(); ++page) {
            stack->setCurrentIndex(page);
            window->repaint();
            ++m_pagesVisited;
            const QList<QTabWidget *> tabWidgets = stack->widget(page)->findChildren<QTabWidget *>();
            for (QTabWidget *tabs : tabWidgets) {
                for (int tab = 0; tab < tabs->count(); ++tab) {
                    tabs->setCurrentIndex(tab);
                    window->repaint();
                    ++m_pagesVisited;
                }
            }
        }
        stack->setCurrentIndex(shown);
    }
    if (stacks.isEmpty())
        return fail(QStringLiteral("the window has no pages"));
    return true;
}

bool WindowCycle::openAndDismissKeypad(QWidget *window)
{
    auto *field = window->findChild<QLineEdit *>(QStringLiteral("brightnessLineEdit"));
    if (!field)
        return fail(QStringLiteral("no brightness field to open the keypad from"));
    bringForward(field);
    const QString before = field->text();
    const bool answered = answerModalDuring([field]() { QTest::mouseClick(field, Qt::LeftButton); },
                                            dismiss("InputDialog"));
    if (!answered)
        return fail(QStringLiteral("touching the brightness field opened no keypad"));
    if (field->text() != before)
        return fail(QStringLiteral("a dismissed keypad changed the brightness"));
    return true;
}

bool WindowCycle::openAndDismissDateTime(QWidget *window)
{
    auto *button = window->findChild<QPushButton *>(QStringLiteral("settingButton"));
    if (!button)
        return fail(QStringLiteral("no date and time button"));
    bringForward(button);
    if (!answerModalDuring([button]() { QTest::mouseClick(button, Qt::LeftButton); }, dismiss("DateTimeDialog")))
        return fail(QStringLiteral("the date and time button opened no dialog"));
    return true;
}

bool WindowCycle::touchEditor(QWidget *editor, bool mustOpen)
{
    auto *field = editor->findChild<QLineEdit *>(QStringLiteral("lineEdit_ip4"));
    if (!field)
        return fail(QStringLiteral("an address editor without its fourth octet"));
    bringForward(editor);
    const QString wanted = field->text() == QLatin1String("7") ? QStringLiteral("8") : QStringLiteral("7");
    const std::string keys[] = {"pushButton" + wanted.toStdString(), "pushButtonEnter"};
    const char *const names[] = {keys[0].c_str(), keys[1].c_str()};
    const bool answered = answerModalDuring([field]() { QTest::mouseClick(field, Qt::LeftButton); },
                                            [&names](QWidget *modal) {
                                                return modal->inherits("InputDialog") && clickButtons(modal, names, 2);
                                            });
    if (mustOpen && (!answered || field->text() != wanted))
        return fail(QStringLiteral("an octet entered on the keypad did not arrive"));
    return true;
}

bool WindowCycle::touchOctet(QWidget *window)
{
    // Editors the window's own pages carry: whether their touch opens the
    // keypad is the WLAN page's choice inside the plug-in.
    bool touched = false;
    const QList<QWidget *> widgets = window->findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        if (widget->inherits("IPLineEdit") && widget->isVisibleTo(window)) {
            if (!touchEditor(widget, false))
                return false;
            touched = true;
            break;
        }
    }
    if (touched)
        return true;
    // No page has one yet: an editor as the network pages make it, on the
    // window, under a static WLAN address so that the keypad opens.
    WirelessWgtUI::m_isStaticIP = true;
    QPointer<IPLineEdit> editor(new IPLineEdit(window));
    editor->show();
    const bool done = touchEditor(editor, true);
    delete editor;
    return done;
}

bool WindowCycle::switchLanguageAndBack(QWidget *window)
{
    auto *box = window->findChild<QComboBox *>(QStringLiteral("comboBox"));
    if (!box || box->count() < 2)
        return fail(QStringLiteral("no language list of two entries"));
    const int shown = box->currentIndex();
    const quint8 language = registerByte(LanguageRegister);
    box->setCurrentIndex(shown == 0 ? 1 : 0);
    const bool switched = registerByte(LanguageRegister) != language;
    box->setCurrentIndex(shown);
    if (!switched || registerByte(LanguageRegister) != language)
        return fail(QStringLiteral("the language register did not follow the language list"));
    return true;
}

bool WindowCycle::closeThroughRegister(QWidget *window)
{
    QPushButton *close = nullptr;
    const QList<QPushButton *> buttons = window->findChildren<QPushButton *>(QStringLiteral("closePushButton"));
    for (QPushButton *button : buttons) {
        if (button->window() == window && button->isVisible())
            close = button;
    }
    if (!close)
        return fail(QStringLiteral("no close button on the window"));
    QTest::mouseClick(close, Qt::LeftButton);
    if (registerByte(WindowOpenRegister) != 0)
        return fail(QStringLiteral("the close button left register 86 at 1"));
    return true;
}

bool WindowCycle::run()
{
    QDialog *window = open();
    if (!window)
        return false;
    const bool done = visitPages(window) && openAndDismissKeypad(window) && openAndDismissDateTime(window)
        && touchOctet(window) && switchLanguageAndBack(window) && closeThroughRegister(window);
    // The host's part once register 86 reads 0.
    delete window;
    return done;
}
