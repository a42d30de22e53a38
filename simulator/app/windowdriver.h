#ifndef WINDOWDRIVER_H
#define WINDOWDRIVER_H

#include <QDialog>
#include <QPointer>
#include <QString>
#include <QStringList>

class QWidget;

// Operates a settings window through its public widget tree only: the page
// buttons, the language combo box and the close button, found by object
// name, as a test robot at the panel would. Every call fails cleanly (with
// a message) when the widget is missing or the window is gone.
class WindowDriver
{
public:
    explicit WindowDriver(QDialog *window = nullptr);
    void setWindow(QDialog *window) { m_window = window; }
    QDialog *window() const { return m_window; }

    static QStringList pageNames();       // general, network, version
    static QStringList languageNames();   // zh (row 0), en (row 1)

    bool showPage(const QString &page, QString *error);
    bool selectLanguage(const QString &language, QString *error);
    bool pressClose(QString *error);
    // Renders the window (not the screen) into a PNG file.
    bool saveImage(const QString &file, QString *error);

private:
    QWidget *child(const char *className, const QString &objectName, QString *error) const;

    QPointer<QDialog> m_window;
};

#endif // WINDOWDRIVER_H
