// The WLAN files the host application writes: scan list, encryption list
// and saved-password table, and how the page reads them.
#include "encryptionlist.h"
#include "savedpasswords.h"
#include "scanlist.h"
#include "testharness.h"
#include "testpanel.h"

#include <QElapsedTimer>
#include <QTextCodec>
#include <QtTest>

Q_DECLARE_METATYPE(QList<ScanList::Entry>)

namespace {

ScanList::Entry entry(const QString &ssid, int quality)
{
    ScanList::Entry e;
    e.ssid = ssid;
    e.quality = quality;
    return e;
}

QByteArray gb2312(const QString &text)
{
    return QTextCodec::codecForName("GB2312")->fromUnicode(text);
}

// A table of five slots; `names` and `passwords` fill slots in order, each
// padded with NULs (or not, when it is as long as its slot).
QByteArray table(const QList<QByteArray> &names, const QList<QByteArray> &passwords)
{
    QByteArray bytes(SavedPasswords::TableSize, '\0');
    for (int i = 0; i < names.size(); ++i)
        bytes.replace(i * SavedPasswords::SsidSlotSize, names.at(i).size(), names.at(i));
    for (int i = 0; i < passwords.size(); ++i) {
        const int at = SavedPasswords::SlotCount * SavedPasswords::SsidSlotSize + i * SavedPasswords::PasswordSlotSize;
        bytes.replace(at, passwords.at(i).size(), passwords.at(i));
    }
    return bytes;
}

} // namespace

class TestWlanLists : public QObject
{
    Q_OBJECT

private slots:
    void parse_data();
    void parse();
    void icon_data();
    void icon();
    void decodesGb2312();
    void readFileIsBounded();
    void readFileMissingOrFolder();
    void encryption_data();
    void encryption();
    void savedPassword_data();
    void savedPassword();
    void savedPasswordFile();
};

void TestWlanLists::parse_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QList<ScanList::Entry>>("entries");
    using L = QList<ScanList::Entry>;
    QTest::newRow("two networks") << "home75\r\noffice42\r\n" << L {entry("home", 75), entry("office", 42)};
    QTest::newRow("empty lines skipped") << "\r\n\r\nhome75\r\n\r\n" << L {entry("home", 75)};
    QTest::newRow("empty file") << "" << L {};
    QTest::newRow("no final line end") << "a80\r\nb20" << L {entry("a", 80), entry("b", 20)};
    QTest::newRow("quality not digits") << "cafeXY" << L {entry("cafe", 0)};
    QTest::newRow("last two always cut") << "net-9" << L {entry("net", -9)};
    QTest::newRow("two characters: empty ssid") << "55" << L {entry("", 55)};
    QTest::newRow("single character") << "7" << L {entry("", 7)};
    QTest::newRow("single non-digit") << "x" << L {entry("", 0)};
    QTest::newRow("plus and quotes kept") << "a+b\"'$(reboot);`x`90" << L {entry("a+b\"'$(reboot);`x`", 90)};
    QTest::newRow("32-character ssid") << QString(32, QLatin1Char('s')) + "61" << L {entry(QString(32, QLatin1Char('s')), 61)};
    QTest::newRow("bare line feeds are part of the line") << "a\nb50" << L {entry("a\nb", 50)};
}

void TestWlanLists::parse()
{
    QFETCH(QString, text);
    QFETCH(QList<ScanList::Entry>, entries);
    QCOMPARE(ScanList::parse(text), entries);
}

void TestWlanLists::icon_data()
{
    QTest::addColumn<int>("quality");
    QTest::addColumn<QString>("icon");
    QTest::newRow("99") << 99 << ":/Resources/wifi.svg";
    QTest::newRow("80") << 80 << ":/Resources/wifi.svg";
    QTest::newRow("79") << 79 << ":/Resources/wifi3.svg";
    QTest::newRow("60") << 60 << ":/Resources/wifi3.svg";
    QTest::newRow("59") << 59 << ":/Resources/wifi2.svg";
    QTest::newRow("40") << 40 << ":/Resources/wifi2.svg";
    QTest::newRow("39") << 39 << ":/Resources/wifi1.svg";
    QTest::newRow("0 (no number)") << 0 << ":/Resources/wifi1.svg";
    QTest::newRow("negative") << -9 << ":/Resources/wifi1.svg";
}

