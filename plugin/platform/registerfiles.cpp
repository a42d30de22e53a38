#include "registerfiles.h"

#include "panelroot.h"

#include <QByteArray>
#include <QMutex>
#include <QMutexLocker>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Nine areas, each read with one set of flags and written with another.
constexpr int MaxKept = 24;

struct Kept
{
    QByteArray panelPath;               // as the caller names it; empty: unused
    int flags = 0;
    QByteArray realPath;                // with the panel root applied
    int fd = -1;
    dev_t device = 0;
    ino_t inode = 0;
};

Kept kept[MaxKept];
QMutex keptLock;

Kept *slotFor(const char *panelPath, int flags)
{
    Kept *empty = nullptr;
    for (Kept &slot : kept) {
        if (!slot.panelPath.isEmpty() && slot.flags == flags && slot.panelPath == panelPath)
            return &slot;
        if (slot.panelPath.isEmpty() && !empty)
            empty = &slot;
    }
    return empty;
}

// Opens without following a link and without waiting on a FIFO put in the
// file's place, and keeps the descriptor only for a regular file.
int openRegular(const QByteArray &path, int flags, struct stat *info)
{
    const int fd = ::open(path.constData(), flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        return -1;
    if (::fstat(fd, info) != 0 || !S_ISREG(info->st_mode)) {
        ::close(fd);
        return -1;
    }
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    return fd;
}

} // namespace

namespace RegisterFiles {

int descriptor(const char *panelPath, int flags)
{
    if (!panelPath || !*panelPath)
        return -1;
    const QByteArray real = PanelRoot::path(panelPath);
    struct stat now = {};
    if (::lstat(real.constData(), &now) != 0 || !S_ISREG(now.st_mode))
        return -1;

    QMutexLocker locker(&keptLock);
    Kept *slot = slotFor(panelPath, flags);
    if (!slot)
        return -1;
    if (slot->fd >= 0 && slot->realPath == real && slot->device == now.st_dev
        && slot->inode == now.st_ino)
        return slot->fd;

    struct stat opened = {};
    const int fd = openRegular(real, flags, &opened);
    if (fd < 0)
        return -1;
    // The old file is no longer reachable under this path: nobody who opens
    // the path can hold locks on it any more.
    if (slot->fd >= 0)
        ::close(slot->fd);
    slot->panelPath = panelPath;
    slot->flags = flags;
    slot->realPath = real;
    slot->fd = fd;
    slot->device = opened.st_dev;
    slot->inode = opened.st_ino;
    return fd;
}

int keptCount()
{
    QMutexLocker locker(&keptLock);
    int count = 0;
    for (const Kept &slot : kept)
        count += slot.fd >= 0 ? 1 : 0;
    return count;
}

} // namespace RegisterFiles
