// The WLAN tab on a simulated panel: its form, the scan request, the list
// built from the scan file and the 1-second tick, checked through registers,
// files and what the widgets show.
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

class TestWirelessWgtUI : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QTRY_COMPARE(ModalDriver::pending(), 0); }

    void formAndStart();
    void adapterListAtStart_data();
    void adapterListAtStart();
    void scanRequest();
    void listFromScanFile_data();
    void listFromScanFile();
    void qualityIcons();
    void connectedNetworkNotListed();
    void countZeroKeepsItems();
    void heightFollowsCount();
    void missingScanFileClearsList();
    void thousandsOfLinesStayQuick();
    void tickOnline();
    void tickOddStates_data();
    void tickOddStates();
    void searchPageScrollsToTopOnConnect();
    void groupBoxOpensSearchPage();
};

void TestWirelessWgtUI::formAndStart()
{
    Rig rig;
    WirelessWgtUI &page = rig.page();
    for (const char *name : {"stackedWidget", "scrollArea_wirlessMainPage", "scrollArea_wifiSearchPage",
                             "switchbox_disableNet", "groupBox_skip", "label_wifiLogo", "label_wifiStatus",
                             "label_connectedWifiName", "switchbox_staticIP", "ipLineEdit_ip", "ipLineEdit_mask",
                             "ipLineEdit_gateway", "lineEdit_macAddr", "comboBox_network", "pushButton_test",
                             "ipLineEdit_dns1", "ipLineEdit_dns2", "pushButton_backToPage", "pushButton_resetWifi",
                             "groupBox_linkedWifi", "label_connectedWifiLogo", "label_connectedWlanNm",
                             "label_connectedWifiState", "label_loading", "pushButton_refreshWlan",
                             "listWidget_wifi"})
        QVERIFY2(page.findChild<QWidget *>(QLatin1String(name)), name);
    QVERIFY(qobject_cast<SvgPushButton *>(child<QWidget>(page, "pushButton_refreshWlan")));
    QVERIFY(qobject_cast<SwitchButton *>(child<QWidget>(page, "switchbox_staticIP")));
    QCOMPARE(child<QStackedWidget>(page, "stackedWidget")->currentIndex(), 0);
    QCOMPARE(child<QPushButton>(page, "pushButton_backToPage")->text(), QStringLiteral("<  WLAN Settings"));
    QCOMPARE(child<QPushButton>(page, "pushButton_test")->text(), QStringLiteral("Extranet ping test"));
    QCOMPARE(child<QGroupBox>(page, "groupBox_linkedWifi")->title(), QStringLiteral("Connected WLAN"));
    QVERIFY(page.scanTimer()->isActive());
    QCOMPARE(page.scanTimer()->interval(), 1000);
    QVERIFY(!WirelessWgtUI::m_isStaticIP);
    QVERIFY(!child<IPLineEdit>(page, "ipLineEdit_ip")->isEnabled());
}

void TestWirelessWgtUI::adapterListAtStart_data()
{
    QTest::addColumn<bool>("secondPort");
    QTest::addColumn<int>("disabled");
    QTest::addColumn<int>("stored");
    QTest::addColumn<QStringList>("items");
    QTest::addColumn<int>("current");
    QTest::newRow("one port") << false << 0 << 2 << QStringList {"", "wired network0", "wireless network"} << 2;
    QTest::newRow("two ports") << true << 0 << 3
                               << QStringList {"", "wired network0", "wired network1", "wireless network"} << 3;
    QTest::newRow("wlan off") << true << 1 << 1 << QStringList {"", "wired network0", "wired network1"} << 1;
    QTest::newRow("index past the list") << false << 0 << 200 << QStringList {"", "wired network0", "wireless network"}
                                         << 0;
}

