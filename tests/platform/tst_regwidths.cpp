// Every register width of the host's table, read and written many times
// while another process (regwriter, playing the host) writes the same
// register, or the bits around it, under the host's lock protocol. No read
// may see a value that is not one whole value, no write may land inside the
// other side's, and nothing outside the register may change.
#include "localreg.h"
#include "regcontention.h"
#include "sysreg.h"
#include "targetprogram.h"
#include "testharness.h"
#include "testpanel.h"

#include <QElapsedTimer>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QtTest>

#include <atomic>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <sched.h>
#include <thread>
#include <unistd.h>

namespace {

// Our reads and writes per width: half of each.
constexpr int OperationsPerWidth = 100000;
// The same against a host thread of our own process, as on the panel.
constexpr int InProcessOperationsPerWidth = 20000;
constexpr unsigned char OurFirst = 0x11;
constexpr unsigned char OurSecond = 0x22;
constexpr unsigned char HostFirst = 0x33;
constexpr unsigned char HostSecond = 0x44;
// How often the host's process is looked at while we run.
constexpr int WatchEvery = 4096;
constexpr int YieldEvery = 4;
constexpr int StartMs = 5000;
constexpr int StopMs = 10000;

bool synchronousArea(unsigned area)
{
    return area == LocalArea::Fw || area == LocalArea::Fb || area == LocalArea::Sfw
        || area == LocalArea::Sfb;
}

// One register per distinct width of the table (bytes of a word register,
// bits of a bit register), preferring one whose file is not synchronous:
// the same code path without a disk flush per write.
QMap<QPair<bool, quint32>, unsigned> registerPerWidth()
{
    QMap<QPair<bool, quint32>, unsigned> chosen;
    const SysReg::Row *rows = SysReg::table();
    for (unsigned i = 0; i < SysReg::RegCount; ++i) {
        const QPair<bool, quint32> width(LocalReg::isBitArea(rows[i].area), rows[i].length);
        const auto found = chosen.constFind(width);
        if (found == chosen.constEnd()
            || (synchronousArea(rows[*found].area) && !synchronousArea(rows[i].area)))
            chosen.insert(width, i);
    }
    return chosen;
}

bool uniform(const unsigned char *bytes, int length, unsigned char value)
{
    for (int i = 0; i < length; ++i) {
        if (bytes[i] != value)
            return false;
    }
    return true;
}

struct Tally
{
    int reads = 0;
    int writes = 0;
    int ours = 0;           // reads that saw one of our values
    int host = 0;           // reads that saw one of the host's
    QString wrong;          // the first wrong observation
};

// Alternating whole values of our own; every read one whole value of
// either side.
void wordRound(unsigned index, int length, int round, Tally &tally)
{
    unsigned char value[256];
    std::memset(value, round % 2 ? OurSecond : OurFirst, sizeof value);
    if (SysReg_Write(index, value, unsigned(length)) != 0) {
        tally.wrong = QStringLiteral("write failed");
        return;
    }
    ++tally.writes;
    unsigned char seen[256];
    std::memset(seen, 0xee, sizeof seen);
    if (SysReg_Read(index, seen) != 0) {
        tally.wrong = QStringLiteral("read failed");
        return;
    }
    ++tally.reads;
    if (uniform(seen, length, OurFirst) || uniform(seen, length, OurSecond))
        ++tally.ours;
    else if (uniform(seen, length, HostFirst) || uniform(seen, length, HostSecond))
        ++tally.host;
    else
        tally.wrong = QStringLiteral("torn value %1").arg(QString::fromLatin1(QByteArray(reinterpret_cast<char *>(seen), length).toHex()));
    if (seen[length] != 0xee && tally.wrong.isEmpty())
        tally.wrong = QStringLiteral("read past the register");
}

// Our bit flips while the host flips every bit around it: ours always reads
// back as we left it, and the host's bits that come with it are all set or
// all clear.
void bitRound(unsigned index, unsigned bit, int round, Tally &tally)
{
    const unsigned char value = round % 2 ? 1 : 0;
    if (SysReg_Write(index, &value, 1) != 0) {
        tally.wrong = QStringLiteral("write failed");
        return;
    }
    ++tally.writes;
    unsigned char seen[2] = {0xee, 0xee};
    if (SysReg_Read(index, seen) != 0) {
        tally.wrong = QStringLiteral("read failed");
        return;
    }
    ++tally.reads;
    const unsigned above = 7 - bit % 8;             // host bits read along
    const unsigned mask = (1u << above) - 1;
    const unsigned hostBits = (seen[0] >> 1) & mask;
    if ((seen[0] & 1) != value)
        tally.wrong = QStringLiteral("our bit lost: wrote %1, read %2").arg(value).arg(seen[0] & 1);
    else if (hostBits != 0 && hostBits != mask)
        tally.wrong = QStringLiteral("host bits torn: %1").arg(hostBits, 0, 2);
    else if (seen[1] != 0xee)
        tally.wrong = QStringLiteral("read past the register");
    else if (above > 0)
        ++(hostBits ? tally.host : tally.ours);
}

// Our half: reads and writes of the register, `operations` in all unless
// something is wrong or the host is gone (asked every few rounds).
Tally runRounds(unsigned index, int operations, const std::function<bool()> &hostGone)
{
    const SysReg::Row row = SysReg::table()[index];
    const bool bits = LocalReg::isBitArea(row.area);
    Tally tally;
    for (int round = 0; round < operations / 2 && tally.wrong.isEmpty(); ++round) {
        if (bits)
            bitRound(index, row.offset, round, tally);
        else
            wordRound(index, int(row.length), round, tally);
        if (round % WatchEvery == 0 && hostGone())
            break;
        // Record locks hand over to no waiter in particular: without a
        // pause of ours now and then the host would hardly ever get in.
        if (round % YieldEvery == 0)
            sched_yield();
    }
    return tally;
}

// The file with the bytes [from, from + count) blanked out.
QByteArray outside(QByteArray file, int from, int count)
{
    return file.replace(from, count, QByteArray(count, '\0'));
}

} // namespace

