#ifndef WINDOWDRIVER_H
#define WINDOWDRIVER_H

#include <QDialog>
#include <QPointer>
#include <QString>
#include <QStringList>

class QTabWidget;
class QWidget;
class WiredPortPage;

// Operates a settings window through its public widget tree only: the page
// buttons, the language combo box, the close button and the network page's
// port tabs and their controls, found by object name and the meta-object,
// as a test robot at the panel would. Every call fails cleanly (with
// a message) when the widget is missing or the window is gone.
class WindowDriver
{
public:
    explicit WindowDriver(QDialog *window = nullptr);
    void setWindow(QDialog *window) { m_window = window; }
    QDialog *window() const { return m_window; }

    static QStringList pageNames();       // general, network, version
    static QStringList languageNames();   // zh (row 0), en (row 1)
    static QStringList dialogNames();     // keypad, datetime
    static QStringList portNames();       // eth0, eth1 (tabs of the network page)
    static QStringList modeNames();       // static (row 0), dhcp (row 1)

    // Opens one of the general page's modal dialogs the way a touch does:
    // the keypad from brightnessLineEdit, the date and time dialog from the
    // "setting" button. The touch is queued, so this returns at once and the
    // dialog runs its own event loop from the next turn of the caller's.
    bool openDialog(const QString &dialog, QString *error);
    // Closes the modal dialog on top with its own close button.
    bool dismissDialog(QString *error);

    bool showPage(const QString &page, QString *error);
    // The network page's tab of a wired port; fails on a panel without it.
    bool showPort(const QString &port, QString *error);
    // Selects the addressing mode of the wired port whose tab is shown, as
    // a pick in its combo box does.
    bool selectMode(const QString &mode, QString *error);
    // Presses the shown port's outer-network test button.
    bool pressTest(QString *error);
    // Lets the page read the test's answer now instead of after its 6 s:
    // the result box opens from the next turn of the event loop, as a touch
    // would open it, and stays until dismissed.
    bool evaluateTest(QString *error);
    bool selectLanguage(const QString &language, QString *error);
    bool pressClose(QString *error);
    // Renders the window (not the screen) into a PNG file, with the modal
    // dialog on top of it, if one is open, where it stands on the screen.
    bool saveImage(const QString &file, QString *error);

private:
    QDialog *topDialog() const;
    QWidget *child(const char *className, const QString &objectName, QString *error) const;
    QTabWidget *networkTabs(QString *error) const;
    QWidget *shownPort(QString *error) const;

    QPointer<QDialog> m_window;
};

#endif // WINDOWDRIVER_H
