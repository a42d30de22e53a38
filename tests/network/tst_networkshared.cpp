// What the WLAN, 4G and VPN pages share: the default-adapter list's text
// table, the host-language message boxes, the 16-bit address registers and
// the test buttons' looks.
#include "adapterlist.h"
#include "addressregister.h"
#include "languagemessage.h"
#include "modaldriver.h"
#include "sysreg.h"
#include "testbuttonstyle.h"
#include "testharness.h"
#include "testpanel.h"

#include <QMessageBox>
#include <QPushButton>
#include <QtTest>

class TestNetworkShared : public QObject
{
    Q_OBJECT

private slots:
    void adapterChoice_data();
    void adapterChoice();
    void linkRow();
    void addressPacking_data();
    void addressPacking();
    void addressRegisterRoundTrip();
    void addressRegisterClear();
    void registerOfOtherSizeIsLeftAlone();
    void messageFollowsLanguageRegister_data();
    void messageFollowsLanguageRegister();
    void testButtonStyles();
    void registerValueKeepsToItsLength();
};

void TestNetworkShared::adapterChoice_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("link");
    QTest::addColumn<bool>("secondPort");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("interfaceName");
    const int wlan = AdapterList::Wlan;
    const int mobile = AdapterList::Mobile;
    QTest::newRow("wired network0") << "wired network0" << wlan << true << 1 << "eth0";
    QTest::newRow("有线网络0") << QStringLiteral("有线网络0") << mobile << false << 1 << "eth0";
    QTest::newRow("wired network1") << "wired network1" << mobile << true << 2 << "eth1";
    QTest::newRow("有线网络1") << QStringLiteral("有线网络1") << wlan << true << 2 << "eth1";
    QTest::newRow("Auto") << "Auto" << wlan << true << 0 << QString();
    QTest::newRow("自动") << QStringLiteral("自动") << mobile << true << 0 << QString();
    QTest::newRow("wireless, two ports") << "wireless network" << wlan << true << 3 << "wlan0";
    QTest::newRow("无线网络, one port") << QStringLiteral("无线网络") << wlan << false << 2 << "wlan0";
    QTest::newRow("4G, two ports") << "4G network" << mobile << true << 3 << "ppp0";
    QTest::newRow("4G网络, one port") << QStringLiteral("4G网络") << mobile << false << 2 << "ppp0";
    QTest::newRow("4G on the WLAN page") << "4G network" << wlan << true << -1 << QString();
    QTest::newRow("wireless on the 4G page") << "wireless network" << mobile << true << -1 << QString();
    QTest::newRow("empty") << QString() << wlan << true << -1 << QString();
    QTest::newRow("other text") << "wired network2" << mobile << true << -1 << QString();
    QTest::newRow("case matters") << "Wired Network0" << wlan << true << -1 << QString();
}

void TestNetworkShared::adapterChoice()
{
    QFETCH(QString, text);
    QFETCH(int, link);
    QFETCH(bool, secondPort);
    QFETCH(int, index);
    QFETCH(QString, interfaceName);
    const AdapterList::Choice choice = AdapterList::choice(text, AdapterList::Link(link), secondPort);
    QCOMPARE(choice.index, index);
    QCOMPARE(choice.interfaceName, interfaceName);
}

void TestNetworkShared::linkRow()
{
    QCOMPARE(AdapterList::linkRow(true), 3);
    QCOMPARE(AdapterList::linkRow(false), 2);
}

