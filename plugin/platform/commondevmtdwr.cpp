#include "commondevmtdwr.h"

#include "mtddeviceio.h"
#include "panelroot.h"
#include "platformlog.h"

#include <mtd/mtd-user.h>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

namespace {

const char *const kDevices[] = {"/dev/mtd0", "/dev/mtd1", "/dev/mtd2", "/dev/mtd3"};
const unsigned kDeviceCount = sizeof(kDevices) / sizeof(kDevices[0]);

// Type whose write unit is a whole erase block and whose chunks are verified
// in one piece. No panel family built here reports it, but the rule stays so
// such a family only needs to override hmi_type().
const int kBlockUnitType = 5;

// Request numbers taken here, at namespace scope, so the kernel header's
// "struct mtd_info_user" means the kernel's structure and not the nested one
// that class scope would find.
const unsigned long kMemGetInfo = MEMGETINFO;
const unsigned long kMemErase = MEMERASE;
const unsigned long kMemGetBadBlock = MEMGETBADBLOCK;

static_assert(sizeof(qint64) == sizeof(__kernel_loff_t), "MEMGETBADBLOCK takes a 64-bit offset");

} // namespace

CommonDevMtdWR::CommonDevMtdWR(MtdDeviceIo *io)
    : m_io(io ? io : MtdDeviceIo::system())
{
}

CommonDevMtdWR::~CommonDevMtdWR() = default;

void CommonDevMtdWR::setDeviceIo(MtdDeviceIo *io)
{
    m_io = io ? io : MtdDeviceIo::system();
}

int CommonDevMtdWR::hmi_type()
{
    return 0;
}

// Opens the partition, asks the kernel for its geometry and works out how
// many erase blocks len bytes occupy. Returns 0, or 1 with nothing to do.
int CommonDevMtdWR::openDevice(unsigned char device, unsigned int len, mtd_info_user *info, int *fd,
                               int *blocks)
{
    if (device >= kDeviceCount) {
        qCWarning(lcPlatform, "MTD device index %u is out of range 0..%u", unsigned(device), kDeviceCount - 1);
        return 1;
    }
    const QByteArray path = PanelRoot::path(kDevices[device]);
    *fd = m_io->open(path.constData(), O_RDWR | O_SYNC);
    if (m_io->ioctl(*fd, kMemGetInfo, info) != 0) {
        qCDebug(lcPlatform, "MEMGETINFO on %s: %s", path.constData(), std::strerror(errno));
        printf("This doesn't seem to be a valid MTD flash device!\n");
        // The descriptor is deliberately left open on this path: that is the
        // established behaviour of this family, and changing it is a
        // separate decision.
        return 1;
    }
    if (info->erasesize == 0) {
        qCWarning(lcPlatform, "%s reports an erase size of 0", path.constData());
        m_io->close(*fd);
        return 1;
    }
    const quint64 needed = (quint64(len) + info->erasesize - 1) / info->erasesize;
    printf("blocks=%d,length=%d\n", int(needed), int(len));
    if (needed > quint64(BlockListCapacity)) {
        qCWarning(lcPlatform, "MTD copy of %u bytes needs %llu erase blocks, more than the %d the block list holds",
                  len, static_cast<unsigned long long>(needed), BlockListCapacity);
        m_io->close(*fd);
        return 1;
    }
    *blocks = int(needed);
    return 0;
}

// Erases total good blocks from start on, listing each one; blocks the
// kernel refuses to erase are bad and skipped. 1 when the device ends first.
int CommonDevMtdWR::eraseBlocks(int fd, const mtd_info_user &info, int start, int total,
                                erase_info_user *list)
{
    quint64 offset = quint32(start);
    int done = 0;
    while (done < total) {
        if (offset >= info.size) {
            printf("\rErasing blocks: %d/%d (100%%)\n", done, total);
            return 1;
        }
        erase_info_user erase = {quint32(offset), info.erasesize};
        if (m_io->ioctl(fd, kMemErase, &erase) == 0) {
            list[done] = erase;
            ++done;
            printf("Erasing blocks: %d/%d (%d%%)\n", done, total, done * 100 / total);
        } else {
            qCDebug(lcPlatform, "skipping bad erase block at 0x%llx", static_cast<unsigned long long>(offset));
        }
        offset += info.erasesize;
    }
    printf("\rErasing blocks: %d/%d (100%%)\n", done, total);
    return 0;
}

// Lists up to total good blocks from start on; returns how many were found.
int CommonDevMtdWR::findGoodBlocks(int fd, const mtd_info_user &info, int start, int total,
                                   erase_info_user *list)
{
    quint64 offset = quint32(start);
    int found = 0;
    while (found < total && offset < info.size) {
        qint64 position = qint64(offset);
        const int bad = m_io->ioctl(fd, kMemGetBadBlock, &position);
        if (bad < 0)
            break;
        if (bad == 0) {
            list[found] = {quint32(offset), info.erasesize};
            ++found;
        }
        offset += info.erasesize;
    }
    return found;
}

