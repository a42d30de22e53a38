// The system's resolver file as the panel may really find it: missing,
// empty, a folder or a FIFO, with bytes that are not UTF-8, CRLF line ends,
// or far too large. Reads and rewrites never hang or crash, lines of other
// owners survive byte for byte, and the backup copy follows every rewrite.
#include "resolverfile.h"
#include "testharness.h"
#include "testpanel.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QtTest>

#include <sys/stat.h>

namespace {
const QString Resolver = QStringLiteral("/etc/resolv.conf");
const QString Backup = QStringLiteral("/etc/resolvbak.conf");
}

class TestResolverFileAccess : public QObject
{
    Q_OBJECT

private slots:
    void missingFileIsRestoredFromBackup()
    {
        TestPanel panel;
        QVERIFY(panel.removeFile(Resolver));
        QVERIFY(panel.writeFile(Backup, "nameserver 9.9.9.9 # eth0\n"));
        QCOMPARE(ResolverFile::systemServer(QStringLiteral("eth0"), ResolverFile::First), QStringLiteral("9.9.9.9"));
        QCOMPARE(panel.readFile(Resolver), QByteArray("nameserver 9.9.9.9 # eth0\n"));
    }

    void bothMissing()
    {
        TestPanel panel;
        panel.removeFile(Resolver);
        panel.removeFile(Backup);
        QCOMPARE(ResolverFile::systemServer(QStringLiteral("eth1"), ResolverFile::Backup), QStringLiteral("0.0.0.0"));
        QVERIFY(QFileInfo::exists(panel.path(Backup)));
        QVERIFY(QFileInfo::exists(panel.path(Resolver)));
        QCOMPARE(panel.readFile(Backup), QByteArray());
    }

    void emptyFile()
    {
        TestPanel panel;
        QVERIFY(panel.writeFile(Resolver, QByteArray()));
        QCOMPARE(ResolverFile::systemServer(QStringLiteral("eth0"), ResolverFile::First), QStringLiteral("0.0.0.0"));
        QFile file(panel.path(Resolver));
        ResolverFile::rewrite(file, QStringLiteral("eth0"), ResolverFile::Backup, QStringLiteral("1.1.1.1"));
        QCOMPARE(panel.readFile(Resolver), QByteArray("nameserver 1.1.1.1 # eth0"));
        QCOMPARE(panel.readFile(Backup), QByteArray("nameserver 1.1.1.1 # eth0"));
    }

    void folderInPlace()
    {
        TestPanel panel;
        QVERIFY(panel.removeFile(Resolver));
        QVERIFY(QDir().mkpath(panel.path(Resolver)));
        QCOMPARE(ResolverFile::systemServer(QStringLiteral("eth0"), ResolverFile::First), QStringLiteral("0.0.0.0"));
        QFile file(panel.path(Resolver));
        ResolverFile::rewrite(file, QStringLiteral("eth0"), ResolverFile::First, QStringLiteral("1.1.1.1"));
        QVERIFY(QFileInfo(panel.path(Resolver)).isDir());
    }

    // A FIFO with no writer would block a reader for ever.
    void fifoInPlace()
    {
        TestPanel panel;
        QVERIFY(panel.removeFile(Resolver));
        const QByteArray path = QFile::encodeName(panel.path(Resolver));
        QCOMPARE(mkfifo(path.constData(), 0600), 0);
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(ResolverFile::systemServer(QStringLiteral("eth0"), ResolverFile::First), QStringLiteral("0.0.0.0"));
        QFile file(panel.path(Resolver));
        ResolverFile::rewrite(file, QStringLiteral("eth0"), ResolverFile::First, QStringLiteral("1.1.1.1"));
        QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
        QVERIFY(QFileInfo(panel.path(Resolver)).isFile() == false);
    }

    // Bytes that are not UTF-8 belong to someone else: they stay as they are.
    void notUtf8LinesSurviveByteForByte()
    {
        TestPanel panel;
        const QByteArray foreign("search caf\xe9.lan \xff\xfe\n");
        QVERIFY(panel.writeFile(Resolver, foreign + "nameserver 10.0.0.1 # eth0\n"));
        QCOMPARE(ResolverFile::systemServer(QStringLiteral("eth0"), ResolverFile::First), QStringLiteral("10.0.0.1"));
        QFile file(panel.path(Resolver));
        ResolverFile::rewrite(file, QStringLiteral("eth0"), ResolverFile::First, QStringLiteral("2.2.2.2"));
        QCOMPARE(panel.readFile(Resolver), foreign + "nameserver 2.2.2.2 # eth0");
    }

