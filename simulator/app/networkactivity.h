#ifndef NETWORKACTIVITY_H
#define NETWORKACTIVITY_H

#include <QString>
#include <QStringList>

// What a network command the plug-in ran means at the simulated panel, in
// words for the simulator's log: an address or mask given to a port, a port
// brought up or down, a default route asked for or removed, a DHCP client
// started, the outer-network test's ping. Empty for anything else.
namespace NetworkActivity {

QString describe(const QStringList &argv);

// Whether the command can change the panel's routing table.
bool changesRoutes(const QStringList &argv);

} // namespace NetworkActivity

#endif // NETWORKACTIVITY_H
