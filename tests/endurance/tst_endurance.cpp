// A panel runtime that never restarts: the settings window opened, used,
// closed and deleted over and over in one process, and one window left
// open, must leave nothing behind that grows.
//
// Short by default so that it runs with every test; scripts/soak runs it
// long. Environment:
//   ENDURANCE_CYCLES          window cycles (default 80)
//   ENDURANCE_WARMUP          cycles before judging (default: a tenth, at least 40)
//   ENDURANCE_SWITCHES        language switches inside one window (default 300, at least 150)
//   ENDURANCE_IDLE_SECONDS    how long the window stays open idle (default 6)
//   ENDURANCE_IDLE_SAMPLE_MS  time between idle samples (default 500)
//   ENDURANCE_OUT             folder for cycles.csv and idle.csv (default: none)
#include "enduranceconfig.h"
#include "sampleseries.h"
#include "settingsinterface.h"
#include "testharness.h"
#include "testpanel.h"
#include "windowcycle.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QPixmapCache>
#include <QPluginLoader>
#include <QtTest>

#include <cstdio>

namespace {

// Qt keeps pixmaps it derives while painting in a cache of bounded size
// (QPixmapCache, 10 MiB by default), keyed partly by the source pixmap:
// every new window adds entries until the cache trims itself, which looks
// like growth for thousands of cycles and then like a sudden drop. It is
// emptied before each sample so that what stays is what the window keeps.
ProcessSample settledSample()
{
    QPixmapCache::clear();
    return ProcessSampler::take();
}

} // namespace

namespace {

// Heap the suite lets one cycle keep, and an idle window keep a minute.
constexpr double HeapLimitBytes = 1024.0;
// A short idle run lies within the first half minute, in which each new
// second shown by the clock still adds glyphs and text layouts to Qt's
// caches: it is held to the cycle limit for each tick of the clock, and
// only a long run to the limit per minute.
constexpr double ClockTicksPerMinute = 60.0;
// A switch there and back rewrites every caption of the window; what stays
// behind must be far below the size of one installed catalogue entry.
constexpr double LanguageSwitchHeapLimitBytes = 32.0;
// An idle window polls its clock (no program) and writes the device record
// back only after a change: nothing at all is started while it is idle.
constexpr double PollingProgramsPerMinute = 0.0;

QtMessageHandler previousHandler = nullptr;

// Every window shown on the offscreen platform warns that it cannot
// propagate size hints: thousands of cycles would use up QtTest's budget of
// warnings and hide any that matter.
void dropOffscreenNoise(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type == QtWarningMsg && message == QLatin1String("This plugin does not support propagateSizeHints()"))
        return;
    previousHandler(type, context, message);
}

void say(const QString &line)
{
    std::printf("%s\n", qPrintable(line));
    std::fflush(stdout);
}

// Start, end and growth of every measure, for the closing figures.
void sayFigures(const SampleSeries &series, int warmUp, const QString &step, double stepsPerSample)
{
    say(QStringLiteral("figures (after a warm-up of %1 samples):").arg(warmUp));
    for (int m = 0; m < ProcessSample::MeasureCount; ++m) {
        const auto measure = ProcessSample::Measure(m);
        const double perStep = series.slope(measure, warmUp) / stepsPerSample;
        say(QStringLiteral("  %1: start %2, after warm-up %3, end %4, change per %5 %6")
                .arg(QLatin1String(ProcessSample::name(measure)), -12)
                .arg(series.at(0)[measure]).arg(series.at(qMin(warmUp, series.size() - 1))[measure])
                .arg(series.at(series.size() - 1)[measure]).arg(step).arg(perStep, 0, 'f', 3));
    }
}

} // namespace

class TestEndurance : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cycles();
    void languageSwitches();
    void idle();

private:
    SettingsInterface *loadPlugin(QPluginLoader *loader);
    QStringList descriptorGrowth(const QStringList &before) const;

    EnduranceConfig m_config;
};

