// The wired network page driven through its real widgets, offscreen: keypad
// presses, switch and button clicks, modal boxes answered from a timer.
// Every program it starts is a recording stand-in.
#include "inputdialog.h"
#include "rowhidingcombobox.h"
#include "settings.h"
#include "mobilenetworkui.h"
#include "modaldriver.h"
#include "networkpagerig.h"
#include "testharness.h"
#include "sysreg.h"
#include "wiredportpage.h"
#include "wirelesswgtui.h"

#include <QComboBox>
#include <QDir>
#include <QScopeGuard>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QProcess>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabBar>
#include <QTimer>
#include <QtTest>

namespace {

using Rig = NetworkPageRig;

const QString DelEth0 = QStringLiteral("route del default dev eth0");
const QString DelEth1 = QStringLiteral("route del default dev eth1");

bool rowHidden(RowHidingComboBox *box, int row)
{
    return box->isRowHidden(row);
}

QStringList tabTitles(const QTabWidget &tabs)
{
    QStringList titles;
    for (int i = 0; i < tabs.count(); ++i)
        titles << tabs.tabText(i);
    return titles;
}

quint32 storedAddress(unsigned index)
{
    const QByteArray bytes = Rig::registerBytes(index, 4);
    return quint32(quint8(bytes[0])) | quint32(quint8(bytes[1])) << 8 | quint32(quint8(bytes[2])) << 16
        | quint32(quint8(bytes[3])) << 24;
}

// A harmless process of our own whose pid may go into a pid file.
class Sleeper
{
public:
    Sleeper()
    {
        m_process.start(QStringLiteral("sleep"), {QStringLiteral("60")});
        m_process.waitForStarted();
    }
    ~Sleeper()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    qint64 pid() const { return m_process.processId(); }
    bool running() { return !m_process.waitForFinished(0) && m_process.state() == QProcess::Running; }

private:
    QProcess m_process;
};

} // namespace

class TestNetworkSettings : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QTRY_COMPARE(ModalDriver::pending(), 0); }

    // Tabs and adapters.
    void tabsFollowTheCapabilityBits();
    void absentEnableKeyStartsEnabled();
    void upButNotRunningHasNoAddress();
    void macByteTenShowsAsA();
    void objectNamesForAutomation();

    // Address apply and persistence.
    void keypadEntryAppliesAndStoresTheAddress();
    void gatewayEditRebuildsRoutesTwice();
    void switchingEth0Off();
    void switchingADhcpPortOnRestartsTheClient();

    // DNS.
    void dnsEditRewritesTheResolverFile();
    void missingResolverFileIsRestoredOnOpening();

    // DHCP.
    void eth0DhcpWhileDisabledStartsNoClient();
    void eth1DhcpStartsTheClientWhateverItsKey();
    void leaseIsStoredAndPollingStops();
    void secondClientKillsTheFirst();

    // Default routes.
    void selectionZeroCommands();
    void sharedRowWithWlanAddressOnly();
    void storedSharedRowGivesMetricTwo();
    void setAsDefaultGatewayOnEth1();
    void wlanSwitchedOffLeavesSharedRow();
    void anyStoredChoice_data();
    void anyStoredChoice();

    // Conflict check and outer-network test.
    void conflictCheck();
    void testFromTheMobilePageLightsBothPorts();
    void upperCaseTtlIsAFailure();
    void emptyResultIsAFailure();
    void successfulTest();
    void detectProcessFindsNothing();
    void capabilityWithoutHardware();
    void keypadInWindowWritesTheDeviceRecord();
    void comboPopupsAreNotBuiltUpFront();
};

void TestNetworkSettings::tabsFollowTheCapabilityBits()
{
    {
        Rig::Options options;
        options.wlan = false;
        options.mobile = false;
        Rig rig(options);
        QCOMPARE(tabTitles(rig.page()), (QStringList{"wired network0", "wired network1", "VPN"}));
    }
    Rig rig;
    QCOMPARE(tabTitles(rig.page()),
             (QStringList{"wired network0", "wired network1", "wireless network", "Mobile network", "VPN"}));
    QVERIFY(qobject_cast<WirelessWgtUI *>(rig.page().widget(2)));
    QVERIFY(qobject_cast<MobileNetworkUI *>(rig.page().widget(3)));
    Rig::Options one;
    one.secondPort = false;
    one.mobile = false;
    Rig single(one);
    QCOMPARE(tabTitles(single.page()), (QStringList{"wired network0", "wireless network", "VPN"}));
}

