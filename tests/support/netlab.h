#ifndef NETLAB_H
#define NETLAB_H

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <sys/types.h>

// Helpers for tests that run inside the network lab of
// tests/support/netlab/run-in-netlab (build them with
// PANEL_NETLAB_TEST_MAIN). The lab's wired ports are eth0 and eth1; the far
// ends far0 (10.77.0.1/24) and far1 (10.78.0.1/24) sit in another network
// namespace with DHCP (leases .50 to .99) and DNS. Every wait is bounded
// and polls its condition while the event loop runs.
namespace NetLab {

// Port 0 or 1 of the panel and what stands opposite it.
QString portName(int port);              // "eth0"
QString farLink(int port);               // "far0"
QString farAddress(int port);            // "10.77.0.1", "10.78.0.1"
QString subnetPrefix(int port);          // "10.77.0."
QString pidFile(int port);               // "/var/run/udhcpc0.pid" (map it with PanelRoot)

QString farNamespace();                  // $NETLAB_FAR_NS
QString pingHost();                      // the name the far side's DNS answers
QString labDir();                        // $NETLAB_LAB_DIR, dnsmasq's log and leases

// Runs a program directly (no shell) and returns its standard output; *ok
// is false when it could not run, failed or outlived timeoutMs (then it is
// killed). Standard error goes to *errorOutput when given.
QByteArray run(const QString &program, const QStringList &arguments, bool *ok = nullptr,
               int timeoutMs = 5000, QByteArray *errorOutput = nullptr);

// The kernel's IPv4 routing table of the lab, one route a line, as
// `ip -4 route show` prints it; and only its default routes.
QStringList routes();
QStringList defaultRoutes();
// `ip -4 -o address show dev NAME`: "10.77.0.57/24" for each address.
QStringList kernelAddresses(const QString &interface);

// QNetworkInterface's view: IPv4 addresses of the interface, and whether it
// is up (IFF_UP) and has a carrier (IFF_RUNNING).
QStringList interfaceAddresses(const QString &interface);
bool isUp(const QString &interface);
bool isRunning(const QString &interface);

// Waits up to timeoutMs for the interface to have an IPv4 address, which
// goes to *address. False on time-out.
bool waitForAddress(const QString &interface, int timeoutMs, QString *address = nullptr);

// Takes the far end of a port down or up (the cable pulled or put back);
// then waits until the carrier of both ends follows and, when up, until no
// address resolution begun while it was down is still pending. False when
// either failed.
bool setFarLink(int port, bool up, int timeoutMs = 5000);

// Puts `file` (a panel root's resolv.conf) over /etc/resolv.conf in this
// process's mount namespace, so that what a DHCP client script writes there
// lands in the panel's file. The panel's file must then be rewritten in
// place, never replaced by a rename, or the resolver keeps the old one.
// The cover is made in a mount namespace of this process's own (made on
// the first call; threads started before it keep the lab's). Refuses
// outside a private lab.
bool bindResolverFile(const QString &file, QString *error = nullptr);

// Processes of the lab: the pids of running (not zombie) processes whose
// name is `name` and whose command line holds `argument` as one word (any,
// when empty).
QList<pid_t> processes(const QString &name, const QString &argument = QString());
// True while pid names a process that has not ended (zombies have ended).
bool isAlive(pid_t pid);
// The number in a pid file, or 0 when the file is missing or holds no
// number above 1.
pid_t readPidFile(const QString &path);

} // namespace NetLab

#endif // NETLAB_H