class TestRegisterWidths : public QObject
{
    Q_OBJECT

private slots:
    void wholeValuesAgainstTheHost_data();
    void wholeValuesAgainstTheHost();
    void wholeValuesAgainstTheHostInProcess_data() { wholeValuesAgainstTheHost_data(); }
    void wholeValuesAgainstTheHostInProcess();

private:
    void startHost(QProcess &host, const QStringList &arguments);
    QString stopHost(QProcess &host);
};

void TestRegisterWidths::wholeValuesAgainstTheHost_data()
{
    QTest::addColumn<unsigned>("index");
    const auto chosen = registerPerWidth();
    for (auto it = chosen.constBegin(); it != chosen.constEnd(); ++it) {
        QTest::addRow("%s %u (register %u)", it.key().first ? "bits" : "bytes", it.key().second, it.value())
            << it.value();
    }
}

void TestRegisterWidths::wholeValuesAgainstTheHost()
{
    QFETCH(unsigned, index);
    const SysReg::Row row = SysReg::table()[index];
    const bool bits = LocalReg::isBitArea(row.area);
    QVERIFY2(bits ? row.length == 1 : row.length <= 255,
             "the rounds below handle single bits and words up to 255 bytes");
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    const QString file = QString::fromLatin1(LocalReg::areaPath(row.area));
    const unsigned char start[256] = {};
    QCOMPARE(SysReg_Write(index, start, row.length), 0);
    const QByteArray before = panel.readFile(file);

    QProcess host;
    startHost(host, bits
        ? QStringList{"bits", panel.path(file), QString::number(row.offset)}
        : QStringList{"words", panel.path(file), QString::number(row.offset), QString::number(row.length)});
    if (QTest::currentTestFailed())
        return;
    QElapsedTimer clock;
    clock.start();
    const Tally tally = runRounds(index, OperationsPerWidth, [&host] { return host.waitForFinished(0); });
    const qint64 took = clock.elapsed();
    QVERIFY2(tally.wrong.isEmpty(), qPrintable(tally.wrong));
    const QString hostCounts = stopHost(host);
    if (QTest::currentTestFailed())
        return;
    qInfo("%s %u: %d reads and %d writes (%d saw ours, %d the host's); host %s; %lld ms",
          bits ? "bits" : "bytes", row.length, tally.reads, tally.writes, tally.ours, tally.host,
          qPrintable(hostCounts), took);
    QCOMPARE(tally.reads + tally.writes, OperationsPerWidth);

    // Nothing of the file outside the register changed, or, for a bit,
    // outside the bytes the host played with around it.
    const int from = bits ? qMax(0, int(row.offset / 8) - 1) : int(row.offset);
    const int count = bits ? int(row.offset / 8) + 2 - from : int(row.length);
    QCOMPARE(outside(panel.readFile(file), from, count), outside(before, from, count));
}

