#ifndef VPNSTATUS_H
#define VPNSTATUS_H

#include <QString>
#include <QStringList>

// What the VPN page shows for the host application's VPN registers. The
// page follows the host's language register, not the plug-in's catalogue,
// so every text comes in both languages.
namespace VpnStatus {

enum State : unsigned { NotConnected = 0, Preparing = 1, Connected = 5 };
enum Region : int { ChineseServers = 0, EuropeanServers = 1 };

// The language register's low byte: 0 selects Chinese.
bool chineseLanguage(unsigned languageByte);

// The status text of `state`, or an empty string for a state the page
// does not show, which leaves the label as it is.
QString statusText(unsigned state, bool chinese);

// The server list's two rows, Chinese servers first.
QStringList serverNames(bool chinese);

// The row of the region register's value; an unknown region counts as the
// Chinese servers.
int regionIndex(unsigned value);

} // namespace VpnStatus

#endif // VPNSTATUS_H
