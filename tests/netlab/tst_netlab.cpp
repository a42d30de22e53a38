// The network lab itself, with the real tools and through the plug-in's own
// command runner: the ports, a real DHCP lease and its pid file, the
// resolver file the client's script writes, killing the client, default
// routes with metrics, and the outer-network ping against the far side,
// with its link up and down. Runs only through run-in-netlab.

#include "commandtext.h"
#include "netlab.h"
#include "panelroot.h"
#include "processrunner.h"
#include "testharness.h"
#include "testpanel.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QNetworkInterface>
#include <QScopedPointer>
#include <QTest>

#include <algorithm>
#include <csignal>

namespace {

constexpr int LeaseTimeoutMs = 10000;
constexpr int PingTimeoutMs = 8000;     // "-W 3" plus a lookup, with margin

QByteArray dhcpCommand(int port)
{
    return port == 0 ? "udhcpc -i eth0 -t 100 -T 1 -A 1 -p /var/run/udhcpc0.pid&"
                     : "udhcpc -i eth1 -t 100 -T 1 -A 1 -p /var/run/udhcpc1.pid&";
}

int run(const CommandText &command)
{
    if (!command.isValid())
        qWarning("invalid command: %s", qPrintable(command.errorString()));
    return runCommand(command);
}

QString readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(file.readAll()) : QString();
}

QStringList sorted(QStringList list)
{
    std::sort(list.begin(), list.end());
    return list;
}

} // namespace

class TestNetLab : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void portsExistAndAreUp();
    void dhcpLease_data();
    void dhcpLease();
    void killThroughPidFileStopsClient_data();
    void killThroughPidFileStopsClient();
    void staticAddressAndPortOffOn();
    void defaultRoutesWithMetrics_data();
    void defaultRoutesWithMetrics();
    void pingReachesFarSideByName();
    void pingFailsWhileFarLinkIsDown();

private:
    QString readPanelFile(const QString &absolutePath) const
    {
        return QString::fromLocal8Bit(m_panel->readFile(absolutePath));
    }
    // Runs the outer-network test's three commands in the panel's working
    // folder and waits for the ping to end; its output.
    QString pingOnce();

    QScopedPointer<TestPanel> m_panel;
    QString m_pingFolder;
};

void TestNetLab::initTestCase()
{
    QVERIFY2(!NetLab::farNamespace().isEmpty(), "run through tests/support/netlab/run-in-netlab");
    m_panel.reset(new TestPanel);
    QVERIFY2(m_panel->isValid(), qPrintable(m_panel->errorString()));

    // What the DHCP client's script writes to /etc/resolv.conf must land in
    // the panel's file; prove it by reading the panel's text back there.
    QString error;
    QVERIFY2(NetLab::bindResolverFile(m_panel->path(QStringLiteral("/etc/resolv.conf")), &error), qPrintable(error));
    QFile system(QStringLiteral("/etc/resolv.conf"));
    QVERIFY(system.open(QIODevice::ReadOnly));
    QCOMPARE(system.readAll(), m_panel->readFile(QStringLiteral("/etc/resolv.conf")));

    m_pingFolder = m_panel->path(QStringLiteral("/hmi"));
    QVERIFY(QDir::setCurrent(m_pingFolder));
}

void TestNetLab::cleanupTestCase()
{
    // The lab ends every process once the test is over; a run of single
    // test functions by hand should leave no client behind either.
    for (pid_t pid : NetLab::processes(QStringLiteral("udhcpc"))) {
        if (pid > 1)
            ::kill(pid, SIGTERM);
    }
    NetLab::setFarLink(0, true);
    NetLab::setFarLink(1, true);
}

void TestNetLab::portsExistAndAreUp()
{
    QStringList names;
    for (const QNetworkInterface &interface : QNetworkInterface::allInterfaces())
        names << interface.name();
    // Nothing of the machine's own network is visible in the lab.
    QCOMPARE(sorted(names), sorted({QStringLiteral("lo"), QStringLiteral("eth0"), QStringLiteral("eth1")}));

    for (int port : {0, 1}) {
        const QString name = NetLab::portName(port);
        QVERIFY2(NetLab::isUp(name), qPrintable(name));
        QTRY_VERIFY_WITH_TIMEOUT(NetLab::isRunning(name), 5000);
        bool ok = false;
        const QString link = QString::fromLocal8Bit(
            NetLab::run(QStringLiteral("ip"), {QStringLiteral("-d"), QStringLiteral("-o"), QStringLiteral("link"),
                                               QStringLiteral("show"), QStringLiteral("dev"), name}, &ok));
        QVERIFY(ok);
        QVERIFY2(link.contains(QLatin1String("state UP")), qPrintable(link));
        QVERIFY2(link.contains(QLatin1String(" veth ")), qPrintable(link));
        QVERIFY2(link.contains(QStringLiteral("link-netns ") + NetLab::farNamespace()), qPrintable(link));
    }
}

