#ifndef FLASH_WR_2_H
#define FLASH_WR_2_H

#include "recordcopy.h"

#include <QByteArray>
#include <cstddef>

namespace EEInfoDetail {

// Second read-write record: three 64-byte text blocks. Only the first is
// ours; the other two are carried through unchanged.
#pragma pack(push, 1)
struct Flash_WR_2
{
    static constexpr int ImageBase = 512;
    static constexpr int Size = 192;
    static constexpr int BlockSize = 64;

    // The firmware may fill all 64 bytes without a terminator; the record
    // code never adds one, so read it through qrCode().
    char qrCodeText[BlockSize];
    quint8 block64[BlockSize];
    quint8 block128[BlockSize];

    enum Offset : int {
        QrCodeTextOffset = 0,
        Block64Offset = 64,
        Block128Offset = 128,
    };

    // qrCodeText up to its first NUL, never past the block.
    QByteArray qrCode() const;

    static const CopyUnit units[];
    static const int unitCount;
};
#pragma pack(pop)

static_assert(sizeof(Flash_WR_2) == Flash_WR_2::Size, "Flash_WR_2 must stay packed");
static_assert(offsetof(Flash_WR_2, qrCodeText) == Flash_WR_2::QrCodeTextOffset, "layout");
static_assert(offsetof(Flash_WR_2, block64) == Flash_WR_2::Block64Offset, "layout");
static_assert(offsetof(Flash_WR_2, block128) == Flash_WR_2::Block128Offset, "layout");

} // namespace EEInfoDetail

#endif // FLASH_WR_2_H
