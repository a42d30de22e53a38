#ifndef NESTEDRUNNER_H
#define NESTEDRUNNER_H

#include "simulatorchild.h"
#include "simulatoroptions.h"
#include "xserver.h"

#include <QObject>
#include <QSize>
#include <QString>
#include <QTimer>

class ControlWindow;
class InterruptHandler;

// Gives the plug-in a screen of exactly the panel's size on a desktop,
// since it sizes itself from its primary screen: a nested X server
// (Xephyr) shows that screen as a window on the user's display, and a
// child process of this program runs the settings window on it. This
// process keeps the host-side log window on the user's display (or, for a
// script, relays the log to stdout), sends the log window's buttons to the
// child as commands, and ends the child and the nested server together,
// whichever of them ends first, and on Ctrl-C.
class NestedRunner : public QObject
{
    Q_OBJECT

public:
    explicit NestedRunner(const SimulatorOptions &options, QObject *parent = nullptr);
    ~NestedRunner() override;

    int run();   // exit status: the child's

private slots:
    void onChildLine(const QString &line);
    void onChildEnded(int status);
    void onServerEnded();
    void requestQuit();
    void finish(int status);

private:
    QStringList childArguments() const;
    void showControlWindow();
    void report(const QString &line);
    void shutDown();
    void removeLeftoverRoot();

    SimulatorOptions m_options;
    QSize m_size;
    XServer m_server;
    SimulatorChild m_child;
    ControlWindow *m_control = nullptr;
    InterruptHandler *m_interrupt;
    QTimer m_quitWatchdog;
    QString m_childRoot;
    bool m_finishing = false;
};

#endif // NESTEDRUNNER_H
