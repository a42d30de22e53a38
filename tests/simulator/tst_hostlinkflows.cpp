// The host's WLAN, 4G and VPN links: each request register is written and
// announced on the FIFO as the plug-in does (SysReg_WriteNotify), and the
// host's answer is awaited in the registers and files the pages read.
#include "fifowatcher.h"
#include "hostlinks.h"
#include "mobilehost.h"
#include "resolverlines.h"
#include "sysreg.h"
#include "testharness.h"
#include "testpanel.h"
#include "vpnhost.h"
#include "wlanhost.h"

#include <QSignalSpy>
#include <QtEndian>
#include <QtTest>

#include <memory>

namespace {

const int AnswerMs = 150;

// A host side on a fresh panel: the FIFO read and handed to the links.
struct Host
{
    TestPanel panel;
    std::unique_ptr<HostLinks> links;
    std::unique_ptr<FifoWatcher> fifo;
    QStringList log;

    Host()
    {
        links.reset(new HostLinks(panel.root()));
        links->setAnswerDelay(AnswerMs);
        fifo.reset(new FifoWatcher(panel.path(QStringLiteral("/tmp/fifo_sysreg")), 4));
        QObject::connect(fifo.get(), &FifoWatcher::messageReceived, links.get(), [this](const QByteArray &message) {
            links->notify(qFromLittleEndian<quint32>(message.constData()));
        });
        QObject::connect(links.get(), &HostLinks::logLine, links.get(), [this](const QString &line) { log << line; });
        QString error;
        fifo->open(&error);
        links->start();
    }

    // What the page does: store the value, then announce the index.
    static void request(unsigned index, const QByteArray &value)
    {
        SysReg_WriteNotify(index, value.constData(), unsigned(value.size()));
    }
    static void request(unsigned index, quint8 value) { request(index, QByteArray(1, char(value))); }
    static void requestText(unsigned index, const QByteArray &text, int length)
    {
        QByteArray buffer = text;
        buffer.append(QByteArray(length - buffer.size(), '\0'));
        request(index, buffer);
    }

    quint64 number(unsigned index) const
    {
        quint64 value = 0;
        QByteArray bytes(64, '\0');
        SysReg_Read(index, bytes.data());
        RegisterReader::Location where;
        RegisterReader::locate(index, &where);
        for (int i = int(qMin(where.length, 8u)) - 1; i >= 0; --i)
            value = value << 8 | quint8(bytes.at(i));
        return value;
    }
    QByteArray bytes(unsigned index) const
    {
        QByteArray buffer(300, '\0');
        SysReg_Read(index, buffer.data());
        RegisterReader::Location where;
        RegisterReader::locate(index, &where);
        return buffer.left(int(where.length));
    }
    QString address(unsigned index) const { return HostRegisters::addressFromWords(bytes(index)); }
    QByteArray resolver() const { return panel.readFile(QStringLiteral("/etc/resolv.conf")); }

    void connectWlan(const QString &ssid, const QString &password)
    {
        requestText(SysRegIdx::WlanSsid, WlanFiles::encode(ssid), 32);
        requestText(SysRegIdx::WlanPassphrase, password.toLatin1(), 63);
        request(SysRegIdx::WlanConnectRequest, 1);
        request(SysRegIdx::WlanState, 0);
    }
};

} // namespace

class TestHostLinkFlows : public QObject
{
    Q_OBJECT

private slots:
    void commands_data();
    void commands();
    void scanRequestWritesTheListsAndCount();
    void savedPasswordTableFromTheStart();
    void rightPasswordConnects();
    void chineseNetworkConnectsInGb2312();
    void openNetworkConnectsWithoutPassword();
    void wrongPasswordAnswersFour();
    void wrongPasswordNextTimeFromTheControls();
    void unknownNetworkIsNotConnected();
    void resetFlagDisconnects();
    void resetFlagSeenWithoutAnnouncement();
    void wlanSwitchedOffDropsTheLink();
    void wlanDropAndScanChanges();
    void mobileGoesConnectingThenConnected();
    void mobileSignalHeldAndDrifting();
    void mobileDropAndOff();
    void vpnPreparesThenConnects();
    void vpnRegionChangeIsSeen();
    void vpnOffAndDrop();
};

