#ifndef SIMULATORLOG_H
#define SIMULATORLOG_H

#include <QLoggingCategory>

// Diagnostics of the simulator itself (stderr). The host-side log of
// notifications and commands is a separate, user-facing stream.
// Filter with QT_LOGGING_RULES="tavro.settings.simulator.debug=true".
Q_DECLARE_LOGGING_CATEGORY(lcSimulator)

#endif // SIMULATORLOG_H