void TestNetworkSettings::absentEnableKeyStartsEnabled()
{
    Rig rig;
    QVERIFY(!rig.settings().contains(QStringLiteral("Network0/enable")) || rig.settings().value("Network0/enable").toBool());
    QVERIFY(!rig.page().isPortDisabled(0));
    QVERIFY(rig.page().portPage(0)->field(WiredPortPage::Address, 0)->isEnabled());
    QCOMPARE(rig.page().portPage(0)->octets(WiredPortPage::Address), (QStringList{"192", "168", "1", "100"}));
    QCOMPARE(int(Rig::registerByte(SysRegIdx::Eth0Disabled) & 1), 0);
    QVERIFY(rig.calls().contains(QStringLiteral("ifconfig eth0 192.168.1.100 up")));
}

void TestNetworkSettings::upButNotRunningHasNoAddress()
{
    QNetworkAddressEntry entry;
    entry.setIp(QHostAddress(QStringLiteral("10.0.0.5")));
    entry.setNetmask(QHostAddress(QStringLiteral("255.255.255.0")));
    QNetworkAddressEntry six;
    six.setIp(QHostAddress(QStringLiteral("fe80::1")));
    const QList<QNetworkAddressEntry> entries {six, entry};
    QCOMPARE(NetworkSettings::addressList(QNetworkInterface::IsUp, entries), QStringList());
    QCOMPARE(NetworkSettings::addressList(QNetworkInterface::IsRunning, entries), QStringList());
    QCOMPARE(NetworkSettings::addressList(QNetworkInterface::IsUp | QNetworkInterface::IsRunning, {}), QStringList());
    QCOMPARE(NetworkSettings::addressList(QNetworkInterface::IsUp | QNetworkInterface::IsRunning, entries),
             (QStringList{"10.0.0.5", "255.255.255.0"}));
}

void TestNetworkSettings::macByteTenShowsAsA()
{
    Rig rig;
    QCOMPARE(rig.page().portPage(0)->macText(), QStringLiteral("0:1a:2b:3c:4d:5e"));
    QCOMPARE(rig.page().getMacFromEE(NetworkSettings::eth0).value(1), QStringLiteral("1a"));
    EEInfoDetail::Flash_WR_1 record = rig.record();
    record.eth1Mac[2] = 0x0a;
    EEInfoDetail::Flash_ROnly readOnly {};
    readOnly.hwOptions = EEInfoDetail::Flash_ROnly::HwOptionEth1;
    NetworkSettings page;
    page.init(-1, record, readOnly, &rig.settings());
    QCOMPARE(page.portPage(1)->macText(), QStringLiteral("0:1a:a:3c:4d:5f"));
    QCOMPARE(page.getMacFromEE(NetworkSettings::networkIndexType(2)), QStringList());
}

void TestNetworkSettings::objectNamesForAutomation()
{
    Rig rig;
    for (const char *tab : {"eth0Tab", "eth1Tab"}) {
        auto *page = rig.page().findChild<WiredPortPage *>(QLatin1String(tab));
        QVERIFY2(page, tab);
        for (const char *group : {"ip", "mask", "gateway", "firstDns", "backupDns"}) {
            for (int i = 1; i <= 4; ++i)
                QVERIFY(page->findChild<QLineEdit *>(QStringLiteral("%1Edit%2").arg(QLatin1String(group)).arg(i)));
        }
        for (const char *name : {"macLineEdit", "modeComboBox", "defaultNetworkComboBox", "setDefaultGatewayButton",
                                 "disableNetworkSwitch", "TestButton", "lampLabel"})
            QVERIFY2(page->findChild<QWidget *>(QLatin1String(name)), name);
    }
    const QMetaObject *meta = rig.page().metaObject();
    QVERIFY(meta->indexOfMethod("checkConflictIp(QLineEdit*,int)") >= 0);
    QVERIFY(meta->indexOfSlot("onSetTest()") >= 0);
    QVERIFY(meta->indexOfSlot("setGateway(int)") >= 0);
}