void TestWirelessWgtUI::adapterListAtStart()
{
    QFETCH(bool, secondPort);
    QFETCH(int, disabled);
    QFETCH(int, stored);
    QFETCH(QStringList, items);
    QFETCH(int, current);
    R options;
    options.secondPort = secondPort;
    options.registers = {{SysRegIdx::WlanDisabled, quint8(disabled)}, {SysRegIdx::DefaultAdapter, quint8(stored)}};
    Rig rig(options);
    QSignalSpy chosen(&rig.page(), SIGNAL(updateDefaultNetworkSignal(int)));
    auto *combo = child<QComboBox>(rig.page(), "comboBox_network");
    QStringList texts;
    for (int i = 0; i < combo->count(); ++i)
        texts << combo->itemText(i);
    QCOMPARE(texts, items);
    QCOMPARE(combo->currentIndex(), current);
    QCOMPARE(chosen.count(), 0);
}

void TestWirelessWgtUI::scanRequest()
{
    Rig rig;
    auto *button = child<SvgPushButton>(rig.page(), "pushButton_refreshWlan");
    QTest::ignoreMessage(QtDebugMsg, "on_pushButton_refreshWlan_clicked...");
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(button->svgFilepath(), QStringLiteral(":/Resources/refresh-green.svg"));
    QVERIFY(!button->isEnabled());
    QCOMPARE(Rig::registerByte(SysRegIdx::WlanScanRequest), quint8(1));
    QCOMPARE(rig.fifo().registerIndices(), (QList<quint32> {SysRegIdx::WlanScanRequest}));
    QTRY_VERIFY(button->isEnabled());
    QCOMPARE(button->svgFilepath(), QStringLiteral(":/Resources/refresh.svg"));
}

void TestWirelessWgtUI::listFromScanFile_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("ssids");
    QTest::addColumn<QStringList>("icons");
    QTest::newRow("scan order kept") << QByteArray("zeta90\r\nalpha10\r\n") << QStringList {"zeta", "alpha"}
                                     << QStringList {":/Resources/wifi.svg", ":/Resources/wifi1.svg"};
    QTest::newRow("non-digit quality") << QByteArray("cafeAB\r\n") << QStringList {"cafe"}
                                       << QStringList {":/Resources/wifi1.svg"};
    QTest::newRow("two characters: empty ssid listed") << QByteArray("61\r\n") << QStringList {""}
                                                       << QStringList {":/Resources/wifi3.svg"};
    QTest::newRow("single character") << QByteArray("x") << QStringList {""} << QStringList {":/Resources/wifi1.svg"};
    QTest::newRow("empty file") << QByteArray() << QStringList {} << QStringList {};
    QTest::newRow("only line ends") << QByteArray("\r\n\r\n") << QStringList {} << QStringList {};
    QTest::newRow("no final line end") << QByteArray("a45\r\nb85") << QStringList {"a", "b"}
                                       << QStringList {":/Resources/wifi2.svg", ":/Resources/wifi.svg"};
    QTest::newRow("gb2312") << gb2312(QStringLiteral("办公室70\r\n")) << QStringList {QStringLiteral("办公室")}
                            << QStringList {":/Resources/wifi3.svg"};
    QTest::newRow("invalid gb2312") << QByteArray("\xff\xff" "ab50\r\n")
                                    << QStringList {QTextCodec::codecForName("GB2312")->toUnicode("\xff\xff") + "ab"}
                                    << QStringList {":/Resources/wifi2.svg"};
}

void TestWirelessWgtUI::listFromScanFile()
{
    QFETCH(QByteArray, file);
    QFETCH(QStringList, ssids);
    QFETCH(QStringList, icons);
    Rig rig;
    QVERIFY(rig.panel().writeFile("/tmp/scan_parse", file));
    Rig::setRegister(SysRegIdx::WlanScanCount, 2);
    rig.page().updateWlanList();
    QCOMPARE(itemTexts(rig.page()), ssids);
    QCOMPARE(itemIcons(rig.page()), icons);
    QCOMPARE(list(rig.page())->height(), 100);
    QVERIFY(child<QLabel>(rig.page(), "label_loading")->isHidden());
    QCOMPARE(QTextCodec::codecForLocale(), QTextCodec::codecForName("GB2312"));
}

