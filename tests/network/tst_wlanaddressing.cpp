// The lower half of the WLAN tab on a simulated panel: WLAN off/on, static
// and DHCP addressing, edited values, DNS lines, the adapter choice, reset,
// retranslation and the ping-test button.
#include "wirelesspagelook.h"
#include "wirelesspswdialog.h"
#include "wirelesswgtui.h"
#include "wlanpagerig.h"
#include "wlanpagetest.h"

#include "modaldriver.h"
#include "sysreg.h"
#include "testbuttonstyle.h"
#include "testharness.h"

#include <QComboBox>
#include <QElapsedTimer>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTextCodec>
#include <QTranslator>
#include <QtTest>

#include "iplineedit.h"
#include "svgpushbutton.h"
#include "switchbutton.h"


using namespace WlanPageTest;
using Rig = WlanPageRig;
using R = Rig::Options;

class TestWlanAddressing : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QTRY_COMPARE(ModalDriver::pending(), 0); }

    void wlanOffAndOn();
    void disabledRegisterHighBits();
    void staticStoresAndShowsRecord();
    void staticStopsDhcpClient();
    void dhcpWhileNotConnected();
    void dhcpGatewayAndMetric_data();
    void dhcpGatewayAndMetric();
    void editedValuesApplied();
    void invalidValueRunsNoCommand();
    void dnsLines();
    void dnsResolverOdd_data();
    void dnsResolverOdd();
    void adapterChoice();
    void resetWifi();
    void resetFlagCannotBeCreated();
    void refreshRetranslates();
    void pingTestButton();
    void comboPopupNotBuiltUpFront();
};

void TestWlanAddressing::wlanOffAndOn()
{
    R options;
    options.secondPort = true;
    Rig rig(options);
    WirelessWgtUI &page = rig.page();
    rig.panel().writeFile("/tmp/scan_parse", "a50\r\n");
    Rig::setRegister(SysRegIdx::WlanScanCount, 1);
    page.updateWlanList();
    QSignalSpy enable(&page, SIGNAL(wifiEanbleSignal(int)));
    auto *combo = child<QComboBox>(page, "comboBox_network");
    QCOMPARE(combo->count(), 4);
    QTest::ignoreMessage(QtDebugMsg, "wifi enable: true");
    page.slot_switchBox_disableNet_toggled(true);
    QCOMPARE(Rig::registerByte(SysRegIdx::WlanDisabled), quint8(1));
    QCOMPARE(rig.fifo().registerIndices().value(0), quint32(SysRegIdx::WlanDisabled));
    QCOMPARE(enable.takeFirst().at(0).toInt(), 1);
    QCOMPARE(combo->count(), 3);
    QCOMPARE(list(page)->count(), 0);
    QVERIFY(!child<QGroupBox>(page, "groupBox_skip")->isEnabled());
    QVERIFY(!child<SwitchButton>(page, "switchbox_staticIP")->isEnabled());
    QCOMPARE(ipOf(page, "ipLineEdit_ip"), QStringLiteral("0.0.0.0"));
    QCOMPARE(child<QLabel>(page, "label_wifiStatus")->text(), QStringLiteral("Disabled"));
    QCOMPARE(rig.settingsValue("WirelessNetwork/static"), QStringLiteral("false"));
    // Connected but switched off: the tick shows nothing of the connection.
    Rig::setRegister(SysRegIdx::WlanState, 2);
    Rig::setRegisterBytes(SysRegIdx::WlanSsid, "home", 32);
    page.KscanWifiList_Timer();
    QVERIFY(child<QLabel>(page, "label_connectedWlanNm")->text().isEmpty());
    QTest::ignoreMessage(QtDebugMsg, "wifi enable: false");
    page.slot_switchBox_disableNet_toggled(false);
    QCOMPARE(Rig::registerByte(SysRegIdx::WlanDisabled), quint8(0));
    QCOMPARE(enable.takeFirst().at(0).toInt(), 0);
    QCOMPARE(combo->count(), 4);
    QCOMPARE(combo->itemText(3), QStringLiteral("wireless network"));
    QVERIFY(child<QGroupBox>(page, "groupBox_skip")->isEnabled());
    QVERIFY(child<SwitchButton>(page, "switchbox_staticIP")->isEnabled());
}