// 10 into the third address field of eth1 (192.168.1.20 before).
void TestNetworkSettings::keypadEntryAppliesAndStoresTheAddress()
{
    Rig rig;
    WiredPortPage *eth1 = rig.page().portPage(1);
    eth1->setOctets(WiredPortPage::Address, {"192", "168", "1", "20"});
    rig.page().setCurrentIndex(1);
    rig.clearCalls();
    QList<int> types;
    QList<quint32> eth1Values;
    connect(&rig.page(), &NetworkSettings::updateEEData, this,
            [&](EEInfoDetail::Flash_WR_1 &record, Settings::FlashWR1DataType type) {
                types << int(type);
                eth1Values << quint32(record.eth1Ip);   // a copy: the record is packed
            });
    ModalDriver::typeOnKeypad({"1", "0", "ENTER"});
    QTest::mousePress(eth1->field(WiredPortPage::Address, 2), Qt::LeftButton);
    QCOMPARE(eth1->octets(WiredPortPage::Address), (QStringList{"192", "168", "10", "20"}));
    const QStringList calls = rig.calls();
    QCOMPARE(calls.value(0), QStringLiteral("ifconfig eth1 192.168.10.20"));
    QVERIFY(calls.indexOf(DelEth0) > 0);
    QCOMPARE(types, QList<int>{int(Settings::IpAddress)});
    QCOMPARE(eth1Values, QList<quint32>{0x140aa8c0u});
    QCOMPARE(storedAddress(SysRegIdx::Eth1Ip), 0x140aa8c0u);
    QCOMPARE(int(quint8(Rig::registerBytes(SysRegIdx::Eth1Ip, 1).at(0))), 192);
}

void TestNetworkSettings::gatewayEditRebuildsRoutesTwice()
{
    Rig rig;
    rig.clearCalls();
    ModalDriver::typeOnKeypad({"2", "5", "4", "ENTER"});
    QTest::mousePress(rig.page().portPage(0)->field(WiredPortPage::Gateway, 3), Qt::LeftButton);
    const QStringList calls = rig.calls();
    QCOMPARE(calls.count(DelEth0), 2);
    QCOMPARE(calls.count(QStringLiteral("route add default gw 192.168.1.254 dev eth0 metric 1")), 2);
    QCOMPARE(storedAddress(SysRegIdx::Eth0Gateway), 0xfe01a8c0u);
}

void TestNetworkSettings::switchingEth0Off()
{
    Rig rig;
    rig.clearCalls();
    WiredPortPage *eth0 = rig.page().portPage(0);
    QTest::mouseClick(eth0->disableSwitch(), Qt::LeftButton);
    QVERIFY(rig.page().isPortDisabled(0));
    QCOMPARE(rig.settings().value(QStringLiteral("Network0/enable")).toBool(), false);
    QCOMPARE(int(Rig::registerByte(SysRegIdx::Eth0Disabled) & 1), 1);
    for (QLineEdit *field : eth0->fields()) {
        QCOMPARE(field->text(), QStringLiteral("0"));
        QVERIFY(!field->isEnabled());
    }
    QVERIFY(rowHidden(eth0->defaultNetworkComboBox(), 1));
    QVERIFY(rowHidden(rig.page().portPage(1)->defaultNetworkComboBox(), 1));
    QVERIFY(rig.calls().contains(QStringLiteral("ifconfig eth0 down")));
    QVERIFY(eth0->disableSwitch()->styleSheet().contains(QLatin1String("switch_on.png")));

    QTest::mouseClick(eth0->disableSwitch(), Qt::LeftButton);
    QVERIFY(!rig.page().isPortDisabled(0));
    QCOMPARE(int(Rig::registerByte(SysRegIdx::Eth0Disabled) & 1), 0);
    QVERIFY(!rowHidden(eth0->defaultNetworkComboBox(), 1));
    QCOMPARE(eth0->octets(WiredPortPage::Address), (QStringList{"192", "168", "1", "100"}));
}

