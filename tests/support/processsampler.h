#ifndef PROCESSSAMPLER_H
#define PROCESSSAMPLER_H

#include <QStringList>
#include <array>

// One look at what the test process holds: memory, kernel resources and the
// Qt objects a window may leave behind. Reading it allocates nothing that
// outlives the call, so that taking samples does not itself show as growth.
struct ProcessSample {
    enum Measure {
        HeapBytes,          // malloc'ed and in use (mallinfo2: arena + mmapped)
        ResidentBytes,      // /proc/self/statm
        Descriptors,        // /proc/self/fd
        Threads,            // /proc/self/task
        Children,           // live child processes
        Zombies,            // children exited and not reaped
        TopLevelWidgets,
        AppChildren,        // QObject children of the application object
        AppFonts,           // application font ids that name a family
        Timers,             // QTimer objects under the top-level widgets
        HeapHeldBytes,      // what malloc holds from the kernel, used or free
        MeasureCount
    };
    std::array<qint64, MeasureCount> values {};

    qint64 operator[](Measure m) const { return values[size_t(m)]; }
    static const char *name(Measure m);     // short, for tables and CSV
    static bool isBytes(Measure m) { return m == HeapBytes || m == ResidentBytes || m == HeapHeldBytes; }
};

namespace ProcessSampler {

// Posts pending deferred deletes first, so the sample sees the settled
// state rather than objects already on their way out.
ProcessSample take();

qint64 heapInUse();
qint64 heapHeld();
qint64 residentBytes();
int threadCount();
// Files behind the open descriptors, e.g. "3 -> /dev/null".
QStringList openDescriptors();
void childProcesses(int *live, int *zombies);
// Ids handed out by QFontDatabase::addApplicationFont that still name a
// family. The database has no list: ids are probed from 0 until a long run
// of free ones.
int applicationFonts();
int timersUnderTopLevels();

} // namespace ProcessSampler

#endif // PROCESSSAMPLER_H
