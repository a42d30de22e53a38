#include "resolverfile.h"
#include "testharness.h"

#include <QtTest>

namespace {
const QString ThreeLines = QStringLiteral(
    "nameserver 10.0.0.1 # eth0\n"
    "nameserver 10.0.0.2 # eth0\n"
    "nameserver 8.8.8.8 # wlan0");
}

class TestResolverFile : public QObject
{
    Q_OBJECT

private slots:
    void lineFormat()
    {
        QCOMPARE(ResolverFile::ethTag(1), QStringLiteral("eth1"));
        QCOMPARE(ResolverFile::wlanTag(), QStringLiteral("wlan0"));
        QCOMPARE(ResolverFile::nameserverLine(QStringLiteral("8.8.4.4"), ResolverFile::ethTag(1)),
                 QStringLiteral("nameserver 8.8.4.4 # eth1"));
        QCOMPARE(ResolverFile::nameserverLine(QStringLiteral("1.2.3.4"), ResolverFile::wlanTag()),
                 QStringLiteral("nameserver 1.2.3.4 # wlan0"));
    }

    void server_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("tag");
        QTest::addColumn<int>("role");
        QTest::addColumn<QString>("expected");
        QTest::newRow("eth0 backup") << ThreeLines << "eth0" << 1 << "10.0.0.2";
        QTest::newRow("eth0 first") << ThreeLines << "eth0" << 0 << "10.0.0.1";
        QTest::newRow("eth1 first absent") << ThreeLines << "eth1" << 0 << "0.0.0.0";
        QTest::newRow("wlan0 first") << ThreeLines << "wlan0" << 0 << "8.8.8.8";
        QTest::newRow("wlan0 backup absent") << ThreeLines << "wlan0" << 1 << "0.0.0.0";
        QTest::newRow("third line of a port ignored")
            << ThreeLines + "\nnameserver 10.0.0.3 # eth0" << "eth0" << 2 << "10.0.0.3";
        QTest::newRow("tag at line start does not count")
            << QString("eth0 nameserver 1.2.3.4\nnameserver 5.6.7.8 # eth0") << "eth0" << 0
            << "5.6.7.8";
        QTest::newRow("only a tag at line start")
            << QString("eth0 nameserver 1.2.3.4") << "eth0" << 0 << "0.0.0.0";
        QTest::newRow("foreign lines skipped")
            << QString("search lan\nnameserver 192.168.1.1\nnameserver 4.4.4.4 # eth1")
            << "eth1" << 0 << "4.4.4.4";
        QTest::newRow("empty file") << QString() << "eth0" << 0 << "0.0.0.0";
        QTest::newRow("tagged line of one word") << QString("#eth0") << "eth0" << 0 << "";
    }

    void server()
    {
        QFETCH(QString, text);
        QFETCH(QString, tag);
        QFETCH(int, role);
        QFETCH(QString, expected);
        QCOMPARE(ResolverFile::server(text, tag, role), expected);
    }

    void replaced_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("tag");
        QTest::addColumn<int>("role");
        QTest::addColumn<QString>("expected");
        QTest::newRow("eth0 backup changes second line only")
            << ThreeLines << "eth0" << 1
            << "nameserver 10.0.0.1 # eth0\nnameserver 1.1.1.1 # eth0\nnameserver 8.8.8.8 # wlan0";
        QTest::newRow("eth1 first appended last, no newline")
            << ThreeLines << "eth1" << 0
            << ThreeLines + "\nnameserver 1.1.1.1 # eth1";
        QTest::newRow("backup of port without lines appends")
            << ThreeLines << "eth1" << 1
            << ThreeLines + "\nnameserver 1.1.1.1 # eth1";
        QTest::newRow("first of port with one line replaces it")
            << QString("nameserver 9.9.9.9 # eth1\nsearch lan") << "eth1" << 0
            << "nameserver 1.1.1.1 # eth1\nsearch lan";
        QTest::newRow("backup of port with one line appends")
            << QString("nameserver 9.9.9.9 # eth1\nsearch lan") << "eth1" << 1
            << "nameserver 9.9.9.9 # eth1\nsearch lan\nnameserver 1.1.1.1 # eth1";
        QTest::newRow("blank lines removed")
            << QString("\nnameserver 10.0.0.1 # eth0\n\n\nsearch lan\n\n") << "eth0" << 0
            << "nameserver 1.1.1.1 # eth0\nsearch lan";
        QTest::newRow("tag at line start is not the port's")
            << QString("eth0 nameserver 1.2.3.4") << "eth0" << 0
            << "eth0 nameserver 1.2.3.4\nnameserver 1.1.1.1 # eth0";
        QTest::newRow("empty file") << QString() << "eth0" << 1 << "nameserver 1.1.1.1 # eth0";
        QTest::newRow("wlan0 tag") << ThreeLines << "wlan0" << 0
            << "nameserver 10.0.0.1 # eth0\nnameserver 10.0.0.2 # eth0\nnameserver 1.1.1.1 # wlan0";
    }

    void replaced()
    {
        QFETCH(QString, text);
        QFETCH(QString, tag);
        QFETCH(int, role);
        QFETCH(QString, expected);
        const QString line = ResolverFile::nameserverLine(QStringLiteral("1.1.1.1"), tag);
        QCOMPARE(ResolverFile::replaced(text, tag, role, line), expected);
    }

    // An appended backup reads back as the port's first server.
    void appendedBackupReadsAsFirst()
    {
        const QString text = ResolverFile::replaced(
            ThreeLines, QStringLiteral("eth1"), ResolverFile::Backup,
            ResolverFile::nameserverLine(QStringLiteral("7.7.7.7"), QStringLiteral("eth1")));
        QCOMPARE(ResolverFile::server(text, QStringLiteral("eth1"), ResolverFile::First),
                 QStringLiteral("7.7.7.7"));
    }
    void lastServer_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("tag");
        QTest::addColumn<QString>("expected");
        QTest::newRow("two lines: the second") << QStringLiteral("nameserver 1.1.1.1 # ppp0\nnameserver 2.2.2.2 # ppp0")
                                               << QStringLiteral("ppp0") << QStringLiteral("2.2.2.2");
        QTest::newRow("one line") << QStringLiteral("nameserver 9.9.9.9 # eth0\nnameserver 3.3.3.3 # ppp0\n")
                                  << QStringLiteral("ppp0") << QStringLiteral("3.3.3.3");
        QTest::newRow("none") << ThreeLines << QStringLiteral("ppp0") << QStringLiteral("0.0.0.0");
        QTest::newRow("tag at the start is not a line of it") << QStringLiteral("ppp0 1.2.3.4")
                                                              << QStringLiteral("ppp0") << QStringLiteral("0.0.0.0");
        QTest::newRow("one word lines are passed over") << QStringLiteral("nameserver 4.4.4.4 # ppp0\nxppp0")
                                                        << QStringLiteral("ppp0") << QStringLiteral("4.4.4.4");
        QTest::newRow("empty") << QString() << QStringLiteral("ppp0") << QStringLiteral("0.0.0.0");
    }

    void lastServer()
    {
        QFETCH(QString, text);
        QFETCH(QString, tag);
        QFETCH(QString, expected);
        QCOMPARE(ResolverFile::lastServer(text, tag), expected);
    }

    void ownerFirst_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("tag");
        QTest::addColumn<QString>("expected");
        QTest::newRow("wlan0 to the top") << ThreeLines << QStringLiteral("wlan0")
                                          << QStringLiteral("nameserver 8.8.8.8 # wlan0\n"
                                                            "nameserver 10.0.0.1 # eth0\n"
                                                            "nameserver 10.0.0.2 # eth0");
        QTest::newRow("already first") << ThreeLines << QStringLiteral("eth0") << ThreeLines;
        QTest::newRow("groups keep their order")
            << QStringLiteral("a # eth0\nb # ppp0\nc # eth1\nd # ppp0\n")
            << QStringLiteral("ppp0") << QStringLiteral("b # ppp0\nd # ppp0\na # eth0\nc # eth1\n");
        QTest::newRow("no line of the tag") << ThreeLines << QStringLiteral("ppp0") << QString();
        QTest::newRow("tag at position 0 only") << QStringLiteral("eth1 x\nnameserver 1.1.1.1 # eth0")
                                                << QStringLiteral("eth1") << QString();
        QTest::newRow("empty text") << QString() << QStringLiteral("eth0") << QString();
    }

    void ownerFirst()
    {
        QFETCH(QString, text);
        QFETCH(QString, tag);
        QFETCH(QString, expected);
        QCOMPARE(ResolverFile::ownerFirst(text, tag), expected);
    }
};

PANEL_TEST_MAIN(TestResolverFile)
#include "tst_resolverfile.moc"
