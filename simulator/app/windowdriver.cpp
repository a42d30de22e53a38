#include "windowdriver.h"

#include <QApplication>
#include <QComboBox>
#include <QMouseEvent>
#include <QPainter>
#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QPixmap>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>

WindowDriver::WindowDriver(QDialog *window)
    : m_window(window)
{
}

QStringList WindowDriver::pageNames()
{
    return {QStringLiteral("general"), QStringLiteral("network"), QStringLiteral("version")};
}

QStringList WindowDriver::languageNames()
{
    return {QStringLiteral("zh"), QStringLiteral("en")};
}

QStringList WindowDriver::dialogNames()
{
    return {QStringLiteral("keypad"), QStringLiteral("datetime")};
}

QStringList WindowDriver::portNames()
{
    return {QStringLiteral("eth0"), QStringLiteral("eth1")};
}

QStringList WindowDriver::modeNames()
{
    return {QStringLiteral("static"), QStringLiteral("dhcp")};
}

QWidget *WindowDriver::child(const char *className, const QString &objectName, QString *error) const
{
    if (!m_window) {
        *error = QStringLiteral("the settings window is gone");
        return nullptr;
    }
    QWidget *widget = m_window->findChild<QWidget *>(objectName);
    if (!widget || !widget->inherits(className)) {
        *error = QStringLiteral("the settings window has no %1 \"%2\"")
                     .arg(QLatin1String(className), objectName);
        return nullptr;
    }
    return widget;
}

bool WindowDriver::showPage(const QString &page, QString *error)
{
    if (!pageNames().contains(page)) {
        *error = QStringLiteral("unknown page \"%1\"").arg(page);
        return false;
    }
    auto *button = static_cast<QPushButton *>(
        child("QPushButton", page + QStringLiteral("PushButton"), error));
    if (!button)
        return false;
    button->click();
    return true;
}

QTabWidget *WindowDriver::networkTabs(QString *error) const
{
    if (!m_window) {
        *error = QStringLiteral("the settings window is gone");
        return nullptr;
    }
    // Found by class: the window's form names the page after its place.
    for (QTabWidget *tabs : m_window->findChildren<QTabWidget *>()) {
        if (tabs->inherits("NetworkSettings"))
            return tabs;
    }
    *error = QStringLiteral("the settings window has no network page (NetworkSettings)");
    return nullptr;
}

bool WindowDriver::showPort(const QString &port, QString *error)
{
    QTabWidget *tabs = networkTabs(error);
    if (!tabs)
        return false;
    QWidget *tab = tabs->findChild<QWidget *>(port + QStringLiteral("Tab"));
    const int index = tab ? tabs->indexOf(tab) : -1;
    if (index < 0) {
        *error = QStringLiteral("the network page has no %1 tab (a panel with one wired port?)").arg(port);
        return false;
    }
    tabs->setCurrentIndex(index);
    return true;
}

QWidget *WindowDriver::shownPort(QString *error) const
{
    QTabWidget *tabs = networkTabs(error);
    if (!tabs)
        return nullptr;
    QWidget *tab = tabs->currentWidget();
    if (!tab || !portNames().contains(tab->objectName().chopped(qMin(3, tab->objectName().size())))) {
        *error = QStringLiteral("the network page shows no wired port's tab");
        return nullptr;
    }
    return tab;
}

bool WindowDriver::selectMode(const QString &mode, QString *error)
{
    const int row = modeNames().indexOf(mode);
    QWidget *tab = shownPort(error);
    if (!tab)
        return false;
    auto *combo = tab->findChild<QComboBox *>(QStringLiteral("modeComboBox"));
    if (row < 0 || !combo || row >= combo->count()) {
        *error = QStringLiteral("no mode \"%1\" on %2").arg(mode, tab->objectName());
        return false;
    }
    if (!combo->isEnabled()) {
        *error = QStringLiteral("%1 is switched off: its mode cannot be chosen").arg(tab->objectName());
        return false;
    }
    combo->setCurrentIndex(row);
    return true;
}

bool WindowDriver::pressTest(QString *error)
{
    QWidget *tab = shownPort(error);
    if (!tab)
        return false;
    auto *button = tab->findChild<QPushButton *>(QStringLiteral("TestButton"));
    if (!button) {
        *error = QStringLiteral("%1 has no TestButton").arg(tab->objectName());
        return false;
    }
    button->click();
    return true;
}