int CommonDevMtdWR::mtd_copy_write(unsigned char *data, unsigned int len, unsigned char device, int start)
{
    mtd_info_user info = {};
    int fd = -1;
    int blocks = 0;
    if (openDevice(device, len, &info, &fd, &blocks) != 0)
        return 1;

    erase_info_user list[BlockListCapacity];
    if (eraseBlocks(fd, info, start, blocks, list) != 0) {
        m_io->close(fd);
        return 1;
    }
    const int result = mtd_write(fd, &info, data, len, list, blocks);
    m_io->close(fd);
    return result;
}

int CommonDevMtdWR::mtd_copy_read(unsigned char *buf, unsigned int len, unsigned char device, int start)
{
    mtd_info_user info = {};
    int fd = -1;
    int blocks = 0;
    if (openDevice(device, len, &info, &fd, &blocks) != 0)
        return 1;

    erase_info_user list[BlockListCapacity];
    if (findGoodBlocks(fd, info, start, blocks, list) < blocks) {
        qCDebug(lcPlatform, "too few good erase blocks for %u bytes", len);
        m_io->close(fd);
        return 1;
    }
    // Through the virtual so that a family with its own read path gets it;
    // for this class it is the plain chunked read.
    const int result = mtd_read(fd, &info, buf, len, list, blocks);
    m_io->close(fd);
    return result;
}

int CommonDevMtdWR::mtd_read(int fd, mtd_info_user *info, unsigned char *buf, unsigned int len,
                             erase_info_user *blocks, int count)
{
    Q_UNUSED(info);
    quint32 done = 0;
    for (int i = 0; i < count && done < len; ++i) {
        const quint32 chunk = qMin<quint32>(len - done, blocks[i].length);
        m_io->lseek(fd, off_t(blocks[i].start), SEEK_SET);
        // Short reads are not retried: the block list came from the kernel's
        // own geometry, so a short read means the flash itself failed.
        m_io->read(fd, buf + done, chunk);
        done += chunk;
    }
    return 0;
}

int CommonDevMtdWR::mtd_write(int fd, mtd_info_user *info, unsigned char *data, unsigned int len,
                              erase_info_user *blocks, int count)
{
    quint32 unit = info->writesize;
    if (hmi_type() == kBlockUnitType)
        unit = count > 0 ? blocks[0].length : 0;
    if (unit == 0) {
        qCWarning(lcPlatform, "MTD write unit of 0 bytes; nothing written");
        return 1;
    }

    const quint32 whole = unit * (len / unit);
    quint32 written = 0;
    // Where a copy shorter than one unit puts its padded unit: the first
    // erased block, not wherever the descriptor happened to point.
    if (count > 0)
        m_io->lseek(fd, off_t(blocks[0].start), SEEK_SET);
    int next = 0;
    bool blockFilled = false;
    for (; next < count && written < whole; ++next) {
        const quint32 chunk = qMin<quint32>(whole - written, blocks[next].length);
        m_io->lseek(fd, off_t(blocks[next].start), SEEK_SET);
        m_io->write(fd, data + written, chunk);
        m_io->lseek(fd, off_t(blocks[next].start), SEEK_SET);
        if (!verifyChunk(fd, data + written, chunk)) {
            printf("Verify Error\r");
            return 1;
        }
        written += chunk;
        blockFilled = chunk == blocks[next].length;
    }
    // NAND pages are programmed whole: the rest goes out as one unit filled
    // up with zeros, right after the verified part. When that part ended
    // with its block, "right after" is the next good block: the block that
    // follows on the chip may be a bad one, skipped by the erase.
    if (len % unit != 0) {
        if (blockFilled && next < count)
            m_io->lseek(fd, off_t(blocks[next].start), SEEK_SET);
        writePaddedUnit(fd, data + whole, len - whole, unit);
    }
    return 0;
}

// Reads back what was just written at the current position and compares.
// A short read counts as a mismatch.
bool CommonDevMtdWR::verifyChunk(int fd, const unsigned char *data, quint32 length)
{
    if (length == 0)
        return true;
    if (hmi_type() == kBlockUnitType) {
        std::vector<unsigned char> back(length, 0);
        const ssize_t got = m_io->read(fd, back.data(), length);
        return got == ssize_t(length) && std::memcmp(back.data(), data, length) == 0;
    }
    // Four bytes at a time keeps the read-back buffer off the heap whatever
    // the block size.
    for (quint32 i = 0; i < length; i += 4) {
        unsigned char group[4];
        const quint32 n = qMin<quint32>(4, length - i);
        if (m_io->read(fd, group, n) != ssize_t(n) || std::memcmp(group, data + i, n) != 0)
            return false;
    }
    return true;
}

void CommonDevMtdWR::writePaddedUnit(int fd, const unsigned char *data, quint32 length, quint32 unit)
{
    std::vector<unsigned char> padded(unit, 0);
    std::memcpy(padded.data(), data, qMin(length, unit));
    m_io->write(fd, padded.data(), unit);
}
