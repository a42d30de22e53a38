#ifndef FLASH_WR_1_H
#define FLASH_WR_1_H

#include "recordcopy.h"

#include <cstddef>

namespace EEInfoDetail {

// Read-write record at the start of the device image: display settings and
// the addresses of the wired and wireless adapters. Fields named rawNN are
// owned by other programs of the panel; they are carried through unchanged
// so that writing this record back never disturbs them. IPv4 values hold the
// first dotted octet in the lowest byte (a.b.c.d -> a | b<<8 | c<<16 | d<<24).
//
// The layout mirrors the image byte for byte, so a pointer to a field may be
// handed to code that stores the bytes that follow it too (the address
// registers store eight bytes from the start of an IP field). Packed members
// cannot bind to references: copy a field into a local before passing it on.
#pragma pack(push, 1)
struct Flash_WR_1
{
    static constexpr int ImageBase = 0;
    static constexpr int Size = 187;

    quint32 raw0;
    quint16 raw4;
    quint16 raw6;
    quint16 raw8;
    quint8 raw10[16];
    quint16 raw26;
    quint8 raw28;
    quint16 brightness;     // device scale, 0 = backlight off
    quint8 raw31;
    quint8 eth0Mac[6];      // display order
    quint8 raw38[3];
    quint32 eth0Ip;
    quint32 eth0Gateway;
    quint32 eth0Mask;
    quint16 raw53;
    quint16 raw55;
    quint32 raw57;
    quint8 raw61[16];
    quint8 raw77[40];
    quint32 raw117;
    quint32 raw121;
    quint16 raw125;
    quint16 raw127;
    quint32 wlanIp;
    quint32 wlanGateway;
    quint32 wlanMask;
    quint8 raw141[16];
    quint8 closeButtonHidden;   // non-zero hides the window's close button
    quint8 raw158[6];
    quint8 raw164;
    quint8 eth1Mac[6];
    quint8 raw171[3];
    quint32 eth1Ip;
    quint32 eth1Gateway;
    quint32 eth1Mask;
    quint8 raw186;

    // Byte offsets of the named fields inside the record.
    enum Offset : int {
        BrightnessOffset = 29,
        Eth0MacOffset = 32,
        Eth0IpOffset = 41,
        Eth0GatewayOffset = 45,
        Eth0MaskOffset = 49,
        WlanIpOffset = 129,
        WlanGatewayOffset = 133,
        WlanMaskOffset = 137,
        CloseButtonHiddenOffset = 157,
        Eth1MacOffset = 165,
        Eth1IpOffset = 174,
        Eth1GatewayOffset = 178,
        Eth1MaskOffset = 182,
    };

    // The firmware's own pieces of the record, in copy order.
    static const CopyUnit units[];
    static const int unitCount;
};
#pragma pack(pop)

static_assert(sizeof(Flash_WR_1) == Flash_WR_1::Size, "Flash_WR_1 must stay packed");
static_assert(offsetof(Flash_WR_1, brightness) == Flash_WR_1::BrightnessOffset, "layout");
static_assert(offsetof(Flash_WR_1, eth0Mac) == Flash_WR_1::Eth0MacOffset, "layout");
static_assert(offsetof(Flash_WR_1, eth0Ip) == Flash_WR_1::Eth0IpOffset, "layout");
static_assert(offsetof(Flash_WR_1, eth0Gateway) == Flash_WR_1::Eth0GatewayOffset, "layout");
static_assert(offsetof(Flash_WR_1, eth0Mask) == Flash_WR_1::Eth0MaskOffset, "layout");
static_assert(offsetof(Flash_WR_1, wlanIp) == Flash_WR_1::WlanIpOffset, "layout");
static_assert(offsetof(Flash_WR_1, wlanGateway) == Flash_WR_1::WlanGatewayOffset, "layout");
static_assert(offsetof(Flash_WR_1, wlanMask) == Flash_WR_1::WlanMaskOffset, "layout");
static_assert(offsetof(Flash_WR_1, closeButtonHidden) == Flash_WR_1::CloseButtonHiddenOffset, "layout");
static_assert(offsetof(Flash_WR_1, eth1Mac) == Flash_WR_1::Eth1MacOffset, "layout");
static_assert(offsetof(Flash_WR_1, eth1Ip) == Flash_WR_1::Eth1IpOffset, "layout");
static_assert(offsetof(Flash_WR_1, eth1Gateway) == Flash_WR_1::Eth1GatewayOffset, "layout");
static_assert(offsetof(Flash_WR_1, eth1Mask) == Flash_WR_1::Eth1MaskOffset, "layout");

} // namespace EEInfoDetail

#endif // FLASH_WR_1_H
