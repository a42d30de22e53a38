#include "commandtext.h"
#include "testharness.h"

#include <QtTest>

#include <functional>

// Hostile values must never become command text: each entry of the builder
// either places a value it has checked or makes the whole command invalid.
class TestCommandText : public QObject
{
    Q_OBJECT

private slots:
    void goodCommands_data();
    void goodCommands();
    void hostileAddresses_data();
    void hostileAddresses();
    void hostileInterfaceNames_data();
    void hostileInterfaceNames();
    void processIds_data();
    void processIds();
    void adapters_data();
    void adapters();
    void hostileWords_data();
    void hostileWords();
    void hostileStdStringAddress();
    void textMustFitItsBuffer();
    void argumentsMustMatchThePattern_data();
    void argumentsMustMatchThePattern();
    void laterArgumentsCannotRepairARejection();
};

using Build = std::function<CommandText()>;
Q_DECLARE_METATYPE(Build)

void TestCommandText::goodCommands_data()
{
    QTest::addColumn<Build>("build");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("address") << Build([] { return CommandText("ifconfig eth%d %s").adapter(1).ipv4(QStringLiteral("192.168.1.20")); })
                             << QByteArray("ifconfig eth1 192.168.1.20");
    QTest::newRow("mask") << Build([] { return CommandText("ifconfig eth%d netmask %s").adapter(0).ipv4(QStringLiteral("255.255.255.0")); })
                          << QByteArray("ifconfig eth0 netmask 255.255.255.0");
    QTest::newRow("all zero") << Build([] { return CommandText("route add default gw %s").ipv4(QStringLiteral("0.0.0.0")); })
                              << QByteArray("route add default gw 0.0.0.0");
    QTest::newRow("negative number") << Build([] { return CommandText("date -s %d-%d-%d").number(-1).number(0).number(2147483647); })
                                     << QByteArray("date -s -1-0-2147483647");
    QTest::newRow("word") << Build([] { return CommandText("/root/plat-intf/setbeep %s").word("short"); })
                          << QByteArray("/root/plat-intf/setbeep short");
    QTest::newRow("pid") << Build([] { return CommandText("kill %d").processId(2); }) << QByteArray("kill 2");
    QTest::newRow("interface") << Build([] { return CommandText("udhcpc -i %s").interfaceName(QStringLiteral("wlan0")); })
                               << QByteArray("udhcpc -i wlan0");
    QTest::newRow("percent kept") << Build([] { return CommandText("echo 100%% %d").number(5); }) << QByteArray("echo 100% 5");
    QTest::newRow("no arguments") << Build([] { return CommandText("sync"); }) << QByteArray("sync");
}

void TestCommandText::goodCommands()
{
    QFETCH(Build, build);
    QFETCH(QByteArray, text);
    const CommandText command = build();
    QVERIFY2(command.isValid(), qPrintable(command.errorString()));
    QCOMPARE(command.text(), text);
    QCOMPARE(command.errorString(), QString());
}

void TestCommandText::hostileAddresses_data()
{
    QTest::addColumn<QString>("value");
    QTest::newRow("separator") << "1.2.3.4; reboot";
    QTest::newRow("substitution") << "$(reboot)";
    QTest::newRow("backticks") << "1.2.3.`reboot`";
    QTest::newRow("quote") << "1.2.3.4' '";
    QTest::newRow("double quote") << "\"1.2.3.4\"";
    QTest::newRow("newline") << "1.2.3.4\nreboot";
    QTest::newRow("trailing blank") << "1.2.3.4 ";
    QTest::newRow("leading blank") << " 1.2.3.4";
    QTest::newRow("pipe") << "1.2.3.4|sh";
    QTest::newRow("redirect") << "1.2.3.4>/etc/passwd";
    QTest::newRow("very long") << QString(5000, QLatin1Char('1'));
    QTest::newRow("long octets") << "1111.2.3.4";
    QTest::newRow("octet 256") << "256.1.1.1";
    QTest::newRow("three parts") << "192.168.1";
    QTest::newRow("five parts") << "1.2.3.4.5";
    QTest::newRow("empty part") << "1..2.3";
    QTest::newRow("empty") << "";
    QTest::newRow("minus one") << "-1";
    QTest::newRow("zero") << "0";
    QTest::newRow("hex") << "0x7f.0.0.1";
    QTest::newRow("sign") << "+1.2.3.4";
    QTest::newRow("IPv6") << "::1";
    QTest::newRow("arabic-indic digits") << QString::fromUtf8("\xd9\xa1.2.3.4");
}

void TestCommandText::hostileAddresses()
{
    QFETCH(QString, value);
    const CommandText command = CommandText("ifconfig eth%d %s").adapter(0).ipv4(value);
    QVERIFY(!command.isValid());
    QVERIFY(command.text().isEmpty());
    QVERIFY(!command.errorString().isEmpty());
    QVERIFY(!CommandText::isIpv4(value));
    // The log shows at most a short, one-line excerpt of the value.
    QVERIFY(!command.errorString().contains(QLatin1Char('\n')));
    QVERIFY(command.errorString().size() < 120);
}

void TestCommandText::hostileInterfaceNames_data()
{
    QTest::addColumn<QString>("value");
    QTest::newRow("separator") << "eth0;reboot";
    QTest::newRow("substitution") << "$(reboot)";
    QTest::newRow("unknown") << "eth2";
    QTest::newRow("case") << "ETH0";
    QTest::newRow("blank") << "eth0 ";
    QTest::newRow("option") << "-a";
    QTest::newRow("empty") << "";
    QTest::newRow("newline") << "wlan0\n";
}

