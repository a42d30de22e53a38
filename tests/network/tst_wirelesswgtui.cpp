// The WLAN tab on a simulated panel: scan list, the 1-second tick, starting
// a connection, WLAN off/on, static/DHCP addressing, DNS, reset and the
// adapter choice, checked through registers, files and recorded commands.
#include "wirelesspagelook.h"
#include "wirelesspswdialog.h"
#include "wirelesswgtui.h"
#include "wlanpagerig.h"

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

namespace {

using Rig = WlanPageRig;
using R = Rig::Options;

template <typename T>
T *child(WirelessWgtUI &page, const char *name)
{
    T *widget = page.findChild<T *>(QLatin1String(name));
    if (!widget)
        qWarning("no child %s", name);
    return widget;
}

QListWidget *list(WirelessWgtUI &page) { return child<QListWidget>(page, "listWidget_wifi"); }

QStringList itemTexts(WirelessWgtUI &page)
{
    QStringList texts;
    for (int i = 0; i < list(page)->count(); ++i)
        texts << list(page)->item(i)->text();
    return texts;
}

QStringList itemIcons(WirelessWgtUI &page)
{
    QStringList icons;
    for (int i = 0; i < list(page)->count(); ++i)
        icons << list(page)->item(i)->data(Qt::UserRole).toString();
    return icons;
}

QByteArray gb2312(const QString &text)
{
    return QTextCodec::codecForName("GB2312")->fromUnicode(text);
}

QImage labelImage(WirelessWgtUI &page, const char *name)
{
    return child<QLabel>(page, name)->pixmap(Qt::ReturnByValue).toImage();
}

QImage pictureImage(const char *path)
{
    return WirelessPageLook::picture(QLatin1String(path), WirelessPageLook::StateIconSize).toImage();
}

QByteArray passwordTable(const QList<QByteArray> &names, const QList<QByteArray> &passwords)
{
    QByteArray bytes(480, '\0');
    for (int i = 0; i < names.size(); ++i)
        bytes.replace(i * 32, names.at(i).size(), names.at(i));
    for (int i = 0; i < passwords.size(); ++i)
        bytes.replace(160 + i * 64, passwords.at(i).size(), passwords.at(i));
    return bytes;
}

QListWidgetItem *itemNamed(WirelessWgtUI &page, const QString &ssid)
{
    const QList<QListWidgetItem *> found = list(page)->findItems(ssid, Qt::MatchExactly);
    return found.isEmpty() ? nullptr : found.first();
}

// Closes any modal widget that shows up, and remembers that one did.
class ModalGuard
{
public:
    ModalGuard()
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this]() {
            if (QWidget *modal = QApplication::activeModalWidget()) {
                m_seen = true;
                modal->close();
            }
        });
        m_timer.start(10);
    }
    bool seen() const { return m_seen; }

private:
    QTimer m_timer;
    bool m_seen = false;
};

QString ipOf(WirelessWgtUI &page, const char *name)
{
    return child<IPLineEdit>(page, name)->getIPVal();
}

} // namespace

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
    void passwordErrorPrompts_data();
    void passwordErrorPrompts();
    void passwordErrorWhileDialogOpen();
    void cancelStopsPromptsUntilNextClick();
    void openNetworkConnectsWithoutDialog();
    void savedPasswordSlotFive();
    void sixthSavedEntryNeverConsulted();
    void protectedWithoutSavedPasswordOpensDialog();
    void clickWithoutEncryptionList();
    void clickWithoutPasswordFile();
    void longSsidAndShellCharactersStayData();
    void groupBoxOpensSearchPage();
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

void TestWirelessWgtUI::passwordErrorPrompts_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("button");
    QTest::newRow("english") << 1 << "Waring" << "Password error, please re-enter" << "OK";
    QTest::newRow("chinese") << 0 << "" << QStringLiteral("密码错误，请重新输入") << QStringLiteral("确定");
}