void TestHostLinkFlows::commands_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<bool>("valid");
    for (const char *good : {"wlan-password-wrong", "wlan-drop", "4g-drop", "vpn-drop", "signal=0", "signal=100",
                             "signal=drift", "scan-add=Cafe", "scan-add=Cafe:secret12", "scan-remove=Cafe"})
        QTest::newRow(good) << QString::fromLatin1(good) << true;
    for (const char *bad : {"signal=101", "signal=-1", "signal=", "signal=x", "scan-add=", "scan-add=:pw",
                            "scan-remove=", "wlan", "drop", ""})
        QTest::newRow(bad[0] ? bad : "empty") << QString::fromLatin1(bad) << false;
}

void TestHostLinkFlows::commands()
{
    QFETCH(QString, command);
    QFETCH(bool, valid);
    QCOMPARE(HostLinks::isCommand(command), valid);
    Host host;
    QString error;
    if (!valid) {
        QVERIFY(!host.links->command(command, &error));
        QVERIFY(error.contains(command));
    }
}

void TestHostLinkFlows::scanRequestWritesTheListsAndCount()
{
    Host host;
    QVERIFY(host.panel.isValid());
    Host::request(SysRegIdx::WlanScanRequest, 1);
    QTRY_COMPARE(host.number(SysRegIdx::WlanScanCount), quint64(WlanHost::defaultNetworks().size()));
    const QByteArray list = host.panel.readFile(QStringLiteral("/tmp/scan_parse"));
    QCOMPARE(list, WlanFiles::scanList(WlanHost::defaultNetworks()));
    QVERIFY(list.contains(QByteArray::fromHex("b3b5bce4cedecfdf") + "72\r\n"));
    QVERIFY(list.startsWith("TAVRO-Office86\r\n"));
    const QByteArray encryption = host.panel.readFile(QStringLiteral("/tmp/wifiEnc"));
    QVERIFY(encryption.contains("TAVRO-Office+1\n"));
    QVERIFY(encryption.contains(QByteArray::fromHex("b7c3bfcdcdf8c2e7") + "+0\n"));
    QVERIFY(host.log.filter(QStringLiteral("register 111 = 5")).size() == 1);
}

void TestHostLinkFlows::savedPasswordTableFromTheStart()
{
    Host host;
    const QByteArray table = host.panel.readFile(QStringLiteral("/hmi_data/WiFipassword"));
    QCOMPARE(table.size(), 480);
    const QList<SavedPassword> saved = WlanFiles::parsePasswordTable(table);
    QVERIFY(!saved.isEmpty());
    QCOMPARE(saved, WlanHost::defaultSavedPasswords());
    QCOMPARE(table.mid(0, 8), QByteArray::fromHex("b3b5bce4cedecfdf"));
}

void TestHostLinkFlows::rightPasswordConnects()
{
    Host host;
    host.connectWlan(QStringLiteral("TAVRO-Office"), QStringLiteral("tavro2024"));
    // Not at once: association takes the host a moment.
    QTest::qWait(AnswerMs / 3);
    QCOMPARE(host.number(SysRegIdx::WlanState), quint64(0));
    QTRY_COMPARE(host.number(SysRegIdx::WlanState), quint64(2));
    QCOMPARE(host.bytes(SysRegIdx::WlanSsid), QByteArray("TAVRO-Office") + QByteArray(20, '\0'));
    QCOMPARE(host.address(SysRegIdx::WlanIp), QStringLiteral("192.168.8.23"));
    QCOMPARE(host.address(SysRegIdx::WlanMask), QStringLiteral("255.255.255.0"));
    QCOMPARE(host.address(SysRegIdx::WlanGateway), QStringLiteral("192.168.8.1"));
    QCOMPARE(host.bytes(SysRegIdx::WlanIp), QByteArray::fromHex("c000a80008001700"));
    QCOMPARE(host.bytes(SysRegIdx::WlanMac), QByteArray("001A2B3C4D60"));
    QVERIFY(host.resolver().contains("nameserver 192.168.8.1 # wlan0\n"));
    QVERIFY(host.links->wlan()->isConnected());
    // The password is kept for the next time.
    const QList<SavedPassword> saved =
        WlanFiles::parsePasswordTable(host.panel.readFile(QStringLiteral("/hmi_data/WiFipassword")));
    QVERIFY(saved.contains(SavedPassword{QStringLiteral("TAVRO-Office"), QStringLiteral("tavro2024")}));
}

