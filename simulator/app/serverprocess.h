#ifndef SERVERPROCESS_H
#define SERVERPROCESS_H

#include <QProcess>

// A QProcess for a helper server (an X server) that the simulator stops
// itself, in order: the server gets a process group of its own, so that a
// Ctrl-C in the terminal reaches only the simulator, which then ends its
// clients first and the server last (a client whose X server vanishes
// exits at once, leaving its panel folder behind). It is also told to end
// when the simulator dies without cleaning up (SIGKILL), instead of
// lingering on a display nobody owns.
class ServerProcess : public QProcess
{
    Q_OBJECT

public:
    using QProcess::QProcess;

protected:
    void setupChildProcess() override;
};

#endif // SERVERPROCESS_H