void TestCommandText::hostileInterfaceNames()
{
    QFETCH(QString, value);
    const CommandText command = CommandText("udhcpc -i %s").interfaceName(value);
    QVERIFY(!command.isValid());
    QVERIFY(command.text().isEmpty());
}

void TestCommandText::processIds_data()
{
    QTest::addColumn<qlonglong>("pid");
    QTest::addColumn<bool>("valid");
    QTest::newRow("every process") << qlonglong(-1) << false;
    QTest::newRow("own group") << qlonglong(0) << false;
    QTest::newRow("init") << qlonglong(1) << false;
    QTest::newRow("a group") << qlonglong(-4242) << false;
    QTest::newRow("lowest real") << qlonglong(2) << true;
    QTest::newRow("large") << qlonglong(4194304) << true;
}

void TestCommandText::processIds()
{
    QFETCH(qlonglong, pid);
    QFETCH(bool, valid);
    const CommandText command = CommandText("kill %d").processId(pid);
    QCOMPARE(command.isValid(), valid);
    QCOMPARE(command.text(), valid ? "kill " + QByteArray::number(pid) : QByteArray());
}

void TestCommandText::adapters_data()
{
    QTest::addColumn<int>("adapter");
    QTest::addColumn<bool>("valid");
    QTest::newRow("eth0") << 0 << true;
    QTest::newRow("eth1") << 1 << true;
    QTest::newRow("minus one") << -1 << false;
    QTest::newRow("two") << 2 << false;
    QTest::newRow("large") << 100000 << false;
}

void TestCommandText::adapters()
{
    QFETCH(int, adapter);
    QFETCH(bool, valid);
    QCOMPARE(CommandText("ifconfig eth%d up").adapter(adapter).isValid(), valid);
}

void TestCommandText::hostileWords_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("separator") << QByteArray("hmi;reboot");
    QTest::newRow("substitution") << QByteArray("$(reboot)");
    QTest::newRow("blank") << QByteArray("a b");
    QTest::newRow("quote") << QByteArray("a'b");
    QTest::newRow("slash") << QByteArray("../x");
    QTest::newRow("option") << QByteArray("-v");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("newline") << QByteArray("a\nb");
    QTest::newRow("glob") << QByteArray("*");
    QTest::newRow("too long") << QByteArray(65, 'a');
}

void TestCommandText::hostileWords()
{
    QFETCH(QByteArray, value);
    const CommandText command = CommandText("ps -ef | grep %s|grep -v grep", 256).word(value.constData());
    QVERIFY(!command.isValid());
    QVERIFY(command.text().isEmpty());
    QVERIFY(!CommandText("x %s").word(nullptr).isValid());
}

// A NUL inside a std::string would hide the rest from a C-string check.
void TestCommandText::hostileStdStringAddress()
{
    const std::string value("1.2.3.4\0; reboot", 16);
    QVERIFY(!CommandText("route add default gw %s").ipv4(value).isValid());
    QVERIFY(CommandText("route add default gw %s").ipv4(std::string("10.0.0.1")).isValid());
}

// A command cut short at its buffer could mean something else: it is not run.
void TestCommandText::textMustFitItsBuffer()
{
    QVERIFY(CommandText("ifconfig eth%d %s", 30).adapter(0).ipv4(QStringLiteral("255.255.255.255")).isValid());
    // 14 + 15 characters and the NUL: 30 bytes fit 30, not 29.
    QVERIFY(!CommandText("ifconfig eth%d %s", 29).adapter(0).ipv4(QStringLiteral("255.255.255.255")).isValid());
    // The firmware's 128-byte buffer holds 127 characters and the NUL.
    QVERIFY(!CommandText(QByteArray(128, 'x').constData()).isValid());
    QVERIFY(CommandText(QByteArray(127, 'x').constData()).isValid());
    QCOMPARE(CommandText(QByteArray(128, 'x').constData()).text(), QByteArray());
    QVERIFY(CommandText(QByteArray(128, 'x').constData()).errorString().contains(QStringLiteral("does not fit")));
    QVERIFY(!CommandText(nullptr).isValid());
}

void TestCommandText::argumentsMustMatchThePattern_data()
{
    QTest::addColumn<Build>("build");
    QTest::newRow("missing") << Build([] { return CommandText("ifconfig eth%d %s").adapter(0); });
    QTest::newRow("extra") << Build([] { return CommandText("ifconfig eth%d up").adapter(0).number(3); });
    QTest::newRow("text for %d") << Build([] { return CommandText("kill %d").word("abc"); });
    QTest::newRow("number for %s") << Build([] { return CommandText("ping %s").number(1); });
    QTest::newRow("other conversion") << Build([] { return CommandText("echo %x").number(1); });
    QTest::newRow("dangling percent") << Build([] { return CommandText("echo %"); });
}

void TestCommandText::argumentsMustMatchThePattern()
{
    QFETCH(Build, build);
    const CommandText command = build();
    QVERIFY(!command.isValid());
    QVERIFY(command.text().isEmpty());
}

void TestCommandText::laterArgumentsCannotRepairARejection()
{
    CommandText command("ifconfig eth%d %s");
    command.adapter(5);
    QVERIFY(!command.isValid());
    command.ipv4(QStringLiteral("1.2.3.4"));
    QVERIFY(!command.isValid());
    QVERIFY(command.text().isEmpty());
}

PANEL_TEST_MAIN(TestCommandText)
#include "tst_commandtext.moc"
