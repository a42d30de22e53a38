#include "dfilesystem.h"

#include "panelroot.h"

#include <cerrno>
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
    // Programs the plug-in starts have no business with its files.
    m_fd = ::open(real.constData(), flags | O_CLOEXEC, CreateMode);
    if (m_fd < 0 && (flags & O_CREAT))
        m_fd = ::open(real.constData(), flags | O_TRUNC | O_CLOEXEC, CreateMode);
}

DFileSystem::DFileSystem(Borrowed, int fd, int flags)
    : m_fd(fd)
    , m_flags(flags)
    , m_owned(false)
{
}

DFileSystem::~DFileSystem()
{
    if (m_owned && m_fd >= 0)
        ::close(m_fd);
}

int DFileSystem::recordLock(int whence, off_t offset, off_t length, bool take)
{
    if (!isOpen())
        return -1;
    const off_t start = ::lseek(m_fd, offset, whence);
    if (start < 0)
        return -1;
    struct flock range = {};
    range.l_type = !take ? F_UNLCK : (m_flags & O_ACCMODE) == O_RDONLY ? F_RDLCK : F_WRLCK;
    range.l_whence = SEEK_SET;
    range.l_start = start;
    range.l_len = length;
    range.l_pid = 0;
    int result;
    do {
        result = ::fcntl(m_fd, take ? F_OFD_SETLKW : F_OFD_SETLK, &range);
    } while (result != 0 && errno == EINTR);
    // Kernels before 3.15 know only process-owned record locks.
    if (result != 0 && errno == EINVAL) {
        do {
            result = ::fcntl(m_fd, take ? F_SETLKW : F_SETLK, &range);
        } while (result != 0 && errno == EINTR);
    }
    return result;
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
