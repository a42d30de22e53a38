// Starting a WLAN connection from the list, and the password-error prompt of
// the tick, on a simulated panel: registers and their announcement order,
// the password dialog the page opens, and the files it reads.
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

class TestWlanConnection : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QTRY_COMPARE(ModalDriver::pending(), 0); }

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
};

void TestWlanConnection::passwordErrorPrompts_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("button");
    QTest::newRow("english") << 1 << "Waring" << "Password error, please re-enter" << "OK";
    QTest::newRow("chinese") << 0 << "" << QStringLiteral("密码错误，请重新输入") << QStringLiteral("确定");
}

void TestWlanConnection::passwordErrorPrompts()
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

void TestWlanConnection::passwordErrorWhileDialogOpen()
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

void TestWlanConnection::cancelStopsPromptsUntilNextClick()
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

void TestWlanConnection::openNetworkConnectsWithoutDialog()
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

void TestWlanConnection::savedPasswordSlotFive()
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

void TestWlanConnection::sixthSavedEntryNeverConsulted()
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

void TestWlanConnection::protectedWithoutSavedPasswordOpensDialog()
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

void TestWlanConnection::clickWithoutEncryptionList()
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

void TestWlanConnection::clickWithoutPasswordFile()
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

void TestWlanConnection::longSsidAndShellCharactersStayData()
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

PANEL_GUI_TEST_MAIN(TestWlanConnection)
#include "tst_wlanconnection.moc"
