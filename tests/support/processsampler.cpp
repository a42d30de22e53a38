#include "processsampler.h"

#include <QApplication>
#include <QFontDatabase>
#include <QTimer>
#include <QWidget>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <malloc.h>
#include <unistd.h>

namespace {

// Gaps appear where fonts were removed; this many free ids in a row end it.
constexpr int FontProbeRun = 256;

// Entries of a /proc folder, without "." and "..".
template <typename Visit>
int forEachEntry(const char *path, Visit visit)
{
    DIR *dir = opendir(path);
    if (!dir)
        return -1;
    int count = 0;
    while (dirent *entry = readdir(dir)) {
        if (entry->d_name[0] == '.')
            continue;
        ++count;
        visit(dirfd(dir), entry->d_name);
    }
    closedir(dir);
    return count;
}

// State letter and parent pid of a process, from /proc/<pid>/stat.
bool processState(const char *pid, char *state, long *parent)
{
    char path[64];
    std::snprintf(path, sizeof path, "/proc/%s/stat", pid);
    FILE *file = std::fopen(path, "re");
    if (!file)
        return false;
    char line[512] = {};
    const bool read = std::fgets(line, sizeof line, file) != nullptr;
    std::fclose(file);
    // The command name may hold blanks and parentheses: parse after the last ')'.
    const char *end = read ? std::strrchr(line, ')') : nullptr;
    return end && std::sscanf(end + 1, " %c %ld", state, parent) == 2;
}

} // namespace

const char *ProcessSample::name(Measure m)
{
    static const char *const names[MeasureCount] = {
        "heap", "resident", "fds", "threads", "children", "zombies",
        "toplevels", "appchildren", "fonts", "timers", "heapheld",
    };
    return names[m];
}

namespace ProcessSampler {

qint64 heapInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return qint64(info.uordblks + info.hblkhd);
}

qint64 heapHeld()
{
    const struct mallinfo2 info = mallinfo2();
    return qint64(info.arena + info.hblkhd);
}

qint64 residentBytes()
{
    FILE *file = std::fopen("/proc/self/statm", "re");
    if (!file)
        return -1;
    long size = 0;
    long resident = 0;
    const int read = std::fscanf(file, "%ld %ld", &size, &resident);
    std::fclose(file);
    return read == 2 ? qint64(resident) * sysconf(_SC_PAGESIZE) : -1;
}

int threadCount()
{
    return forEachEntry("/proc/self/task", [](int, const char *) {});
}

static int descriptorCount()
{
    // The folder's own descriptor is open while it is read.
    return forEachEntry("/proc/self/fd", [](int, const char *) {}) - 1;
}

QStringList openDescriptors()
{
    QStringList files;
    forEachEntry("/proc/self/fd", [&files](int dirFd, const char *name) {
        if (std::atoi(name) == dirFd)
            return;
        char target[4096] = {};
        const ssize_t length = readlinkat(dirFd, name, target, sizeof target - 1);
        files << QStringLiteral("%1 -> %2").arg(QLatin1String(name),
                                               length > 0 ? QString::fromLocal8Bit(target, int(length)) : QString());
    });
    return files;
}

void childProcesses(int *live, int *zombies)
{
    *live = 0;
    *zombies = 0;
    const long self = long(getpid());
    forEachEntry("/proc", [&](int, const char *name) {
        if (name[0] < '0' || name[0] > '9')
            return;
        char state = 0;
        long parent = 0;
        if (!processState(name, &state, &parent) || parent != self)
            return;
        if (state == 'Z')
            ++*zombies;
        else
            ++*live;
    });
}

int applicationFonts()
{
    int count = 0;
    for (int id = 0, freeRun = 0; freeRun < FontProbeRun; ++id) {
        if (QFontDatabase::applicationFontFamilies(id).isEmpty()) {
            ++freeRun;
        } else {
            ++count;
            freeRun = 0;
        }
    }
    return count;
}

int timersUnderTopLevels()
{
    int count = 0;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows)
        count += window->findChildren<QTimer *>().size();
    return count;
}

ProcessSample take()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ProcessSample s;
    s.values[ProcessSample::TopLevelWidgets] = QApplication::topLevelWidgets().size();
    s.values[ProcessSample::AppChildren] = qApp ? qApp->children().size() : 0;
    s.values[ProcessSample::AppFonts] = applicationFonts();
    s.values[ProcessSample::Timers] = timersUnderTopLevels();
    int live = 0;
    int zombies = 0;
    childProcesses(&live, &zombies);
    s.values[ProcessSample::Children] = live;
    s.values[ProcessSample::Zombies] = zombies;
    s.values[ProcessSample::Threads] = threadCount();
    s.values[ProcessSample::Descriptors] = descriptorCount();
    s.values[ProcessSample::ResidentBytes] = residentBytes();
    // Last, after the temporaries of the other readings are gone.
    s.values[ProcessSample::HeapBytes] = heapInUse();
    s.values[ProcessSample::HeapHeldBytes] = heapHeld();
    return s;
}

} // namespace ProcessSampler
