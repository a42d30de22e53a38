// The simulator's network: what each command meant at the panel, the
// routing table after each change, the port steps, and the real network
// inside the lab (or the fallback where no lab can be made).
#include "simulatorrun.h"
#include "testharness.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QtTest>

using namespace SimulatorRun;

namespace {

// Processes whose command line names this build's simulator: the lab's
// runner (its init, whose end takes the whole lab with it), the namespace
// tool and the simulator inside. Other labs may run beside it.
int simulatorProcesses()
{
    int found = 0;
    for (const QString &entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile cmdline(QStringLiteral("/proc/%1/cmdline").arg(entry));
        if (cmdline.open(QIODevice::ReadOnly) && cmdline.readAll().contains(PANEL_SIMULATOR_PATH))
            ++found;
    }
    return found;
}

} // namespace

class TestSimulatorNetwork : public QObject
{
    Q_OBJECT

private slots:
    void networkCommandsAndRoutingTableAreReported();
    void onePortPanelHasNoEth1();
    void realNetworkOrItsFallback();
    void noRealToolsOutsideALab();
    void logWindowSwitchesTheOuterNetwork();
    void hostLinksBringTheirInterfacesInTheLab();
    void hostCommandsFromTheLogWindow();
    void scriptedWirelessSessionIsLogged();
};

// With the stand-ins: what each command meant, the table after each change
// (eth0 alone on a one-port panel: eth1, wlan0 and ppp0 routes are refused),
// the outer network's answer in the panel's own ping.txt.
void TestSimulatorNetwork::networkCommandsAndRoutingTableAreReported()
{
    const Run run = runSimulator({QStringLiteral("--keep-root"), QStringLiteral("--ports"), QStringLiteral("1"),
                                  QStringLiteral("--outer-net"), QStringLiteral("down"), QStringLiteral("--script"),
                                  QStringLiteral("network,eth0,test,testresult,dismiss,outer=up,test,testresult,dismiss,"
                                                 "dhcp,close")},
                                 60000);
    QVERIFY2(run.finished && run.exitCode == 0, qPrintable(describe(run)));
    const QStringList roots = run.out.filter(QRegularExpression(QStringLiteral("^panel root: ")));
    QCOMPARE(roots.size(), 1);
    QDir root(roots.first().mid(QStringLiteral("panel root: ").size()));
    QFile ping(root.filePath(QStringLiteral("ping.txt")));
    const bool pingRead = ping.open(QIODevice::ReadOnly);
    const QByteArray answer = ping.readAll();
    root.removeRecursively();
    QVERIFY2(pingRead && answer.contains("ttl="), answer.constData());

    const int address = indexOfLine(run.out, QStringLiteral("panel: eth0 address set to 192.168.1.100, brought up"));
    const int route = indexOfLine(run.out, QStringLiteral("panel: adds default route via 192.168.1.1 on eth0, metric 1"),
                                  address);
    const int table = indexOfLine(run.out, QStringLiteral("panel: routing table now:"), route);
    QVERIFY2(address >= 0 && route > address && table > route, qPrintable(describe(run)));
    QCOMPARE(run.out.mid(table + 1, 2),
             (QStringList{QStringLiteral("    default via 192.168.1.1 dev eth0 metric 1"),
                          QStringLiteral("    192.168.1.0/24 dev eth0 proto kernel scope link src 192.168.1.100")}));
    QVERIFY2(!run.out.value(table + 3).startsWith(QStringLiteral("    ")), qPrintable(describe(run)));
    QVERIFY2(run.out.filter(QStringLiteral("panel: outer-network test: one ping to www.baidu.com")).size() == 2,
             qPrintable(describe(run)));
    // The client starts in the background: its call may be logged after the
    // register the page wrote next.
    QVERIFY2(indexOfLine(run.out, QStringLiteral("panel: DHCP client started on eth0"), table) > table,
             qPrintable(describe(run)));
    QVERIFY2(indexOfLine(run.out, QStringLiteral("register 67 = 1"), table) > table, qPrintable(describe(run)));
}

void TestSimulatorNetwork::onePortPanelHasNoEth1()
{
    const Run run = runSimulator({QStringLiteral("--ports"), QStringLiteral("1"), QStringLiteral("--script"),
                                  QStringLiteral("network,eth1,quit")}, 60000);
    QVERIFY2(run.finished && run.exitCode == 1, qPrintable(describe(run)));
    QVERIFY2(run.err.contains(QStringLiteral("step \"eth1\": the network page has no eth1 tab")), qPrintable(run.err));
}

