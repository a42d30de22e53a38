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

class TestHostLinks : public QObject
{
    Q_OBJECT

private slots:
    void scanList_data();
    void scanList();
    void encryptionList();
    void passwordTable_data();
    void passwordTable();
    void passwordTableCutsWholeCharacters();
    void rememberAndForget_data();
    void rememberAndForget();
    void resolverLines_data();
    void resolverLines();
    void commands_data();
    void commands();
    void addressWords_data();
    void addressWords();
    void bitRegistersAreNotWritten();
    void registerValuesInTheLog_data();
    void registerValuesInTheLog();

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

void TestHostLinks::scanList_data()
{
    QTest::addColumn<QString>("ssid");
    QTest::addColumn<int>("quality");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("english") << "TAVRO-Office" << 86 << QByteArray("TAVRO-Office86\r\n");
    QTest::newRow("chinese in GB2312") << QString::fromUtf8("车间无线") << 72
                                      << QByteArray::fromHex("b3b5bce4cedecfdf") + "72\r\n";
    QTest::newRow("one digit gets a zero") << "AP" << 5 << QByteArray("AP05\r\n");
    QTest::newRow("above 99 is 99") << "AP" << 130 << QByteArray("AP99\r\n");
    QTest::newRow("below 0 is 0") << "AP" << -3 << QByteArray("AP00\r\n");
    QTest::newRow("empty name") << "" << 40 << QByteArray("40\r\n");
}

void TestHostLinks::scanList()
{
    QFETCH(QString, ssid);
    QFETCH(int, quality);
    QFETCH(QByteArray, line);
    QCOMPARE(WlanFiles::scanList({SimNetwork{ssid, quality, QString()}}), line);
    QCOMPARE(WlanFiles::scanList({SimNetwork{ssid, quality, QString()}, SimNetwork{ssid, quality, QString()}}),
             line + line);
}

void TestHostLinks::encryptionList()
{
    const QList<SimNetwork> networks = {{QStringLiteral("Office"), 80, QStringLiteral("secret12")},
                                        {QString::fromUtf8("访客网络"), 40, QString()}};
    QCOMPARE(WlanFiles::encryptionList(networks), QByteArray("Office+1\n") + QByteArray::fromHex("b7c3bfcdcdf8c2e7") + "+0\n");
}

void TestHostLinks::passwordTable_data()
{
    QTest::addColumn<int>("entries");
    for (int entries : {0, 1, 5, 6})
        QTest::newRow(qPrintable(QStringLiteral("%1 entries").arg(entries))) << entries;
}

void TestHostLinks::passwordTable()
{
    QFETCH(int, entries);
    QList<SavedPassword> saved;
    for (int i = 0; i < entries; ++i)
        saved << SavedPassword{QStringLiteral("net%1").arg(i), QStringLiteral("password%1").arg(i)};
    const QByteArray table = WlanFiles::passwordTable(saved);
    QCOMPARE(table.size(), 480);
    for (int i = 0; i < 5; ++i) {
        const QByteArray ssid = table.mid(i * 32, 32);
        const QByteArray password = table.mid(160 + i * 64, 64);
        if (i < entries) {
            QCOMPARE(ssid, QByteArray("net") + QByteArray::number(i) + QByteArray(28, '\0'));
            QCOMPARE(password, QByteArray("password") + QByteArray::number(i) + QByteArray(55, '\0'));
        } else {
            QCOMPARE(ssid, QByteArray(32, '\0'));
            QCOMPARE(password, QByteArray(64, '\0'));
        }
    }
    QCOMPARE(WlanFiles::parsePasswordTable(table), saved.mid(0, 5));
}

void TestHostLinks::passwordTableCutsWholeCharacters()
{
    // 16 Chinese characters are 32 GB2312 bytes: 15 fit before the NUL.
    const QString ssid = QString::fromUtf8("车间无线车间无线车间无线车间无线");
    const QByteArray table = WlanFiles::passwordTable({{ssid, QString(70, QLatin1Char('p'))}});
    QCOMPARE(table.mid(0, 32), WlanFiles::encode(ssid.left(15)) + QByteArray(2, '\0'));
    QCOMPARE(table.mid(160, 64), QByteArray(63, 'p') + '\0');
    QCOMPARE(WlanFiles::parsePasswordTable(table).value(0).ssid, ssid.left(15));
    QVERIFY(WlanFiles::parsePasswordTable(QByteArray(479, 'x')).isEmpty());
}

void TestHostLinks::rememberAndForget_data()
{
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QString>("ssid");
    QTest::addColumn<QStringList>("after");
    QTest::newRow("new entry appended") << QStringList{"a", "b"} << "c" << QStringList{"a", "b", "c"};
    QTest::newRow("known entry updated in place") << QStringList{"a", "b"} << "a" << QStringList{"a", "b"};
    QTest::newRow("full table drops the oldest") << QStringList{"a", "b", "c", "d", "e"} << "f"
                                                 << QStringList{"b", "c", "d", "e", "f"};
}

void TestHostLinks::rememberAndForget()
{
    QFETCH(QStringList, before);
    QFETCH(QString, ssid);
    QFETCH(QStringList, after);
    QList<SavedPassword> saved;
    for (const QString &name : before)
        saved << SavedPassword{name, QStringLiteral("old")};
    const QList<SavedPassword> result = WlanFiles::remember(saved, ssid, QStringLiteral("new"));
    QStringList names;
    for (const SavedPassword &entry : result) {
        names << entry.ssid;
        QCOMPARE(entry.password, entry.ssid == ssid ? QStringLiteral("new") : QStringLiteral("old"));
    }
    QCOMPARE(names, after);
    QCOMPARE(WlanFiles::forget(result, ssid).size(), result.size() - 1);
}

void TestHostLinks::resolverLines_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QStringList>("add");
    QTest::addColumn<QString>("dropInterface");
    QTest::addColumn<QByteArray>("after");
    const QByteArray eth = "nameserver 114.114.114.114 # eth0\n";
    QTest::newRow("added at the end") << eth << QStringList{"nameserver 1.2.3.4 # ppp0"} << ""
                                      << eth + "nameserver 1.2.3.4 # ppp0\n";
    QTest::newRow("no final newline") << eth.trimmed() << QStringList{"nameserver 1.2.3.4 # ppp0"} << ""
                                      << eth + "nameserver 1.2.3.4 # ppp0\n";
    QTest::newRow("present lines stay once") << eth + "nameserver 1.2.3.4 # ppp0\n"
                                             << QStringList{"nameserver 1.2.3.4 # ppp0"} << "" << eth + "nameserver 1.2.3.4 # ppp0\n";
    QTest::newRow("interface lines removed, others kept")
        << "nameserver 1.1.1.1 # ppp0\n" + eth + "nameserver 2.2.2.2 # ppp0\n" << QStringList() << "ppp0" << eth;
    QTest::newRow("a name containing the tag is no tag") << QByteArray("nameserver 1.1.1.1 # ppp01\n") << QStringList()
                                                          << "ppp0" << QByteArray("nameserver 1.1.1.1 # ppp01\n");
    QTest::newRow("empty file") << QByteArray() << QStringList{"nameserver 1.2.3.4 # ppp0"} << ""
                                << QByteArray("nameserver 1.2.3.4 # ppp0\n");
}

