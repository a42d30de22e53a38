#ifndef CONTROLWINDOW_H
#define CONTROLWINDOW_H

#include <QString>
#include <QWidget>

class QLabel;
class QPlainTextEdit;

// The small side window of an interactive run: the host-side log
// (notifications with their values, commands the plug-in ran), where the
// simulated panel lives, and buttons to show (or, once deleted, recreate)
// the settings window the way the runtime would, and to quit.
class ControlWindow : public QWidget
{
    Q_OBJECT

public:
    ControlWindow(const QString &root, const QString &pluginPath, QWidget *parent = nullptr);

public slots:
    void appendLine(const QString &line);

signals:
    void openSettingsRequested();
    void quitRequested();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    QPlainTextEdit *m_log;
};

#endif // CONTROLWINDOW_H
