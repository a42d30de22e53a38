#ifndef NETWORKSTANDINS_H
#define NETWORKSTANDINS_H

#include <QByteArray>
#include <QString>
#include <QStringList>

// The shell bodies of the network tools' stand-ins. Recording alone would
// leave the simulator nothing to show, so they also keep the network the
// panel would now have in its state folder ($STATE):
//   ports       the wired ports the panel has, one name a line
//   interfaces  "eth0 192.168.1.100 255.255.255.0 up", one port a line
//   routes      the routing table as "ip route" prints it
//   outer-net   "up" or "down": whether the world beyond the panel answers
// ifconfig and route keep the first three the way the kernel would (a
// route through a port that is down, or to a gateway off the port's
// subnet, is refused or dropped); ping answers as outer-net says and says
// nothing without it. Every stand-in exits 0 but ping on a dead network,
// like the real one, and ignores what it does not understand.
namespace NetworkStandIns {

// The body for a host tool, run after the call was logged; empty for a
// tool that only records.
QByteArray body(const QString &tool);

// Pass-through bodies: after recording, the real tool at realPath runs
// with the same arguments (the simulator inside a private network).
QByteArray passThrough(const QString &realPath);

// The tools that change or probe the network.
QStringList toolNames();

// The first lines of a state folder for a panel with these ports and
// these port addresses (address and mask per port).
QByteArray interfacesFile(const QStringList &ports, const QList<QStringList> &addresses);
QByteArray routesFile(const QStringList &ports, const QList<QStringList> &addresses);

// The state files once the host has brought a link's interface (wlan0,
// ppp0) up with this address and mask, or taken it away (empty address):
// listed as a port, its line in interfaces, its subnet in the table (the
// kernel's subnets sorted by address), every route through it gone with it.
QByteArray portsWithLink(const QByteArray &ports, const QString &port, bool present);
QByteArray interfacesWithLink(const QByteArray &interfaces, const QString &port, const QString &address,
                              const QString &mask);
QByteArray routesWithLink(const QByteArray &routes, const QString &port, const QString &address, const QString &mask);

} // namespace NetworkStandIns

#endif // NETWORKSTANDINS_H