void TestWlanLists::icon()
{
    QFETCH(int, quality);
    QFETCH(QString, icon);
    QCOMPARE(ScanList::iconFor(quality), icon);
}

void TestWlanLists::decodesGb2312()
{
    QVERIFY(QTextCodec::codecForName("GB2312"));
    const QString ssid = QStringLiteral("办公室网络");
    const QList<ScanList::Entry> entries = ScanList::parse(ScanList::decode(gb2312(ssid + "88\r\n")));
    QCOMPARE(entries, (QList<ScanList::Entry> {entry(ssid, 88)}));
    // Invalid GB2312: replacement characters, no crash, the quality survives.
    const QList<ScanList::Entry> bad = ScanList::parse(ScanList::decode(QByteArray("\xff\xfe\xa1net70\r\n", 10)));
    QCOMPARE(bad.size(), 1);
    QCOMPARE(bad.at(0).quality, 70);
    QVERIFY(bad.at(0).ssid.endsWith(QLatin1String("net")));
}

void TestWlanLists::readFileIsBounded()
{
    TestPanel panel;
    QVERIFY(panel.isValid());
    QByteArray big;
    for (int i = 0; big.size() < 4 * ScanList::MaxFileBytes; ++i)
        big += "network-" + QByteArray::number(i) + "55\r\n";
    QVERIFY(panel.writeFile("/tmp/scan_parse", big));
    QElapsedTimer clock;
    clock.start();
    QByteArray bytes;
    QVERIFY(ScanList::readFile("/tmp/scan_parse", &bytes));
    const QList<ScanList::Entry> entries = ScanList::parse(ScanList::decode(bytes));
    QCOMPARE(bytes.size(), int(ScanList::MaxFileBytes));
    QVERIFY(entries.size() > 1000);
    QVERIFY2(clock.elapsed() < 500, qPrintable(QString::number(clock.elapsed())));
}

void TestWlanLists::readFileMissingOrFolder()
{
    TestPanel panel;
    QVERIFY(panel.isValid());
    panel.removeFile("/tmp/scan_parse");
    QByteArray bytes = "old";
    QString error;
    QVERIFY(!ScanList::readFile("/tmp/scan_parse", &bytes, &error));
    QVERIFY(!error.isEmpty());
    QVERIFY(QDir().mkpath(panel.path("/tmp/scan_parse")));
    QVERIFY(!ScanList::readFile("/tmp/scan_parse", &bytes, &error));
}

void TestWlanLists::encryption_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("ssid");
    QTest::addColumn<int>("kind");
    QTest::newRow("protected") << "home+1\noffice+0\n" << "home" << int(EncryptionList::Protected);
    QTest::newRow("open") << "home+1\noffice+0\n" << "office" << int(EncryptionList::Open);
    QTest::newRow("flag other than 1") << "cafe+yes\n" << "cafe" << int(EncryptionList::Open);
    QTest::newRow("no match") << "home+1\n" << "hom" << int(EncryptionList::NotListed);
    QTest::newRow("first line wins") << "dup+0\ndup+1\n" << "dup" << int(EncryptionList::Open);
    QTest::newRow("no plus: open") << "bare\n" << "bare" << int(EncryptionList::Open);
    QTest::newRow("several plus: second field") << "x+1+0\n" << "x" << int(EncryptionList::Protected);
    QTest::newRow("ssid with plus never matches") << "a+b+1\n" << "a+b" << int(EncryptionList::NotListed);
    QTest::newRow("crlf lines") << "home+1\r\n" << "home" << int(EncryptionList::Protected);
    QTest::newRow("empty list") << "" << "home" << int(EncryptionList::NotListed);
    QTest::newRow("empty line is no network") << "\n\n" << "" << int(EncryptionList::NotListed);
    QTest::newRow("case matters") << "Home+1\n" << "home" << int(EncryptionList::NotListed);
}