void TestNetLab::dhcpLease_data()
{
    QTest::addColumn<int>("port");
    QTest::newRow("eth0") << 0;
    QTest::newRow("eth1") << 1;
}

void TestNetLab::dhcpLease()
{
    QFETCH(int, port);
    const QString name = NetLab::portName(port);
    const QString pidPath = PanelRoot::path(NetLab::pidFile(port));
    QVERIFY(pidPath.startsWith(m_panel->root() + QLatin1Char('/')));
    QVERIFY(!QFile::exists(pidPath));
    QVERIFY(NetLab::interfaceAddresses(name).isEmpty());
    QVERIFY(!readPanelFile(QStringLiteral("/etc/resolv.conf")).contains(NetLab::farAddress(port)));

    QElapsedTimer clock;
    clock.start();
    const CommandText command(dhcpCommand(port).constData());
    QVERIFY2(command.isValid(), qPrintable(command.errorString()));
    QCOMPARE(run(command), 0);
    QVERIFY2(clock.elapsed() < 1000, "a command ending in & returns at once");

    QString address;
    QVERIFY2(NetLab::waitForAddress(name, LeaseTimeoutMs, &address), "no lease");
    qInfo("%s leased %s after %lld ms", qPrintable(name), qPrintable(address), clock.elapsed());
    QVERIFY2(address.startsWith(NetLab::subnetPrefix(port)), qPrintable(address));
    const int host = address.section(QLatin1Char('.'), 3).toInt();
    QVERIFY2(host >= 50 && host <= 99, qPrintable(address));   // the far side's DHCP range
    QCOMPARE(NetLab::kernelAddresses(name), QStringList{address + QStringLiteral("/24")});

    // The far side handed it out.
    const QString leases = NetLab::labDir() + QStringLiteral("/dnsmasq.leases");
    QTRY_VERIFY_WITH_TIMEOUT(readFile(leases).contains(QLatin1Char(' ') + address + QLatin1Char(' ')), 3000);

    // The client moves to the background once bound and writes its new pid:
    // the file names the running client of this port.
    pid_t pid = 0;
    QElapsedTimer pidClock;
    pidClock.start();
    const bool named = QTest::qWaitFor([&] {
        pid = NetLab::readPidFile(pidPath);
        return pid > 1 && NetLab::processes(QStringLiteral("udhcpc"), name).contains(pid);
    }, 5000);
    qInfo("pid file named the client after %lld ms", pidClock.elapsed());
    QVERIFY2(named, qPrintable(QStringLiteral("pid file \"%1\", clients %2")
                                   .arg(readFile(pidPath).trimmed())
                                   .arg(QString::fromLocal8Bit(NetLab::run(QStringLiteral("ps"),
                                        {QStringLiteral("-eo"), QStringLiteral("pid,stat,args")})))));
    QCOMPARE(NetLab::processes(QStringLiteral("udhcpc"), name).size(), 1);

    // udhcpc's own script wrote the far side's name server into the panel's
    // resolver file, through /etc/resolv.conf.
    const QString nameserver = QStringLiteral("nameserver ") + NetLab::farAddress(port);
    QTRY_VERIFY_WITH_TIMEOUT(readPanelFile(QStringLiteral("/etc/resolv.conf")).split(QLatin1Char('\n')).contains(nameserver),
                             3000);
    QVERIFY(!readPanelFile(QStringLiteral("/etc/resolv.conf")).contains(QLatin1String("114.114.114.114")));
}

void TestNetLab::killThroughPidFileStopsClient_data() { dhcpLease_data(); }