void TestHostLinkFlows::chineseNetworkConnectsInGb2312()
{
    Host host;
    host.connectWlan(QString::fromUtf8("车间无线"), QStringLiteral("chejian88"));
    QTRY_COMPARE(host.number(SysRegIdx::WlanState), quint64(2));
    QCOMPARE(host.bytes(SysRegIdx::WlanSsid).left(9), QByteArray::fromHex("b3b5bce4cedecfdf00"));
    QCOMPARE(host.links->wlan()->connectedSsid(), QString::fromUtf8("车间无线"));
}

void TestHostLinkFlows::openNetworkConnectsWithoutPassword()
{
    Host host;
    host.connectWlan(QString::fromUtf8("访客网络"), QString());
    QTRY_COMPARE(host.number(SysRegIdx::WlanState), quint64(2));
    // Nothing to remember for an open network.
    QCOMPARE(WlanFiles::parsePasswordTable(host.panel.readFile(QStringLiteral("/hmi_data/WiFipassword"))),
             WlanHost::defaultSavedPasswords());
}

void TestHostLinkFlows::wrongPasswordAnswersFour()
{
    Host host;
    host.connectWlan(QStringLiteral("Warehouse-AP"), QStringLiteral("not-the-one"));
    QTRY_COMPARE(host.number(SysRegIdx::WlanState), quint64(4));
    QVERIFY(!host.links->wlan()->isConnected());
    QCOMPARE(host.address(SysRegIdx::WlanIp), QStringLiteral("0.0.0.0"));
    // A saved password that failed is forgotten: the page asks again.
    const QList<SavedPassword> saved =
        WlanFiles::parsePasswordTable(host.panel.readFile(QStringLiteral("/hmi_data/WiFipassword")));
    QCOMPARE(saved.size(), WlanHost::defaultSavedPasswords().size() - 1);
    QVERIFY(host.log.filter(QStringLiteral("wrong password for \"Warehouse-AP\"")).size() == 1);
}

void TestHostLinkFlows::wrongPasswordNextTimeFromTheControls()
{
    Host host;
    QString error;
    QVERIFY(host.links->command(QStringLiteral("wlan-password-wrong"), &error));
    host.connectWlan(QStringLiteral("TAVRO-Office"), QStringLiteral("tavro2024"));
    QTRY_COMPARE(host.number(SysRegIdx::WlanState), quint64(4));
    // Once only.
    host.connectWlan(QStringLiteral("TAVRO-Office"), QStringLiteral("tavro2024"));
    QTRY_COMPARE(host.number(SysRegIdx::WlanState), quint64(2));
}

void TestHostLinkFlows::unknownNetworkIsNotConnected()
{
    Host host;
    host.connectWlan(QStringLiteral("Nowhere"), QStringLiteral("whatever1"));
    QTRY_VERIFY(!host.log.filter(QStringLiteral("\"Nowhere\" is not in range")).isEmpty());
    QCOMPARE(host.number(SysRegIdx::WlanState), quint64(0));
}

