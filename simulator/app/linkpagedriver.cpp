#include "linkpagedriver.h"
#include "windowdriver.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QListWidget>
#include <QMouseEvent>
#include <QPushButton>
#include <QStackedWidget>
#include <QTabWidget>

namespace {

// Keys of the on-screen keyboard by character: (key, without Caps, with Caps).
struct Key {
    const char *name;
    char plain;
    char shifted;
};

const Key SymbolKeys[] = {
    {"1", '1', '!'}, {"2", '2', '@'}, {"3", '3', '#'}, {"4", '4', '$'}, {"5", '5', '%'},
    {"6", '6', '^'}, {"7", '7', '&'}, {"8", '8', '*'}, {"9", '9', '('}, {"0", '0', ')'},
    {"denghao", '=', '+'}, {"youxie", '\\', '|'}, {"zuoxie", '/', '?'},
    {"zuoZhongKuohao", '[', '{'}, {"youZhongKuohao", ']', '}'}, {"xiaHuaXian", '-', '_'},
    {"maoHao", ':', ';'}, {"dian", '.', '>'}, {"douhao", ',', '<'},
};

QString keyObject(const QString &key)
{
    return QStringLiteral("pushButton_button_%1_keyboard").arg(key);
}

const QStringList FixedSteps = {
    QStringLiteral("wlan"), QStringLiteral("4g"), QStringLiteral("vpn"), QStringLiteral("wlan-search"),
    QStringLiteral("wlan-scan"), QStringLiteral("psw-keyboard"), QStringLiteral("psw-caps"),
    QStringLiteral("psw-enter"), QStringLiteral("psw-connect"), QStringLiteral("psw-cancel"),
    QStringLiteral("4g-on"), QStringLiteral("4g-off"), QStringLiteral("vpn-on"), QStringLiteral("vpn-off"),
    QStringLiteral("vpn-region=0"), QStringLiteral("vpn-region=1"),
};

} // namespace

LinkPageDriver::LinkPageDriver(WindowDriver *window)
    : m_window(window)
{
}

QStringList LinkPageDriver::stepNames()
{
    return FixedSteps + QStringList{QStringLiteral("wlan-pick=NAME"), QStringLiteral("psw-type=TEXT")};
}

bool LinkPageDriver::isStep(const QString &step)
{
    return FixedSteps.contains(step)
        || (step.startsWith(QLatin1String("wlan-pick=")) && step.size() > 10)
        || (step.startsWith(QLatin1String("psw-type=")) && step.size() > 9);
}

QString LinkPageDriver::keyFor(QChar character, bool *caps)
{
    *caps = false;
    const char c = character.toLatin1();
    if (character.unicode() > 0x7f || c == 0)
        return QString();
    if (c == ' ')
        return keyObject(QStringLiteral("kongge"));
    if (c >= 'a' && c <= 'z')
        return keyObject(QString(QLatin1Char(c)));
    if (c >= 'A' && c <= 'Z') {
        *caps = true;
        return keyObject(QString(QLatin1Char(char(c - 'A' + 'a'))));
    }
    for (const Key &key : SymbolKeys) {
        if (key.plain == c || key.shifted == c) {
            *caps = key.shifted == c;
            return keyObject(QLatin1String(key.name));
        }
    }
    return QString();
}