void TestNetworkShared::addressPacking_data()
{
    QTest::addColumn<QString>("dotted");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("readBack");
    QTest::newRow("plain") << "192.168.5.77" << QByteArray::fromHex("c000a80005004d00")
                           << "192.168.5.77";
    QTest::newRow("zero") << "0.0.0.0" << QByteArray(8, '\0') << "0.0.0.0";
    QTest::newRow("wide value kept") << "300.1.2.65535" << QByteArray::fromHex("2c0101000200ffff")
                                     << "300.1.2.65535";
    QTest::newRow("too wide is 0") << "65536.1.1.1" << QByteArray::fromHex("0000010001000100") << "0.1.1.1";
    QTest::newRow("words are 0") << "a.b.c.d" << QByteArray(8, '\0') << "0.0.0.0";
    QTest::newRow("short") << "10.1" << QByteArray::fromHex("0a00010000000000") << "10.1.0.0";
    QTest::newRow("long") << "1.2.3.4.5" << QByteArray::fromHex("0100020003000400") << "1.2.3.4";
    QTest::newRow("negative") << "-1.2.3.4" << QByteArray::fromHex("0000020003000400") << "0.2.3.4";
    QTest::newRow("empty") << QString() << QByteArray(8, '\0') << "0.0.0.0";
}

void TestNetworkShared::addressPacking()
{
    QFETCH(QString, dotted);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, readBack);
    unsigned char packed[AddressRegister::Size];
    memset(packed, 0xAA, sizeof packed);
    AddressRegister::pack(dotted, packed);
    QCOMPARE(QByteArray(reinterpret_cast<const char *>(packed), sizeof packed).toHex(), bytes.toHex());
    QCOMPARE(AddressRegister::dotted(packed), readBack);
}

void TestNetworkShared::addressRegisterRoundTrip()
{
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    AddressRegister::write(SysRegIdx::WlanIp, QStringLiteral("10.20.30.40"));
    unsigned char raw[AddressRegister::Size] = {};
    QCOMPARE(SysReg_Read(SysRegIdx::WlanIp, raw), 0);
    QCOMPARE(QByteArray(reinterpret_cast<const char *>(raw), sizeof raw), QByteArray::fromHex("0a0014001e002800"));
    QCOMPARE(AddressRegister::read(SysRegIdx::WlanIp), QStringLiteral("10.20.30.40"));
}

void TestNetworkShared::addressRegisterClear()
{
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    AddressRegister::write(SysRegIdx::VpnAddress, QStringLiteral("1.2.3.4"));
    AddressRegister::clear(SysRegIdx::VpnAddress);
    QCOMPARE(AddressRegister::read(SysRegIdx::VpnAddress), QStringLiteral("0.0.0.0"));
}

// A wider register would take more bytes than an address has from the
// caller's buffer; a narrower one would be read into the wrong shape.
void TestNetworkShared::registerOfOtherSizeIsLeftAlone()
{
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    unsigned wide = SysReg::RegCount;
    for (unsigned i = 0; i < SysReg::RegCount && wide == SysReg::RegCount; ++i) {
        if (SysReg::table()[i].length > 2 * AddressRegister::Size)
            wide = i;
    }
    QVERIFY(wide < SysReg::RegCount);
    const int length = int(SysReg::table()[wide].length);
    const QByteArray pattern(length, '\x5a');
    QCOMPARE(SysReg_Write(wide, pattern.constData(), unsigned(length)), 0);

    AddressRegister::write(wide, QStringLiteral("1.2.3.4"));
    AddressRegister::clear(wide);
    QByteArray stored(length, '\0');
    QCOMPARE(SysReg_Read(wide, stored.data()), 0);
    QCOMPARE(stored, pattern);
    QCOMPARE(AddressRegister::read(wide), QStringLiteral("0.0.0.0"));
    QCOMPARE(AddressRegister::read(SysReg::RegCount + 5), QStringLiteral("0.0.0.0"));
}

void TestNetworkShared::messageFollowsLanguageRegister_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("button");
    QTest::newRow("0: Chinese") << 0 << QString() << QStringLiteral("请先关闭VPN!") << QStringLiteral("确定");
    QTest::newRow("1: English") << 1 << "Waring" << "Please turn off VPN first!" << "OK";
    QTest::newRow("255: English") << 255 << "Waring" << "Please turn off VPN first!" << "OK";
}

