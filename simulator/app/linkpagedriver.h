#ifndef LINKPAGEDRIVER_H
#define LINKPAGEDRIVER_H

#include <QPoint>
#include <QString>
#include <QStringList>

class QDialog;
class QTabWidget;
class QWidget;
class WindowDriver;

// Operates the network page's WLAN, 4G and VPN tabs and the WLAN password
// dialog with its on-screen keyboard through their widgets' object names,
// the way a finger would: touches are queued mouse events, keys and
// buttons are clicked. Steps (script syntax):
//   wlan | 4g | vpn          show that tab (wlan: its main page)
//   wlan-search              touch the WLAN row: the search page
//   wlan-scan                press the refresh button (a scan request)
//   wlan-pick=NAME           touch that network in the list
//   psw-keyboard             touch the password field: the keyboard opens
//   psw-type=TEXT            type TEXT on the keyboard (Caps as needed)
//   psw-caps                 press Caps
//   psw-enter                press ENTER (the text goes to the field)
//   psw-connect | psw-cancel the dialog's buttons
//   4g-on | 4g-off | vpn-on | vpn-off   touch the switch when it is not so
//   vpn-region=0 | vpn-region=1         pick the server region
class LinkPageDriver
{
public:
    explicit LinkPageDriver(WindowDriver *window);

    static bool isStep(const QString &step);
    static QStringList stepNames();
    bool run(const QString &step, QString *error);

    // The key's object name for a character and whether it needs Caps;
    // empty for a character the keyboard does not have.
    static QString keyFor(QChar character, bool *caps);

private:
    QTabWidget *tabs(QString *error) const;
    QWidget *page(const char *className, QString *error) const;
    QDialog *passwordDialog(QString *error) const;
    QWidget *keyboardKey(const QString &name, QString *error) const;
    bool showTab(const char *className, QString *error);
    bool wlanMainPage(QString *error);
    bool touch(QWidget *widget, const QPoint &at);
    bool pick(const QString &ssid, QString *error);
    bool type(const QString &text, QString *error);
    bool pressKey(const QString &name, QString *error);
    bool dialogButton(const char *objectName, QString *error);
    bool setSwitch(const char *className, const char *objectName, bool on, QString *error);
    bool selectRegion(int index, QString *error);
    bool pageButton(const char *className, const char *objectName, QString *error);

    WindowDriver *m_window;
    bool m_caps = false;
};

#endif // LINKPAGEDRIVER_H
