#ifndef DHCPCLIENT_H
#define DHCPCLIENT_H

#include <QString>

// The DHCP client of a wired port: busybox's udhcpc in the background,
// found again through the pid file it writes, so that a client started by
// an earlier window (or before a restart of the host) can still be stopped.
namespace DhcpClient {

// "/var/run/udhcpc0.pid" for eth0, "/var/run/udhcpc1.pid" for eth1.
QString pidFile(int port);

// Stops the port's client, then starts a new one. Ports other than 0 and 1:
// nothing.
void start(int port);

// Signals the process the pid file names; nothing without a pid file, and
// nothing for an id of 1 or less, whatever the file holds.
void stop(int port);

} // namespace DhcpClient

#endif // DHCPCLIENT_H
