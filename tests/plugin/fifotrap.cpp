#include "fifotrap.h"

#include <atomic>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

std::atomic<int> trappedReader {-1};
std::atomic<dev_t> trappedDevice {0};
std::atomic<ino_t> trappedInode {0};
std::atomic<int> timesSprung {0};

bool isTrappedFifo(int fd)
{
    struct stat info = {};
    return ::fstat(fd, &info) == 0 && S_ISFIFO(info.st_mode) && info.st_dev == trappedDevice
        && info.st_ino == trappedInode;
}

} // namespace

bool FifoTrap::arm(int readerFd, const QByteArray &fifoPath)
{
    struct stat info = {};
    if (readerFd < 0 || ::stat(fifoPath.constData(), &info) != 0 || !S_ISFIFO(info.st_mode))
        return false;
    trappedDevice = info.st_dev;
    trappedInode = info.st_ino;
    timesSprung = 0;
    trappedReader = readerFd;
    return true;
}

void FifoTrap::disarm()
{
    trappedReader = -1;
}

int FifoTrap::sprung()
{
    return timesSprung;
}

extern "C" ssize_t write(int fd, const void *buf, size_t count)
{
    int reader = trappedReader.load();
    if (reader >= 0 && fd != reader && isTrappedFifo(fd)) {
        const int closing = reader;
        if (trappedReader.compare_exchange_strong(reader, -1)) {
            ::close(closing);
            ++timesSprung;
        }
    }
    return ::syscall(SYS_write, fd, buf, count);
}