void TestWirelessWgtUI::qualityIcons()
{
    Rig rig;
    rig.panel().writeFile("/tmp/scan_parse", "q80\r\nq79\r\nq60\r\nq59\r\nq40\r\nq39\r\n");
    Rig::setRegister(SysRegIdx::WlanScanCount, 6);
    rig.page().updateWlanList();
    QCOMPARE(itemIcons(rig.page()),
             (QStringList {":/Resources/wifi.svg", ":/Resources/wifi3.svg", ":/Resources/wifi3.svg",
                           ":/Resources/wifi2.svg", ":/Resources/wifi2.svg", ":/Resources/wifi1.svg"}));
    QCOMPARE(list(rig.page())->item(0)->icon().availableSizes().value(0), QSize(30, 30));
}

void TestWirelessWgtUI::connectedNetworkNotListed()
{
    Rig rig;
    rig.panel().writeFile("/tmp/scan_parse", "other50\r\nhome65\r\nHOME90\r\n");
    Rig::setRegister(SysRegIdx::WlanScanCount, 3);
    Rig::setRegisterBytes(SysRegIdx::WlanSsid, "home", 32);
    Rig::setRegister(SysRegIdx::WlanState, 2);
    rig.page().updateWlanList();
    QCOMPARE(itemTexts(rig.page()), (QStringList {"other", "HOME"}));
    QCOMPARE(labelImage(rig.page(), "label_connectedWifiLogo"), pictureImage(":/Resources/wifi3.svg"));
    // Not connected: the same network is listed like any other.
    Rig::setRegister(SysRegIdx::WlanState, 0);
    rig.page().updateWlanList();
    QCOMPARE(itemTexts(rig.page()), (QStringList {"other", "home", "HOME"}));
}

void TestWirelessWgtUI::countZeroKeepsItems()
{
    Rig rig;
    rig.panel().writeFile("/tmp/scan_parse", "a50\r\nb50\r\n");
    Rig::setRegister(SysRegIdx::WlanScanCount, 2);
    rig.page().updateWlanList();
    rig.panel().writeFile("/tmp/scan_parse", "c50\r\n");
    Rig::setRegister(SysRegIdx::WlanScanCount, 0);
    rig.page().KscanWifiList_Timer();
    QCOMPARE(itemTexts(rig.page()), (QStringList {"a", "b"}));
    QCOMPARE(list(rig.page())->height(), 0);
}

void TestWirelessWgtUI::heightFollowsCount()
{
    Rig rig;
    rig.panel().writeFile("/tmp/scan_parse", "a50\r\n\r\nb50\r\n");
    Rig::setRegister(SysRegIdx::WlanScanCount, 3);
    rig.page().updateWlanList();
    QCOMPARE(list(rig.page())->count(), 2);
    QCOMPARE(list(rig.page())->height(), 150);
    Rig::setRegister(SysRegIdx::WlanScanCount, 255);
    rig.page().updateWlanList();
    QCOMPARE(list(rig.page())->height(), 50 * 255);
}

void TestWirelessWgtUI::missingScanFileClearsList()
{
    Rig rig;
    rig.panel().writeFile("/tmp/scan_parse", "a50\r\n");
    Rig::setRegister(SysRegIdx::WlanScanCount, 4);
    rig.page().updateWlanList();
    QCOMPARE(list(rig.page())->count(), 1);
    rig.panel().removeFile("/tmp/scan_parse");
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QStringLiteral("No such file")));
    rig.page().updateWlanList();
    QCOMPARE(list(rig.page())->count(), 0);
    QCOMPARE(list(rig.page())->height(), 200);
}

