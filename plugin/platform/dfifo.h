#ifndef DFIFO_H
#define DFIFO_H

#include <sys/types.h>

// One end of a named FIFO shared with the host application. The path is a
// panel path ("/tmp/fifo_sysreg"); the panel root is applied here.
class DFifo
{
public:
    // Opens with `flags`; a FIFO that does not exist yet is created (0777)
    // and opened again. When the path exists but the open fails (a
    // non-blocking writer without a reader) the end stays closed; so it does
    // when the path is a symbolic link or anything but a FIFO.
    DFifo(const char *path, int flags);
    ~DFifo();
    DFifo(const DFifo &) = delete;
    DFifo &operator=(const DFifo &) = delete;

    bool isOpen() const { return m_fd >= 0; }
    ssize_t read(void *buf, size_t count);
    ssize_t write(const void *buf, size_t count);

    // Sends one message through a fresh non-blocking writer and closes it:
    // the host is never waited for. True when the whole message went out.
    static bool post(const char *path, const void *message, size_t size);

private:
    int m_fd = -1;
};

#endif // DFIFO_H
