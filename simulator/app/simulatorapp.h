#ifndef SIMULATORAPP_H
#define SIMULATORAPP_H

#include "panelenvironment.h"
#include "pluginhost.h"
#include "simulatoroptions.h"
#include "windowdriver.h"

#include <QObject>
#include <QSize>
#include <QTimer>

class CommandReader;
class ControlWindow;
class HostSession;
class InterruptHandler;
class LinkInterfaces;

// One simulated panel with one settings window, in this process: builds
// the panel, loads the plug-in, plays the host side and then, by mode,
// lets the user work (interactive, or on a nested panel screen driven by
// the parent's log window), plays a script, or runs a screenshot pass.
// run() returns the exit status.
class SimulatorApp : public QObject
{
    Q_OBJECT

public:
    explicit SimulatorApp(const SimulatorOptions &options, QObject *parent = nullptr);
    ~SimulatorApp() override;

    int run();

private slots:
    void report(const QString &line);
    void openWindow();
    void onWindowDeleted();
    void onClosePressed();
    void onCloseOverdue();
    void onCommand(const QString &command);
    void setOuterNetwork(bool up);
    void runHostCommand(const QString &command);
    void setStandInLink(const QString &port, const QString &address, const QString &mask);
    void finish(int status);
    void fail(const QString &error);

private:
    bool prepare(QString *error);
    bool prepareNetwork(QString *error);
    bool createWindow(QString *error);
    void startMode();
    void warnIfScreenIsNotThePanel();
    void shutDown();

    SimulatorOptions m_options;
    SimulatorOptions::Mode m_mode;
    QSize m_size;
    PanelEnvironment m_panel;
    PluginHost m_plugin;
    WindowDriver m_driver;
    HostSession *m_session = nullptr;
    ControlWindow *m_control = nullptr;
    CommandReader *m_commands = nullptr;
    InterruptHandler *m_interrupt = nullptr;
    LinkInterfaces *m_labLinks = nullptr;
    QTimer m_closeWatchdog;
    bool m_finishing = false;
    bool m_resolverCovered = false;
};

#endif // SIMULATORAPP_H