void TestWirelessWgtUI::thousandsOfLinesStayQuick()
{
    Rig rig;
    QByteArray big;
    for (int i = 0; i < 20000; ++i)
        big += "net" + QByteArray::number(i) + "77\r\n";
    rig.panel().writeFile("/tmp/scan_parse", big);
    Rig::setRegister(SysRegIdx::WlanScanCount, 255);
    QElapsedTimer clock;
    clock.start();
    rig.page().updateWlanList();
    const qint64 spent = clock.elapsed();
    // Only the first 64 KiB are read: a few thousand items, never all 20000.
    QVERIFY(list(rig.page())->count() < 20000);
    QVERIFY(list(rig.page())->count() > 1000);
    qInfo("a 20000-line scan list: %lld ms for %d items from its first 64 KiB", spent, list(rig.page())->count());
    QVERIFY2(spent < 3000, qPrintable(QString::number(spent)));
}

void TestWirelessWgtUI::tickOnline()
{
    R options;
    options.resolver = "nameserver 1.1.1.1 # eth0\nnameserver 9.9.9.9 # wlan0\nnameserver 8.8.8.8 # wlan0\n"
                       "nameserver 7.7.7.7 # wlan0\n";
    Rig rig(options);
    Rig::setRegister(SysRegIdx::WlanState, 2);
    Rig::setRegisterBytes(SysRegIdx::WlanSsid, "  my   home ", 32);
    Rig::setAddressRegister(SysRegIdx::WlanIp, "192.168.5.77");
    Rig::setAddressRegister(SysRegIdx::WlanMask, "255.255.255.0");
    Rig::setAddressRegister(SysRegIdx::WlanGateway, "192.168.5.1");
    Rig::setRegisterBytes(SysRegIdx::WlanMac, "a0b1c2d3e4f5", 12);
    rig.page().KscanWifiList_Timer();
    WirelessWgtUI &page = rig.page();
    QCOMPARE(child<QLabel>(page, "label_wifiStatus")->text(), QStringLiteral("Online"));
    QCOMPARE(child<QLabel>(page, "label_connectedWlanNm")->text(), QStringLiteral("my home"));
    QCOMPARE(child<QLabel>(page, "label_connectedWifiName")->text(), QStringLiteral("my home"));
    QCOMPARE(ipOf(page, "ipLineEdit_ip"), QStringLiteral("192.168.5.77"));
    QCOMPARE(ipOf(page, "ipLineEdit_mask"), QStringLiteral("255.255.255.0"));
    QCOMPARE(ipOf(page, "ipLineEdit_gateway"), QStringLiteral("192.168.5.1"));
    QCOMPARE(child<QLineEdit>(page, "lineEdit_macAddr")->text(), QStringLiteral("a0:b1:c2:d3:e4:f5"));
    QCOMPARE(ipOf(page, "ipLineEdit_dns1"), QStringLiteral("9.9.9.9"));
    QCOMPARE(ipOf(page, "ipLineEdit_dns2"), QStringLiteral("8.8.8.8"));
    QCOMPARE(labelImage(page, "label_connectedWifiState"), pictureImage(":/Resources/connected.svg"));
    // An empty MAC register keeps the last MAC shown.
    Rig::setRegisterBytes(SysRegIdx::WlanMac, QByteArray(), 12);
    page.KscanWifiList_Timer();
    QCOMPARE(child<QLineEdit>(page, "lineEdit_macAddr")->text(), QStringLiteral("a0:b1:c2:d3:e4:f5"));
    // A 32-byte SSID without NUL is read within its register.
    Rig::setRegisterBytes(SysRegIdx::WlanSsid, QByteArray(32, 'x'), 32);
    Rig::setRegisterBytes(SysRegIdx::WlanPassphrase, "secret", 63);
    page.KscanWifiList_Timer();
    QCOMPARE(child<QLabel>(page, "label_connectedWlanNm")->text(), QString(32, QLatin1Char('x')));
    // No resolver file: the DNS fields keep their values.
    rig.panel().removeFile("/etc/resolv.conf");
    page.KscanWifiList_Timer();
    QCOMPARE(ipOf(page, "ipLineEdit_dns1"), QStringLiteral("9.9.9.9"));
}

void TestWirelessWgtUI::tickOddStates_data()
{
    QTest::addColumn<int>("state");
    QTest::newRow("0") << 0;
    QTest::newRow("7") << 7;
    QTest::newRow("255") << 255;
}

