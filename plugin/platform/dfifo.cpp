#include "dfifo.h"

#include "panelroot.h"
#include "sigpipeguard.h"

#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
constexpr mode_t FifoMode = 0777;
}

DFifo::DFifo(const char *path, int flags)
{
    if (!path)
        return;
    const QByteArray real = PanelRoot::path(path);
    m_fd = ::open(real.constData(), flags);
    if (m_fd >= 0 || ::access(real.constData(), F_OK) == 0)
        return;
    if (::mkfifo(real.constData(), FifoMode) != 0) {
        perror("mkfifo");
        return;
    }
    m_fd = ::open(real.constData(), flags);
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
