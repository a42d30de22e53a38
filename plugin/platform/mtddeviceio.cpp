#include "mtddeviceio.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

MtdDeviceIo::~MtdDeviceIo() = default;

int MtdDeviceIo::open(const char *path, int flags)
{
    return ::open(path, flags);
}

int MtdDeviceIo::close(int fd)
{
    return ::close(fd);
}

int MtdDeviceIo::ioctl(int fd, unsigned long request, void *arg)
{
    return ::ioctl(fd, request, arg);
}

off_t MtdDeviceIo::lseek(int fd, off_t offset, int whence)
{
    return ::lseek(fd, offset, whence);
}

ssize_t MtdDeviceIo::read(int fd, void *buf, size_t count)
{
    return ::read(fd, buf, count);
}

ssize_t MtdDeviceIo::write(int fd, const void *buf, size_t count)
{
    return ::write(fd, buf, count);
}

MtdDeviceIo *MtdDeviceIo::system()
{
    // Stateless, so one shared object serves every caller.
    static MtdDeviceIo instance;
    return &instance;
}