void TestHostLinkFlows::resetFlagDisconnects()
{
    Host host;
    host.connectWlan(QStringLiteral("TAVRO-Office"), QStringLiteral("tavro2024"));
    QTRY_COMPARE(host.number(SysRegIdx::WlanState), quint64(2));
    // The page makes the flag, clears its fields and asks for a scan.
    QVERIFY(host.panel.writeFile(QStringLiteral("/tmp/ResetWifiFlag"), QByteArray()));
    Host::request(SysRegIdx::WlanScanRequest, 1);
    QTRY_VERIFY(!QFileInfo::exists(host.panel.path(QStringLiteral("/tmp/ResetWifiFlag"))));
    QCOMPARE(host.number(SysRegIdx::WlanState), quint64(0));
    QCOMPARE(host.bytes(SysRegIdx::WlanIp), QByteArray(8, '\0'));
    QCOMPARE(host.bytes(SysRegIdx::WlanMask), QByteArray(8, '\0'));
    QCOMPARE(host.bytes(SysRegIdx::WlanGateway), QByteArray(8, '\0'));
    QVERIFY(!host.resolver().contains("# wlan0"));
    QTRY_COMPARE(host.number(SysRegIdx::WlanScanCount), quint64(5));
}

void TestHostLinkFlows::resetFlagSeenWithoutAnnouncement()
{
    Host host;
    host.connectWlan(QStringLiteral("TAVRO-Office"), QStringLiteral("tavro2024"));
    QTRY_COMPARE(host.number(SysRegIdx::WlanState), quint64(2));
    QVERIFY(host.panel.writeFile(QStringLiteral("/tmp/ResetWifiFlag"), QByteArray()));
    QTRY_VERIFY(!QFileInfo::exists(host.panel.path(QStringLiteral("/tmp/ResetWifiFlag"))));
    QCOMPARE(host.number(SysRegIdx::WlanState), quint64(0));
}

void TestHostLinkFlows::wlanSwitchedOffDropsTheLink()
{
    Host host;
    QSignalSpy interfaces(host.links.get(), &HostLinks::interfaceChanged);
    host.connectWlan(QStringLiteral("TAVRO-Office"), QStringLiteral("tavro2024"));
    QTRY_COMPARE(host.number(SysRegIdx::WlanState), quint64(2));
    QCOMPARE(interfaces.size(), 1);
    QCOMPARE(interfaces.at(0), (QVariantList{QStringLiteral("wlan0"), QStringLiteral("192.168.8.23"),
                                             QStringLiteral("255.255.255.0")}));
    Host::request(SysRegIdx::WlanDisabled, 1);
    QTRY_COMPARE(host.number(SysRegIdx::WlanState), quint64(0));
    QCOMPARE(host.bytes(SysRegIdx::WlanIp), QByteArray(8, '\0'));
    QCOMPARE(interfaces.size(), 2);
    QCOMPARE(interfaces.at(1), (QVariantList{QStringLiteral("wlan0"), QString(), QString()}));
    // Switched on again: no request, no link.
    Host::request(SysRegIdx::WlanDisabled, 0);
    QTest::qWait(2 * AnswerMs);
    QCOMPARE(host.number(SysRegIdx::WlanState), quint64(0));
}

void TestHostLinkFlows::wlanDropAndScanChanges()
{
    Host host;
    Host::request(SysRegIdx::WlanScanRequest, 1);
    QTRY_COMPARE(host.number(SysRegIdx::WlanScanCount), quint64(5));
    QString error;
    QVERIFY(host.links->command(QStringLiteral("scan-add=Cafe:latte123"), &error));
    // A scan already made follows at once.
    QCOMPARE(host.number(SysRegIdx::WlanScanCount), quint64(6));
    QVERIFY(host.panel.readFile(QStringLiteral("/tmp/scan_parse")).endsWith("Cafe64\r\n"));
    QVERIFY(host.panel.readFile(QStringLiteral("/tmp/wifiEnc")).endsWith("Cafe+1\n"));
    host.connectWlan(QStringLiteral("Cafe"), QStringLiteral("latte123"));
    QTRY_COMPARE(host.number(SysRegIdx::WlanState), quint64(2));
    QVERIFY(host.links->command(QStringLiteral("wlan-drop"), &error));
    QCOMPARE(host.number(SysRegIdx::WlanState), quint64(0));
    QVERIFY(host.links->command(QStringLiteral("scan-remove=Cafe"), &error));
    QCOMPARE(host.number(SysRegIdx::WlanScanCount), quint64(5));
    QVERIFY(!host.links->command(QStringLiteral("scan-remove=Cafe"), &error));
    QCOMPARE(error, QStringLiteral("no network \"Cafe\" in range"));
}