bool WindowDriver::evaluateTest(QString *error)
{
    QTabWidget *tabs = networkTabs(error);
    if (!tabs)
        return false;
    if (!QMetaObject::invokeMethod(tabs, "ping_test", Qt::QueuedConnection)) {
        *error = QStringLiteral("the network page has no ping_test slot");
        return false;
    }
    return true;
}

bool WindowDriver::selectLanguage(const QString &language, QString *error)
{
    const int row = languageNames().indexOf(language);
    if (row < 0) {
        *error = QStringLiteral("unknown language \"%1\"").arg(language);
        return false;
    }
    auto *combo = static_cast<QComboBox *>(child("QComboBox", QStringLiteral("comboBox"), error));
    if (!combo)
        return false;
    if (row >= combo->count()) {
        *error = QStringLiteral("the language list has %1 rows, row %2 wanted").arg(combo->count()).arg(row);
        return false;
    }
    combo->setCurrentIndex(row);
    return true;
}

bool WindowDriver::openDialog(const QString &dialog, QString *error)
{
    if (dialog == QLatin1String("keypad")) {
        QWidget *field = child("QLineEdit", QStringLiteral("brightnessLineEdit"), error);
        if (!field)
            return false;
        const QPoint centre = field->rect().center();
        QCoreApplication::postEvent(field, new QMouseEvent(QEvent::MouseButtonPress, centre,
                                                           field->mapToGlobal(centre), Qt::LeftButton,
                                                           Qt::LeftButton, Qt::NoModifier));
        QCoreApplication::postEvent(field, new QMouseEvent(QEvent::MouseButtonRelease, centre,
                                                           field->mapToGlobal(centre), Qt::LeftButton,
                                                           Qt::NoButton, Qt::NoModifier));
        return true;
    }
    if (dialog == QLatin1String("datetime")) {
        QWidget *button = child("QPushButton", QStringLiteral("settingButton"), error);
        if (!button)
            return false;
        QMetaObject::invokeMethod(button, "click", Qt::QueuedConnection);
        return true;
    }
    *error = QStringLiteral("unknown dialog \"%1\"").arg(dialog);
    return false;
}

QDialog *WindowDriver::topDialog() const
{
    auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    return dialog && dialog != m_window && dialog->isVisible() ? dialog : nullptr;
}

bool WindowDriver::dismissDialog(QString *error)
{
    QDialog *dialog = topDialog();
    if (!dialog) {
        *error = QStringLiteral("no dialog is open");
        return false;
    }
    // A message box is answered with its own button, as the operator would.
    auto *box = qobject_cast<QMessageBox *>(dialog);
    auto *close = box ? qobject_cast<QPushButton *>(box->buttons().value(0))
                      : dialog->findChild<QPushButton *>(QStringLiteral("closePushButton"));
    if (close)
        close->click();
    else
        dialog->reject();
    return true;
}

bool WindowDriver::pressClose(QString *error)
{
    auto *button = static_cast<QPushButton *>(
        child("QPushButton", QStringLiteral("closePushButton"), error));
    if (!button)
        return false;
    // click() works on a hidden button too: a panel that locks the window
    // open hides the button, and the host side must still be testable.
    button->click();
    return true;
}

bool WindowDriver::saveImage(const QString &file, QString *error)
{
    if (!m_window) {
        *error = QStringLiteral("the settings window is gone");
        return false;
    }
    if (!QDir().mkpath(QFileInfo(file).absolutePath())) {
        *error = QStringLiteral("cannot create the folder of %1").arg(file);
        return false;
    }
    QPixmap pixmap = m_window->grab();
    // Windows of the pages over it (the WLAN password dialog and its
    // keyboard, message boxes) where they stand, the modal one on top.
    QList<QWidget *> over;
    for (QWidget *widget : m_window->findChildren<QWidget *>()) {
        if (widget->isWindow() && widget->isVisible())
            over << widget;
    }
    QDialog *modal = topDialog();
    if (modal && !over.contains(modal))
        over << modal;
    if (modal)
        over.move(over.indexOf(modal), over.size() - 1);
    QPainter painter(&pixmap);
    for (QWidget *widget : qAsConst(over))
        painter.drawPixmap(widget->mapToGlobal(QPoint()) - m_window->mapToGlobal(QPoint()), widget->grab());
    painter.end();
    if (pixmap.isNull() || !pixmap.save(file, "PNG")) {
        *error = QStringLiteral("cannot write %1").arg(file);
        return false;
    }
    return true;
}
