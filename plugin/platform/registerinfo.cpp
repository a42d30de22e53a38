#include "registerinfo.h"

#include <cstring>

namespace {

using Direction = RegisterInfo::Direction;
using Writer = RegisterInfo::Writer;

// Index and name from one token, so that a description can never sit under
// another register's name.
#define NAMED(enumerator) SysRegIdx::enumerator, #enumerator

const RegisterInfo::Entry Described[] = {
    {NAMED(Language), Direction::Both, Writer::Both,
     "host (its language); plug-in: settings window's language list",
     "UI language id: 0 Chinese, 1 English, others from lange.json", "yes"},
    {NAMED(Eth0Ip), Direction::PluginToHost, Writer::Plugin,
     "plug-in: network page, eth0 tab (typed or leased)",
     "eth0 IPv4 address as applied; bytes 4-7 follow from the device record", "no"},
    {NAMED(Eth0Mask), Direction::PluginToHost, Writer::Plugin,
     "plug-in: network page, eth0 tab (typed or leased)",
     "eth0 subnet mask as applied; bytes 4-7 follow from the device record", "no"},
    {NAMED(Eth0Gateway), Direction::PluginToHost, Writer::Plugin,
     "plug-in: network page, eth0 tab (typed or leased)",
     "eth0 gateway as applied; bytes 4-7 follow from the device record", "no"},
    {NAMED(Eth0Disabled), Direction::PluginToHost, Writer::Plugin,
     "plug-in: network page, eth0 tab's switch",
     "eth0 switched off (1) or on (0)", "yes"},
    {NAMED(Eth0Dhcp), Direction::PluginToHost, Writer::Plugin,
     "plug-in: network page, eth0 tab's mode box",
     "eth0 takes its address by DHCP (1) or static (0)", "yes"},
    {NAMED(Eth1Ip), Direction::PluginToHost, Writer::Plugin,
     "plug-in: network page, eth1 tab (typed or leased)",
     "eth1 IPv4 address as applied; bytes 4-7 follow from the device record", "no"},
    {NAMED(Eth1Mask), Direction::PluginToHost, Writer::Plugin,
     "plug-in: network page, eth1 tab (typed or leased)",
     "eth1 subnet mask as applied; bytes 4-7 follow from the device record", "no"},
    {NAMED(Eth1Gateway), Direction::PluginToHost, Writer::Plugin,
     "plug-in: network page, eth1 tab (typed or leased)",
     "eth1 gateway as applied; bytes 4-7 follow from the device record", "no"},
    {NAMED(Eth1Disabled), Direction::PluginToHost, Writer::Plugin,
     "plug-in: network page, eth1 tab's switch",
     "eth1 switched off (1) or on (0)", "yes"},
    {NAMED(Eth1Dhcp), Direction::PluginToHost, Writer::Plugin,
     "plug-in: network page, eth1 tab's mode box",
     "eth1 takes its address by DHCP (1) or static (0)", "yes"},
    {NAMED(DefaultAdapter), Direction::PluginToHost, Writer::Plugin,
     "plug-in: network page's default-network boxes and gateway button, WLAN and 4G tabs' network boxes",
     "adapter of the default route: 0 none named, 1 eth0, 2 eth1, then the WLAN/4G row", "yes"},
    {NAMED(KeyBuzzer), Direction::PluginToHost, Writer::Plugin,
     "plug-in: general page's buzzer switch",
     "key click on (1) or off (0)", "yes"},
    {NAMED(DateTimeLocked), Direction::HostToPlugin, Writer::Host,
     "host",
     "clock locked: non-zero keeps the date and time dialog from setting the clock", "—"},
    {NAMED(SettingsWindowOpen), Direction::PluginToHost, Writer::Plugin,
     "plug-in: settings window (1 when created, 0 from its close button)",
     "settings window open; 0 asks the host to close and delete it", "the 0 only"},
    {NAMED(WlanDisabled), Direction::PluginToHost, Writer::Plugin,
     "plug-in: WLAN tab's switch",
     "WLAN switched off (1) or on (0)", "yes"},
    {NAMED(WlanState), Direction::Both, Writer::Both,
     "host (link state); plug-in: WLAN tab and password dialog (0 with each connection request)",
     "WLAN state: 0 not connected, 2 connected, 4 wrong pass phrase", "yes"},
    {NAMED(WlanConnectRequest), Direction::PluginToHost, Writer::Plugin,
     "plug-in: WLAN tab and password dialog",
     "connection request: 1 asks the host to join the SSID in 103 with 104", "yes"},
    {NAMED(WlanSsid), Direction::Both, Writer::Both,
     "plug-in: WLAN tab (network to join, cleared on reset); host (network joined)",
     "SSID, NUL-padded text", "yes"},
    {NAMED(WlanPassphrase), Direction::PluginToHost, Writer::Plugin,
     "plug-in: WLAN tab and password dialog (cleared on reset)",
     "pass phrase for the SSID in 103, NUL-padded text", "yes"},
    {NAMED(WlanIp), Direction::Both, Writer::Both,
     "host (address of the link); plug-in: WLAN tab (static, leased, cleared)",
     "wlan0 IPv4 address as four u16, first octet first", "yes"},
    {NAMED(WlanMac), Direction::HostToPlugin, Writer::Host,
     "host",
     "wlan0 MAC address as 12 hex digits", "—"},
    {NAMED(WlanMask), Direction::Both, Writer::Both,
     "host (mask of the link); plug-in: WLAN tab (static, leased, cleared)",
     "wlan0 subnet mask as four u16, first octet first", "yes"},
    {NAMED(WlanGateway), Direction::Both, Writer::Both,
     "host (gateway of the link); plug-in: WLAN tab (static, leased, cleared)",
     "wlan0 gateway as four u16, first octet first", "yes"},
    {NAMED(WlanScanCount), Direction::HostToPlugin, Writer::Host,
     "host (after each scan)",
     "number of networks in /tmp/scan_parse", "—"},
    {NAMED(WlanScanRequest), Direction::PluginToHost, Writer::Plugin,
     "plug-in: WLAN tab (refresh, reset)",
     "scan request: 1 asks the host to scan and write the scan files", "yes"},
    {NAMED(VpnRegion), Direction::PluginToHost, Writer::Plugin,
     "plug-in: VPN tab's server box (only while the VPN is off)",
     "VPN server region: 0 Chinese, 1 European servers", "yes"},
    {NAMED(VpnSwitch), Direction::PluginToHost, Writer::Plugin,
     "plug-in: VPN tab's switch",
     "VPN switched on (1) or off (0)", "yes"},
    {NAMED(VpnState), Direction::Both, Writer::Both,
     "host (link state); plug-in: VPN tab (1 each second while the VPN is off)",
     "VPN state: 0 not connected, 1 preparing, 5 connected", "yes"},
    {NAMED(VpnAddress), Direction::Both, Writer::Both,
     "host (address of the link); plug-in: VPN tab (cleared each second while the VPN is off)",
     "VPN IPv4 address as four u16, first octet first", "yes"},
    {NAMED(Mobile4GSwitch), Direction::PluginToHost, Writer::Plugin,
     "plug-in: 4G tab's switch (0, then 1 to switch on)",
     "4G switched on (1) or off (0)", "yes"},
    {NAMED(Mobile4GSignal), Direction::HostToPlugin, Writer::Host,
     "host",
     "4G signal strength 0..100", "—"},
    {NAMED(Mobile4GState), Direction::Both, Writer::Both,
     "host (link state); plug-in: 4G tab's switch (1 on, 0 off)",
     "4G state: 0 not connected, 1 connecting, 2 connected", "yes"},
};

#undef NAMED

constexpr int DescribedCount = int(sizeof Described / sizeof Described[0]);

} // namespace

const RegisterInfo::Entry *RegisterInfo::described()
{
    return Described;
}

int RegisterInfo::describedCount()
{
    return DescribedCount;
}

RegisterInfo::Entry RegisterInfo::at(unsigned index)
{
    for (const Entry &entry : Described) {
        if (entry.index == index)
            return entry;
    }
    return {index, nullptr, Direction::Unused, Writer::None, "", "", ""};
}

const RegisterInfo::Entry *RegisterInfo::byName(const char *name)
{
    if (!name)
        return nullptr;
    for (const Entry &entry : Described) {
        if (std::strcmp(entry.name, name) == 0)
            return &entry;
    }
    return nullptr;
}

const char *RegisterInfo::directionText(Direction direction)
{
    switch (direction) {
    case Direction::HostToPlugin:
        return "host → plug-in";
    case Direction::PluginToHost:
        return "plug-in → host";
    case Direction::Both:
        return "both ways";
    case Direction::Unused:
        break;
    }
    return "";
}

const char *RegisterInfo::writerText(Writer writer)
{
    switch (writer) {
    case Writer::Host:
        return "host";
    case Writer::Plugin:
        return "plug-in";
    case Writer::Both:
        return "both";
    case Writer::None:
        break;
    }
    return "";
}