void TestEndurance::initTestCase()
{
    m_config = EnduranceConfig::fromEnvironment();
    previousHandler = qInstallMessageHandler(dropOffscreenNoise);
}

SettingsInterface *TestEndurance::loadPlugin(QPluginLoader *loader)
{
    loader->setFileName(QString::fromLocal8Bit(SETTINGS_PLUGIN_PATH));
    return qobject_cast<SettingsInterface *>(loader->instance());
}

QStringList TestEndurance::descriptorGrowth(const QStringList &before) const
{
    QStringList opened;
    for (const QString &file : ProcessSampler::openDescriptors()) {
        if (!before.contains(file))
            opened << file;
    }
    return opened;
}

void TestEndurance::cycles()
{
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    QPluginLoader loader;
    SettingsInterface *plugin = loadPlugin(&loader);
    QVERIFY2(plugin, qPrintable(loader.errorString()));
    WindowCycle cycle(plugin);
    CsvFile csv(m_config.csvPath(QStringLiteral("cycles.csv")), SampleSeries::csvHeader(QStringLiteral("cycle")));
    SampleSeries series(m_config.cycles + 1);
    const int tenth = qMax(1, m_config.cycles / 10);
    const int warmUp = m_config.warmUp();
    QStringList descriptorsAfterWarmUp;
    QElapsedTimer clock;
    clock.start();

    series.add(settledSample());
    csv.write(SampleSeries::csvRow(0, 0, series.at(0)));
    say(SampleSeries::header(QStringLiteral("cycle")));
    say(SampleSeries::row(QStringLiteral("start"), series.at(0)));
    for (int n = 1; n <= m_config.cycles; ++n) {
        QVERIFY2(cycle.run(), qPrintable(QStringLiteral("cycle %1: %2").arg(n).arg(cycle.errorString())));
        panel.clearCalls();   // the stand-ins' log is a file of the test, not of the window
        if (n == warmUp) {
            descriptorsAfterWarmUp = ProcessSampler::openDescriptors();
            saveMemoryMap(m_config, QStringLiteral("smaps-warmup.txt"));
        }
        series.add(settledSample());
        csv.write(SampleSeries::csvRow(n, clock.elapsed() / 1000.0, series.at(n)));
        if (n % tenth == 0 || n == m_config.cycles)
            say(SampleSeries::row(QString::number(n), series.at(n)));
    }
    say(QStringLiteral("%1 cycles in %2 s (%3 ms a cycle), %4 pages and tabs a cycle")
            .arg(m_config.cycles).arg(clock.elapsed() / 1000.0, 0, 'f', 1)
            .arg(double(clock.elapsed()) / qMax(1, m_config.cycles), 0, 'f', 1).arg(cycle.pagesVisited()));
    sayFigures(series, warmUp, QStringLiteral("cycle"), 1.0);
    saveMemoryMap(m_config, QStringLiteral("smaps-end.txt"));

    QStringList grown = series.growth(warmUp, HeapLimitBytes, QStringLiteral("cycle"));
    if (series.change(ProcessSample::Descriptors, warmUp) > 0)
        grown << QStringLiteral("opened since the warm-up: ") + descriptorGrowth(descriptorsAfterWarmUp).join(", ");
    QVERIFY2(grown.isEmpty(), qPrintable(grown.join(QStringLiteral("; "))));
}