// The plug-in runs inside the host's process, whose threads take lockf()
// locks: process-owned locks, which our own lockf() would simply share. The
// same rounds against such a thread.
void TestRegisterWidths::wholeValuesAgainstTheHostInProcess()
{
    QFETCH(unsigned, index);
    const SysReg::Row row = SysReg::table()[index];
    const bool bits = LocalReg::isBitArea(row.area);
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    const QString file = QString::fromLatin1(LocalReg::areaPath(row.area));
    const unsigned char start[256] = {};
    QCOMPARE(SysReg_Write(index, start, row.length), 0);
    const QByteArray before = panel.readFile(file);

    // Nothing in this process may open and close the file while the host
    // thread holds locks on it: closing any descriptor of a file drops them.
    const int fd = ::open(QFile::encodeName(panel.path(file)).constData(), O_RDWR | O_CLOEXEC);
    QVERIFY(fd >= 0);
    std::atomic<bool> stop {false};
    std::atomic<bool> done {false};
    ContentionCounts counts;
    int result = -1;
    std::thread host([&] {
        const ContentionStop stopped = [](void *flag) { return static_cast<std::atomic<bool> *>(flag)->load(); };
        result = bits ? contendBits(fd, long(row.offset), stopped, &stop, &counts)
                      : contendWords(fd, long(row.offset), int(row.length), stopped, &stop, &counts);
        done = true;
    });
    QElapsedTimer clock;
    clock.start();
    const Tally tally = runRounds(index, InProcessOperationsPerWidth, [&done] { return done.load(); });
    const qint64 took = clock.elapsed();
    stop = true;
    host.join();
    ::close(fd);
    QVERIFY2(tally.wrong.isEmpty(), qPrintable(tally.wrong));
    QCOMPARE(result, 0);
    qInfo("%s %u in one process: %d reads and %d writes (%d saw ours, %d the host's); host %ld writes, "
          "%ld checks; %lld ms", bits ? "bits" : "bytes", row.length, tally.reads, tally.writes, tally.ours,
          tally.host, counts.writes, counts.checks, took);
    QCOMPARE(tally.reads + tally.writes, InProcessOperationsPerWidth);
    QVERIFY(counts.writes > 0);
    const int from = bits ? qMax(0, int(row.offset / 8) - 1) : int(row.offset);
    const int count = bits ? int(row.offset / 8) + 2 - from : int(row.length);
    QCOMPARE(outside(panel.readFile(file), from, count), outside(before, from, count));
}

// Starts the host's writer on the register and waits until it has the file.
void TestRegisterWidths::startHost(QProcess &host, const QStringList &arguments)
{
    host.setProcessChannelMode(QProcess::SeparateChannels);
    host.setReadChannel(QProcess::StandardOutput);
    const TargetProgram program = targetProgram(QStringLiteral(REGWRITER_PATH), arguments);
    host.start(program.program, program.arguments);
    QVERIFY2(host.waitForStarted(StartMs), qPrintable(host.errorString()));
    QVERIFY(host.waitForReadyRead(int(StartMs * timeAllowance())));
    QCOMPARE(host.readLine(), QByteArray("ready\n"));
}

// Ends the writer, which must have run all along and seen nothing wrong;
// its counts.
QString TestRegisterWidths::stopHost(QProcess &host)
{
    const bool ran = host.state() == QProcess::Running;
    host.closeWriteChannel();
    const bool stopped = host.waitForFinished(int(StopMs * timeAllowance()));
    if (!stopped)
        host.kill();
    const QByteArray report = host.readAll();
    const QByteArray complaint = host.readAllStandardError();
    const QRegularExpressionMatch counts =
        QRegularExpression(QStringLiteral("writes (\\d+) checks (\\d+)")).match(QString::fromLatin1(report));
    [&] {
        QVERIFY2(ran && stopped, (report + complaint).constData());
        QCOMPARE(host.exitStatus(), QProcess::NormalExit);
        QVERIFY2(host.exitCode() == 0, complaint.constData());
        QVERIFY2(counts.hasMatch(), report.constData());
        QVERIFY2(counts.captured(1).toInt() > 0, "the host never got the register");
    }();
    return QStringLiteral("%1 writes, %2 checks").arg(counts.captured(1), counts.captured(2));
}

PANEL_TEST_MAIN(TestRegisterWidths)
#include "tst_regwidths.moc"
