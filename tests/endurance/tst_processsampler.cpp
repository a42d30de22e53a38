// The endurance suite is only as good as its eyes: each measure of the
// sampler must see what it claims to count, and the series must tell a
// steady climb from noise and name what grew.
#include "processsampler.h"
#include "sampleseries.h"
#include "testharness.h"

#include <QFile>
#include <QFontDatabase>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>
#include <QWidget>
#include <QtTest>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const char FontFile[] = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

ProcessSample sampleWith(qint64 heap, qint64 descriptors)
{
    ProcessSample s;
    s.values[ProcessSample::HeapBytes] = heap;
    s.values[ProcessSample::Descriptors] = descriptors;
    return s;
}

// Heap that wanders by up to 6 KiB either way, deterministically.
qint64 noisyHeap(int step, double perStep)
{
    return 4000000 + qint64(perStep * step) + qint64((step * 7919 % 13) - 6) * 1024;
}

} // namespace

class TestProcessSampler : public QObject
{
    Q_OBJECT

private slots:
    void seesDescriptorsAndTheirFiles();
    void seesThreads();
    void seesChildrenAndZombies();
    void seesWidgetsTimersAndFonts();
    void seesHeap();
    void noiseIsNotGrowth();
    void steadyHeapClimbIsNamed();
    void countThatGrowsIsNamed();
};

void TestProcessSampler::seesDescriptorsAndTheirFiles()
{
    const ProcessSample before = ProcessSampler::take();
    QTemporaryDir dir;
    QFile file(dir.filePath(QStringLiteral("watched")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(ProcessSampler::take()[ProcessSample::Descriptors], before[ProcessSample::Descriptors] + 1);
    const QString listed = ProcessSampler::openDescriptors().join(QLatin1Char('\n'));
    QVERIFY2(listed.contains(file.fileName()), qPrintable(listed));
}

void TestProcessSampler::seesThreads()
{
    const int before = ProcessSampler::threadCount();
    QThread thread;
    thread.start();
    QCOMPARE(ProcessSampler::threadCount(), before + 1);
    thread.quit();
    QVERIFY(thread.wait(5000));
    QTRY_COMPARE(ProcessSampler::threadCount(), before);
}

void TestProcessSampler::seesChildrenAndZombies()
{
    int live = 0;
    int zombies = 0;
    ProcessSampler::childProcesses(&live, &zombies);
    QCOMPARE(live, 0);
    QCOMPARE(zombies, 0);
    const pid_t child = fork();
    QVERIFY(child >= 0);
    if (child == 0) {
        pause();
        _exit(0);
    }
    ProcessSampler::childProcesses(&live, &zombies);
    QCOMPARE(live, 1);
    kill(child, SIGKILL);
    QTRY_VERIFY((ProcessSampler::childProcesses(&live, &zombies), zombies == 1));
    QCOMPARE(live, 0);
    QCOMPARE(waitpid(child, nullptr, 0), child);
    ProcessSampler::childProcesses(&live, &zombies);
    QCOMPARE(zombies, 0);
}

void TestProcessSampler::seesWidgetsTimersAndFonts()
{
    const ProcessSample before = ProcessSampler::take();
    {
        QWidget window;
        new QTimer(&window);
        new QTimer(new QObject(&window));
        new QObject(qApp);
        const ProcessSample with = ProcessSampler::take();
        QCOMPARE(with[ProcessSample::TopLevelWidgets], before[ProcessSample::TopLevelWidgets] + 1);
        QCOMPARE(with[ProcessSample::Timers], before[ProcessSample::Timers] + 2);
        QCOMPARE(with[ProcessSample::AppChildren], before[ProcessSample::AppChildren] + 1);
    }
    const int id = QFontDatabase::addApplicationFont(QString::fromLatin1(FontFile));
    if (id < 0)
        QSKIP("no font file to register on this machine");
    QCOMPARE(ProcessSampler::applicationFonts(), int(before[ProcessSample::AppFonts]) + 1);
    QFontDatabase::removeApplicationFont(id);
    QCOMPARE(ProcessSampler::applicationFonts(), int(before[ProcessSample::AppFonts]));
}

void TestProcessSampler::seesHeap()
{
#if defined(__SANITIZE_ADDRESS__)
    // AddressSanitizer's allocator keeps its heap where mallinfo2 does not
    // look; the endurance suite's heap figures come from normal builds.
    QSKIP("the C library's heap figures do not cover AddressSanitizer's allocator");
#endif
    const qint64 before = ProcessSampler::heapInUse();
    QScopedPointer<QByteArray> block(new QByteArray(1 << 20, 'x'));
    QVERIFY(ProcessSampler::heapInUse() - before >= 1 << 20);
    block.reset();
    QVERIFY(ProcessSampler::heapInUse() - before < 1 << 19);
}

void TestProcessSampler::noiseIsNotGrowth()
{
    SampleSeries series(400);
    for (int step = 0; step < 400; ++step)
        series.add(sampleWith(noisyHeap(step, 0.0), 8));
    QVERIFY2(series.growth(40, 1024.0, QStringLiteral("cycle")).isEmpty(),
             qPrintable(series.growth(40, 1024.0, QStringLiteral("cycle")).join(QLatin1Char(';'))));
    QVERIFY(qAbs(series.slope(ProcessSample::HeapBytes, 40)) < 100.0);
}

void TestProcessSampler::steadyHeapClimbIsNamed()
{
    SampleSeries series(400);
    for (int step = 0; step < 400; ++step)
        series.add(sampleWith(noisyHeap(step, 1500.0), 8));
    const QStringList grown = series.growth(40, 1024.0, QStringLiteral("cycle"));
    QCOMPARE(grown.size(), 1);
    QVERIFY2(grown.first().startsWith(QStringLiteral("heap grew by 1.4")), qPrintable(grown.first()));
    QVERIFY(grown.first().contains(QStringLiteral("per cycle")));
}

void TestProcessSampler::countThatGrowsIsNamed()
{
    SampleSeries series(200);
    // One descriptor more every 20 steps, from a level start.
    for (int step = 0; step < 200; ++step)
        series.add(sampleWith(4000000, 8 + step / 20));
    const QStringList grown = series.growth(20, 1024.0, QStringLiteral("cycle"));
    QCOMPARE(grown.size(), 1);
    QVERIFY2(grown.first().startsWith(QStringLiteral("fds grew by 8 ")), qPrintable(grown.first()));
    QVERIFY2(grown.first().contains(QStringLiteral("(9 -> 17)")), qPrintable(grown.first()));
}

PANEL_GUI_TEST_MAIN(TestProcessSampler)
#include "tst_processsampler.moc"
