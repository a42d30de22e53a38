#ifndef WINDOWCYCLE_H
#define WINDOWCYCLE_H

#include <QString>

class QDialog;
class QWidget;
class SettingsInterface;

// What an operator does with the settings window in one visit, driven as
// the host and a finger would: the window comes from the plug-in loaded from
// its library file, and goes when register 86 says the close button was
// pressed. Each step returns false and sets errorString() when the window
// did not behave.
class WindowCycle
{
public:
    explicit WindowCycle(SettingsInterface *plugin) : m_plugin(plugin) {}

    // Opens a window, runs every step below on it, closes and deletes it.
    bool run();

    QDialog *open();
    // Shows every page of every stacked widget and every tab of every tab
    // widget found in the window, so pages added later join in by themselves.
    bool visitPages(QWidget *window);
    bool openAndDismissKeypad(QWidget *window);
    bool openAndDismissDateTime(QWidget *window);
    // Enters an octet of an address editor on the keypad.
    bool touchOctet(QWidget *window);
    bool switchLanguageAndBack(QWidget *window);
    // Presses the close button; true when register 86 went to 0.
    bool closeThroughRegister(QWidget *window);

    int pagesVisited() const { return m_pagesVisited; }
    QString errorString() const { return m_error; }

private:
    bool fail(const QString &why);
    bool touchEditor(QWidget *editor, bool mustOpen);

    SettingsInterface *m_plugin;
    int m_pagesVisited = 0;
    QString m_error;
};

#endif // WINDOWCYCLE_H