void TestWlanAddressing::disabledRegisterHighBits()
{
    // The register is one bit: whatever byte was written, bit 0 decides.
    R options;
    options.registers = {{SysRegIdx::WlanDisabled, 0xFE}};
    Rig rig(options);
    QVERIFY(child<QGroupBox>(rig.page(), "groupBox_skip")->isEnabled());
    QCOMPARE(child<QComboBox>(rig.page(), "comboBox_network")->count(), 3);
}

void TestWlanAddressing::staticStoresAndShowsRecord()
{
    Rig rig;
    rig.page().updateSystemAndSaveToEE(0, "10.0.0.5");
    rig.page().updateSystemAndSaveToEE(1, "255.255.0.0");
    rig.page().updateSystemAndSaveToEE(2, "10.0.0.254");
    WlanPageRig::setAddressRegister(SysRegIdx::WlanIp, "0.0.0.0");
    rig.page().slot_switchBox_staticIP_toggled(true);
    QVERIFY(WirelessWgtUI::m_isStaticIP);
    QCOMPARE(rig.settingsValue("WirelessNetwork/static"), QStringLiteral("true"));
    QCOMPARE(ipOf(rig.page(), "ipLineEdit_ip"), QStringLiteral("10.0.0.5"));
    QCOMPARE(ipOf(rig.page(), "ipLineEdit_mask"), QStringLiteral("255.255.0.0"));
    QCOMPARE(ipOf(rig.page(), "ipLineEdit_gateway"), QStringLiteral("10.0.0.254"));
    QCOMPARE(Rig::addressRegister(SysRegIdx::WlanIp), QStringLiteral("10.0.0.5"));
    QCOMPARE(Rig::addressRegister(SysRegIdx::WlanMask), QStringLiteral("255.255.0.0"));
    QCOMPARE(Rig::addressRegister(SysRegIdx::WlanGateway), QStringLiteral("10.0.0.254"));
    QVERIFY(child<IPLineEdit>(rig.page(), "ipLineEdit_ip")->isEnabled());
    // A new page starts static, from the record.
    R options;
    options.staticAddress = true;
    Rig again(options);
    QVERIFY(WirelessWgtUI::m_isStaticIP);
    QVERIFY(child<SwitchButton>(again.page(), "switchbox_staticIP")->checked());
}

void TestWlanAddressing::staticStopsDhcpClient()
{
    Rig rig;
    QProcess sleeper;
    sleeper.start(QStringLiteral("sleep"), {QStringLiteral("60")});
    QVERIFY(sleeper.waitForStarted());
    QVERIFY(sleeper.processId() > 1);
    QVERIFY(rig.panel().writeFile("/var/run/udhcpc2.pid", QByteArray::number(qint64(sleeper.processId())) + "\n"));
    rig.page().slot_switchBox_staticIP_toggled(true);
    QVERIFY(sleeper.waitForFinished(5000));
    QCOMPARE(sleeper.exitStatus(), QProcess::CrashExit);
}

void TestWlanAddressing::dhcpWhileNotConnected()
{
    Rig rig;
    Rig::setAddressRegister(SysRegIdx::WlanIp, "1.2.3.4");
    Rig::setAddressRegister(SysRegIdx::WlanMask, "255.0.0.0");
    Rig::setAddressRegister(SysRegIdx::WlanGateway, "1.2.3.1");
    Rig::setRegister(SysRegIdx::WlanState, 0);
    rig.interfaces.insert("wlan0", {"192.168.5.77", "255.255.255.0"});
    rig.page().slot_switchBox_staticIP_toggled(false);
    QVERIFY(rig.callsOf("udhcpc").isEmpty());
    QVERIFY(rig.callsOf("route").isEmpty());
    QCOMPARE(Rig::registerBytes(SysRegIdx::WlanIp, 8), QByteArray(8, '\0'));
    QCOMPARE(Rig::registerBytes(SysRegIdx::WlanMask, 8), QByteArray(8, '\0'));
    QCOMPARE(Rig::registerBytes(SysRegIdx::WlanGateway, 8), QByteArray(8, '\0'));
    QCOMPARE(rig.settingsValue("WirelessNetwork/static"), QStringLiteral("false"));
    QVERIFY(!WirelessWgtUI::m_isStaticIP);
    QVERIFY(!child<IPLineEdit>(rig.page(), "ipLineEdit_ip")->isEnabled());
}