void TestNetworkShared::messageFollowsLanguageRegister()
{
    QFETCH(int, language);
    QFETCH(QString, title);
    QFETCH(QString, text);
    QFETCH(QString, button);
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    const quint8 value = quint8(language);
    QCOMPARE(SysReg_Write(SysRegIdx::Language, &value, 1), 0);
    QCOMPARE(LanguageMessage::chineseSelected(), language == 0);
    QString seenTitle;
    QString seenText;
    QStringList seenButtons;
    ModalDriver::onNext<QMessageBox>([&](QMessageBox *box) {
        seenTitle = box->windowTitle();
        seenText = box->text();
        for (QAbstractButton *b : box->buttons())
            seenButtons << b->text().remove(QLatin1Char('&'));
        box->buttons().first()->click();
    });
    LanguageMessage::warn(nullptr, QStringLiteral("Please turn off VPN first!"), QStringLiteral("请先关闭VPN!"));
    QCOMPARE(ModalDriver::pending(), 0);
    QCOMPARE(seenTitle, title);
    QCOMPARE(seenText, text);
    QCOMPARE(seenButtons, QStringList {button});
}

void TestNetworkShared::testButtonStyles()
{
    QWidget parent;
    QPushButton named(&parent);
    named.setObjectName(QStringLiteral("pushButton_test"));
    named.setStyleSheet(TestButtonStyle::running(named.objectName()));
    QVERIFY(named.styleSheet().contains(QLatin1String("QPushButton#pushButton_test{")));
    QVERIFY(named.styleSheet().contains(QLatin1String("background-color:rgba(255,170,0,150)")));
    QVERIFY(named.styleSheet().contains(QLatin1String("border:2px solid rgba(255,170,0,255)")));
    QVERIFY(named.styleSheet().contains(QLatin1String(":pressed{background-color:rgba(255,170,0,255)")));
    named.setStyleSheet(TestButtonStyle::idle(named.objectName()));
    QVERIFY(named.styleSheet().contains(QLatin1String("background-color:rgba(163, 198, 218, 200)")));
    QVERIFY(named.styleSheet().contains(QLatin1String("border:2px solid #008cba")));
    QVERIFY(named.styleSheet().contains(QLatin1String(":pressed{background-color:#008cba")));
    QVERIFY(TestButtonStyle::idle().contains(QLatin1String("QPushButton#TestButton{")));
    // The orange look must reach the button it names.
    parent.show();
    QVERIFY(QTest::qWaitForWindowExposed(&parent));
    named.setStyleSheet(TestButtonStyle::running(named.objectName()));
    const QImage image = named.grab().toImage();
    const QColor middle = image.pixelColor(image.width() / 2, image.height() / 2);
    QVERIFY2(middle.red() > 200 && middle.blue() < 150, qPrintable(middle.name()));
}

// A value written wider than the table stores reads back as what was
// stored; the neighbouring register is not part of it.
void TestNetworkShared::registerValueKeepsToItsLength()
{
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    const quint32 wide = 0x01020304;
    QCOMPARE(SysReg_Write(SysRegIdx::Mobile4GState, &wide, sizeof wide), 0);
    // The register layer always moves the table's width (2 bytes here).
    const quint8 neighbour[2] = {0x77, 0x00};
    QCOMPARE(SysReg_Write(126, neighbour, 1), 0);
    QCOMPARE(SysReg_ReadValue(SysRegIdx::Mobile4GState), quint32(0x04));
    const unsigned char address[8] = {1, 0, 2, 0, 3, 0, 4, 0};
    QCOMPARE(SysReg_Write(SysRegIdx::VpnAddress, address, sizeof address), 0);
    QCOMPARE(SysReg_ReadValue(SysRegIdx::VpnAddress), quint32(0x00020001));
    QCOMPARE(SysReg_ReadValue(SysReg::RegCount), quint32(0));
}

PANEL_GUI_TEST_MAIN(TestNetworkShared)
#include "tst_networkshared.moc"
