// The simulator's steps for the WLAN, 4G and VPN tabs: which key of the
// on-screen keyboard types a character, which steps exist, and the masks
// the lab's link interfaces take.
#include "linkinterfaces.h"
#include "linkpagedriver.h"
#include "testharness.h"

#include <QtTest>

class TestLinkPageSteps : public QObject
{
    Q_OBJECT

private slots:
    void keyFor_data();
    void keyFor();
    void isStep_data();
    void isStep();
    void prefixLength_data();
    void prefixLength();
    void linkInterfaceNames();
};

void TestLinkPageSteps::keyFor_data()
{
    QTest::addColumn<QChar>("character");
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("caps");
    QTest::newRow("letter") << QChar('q') << "pushButton_button_q_keyboard" << false;
    QTest::newRow("capital") << QChar('Q') << "pushButton_button_q_keyboard" << true;
    QTest::newRow("digit") << QChar('1') << "pushButton_button_1_keyboard" << false;
    QTest::newRow("digit's symbol") << QChar('!') << "pushButton_button_1_keyboard" << true;
    QTest::newRow("zero's symbol") << QChar(')') << "pushButton_button_0_keyboard" << true;
    QTest::newRow("equals") << QChar('=') << "pushButton_button_denghao_keyboard" << false;
    QTest::newRow("plus") << QChar('+') << "pushButton_button_denghao_keyboard" << true;
    QTest::newRow("backslash") << QChar('\\') << "pushButton_button_youxie_keyboard" << false;
    QTest::newRow("bar") << QChar('|') << "pushButton_button_youxie_keyboard" << true;
    QTest::newRow("slash") << QChar('/') << "pushButton_button_zuoxie_keyboard" << false;
    QTest::newRow("question mark") << QChar('?') << "pushButton_button_zuoxie_keyboard" << true;
    QTest::newRow("colon without caps") << QChar(':') << "pushButton_button_maoHao_keyboard" << false;
    QTest::newRow("semicolon with caps") << QChar(';') << "pushButton_button_maoHao_keyboard" << true;
    QTest::newRow("minus") << QChar('-') << "pushButton_button_xiaHuaXian_keyboard" << false;
    QTest::newRow("underscore") << QChar('_') << "pushButton_button_xiaHuaXian_keyboard" << true;
    QTest::newRow("dot") << QChar('.') << "pushButton_button_dian_keyboard" << false;
    QTest::newRow("greater") << QChar('>') << "pushButton_button_dian_keyboard" << true;
    QTest::newRow("comma") << QChar(',') << "pushButton_button_douhao_keyboard" << false;
    QTest::newRow("less") << QChar('<') << "pushButton_button_douhao_keyboard" << true;
    QTest::newRow("brackets") << QChar('[') << "pushButton_button_zuoZhongKuohao_keyboard" << false;
    QTest::newRow("braces") << QChar('}') << "pushButton_button_youZhongKuohao_keyboard" << true;
    QTest::newRow("space") << QChar(' ') << "pushButton_button_kongge_keyboard" << false;
    QTest::newRow("no key: quote") << QChar('"') << "" << false;
    QTest::newRow("no key: chinese") << QChar(0x4e2d) << "" << false;
    QTest::newRow("no key: tab") << QChar('\t') << "" << false;
}

void TestLinkPageSteps::keyFor()
{
    QFETCH(QChar, character);
    QFETCH(QString, key);
    QFETCH(bool, caps);
    bool needsCaps = !caps;
    QCOMPARE(LinkPageDriver::keyFor(character, &needsCaps), key);
    QCOMPARE(needsCaps, caps);
}

void TestLinkPageSteps::isStep_data()
{
    QTest::addColumn<QString>("step");
    QTest::addColumn<bool>("known");
    for (const char *step : {"wlan", "4g", "vpn", "wlan-search", "wlan-scan", "wlan-pick=Office", "psw-keyboard",
                             "psw-type=abc", "psw-caps", "psw-enter", "psw-connect", "psw-cancel", "4g-on", "4g-off",
                             "vpn-on", "vpn-off", "vpn-region=0", "vpn-region=1"})
        QTest::newRow(step) << QString::fromLatin1(step) << true;
    for (const char *step : {"wlan-pick=", "psw-type=", "vpn-region=2", "4g-drop", "wlan-drop", "psw", "eth0"})
        QTest::newRow(step) << QString::fromLatin1(step) << false;
}

void TestLinkPageSteps::isStep()
{
    QFETCH(QString, step);
    QFETCH(bool, known);
    QCOMPARE(LinkPageDriver::isStep(step), known);
}

void TestLinkPageSteps::prefixLength_data()
{
    QTest::addColumn<QString>("mask");
    QTest::addColumn<int>("length");
    QTest::newRow("/24") << "255.255.255.0" << 24;
    QTest::newRow("/32") << "255.255.255.255" << 32;
    QTest::newRow("/1") << "128.0.0.0" << 1;
    QTest::newRow("/0") << "0.0.0.0" << 0;
    QTest::newRow("hole") << "255.0.255.0" << -1;
    QTest::newRow("octet too big") << "255.255.256.0" << -1;
    QTest::newRow("text") << "mask" << -1;
    QTest::newRow("empty") << "" << -1;
    QTest::newRow("five parts") << "255.255.255.0.0" << -1;
}

void TestLinkPageSteps::prefixLength()
{
    QFETCH(QString, mask);
    QFETCH(int, length);
    QCOMPARE(LinkInterfaces::prefixLength(mask), length);
}

void TestLinkPageSteps::linkInterfaceNames()
{
    QVERIFY(LinkInterfaces::isLinkInterface(QStringLiteral("wlan0")));
    QVERIFY(LinkInterfaces::isLinkInterface(QStringLiteral("ppp0")));
    for (const char *other : {"eth0", "eth1", "lo", "wlan1", "", "wlan0; reboot"})
        QVERIFY(!LinkInterfaces::isLinkInterface(QString::fromLatin1(other)));
    // An interface of another name is never touched: nothing to run, nothing said.
    LinkInterfaces lab(QStringLiteral("/nonexistent/ip"));
    QSignalSpy said(&lab, &LinkInterfaces::logLine);
    lab.apply(QStringLiteral("eth0"), QStringLiteral("10.0.0.1"), QStringLiteral("255.0.0.0"));
    QCOMPARE(said.size(), 0);
}

PANEL_TEST_MAIN(TestLinkPageSteps)
#include "tst_linkpagesteps.moc"