void TestNetworkSettings::switchingADhcpPortOnRestartsTheClient()
{
    Rig::Options options;
    options.registers.insert(SysRegIdx::Eth0Dhcp, 1);
    options.enableKeys.insert(QStringLiteral("Network0/enable"), false);
    Rig rig(options);
    QVERIFY(rig.page().isPortDisabled(0));
    QVERIFY(rig.callsOf(QStringLiteral("udhcpc")).isEmpty());
    rig.clearCalls();
    QTest::mouseClick(rig.page().portPage(0)->disableSwitch(), Qt::LeftButton);
    QTRY_COMPARE(rig.callsOf(QStringLiteral("udhcpc")),
                 QStringList{"udhcpc -i eth0 -t 100 -T 1 -A 1 -p " + rig.panel().path("/var/run/udhcpc0.pid")});
    QVERIFY(rig.callsOf(QStringLiteral("ifconfig")).isEmpty());
    QCOMPARE(rig.page().portPage(0)->modeComboBox()->currentIndex(), 1);
    QVERIFY(rig.page().leaseTimer(0)->isActive());
    QCOMPARE(rig.page().leaseTimer(0)->interval(), 100);
}

void TestNetworkSettings::dnsEditRewritesTheResolverFile()
{
    Rig rig;
    QCOMPARE(rig.page().portPage(0)->octets(WiredPortPage::FirstDns), (QStringList{"114", "114", "114", "114"}));
    QCOMPARE(rig.page().portPage(0)->octets(WiredPortPage::BackupDns), (QStringList{"8", "8", "8", "8"}));
    QCOMPARE(rig.page().portPage(1)->octets(WiredPortPage::FirstDns), (QStringList{"0", "0", "0", "0"}));
    ModalDriver::typeOnKeypad({"9", "ENTER"});
    QTest::mousePress(rig.page().portPage(0)->field(WiredPortPage::BackupDns, 3), Qt::LeftButton);
    QCOMPARE(rig.panel().readFile(QStringLiteral("/etc/resolv.conf")),
             QByteArray("nameserver 114.114.114.114 # eth0\nnameserver 8.8.8.9 # eth0"));
    QCOMPARE(rig.panel().readFile(QStringLiteral("/etc/resolvbak.conf")),
             rig.panel().readFile(QStringLiteral("/etc/resolv.conf")));
}

void TestNetworkSettings::missingResolverFileIsRestoredOnOpening()
{
    TestPanel scratch;
    Rig::Options options;
    Rig rig(options);
    QVERIFY(rig.panel().removeFile(QStringLiteral("/etc/resolv.conf")));
    NetworkSettings page;
    EEInfoDetail::Flash_ROnly readOnly {};
    page.init(-1, rig.record(), readOnly, &rig.settings());
    QCOMPARE(rig.panel().readFile(QStringLiteral("/etc/resolv.conf")), options.resolver);
    QCOMPARE(page.portPage(0)->octets(WiredPortPage::FirstDns), (QStringList{"114", "114", "114", "114"}));
}

void TestNetworkSettings::eth0DhcpWhileDisabledStartsNoClient()
{
    Rig rig;
    rig.settings().setValue(QStringLiteral("Network0/enable"), false);
    rig.clearCalls();
    rig.page().portPage(0)->modeComboBox()->setCurrentIndex(1);
    QCOMPARE(int(Rig::registerByte(SysRegIdx::Eth0Dhcp) & 1), 1);
    QVERIFY(!rig.page().portPage(0)->field(WiredPortPage::Address, 0)->isEnabled());
    QVERIFY(rig.callsOf(QStringLiteral("udhcpc")).isEmpty());
    QVERIFY(!rig.page().leaseTimer(0)->isActive());
}

