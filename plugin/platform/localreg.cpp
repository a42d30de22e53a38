#include "localreg.h"

#include "bitstring.h"
#include "dfifo.h"
#include "dfilesystem.h"
#include "registerfiles.h"

#include <QtEndian>

#include <cstring>
#include <fcntl.h>
#include <vector>

namespace {

struct AreaFile
{
    const char *path;
    int syncFlag;       // O_SYNC for the files that must survive power loss
};

const AreaFile Areas[LocalArea::Last] = {
    {"/tmp/mw.dat", 0},
    {"/tmp/mb.dat", 0},
    {"/hmi_data/fw.dat", O_SYNC},
    {"/hmi_data/fb.dat", O_SYNC},
    {"/tmp/smw.dat", 0},
    {"/tmp/smb.dat", 0},
    {"/hmi_data/sfw.dat", O_SYNC},
    {"/hmi_data/sfb.dat", O_SYNC},
    {"/hmi_data/rw.dat", 0},
};

const char LocalFifoPath[] = "/tmp/fifo_localreg";

// The area's file, opened once and kept (see RegisterFiles).
DFileSystem areaFile(const char *path, int flags)
{
    return DFileSystem(DFileSystem::Borrowed{}, RegisterFiles::descriptor(path, flags), flags);
}

bool validArea(unsigned area)
{
    return area >= LocalArea::First && area <= LocalArea::Last;
}

int readWords(const char *path, unsigned offset, unsigned length, unsigned char *buf)
{
    DFileSystem file = areaFile(path, O_RDONLY);
    if (!file.isOpen())
        return LocalReg::Failed;
    file.lock(SEEK_SET, offset, length);
    const ssize_t got = file.read(buf, length);
    file.unlock(SEEK_SET, offset, length);
    return got == ssize_t(length) ? LocalReg::Ok : LocalReg::Failed;
}

int readBits(const char *path, unsigned offset, unsigned length, unsigned char *buf)
{
    DFileSystem file = areaFile(path, O_RDONLY);
    if (!file.isOpen())
        return LocalReg::Failed;
    const unsigned first = offset / 8;
    const unsigned count = BitString::coveringBytes(offset, length);
    // The covering bytes may be one more than the caller's (length + 7) / 8.
    std::vector<unsigned char> bytes(count + 1, 0);
    file.lock(SEEK_SET, first, count);
    const ssize_t got = file.read(bytes.data(), count);
    BitString::shiftRight(bytes.data(), count, offset % 8);
    file.unlock(SEEK_SET, first, count);
    if (got != ssize_t(count))
        return LocalReg::Failed;
    std::memcpy(buf, bytes.data(), (length + 7) / 8);
    return LocalReg::Ok;
}

int writeWords(const char *path, int syncFlag, unsigned offset, unsigned length,
               const unsigned char *buf)
{
    DFileSystem file = areaFile(path, O_WRONLY | syncFlag);
    if (!file.isOpen())
        return LocalReg::Failed;
    file.lock(SEEK_SET, offset, length);
    const ssize_t put = file.write(buf, length);
    file.unlock(SEEK_SET, offset, length);
    return put == ssize_t(length) ? LocalReg::Ok : LocalReg::Failed;
}

int writeBits(const char *path, int syncFlag, unsigned offset, unsigned length,
              const unsigned char *buf)
{
    DFileSystem file = areaFile(path, O_RDWR | syncFlag);
    if (!file.isOpen())
        return LocalReg::Failed;
    const unsigned first = offset / 8;
    const unsigned count = BitString::coveringBytes(offset, length);
    std::vector<unsigned char> bytes(count + 1, 0);
    // The whole covering bytes stay locked from read to write, so the
    // host's bits that share them cannot change in between.
    file.lock(SEEK_SET, first, count);
    int result = LocalReg::Failed;
    if (file.read(bytes.data(), count) == ssize_t(count)) {
        BitString::placeBits(bytes.data(), offset % 8, buf, length);
        if (file.seek2(first, SEEK_SET) == off_t(first)
            && file.write(bytes.data(), count) == ssize_t(count))
            result = LocalReg::Ok;
    }
    file.unlock(SEEK_SET, first, count);
    return result;
}

} // namespace

namespace LocalReg {

const char *areaPath(unsigned area)
{
    return validArea(area) ? Areas[area - 1].path : nullptr;
}

bool isBitArea(unsigned area)
{
    return validArea(area) && area % 2 == 0;
}

} // namespace LocalReg

int ReadLocal(unsigned area, unsigned offset, unsigned length,
              unsigned char *buf, const char *unused)
{
    Q_UNUSED(unused)
    if (!buf || !validArea(area) || length > LocalReg::MaxLength)
        return LocalReg::Failed;
    const char *path = Areas[area - 1].path;
    if (LocalReg::isBitArea(area))
        return readBits(path, offset, length, buf);
    return readWords(path, offset, length, buf);
}

int WriteLocal(unsigned area, unsigned offset, unsigned length,
               const unsigned char *buf, const char *unused)
{
    Q_UNUSED(unused)
    if (!buf || !validArea(area) || length > LocalReg::MaxLength)
        return LocalReg::Failed;
    const AreaFile &file = Areas[area - 1];
    if (LocalReg::isBitArea(area))
        return writeBits(file.path, file.syncFlag, offset, length, buf);
    return writeWords(file.path, file.syncFlag, offset, length, buf);
}

int WriteLocal_Notify(unsigned area, unsigned offset, unsigned length,
                      const unsigned char *buf, const char *unused)
{
    const int result = WriteLocal(area, offset, length, buf, unused);
    if (result != LocalReg::Ok)
        return result;
    unsigned char message[12];
    qToLittleEndian<quint32>(area, message);
    qToLittleEndian<quint32>(offset, message + 4);
    qToLittleEndian<quint32>(length, message + 8);
    if (!DFifo::post(LocalFifoPath, message, sizeof(message)))
        return LocalReg::NotifyFailed;
    return LocalReg::Ok;
}
