#include "networkaddress.h"
#include "testharness.h"

#include <QtTest>

class TestNetworkAddress : public QObject
{
    Q_OBJECT

private slots:
    void fromOctets_data()
    {
        QTest::addColumn<QStringList>("octets");
        QTest::addColumn<quint32>("value");
        QTest::newRow("first octet lowest") << QStringList{"192", "168", "10", "20"} << quint32(0x140aa8c0);
        QTest::newRow("zeros") << QStringList{"0", "0", "0", "0"} << quint32(0);
        QTest::newRow("all ones") << QStringList{"255", "255", "255", "255"} << quint32(0xffffffff);
        QTest::newRow("empty field") << QStringList{"192", "168", "", "10"} << quint32(0x0a00a8c0);
        QTest::newRow("too few") << QStringList{"10"} << quint32(10);
        QTest::newRow("not a number") << QStringList{"x", "1", "2", "3"} << quint32(0x03020100);
        QTest::newRow("over a byte") << QStringList{"256", "1", "1", "1"} << quint32(0x01010100);
    }

    void fromOctets()
    {
        QFETCH(QStringList, octets);
        QFETCH(quint32, value);
        QCOMPARE(NetworkAddress::fromOctets(octets), value);
    }

    void toOctetsRoundTrips()
    {
        QCOMPARE(NetworkAddress::toOctets(0x140aa8c0), (QStringList{"192", "168", "10", "20"}));
        QCOMPARE(NetworkAddress::fromOctets(NetworkAddress::toOctets(0xdeadbeef)), quint32(0xdeadbeef));
        QCOMPARE(NetworkAddress::dotted({"192", "168", "", "1"}), QStringLiteral("192.168..1"));
    }

    // A lease stores the address and mask and host 1 of the /24 as gateway.
    void leaseValues_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("mask");
        QTest::addColumn<quint32>("ip");
        QTest::addColumn<quint32>("netmask");
        QTest::addColumn<quint32>("gateway");
        QTest::newRow("172.16.5.20/16") << "172.16.5.20" << "255.255.0.0"
                                        << quint32(0x140510ac) << quint32(0x0000ffff) << quint32(0x010510ac);
        QTest::newRow("host .1 itself") << "10.0.0.1" << "255.255.255.0"
                                        << quint32(0x0100000a) << quint32(0x00ffffff) << quint32(0x0100000a);
        QTest::newRow("garbage") << "a.b" << "" << quint32(0) << quint32(0) << quint32(0x01000000);
    }

    void leaseValues()
    {
        QFETCH(QString, address);
        QFETCH(QString, mask);
        QFETCH(quint32, ip);
        QFETCH(quint32, netmask);
        QFETCH(quint32, gateway);
        const NetworkAddress::Lease lease = NetworkAddress::leaseValues(address, mask);
        QCOMPARE(lease.address, ip);
        QCOMPARE(lease.mask, netmask);
        QCOMPARE(lease.gateway, gateway);
        QCOMPARE(lease.gateway >> 24, 1u);
        QCOMPARE(lease.gateway & 0xffu, lease.address & 0xffu);
    }

    void conflict_data()
    {
        QTest::addColumn<QStringList>("a");
        QTest::addColumn<QStringList>("b");
        QTest::addColumn<bool>("conflict");
        QTest::newRow("same") << QStringList{"192", "168", "1", "10"} << QStringList{"192", "168", "1", "10"} << true;
        QTest::newRow("last differs") << QStringList{"192", "168", "1", "11"} << QStringList{"192", "168", "1", "10"} << false;
        QTest::newRow("first differs") << QStringList{"10", "168", "1", "10"} << QStringList{"192", "168", "1", "10"} << false;
        // Textual: "010" and "10" are different texts.
        QTest::newRow("leading zero") << QStringList{"192", "168", "1", "010"} << QStringList{"192", "168", "1", "10"} << false;
        QTest::newRow("both empty") << QStringList{"", "", "", ""} << QStringList{"", "", "", ""} << true;
    }

    void conflict()
    {
        QFETCH(QStringList, a);
        QFETCH(QStringList, b);
        QFETCH(bool, conflict);
        QCOMPARE(NetworkAddress::isConflictIp(a[0], a[1], a[2], a[3], b[0], b[1], b[2], b[3]), conflict);
    }
};

PANEL_TEST_MAIN(TestNetworkAddress)
#include "tst_networkaddress.moc"