void TestNetworkSettings::eth1DhcpStartsTheClientWhateverItsKey()
{
    Rig rig;
    rig.settings().setValue(QStringLiteral("Network1/enable"), false);
    rig.clearCalls();
    rig.page().portPage(1)->modeComboBox()->setCurrentIndex(1);
    QCOMPARE(int(Rig::registerByte(SysRegIdx::Eth1Dhcp) & 1), 1);
    // The client runs in the background: its stand-in logs a moment later.
    QTRY_COMPARE(rig.callsOf(QStringLiteral("udhcpc")).size(), 1);
    QVERIFY(rig.callsOf(QStringLiteral("udhcpc")).value(0).startsWith(QLatin1String("udhcpc -i eth1 -t 100 -T 1 -A 1 -p ")));
    QVERIFY(rig.page().leaseTimer(1)->isActive());

    rig.clearCalls();
    rig.page().portPage(1)->modeComboBox()->setCurrentIndex(0);
    QCOMPARE(int(Rig::registerByte(SysRegIdx::Eth1Dhcp) & 1), 0);
    QVERIFY(!rig.page().leaseTimer(1)->isActive());
    QVERIFY(rig.calls().contains(QStringLiteral("ifconfig eth1 192.168.2.100 up")));
}

// 172.16.5.20/255.255.0.0 on eth0.
void TestNetworkSettings::leaseIsStoredAndPollingStops()
{
    Rig rig;
    QList<int> records;
    connect(&rig.page(), &NetworkSettings::updateEEData, this,
            [&](EEInfoDetail::Flash_WR_1 &, Settings::FlashWR1DataType type) { records << int(type); });
    rig.page().portPage(0)->modeComboBox()->setCurrentIndex(1);
    QVERIFY(rig.page().leaseTimer(0)->isActive());
    QTest::qWait(250);      // polls that find no address change nothing
    QVERIFY(rig.page().leaseTimer(0)->isActive());
    QCOMPARE(records.count(), 0);
    rig.clearCalls();
    rig.interfaces.insert(QStringLiteral("eth0"), {"172.16.5.20", "255.255.0.0"});
    QTRY_VERIFY(!rig.page().leaseTimer(0)->isActive());
    QCOMPARE(storedAddress(SysRegIdx::Eth0Ip), 0x140510acu);
    QCOMPARE(storedAddress(SysRegIdx::Eth0Mask), 0x0000ffffu);
    QCOMPARE(storedAddress(SysRegIdx::Eth0Gateway), 0x010510acu);
    QCOMPARE(records, (QList<int>{Settings::IpAddress, Settings::SubnetMask, Settings::Gateway}));
    QCOMPARE(rig.page().portPage(0)->octets(WiredPortPage::Gateway), (QStringList{"172", "16", "5", "1"}));
    QVERIFY(rig.calls().contains(QStringLiteral("route add default gw 172.16.5.1 dev eth0 metric 1")));
}

// Only pids of harmless processes of our own ever go into a pid file here.
void TestNetworkSettings::secondClientKillsTheFirst()
{
    Rig rig;
    Sleeper first;
    Sleeper second;
    QVERIFY(first.pid() > 1 && second.pid() > 1);
    QVERIFY(rig.panel().writeFile(QStringLiteral("/var/run/udhcpc0.pid"), QByteArray::number(first.pid()) + "\n"));
    rig.clearCalls();
    rig.page().udhcpc(0);
    QTRY_VERIFY(!first.running());
    QVERIFY(second.running());
    QVERIFY(rig.panel().writeFile(QStringLiteral("/var/run/udhcpc0.pid"), QByteArray::number(second.pid()) + "\n"));
    rig.page().udhcpc(0);
    QTRY_VERIFY(!second.running());
    QTRY_COMPARE(rig.callsOf(QStringLiteral("udhcpc")).size(), 2);
}

void TestNetworkSettings::selectionZeroCommands()
{
    Rig rig;
    rig.clearCalls();
    rig.page().setGateway(0);
    QCOMPARE(rig.calls(), (QStringList{"route del default dev wlan0",
                                       "route add default gw 192.168.236.1 dev wlan0 metric 100",
                                       "route del default dev ppp0", "route add default dev ppp0 metric 100",
                                       DelEth0, DelEth1, "route add default gw 192.168.1.1 dev eth0 metric 1",
                                       "route add default gw 192.168.2.1 dev eth1 metric 11"}));
}

void TestNetworkSettings::sharedRowWithWlanAddressOnly()
{
    Rig rig;
    rig.interfaces.insert(QStringLiteral("wlan0"), {"10.1.2.77", "255.255.255.0"});
    rig.clearCalls();
    rig.page().setGateway(3);
    QCOMPARE(rig.calls(), (QStringList{"route del default dev wlan0", "route add default gw 10.1.2.1 dev wlan0 metric 0"}));
}