void TestHostLinkFlows::mobileGoesConnectingThenConnected()
{
    Host host;
    QSignalSpy interfaces(host.links.get(), &HostLinks::interfaceChanged);
    QCOMPARE(host.number(SysRegIdx::Mobile4GState), quint64(0));
    Host::request(SysRegIdx::Mobile4GSwitch, 1);
    QTRY_COMPARE(host.number(SysRegIdx::Mobile4GState), quint64(1));
    QVERIFY(!host.resolver().contains("# ppp0"));
    QTRY_COMPARE(host.number(SysRegIdx::Mobile4GState), quint64(2));
    QVERIFY(host.resolver().contains("nameserver 211.136.17.107 # ppp0\nnameserver 211.136.20.203 # ppp0\n"));
    QVERIFY(host.resolver().startsWith("nameserver 114.114.114.114 # eth0\n"));
    const quint64 signal = host.number(SysRegIdx::Mobile4GSignal);
    QVERIFY2(signal > 0 && signal <= 100, qPrintable(QString::number(signal)));
    QCOMPARE(interfaces.size(), 1);
    QCOMPARE(interfaces.at(0).value(0).toString(), QStringLiteral("ppp0"));
    // The page's off-then-on edge while connected changes nothing.
    Host::request(SysRegIdx::Mobile4GSwitch, 1);
    QTest::qWait(2 * AnswerMs);
    QCOMPARE(host.number(SysRegIdx::Mobile4GState), quint64(2));
}

void TestHostLinkFlows::mobileSignalHeldAndDrifting()
{
    Host host;
    host.links->mobile()->setDriftInterval(20);
    Host::request(SysRegIdx::Mobile4GSwitch, 1);
    QTRY_COMPARE(host.number(SysRegIdx::Mobile4GState), quint64(2));
    QString error;
    QVERIFY(host.links->command(QStringLiteral("signal=20"), &error));
    QCOMPARE(host.number(SysRegIdx::Mobile4GSignal), quint64(20));
    QTest::qWait(100);
    QCOMPARE(host.number(SysRegIdx::Mobile4GSignal), quint64(20));
    QVERIFY(host.links->command(QStringLiteral("signal=drift"), &error));
    QTRY_VERIFY(host.number(SysRegIdx::Mobile4GSignal) != 20);
    for (int i = 0; i < 20; ++i) {
        QTest::qWait(25);
        QVERIFY(host.number(SysRegIdx::Mobile4GSignal) <= 100);
    }
}

void TestHostLinkFlows::mobileDropAndOff()
{
    Host host;
    QSignalSpy interfaces(host.links.get(), &HostLinks::interfaceChanged);
    Host::request(SysRegIdx::Mobile4GSwitch, 1);
    QTRY_COMPARE(host.number(SysRegIdx::Mobile4GState), quint64(2));
    QString error;
    QVERIFY(host.links->command(QStringLiteral("4g-drop"), &error));
    QCOMPARE(host.number(SysRegIdx::Mobile4GState), quint64(0));
    QVERIFY(!host.resolver().contains("# ppp0"));
    QCOMPARE(interfaces.size(), 2);
    QCOMPARE(interfaces.at(1), (QVariantList{QStringLiteral("ppp0"), QString(), QString()}));
    // Off and on again dials again.
    Host::request(SysRegIdx::Mobile4GSwitch, 0);
    Host::request(SysRegIdx::Mobile4GSwitch, 1);
    QTRY_COMPARE(host.number(SysRegIdx::Mobile4GState), quint64(2));
    Host::request(SysRegIdx::Mobile4GSwitch, 0);
    QTRY_COMPARE(host.number(SysRegIdx::Mobile4GState), quint64(0));
    QVERIFY(!host.resolver().contains("# ppp0"));
    QCOMPARE(host.number(SysRegIdx::Mobile4GSignal), quint64(0));
    // Off while dialling: never connected.
    Host::request(SysRegIdx::Mobile4GSwitch, 1);
    QTRY_COMPARE(host.number(SysRegIdx::Mobile4GState), quint64(1));
    Host::request(SysRegIdx::Mobile4GSwitch, 0);
    QTRY_COMPARE(host.number(SysRegIdx::Mobile4GState), quint64(0));
    QTest::qWait(2 * AnswerMs);
    QCOMPARE(host.number(SysRegIdx::Mobile4GState), quint64(0));
}

