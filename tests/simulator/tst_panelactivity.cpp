// The simulator's reading of the commands the plug-in runs at the panel.
#include "panelactivity.h"
#include "testharness.h"

#include <QtTest>

class TestPanelActivity : public QObject
{
    Q_OBJECT

private slots:
    void describe_data();
    void describe();
};

void TestPanelActivity::describe_data()
{
    QTest::addColumn<QStringList>("argv");
    QTest::addColumn<QString>("meaning");
    QTest::newRow("key click") << QStringList{"setbeep", "long"} << "beep (long)";
    QTest::newRow("brightness") << QStringList{"setbright", "152"} << "backlight set to 152";
    QTest::newRow("backlight off") << QStringList{"setbright", "0"} << "backlight off";
    QTest::newRow("garbled level") << QStringList{"setbright", "x"} << "backlight: unreadable level \"x\" ignored";
    QTest::newRow("no level") << QStringList{"setbright"} << "backlight: unreadable level \"\" ignored";
    QTest::newRow("date") << QStringList{"date", "-s", "2024-2-10"}
                          << "clock: the panel sets 2024-2-10 (recorded only; the host clock is untouched)";
    QTest::newRow("time") << QStringList{"date", "-s", "8:5:30"}
                          << "clock: the panel sets 8:5:30 (recorded only; the host clock is untouched)";
    QTest::newRow("date query") << QStringList{"date"} << "";
    QTest::newRow("date -s without value") << QStringList{"date", "-s"} << "";
    QTest::newRow("hardware clock") << QStringList{"hwclock", "--systohc", "--utc"}
                                    << "clock: the panel copies it to the hardware clock (recorded only)";
    QTest::newRow("image") << QStringList{"writeee", "count=16"} << "device image written";
    QTest::newRow("reboot") << QStringList{"reboot"} << "the panel would reboot now (recorded only)";
    QTest::newRow("read") << QStringList{"readee"} << "";
    QTest::newRow("nothing") << QStringList{} << "";
    QTest::newRow("address and up") << QStringList{"ifconfig", "eth0", "192.168.1.100", "up"}
                                    << "eth0 address set to 192.168.1.100, brought up";
    QTest::newRow("address") << QStringList{"ifconfig", "eth1", "10.0.0.5"} << "eth1 address set to 10.0.0.5";
    QTest::newRow("netmask") << QStringList{"ifconfig", "eth0", "netmask", "255.255.0.0"}
                             << "eth0 netmask set to 255.255.0.0";
    QTest::newRow("port down") << QStringList{"ifconfig", "eth1", "down"} << "eth1 taken down";
    QTest::newRow("ifconfig query") << QStringList{"ifconfig", "eth0"} << "";
    QTest::newRow("not an address") << QStringList{"ifconfig", "eth0", "300.1.1.1"} << "";
    QTest::newRow("route add") << QStringList{"route", "add", "default", "gw", "192.168.1.1", "dev", "eth0", "metric", "1"}
                               << "adds default route via 192.168.1.1 on eth0, metric 1";
    QTest::newRow("route add, gateway only") << QStringList{"route", "add", "default", "gw", "192.168.10.1"}
                                             << "adds default route via 192.168.10.1";
    QTest::newRow("route add, no gateway") << QStringList{"route", "add", "default", "dev", "ppp0", "metric", "0"}
                                           << "adds default route on ppp0, metric 0";
    QTest::newRow("route del") << QStringList{"route", "del", "default", "dev", "eth1"}
                               << "removes default route on eth1";
    QTest::newRow("route, other") << QStringList{"route", "-n"} << "";
    QTest::newRow("dhcp client") << QStringList{"udhcpc", "-i", "eth1", "-t", "100", "-T", "1", "-A", "1", "-p",
                                                "/var/run/udhcpc1.pid"}
                                 << "DHCP client started on eth1";
    QTest::newRow("dhcp client, no port") << QStringList{"udhcpc"} << "";
    QTest::newRow("killall ping") << QStringList{"killall", "ping"} << "a ping still running is ended";
    QTest::newRow("ping") << QStringList{"ping", "www.baidu.com", "-W", "3", "-c", "1"}
                          << "outer-network test: one ping to www.baidu.com";
    QTest::newRow("ping, options first") << QStringList{"ping", "-c", "1", "-W", "3", "host.example"}
                                         << "outer-network test: one ping to host.example";
}

void TestPanelActivity::describe()
{
    QFETCH(QStringList, argv);
    QFETCH(QString, meaning);
    QCOMPARE(PanelActivity::describe(argv), meaning);
}

PANEL_TEST_MAIN(TestPanelActivity)
#include "tst_panelactivity.moc"
