#include "dfilesystem.h"

#include "panelroot.h"

#include <fcntl.h>
#include <unistd.h>

namespace {
constexpr mode_t CreateMode = 0644;
}

DFileSystem::DFileSystem(const char *path, int flags)
    : m_flags(flags)
{
    if (!path)
        return;
    const QByteArray real = PanelRoot::path(path);
    m_fd = ::open(real.constData(), flags, CreateMode);
    if (m_fd < 0 && (flags & O_CREAT))
        m_fd = ::open(real.constData(), flags | O_TRUNC, CreateMode);
}

DFileSystem::~DFileSystem()
{
    if (m_fd >= 0)
        ::close(m_fd);
}

int DFileSystem::recordLock(int whence, off_t offset, off_t length, bool take)
{
    if (!isOpen())
        return -1;
    if (::lseek(m_fd, offset, whence) < 0)
        return -1;
    if ((m_flags & O_ACCMODE) != O_RDONLY)
        return ::lockf(m_fd, take ? F_LOCK : F_ULOCK, length);
    // lockf only works on descriptors open for writing. A reader takes the
    // shared form of the same POSIX record lock over the same range, which
    // still waits for the host's lockf writers and holds them off.
    struct flock range = {};
    range.l_type = take ? F_RDLCK : F_UNLCK;
    range.l_whence = SEEK_CUR;
    range.l_start = 0;
    range.l_len = length;
    return ::fcntl(m_fd, take ? F_SETLKW : F_SETLK, &range);
}

int DFileSystem::lock(int whence, off_t offset, off_t length)
{
    return recordLock(whence, offset, length, true);
}

int DFileSystem::unlock(int whence, off_t offset, off_t length)
{
    return recordLock(whence, offset, length, false);
}

ssize_t DFileSystem::read(void *buf, size_t count)
{
    if (!isOpen() || !buf)
        return -1;
    return ::read(m_fd, buf, count);
}

ssize_t DFileSystem::write(const void *buf, size_t count)
{
    if (!isOpen() || !buf)
        return -1;
    return ::write(m_fd, buf, count);
}

off_t DFileSystem::seek2(off_t offset, int whence)
{
    if (!isOpen())
        return -1;
    return ::lseek(m_fd, offset, whence);
}

int DFileSystem::sync()
{
    if (!isOpen())
        return -1;
    return ::fdatasync(m_fd);
}
