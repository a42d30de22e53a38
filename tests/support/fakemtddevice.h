#ifndef FAKEMTDDEVICE_H
#define FAKEMTDDEVICE_H

#include "mtddeviceio.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QSet>

// An in-memory NAND partition behind the MtdDeviceIo seam: blockCount erase
// blocks of eraseSize bytes, programmed in pages of writeSize bytes. It
// answers MEMGETINFO, MEMERASE and MEMGETBADBLOCK like the kernel does and
// records every erase, write and read so a test can see where data went.
//
// Flash rules played: erase fills a block with 0xFF; programming can only
// clear bits (the stored byte becomes old & new), so writing over data that
// was not erased shows up on read-back; a page write must start on a page
// boundary and cover whole pages unless strict pages are switched off.
// Bad blocks refuse MEMERASE and writes (EIO) and answer MEMGETBADBLOCK
// with 1. Fresh contents are 0xA5, standing for old data.
class FakeMtdDevice : public MtdDeviceIo
{
public:
    struct Op {
        quint64 offset;
        quint64 length;
        bool ok;
    };

    FakeMtdDevice(int blockCount, quint32 eraseSize, quint32 writeSize);

    int blockCount() const { return m_blockCount; }
    quint32 eraseSize() const { return m_eraseSize; }
    quint32 writeSize() const { return m_writeSize; }
    quint32 size() const { return quint32(m_data.size()); }

    void setBadBlock(int block, bool bad = true);
    void setGetInfoFails(bool fails) { m_getInfoFails = fails; }
    void setOpenFails(bool fails) { m_openFails = fails; }
    // Every byte programmed into this block is stored with its lowest bit
    // flipped, so read-back verification of that block must fail.
    void setCorruptBlock(int block) { m_corruptBlocks.insert(block); }
    // MEMGETBADBLOCK fails with -1 for this block and every later one.
    void setBadBlockQueryErrorFrom(int block) { m_queryErrorFrom = block; }
    void setStrictPages(bool strict) { m_strictPages = strict; }

    // Raw access that ignores the flash rules, to prepare or inspect a test.
    void setContents(quint64 offset, const QByteArray &bytes);
    QByteArray contents(quint64 offset, quint64 length) const;
    QByteArray blockContents(int block) const;

    QList<Op> erases() const { return m_erases; }        // every MEMERASE
    QList<Op> writes() const { return m_writes; }        // every write()
    QList<Op> reads() const { return m_reads; }          // every read()
    QList<qint64> badBlockQueries() const { return m_queries; }
    QList<quint64> goodErases() const;                   // offsets erased
    QList<QByteArray> openedPaths() const { return m_paths; }
    QList<int> openFlags() const { return m_flags; }
    int openDescriptors() const { return m_positions.size(); }
    void clearRecords();

    int open(const char *path, int flags) override;
    int close(int fd) override;
    int ioctl(int fd, unsigned long request, void *arg) override;
    off_t lseek(int fd, off_t offset, int whence) override;
    ssize_t read(int fd, void *buf, size_t count) override;
    ssize_t write(int fd, const void *buf, size_t count) override;

private:
    int getInfo(void *arg);
    int erase(void *arg);
    int badBlockQuery(void *arg);
    bool rangeTouchesBadBlock(quint64 offset, quint64 length) const;
    int fail(int error);

    int m_blockCount;
    quint32 m_eraseSize;
    quint32 m_writeSize;
    QByteArray m_data;
    QSet<int> m_badBlocks;
    QSet<int> m_corruptBlocks;
    int m_queryErrorFrom = -1;
    bool m_getInfoFails = false;
    bool m_openFails = false;
    bool m_strictPages = true;
    int m_nextFd = 1000;
    QHash<int, quint64> m_positions;    // open descriptor -> file position
    QList<Op> m_erases;
    QList<Op> m_writes;
    QList<Op> m_reads;
    QList<qint64> m_queries;
    QList<QByteArray> m_paths;
    QList<int> m_flags;
};

#endif // FAKEMTDDEVICE_H
