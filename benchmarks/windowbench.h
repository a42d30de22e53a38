#ifndef WINDOWBENCH_H
#define WINDOWBENCH_H

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

class QDialog;
class QWidget;
class SettingsInterface;

// What the window benchmarks share: the plug-in loaded from its library file
// as the host loads it, the wait for a window's first paint, and the facts
// of one opening that the baselines copy.
namespace WindowBench {

// Loads the plug-in (a loaded library is only looked up again). Null, and
// the loader's message in *error, when it cannot be loaded.
SettingsInterface *plugin(QString *error);

// Runs the event loop until `window` has been painted once, at most
// timeoutMs. False on timeout.
bool waitForFirstPaint(QWidget *window, int timeoutMs = 10000);

// Deletes a window and lets the objects it left for later deletion go.
void dispose(QWidget *window);

// Runs the event loop for `ms` of wall time without waking it otherwise.
void idle(int ms);

struct Opening
{
    int widgets = 0;                // child widgets of the opened window
    QList<QStringList> programs;    // the stand-ins' record of what it started
};

// Opens one window (create, show, first paint), notes what it holds and
// what it started, and deletes it again.
bool observeOpening(Opening *opening, QString *error);

// The recorded programs as runnable calls; false when one is not a stand-in.
bool runnablePrograms(const QList<QStringList> &recorded, QList<QStringList> *calls);

struct Memory
{
    qint64 residentKib = 0;     // VmRSS
    qint64 anonKib = 0;         // RssAnon: heap, stacks, anonymous maps
    qint64 fileKib = 0;         // RssFile: libraries, fonts, mapped files
    qint64 heapBytes = 0;       // malloc'ed and in use
};
Memory memoryNow();

// Resident KiB by what is mapped (a file's path, "[heap]", "[anonymous]"),
// from /proc/self/smaps.
QMap<QString, qint64> residentByMapping();
// Writes the mappings that grew most from `before` to now, a line each:
// KiB, tab, mapping. Nothing when `path` is empty.
void writeGrowth(const QString &path, const QMap<QString, qint64> &before, int lines = 8);

} // namespace WindowBench

#endif // WINDOWBENCH_H