void TestNetLab::killThroughPidFileStopsClient()
{
    QFETCH(int, port);
    const QString name = NetLab::portName(port);
    const pid_t pid = NetLab::readPidFile(PanelRoot::path(NetLab::pidFile(port)));
    QVERIFY(pid > 1);
    QVERIFY(NetLab::isAlive(pid));

    const CommandText kill = CommandText("kill %d").processId(pid);
    QCOMPARE(kill.text(), QByteArray("kill ") + QByteArray::number(pid));
    QCOMPARE(run(kill), 0);
    QTRY_VERIFY_WITH_TIMEOUT(!NetLab::isAlive(pid), 3000);
    QVERIFY(NetLab::processes(QStringLiteral("udhcpc"), name).isEmpty());
    // Ended without releasing: the port keeps its leased address.
    QCOMPARE(NetLab::kernelAddresses(name).size(), 1);
    QVERIFY(NetLab::kernelAddresses(name).first().startsWith(NetLab::subnetPrefix(port)));
}

void TestNetLab::staticAddressAndPortOffOn()
{
    QCOMPARE(run(CommandText("ifconfig eth%d %s").adapter(1).ipv4(QStringLiteral("10.78.0.20"))), 0);
    // ifconfig gives a class A address its class's mask until told otherwise.
    QCOMPARE(NetLab::kernelAddresses(QStringLiteral("eth1")), QStringList{QStringLiteral("10.78.0.20/8")});
    QCOMPARE(run(CommandText("ifconfig eth%d netmask %s").adapter(1).ipv4(QStringLiteral("255.255.255.0"))), 0);
    QCOMPARE(NetLab::kernelAddresses(QStringLiteral("eth1")), QStringList{QStringLiteral("10.78.0.20/24")});
    QCOMPARE(NetLab::interfaceAddresses(QStringLiteral("eth1")), QStringList{QStringLiteral("10.78.0.20")});

    QCOMPARE(run(CommandText("ifconfig eth%d down").adapter(1)), 0);
    QVERIFY(!NetLab::isUp(QStringLiteral("eth1")));
    QVERIFY(!NetLab::routes().join(QLatin1Char('\n')).contains(QLatin1String("dev eth1")));

    QCOMPARE(run(CommandText("ifconfig eth%d %d.%d.%d.%d up").adapter(1).number(10).number(78).number(0).number(20)), 0);
    QVERIFY(NetLab::isUp(QStringLiteral("eth1")));
    QTRY_VERIFY_WITH_TIMEOUT(NetLab::isRunning(QStringLiteral("eth1")), 5000);
    QCOMPARE(NetLab::kernelAddresses(QStringLiteral("eth1")), QStringList{QStringLiteral("10.78.0.20/24")});
    QVERIFY(NetLab::routes().contains(QStringLiteral("10.78.0.0/24 dev eth1 proto kernel scope link src 10.78.0.20")));
}

void TestNetLab::defaultRoutesWithMetrics_data()
{
    QTest::addColumn<int>("eth0Metric");
    QTest::addColumn<int>("eth1Metric");
    QTest::addColumn<QString>("chosen");     // where the kernel sends an off-net packet
    QTest::newRow("eth0 first, eth1 far fallback") << 1 << 11 << QStringLiteral("eth0");
    QTest::newRow("eth0 preferred") << 1 << 2 << QStringLiteral("eth0");
    QTest::newRow("eth1 preferred") << 2 << 1 << QStringLiteral("eth1");
    QTest::newRow("both equal") << 2 << 2 << QString();
}