// Inside the lab a real lease arrives and the kernel's table shows it; where
// no lab can be made the simulator says why and goes on with the stand-ins.
void TestSimulatorNetwork::realNetworkOrItsFallback()
{
    QProcess process;
    process.setProcessEnvironment(headless());
    startSimulator(process, {QStringLiteral("--real-network"), QStringLiteral("--script"),
                   QStringLiteral("network,eth0,dhcp,wait=20000,quit")});
    QByteArray seen;
    const QString mode = waitForMatch(process, QRegularExpression(QStringLiteral("^(network: private lab|real network "
                                                                                  "unavailable)")), &seen, 30000);
    QString leased;
    if (mode.startsWith(QStringLiteral("network: private lab"))) {
        leased = waitForMatch(process, QRegularExpression(QStringLiteral(
                                           "^    10\\.77\\.0\\.0/24 dev eth0 proto kernel scope link src 10\\.77\\.0\\.\\d+")),
                              &seen, 30000);
    } else if (!mode.isEmpty()) {
        leased = waitForMatch(process, QRegularExpression(QStringLiteral("^panel: DHCP client started on eth0$")),
                              &seen, 30000);
        QVERIFY2(seen.contains("network: recording stand-ins"), seen.constData());
    }
    process.terminate();
    const bool ended = process.waitForFinished(30000);
    if (!ended) {
        process.kill();
        process.waitForFinished(5000);
    }
    seen.append(process.readAllStandardOutput());
    QVERIFY2(!mode.isEmpty() && !leased.isEmpty(), seen.constData());
    QVERIFY2(ended, "the simulator did not end on SIGTERM");
    // A termination that races the lab's start-up can leave the inner
    // simulator to finish its script's wait before the lab is torn down:
    // bounded by that wait, never longer.
    QTRY_VERIFY2_WITH_TIMEOUT(simulatorProcesses() == 0, "the network lab outlived the simulator", 90000);
    qInfo().noquote() << mode.left(40) << "..." << leased.trimmed();
}

// The lab's own flag on a process that is not in a lab changes nothing: the
// network tools stay stand-ins that only record.
void TestSimulatorNetwork::noRealToolsOutsideALab()
{
    const Run run = runSimulator({QStringLiteral("--in-network-lab"), QStringLiteral("--keep-root"),
                                  QStringLiteral("--script"), QStringLiteral("network,quit")}, 60000);
    QVERIFY2(run.finished && run.exitCode == 0, qPrintable(describe(run)));
    QCOMPARE(run.out.filter(QRegularExpression(QStringLiteral("^not inside a private network lab \\(.+\\): using the "
                                                               "recording stand-ins$"))).size(), 1);
    QCOMPARE(run.out.filter(QRegularExpression(QStringLiteral("^network: recording stand-ins"))).size(), 1);
    const QStringList roots = run.out.filter(QRegularExpression(QStringLiteral("^panel root: ")));
    QCOMPARE(roots.size(), 1);
    QDir root(roots.first().mid(QStringLiteral("panel root: ").size()));
    QFile route(root.filePath(QStringLiteral("sim/bin/route")));
    const bool read = route.open(QIODevice::ReadOnly);
    const QByteArray standIn = route.readAll();
    root.removeRecursively();
    QVERIFY(read);
    QVERIFY2(!standIn.contains("exec '"), standIn.constData());
}

// The log window's switch reaches the settings window's process as a
// command, and the panel keeps the choice for the next ping.
void TestSimulatorNetwork::logWindowSwitchesTheOuterNetwork()
{
    QProcess process;
    process.setProcessEnvironment(headless());
    startSimulator(process, {QStringLiteral("--nested-child"), QStringLiteral("--keep-root")});
    QByteArray seen;
    const QString root = waitForMatch(process, QRegularExpression(QStringLiteral("^panel root: ")), &seen, 20000)
                             .mid(QStringLiteral("panel root: ").size());
    QVERIFY2(waitForLine(process, QStringLiteral("settings window open at 800x480"), &seen), seen.constData());
    QFile state(root + QStringLiteral("/sim/outer-net"));
    QVERIFY(state.open(QIODevice::ReadOnly));
    QCOMPARE(state.readAll(), QByteArray("up\n"));
    state.close();
    process.write("outer=down\n");
    QVERIFY2(waitForLine(process, QStringLiteral("outer network now down"), &seen), seen.constData());
    QVERIFY(state.open(QIODevice::ReadOnly));
    QCOMPARE(state.readAll(), QByteArray("down\n"));
    process.write("quit\n");
    QVERIFY(process.waitForFinished(20000));
    QCOMPARE(process.exitCode(), 0);
    QDir(root).removeRecursively();
}