void TestHostLinkFlows::vpnPreparesThenConnects()
{
    Host host;
    Host::request(SysRegIdx::VpnSwitch, 1);
    QTRY_COMPARE(host.number(SysRegIdx::VpnState), quint64(1));
    QCOMPARE(host.bytes(SysRegIdx::VpnAddress), QByteArray(8, '\0'));
    QTRY_COMPARE(host.number(SysRegIdx::VpnState), quint64(5));
    QCOMPARE(host.address(SysRegIdx::VpnAddress), QStringLiteral("10.147.17.23"));
    QCOMPARE(host.bytes(SysRegIdx::VpnAddress), QByteArray::fromHex("0a00930011001700"));
}

void TestHostLinkFlows::vpnRegionChangeIsSeen()
{
    Host host;
    Host::request(SysRegIdx::VpnRegion, 1);
    QTRY_COMPARE(host.log.filter(QStringLiteral("server region now European servers (1)")).size(), 1);
    Host::request(SysRegIdx::VpnRegion, 7);
    QTRY_COMPARE(host.log.filter(QStringLiteral("server region now Chinese servers (7)")).size(), 1);
    // While on, a new region means joining again.
    Host::request(SysRegIdx::VpnSwitch, 1);
    QTRY_COMPARE(host.number(SysRegIdx::VpnState), quint64(5));
    Host::request(SysRegIdx::VpnRegion, 1);
    QTRY_COMPARE(host.number(SysRegIdx::VpnState), quint64(1));
    QTRY_COMPARE(host.number(SysRegIdx::VpnState), quint64(5));
    QVERIFY(host.log.filter(QStringLiteral("joining the European servers")).size() == 1);
}

void TestHostLinkFlows::vpnOffAndDrop()
{
    Host host;
    Host::request(SysRegIdx::VpnSwitch, 1);
    QTRY_COMPARE(host.number(SysRegIdx::VpnState), quint64(5));
    Host::request(SysRegIdx::VpnSwitch, 0);
    QTRY_COMPARE(host.number(SysRegIdx::VpnState), quint64(0));
    QCOMPARE(host.bytes(SysRegIdx::VpnAddress), QByteArray(8, '\0'));
    Host::request(SysRegIdx::VpnSwitch, 1);
    QTRY_COMPARE(host.number(SysRegIdx::VpnState), quint64(5));
    QString error;
    QVERIFY(host.links->command(QStringLiteral("vpn-drop"), &error));
    QCOMPARE(host.number(SysRegIdx::VpnState), quint64(0));
    QCOMPARE(host.bytes(SysRegIdx::VpnAddress), QByteArray(8, '\0'));
    // Off while preparing: it never reports ok.
    Host::request(SysRegIdx::VpnSwitch, 0);
    Host::request(SysRegIdx::VpnSwitch, 1);
    QTRY_COMPARE(host.number(SysRegIdx::VpnState), quint64(1));
    Host::request(SysRegIdx::VpnSwitch, 0);
    QTRY_COMPARE(host.number(SysRegIdx::VpnState), quint64(0));
    QTest::qWait(2 * AnswerMs);
    QCOMPARE(host.number(SysRegIdx::VpnState), quint64(0));
}

PANEL_TEST_MAIN(TestHostLinkFlows)
#include "tst_hostlinkflows.moc"