void TestNetworkSettings::storedSharedRowGivesMetricTwo()
{
    Rig rig;
    Rig::setRegister(SysRegIdx::DefaultAdapter, 3);
    rig.clearCalls();
    rig.page().setGateway(-1);
    const QStringList calls = rig.calls();
    QVERIFY(calls.contains(QStringLiteral("route add default gw 192.168.1.1 dev eth0 metric 2")));
    QVERIFY(calls.contains(QStringLiteral("route add default gw 192.168.2.1 dev eth1 metric 2")));
    QVERIFY(calls.contains(QStringLiteral("route add default gw 192.168.236.1 dev wlan0 metric 100")));
}

void TestNetworkSettings::setAsDefaultGatewayOnEth1()
{
    Rig rig;
    rig.clearCalls();
    QTest::mouseClick(rig.page().portPage(1)->setDefaultGatewayButton(), Qt::LeftButton);
    QCOMPARE(int(Rig::registerByte(SysRegIdx::DefaultAdapter)), 1);
    const QStringList calls = rig.calls();
    QVERIFY(calls.contains(QStringLiteral("route add default gw 192.168.1.1 dev eth0 metric 1")));
    QVERIFY(calls.contains(QStringLiteral("route add default gw 192.168.2.1 dev eth1 metric 2")));
    QVERIFY(rig.page().findChild<QLabel *>("label_defaultGateway")->text().endsWith(QLatin1String("192.168.2.1")));
}

void TestNetworkSettings::wlanSwitchedOffLeavesSharedRow()
{
    Rig rig;
    rig.page().on_updateDefaultNetworkSlot(3);
    QCOMPARE(rig.page().portPage(0)->defaultNetworkComboBox()->currentIndex(), 3);
    QCOMPARE(int(Rig::registerByte(SysRegIdx::DefaultAdapter)), 3);
    auto *wifi = rig.page().findChild<WirelessWgtUI *>();
    QVERIFY(wifi);
    emit wifi->wifiEanbleSignal(1);
    for (int port = 0; port < 2; ++port) {
        RowHidingComboBox *selector = rig.page().portPage(port)->defaultNetworkComboBox();
        QCOMPARE(selector->currentIndex(), 0);
        QVERIFY(rowHidden(selector, 3));
    }
    QCOMPARE(int(Rig::registerByte(SysRegIdx::DefaultAdapter)), 0);
}

void TestNetworkSettings::anyStoredChoice_data()
{
    QTest::addColumn<int>("stored");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("eth0Metric");
    QTest::addColumn<int>("eth1Metric");
    QTest::newRow("0") << 0 << 0 << 1 << 11;
    QTest::newRow("1") << 1 << 1 << 1 << 2;
    QTest::newRow("2") << 2 << 2 << 2 << 1;
    QTest::newRow("3") << 3 << 3 << 2 << 2;
    QTest::newRow("4") << 4 << 0 << 2 << 2;
    QTest::newRow("128") << 128 << 0 << 2 << 2;
    QTest::newRow("255") << 255 << 0 << 2 << 2;
}

// Register 78 holding any byte: the selectors show a row they have, and
// the routes follow the stored value.
void TestNetworkSettings::anyStoredChoice()
{
    QFETCH(int, stored);
    QFETCH(int, row);
    QFETCH(int, eth0Metric);
    QFETCH(int, eth1Metric);
    Rig::Options options;
    options.registers.insert(SysRegIdx::DefaultAdapter, quint8(stored));
    Rig rig(options);
    QCOMPARE(rig.page().portPage(0)->defaultNetworkComboBox()->currentIndex(), row);
    rig.clearCalls();
    rig.page().updateDefaultGatewayFromReg();
    const QStringList calls = rig.calls();
    QVERIFY(calls.contains(QStringLiteral("route add default gw 192.168.1.1 dev eth0 metric %1").arg(eth0Metric)));
    QVERIFY(calls.contains(QStringLiteral("route add default gw 192.168.2.1 dev eth1 metric %1").arg(eth1Metric)));
}

