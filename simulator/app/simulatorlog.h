#ifndef SIMULATORLOG_H
#define SIMULATORLOG_H

#include <QLoggingCategory>
#include <QString>

// Diagnostics of the simulator itself (stderr). The host-side log of
// notifications and commands is a separate, user-facing stream.
// Filter with QT_LOGGING_RULES="tavro.settings.simulator.debug=true".
Q_DECLARE_LOGGING_CATEGORY(lcSimulator)

// Writes one line of the host-side log to stdout at once: a test, a pipe
// or the parent of a nested-screen child reads it as it comes.
void printLogLine(const QString &line);

#endif // SIMULATORLOG_H
