#include "devicecommands.h"
#include "processlookup.h"
#include "adapterlist.h"
#include "wlanaddressing.h"
#include "testharness.h"

#include <QtTest>

#include <functional>

Q_DECLARE_METATYPE(std::function<CommandText()>)

class TestDeviceCommands : public QObject
{
    Q_OBJECT

private slots:
    void texts_data()
    {
        using Build = std::function<CommandText()>;
        QTest::addColumn<Build>("build");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("bright") << Build([] { return DeviceCommands::setBright(200); })
                                << QByteArray("/root/plat-intf/setbright 200");
        QTest::newRow("short beep") << Build([] { return DeviceCommands::setBeep(false); })
                                    << QByteArray("/root/plat-intf/setbeep short");
        QTest::newRow("long beep") << Build([] { return DeviceCommands::setBeep(true); })
                                   << QByteArray("/root/plat-intf/setbeep long");
        QTest::newRow("address") << Build([] { return DeviceCommands::address(1, "10.0.0.2"); })
                                 << QByteArray("ifconfig eth1 10.0.0.2");
        QTest::newRow("address, port 2") << Build([] { return DeviceCommands::address(2, "10.0.0.2"); }) << QByteArray();
        QTest::newRow("address, empty fields") << Build([] { return DeviceCommands::address(0, "..."); }) << QByteArray();
        QTest::newRow("address, NUL inside") << Build([] { return DeviceCommands::address(0, std::string("1.2.3.4\0;x", 10)); })
                                             << QByteArray();
        QTest::newRow("mask") << Build([] { return DeviceCommands::mask(0, "255.255.255.0"); })
                              << QByteArray("ifconfig eth0 netmask 255.255.255.0");
        QTest::newRow("mask with a command") << Build([] { return DeviceCommands::mask(0, "255.0.0.0;reboot"); })
                                             << QByteArray();
        QTest::newRow("gateway") << Build([] { return DeviceCommands::gateway("10.0.0.1"); })
                                 << QByteArray("route add default gw 10.0.0.1");
        QTest::newRow("up") << Build([] { return DeviceCommands::up(0); }) << QByteArray("ifconfig eth0 up");
        QTest::newRow("up with the stored address") << Build([] { return DeviceCommands::upWithAddress(1, 0x0200a8c0u); })
                                                    << QByteArray("ifconfig eth1 192.168.0.2 up\n");
        QTest::newRow("up with all ones") << Build([] { return DeviceCommands::upWithAddress(0, 0xffffffffu); })
                                          << QByteArray("ifconfig eth0 255.255.255.255 up\n");
        QTest::newRow("up with the address, port 2") << Build([] { return DeviceCommands::upWithAddress(2, 1u); })
                                                     << QByteArray();
        QTest::newRow("down") << Build([] { return DeviceCommands::down(1); }) << QByteArray("ifconfig eth1 down");
        QTest::newRow("down, port -1") << Build([] { return DeviceCommands::down(-1); }) << QByteArray();
        QTest::newRow("reboot") << Build([] { return DeviceCommands::reboot(); }) << QByteArray("reboot");
        QTest::newRow("sync") << Build([] { return DeviceCommands::sync(); }) << QByteArray("sync");
        QTest::newRow("process") << Build([] { return ProcessLookup::query("hmiapp"); })
                                 << QByteArray("ps -ef | grep hmiapp|grep -v grep");
        QTest::newRow("process with a pipe") << Build([] { return ProcessLookup::query("a|reboot"); }) << QByteArray();
        QTest::newRow("no process name") << Build([] { return ProcessLookup::query(nullptr); }) << QByteArray();
    }

    void texts()
    {
        QFETCH(std::function<CommandText()>, build);
        QFETCH(QByteArray, text);
        const CommandText command = build();
        QCOMPARE(command.isValid(), !text.isEmpty());
        QCOMPARE(command.text(), text);
    }

    void wlanCommands_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QList<QByteArray>>("texts");
        QTest::newRow("address") << int(WlanAddressing::Address) << "10.0.0.5"
                                 << QList<QByteArray> {"ifconfig wlan0 10.0.0.5"};
        QTest::newRow("mask") << int(WlanAddressing::Mask) << "255.255.0.0"
                              << QList<QByteArray> {"ifconfig wlan0 netmask 255.255.0.0"};
        QTest::newRow("gateway") << int(WlanAddressing::Gateway) << "10.0.0.1"
                                 << QList<QByteArray> {"route del default dev wlan0",
                                                       "route add default gw 10.0.0.1 dev wlan0 metric 100"};
        // The delete has no value and still runs; the add is refused.
        QTest::newRow("gateway, a field empty") << int(WlanAddressing::Gateway) << "10.0..1"
                                                << QList<QByteArray> {"route del default dev wlan0", ""};
        QTest::newRow("address with a command") << int(WlanAddressing::Address) << "10.0.0.5$(reboot)"
                                                << QList<QByteArray> {""};
        QTest::newRow("name server") << int(WlanAddressing::FirstDns) << "8.8.8.8" << QList<QByteArray>();
    }

    void wlanCommands()
    {
        QFETCH(int, type);
        QFETCH(QString, value);
        QFETCH(QList<QByteArray>, texts);
        QList<QByteArray> built;
        for (const CommandText &command : WlanAddressing::applyCommands(WlanAddressing::ValueType(type), value))
            built << command.text();
        QCOMPARE(built, texts);
    }

    void leaseCommands_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<bool>("preferred");
        QTest::addColumn<QList<QByteArray>>("texts");
        QTest::newRow("preferred") << "192.168.5.7" << true
                                   << QList<QByteArray> {"ip route del default via 192.168.5.1",
                                                         "route add default gw 192.168.5.1 dev wlan0 metric 0"};
        QTest::newRow("other") << "10.1.2.3" << false
                               << QList<QByteArray> {"ip route del default via 10.1.2.1",
                                                     "route add default gw 10.1.2.1 dev wlan0 metric 100"};
        QTest::newRow("no address") << "" << false << QList<QByteArray>();
        QTest::newRow("three numbers") << "10.1.2" << true << QList<QByteArray>();
        QTest::newRow("octet too big") << "10.1.256.3" << true << QList<QByteArray>();
    }

    void leaseCommands()
    {
        QFETCH(QString, address);
        QFETCH(bool, preferred);
        QFETCH(QList<QByteArray>, texts);
        const int adapter = preferred ? AdapterList::linkRow(false) : 0;
        QList<QByteArray> built;
        for (const CommandText &command : WlanAddressing::leaseCommands(address, adapter, false))
            built << command.text();
        QCOMPARE(built, texts);
    }
};

PANEL_TEST_MAIN(TestDeviceCommands)
#include "tst_devicecommands.moc"
