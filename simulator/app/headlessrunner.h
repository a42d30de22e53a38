#ifndef HEADLESSRUNNER_H
#define HEADLESSRUNNER_H

#include "simulatoroptions.h"

#include <QSize>
#include <QString>

// Runs the screenshot passes of each panel size (a panel with two wired
// ports, then one with a single port), each in a child process of this
// program, on a private X server of exactly that size that the two share
// (falling back to Qt's offscreen platform, with a warning, when Xvfb is
// missing).
// The child's output goes straight to ours, so every PNG path it prints
// appears on our stdout.
class HeadlessRunner
{
public:
    explicit HeadlessRunner(const SimulatorOptions &options);

    int run();   // exit status: 0 when every pass succeeded

private:
    int runForSize(const QSize &size, bool useXvfb);
    QStringList childArguments(const QSize &size, int wiredPorts) const;

    SimulatorOptions m_options;
};

#endif // HEADLESSRUNNER_H