void TestWirelessWgtUI::passwordErrorPrompts()
{
    QFETCH(int, language);
    QFETCH(QString, title);
    QFETCH(QString, text);
    QFETCH(QString, button);
    Rig rig;
    Rig::setRegister(SysRegIdx::Language, quint8(language));
    rig.panel().writeFile("/tmp/scan_parse", "home70\r\n");
    rig.panel().writeFile("/tmp/wifiEnc", "home+1\n");
    rig.panel().writeFile("/hmi_data/WiFipassword", passwordTable({"home"}, {"oldpass1"}));
    Rig::setRegister(SysRegIdx::WlanScanCount, 1);
    rig.page().updateWlanList();
    rig.page().on_listWidget_wifi_itemClicked(itemNamed(rig.page(), "home"));
    QVERIFY(!rig.page().findChild<WirelessPswDialog *>());
    Rig::setRegister(SysRegIdx::WlanState, 4);
    QString seenTitle, seenText, seenButton;
    ModalDriver::onNext<QMessageBox>([&](QMessageBox *box) {
        seenTitle = box->windowTitle();
        seenText = box->text();
        seenButton = box->buttons().value(0)->text();
        box->buttons().value(0)->click();
    });
    rig.page().KscanWifiList_Timer();
    QCOMPARE(seenTitle, title);
    QCOMPARE(seenText, text);
    QCOMPARE(seenButton.remove(QLatin1Char('&')), button);
    auto *dialog = rig.page().findChild<WirelessPswDialog *>();
    QVERIFY(dialog);
    QCOMPARE(dialog->ssid(), QStringLiteral("home"));
    QVERIFY(dialog->isVisible());
    // The same lasting error state prompts no more.
    ModalGuard guard;
    rig.page().KscanWifiList_Timer();
    QVERIFY(!guard.seen());
    QCOMPARE(rig.page().findChildren<WirelessPswDialog *>().size(), 1);
}

void TestWirelessWgtUI::passwordErrorWhileDialogOpen()
{
    Rig rig;
    rig.panel().writeFile("/tmp/scan_parse", "home70\r\n");
    rig.panel().writeFile("/tmp/wifiEnc", "home+1\n");
    rig.panel().writeFile("/hmi_data/WiFipassword", passwordTable({}, {}));
    Rig::setRegister(SysRegIdx::WlanScanCount, 1);
    rig.page().updateWlanList();
    rig.page().on_listWidget_wifi_itemClicked(itemNamed(rig.page(), "home"));
    QCOMPARE(rig.page().findChildren<WirelessPswDialog *>().size(), 1);
    ModalGuard guard;
    for (int round = 0; round < 2; ++round) {
        Rig::setRegister(SysRegIdx::WlanState, 0);
        rig.page().KscanWifiList_Timer();
        Rig::setRegister(SysRegIdx::WlanState, 4);
        QTest::ignoreMessage(QtDebugMsg, "psdDialog not null........");
        rig.page().KscanWifiList_Timer();
    }
    QVERIFY(!guard.seen());
    QCOMPARE(rig.page().findChildren<WirelessPswDialog *>().size(), 1);
}

void TestWirelessWgtUI::cancelStopsPromptsUntilNextClick()
{
    Rig rig;
    Rig::setRegister(SysRegIdx::Language, 1);
    rig.panel().writeFile("/tmp/scan_parse", "home70\r\nwork70\r\n");
    rig.panel().writeFile("/tmp/wifiEnc", "home+1\nwork+1\n");
    rig.panel().writeFile("/hmi_data/WiFipassword", passwordTable({"home", "work"}, {"password1", "password2"}));
    Rig::setRegister(SysRegIdx::WlanScanCount, 2);
    rig.page().updateWlanList();
    rig.page().on_listWidget_wifi_itemClicked(itemNamed(rig.page(), "home"));
    auto errorEdge = [&rig]() {
        Rig::setRegister(SysRegIdx::WlanState, 0);
        rig.page().KscanWifiList_Timer();
        Rig::setRegister(SysRegIdx::WlanState, 4);
        rig.page().KscanWifiList_Timer();
    };
    ModalDriver::acceptMessageBox();
    errorEdge();
    QPointer<WirelessPswDialog> dialog = rig.page().findChild<WirelessPswDialog *>();
    QVERIFY(dialog);
    emit dialog->frame_close(0);
    QTRY_VERIFY(!dialog);
    {
        ModalGuard guard;
        QTest::ignoreMessage(QtDebugMsg, "psdDialog not null........");
        errorEdge();
        QVERIFY(!guard.seen());
        QVERIFY(!rig.page().findChild<WirelessPswDialog *>());
    }
    // A confirmed attempt re-arms the prompt.
    ModalDriver::acceptMessageBox();
    rig.page().on_listWidget_wifi_itemClicked(itemNamed(rig.page(), "work"));
    errorEdge();
    dialog = rig.page().findChild<WirelessPswDialog *>();
    QVERIFY(dialog);
    QCOMPARE(dialog->ssid(), QStringLiteral("work"));
    emit dialog->frame_close(1);
    QTRY_VERIFY(!dialog);
    ModalDriver::acceptMessageBox();
    errorEdge();
    QVERIFY(rig.page().findChild<WirelessPswDialog *>());
}