void TestNetworkSettings::conflictCheck()
{
    Rig rig;
    WiredPortPage *eth0 = rig.page().portPage(0);
    eth0->setOctets(WiredPortPage::Address, {"192", "168", "1", "10"});
    rig.page().portPage(1)->setOctets(WiredPortPage::Address, {"192", "168", "1", "10"});
    QString title;
    QString text;
    ModalDriver::acceptMessageBox(&title, &text);
    QCOMPARE(rig.page().checkConflictIp(eth0->field(WiredPortPage::Address, 3), 10), 0);
    QCOMPARE(title, QStringLiteral("Tips"));
    QCOMPARE(text, QStringLiteral("IP is conflict with eth1!"));
    QCOMPARE(rig.page().checkConflictIp(eth0->field(WiredPortPage::Address, 3), 11), 1);
    QCOMPARE(ModalDriver::pending(), 0);
    ModalDriver::acceptMessageBox(&title, &text);
    QCOMPARE(rig.page().checkConflictIp(rig.page().portPage(1)->field(WiredPortPage::Address, 0), 192), 0);
    QCOMPARE(text, QStringLiteral("IP is conflict with eth0!"));
    QCOMPARE(rig.page().checkConflictIp(eth0->field(WiredPortPage::Mask, 0), 192), 1);
}

void TestNetworkSettings::testFromTheMobilePageLightsBothPorts()
{
    Rig rig;
    rig.clearCalls();
    auto *mobile = rig.page().findChild<MobileNetworkUI *>();
    QVERIFY(mobile);
    emit mobile->pingTestSignal();
    for (int port = 0; port < 2; ++port) {
        QCOMPARE(rig.page().portPage(port)->lamp(), WiredPortPage::LampRunning);
        QVERIFY(rig.page().portPage(port)->testButton()->styleSheet().contains(QLatin1String("rgba(255,170,0,150)")));
    }
    QTRY_COMPARE(rig.calls(), (QStringList{"killall ping", "ping www.baidu.com -W 3 -c 1"}));
    QVERIFY(rig.page().pingTimer()->isActive());
    QCOMPARE(rig.page().pingTimer()->interval(), 6000);
    rig.page().pingTimer()->stop();
}

void TestNetworkSettings::upperCaseTtlIsAFailure()
{
    Rig rig;
    rig.page().onSetTest();
    // The ping's redirection makes the file; until then a tick only waits.
    QTRY_VERIFY(QFile::exists(QStringLiteral("ping.txt")));
    QVERIFY(QFile::remove(QStringLiteral("ping.txt")));
    rig.page().ping_test();
    QVERIFY(rig.page().pingTimer()->isActive());
    QCOMPARE(rig.page().portPage(0)->lamp(), WiredPortPage::LampRunning);
    QVERIFY(rig.panel().writeFile(QStringLiteral("/ping.txt"), "64 bytes from 10.0.0.1: icmp_seq=1 TTL=64\n"));
    QString title;
    QString text;
    ModalDriver::acceptMessageBox(&title, &text);
    rig.page().ping_test();
    QCOMPARE(title, QStringLiteral("设备详细信息"));
    QCOMPARE(text, QStringLiteral("test failed"));
    QCOMPARE(rig.page().portPage(0)->lamp(), WiredPortPage::LampIdle);
    QVERIFY(!rig.page().pingTimer()->isActive());
    QVERIFY(rig.page().portPage(1)->testButton()->styleSheet().contains(QLatin1String("rgba(163, 198, 218, 200)")));
}

void TestNetworkSettings::emptyResultIsAFailure()
{
    Rig rig;
    rig.page().onSetTest();
    QTRY_VERIFY(QFile::exists(QStringLiteral("ping.txt")));
    QString text;
    ModalDriver::acceptMessageBox(nullptr, &text);
    rig.page().ping_test();
    QCOMPARE(text, QStringLiteral("test failed"));
}

