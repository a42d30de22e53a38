#include "commandtext.h"
#include "fdexhaustion.h"
#include "processrunner.h"
#include "testharness.h"
#include "testpanel.h"

#include <QDir>
#include <QElapsedTimer>
#include <QtTest>

#include <cstring>
#include <limits>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// A bound short enough to keep the suite fast; the real bounds are tried
// through the device commands in their own tests.
constexpr int ShortBoundMs = 400;
// Time for the kill and the reaping on a loaded machine.
constexpr qint64 SlackMs = 1500;

// 'R', 'S', 'Z'... for a live or zombie process, 0 when it is gone.
char processState(qint64 pid)
{
    QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!stat.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = stat.readAll();
    const int close = text.lastIndexOf(')');
    return close > 0 && close + 2 < text.size() ? text.at(close + 2) : 0;
}

bool isGone(qint64 pid)
{
    const char state = processState(pid);
    return state == 0 || state == 'Z' || state == 'X';
}

// Children of this process that ended but were never reaped.
int ourZombies()
{
    int zombies = 0;
    const QStringList entries = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
    for (const QString &entry : entries) {
        bool number = false;
        entry.toLongLong(&number);
        if (!number)
            continue;
        QFile stat(QStringLiteral("/proc/%1/stat").arg(entry));
        if (!stat.open(QIODevice::ReadOnly))
            continue;
        const QByteArray text = stat.readAll();
        const int close = text.lastIndexOf(')');
        const QList<QByteArray> rest = text.mid(close + 2).split(' ');
        if (rest.size() > 1 && rest.at(0) == "Z" && rest.at(1).toLongLong() == getpid())
            ++zombies;
    }
    return zombies;
}

qint64 readPid(const TestPanel &panel, const QString &file)
{
    return panel.readFile(file).trimmed().toLongLong();
}

} // namespace

class TestProcessRunner : public QObject
{
    Q_OBJECT

private slots:
    void exitStatusAsSystemGivesIt()
    {
        const int status = ProcessRunner::system("exit 3", ShortBoundMs);
        QVERIFY(WIFEXITED(status));
        QCOMPARE(WEXITSTATUS(status), 3);
        QCOMPARE(ProcessRunner::system("true", ShortBoundMs), 0);
    }