void TestEndurance::languageSwitches()
{
    // Within one window, as an operator who switches back and forth.
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    QPluginLoader loader;
    SettingsInterface *plugin = loadPlugin(&loader);
    QVERIFY2(plugin, qPrintable(loader.errorString()));
    WindowCycle cycle(plugin);
    QScopedPointer<QDialog> window(cycle.open());
    QVERIFY2(window, qPrintable(cycle.errorString()));
    const int switches = m_config.languageSwitches;
    SampleSeries series(switches + 1);
    series.add(settledSample());
    QElapsedTimer clock;
    clock.start();
    for (int n = 1; n <= switches; ++n) {
        QVERIFY2(cycle.switchLanguageAndBack(window.data()), qPrintable(cycle.errorString()));
        series.add(settledSample());
    }
    const int warmUp = qMax(40, switches / 5);
    say(QStringLiteral("%1 switches there and back in %2 s").arg(switches).arg(clock.elapsed() / 1000.0, 0, 'f', 1));
    sayFigures(series, warmUp, QStringLiteral("switch"), 1.0);
    const QStringList grown = series.growth(warmUp, LanguageSwitchHeapLimitBytes, QStringLiteral("switch"));
    QVERIFY2(grown.isEmpty(), qPrintable(grown.join(QStringLiteral("; "))));
    QVERIFY2(cycle.closeThroughRegister(window.data()), qPrintable(cycle.errorString()));
}

void TestEndurance::idle()
{
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    QPluginLoader loader;
    SettingsInterface *plugin = loadPlugin(&loader);
    QVERIFY2(plugin, qPrintable(loader.errorString()));
    WindowCycle cycle(plugin);
    QScopedPointer<QDialog> window(cycle.open());
    QVERIFY2(window, qPrintable(cycle.errorString()));
    QVERIFY2(cycle.visitPages(window.data()), qPrintable(cycle.errorString()));

    const int samples = m_config.idleSamples();
    const double minutesPerSample = m_config.idleSampleMs / 60000.0;
    CsvFile csv(m_config.csvPath(QStringLiteral("idle.csv")), SampleSeries::csvHeader(QStringLiteral("minute")));
    SampleSeries series(samples + 1);
    const int tenth = qMax(1, samples / 10);
    panel.clearCalls();
    QElapsedTimer clock;
    clock.start();
    series.add(settledSample());
    csv.write(SampleSeries::csvRow(0, 0, series.at(0)));
    say(SampleSeries::header(QStringLiteral("minute")));
    say(SampleSeries::row(QStringLiteral("start"), series.at(0)));
    for (int n = 1; n <= samples; ++n) {
        // Idle means time passing with the window's timers running.
        QTest::qWait(int(qint64(n) * m_config.idleSampleMs - clock.elapsed()));
        series.add(settledSample());
        const double minutes = clock.elapsed() / 60000.0;
        csv.write(SampleSeries::csvRow(minutes, clock.elapsed() / 1000.0, series.at(n)));
        if (n % tenth == 0 || n == samples)
            say(SampleSeries::row(QString::number(minutes, 'f', 2), series.at(n)));
    }
    const double minutes = clock.elapsed() / 60000.0;
    const int programs = panel.calls().size();
    const double perMinute = programs / minutes;
    say(QStringLiteral("idle for %1 min: %2 programs started, %3 a minute (polling gives %4)")
            .arg(minutes, 0, 'f', 2).arg(programs).arg(perMinute, 0, 'f', 2).arg(PollingProgramsPerMinute));
    const int warmUp = m_config.idleWarmUpSamples();
    sayFigures(series, warmUp, QStringLiteral("minute"), minutesPerSample);

    const double limit = m_config.longIdle() ? HeapLimitBytes : HeapLimitBytes * ClockTicksPerMinute;
    const QStringList grown = series.growth(warmUp, limit, QStringLiteral("minute"), minutesPerSample);
    QVERIFY2(grown.isEmpty(), qPrintable(grown.join(QStringLiteral("; "))));
    QVERIFY2(perMinute <= PollingProgramsPerMinute,
             qPrintable(QStringLiteral("the idle window started %1 programs: %2").arg(programs)
                            .arg(panel.calls().value(0).join(QLatin1Char(' ')))));
    QVERIFY2(cycle.closeThroughRegister(window.data()), qPrintable(cycle.errorString()));
}

PANEL_GUI_TEST_MAIN(TestEndurance)
#include "tst_endurance.moc"