void TestWirelessWgtUI::openNetworkConnectsWithoutDialog()
{
    Rig rig;
    rig.panel().writeFile("/tmp/scan_parse", "cafe70\r\n");
    rig.panel().writeFile("/tmp/wifiEnc", "cafe+0\n");
    rig.panel().writeFile("/hmi_data/WiFipassword", passwordTable({"cafe"}, {"savedpass"}));
    Rig::setRegisterBytes(SysRegIdx::WlanPassphrase, QByteArray(63, 'o'), 63);
    Rig::setRegister(SysRegIdx::WlanState, 9);
    Rig::setRegister(SysRegIdx::WlanScanCount, 1);
    rig.page().updateWlanList();
    rig.page().on_listWidget_wifi_itemClicked(itemNamed(rig.page(), "cafe"));
    QVERIFY(!rig.page().findChild<WirelessPswDialog *>());
    QCOMPARE(Rig::registerBytes(SysRegIdx::WlanSsid, 32), QByteArray("cafe").leftJustified(32, '\0'));
    QCOMPARE(Rig::registerBytes(SysRegIdx::WlanPassphrase, 63), QByteArray(63, '\0'));
    QCOMPARE(Rig::registerByte(SysRegIdx::WlanConnectRequest), quint8(1));
    QCOMPARE(Rig::registerByte(SysRegIdx::WlanState), quint8(0));
    QCOMPARE(rig.fifo().registerIndices(),
             (QList<quint32> {SysRegIdx::WlanSsid, SysRegIdx::WlanPassphrase, SysRegIdx::WlanConnectRequest,
                              SysRegIdx::WlanState}));
}

void TestWirelessWgtUI::savedPasswordSlotFive()
{
    Rig rig;
    rig.panel().writeFile("/tmp/scan_parse", "n570\r\n");
    rig.panel().writeFile("/tmp/wifiEnc", "n5+1\n");
    rig.panel().writeFile("/hmi_data/WiFipassword",
                          passwordTable({"n1", "n2", "n3", "n4", "n5"}, {"p1", "p2", "p3", "p4", QByteArray(64, 'k')}));
    Rig::setRegister(SysRegIdx::WlanScanCount, 1);
    rig.page().updateWlanList();
    rig.page().on_listWidget_wifi_itemClicked(itemNamed(rig.page(), "n5"));
    QVERIFY(!rig.page().findChild<WirelessPswDialog *>());
    QCOMPARE(Rig::registerBytes(SysRegIdx::WlanSsid, 32), QByteArray("n5").leftJustified(32, '\0'));
    // The register holds 63 bytes: a full 64-byte slot is cut.
    QCOMPARE(Rig::registerBytes(SysRegIdx::WlanPassphrase, 63), QByteArray(63, 'k'));
    QCOMPARE(rig.fifo().registerIndices(),
             (QList<quint32> {SysRegIdx::WlanSsid, SysRegIdx::WlanPassphrase, SysRegIdx::WlanConnectRequest,
                              SysRegIdx::WlanState}));
}

