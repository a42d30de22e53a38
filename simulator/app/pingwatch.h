#ifndef PINGWATCH_H
#define PINGWATCH_H

#include <QString>

// Whether the outer-network test's ping is still on its way. The page would
// read "ping.txt" 6 s after the start; a script wants the answer as soon as
// it is complete, and a file read while the ping still writes it (or before
// it wrote anything) would be a failure that did not happen.
namespace PingWatch {

// A process named "ping" working in dir: the pings the plug-in started
// there (the runtime's working directory), and nobody else's.
bool runningIn(const QString &dir);

} // namespace PingWatch

#endif // PINGWATCH_H
