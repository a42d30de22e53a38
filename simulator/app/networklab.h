#ifndef NETWORKLAB_H
#define NETWORKLAB_H

#include <QString>
#include <QStringList>

// The private network lab the simulator can run in (--real-network), made
// by the test suite's runner (tests/support/netlab/run-in-netlab): PID,
// mount and network namespaces of their own, eth0 and eth1 as veth links to
// a far side with a DHCP and DNS server, wlan0 and ppp0 as veth links for
// the host's WLAN and 4G (LinkInterfaces), all removed when the simulator
// ends. Inside it the real network tools run; outside it they never do.
class NetworkLab
{
public:
    static QString runnerPath();

    // Empty when a lab can be made here; otherwise why not.
    static QString whyUnavailable();
    // Runs this program with these arguments inside a lab, in a process
    // group of its own to which SIGINT, SIGTERM and SIGHUP are handed on,
    // and waits for it: empty and the exit status, or why it did not start.
    static QString runInLab(const QStringList &arguments, int *status);
    // The runner's exit status when it could not build the lab.
    static constexpr int Skipped = 77;

    // Empty when this process runs in a lab: network and mount namespaces
    // other than those of /proc/1, in a PID namespace whose init is the
    // runner (its /proc/1 stays in the machine's network namespace).
    static QString notInsideLab();

    // Moves this process (root only) into a network namespace of its own
    // with nothing but a loopback that is down: the page then finds no
    // eth0 of this machine to read a lease from. False where it cannot.
    static bool isolateFromMachineNetwork();

    // Puts the panel's resolver file over the lab's /etc/resolv.conf, so
    // what the DHCP client's script writes there lands in the panel's file.
    static bool coverResolver(const QString &panelFile, QString *error);
    // Takes that cover away again (the runner's own lies below it).
    static void uncoverResolver();
    // Brings the far side's links up or down: the outer network answering
    // or not.
    static bool setFarLinks(bool up, QString *error);
    // The real ip tool of the lab (not the recording stand-in).
    static QString realTool(const QString &name);
};

#endif // NETWORKLAB_H