void TestWlanAddressing::dhcpGatewayAndMetric_data()
{
    QTest::addColumn<bool>("secondPort");
    QTest::addColumn<int>("adapter");
    QTest::addColumn<int>("metric");
    QTest::newRow("wlan default, one port") << false << 2 << 0;
    QTest::newRow("wlan default, two ports") << true << 3 << 0;
    QTest::newRow("eth0 default") << false << 1 << 100;
    QTest::newRow("eth1 default") << true << 2 << 100;
}

void TestWlanAddressing::dhcpGatewayAndMetric()
{
    QFETCH(bool, secondPort);
    QFETCH(int, adapter);
    QFETCH(int, metric);
    R options;
    options.secondPort = secondPort;
    options.registers = {{SysRegIdx::DefaultAdapter, quint8(adapter)}, {SysRegIdx::WlanState, 2}};
    Rig rig(options);
    rig.interfaces.insert("wlan0", {"192.168.5.77", "255.255.255.0"});
    rig.page().slot_switchBox_staticIP_toggled(false);
    QCOMPARE(rig.callsOf("udhcpc"), (QStringList {"udhcpc -i wlan0 -t 100 -T 1 -A 1 -p " +
                                                  rig.panel().path("/var/run/udhcpc2.pid")}));
    QCOMPARE(rig.callsOf("ip"), (QStringList {"ip route del default via 192.168.5.1"}));
    QCOMPARE(rig.callsOf("route"),
             (QStringList {QStringLiteral("route add default gw 192.168.5.1 dev wlan0 metric %1").arg(metric)}));
    QCOMPARE(Rig::addressRegister(SysRegIdx::WlanIp), QStringLiteral("192.168.5.77"));
    QCOMPARE(Rig::addressRegister(SysRegIdx::WlanGateway), QStringLiteral("192.168.5.1"));
    QCOMPARE(Rig::addressRegister(SysRegIdx::WlanMask), QStringLiteral("255.255.255.0"));
    QCOMPARE(rig.recordValue(EEInfoDetail::Flash_WR_1::WlanGatewayOffset), quint32(0x0105a8c0u));
    QCOMPARE(rig.recordValue(EEInfoDetail::Flash_WR_1::WlanMaskOffset), quint32(0x00ffffffu));
    QCOMPARE(ipOf(rig.page(), "ipLineEdit_ip"), QStringLiteral("0.0.0.0"));
}

void TestWlanAddressing::editedValuesApplied()
{
    Rig rig;
    rig.page().updateSystemAndSaveToEE(0, "192.168.9.20");
    rig.page().updateSystemAndSaveToEE(1, "255.255.255.0");
    rig.page().updateSystemAndSaveToEE(2, "192.168.9.1");
    QStringList commands = rig.calls();
    // The device image's own tools (readee, writeee) are not the point here.
    commands.erase(std::remove_if(commands.begin(), commands.end(),
                                  [](const QString &call) { return call.contains(QLatin1String("plat-intf")) || call.startsWith(QLatin1String("readee"))
                                                         || call.startsWith(QLatin1String("writeee")); }),
                   commands.end());
    // ("sync" has no stand-in: it is not recorded.)
    QCOMPARE(commands, (QStringList {"ifconfig wlan0 192.168.9.20", "ifconfig wlan0 netmask 255.255.255.0",
                                     "route del default dev wlan0",
                                     "route add default gw 192.168.9.1 dev wlan0 metric 100"}));
    QCOMPARE(Rig::addressRegister(SysRegIdx::WlanIp), QStringLiteral("192.168.9.20"));
    QCOMPARE(Rig::addressRegister(SysRegIdx::WlanMask), QStringLiteral("255.255.255.0"));
    QCOMPARE(Rig::addressRegister(SysRegIdx::WlanGateway), QStringLiteral("192.168.9.1"));
    QCOMPARE(rig.recordValue(EEInfoDetail::Flash_WR_1::WlanIpOffset), quint32(0x1409a8c0u));
    QCOMPARE(rig.recordValue(EEInfoDetail::Flash_WR_1::WlanMaskOffset), quint32(0x00ffffffu));
    QCOMPARE(rig.recordValue(EEInfoDetail::Flash_WR_1::WlanGatewayOffset), quint32(0x0109a8c0u));
    QCOMPARE(rig.fifo().registerIndices(),
             (QList<quint32> {SysRegIdx::WlanIp, SysRegIdx::WlanMask, SysRegIdx::WlanGateway}));
}