void TestHostLinks::resolverLines()
{
    QFETCH(QByteArray, before);
    QFETCH(QStringList, add);
    QFETCH(QString, dropInterface);
    QFETCH(QByteArray, after);
    QByteArray result = ResolverLines::withLines(before, add);
    if (!dropInterface.isEmpty())
        result = ResolverLines::withoutInterface(result, dropInterface);
    QCOMPARE(result, after);
}

void TestHostLinks::commands_data()
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

void TestHostLinks::commands()
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

void TestHostLinks::addressWords_data()
{
    QTest::addColumn<QString>("dotted");
    QTest::addColumn<QByteArray>("words");
    QTest::newRow("address") << "192.168.8.23" << QByteArray::fromHex("c000a80008001700");
    QTest::newRow("empty") << "" << QByteArray(8, '\0');
    QTest::newRow("octet too big") << "1.2.3.256" << QByteArray(8, '\0');
    QTest::newRow("three octets") << "1.2.3" << QByteArray(8, '\0');
    QTest::newRow("text") << "a.b.c.d" << QByteArray(8, '\0');
}

void TestHostLinks::addressWords()
{
    QFETCH(QString, dotted);
    QFETCH(QByteArray, words);
    QCOMPARE(HostRegisters::addressWords(dotted), words);
}

void TestHostLinks::bitRegistersAreNotWritten()
{
    TestPanel panel;
    HostRegisters registers(panel.root());
    QVERIFY(!registers.writeNumber(SysRegIdx::WlanDisabled, 1));
    QVERIFY(!registers.writeNumber(136, 1));
    QVERIFY(registers.writeNumber(SysRegIdx::WlanState, 0x1ff));
    QCOMPARE(registers.number(SysRegIdx::WlanState), quint64(0xff));
    // Register 113 is the byte after it.
    QCOMPARE(registers.number(113), quint64(0));
}

void TestHostLinks::registerValuesInTheLog_data()
{
    QTest::addColumn<unsigned>("index");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("shown");
    QTest::newRow("english name") << 103u << QByteArray("TAVRO-Office").leftJustified(32, '\0') << "\"TAVRO-Office\"";
    QTest::newRow("GB2312 name") << 103u << QByteArray::fromHex("b3b5bce4cedecfdf").leftJustified(32, '\0')
                                 << QString::fromUtf8("\"车间无线\"");
    QTest::newRow("UTF-8 name") << 103u << QString::fromUtf8("车间").toUtf8().leftJustified(32, '\0')
                                << QString::fromUtf8("\"车间\"");
    QTest::newRow("address words") << 106u << QByteArray::fromHex("c000a80008001700") << "c0 00 a8 00 08 00 17 00";
    QTest::newRow("lone lead byte") << 103u << QByteArray("\xb3").leftJustified(32, '\0') << "b3" + QString(" 00").repeated(31);
    QTest::newRow("bytes after the end") << 103u << QByteArray("AB\0C", 4).leftJustified(32, '\0')
                                         << "41 42 00 43" + QString(" 00").repeated(28);
    QTest::newRow("number") << 100u << QByteArray("\x02") << "2";
}

