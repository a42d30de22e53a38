// The host's WLAN files, saved-password table, resolver edits, address
// words and register texts: the pure parts of its links.
#include "hostregisters.h"
#include "resolverlines.h"
#include "sysreg.h"
#include "testharness.h"
#include "testpanel.h"
#include "wlanfiles.h"

#include <QtTest>

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
    void addressWords_data();
    void addressWords();
    void bitRegistersAreNotWritten();
    void registerValuesInTheLog_data();
    void registerValuesInTheLog();
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

PANEL_TEST_MAIN(TestHostLinks)
#include "tst_hostlinks.moc"