bool LinkPageDriver::run(const QString &step, QString *error)
{
    if (step == QLatin1String("wlan"))
        return showTab("WirelessWgtUI", error) && wlanMainPage(error);
    if (step == QLatin1String("4g"))
        return showTab("MobileNetworkUI", error);
    if (step == QLatin1String("vpn"))
        return showTab("VpnSetUI", error);
    if (step == QLatin1String("wlan-search")) {
        QWidget *wlan = page("WirelessWgtUI", error);
        QWidget *row = wlan ? wlan->findChild<QWidget *>(QStringLiteral("groupBox_skip")) : nullptr;
        if (wlan && !row)
            *error = QStringLiteral("the WLAN page has no groupBox_skip");
        return row && touch(row, row->rect().center());
    }
    if (step == QLatin1String("wlan-scan"))
        return pageButton("WirelessWgtUI", "pushButton_refreshWlan", error);
    if (step.startsWith(QLatin1String("wlan-pick=")))
        return pick(step.mid(10), error);
    if (step.startsWith(QLatin1String("psw-")))
        return step.startsWith(QLatin1String("psw-type=")) ? type(step.mid(9), error)
            : step == QLatin1String("psw-keyboard")         ? dialogButton("lineEdit_psw", error)
            : step == QLatin1String("psw-caps")             ? pressKey(keyObject(QStringLiteral("caps")), error)
            : step == QLatin1String("psw-enter")            ? pressKey(keyObject(QStringLiteral("enter")), error)
            : step == QLatin1String("psw-connect")          ? dialogButton("pushButton_connect", error)
                                                             : dialogButton("pushButton_cancel", error);
    if (step.startsWith(QLatin1String("4g-")))
        return setSwitch("MobileNetworkUI", "switch_4g", step == QLatin1String("4g-on"), error);
    if (step.startsWith(QLatin1String("vpn-region=")))
        return selectRegion(step.mid(11).toInt(), error);
    return setSwitch("VpnSetUI", "switch_vpn", step == QLatin1String("vpn-on"), error);
}

QTabWidget *LinkPageDriver::tabs(QString *error) const
{
    QDialog *window = m_window->window();
    if (!window) {
        *error = QStringLiteral("the settings window is gone");
        return nullptr;
    }
    for (QTabWidget *found : window->findChildren<QTabWidget *>()) {
        if (found->inherits("NetworkSettings"))
            return found;
    }
    *error = QStringLiteral("the settings window has no network page (NetworkSettings)");
    return nullptr;
}

QWidget *LinkPageDriver::page(const char *className, QString *error) const
{
    QTabWidget *network = tabs(error);
    if (!network)
        return nullptr;
    for (QWidget *found : network->findChildren<QWidget *>()) {
        if (found->inherits(className))
            return found;
    }
    *error = QStringLiteral("the network page has no %1 tab").arg(QLatin1String(className));
    return nullptr;
}

bool LinkPageDriver::showTab(const char *className, QString *error)
{
    QTabWidget *network = tabs(error);
    QWidget *tab = network ? page(className, error) : nullptr;
    const int index = tab ? network->indexOf(tab) : -1;
    if (tab && index < 0)
        *error = QStringLiteral("%1 is not one of the network page's tabs").arg(QLatin1String(className));
    if (index < 0)
        return false;
    network->setCurrentIndex(index);
    return true;
}

bool LinkPageDriver::wlanMainPage(QString *error)
{
    QWidget *wlan = page("WirelessWgtUI", error);
    auto *stack = wlan ? wlan->findChild<QStackedWidget *>(QStringLiteral("stackedWidget")) : nullptr;
    if (stack && stack->currentIndex() != 0)
        return pageButton("WirelessWgtUI", "pushButton_backToPage", error);
    return wlan != nullptr;
}

bool LinkPageDriver::touch(QWidget *widget, const QPoint &at)
{
    QCoreApplication::postEvent(widget, new QMouseEvent(QEvent::MouseButtonPress, at, widget->mapToGlobal(at),
                                                        Qt::LeftButton, Qt::LeftButton, Qt::NoModifier));
    QCoreApplication::postEvent(widget, new QMouseEvent(QEvent::MouseButtonRelease, at, widget->mapToGlobal(at),
                                                        Qt::LeftButton, Qt::NoButton, Qt::NoModifier));
    return true;
}

bool LinkPageDriver::pageButton(const char *className, const char *objectName, QString *error)
{
    QWidget *tab = page(className, error);
    auto *button = tab ? tab->findChild<QAbstractButton *>(QLatin1String(objectName)) : nullptr;
    if (tab && !button)
        *error = QStringLiteral("%1 has no %2").arg(QLatin1String(className), QLatin1String(objectName));
    if (!button)
        return false;
    button->click();
    return true;
}