void TestWirelessWgtUI::sixthSavedEntryNeverConsulted()
{
    Rig rig;
    rig.panel().writeFile("/tmp/scan_parse", "n670\r\n");
    rig.panel().writeFile("/tmp/wifiEnc", "n6+1\n");
    QByteArray table = passwordTable({"n1", "n2", "n3", "n4", "n5"}, {"p1", "p2", "p3", "p4", "p5"});
    rig.panel().writeFile("/hmi_data/WiFipassword", table + QByteArray("n6").leftJustified(32, '\0') + "p6");
    Rig::setRegister(SysRegIdx::WlanScanCount, 1);
    rig.page().updateWlanList();
    rig.page().on_listWidget_wifi_itemClicked(itemNamed(rig.page(), "n6"));
    QVERIFY(rig.page().findChild<WirelessPswDialog *>());
    QVERIFY(rig.fifo().registerIndices().isEmpty());
}

void TestWirelessWgtUI::protectedWithoutSavedPasswordOpensDialog()
{
    Rig rig;
    rig.panel().writeFile("/tmp/scan_parse", "home70\r\n");
    rig.panel().writeFile("/tmp/wifiEnc", "home+1\n");
    // A short table without NULs: bounded, no match, no crash.
    rig.panel().writeFile("/hmi_data/WiFipassword", QByteArray(100, 'h'));
    Rig::setRegister(SysRegIdx::WlanScanCount, 1);
    rig.page().updateWlanList();
    rig.page().on_listWidget_wifi_itemClicked(itemNamed(rig.page(), "home"));
    auto *dialog = rig.page().findChild<WirelessPswDialog *>();
    QVERIFY(dialog);
    QCOMPARE(dialog->ssid(), QStringLiteral("home"));
    QCOMPARE(dialog->parent(), &rig.page());
    // No second dialog is made while one is open... by the tick; a click
    // replaces nothing either: the page keeps its one dialog.
    QVERIFY(rig.fifo().registerIndices().isEmpty());
}

void TestWirelessWgtUI::clickWithoutEncryptionList()
{
    Rig rig;
    rig.panel().writeFile("/tmp/scan_parse", "home70\r\n");
    rig.panel().removeFile("/tmp/wifiEnc");
    Rig::setRegister(SysRegIdx::WlanScanCount, 1);
    rig.page().updateWlanList();
    QTest::ignoreMessage(QtDebugMsg, "open /tmp/scan_result error");
    rig.page().on_listWidget_wifi_itemClicked(itemNamed(rig.page(), "home"));
    QVERIFY(!rig.page().findChild<WirelessPswDialog *>());
    QVERIFY(rig.fifo().registerIndices().isEmpty());
    // Not listed: nothing either.
    rig.panel().writeFile("/tmp/wifiEnc", "other+0\n");
    rig.page().on_listWidget_wifi_itemClicked(itemNamed(rig.page(), "home"));
    QVERIFY(rig.fifo().registerIndices().isEmpty());
}

void TestWirelessWgtUI::clickWithoutPasswordFile()
{
    Rig rig;
    rig.panel().writeFile("/tmp/scan_parse", "home70\r\n");
    rig.panel().writeFile("/tmp/wifiEnc", "home+1\n");
    rig.panel().removeFile("/hmi_data/WiFipassword");
    Rig::setRegister(SysRegIdx::WlanScanCount, 1);
    rig.page().updateWlanList();
    rig.page().on_listWidget_wifi_itemClicked(itemNamed(rig.page(), "home"));
    QVERIFY(!rig.page().findChild<WirelessPswDialog *>());
    QVERIFY(rig.fifo().registerIndices().isEmpty());
}

