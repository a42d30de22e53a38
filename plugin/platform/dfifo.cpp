#include "dfifo.h"

#include "panelroot.h"
#include "sigpipeguard.h"

#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t FifoMode = 0777;

// Never through a symbolic link, and only a real FIFO: a message written
// into a plain file put in its place would reach nobody and fill the disk.
int openFifo(const QByteArray &path, int flags)
{
    const int fd = ::open(path.constData(), flags | O_NOFOLLOW | O_CLOEXEC);
    if (fd < 0)
        return -1;
    struct stat info = {};
    if (::fstat(fd, &info) != 0 || !S_ISFIFO(info.st_mode)) {
        ::close(fd);
        return -1;
    }
    return fd;
}

} // namespace

DFifo::DFifo(const char *path, int flags)
{
    if (!path)
        return;
    const QByteArray real = PanelRoot::path(path);
    m_fd = openFifo(real, flags);
    struct stat existing = {};
    if (m_fd >= 0 || ::lstat(real.constData(), &existing) == 0)
        return;
    if (::mkfifo(real.constData(), FifoMode) != 0) {
        perror("mkfifo");
        return;
    }
    m_fd = openFifo(real, flags);
}

DFifo::~DFifo()
{
    if (m_fd >= 0)
        ::close(m_fd);
}

ssize_t DFifo::read(void *buf, size_t count)
{
    if (m_fd < 0)
        return -1;
    return ::read(m_fd, buf, count);
}

ssize_t DFifo::write(const void *buf, size_t count)
{
    if (m_fd < 0)
        return -1;
    // The host may close its end between our open and this write.
    SigPipeGuard guard;
    return ::write(m_fd, buf, count);
}

bool DFifo::post(const char *path, const void *message, size_t size)
{
    DFifo fifo(path, O_WRONLY | O_NONBLOCK);
    return fifo.write(message, size) == ssize_t(size);
}