// Inside the lab the host's 4G and WLAN links give ppp0 and wlan0 the
// addresses they report, and the kernel's table shows their subnets.
void TestSimulatorNetwork::hostLinksBringTheirInterfacesInTheLab()
{
    const Run run = runSimulator({QStringLiteral("--real-network"), QStringLiteral("--script"),
                                  QStringLiteral("network,4g,4g-on,wait=2500,scan-add=Open-Lab,wlan,wlan-search,"
                                                 "wlan-scan,wait=1500,wlan-pick=Open-Lab,wait=3000,4g-off,wait=1500,quit")},
                                 90000);
    if (run.out.filter(QRegularExpression(QStringLiteral("^real network unavailable"))).size() == 1)
        QSKIP("no network lab here");
    QVERIFY2(run.finished && run.exitCode == 0, qPrintable(describe(run)));
    const int ppp = indexOfLine(run.out, QStringLiteral("lab: ppp0 up with 10.80.0.7/24"));
    const int wlan = indexOfLine(run.out, QStringLiteral("lab: wlan0 up with 10.79.0.23/24"), ppp);
    const int pppDown = indexOfLine(run.out, QStringLiteral("lab: ppp0 down, its address removed"), wlan);
    QVERIFY2(ppp >= 0 && wlan > ppp && pppDown > wlan, qPrintable(describe(run)));
    QVERIFY2(indexOfLine(run.out, QStringLiteral("    10.79.0.0/24 dev wlan0 proto kernel scope link src 10.79.0.23"), wlan)
                 > wlan, qPrintable(describe(run)));
    QVERIFY2(indexOfLine(run.out, QStringLiteral("    10.80.0.0/24 dev ppp0 proto kernel scope link src 10.80.0.7"), ppp)
                 > ppp, qPrintable(describe(run)));
}

// The log window's host controls reach the child's links as commands.
void TestSimulatorNetwork::hostCommandsFromTheLogWindow()
{
    QProcess process;
    process.setProcessEnvironment(headless());
    startSimulator(process, {QStringLiteral("--nested-child")});
    QByteArray seen;
    QVERIFY2(waitForLine(process, QStringLiteral("settings window open at 800x480"), &seen), seen.constData());
    process.write("signal=42\n");
    QVERIFY2(waitForLine(process, QStringLiteral("host 4G: signal held at 42"), &seen), seen.constData());
    process.write("scan-add=Cafe:latte123\n");
    QVERIFY2(waitForLine(process, QStringLiteral("host WLAN: network \"Cafe\" now in range (password \"latte123\")"), &seen),
             seen.constData());
    process.write("scan-remove=Nowhere\n");
    QVERIFY2(waitForLine(process, QStringLiteral("no network \"Nowhere\" in range"), &seen), seen.constData());
    process.write("quit\n");
    QVERIFY(process.waitForFinished(20000));
    QCOMPARE(process.exitCode(), 0);
}

// A script through the WLAN, 4G and VPN tabs with the stand-ins: every
// register the pages wrote and each answer of the host in the log, in
// order, and the links' interfaces in the panel's routing table.
void TestSimulatorNetwork::scriptedWirelessSessionIsLogged()
{
    const Run run = runSimulator({QStringLiteral("--script"),
                                  QStringLiteral("network,wlan,wlan-search,wlan-scan,wait=1500,wlan-pick=TAVRO-Office,"
                                                 "psw-keyboard,psw-type=tavro2024,psw-enter,psw-connect,wait=2500,"
                                                 "4g,4g-on,wait=2500,vpn,vpn-on,wait=2500,vpn-region=1,wait=500,"
                                                 "dismiss,quit")},
                                 90000);
    QVERIFY2(run.finished && run.exitCode == 0, qPrintable(describe(run)));
    const QStringList order = {
        QStringLiteral("register 114 = 1"),
        QStringLiteral("host WLAN: register 111 = 5 (networks found)"),
        QStringLiteral("register 103 = \"TAVRO-Office\""),
        QStringLiteral("register 104 = \"tavro2024\""),
        QStringLiteral("register 101 = 1"),
        QStringLiteral("host WLAN: connection request for \"TAVRO-Office\" with a password of 9 characters; answer in 1500 ms"),
        QStringLiteral("host WLAN: register 106 = 192.168.8.23"),
        QStringLiteral("host WLAN: register 100 = 2 (connected)"),
        QStringLiteral("panel: wlan0 up with 192.168.8.23 netmask 255.255.255.0"),
        QStringLiteral("    192.168.8.0/24 dev wlan0 proto kernel scope link src 192.168.8.23"),
        QStringLiteral("register 122 = 1"),
        QStringLiteral("host 4G: register 125 = 1 (connecting)"),
        QStringLiteral("host 4G: /etc/resolv.conf: added \"nameserver 211.136.17.107 # ppp0\""),
        QStringLiteral("host 4G: register 125 = 2 (connected)"),
        QStringLiteral("register 117 = 1"),
        QStringLiteral("host VPN: register 118 = 1 (prepare to connect)"),
        QStringLiteral("host VPN: register 118 = 5 (VPN connection ok)"),
    };
    int at = 0;
    for (const QString &line : order) {
        const int found = indexOfLine(run.out, line, at);
        QVERIFY2(found >= at, qPrintable(QStringLiteral("missing after line %1: %2\n%3").arg(at).arg(line, describe(run))));
        at = found;
    }
    // The region change was refused by the page: the host never heard of it.
    QVERIFY2(run.out.filter(QStringLiteral("server region now")).isEmpty(), qPrintable(describe(run)));
}

PANEL_TEST_MAIN(TestSimulatorNetwork)
#include "tst_simulatornetwork.moc"