    // A stray NUL (a half-written file, a hand edit) is just another byte:
    // the lines after it are someone else's and must not be lost.
    void nulByteKeepsTheLinesAfterIt()
    {
        TestPanel panel;
        const QByteArray foreign("search lan\0junk\nnameserver 9.9.9.9 # eth1\n", 42);
        QVERIFY(panel.writeFile(Resolver, foreign + "nameserver 10.0.0.1 # eth0"));
        QCOMPARE(ResolverFile::systemServer(QStringLiteral("eth0"), ResolverFile::First), QStringLiteral("10.0.0.1"));
        QFile file(panel.path(Resolver));
        ResolverFile::rewrite(file, QStringLiteral("eth0"), ResolverFile::First, QStringLiteral("2.2.2.2"));
        QCOMPARE(panel.readFile(Resolver), foreign + "nameserver 2.2.2.2 # eth0");
    }

    // Text mode reads CRLF as LF: the lines are found, and a rewrite leaves
    // the file with plain line ends.
    void crlfLineEnds()
    {
        TestPanel panel;
        QVERIFY(panel.writeFile(Resolver, "nameserver 10.0.0.1 # eth0\r\nnameserver 10.0.0.2 # eth0\r\nsearch lan\r\n"));
        QCOMPARE(ResolverFile::systemServer(QStringLiteral("eth0"), ResolverFile::Backup), QStringLiteral("10.0.0.2"));
        QFile file(panel.path(Resolver));
        ResolverFile::rewrite(file, QStringLiteral("eth0"), ResolverFile::First, QStringLiteral("3.3.3.3"));
        QCOMPARE(panel.readFile(Resolver),
                 QByteArray("nameserver 3.3.3.3 # eth0\nnameserver 10.0.0.2 # eth0\nsearch lan"));
    }

    // Far larger than any resolver file: read as unreadable.
    void veryLargeFile()
    {
        TestPanel panel;
        QByteArray big("nameserver 10.0.0.1 # eth0\n");
        big.append(QByteArray(ResolverFile::MaxFileSize, '#'));
        QVERIFY(panel.writeFile(Resolver, big));
        QCOMPARE(ResolverFile::systemServer(QStringLiteral("eth0"), ResolverFile::First), QStringLiteral("0.0.0.0"));
        QFile file(panel.path(Resolver));
        ResolverFile::rewrite(file, QStringLiteral("eth0"), ResolverFile::First, QStringLiteral("4.4.4.4"));
        QCOMPARE(panel.readFile(Resolver), QByteArray("nameserver 4.4.4.4 # eth0"));
    }
    void putFirstRewritesAndBacksUp()
    {
        TestPanel panel;
        QVERIFY(panel.writeFile(Resolver, "nameserver 1.1.1.1 # eth0\nnameserver 2.2.2.2 # ppp0\n"));
        QVERIFY(panel.writeFile(Backup, "old"));
        QVERIFY(ResolverFile::putFirst(QStringLiteral("ppp0")));
        const QByteArray expected("nameserver 2.2.2.2 # ppp0\nnameserver 1.1.1.1 # eth0\n");
        QCOMPARE(panel.readFile(Resolver), expected);
        QCOMPARE(panel.readFile(Backup), expected);
    }

    // No line of the chosen adapter: neither the file nor its backup changes.
    void putFirstWithoutOwnLine()
    {
        TestPanel panel;
        const QByteArray text("nameserver 1.1.1.1 # eth0\n");
        QVERIFY(panel.writeFile(Resolver, text));
        QVERIFY(panel.writeFile(Backup, "old"));
        QVERIFY(!ResolverFile::putFirst(QStringLiteral("wlan0")));
        QCOMPARE(panel.readFile(Resolver), text);
        QCOMPARE(panel.readFile(Backup), QByteArray("old"));
    }

    void putFirstOnMissingFolderOrFifo()
    {
        TestPanel panel;
        QVERIFY(panel.writeFile(Backup, "old"));
        QVERIFY(panel.removeFile(Resolver));
        QVERIFY(!ResolverFile::putFirst(QStringLiteral("eth0")));
        QVERIFY(!QFileInfo::exists(panel.path(Resolver)));
        QVERIFY(QDir().mkpath(panel.path(Resolver)));
        QVERIFY(!ResolverFile::putFirst(QStringLiteral("eth0")));
        QVERIFY(QFileInfo(panel.path(Resolver)).isDir());
        QVERIFY(QDir().rmdir(panel.path(Resolver)));
        QVERIFY(::mkfifo(QFile::encodeName(panel.path(Resolver)).constData(), 0600) == 0);
        QElapsedTimer clock;
        clock.start();
        QVERIFY(!ResolverFile::putFirst(QStringLiteral("eth0")));
        QVERIFY(clock.elapsed() < 1000);
        QCOMPARE(panel.readFile(Backup), QByteArray("old"));
    }
};

PANEL_TEST_MAIN(TestResolverFileAccess)
#include "tst_resolverfileaccess.moc"
