#ifndef CONTROLWINDOW_H
#define CONTROLWINDOW_H

#include <QSize>
#include <QString>
#include <QWidget>

class LinkControls;
class QCheckBox;
class QLabel;
class QPlainTextEdit;

// The small side window of an interactive run: the host-side log
// (notifications with their values, commands the plug-in ran), where the
// simulated panel lives, and buttons to show (or, once deleted, recreate)
// the settings window the way the runtime would, and to quit; a switch
// makes the world beyond the panel answer the outer-network test or not,
// and the host links' controls change what its WLAN, 4G and VPN do next.
class ControlWindow : public QWidget
{
    Q_OBJECT

public:
    // root may be empty while a child process is still building the panel.
    ControlWindow(const QString &root, const QString &pluginPath, QWidget *parent = nullptr);

    // Beside the panel's screen (which sits at the top left) when the
    // desktop has room, so that neither hides the other.
    void placeBeside(const QSize &panelSize);

public slots:
    void appendLine(const QString &line);
    void setPanelRoot(const QString &root);
    void setOuterNetworkUp(bool up);

signals:
    void openSettingsRequested();
    void quitRequested();
    void outerNetworkToggled(bool up);
    void hostCommand(const QString &command);

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    QLabel *m_where;
    QString m_pluginPath;
    QPlainTextEdit *m_log;
    QCheckBox *m_outer;
    LinkControls *m_links;
};

#endif // CONTROLWINDOW_H
