#ifndef COMMONDEVMTDWR_H
#define COMMONDEVMTDWR_H

#include "mtdwrinterface.h"

class MtdDeviceIo;

// MTD access for the common panel family: erase-and-write with read-back
// verification, and read, both skipping bad erase blocks. The kernel is
// reached only through an MtdDeviceIo, the real one unless another is set.
class CommonDevMtdWR : public MtdWRInterface
{
public:
    // Good blocks one copy can run through. The partitions handled are a
    // few megabytes of 64 KiB or 128 KiB blocks, so this leaves ample room;
    // a longer copy is refused instead of overrunning the stack list.
    static constexpr int BlockListCapacity = 512;

    explicit CommonDevMtdWR(MtdDeviceIo *io = nullptr);
    ~CommonDevMtdWR() override;
    CommonDevMtdWR(const CommonDevMtdWR &) = delete;
    CommonDevMtdWR &operator=(const CommonDevMtdWR &) = delete;

    int hmi_type() override;
    int mtd_copy_write(unsigned char *data, unsigned int len, unsigned char device, int start) override;
    int mtd_copy_read(unsigned char *buf, unsigned int len, unsigned char device, int start) override;
    int mtd_read(int fd, mtd_info_user *info, unsigned char *buf, unsigned int len,
                 erase_info_user *blocks, int count) override;
    int mtd_write(int fd, mtd_info_user *info, unsigned char *data, unsigned int len,
                  erase_info_user *blocks, int count) override;

    MtdDeviceIo *deviceIo() const { return m_io; }
    void setDeviceIo(MtdDeviceIo *io);   // nullptr selects the real kernel

private:
    int openDevice(unsigned char device, unsigned int len, mtd_info_user *info, int *fd, int *blocks);
    int eraseBlocks(int fd, const mtd_info_user &info, int start, int total, erase_info_user *list);
    int findGoodBlocks(int fd, const mtd_info_user &info, int start, int total, erase_info_user *list);
    bool verifyChunk(int fd, const unsigned char *data, quint32 length);
    void writePaddedUnit(int fd, const unsigned char *data, quint32 length, quint32 unit);

    MtdDeviceIo *m_io;
};

#endif // COMMONDEVMTDWR_H