void TestHostLinks::registerValuesInTheLog()
{
    QFETCH(unsigned, index);
    QFETCH(QByteArray, value);
    QFETCH(QString, shown);
    RegisterReader::Location where;
    QVERIFY(RegisterReader::locate(index, &where));
    QCOMPARE(RegisterReader::formatValue(where, value), shown);
}

void TestHostLinks::scanRequestWritesTheListsAndCount()
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

void TestHostLinks::savedPasswordTableFromTheStart()
{
    Host host;
    const QByteArray table = host.panel.readFile(QStringLiteral("/hmi_data/WiFipassword"));
    QCOMPARE(table.size(), 480);
    const QList<SavedPassword> saved = WlanFiles::parsePasswordTable(table);
    QVERIFY(!saved.isEmpty());
    QCOMPARE(saved, WlanHost::defaultSavedPasswords());
    QCOMPARE(table.mid(0, 8), QByteArray::fromHex("b3b5bce4cedecfdf"));
}

void TestHostLinks::rightPasswordConnects()
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

void TestHostLinks::chineseNetworkConnectsInGb2312()
{
    Host host;
    host.connectWlan(QString::fromUtf8("车间无线"), QStringLiteral("chejian88"));
    QTRY_COMPARE(host.number(SysRegIdx::WlanState), quint64(2));
    QCOMPARE(host.bytes(SysRegIdx::WlanSsid).left(9), QByteArray::fromHex("b3b5bce4cedecfdf00"));
    QCOMPARE(host.links->wlan()->connectedSsid(), QString::fromUtf8("车间无线"));
}

void TestHostLinks::openNetworkConnectsWithoutPassword()
{
    Host host;
    host.connectWlan(QString::fromUtf8("访客网络"), QString());
    QTRY_COMPARE(host.number(SysRegIdx::WlanState), quint64(2));
    // Nothing to remember for an open network.
    QCOMPARE(WlanFiles::parsePasswordTable(host.panel.readFile(QStringLiteral("/hmi_data/WiFipassword"))),
             WlanHost::defaultSavedPasswords());
}

void TestHostLinks::wrongPasswordAnswersFour()
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

void TestHostLinks::wrongPasswordNextTimeFromTheControls()
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

void TestHostLinks::unknownNetworkIsNotConnected()
{
    Host host;
    host.connectWlan(QStringLiteral("Nowhere"), QStringLiteral("whatever1"));
    QTRY_VERIFY(!host.log.filter(QStringLiteral("\"Nowhere\" is not in range")).isEmpty());
    QCOMPARE(host.number(SysRegIdx::WlanState), quint64(0));
}

void TestHostLinks::resetFlagDisconnects()
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

void TestHostLinks::resetFlagSeenWithoutAnnouncement()
{
    Host host;
    host.connectWlan(QStringLiteral("TAVRO-Office"), QStringLiteral("tavro2024"));
    QTRY_COMPARE(host.number(SysRegIdx::WlanState), quint64(2));
    QVERIFY(host.panel.writeFile(QStringLiteral("/tmp/ResetWifiFlag"), QByteArray()));
    QTRY_VERIFY(!QFileInfo::exists(host.panel.path(QStringLiteral("/tmp/ResetWifiFlag"))));
    QCOMPARE(host.number(SysRegIdx::WlanState), quint64(0));
}

void TestHostLinks::wlanSwitchedOffDropsTheLink()
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

void TestHostLinks::wlanDropAndScanChanges()
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

void TestHostLinks::mobileGoesConnectingThenConnected()
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

void TestHostLinks::mobileSignalHeldAndDrifting()
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

void TestHostLinks::mobileDropAndOff()
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

void TestHostLinks::vpnPreparesThenConnects()
{
    Host host;
    Host::request(SysRegIdx::VpnSwitch, 1);
    QTRY_COMPARE(host.number(SysRegIdx::VpnState), quint64(1));
    QCOMPARE(host.bytes(SysRegIdx::VpnAddress), QByteArray(8, '\0'));
    QTRY_COMPARE(host.number(SysRegIdx::VpnState), quint64(5));
    QCOMPARE(host.address(SysRegIdx::VpnAddress), QStringLiteral("10.147.17.23"));
    QCOMPARE(host.bytes(SysRegIdx::VpnAddress), QByteArray::fromHex("0a00930011001700"));
}

void TestHostLinks::vpnRegionChangeIsSeen()
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

void TestHostLinks::vpnOffAndDrop()
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

PANEL_TEST_MAIN(TestHostLinks)
#include "tst_hostlinks.moc"
