#ifndef SIMULATORCHILD_H
#define SIMULATORCHILD_H

#include "simulatoroptions.h"

#include <QObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QSize>
#include <QString>
#include <QStringList>

// A child process of this program that runs one part of the simulator (a
// screenshot pass, or the settings window on a nested panel screen) on an
// X display of the panel's size. The child builds its own simulated panel,
// so the plug-in in it runs below PANEL_ROOT behind the tool stand-ins like
// in any other run. Its output either goes straight to ours or its stdout
// is handed over line by line (for the host-side log window; diagnostics
// on stderr still go straight to ours); lines can be sent to its stdin.
class SimulatorChild : public QObject
{
    Q_OBJECT

public:
    enum class Output { Forwarded, Lines };

    // name: what the child does, for messages ("the screenshot pass").
    explicit SimulatorChild(const QString &name, QObject *parent = nullptr);
    ~SimulatorChild() override;

    // What every child needs to simulate the same panel as this process.
    static QStringList commonArguments(const SimulatorOptions &options, const QSize &size);
    // Ours, with the given X display; Qt's offscreen platform without one.
    static QProcessEnvironment environment(const QString &display);

    bool start(const QStringList &arguments, const QProcessEnvironment &environment, Output output,
               QString *error);
    // Blocks until the child ends and returns its status; ends it on Ctrl-C
    // (130) or after timeoutMs (1).
    int waitForEnd(int timeoutMs);
    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }
    void send(const QString &line);
    // Asks the child to end (SIGTERM, which it handles by cleaning up),
    // kills it if it does not.
    void stop();

signals:
    void lineReceived(const QString &line);
    // 0 for success; 1 when it crashed.
    void ended(int status);

private slots:
    void onFinished(int exitCode, QProcess::ExitStatus exitStatus);

private:
    void readLines(bool toTheEnd);

    QString m_name;
    QProcess m_process;
};

#endif // SIMULATORCHILD_H