void TestWirelessWgtUI::longSsidAndShellCharactersStayData()
{
    Rig rig;
    const QByteArray odd = "a+b \"q\" $(reboot);`id`|x";
    rig.panel().writeFile("/tmp/scan_parse", odd + "70\r\n" + QByteArray(32, 'L') + "70\r\n");
    rig.panel().writeFile("/tmp/wifiEnc", QByteArray(32, 'L') + "+0\n" + odd + "+0\n");
    Rig::setRegister(SysRegIdx::WlanScanCount, 2);
    rig.page().updateWlanList();
    QCOMPARE(itemTexts(rig.page()), (QStringList {QString::fromLatin1(odd), QString(32, QLatin1Char('L'))}));
    rig.page().on_listWidget_wifi_itemClicked(itemNamed(rig.page(), QString(32, QLatin1Char('L'))));
    QCOMPARE(Rig::registerBytes(SysRegIdx::WlanSsid, 32), QByteArray(32, 'L'));
    // The "+" SSID finds no line of its own in the encryption list.
    rig.fifo().drain();
    rig.page().on_listWidget_wifi_itemClicked(itemNamed(rig.page(), QString::fromLatin1(odd)));
    QVERIFY(rig.fifo().registerIndices().isEmpty());
    QVERIFY(rig.calls().isEmpty());
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
    QTest::mouseRelease(box, Qt::LeftButton);
    QCOMPARE(stack->currentIndex(), 1);
    QCOMPARE(box->styleSheet(), QStringLiteral("QGroupBox{background: transparent;}"));
    QTest::mouseClick(child<QPushButton>(rig.page(), "pushButton_backToPage"), Qt::LeftButton);
    QCOMPARE(stack->currentIndex(), 0);
    // Switched off: the row does not open the search page.
    rig.page().setWifiWgtEnable(true);
    QTest::mousePress(box, Qt::LeftButton);
    QTest::mouseRelease(box, Qt::LeftButton);
    QCOMPARE(stack->currentIndex(), 0);
}

void TestWirelessWgtUI::wlanOffAndOn()
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

void TestWirelessWgtUI::disabledRegisterHighBits()
{
    // The register is one bit: whatever byte was written, bit 0 decides.
    R options;
    options.registers = {{SysRegIdx::WlanDisabled, 0xFE}};
    Rig rig(options);
    QVERIFY(child<QGroupBox>(rig.page(), "groupBox_skip")->isEnabled());
    QCOMPARE(child<QComboBox>(rig.page(), "comboBox_network")->count(), 3);
}

void TestWirelessWgtUI::staticStoresAndShowsRecord()
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

void TestWirelessWgtUI::staticStopsDhcpClient()
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

void TestWirelessWgtUI::dhcpWhileNotConnected()
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

void TestWirelessWgtUI::dhcpGatewayAndMetric_data()
{
    QTest::addColumn<bool>("secondPort");
    QTest::addColumn<int>("adapter");
    QTest::addColumn<int>("metric");
    QTest::newRow("wlan default, one port") << false << 2 << 0;
    QTest::newRow("wlan default, two ports") << true << 3 << 0;
    QTest::newRow("eth0 default") << false << 1 << 100;
    QTest::newRow("eth1 default") << true << 2 << 100;
}

void TestWirelessWgtUI::dhcpGatewayAndMetric()
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

void TestWirelessWgtUI::editedValuesApplied()
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

void TestWirelessWgtUI::invalidValueRunsNoCommand()
{
    Rig rig;
    rig.page().updateSystemAndSaveToEE(0, "1.2.3");
    rig.page().updateSystemAndSaveToEE(2, "1.2.3.4; reboot");
    QVERIFY(rig.callsOf("ifconfig").isEmpty());
    QVERIFY(rig.callsOf("reboot").isEmpty());
    QVERIFY(!rig.callsOf("route").contains(QStringLiteral("route add default gw 1.2.3.4; reboot dev wlan0 metric 100")));
}

void TestWirelessWgtUI::dnsLines()
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

void TestWirelessWgtUI::dnsResolverOdd_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("missing") << "missing";
    QTest::newRow("folder") << "folder";
    QTest::newRow("no wlan0 line") << "none";
}

void TestWirelessWgtUI::dnsResolverOdd()
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

void TestWirelessWgtUI::adapterChoice()
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

void TestWirelessWgtUI::resetWifi()
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

void TestWirelessWgtUI::resetFlagCannotBeCreated()
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
}

void TestWirelessWgtUI::refreshRetranslates()
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

void TestWirelessWgtUI::pingTestButton()
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

// Qt's style sheet engine keeps rules for every combo box popup it styled:
// the page must not build its adapter list's popup before it is opened.
void TestWirelessWgtUI::comboPopupNotBuiltUpFront()
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

PANEL_GUI_TEST_MAIN(TestWirelessWgtUI)
#include "tst_wirelesswgtui.moc"