void TestWlanAddressing::invalidValueRunsNoCommand()
{
    Rig rig;
    rig.page().updateSystemAndSaveToEE(0, "1.2.3");
    rig.page().updateSystemAndSaveToEE(2, "1.2.3.4; reboot");
    QVERIFY(rig.callsOf("ifconfig").isEmpty());
    QVERIFY(rig.callsOf("reboot").isEmpty());
    QVERIFY(!rig.callsOf("route").contains(QStringLiteral("route add default gw 1.2.3.4; reboot dev wlan0 metric 100")));
}

void TestWlanAddressing::dnsLines()
{
    R options;
    options.resolver = "nameserver 114.114.114.114 # eth0\nnameserver 8.8.4.4 # wlan0\n";
    Rig rig(options);
    QTest::ignoreMessage(QtDebugMsg, "Dns2: 1.0.0.1");
    child<IPLineEdit>(rig.page(), "ipLineEdit_dns2")->setIPVal("1.0.0.1");
    emit child<IPLineEdit>(rig.page(), "ipLineEdit_dns2")->valueChanged();
    QCOMPARE(rig.panel().readFile("/etc/resolv.conf"),
             QByteArray("nameserver 114.114.114.114 # eth0\nnameserver 8.8.4.4 # wlan0\nnameserver 1.0.0.1 # wlan0"));
    rig.page().updateSystemAndSaveToEE(3, "9.9.9.9");
    QCOMPARE(rig.panel().readFile("/etc/resolv.conf"),
             QByteArray("nameserver 114.114.114.114 # eth0\nnameserver 9.9.9.9 # wlan0\nnameserver 1.0.0.1 # wlan0"));
    QCOMPARE(rig.panel().readFile("/etc/resolvbak.conf"), rig.panel().readFile("/etc/resolv.conf"));
}

void TestWlanAddressing::dnsResolverOdd_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("missing") << "missing";
    QTest::newRow("folder") << "folder";
    QTest::newRow("no wlan0 line") << "none";
}

void TestWlanAddressing::dnsResolverOdd()
{
    QFETCH(QString, kind);
    Rig rig;
    rig.panel().removeFile("/etc/resolv.conf");
    if (kind == QLatin1String("folder"))
        QVERIFY(QDir().mkpath(rig.panel().path("/etc/resolv.conf")));
    if (kind == QLatin1String("none"))
        rig.panel().writeFile("/etc/resolv.conf", "nameserver 1.1.1.1 # eth0\n");
    rig.page().setDNSToSys(3, "9.9.9.9");
    if (kind == QLatin1String("folder")) {
        QVERIFY(QFileInfo(rig.panel().path("/etc/resolv.conf")).isDir());
    } else if (kind == QLatin1String("missing")) {
        QCOMPARE(rig.panel().readFile("/etc/resolv.conf"), QByteArray("nameserver 9.9.9.9 # wlan0"));
    } else {
        QCOMPARE(rig.panel().readFile("/etc/resolv.conf"),
                 QByteArray("nameserver 1.1.1.1 # eth0\nnameserver 9.9.9.9 # wlan0"));
    }
    // The tick survives whatever stands there.
    Rig::setRegister(SysRegIdx::WlanState, 2);
    rig.page().KscanWifiList_Timer();
}

