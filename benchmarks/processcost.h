#ifndef PROCESSCOST_H
#define PROCESSCOST_H

#include <QByteArray>
#include <QList>
#include <QStringList>

// The bare ways of starting the panel's programs that the baselines use:
// what the plug-in's own calls would cost with nothing of the plug-in
// around them.
namespace ProcessCost {

// User and system CPU time of this whole process, all threads.
qint64 cpuMicroseconds();

// popen(path, "r"), one fread of up to `size` bytes, pclose: the bytes read,
// or -1 when the program could not be started.
int readFrom(const QByteArray &path, char *buf, int size);
// popen(path, "w"), one fwrite of `size` bytes, pclose: 0, or -1.
int writeTo(const QByteArray &path, const char *buf, int size);

// Runs one recorded tool call (element 0 the program's path, then its
// arguments) through /bin/sh as system() does, with its input from
// /dev/null and its output dropped, and waits for it. The exit status, or
// -1 when it could not be started.
int runCall(const QStringList &call);

// The program to start for a call the stand-ins recorded: firmware tools
// below the panel root, the others through PATH. Empty unless that is a
// stand-in (below the panel root or in standInDir).
QStringList resolvedCall(const QStringList &recorded, const QString &panelRoot, const QString &standInDir);

} // namespace ProcessCost

#endif // PROCESSCOST_H
