#ifndef ROUTERULES_H
#define ROUTERULES_H

#include "commandtext.h"

#include <QString>

#include <vector>

// Which default routes the panel gets for a default-network choice. The
// kernel picks the default route of lowest metric, so the choice is made by
// metrics alone: the preferred wired port gets 1, the other 2 (or 11 when no
// network is named), wlan0 and ppp0 100 unless the shared wireless/mobile
// row is chosen, which puts them at 0 and leaves the wired routes alone.
struct RouteSituation
{
    int selection = 0;              // selector row; -1: the stored choice
    int storedSelection = 0;        // register 78, read only for -1
    bool secondPort = false;        // eth1 fitted
    bool wlanPage = false;          // WLAN tab present
    bool mobilePage = false;        // 4G tab present
    QString wlanAddress;            // wlan0's first IPv4 address, or empty
    bool pppHasAddress = false;     // ppp0 up with an address
    QString gateway[2];             // eth0's and eth1's gateway fields, dotted
};

namespace RouteRules {

// The row of the shared wireless/mobile entry in the default-network
// selectors: after the empty row and one row per wired port.
int sharedRow(bool secondPort);

// The route commands, in the order they must run. A command whose gateway
// text is not an address (an empty editor gives "...") is invalid and is
// not run; the others still are.
std::vector<CommandText> commands(const RouteSituation &situation);

} // namespace RouteRules

#endif // ROUTERULES_H
