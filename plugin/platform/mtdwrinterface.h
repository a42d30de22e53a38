#ifndef MTDWRINTERFACE_H
#define MTDWRINTERFACE_H

#include <QtGlobal>

// Copies a buffer to, or from, the start of an MTD flash partition
// ("/dev/mtd0" .. "/dev/mtd3"), skipping bad erase blocks. Results are
// 0 for success and 1 for failure.
class MtdWRInterface
{
public:
    // Same layout as the kernel's struct mtd_info_user (MEMGETINFO answer);
    // checked against <mtd/mtd-user.h> at compile time.
    struct mtd_info_user {
        quint8 type;
        quint32 flags;
        quint32 size;        // whole partition, bytes
        quint32 erasesize;
        quint32 writesize;   // smallest programmable unit (NAND page)
        quint32 oobsize;
        quint64 padding;
    };

    // Same layout as the kernel's struct erase_info_user (MEMERASE argument);
    // also used for the list of good blocks a copy runs through.
    struct erase_info_user {
        quint32 start;
        quint32 length;
    };

    virtual int hmi_type() = 0;
    virtual int mtd_copy_write(unsigned char *data, unsigned int len, unsigned char device, int start) = 0;
    virtual int mtd_copy_read(unsigned char *buf, unsigned int len, unsigned char device, int start) = 0;
    virtual int mtd_read(int fd, mtd_info_user *info, unsigned char *buf, unsigned int len,
                         erase_info_user *blocks, int count) = 0;
    virtual int mtd_write(int fd, mtd_info_user *info, unsigned char *data, unsigned int len,
                          erase_info_user *blocks, int count) = 0;
    virtual ~MtdWRInterface();
};

#endif // MTDWRINTERFACE_H
