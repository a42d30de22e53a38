#include "fakemtddevice.h"

#include <mtd/mtd-user.h>
#include <sys/ioctl.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

// Taken at namespace scope so the header's "struct ..." names the kernel's
// structures.
const unsigned long kMemGetInfo = MEMGETINFO;
const unsigned long kMemErase = MEMERASE;
const unsigned long kMemGetBadBlock = MEMGETBADBLOCK;

const char kOldData = char(0xA5);

} // namespace

FakeMtdDevice::FakeMtdDevice(int blockCount, quint32 eraseSize, quint32 writeSize)
    : m_blockCount(blockCount)
    , m_eraseSize(eraseSize)
    , m_writeSize(writeSize)
    , m_data(int(quint64(blockCount) * eraseSize), kOldData)
{
}

void FakeMtdDevice::setBadBlock(int block, bool bad)
{
    if (bad)
        m_badBlocks.insert(block);
    else
        m_badBlocks.remove(block);
}

void FakeMtdDevice::setContents(quint64 offset, const QByteArray &bytes)
{
    Q_ASSERT(offset + quint64(bytes.size()) <= quint64(m_data.size()));
    std::memcpy(m_data.data() + offset, bytes.constData(), size_t(bytes.size()));
}

QByteArray FakeMtdDevice::contents(quint64 offset, quint64 length) const
{
    return m_data.mid(int(offset), int(length));
}

QByteArray FakeMtdDevice::blockContents(int block) const
{
    return contents(quint64(block) * m_eraseSize, m_eraseSize);
}

QList<quint64> FakeMtdDevice::goodErases() const
{
    QList<quint64> offsets;
    for (const Op &op : m_erases) {
        if (op.ok)
            offsets << op.offset;
    }
    return offsets;
}

void FakeMtdDevice::clearRecords()
{
    m_erases.clear();
    m_writes.clear();
    m_reads.clear();
    m_queries.clear();
    m_paths.clear();
    m_flags.clear();
}

int FakeMtdDevice::fail(int error)
{
    errno = error;
    return -1;
}

bool FakeMtdDevice::rangeTouchesBadBlock(quint64 offset, quint64 length) const
{
    if (length == 0)
        return false;
    const quint64 first = offset / m_eraseSize;
    const quint64 last = (offset + length - 1) / m_eraseSize;
    for (quint64 block = first; block <= last; ++block) {
        if (m_badBlocks.contains(int(block)))
            return true;
    }
    return false;
}

int FakeMtdDevice::open(const char *path, int flags)
{
    m_paths << QByteArray(path);
    m_flags << flags;
    if (m_openFails)
        return fail(ENOENT);
    const int fd = m_nextFd++;
    m_positions.insert(fd, 0);
    return fd;
}

int FakeMtdDevice::close(int fd)
{
    if (!m_positions.remove(fd))
        return fail(EBADF);
    return 0;
}

int FakeMtdDevice::ioctl(int fd, unsigned long request, void *arg)
{
    if (!m_positions.contains(fd))
        return fail(EBADF);
    if (request == kMemGetInfo)
        return getInfo(arg);
    if (request == kMemErase)
        return erase(arg);
    if (request == kMemGetBadBlock)
        return badBlockQuery(arg);
    return fail(ENOTTY);
}

int FakeMtdDevice::getInfo(void *arg)
{
    if (m_getInfoFails)
        return fail(ENOTTY);
    struct mtd_info_user info;
    std::memset(&info, 0, sizeof info);
    info.type = MTD_NANDFLASH;
    info.flags = MTD_WRITEABLE;
    info.size = size();
    info.erasesize = m_eraseSize;
    info.writesize = m_writeSize;
    info.oobsize = 64;
    std::memcpy(arg, &info, sizeof info);
    return 0;
}

int FakeMtdDevice::erase(void *arg)
{
    struct erase_info_user request;
    std::memcpy(&request, arg, sizeof request);
    const quint64 start = request.start;
    const quint64 length = request.length;
    const bool aligned = length > 0 && start % m_eraseSize == 0 && length % m_eraseSize == 0;
    if (!aligned || start + length > size()) {
        m_erases << Op{start, length, false};
        return fail(EINVAL);
    }
    if (rangeTouchesBadBlock(start, length)) {
        m_erases << Op{start, length, false};
        return fail(EIO);
    }
    std::memset(m_data.data() + start, 0xFF, size_t(length));
    m_erases << Op{start, length, true};
    return 0;
}

int FakeMtdDevice::badBlockQuery(void *arg)
{
    __kernel_loff_t offset = 0;
    std::memcpy(&offset, arg, sizeof offset);
    m_queries << qint64(offset);
    if (offset < 0 || quint64(offset) >= size())
        return fail(EINVAL);
    const int block = int(quint64(offset) / m_eraseSize);
    if (m_queryErrorFrom >= 0 && block >= m_queryErrorFrom)
        return fail(EIO);
    return m_badBlocks.contains(block) ? 1 : 0;
}

off_t FakeMtdDevice::lseek(int fd, off_t offset, int whence)
{
    auto it = m_positions.find(fd);
    if (it == m_positions.end())
        return fail(EBADF);
    qint64 base = 0;
    if (whence == SEEK_CUR)
        base = qint64(it.value());
    else if (whence == SEEK_END)
        base = qint64(size());
    else if (whence != SEEK_SET)
        return fail(EINVAL);
    const qint64 target = base + qint64(offset);
    if (target < 0)
        return fail(EINVAL);
    it.value() = quint64(target);
    return off_t(target);
}

ssize_t FakeMtdDevice::read(int fd, void *buf, size_t count)
{
    auto it = m_positions.find(fd);
    if (it == m_positions.end())
        return fail(EBADF);
    const quint64 position = it.value();
    m_reads << Op{position, count, true};
    if (position >= size())
        return 0;
    const quint64 n = qMin<quint64>(count, size() - position);
    std::memcpy(buf, m_data.constData() + position, size_t(n));
    it.value() = position + n;
    return ssize_t(n);
}

ssize_t FakeMtdDevice::write(int fd, const void *buf, size_t count)
{
    auto it = m_positions.find(fd);
    if (it == m_positions.end())
        return fail(EBADF);
    const quint64 position = it.value();
    const bool whole = position % m_writeSize == 0 && count % m_writeSize == 0;
    if ((m_strictPages && !whole) || position + count > size()) {
        m_writes << Op{position, count, false};
        return fail(EINVAL);
    }
    if (rangeTouchesBadBlock(position, count)) {
        m_writes << Op{position, count, false};
        return fail(EIO);
    }
    const unsigned char *in = static_cast<const unsigned char *>(buf);
    for (quint64 i = 0; i < count; ++i) {
        const quint64 at = position + i;
        unsigned char stored = static_cast<unsigned char>(m_data.at(int(at))) & in[i];
        if (m_corruptBlocks.contains(int(at / m_eraseSize)))
            stored ^= 0x01;
        m_data[int(at)] = char(stored);
    }
    m_writes << Op{position, count, true};
    it.value() = position + count;
    return ssize_t(count);
}
