#ifndef PIDFILE_H
#define PIDFILE_H

#include <QString>

// The pid file a background client writes ("/var/run/udhcpc0.pid"). Its
// first line is taken as a decimal process id; the file may hold anything,
// so the number is only ever used through the command builder, which lets
// no id of 1 or less through.
namespace PidFile {

// Whether the file exists below the panel root.
bool exists(const QString &panelPath);

// The number at the start of the first line, or 0 when the file is
// missing, empty or starts with no number. Reads a few bytes only.
qint64 read(const QString &panelPath);

} // namespace PidFile

#endif // PIDFILE_H