    // The shell, the tool it started and everything in between are ended
    // at the bound, and none is left a zombie.
    void hungCommandIsEndedWithWhatItStarted()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        const QByteArray command = "echo $$ > '" + QFile::encodeName(panel.path("/tmp/shell.pid"))
            + "'; sleep 1000 & echo $! > '" + QFile::encodeName(panel.path("/tmp/tool.pid")) + "'; wait";
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("did not end within 400 ms")));
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(ProcessRunner::system(command, ShortBoundMs), -1);
        const qint64 took = clock.elapsed();
        QVERIFY2(took >= ShortBoundMs - 10 && took < ShortBoundMs + SlackMs, qPrintable(QString::number(took)));
        const qint64 shell = readPid(panel, "/tmp/shell.pid");
        const qint64 tool = readPid(panel, "/tmp/tool.pid");
        QVERIFY(shell > 1 && tool > 1);
        QTRY_VERIFY(isGone(tool));
        QCOMPARE(processState(shell), char(0));     // reaped, not a zombie
        QCOMPARE(ourZombies(), 0);
    }

    // A short program's end is seen when it happens, not at the next of a
    // series of growing pauses: the window starts a score of them as it
    // opens, and each such delay added to its opening.
    void shortProgramReturnsWhenItEnds()
    {
#ifdef SYS_pidfd_open
        const int notice = int(syscall(SYS_pidfd_open, getpid(), 0));
#else
        const int notice = -1;
#endif
        if (notice < 0)
            QSKIP("this kernel cannot report a child's end; the runner looks at intervals there");
        ::close(notice);
        qint64 best = std::numeric_limits<qint64>::max();
        for (int run = 0; run < 5; ++run) {
            QElapsedTimer clock;
            clock.start();
            QCOMPARE(ProcessRunner::system("exec sleep 0.035", 2000), 0);
            best = qMin(best, clock.elapsed());
        }
        // Looking after 1, 3, 7, 15, 31 and 51 ms would first see it at 51.
        QVERIFY2(best >= 35 && best < 46, qPrintable(QString::number(best)));
    }

    void backgroundCommandReturnsAtOnce()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        const QByteArray command = "sleep 30 & echo $! > '" + QFile::encodeName(panel.path("/tmp/bg.pid")) + "'";
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(ProcessRunner::system(command, 5000), 0);
        QVERIFY(clock.elapsed() < 1000);
        const qint64 background = readPid(panel, "/tmp/bg.pid");
        QVERIFY(background > 1);
        QVERIFY(!isGone(background));     // left running, as "&" asks
        ::kill(pid_t(background), SIGKILL);
        QTRY_VERIFY(isGone(background));
    }

    void readCountsWhatCame()
    {
        char buf[16];
        std::memset(buf, 'x', sizeof buf);
        int count = -1;
        QCOMPARE(ProcessRunner::readFrom("printf abc", buf, 10, ShortBoundMs, &count), int(ProcessRunner::Done));
        QCOMPARE(count, 3);
        QCOMPARE(QByteArray(buf, 5), QByteArray("abcxx"));
    }

    // Reading stops at the buffer's size; the tool ends on the closed pipe.
    void readStopsAtTheBuffer()
    {
        char buf[8];
        int count = -1;
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(ProcessRunner::readFrom("yes", buf, int(sizeof buf), 3000, &count), int(ProcessRunner::Done));
        QCOMPARE(count, 8);
        QVERIFY(clock.elapsed() < 2000);
    }

    void hungReaderKeepsWhatCameAndEnds()
    {
        char buf[16] = {};
        int count = -1;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("did not end within")));
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(ProcessRunner::readFrom("printf abc; exec sleep 1000", buf, 10, ShortBoundMs, &count),
                 int(ProcessRunner::TimedOut));
        QVERIFY(clock.elapsed() < ShortBoundMs + SlackMs);
        QCOMPARE(count, 3);
        QCOMPARE(QByteArray(buf), QByteArray("abc"));
        QCOMPARE(ourZombies(), 0);
    }

    // A tool that never reads its input: the pipe fills and the bound ends it.
    void writerToHungToolEnds()
    {
        const QByteArray big(1 << 20, 'w');
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("did not end within")));
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(ProcessRunner::writeTo("exec sleep 1000", big.constData(), big.size(), ShortBoundMs),
                 int(ProcessRunner::TimedOut));
        QVERIFY(clock.elapsed() < ShortBoundMs + SlackMs);
        QCOMPARE(ourZombies(), 0);
    }

    void writerDeliversItsInput()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        const QByteArray data(100000, 'd');
        const QByteArray command = "cat > '" + QFile::encodeName(panel.path("/tmp/in.bin")) + "'";
        QCOMPARE(ProcessRunner::writeTo(command.constData(), data.constData(), data.size(), 3000),
                 int(ProcessRunner::Done));
        QCOMPARE(panel.readFile("/tmp/in.bin"), data);
    }

    void unstartableCommand()
    {
        FdExhaustion exhaustion;
        QVERIFY(exhaustion.isActive());
        char buf[4] = {'x', 'x', 'x', 'x'};
        const int read = ProcessRunner::readFrom("true", buf, 4, ShortBoundMs);
        const int written = ProcessRunner::writeTo("true", buf, 4, ShortBoundMs);
        exhaustion.release();
        QCOMPARE(read, int(ProcessRunner::NotStarted));
        QCOMPARE(written, int(ProcessRunner::NotStarted));
        QCOMPARE(buf[0], 'x');
    }

    // A checked command reaches the shell with the panel root applied; one
    // whose value failed its check never reaches it.
    void runCommandRunsOnlyCheckedText()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        QCOMPARE(runCommand(CommandText("touch /tmp/made")), 0);
        QVERIFY(QFileInfo::exists(panel.path("/tmp/made")));

        const QString hostile = QStringLiteral("1.2.3.4; touch ") + panel.path("/tmp/pwned");
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^command not run: ")));
        QCOMPARE(runCommand(CommandText("echo %s").ipv4(hostile)), -1);
        QVERIFY(!QFileInfo::exists(panel.path("/tmp/pwned")));
    }

    // Children ended at their bound are reaped, however many there were.
    void manyTimeoutsLeaveNoZombies()
    {
        for (int i = 0; i < 5; ++i) {
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("did not end within")));
            QCOMPARE(ProcessRunner::system("exec sleep 1000", 50), -1);
        }
        QCOMPARE(ourZombies(), 0);
    }
};

PANEL_TEST_MAIN(TestProcessRunner)
#include "tst_processrunner.moc"
