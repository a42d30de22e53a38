#ifndef FLASH_RONLY_H
#define FLASH_RONLY_H

#include "recordcopy.h"

#include <cstddef>

namespace EEInfoDetail {

// Factory facts of the unit; never written back. Fields named rawNN are not
// interpreted here: pages that need one of them give it a name.
#pragma pack(push, 1)
struct Flash_ROnly
{
    static constexpr int ImageBase = 256;
    static constexpr int Size = 256;

    quint16 raw0;
    quint16 raw2;
    quint16 raw4;           // byte 5 bit 3: WLAN adapter fitted
    quint8 hwOptions;       // bit 0: eth1 fitted, bit 5: 4G modem fitted
    quint16 raw7;
    quint8 raw9;
    quint16 raw10;
    quint16 raw12;
    quint16 raw14;
    quint8 raw16;
    quint8 raw17;
    quint8 raw18;
    quint16 raw19;
    quint8 raw21;
    quint8 raw22[3];
    quint16 raw25;
    quint16 raw27;
    quint32 raw29;          // bytes 30 and 31 carry the panel width
    quint32 raw33;
    quint32 raw37;
    quint32 raw41;
    quint32 raw45;
    quint32 raw49;
    quint8 raw53;
    quint8 raw54[16];
    quint8 raw70[8];
    quint8 raw78;
    quint8 raw79;
    quint8 raw80[45];
    quint8 raw125[123];
    quint32 raw248;
    quint32 raw252;

    enum Offset : int {
        WlanFittedByteOffset = 5,
        HwOptionsOffset = 6,
        WidthLowByteOffset = 30,    // width bits 0..7
        WidthHighByteOffset = 31,   // upper nibble: width bits 8..11
    };
    enum Bits : quint8 {
        WlanFittedBit = 0x08,
        HwOptionEth1 = 0x01,
        HwOption4G = 0x20,
    };

    // Horizontal resolution of the panel (12 bits): 800, 1024, 1280, 1920.
    int screenWidth() const;
    // Puts a width into bytes 30/31, keeping the low nibble of byte 31.
    void setScreenWidth(int width);
    bool hasWlan() const;
    bool hasEth1() const { return hwOptions & HwOptionEth1; }
    bool has4G() const { return hwOptions & HwOption4G; }

    // width = low | ((high >> 4) << 8)
    static int widthFromBytes(quint8 low, quint8 high);

    static const CopyUnit units[];
    static const int unitCount;
};
#pragma pack(pop)

static_assert(sizeof(Flash_ROnly) == Flash_ROnly::Size, "Flash_ROnly must stay packed");
static_assert(offsetof(Flash_ROnly, hwOptions) == Flash_ROnly::HwOptionsOffset, "layout");
static_assert(offsetof(Flash_ROnly, raw29) == 29, "layout");
static_assert(offsetof(Flash_ROnly, raw252) == 252, "layout");

} // namespace EEInfoDetail

#endif // FLASH_RONLY_H