bool LinkPageDriver::pick(const QString &ssid, QString *error)
{
    QWidget *wlan = page("WirelessWgtUI", error);
    auto *list = wlan ? wlan->findChild<QListWidget *>(QStringLiteral("listWidget_wifi")) : nullptr;
    if (!list) {
        if (wlan)
            *error = QStringLiteral("the WLAN page has no listWidget_wifi");
        return false;
    }
    const QList<QListWidgetItem *> items = list->findItems(ssid, Qt::MatchExactly);
    if (items.isEmpty()) {
        *error = QStringLiteral("\"%1\" is not in the WLAN list").arg(ssid);
        return false;
    }
    list->scrollToItem(items.first());
    return touch(list->viewport(), list->visualItemRect(items.first()).center());
}

QDialog *LinkPageDriver::passwordDialog(QString *error) const
{
    QDialog *window = m_window->window();
    if (window) {
        for (QDialog *dialog : window->findChildren<QDialog *>()) {
            if (dialog->inherits("WirelessPswDialog") && dialog->isVisible())
                return dialog;
        }
    }
    *error = QStringLiteral("no WLAN password dialog is open");
    return nullptr;
}

bool LinkPageDriver::dialogButton(const char *objectName, QString *error)
{
    QDialog *dialog = passwordDialog(error);
    QWidget *widget = dialog ? dialog->findChild<QWidget *>(QLatin1String(objectName)) : nullptr;
    if (dialog && !widget)
        *error = QStringLiteral("the password dialog has no %1").arg(QLatin1String(objectName));
    if (!widget)
        return false;
    if (auto *button = qobject_cast<QAbstractButton *>(widget)) {
        button->click();
        return true;
    }
    // The password field opens a new keyboard, which starts without Caps.
    m_caps = false;
    return touch(widget, widget->rect().center());
}

QWidget *LinkPageDriver::keyboardKey(const QString &name, QString *error) const
{
    QDialog *dialog = passwordDialog(error);
    if (!dialog)
        return nullptr;
    // The newest keyboard: each touch on the field builds another.
    QWidget *found = nullptr;
    for (QPushButton *key : dialog->findChildren<QPushButton *>(name)) {
        if (key->isVisible())
            found = key;
    }
    if (!found)
        *error = QStringLiteral("no keyboard key %1 is shown").arg(name);
    return found;
}

bool LinkPageDriver::pressKey(const QString &name, QString *error)
{
    auto *key = qobject_cast<QPushButton *>(keyboardKey(name, error));
    if (!key)
        return false;
    if (name == keyObject(QStringLiteral("caps")))
        m_caps = !m_caps;
    key->click();
    return true;
}

bool LinkPageDriver::type(const QString &text, QString *error)
{
    for (const QChar character : text) {
        bool caps = false;
        const QString key = keyFor(character, &caps);
        if (key.isEmpty()) {
            *error = QStringLiteral("the keyboard has no key for \"%1\"").arg(character);
            return false;
        }
        if (caps != m_caps && !pressKey(keyObject(QStringLiteral("caps")), error))
            return false;
        if (!pressKey(key, error))
            return false;
    }
    return true;
}

bool LinkPageDriver::setSwitch(const char *className, const char *objectName, bool on, QString *error)
{
    QWidget *tab = page(className, error);
    QWidget *button = tab ? tab->findChild<QWidget *>(QLatin1String(objectName)) : nullptr;
    if (tab && !button)
        *error = QStringLiteral("%1 has no %2").arg(QLatin1String(className), QLatin1String(objectName));
    if (!button)
        return false;
    if (button->property("checked").toBool() != on)
        touch(button, button->rect().center());
    return true;
}

bool LinkPageDriver::selectRegion(int index, QString *error)
{
    QWidget *tab = page("VpnSetUI", error);
    auto *combo = tab ? tab->findChild<QComboBox *>(QStringLiteral("comboBox_server")) : nullptr;
    if (tab && !combo)
        *error = QStringLiteral("the VPN page has no comboBox_server");
    if (!combo)
        return false;
    // Queued: a refusal opens a modal box, which must not run inside this step.
    QMetaObject::invokeMethod(combo, "setCurrentIndex", Qt::QueuedConnection, Q_ARG(int, index));
    return true;
}