void TestWlanAddressing::adapterChoice()
{
    R options;
    options.secondPort = true;
    options.resolver = "nameserver 1.1.1.1 # eth0\nnameserver 9.9.9.9 # wlan0\n";
    Rig rig(options);
    QSignalSpy chosen(&rig.page(), SIGNAL(updateDefaultNetworkSignal(int)));
    auto *combo = child<QComboBox>(rig.page(), "comboBox_network");
    combo->setCurrentIndex(3);
    QCOMPARE(chosen.takeFirst().at(0).toInt(), 3);
    QCOMPARE(rig.panel().readFile("/etc/resolv.conf"),
             QByteArray("nameserver 9.9.9.9 # wlan0\nnameserver 1.1.1.1 # eth0\n"));
    combo->setCurrentIndex(1);
    QCOMPARE(chosen.takeFirst().at(0).toInt(), 1);
    QCOMPARE(rig.panel().readFile("/etc/resolv.conf"),
             QByteArray("nameserver 1.1.1.1 # eth0\nnameserver 9.9.9.9 # wlan0\n"));
    combo->setCurrentIndex(0);
    QVERIFY(chosen.isEmpty());
    // The network page's choice is mirrored without being announced again.
    rig.page().on_updateDefaultNetwork(2);
    QCOMPARE(combo->currentIndex(), 2);
    QVERIFY(chosen.isEmpty());
    rig.page().on_updateDefaultNetwork(9);
    QCOMPARE(combo->currentIndex(), 2);
}

void TestWlanAddressing::resetWifi()
{
    Rig rig;
    Rig::setAddressRegister(SysRegIdx::WlanIp, "1.2.3.4");
    Rig::setRegisterBytes(SysRegIdx::WlanSsid, "home", 32);
    Rig::setRegisterBytes(SysRegIdx::WlanPassphrase, "password", 63);
    child<IPLineEdit>(rig.page(), "ipLineEdit_dns1")->setIPVal("8.8.8.8");
    QTest::ignoreMessage(QtDebugMsg, "Reset Wifi Ope...");
    QTest::mouseClick(child<QPushButton>(rig.page(), "pushButton_resetWifi"), Qt::LeftButton);
    QVERIFY(QFileInfo(rig.panel().path("/tmp/ResetWifiFlag")).isFile());
    QCOMPARE(Rig::registerBytes(SysRegIdx::WlanIp, 8), QByteArray(8, '\0'));
    QCOMPARE(Rig::registerBytes(SysRegIdx::WlanSsid, 32), QByteArray(32, '\0'));
    QCOMPARE(Rig::registerBytes(SysRegIdx::WlanPassphrase, 63), QByteArray(63, '\0'));
    QCOMPARE(Rig::registerByte(SysRegIdx::WlanScanRequest), quint8(1));
    for (const char *name : {"ipLineEdit_ip", "ipLineEdit_mask", "ipLineEdit_gateway", "ipLineEdit_dns1",
                             "ipLineEdit_dns2"})
        QCOMPARE(ipOf(rig.page(), name), QStringLiteral("0.0.0.0"));
    QCOMPARE(rig.fifo().registerIndices(),
             (QList<quint32> {SysRegIdx::WlanIp, SysRegIdx::WlanGateway, SysRegIdx::WlanMask, SysRegIdx::WlanSsid,
                              SysRegIdx::WlanPassphrase, SysRegIdx::WlanScanRequest}));
}

void TestWlanAddressing::resetFlagCannotBeCreated()
{
    Rig rig;
    rig.panel().removeFile("/tmp/ResetWifiFlag");
    QVERIFY(QDir().mkpath(rig.panel().path("/tmp/ResetWifiFlag")));
    Rig::setRegisterBytes(SysRegIdx::WlanSsid, "home", 32);
    QTest::ignoreMessage(QtDebugMsg, "Reset Wifi Ope...");
    QTest::ignoreMessage(QtDebugMsg, "Cant not creat file ResetWifiFlag");
    rig.page().on_pushButton_resetWifi_clicked();
    QCOMPARE(Rig::registerBytes(SysRegIdx::WlanSsid, 4), QByteArray("home"));
    QVERIFY(rig.fifo().registerIndices().isEmpty());
    // No /tmp at all under the panel root (the register files go with it).
    QDir root(rig.panel().root());
    QVERIFY(root.rename(QStringLiteral("tmp"), QStringLiteral("tmp.away")));
    QTest::ignoreMessage(QtDebugMsg, "Reset Wifi Ope...");
    QTest::ignoreMessage(QtDebugMsg, "Cant not creat file ResetWifiFlag");
    rig.page().on_pushButton_resetWifi_clicked();
    QVERIFY(root.rename(QStringLiteral("tmp.away"), QStringLiteral("tmp")));
    QCOMPARE(Rig::registerBytes(SysRegIdx::WlanSsid, 4), QByteArray("home"));
    QVERIFY(!QFileInfo::exists(rig.panel().path("/tmp/ResetWifiFlag/ResetWifiFlag")));
}