void TestNetworkSettings::successfulTest()
{
    Rig rig;
    rig.page().onSetTest();
    QTRY_VERIFY(QFile::exists(QStringLiteral("ping.txt")));
    QVERIFY(rig.panel().writeFile(QStringLiteral("/ping.txt"), "64 bytes from 10.0.0.1: icmp_seq=1 ttl=64\n"));
    QString text;
    ModalDriver::acceptMessageBox(nullptr, &text);
    rig.page().ping_test();
    QCOMPARE(text, QStringLiteral("test successful"));
    QVERIFY(!rig.page().pingTimer()->isActive());
    QCOMPARE(rig.page().portPage(0)->lamp(), WiredPortPage::LampSucceeded);
    QCOMPARE(rig.page().portPage(1)->lamp(), WiredPortPage::LampSucceeded);
}

void TestNetworkSettings::detectProcessFindsNothing()
{
    QCOMPARE(NetworkSettings::detect_process("nosuchprogramanywhere"), 1);
    QCOMPARE(NetworkSettings::detect_process("a;reboot"), -1);
}

// A record that claims WLAN and 4G on a machine without wlan0 or ppp0: the
// tabs are there, and choosing the shared row routes nothing.
void TestNetworkSettings::capabilityWithoutHardware()
{
    Rig rig;
    rig.clearCalls();
    rig.page().setGateway(3);
    QCOMPARE(rig.calls(), QStringList());
    rig.page().portPage(0)->defaultNetworkComboBox()->setCurrentIndex(3);
    QCOMPARE(int(Rig::registerByte(SysRegIdx::DefaultAdapter)), 3);
}

// Through the real window: the address typed on eth0's page reaches the
// device image, and nothing but the address changes there.
void TestNetworkSettings::keypadInWindowWritesTheDeviceRecord()
{
    TestPanel panel;
    const QString previous = QDir::currentPath();
    const auto back = qScopeGuard([&previous] { QDir::setCurrent(previous); });
    QDir::setCurrent(panel.root());
    const QByteArray before = panel.image();
    Settings window;
    window.init();
    window.findChild<QPushButton *>(QStringLiteral("networkPushButton"))->click();
    auto *eth0 = window.findChild<WiredPortPage *>(QStringLiteral("eth0Tab"));
    QVERIFY(eth0);
    panel.clearCalls();
    ModalDriver::typeOnKeypad({"5", "0", "ENTER"});
    QTest::mousePress(eth0->field(WiredPortPage::Address, 3), Qt::LeftButton);
    QStringList tools;
    for (const QStringList &call : panel.calls())
        tools << call.value(0);
    QCOMPARE(tools.count(QStringLiteral("writeee")), 1);
    QByteArray expected = before;
    expected[41 + 3] = char(50);
    QCOMPARE(panel.image(), expected);
    QCOMPARE(storedAddress(SysRegIdx::Eth0Ip), 0x3201a8c0u);
}

// Qt's style sheet engine keeps rules for every combo box popup it has
// styled, after the popup is gone: a page that built its popups at every
// opening would grow the host by that much each time. Popups are built only
// when the operator opens them.
void TestNetworkSettings::comboPopupsAreNotBuiltUpFront()
{
    Rig rig;
    // Moved into a window with a style sheet, as the settings window is.
    QWidget host;
    host.setStyleSheet(QStringLiteral("QComboBox{border:1px solid #008cba;}"));
    rig.page().setParent(&host);
    const auto back = qScopeGuard([&rig] { rig.page().setParent(nullptr); });
    host.show();
    host.grab();
    rig.page().setCurrentIndex(1);
    host.grab();
    int popups = 0;
    for (QObject *child : rig.page().findChildren<QObject *>()) {
        if (qstrcmp(child->metaObject()->className(), "QComboBoxPrivateContainer") == 0)
            ++popups;
    }
    QCOMPARE(popups, 0);
    // Opened by the operator, the popup is there and hides what it should.
    RowHidingComboBox *selector = rig.page().portPage(1)->defaultNetworkComboBox();
    selector->setRowHidden(2, true);
    selector->showPopup();
    auto *list = qobject_cast<QListView *>(selector->view());
    QVERIFY(list);
    QVERIFY(list->isRowHidden(2));
    QVERIFY(!list->isRowHidden(1));
    selector->hidePopup();
}

PANEL_GUI_TEST_MAIN(TestNetworkSettings)
#include "tst_networksettings.moc"
