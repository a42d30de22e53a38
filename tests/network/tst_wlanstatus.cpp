// What the WLAN page makes of the host's state and addresses: the tick's
// decision, the status texts, the MAC text, the DHCP gateway and metric,
// and the commands built from values that came from files.
#include "commandtext.h"
#include "wlanaddressing.h"
#include "wlanstatus.h"
#include "pidfile.h"
#include "testpanel.h"
#include "testharness.h"

#include <QtTest>

class TestWlanStatus : public QObject
{
    Q_OBJECT

private slots:
    void tick_data();
    void tick();
    void statusText();
    void mac_data();
    void mac();
    void prefix_data();
    void prefix();
    void metric_data();
    void metric();
    void recordText();
    void killRefusesOddPids_data();
    void killRefusesOddPids();
};

void TestWlanStatus::tick_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("disabled");
    QTest::addColumn<int>("last");
    QTest::addColumn<bool>("promptAllowed");
    QTest::addColumn<int>("action");
    QTest::addColumn<int>("nextLast");
    QTest::addColumn<bool>("scroll");
    using W = WlanStatus::Action;
    QTest::newRow("going online scrolls once") << 2 << false << 0 << true << int(W::ShowOnline) << 2 << true;
    QTest::newRow("staying online") << 2 << false << 2 << true << int(W::ShowOnline) << 2 << false;
    QTest::newRow("online but switched off") << 2 << true << 0 << true << int(W::ShowOffline) << 2 << false;
    QTest::newRow("password error edge") << 4 << false << 0 << true << int(W::PromptPassword) << 4 << false;
    QTest::newRow("password error, dialog open") << 4 << false << 0 << false << int(W::PromptSuppressed) << 4 << false;
    QTest::newRow("password error already seen") << 4 << false << 4 << true << int(W::ShowOffline) << 4 << false;
    QTest::newRow("password error while off") << 4 << true << 0 << true << int(W::ShowOffline) << 4 << false;
    QTest::newRow("idle") << 0 << false << 2 << true << int(W::ShowOffline) << 0 << false;
    QTest::newRow("state 7") << 7 << false << 0 << true << int(W::ShowOffline) << 7 << false;
    QTest::newRow("state 255") << 255 << false << 4 << true << int(W::ShowOffline) << 255 << false;
}

void TestWlanStatus::tick()
{
    QFETCH(int, state);
    QFETCH(bool, disabled);
    QFETCH(int, last);
    QFETCH(bool, promptAllowed);
    QFETCH(int, action);
    QFETCH(int, nextLast);
    QFETCH(bool, scroll);
    const WlanStatus::Tick tick = WlanStatus::decide(state, disabled, last, promptAllowed);
    QCOMPARE(int(tick.action), action);
    QCOMPARE(tick.lastState, nextLast);
    QCOMPARE(tick.scrollToTop, scroll);
}

void TestWlanStatus::statusText()
{
    QCOMPARE(QString(WlanStatus::statusSource(WlanStatus::ShowOnline)), QStringLiteral("Online"));
    QCOMPARE(QString(WlanStatus::statusSource(WlanStatus::ShowOffline)), QStringLiteral("Disabled"));
    QCOMPARE(QString(WlanStatus::statusSource(WlanStatus::PromptPassword)), QStringLiteral("Disabled"));
}

void TestWlanStatus::mac_data()
{
    QTest::addColumn<QByteArray>("raw");
    QTest::addColumn<QString>("previous");
    QTest::addColumn<QString>("text");
    QTest::newRow("twelve digits") << QByteArray("a0b1c2d3e4f5") << "" << "a0:b1:c2:d3:e4:f5";
    QTest::newRow("longer register") << QByteArray("a0b1c2d3e4f5ffff") << "" << "a0:b1:c2:d3:e4:f5";
    QTest::newRow("empty, none before") << QByteArray() << "" << "00:00:00:00:00:00";
    QTest::newRow("empty keeps previous") << QByteArray() << "11:22:33:44:55:66" << "11:22:33:44:55:66";
    QTest::newRow("stops at NUL") << QByteArray("a0b1\0c2d3e4f5", 13) << "" << "a0:b1";
    QTest::newRow("odd length") << QByteArray("abc") << "" << "ab:c";
}

void TestWlanStatus::mac()
{
    QFETCH(QByteArray, raw);
    QFETCH(QString, previous);
    QFETCH(QString, text);
    QCOMPARE(WlanStatus::macText(raw, previous), text);
}

void TestWlanStatus::prefix_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<QString>("gateway");
    QTest::newRow("lease") << "192.168.5.77" << true << "192.168.5.1";
    QTest::newRow("host 1 already") << "10.0.0.1" << true << "10.0.0.1";
    QTest::newRow("not an address") << "192.168.5" << false << "";
    QTest::newRow("shell text") << "1.2.3.4;reboot" << false << "";
    QTest::newRow("octet too big") << "256.1.1.1" << false << "";
    QTest::newRow("empty") << "" << false << "";
}

void TestWlanStatus::prefix()
{
    QFETCH(QString, address);
    QFETCH(bool, ok);
    QFETCH(QString, gateway);
    int parts[3] = {};
    QCOMPARE(WlanAddressing::networkPrefix(address, parts), ok);
    if (ok)
        QCOMPARE(QStringLiteral("%1.%2.%3.1").arg(parts[0]).arg(parts[1]).arg(parts[2]), gateway);
}

void TestWlanStatus::metric_data()
{
    QTest::addColumn<int>("adapter");
    QTest::addColumn<bool>("secondPort");
    QTest::addColumn<bool>("isDefault");
    QTest::newRow("wlan row without eth1") << 2 << false << true;
    QTest::newRow("wlan row with eth1") << 3 << true << true;
    QTest::newRow("eth1 row with eth1") << 2 << true << false;
    QTest::newRow("auto") << 0 << false << false;
    QTest::newRow("out of range") << 255 << true << false;
}

void TestWlanStatus::metric()
{
    QFETCH(int, adapter);
    QFETCH(bool, secondPort);
    QFETCH(bool, isDefault);
    QCOMPARE(WlanAddressing::isDefaultAdapter(adapter, secondPort), isDefault);
}

void TestWlanStatus::recordText()
{
    QCOMPARE(WlanAddressing::recordText(0x0105a8c0u), QStringLiteral("192.168.5.1"));
    QCOMPARE(WlanAddressing::recordText(0), QStringLiteral("0.0.0.0"));
}

void TestWlanStatus::killRefusesOddPids_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("valid");
    QTest::newRow("text") << QByteArray("udhcpc\n") << false;
    QTest::newRow("zero") << QByteArray("0\n") << false;
    QTest::newRow("minus one") << QByteArray("-1\n") << false;
    QTest::newRow("init") << QByteArray("1") << false;
    QTest::newRow("shell text") << QByteArray("12;reboot") << false;
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("a client") << QByteArray("4321\n") << true;
}

// Only the command is built here: such pid files never meet a running page.
void TestWlanStatus::killRefusesOddPids()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, valid);
    TestPanel panel;
    QVERIFY(panel.isValid());
    QVERIFY(panel.writeFile("/var/run/udhcpc2.pid", content));
    const CommandText command = CommandText("kill %d").processId(PidFile::read("/var/run/udhcpc2.pid"));
    QCOMPARE(command.isValid(), valid);
    if (valid)
        QCOMPARE(command.text(), QByteArray("kill 4321"));
}

PANEL_TEST_MAIN(TestWlanStatus)
#include "tst_wlanstatus.moc"
