// The files the network page reads that other programs write: pid files and
// the ping result. Whatever they hold, the page gets a bounded, sane answer.
#include "commandtext.h"
#include "pidfile.h"
#include "pingresult.h"
#include "testharness.h"
#include "testpanel.h"

#include <QDir>
#include <QtTest>

#include <sys/stat.h>

class TestNetworkFiles : public QObject
{
    Q_OBJECT

private slots:
    void pidFile_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<qint64>("pid");
        QTest::addColumn<bool>("killable");
        QTest::newRow("pid and line end") << QByteArray("1234\n") << qint64(1234) << true;
        QTest::newRow("no line end") << QByteArray("77") << qint64(77) << true;
        QTest::newRow("blanks") << QByteArray("  88  \nmore\n") << qint64(88) << true;
        QTest::newRow("empty") << QByteArray() << qint64(0) << false;
        QTest::newRow("text") << QByteArray("udhcpc\n") << qint64(0) << false;
        QTest::newRow("zero") << QByteArray("0\n") << qint64(0) << false;
        QTest::newRow("minus one") << QByteArray("-1\n") << qint64(-1) << false;
        QTest::newRow("negative group") << QByteArray("-4242\n") << qint64(-4242) << false;
        QTest::newRow("one") << QByteArray("1\n") << qint64(1) << false;
        QTest::newRow("huge") << QByteArray("99999999999999999999999\n") << qint64(0) << false;
        QTest::newRow("number and text") << QByteArray("12abc\n") << qint64(0) << false;
        QTest::newRow("long line") << (QByteArray(5000, '7') + "\n") << qint64(0) << false;
        QTest::newRow("binary") << QByteArray("\x00\x01\xff", 3) << qint64(0) << false;
    }

    // Only a number above 1 ever reaches "kill %d"; the rule is proved on
    // the command builder, which runs nothing.
    void pidFile()
    {
        QFETCH(QByteArray, content);
        QFETCH(qint64, pid);
        QFETCH(bool, killable);
        TestPanel panel;
        QVERIFY(panel.writeFile(QStringLiteral("/var/run/udhcpc0.pid"), content));
        QVERIFY(PidFile::exists(QStringLiteral("/var/run/udhcpc0.pid")));
        QCOMPARE(PidFile::read(QStringLiteral("/var/run/udhcpc0.pid")), pid);
        const CommandText kill = CommandText("kill %d").processId(PidFile::read(QStringLiteral("/var/run/udhcpc0.pid")));
        QCOMPARE(kill.isValid(), killable);
        if (killable)
            QCOMPARE(kill.text(), "kill " + QByteArray::number(pid));
    }

    void missingPidFile()
    {
        TestPanel panel;
        QVERIFY(!PidFile::exists(QStringLiteral("/var/run/udhcpc1.pid")));
        QCOMPARE(PidFile::read(QStringLiteral("/var/run/udhcpc1.pid")), qint64(0));
        QVERIFY(QDir().mkpath(panel.path(QStringLiteral("/var/run/udhcpc1.pid"))));
        QCOMPARE(PidFile::read(QStringLiteral("/var/run/udhcpc1.pid")), qint64(0));
    }

    void pingResult_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("state");
        QTest::newRow("reply") << QByteArray("64 bytes from 10.77.0.1: icmp_seq=1 ttl=64 time=0.1 ms\n") << int(PingResult::Succeeded);
        QTest::newRow("upper case only") << QByteArray("64 bytes from 10.77.0.1: icmp_seq=1 TTL=64\n") << int(PingResult::Failed);
        QTest::newRow("empty") << QByteArray() << int(PingResult::Failed);
        QTest::newRow("no reply") << QByteArray("1 packets transmitted, 0 received, 100% packet loss\n") << int(PingResult::Failed);
        QTest::newRow("binary") << QByteArray("\x00\xff\x10ttl\x00", 7) << int(PingResult::Succeeded);
        QTest::newRow("binary without") << QByteArray("\x00\xff\x10\x00", 4) << int(PingResult::Failed);
    }

    void pingResult()
    {
        QFETCH(QByteArray, content);
        QFETCH(int, state);
        TestPanel panel;
        QVERIFY(panel.writeFile(QStringLiteral("/tmp/ping.txt"), content));
        QCOMPARE(int(PingResult::read(panel.path(QStringLiteral("/tmp/ping.txt")))), state);
        QCOMPARE(int(PingResult::evaluate(content)), state);
    }

    void pingResultMissingHugeOrOdd()
    {
        TestPanel panel;
        QCOMPARE(PingResult::read(panel.path(QStringLiteral("/tmp/none.txt"))), PingResult::Missing);
        // Only the start of a huge file is read; a reply past it is not seen.
        QByteArray huge(8 << 20, 'x');
        huge.append("ttl");
        QVERIFY(panel.writeFile(QStringLiteral("/tmp/huge.txt"), huge));
        QCOMPARE(PingResult::read(panel.path(QStringLiteral("/tmp/huge.txt"))), PingResult::Failed);
        QVERIFY(QDir().mkpath(panel.path(QStringLiteral("/tmp/dir.txt"))));
        QCOMPARE(PingResult::read(panel.path(QStringLiteral("/tmp/dir.txt"))), PingResult::Failed);
        // A FIFO must not block the reader.
        const QByteArray fifo = QFile::encodeName(panel.path(QStringLiteral("/tmp/fifo.txt")));
        QCOMPARE(mkfifo(fifo.constData(), 0600), 0);
        QCOMPARE(PingResult::read(QFile::decodeName(fifo)), PingResult::Failed);
    }
};

PANEL_TEST_MAIN(TestNetworkFiles)
#include "tst_networkfiles.moc"
