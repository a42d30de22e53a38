#ifndef SYSREG_H
#define SYSREG_H

#include "regbase.h"

// Indices of the system registers the settings pages use. The numbers and
// the storage behind them are a contract with the host application.
namespace SysRegIdx {
enum : unsigned {
    Language = 20,              // Settings::Language, 1 byte
    Eth0Ip = 60,                // 8 bytes from the record's address field
    Eth0Mask = 62,
    Eth0Gateway = 63,
    Eth0Disabled = 66,          // bit: 1 = switched off
    Eth0Dhcp = 67,              // bit: 1 = DHCP
    Eth1Ip = 69,
    Eth1Mask = 71,
    Eth1Gateway = 72,
    Eth1Disabled = 75,
    Eth1Dhcp = 76,
    DefaultAdapter = 78,        // adapter that carries the default route
    KeyBuzzer = 79,             // bit: key click on
    DateTimeLocked = 80,        // bit: non-zero locks the date dialog
    SettingsWindowOpen = 86,    // bit: 1 while the settings window is up
    WlanDisabled = 98,          // bit: 1 = WLAN switched off
    WlanState = 100,            // 2 connected, 4 wrong pass phrase
    WlanConnectRequest = 101,
    WlanSsid = 103,
    WlanPassphrase = 104,
    WlanIp = 106,               // four u16, first octet first
    WlanMac = 107,
    WlanMask = 108,
    WlanGateway = 109,
    WlanScanCount = 111,
    WlanScanRequest = 114,
    VpnRegion = 116,
    VpnSwitch = 117,
    VpnState = 118,
    VpnAddress = 119,
    Mobile4GSwitch = 122,
    Mobile4GSignal = 124,
    Mobile4GState = 125,
};
}

// The host's table of 136 system registers, each a fixed slice of one
// register file. One instance per process (instance()); the free functions
// below work on it.
class SysReg
{
public:
    static constexpr unsigned RegCount = 136;

    struct Row
    {
        quint16 index;
        quint16 area;
        quint32 offset;
        quint32 length;
    };
    static const Row *table();       // RegCount rows, row i is register i

    SysReg();
    static SysReg &instance();

    RegBase *loadReg(unsigned index);             // null past the table
    // The stored length is always the table's; `len` is ignored.
    int read(unsigned index, void *buf);          // 0 or -1
    int write(unsigned index, const void *buf, unsigned len);
    // write, then the register index to "/tmp/fifo_sysreg". -1 when either
    // failed; a failed message leaves the value stored.
    int writeNotify(unsigned index, const void *buf, unsigned len);
    bool isRegIdx(unsigned index, const RegBase *reg) const;

private:
    RegBase m_regs[RegCount];
};

RegBase *SysReg_LoadReg(unsigned index);
int SysReg_Read(unsigned index, void *buf);
int SysReg_Write(unsigned index, const void *buf, unsigned len);
int SysReg_WriteNotify(unsigned index, const void *buf, unsigned len);
// The register as a number: its first four stored bytes (fewer when the
// table stores fewer), little-endian; 0 when it cannot be read.
quint32 SysReg_ReadValue(unsigned index);
bool SysReg_IsRegIdx(unsigned index, RegBase *reg);

#endif // SYSREG_H