void TestWlanLists::encryption()
{
    QFETCH(QString, text);
    QFETCH(QString, ssid);
    QFETCH(int, kind);
    QCOMPARE(int(EncryptionList::lookup(text, ssid)), kind);
}

void TestWlanLists::savedPassword_data()
{
    QTest::addColumn<QByteArray>("table");
    QTest::addColumn<QString>("ssid");
    QTest::addColumn<bool>("found");
    QTest::addColumn<QByteArray>("password");
    const QList<QByteArray> five {"n1", "n2", "n3", "n4", "n5"};
    const QList<QByteArray> words {"p1", "p2", "p3", "p4", "p5"};
    QTest::newRow("first slot") << table(five, words) << "n1" << true << QByteArray("p1");
    QTest::newRow("fifth slot") << table(five, words) << "n5" << true << QByteArray("p5");
    QTest::newRow("not saved") << table(five, words) << "n6" << false << QByteArray();
    QByteArray sixth = table(five, words) + QByteArray("n6").leftJustified(32, '\0') + "p6";
    QTest::newRow("sixth entry never consulted") << sixth << "n6" << false << QByteArray();
    QTest::newRow("short file: missing slots are empty") << table(five, words).left(100) << "n3" << true << QByteArray();
    QTest::newRow("short file: name cut") << table(five, words).left(65) << "n3" << false << QByteArray();
    QTest::newRow("empty slot matches nothing") << table({}, {}) << "" << false << QByteArray();
    const QByteArray full32(32, 'a');
    const QByteArray full64(64, 'b');
    QTest::newRow("slots without NUL") << table({"x", full32}, {"px", full64}) << QString(full32) << true << full64;
    QTest::newRow("name slot without NUL does not run on")
        << table({full32, "next"}, {"pa", "pn"}) << QString(full32 + "next") << false << QByteArray();
    QTest::newRow("empty file") << QByteArray() << "n1" << false << QByteArray();
    QTest::newRow("same name twice: first") << table({"d", "d"}, {"one", "two"}) << "d" << true << QByteArray("one");
    QTest::newRow("gb2312 name") << table({gb2312(QStringLiteral("网络"))}, {"secret12"}) << QStringLiteral("网络")
                                 << true << QByteArray("secret12");
}

void TestWlanLists::savedPassword()
{
    QFETCH(QByteArray, table);
    QFETCH(QString, ssid);
    QFETCH(bool, found);
    QFETCH(QByteArray, password);
    const SavedPasswords::Result result = SavedPasswords::lookup(table, ssid);
    QCOMPARE(result.found, found);
    QCOMPARE(result.password, password);
}

void TestWlanLists::savedPasswordFile()
{
    TestPanel panel;
    QVERIFY(panel.isValid());
    QByteArray bytes;
    panel.removeFile("/hmi_data/WiFipassword");
    QVERIFY(!SavedPasswords::readFile("/hmi_data/WiFipassword", &bytes));
    QVERIFY(panel.writeFile("/hmi_data/WiFipassword", table({"a"}, {"b"}) + QByteArray(100000, 'z')));
    QVERIFY(SavedPasswords::readFile("/hmi_data/WiFipassword", &bytes));
    QCOMPARE(bytes.size(), SavedPasswords::TableSize);
    QVERIFY(panel.writeFile("/hmi_data/WiFipassword", "ab"));
    QVERIFY(SavedPasswords::readFile("/hmi_data/WiFipassword", &bytes));
    QCOMPARE(bytes, QByteArray("ab"));
}

PANEL_TEST_MAIN(TestWlanLists)
#include "tst_wlanlists.moc"
