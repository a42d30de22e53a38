#include "devicecommands.h"

namespace {
const char SetBrightFormat[] = "/root/plat-intf/setbright %d";
const char SetBeepFormat[] = "/root/plat-intf/setbeep %s";
} // namespace

namespace DeviceCommands {

CommandText setBright(int level)
{
    return CommandText(SetBrightFormat).number(level);
}

CommandText setBeep(bool longBeep)
{
    return CommandText(SetBeepFormat).word(longBeep ? "long" : "short");
}

CommandText address(int adapter, const std::string &address)
{
    return CommandText("ifconfig eth%d %s").adapter(adapter).ipv4(address);
}

CommandText mask(int adapter, const std::string &mask)
{
    return CommandText("ifconfig eth%d netmask %s").adapter(adapter).ipv4(mask);
}

CommandText gateway(const std::string &gateway)
{
    return CommandText("route add default gw %s").ipv4(gateway);
}

CommandText up(int adapter)
{
    return CommandText("ifconfig eth%d up").adapter(adapter);
}

CommandText upWithAddress(int adapter, quint32 address)
{
    return CommandText("ifconfig eth%d %d.%d.%d.%d up\n")
        .adapter(adapter)
        .number(address & 0xffu)
        .number((address >> 8) & 0xffu)
        .number((address >> 16) & 0xffu)
        .number((address >> 24) & 0xffu);
}

CommandText down(int adapter)
{
    return CommandText("ifconfig eth%d down").adapter(adapter);
}

CommandText reboot()
{
    return CommandText("reboot");
}

CommandText sync()
{
    return CommandText("sync");
}

} // namespace DeviceCommands