void TestNetLab::defaultRoutesWithMetrics()
{
    QFETCH(int, eth0Metric);
    QFETCH(int, eth1Metric);
    QFETCH(QString, chosen);

    // Deleting by device removes one default route each time; the lease's
    // script and the previous row may have left some.
    for (int port : {0, 1}) {
        for (int i = 0; i < 4 && NetLab::defaultRoutes().join(QLatin1Char('\n')).contains(NetLab::portName(port)); ++i)
            run(CommandText("route del default dev eth%d").adapter(port));
    }
    QCOMPARE(NetLab::defaultRoutes(), QStringList());

    const int metrics[] = {eth0Metric, eth1Metric};
    for (int port : {0, 1}) {
        QCOMPARE(run(CommandText("route add default gw %s dev eth%d metric %d")
                         .ipv4(NetLab::farAddress(port))
                         .adapter(port)
                         .number(metrics[port])),
                 0);
    }
    const QStringList expected = {
        QStringLiteral("default via 10.77.0.1 dev eth0 metric %1").arg(eth0Metric),
        QStringLiteral("default via 10.78.0.1 dev eth1 metric %1").arg(eth1Metric),
    };
    const QStringList table = NetLab::routes();
    qInfo("ip -4 route show:\n    %s", qPrintable(table.join(QStringLiteral("\n    "))));
    QCOMPARE(sorted(NetLab::defaultRoutes()), sorted(expected));

    // The lowest metric wins: ask the kernel where an address beyond both
    // subnets would go (a lookup only; nothing is sent).
    if (!chosen.isEmpty()) {
        const QString lookup = QString::fromLocal8Bit(
            NetLab::run(QStringLiteral("ip"), {QStringLiteral("-4"), QStringLiteral("route"), QStringLiteral("get"),
                                               QStringLiteral("10.99.0.1")}));
        QVERIFY2(lookup.contains(QStringLiteral("dev ") + chosen), qPrintable(lookup));
    }
}

QString TestNetLab::pingOnce()
{
    const QString output = m_pingFolder + QStringLiteral("/ping.txt");
    run(CommandText("rm ping.txt"));
    run(CommandText("killall ping"));
    if (QFile::exists(output)
        || !QTest::qWaitFor([] { return NetLab::processes(QStringLiteral("ping")).isEmpty(); }, 2000)) {
        qWarning("ping.txt or a ping outlived rm and killall");
        return QString();
    }
    const CommandText ping = CommandText("ping %s -W 3 -c 1 >> ping.txt&").word(NetLab::pingHost().toLatin1().constData());
    if (run(ping) != 0)
        return QString();
    // The shell creates the file before ping runs; ping's summary, written
    // as it ends, says it is over, with or without a reply.
    if (!QTest::qWaitFor([&] { return readFile(output).contains(QLatin1String(" packets transmitted, "))
                                   && NetLab::processes(QStringLiteral("ping")).isEmpty(); },
                         PingTimeoutMs)) {
        qWarning("the ping did not end in time");
        return QString();
    }
    QFile file(output);
    return file.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(file.readAll()) : QString();
}

void TestNetLab::pingReachesFarSideByName()
{
    QVERIFY(NetLab::isRunning(QStringLiteral("eth0")));
    QElapsedTimer clock;
    clock.start();
    const QString output = pingOnce();
    qInfo("ping output after %lld ms:\n%s", clock.elapsed(), qPrintable(output.trimmed()));
    QVERIFY2(output.contains(QLatin1String("ttl")), qPrintable(output));
    QVERIFY2(output.contains(NetLab::pingHost() + QStringLiteral(" (10.77.0.1)")), qPrintable(output));

    // The name was answered by the lab's own DNS.
    QVERIFY(readFile(NetLab::labDir() + QStringLiteral("/dnsmasq.log"))
                .contains(QStringLiteral("query[A] ") + NetLab::pingHost()));
}

void TestNetLab::pingFailsWhileFarLinkIsDown()
{
    // The name is still answered, over eth1 (its lease named the server):
    // what fails is the packet to the far side of eth0.
    QVERIFY(readPanelFile(QStringLiteral("/etc/resolv.conf")).contains(QStringLiteral("nameserver 10.78.0.1")));
    QVERIFY(NetLab::setFarLink(0, false));
    QVERIFY(!NetLab::isRunning(QStringLiteral("eth0")));
    QElapsedTimer clock;
    clock.start();
    const QString failed = pingOnce();
    qInfo("ping output with the far link down, after %lld ms:\n%s", clock.elapsed(), qPrintable(failed.trimmed()));
    QVERIFY(QFile::exists(m_pingFolder + QStringLiteral("/ping.txt")));
    QVERIFY2(!failed.contains(QLatin1String("ttl")), qPrintable(failed));
    QVERIFY2(failed.contains(QLatin1String("1 packets transmitted, 0 received")), qPrintable(failed));

    // Back with the link: the same test passes again.
    QVERIFY(NetLab::setFarLink(0, true));
    const QString again = pingOnce();
    QVERIFY2(again.contains(QLatin1String("ttl")), qPrintable(again));
}

PANEL_NETLAB_TEST_MAIN(TestNetLab)
#include "tst_netlab.moc"
