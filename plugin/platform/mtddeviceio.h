#ifndef MTDDEVICEIO_H
#define MTDDEVICEIO_H

#include <sys/types.h>

// The only door from the MTD copy code to the kernel. The copy code never
// calls open/ioctl/lseek/read/write/close itself but goes through an object
// of this class, so a development machine or a test can put an in-memory
// flash device with bad blocks behind it. The default implementation simply
// forwards to the system calls.
class MtdDeviceIo
{
public:
    MtdDeviceIo() = default;
    virtual ~MtdDeviceIo();
    MtdDeviceIo(const MtdDeviceIo &) = delete;
    MtdDeviceIo &operator=(const MtdDeviceIo &) = delete;

    virtual int open(const char *path, int flags);
    virtual int close(int fd);
    virtual int ioctl(int fd, unsigned long request, void *arg);
    virtual off_t lseek(int fd, off_t offset, int whence);
    virtual ssize_t read(int fd, void *buf, size_t count);
    virtual ssize_t write(int fd, const void *buf, size_t count);

    // The process-wide instance that talks to the real kernel.
    static MtdDeviceIo *system();
};

#endif // MTDDEVICEIO_H