void TestWirelessWgtUI::tickOddStates()
{
    QFETCH(int, state);
    Rig rig;
    Rig::setRegister(SysRegIdx::WlanState, 2);
    Rig::setRegisterBytes(SysRegIdx::WlanSsid, "home", 32);
    rig.page().KscanWifiList_Timer();
    QCOMPARE(child<QLabel>(rig.page(), "label_connectedWlanNm")->text(), QStringLiteral("home"));
    Rig::setRegister(SysRegIdx::WlanState, quint8(state));
    rig.page().KscanWifiList_Timer();
    QCOMPARE(child<QLabel>(rig.page(), "label_wifiStatus")->text(), QStringLiteral("Disabled"));
    QVERIFY(child<QLabel>(rig.page(), "label_connectedWlanNm")->text().isEmpty());
    QVERIFY(child<QLabel>(rig.page(), "label_connectedWifiName")->text().isEmpty());
    QCOMPARE(labelImage(rig.page(), "label_connectedWifiState"), pictureImage(":/Resources/unconnnected.svg"));
    QCOMPARE(labelImage(rig.page(), "label_connectedWifiLogo"), pictureImage(":/Resources/wifi0.svg"));
}

void TestWirelessWgtUI::searchPageScrollsToTopOnConnect()
{
    Rig rig;
    rig.page().show();
    QByteArray many;
    for (int i = 0; i < 30; ++i)
        many += "n" + QByteArray::number(i) + "50\r\n";
    rig.panel().writeFile("/tmp/scan_parse", many);
    Rig::setRegister(SysRegIdx::WlanScanCount, 30);
    child<QStackedWidget>(rig.page(), "stackedWidget")->setCurrentIndex(1);
    QScrollBar *bar = child<QScrollArea>(rig.page(), "scrollArea_wifiSearchPage")->verticalScrollBar();
    QTRY_VERIFY(bar->maximum() > 0);
    bar->setValue(bar->maximum());
    Rig::setRegister(SysRegIdx::WlanState, 2);
    rig.page().KscanWifiList_Timer();
    QCOMPARE(bar->value(), 0);
    // Only the edge scrolls.
    bar->setValue(bar->maximum());
    rig.page().KscanWifiList_Timer();
    QCOMPARE(bar->value(), bar->maximum());
}

void TestWirelessWgtUI::groupBoxOpensSearchPage()
{
    Rig rig;
    rig.page().show();
    auto *box = child<QGroupBox>(rig.page(), "groupBox_skip");
    auto *stack = child<QStackedWidget>(rig.page(), "stackedWidget");
    QTest::mousePress(box, Qt::LeftButton);
    QCOMPARE(box->styleSheet(), QStringLiteral("QGroupBox{background: #e6e7e9;}"));
    QCOMPARE(stack->currentIndex(), 0);
    rig.panel().writeFile("/tmp/scan_parse", "near60\r\n");
    Rig::setRegister(SysRegIdx::WlanScanCount, 1);
    QTest::mouseRelease(box, Qt::LeftButton);
    QCOMPARE(stack->currentIndex(), 1);
    // The search page shows the list at once, not at the next tick.
    QCOMPARE(itemTexts(rig.page()), QStringList {"near"});
    QCOMPARE(box->styleSheet(), QStringLiteral("QGroupBox{background: transparent;}"));
    QTest::mouseClick(child<QPushButton>(rig.page(), "pushButton_backToPage"), Qt::LeftButton);
    QCOMPARE(stack->currentIndex(), 0);
    // Switched off: the row does not open the search page.
    rig.page().setWifiWgtEnable(true);
    QTest::mousePress(box, Qt::LeftButton);
    QTest::mouseRelease(box, Qt::LeftButton);
    QCOMPARE(stack->currentIndex(), 0);
}

PANEL_GUI_TEST_MAIN(TestWirelessWgtUI)
#include "tst_wirelesswgtui.moc"