void TestWlanAddressing::refreshRetranslates()
{
    R options;
    options.secondPort = true;
    Rig rig(options);
    QTranslator chinese;
    QVERIFY(chinese.load(QStringLiteral(":/Languages/Translate_CN.qm")));
    QCoreApplication::installTranslator(&chinese);
    auto *combo = child<QComboBox>(rig.page(), "comboBox_network");
    combo->setCurrentIndex(3);
    QSignalSpy chosen(&rig.page(), SIGNAL(updateDefaultNetworkSignal(int)));
    rig.page().refresh();
    QCOMPARE(combo->itemText(1), QStringLiteral("有线网络0"));
    QCOMPARE(combo->itemText(2), QStringLiteral("有线网络1"));
    QCOMPARE(combo->itemText(3), QStringLiteral("无线网络"));
    QCOMPARE(combo->currentIndex(), 3);
    QVERIFY(chosen.isEmpty());
    QCOMPARE(child<QPushButton>(rig.page(), "pushButton_resetWifi")->text(), QStringLiteral("重置 WLAN"));
    // The translated texts still name the adapters.
    combo->setCurrentIndex(1);
    QCOMPARE(chosen.takeFirst().at(0).toInt(), 1);
    QCoreApplication::removeTranslator(&chinese);
    // Three items on a panel without eth1: the third follows the WLAN switch.
    Rig single;
    auto *three = child<QComboBox>(single.page(), "comboBox_network");
    Rig::setRegister(SysRegIdx::WlanDisabled, 1);
    single.page().refresh();
    QCOMPARE(three->itemText(2), QStringLiteral("wired network1"));
    Rig::setRegister(SysRegIdx::WlanDisabled, 0);
    single.page().refresh();
    QCOMPARE(three->itemText(2), QStringLiteral("wireless network"));
}

void TestWlanAddressing::pingTestButton()
{
    Rig rig;
    auto *button = child<QPushButton>(rig.page(), "pushButton_test");
    QSignalSpy ping(&rig.page(), SIGNAL(pingTestSignal()));
    QCOMPARE(button->styleSheet(), TestButtonStyle::idle(QStringLiteral("pushButton_test")));
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(ping.count(), 1);
    QCOMPARE(button->styleSheet(), TestButtonStyle::running(QStringLiteral("pushButton_test")));
    rig.page().setPintTestBtnStyle();
    QCOMPARE(button->styleSheet(), TestButtonStyle::idle(QStringLiteral("pushButton_test")));
}

void TestWlanAddressing::comboPopupNotBuiltUpFront()
{
    Rig rig;
    auto popups = [](QWidget *root) {
        int count = 0;
        for (QObject *child : root->findChildren<QObject *>()) {
            if (qstrcmp(child->metaObject()->className(), "QComboBoxPrivateContainer") == 0)
                ++count;
        }
        return count;
    };
    // Built inside a tab page with the panel font, as the network page does.
    QWidget host;
    host.setStyleSheet(QStringLiteral("QComboBox{border:1px solid #008cba;}"));
    auto *tabs = new QTabWidget(&host);
    QFont font = tabs->font();
    font.setPointSize(13);
    font.setBold(true);
    tabs->setFont(font);
    auto *page = new WirelessWgtUI(tabs);
    QCOMPARE(page->findChild<QLabel *>(QStringLiteral("label_ip"))->font(), font);
    tabs->addTab(page, QStringLiteral("WLAN"));
    host.show();
    host.grab();
    page->refresh();
    page->slot_switchBox_disableNet_toggled(false);
    host.grab();
    QCOMPARE(popups(page), 0);
    // Opened by the operator, it is there, in the page's font.
    auto *combo = page->findChild<QComboBox *>(QStringLiteral("comboBox_network"));
    combo->showPopup();
    QCOMPARE(popups(page), 1);
    QCOMPARE(combo->view()->font(), font);
    combo->hidePopup();
}

PANEL_GUI_TEST_MAIN(TestWlanAddressing)
#include "tst_wlanaddressing.moc"
