#include "routerules.h"

#include <QStringList>

namespace {

const char DeleteDefault[] = "route del default dev %s";
const char AddWlanViaHostOne[] = "route add default gw %d.%d.%d.1 dev wlan0 metric 0";
const char AddPppPreferred[] = "route add default dev ppp0 metric 0";
// A fixed gateway: the WLAN module's own network, not wlan0's lease.
const char AddWlanFallback[] = "route add default gw 192.168.236.1 dev wlan0 metric 100";
const char AddPppFallback[] = "route add default dev ppp0 metric 100";
const char AddWired[] = "route add default gw %s dev eth%d metric %d";

constexpr int PreferredMetric = 1;
constexpr int OtherMetric = 2;
// With no network named, eth1 stays a far fallback behind eth0.
constexpr int UnnamedMetricStep = 10;

CommandText deleteDefault(const char *interfaceName)
{
    return CommandText(DeleteDefault).interfaceName(QString::fromLatin1(interfaceName));
}

void preferWireless(const RouteSituation &s, std::vector<CommandText> &out)
{
    if (!s.wlanAddress.isEmpty()) {
        const QStringList parts = s.wlanAddress.split(QLatin1Char('.'));
        out.push_back(deleteDefault("wlan0"));
        out.push_back(CommandText(AddWlanViaHostOne)
                          .number(parts.value(0).toUInt())
                          .number(parts.value(1).toUInt())
                          .number(parts.value(2).toUInt()));
    }
    if (s.pppHasAddress) {
        out.push_back(deleteDefault("ppp0"));
        out.push_back(CommandText(AddPppPreferred));
    }
}

int wiredMetric(int selection, int port)
{
    if (selection == 0)
        return PreferredMetric + UnnamedMetricStep * port;
    return port == selection - 1 ? PreferredMetric : OtherMetric;
}

} // namespace

namespace RouteRules {

int sharedRow(bool secondPort)
{
    return secondPort ? 3 : 2;
}

std::vector<CommandText> commands(const RouteSituation &s)
{
    std::vector<CommandText> out;
    // Only a choice made now prefers the wireless networks; a stored one
    // (-1) is looked at after this test, so it leaves them at 100.
    if (s.selection == sharedRow(s.secondPort)) {
        preferWireless(s, out);
        return out;
    }
    if (s.wlanPage) {
        out.push_back(deleteDefault("wlan0"));
        out.push_back(CommandText(AddWlanFallback));
    }
    if (s.mobilePage) {
        out.push_back(deleteDefault("ppp0"));
        out.push_back(CommandText(AddPppFallback));
    }
    // Both ports, also on a panel with one: the failing eth1 commands are
    // harmless and keep the rule the same everywhere.
    out.push_back(deleteDefault("eth0"));
    out.push_back(deleteDefault("eth1"));
    const int selection = s.selection == -1 ? s.storedSelection : s.selection;
    for (int port = 0; port < 2; ++port) {
        out.push_back(CommandText(AddWired)
                          .ipv4(s.gateway[port])
                          .adapter(port)
                          .number(wiredMetric(selection, port)));
    }
    return out;
}

} // namespace RouteRules
