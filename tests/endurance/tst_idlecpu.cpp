// What the open window costs the host while nobody touches it. The WLAN, 4G
// and VPN tabs each poll the host once a second (scan list, link states);
// together those ticks must add next to nothing to the open window, measured
// against the same window with them stopped, in the same run. A bare widget
// of the same size is measured too, for scale: the window's own repaint
// poll runs a hundred times a second whatever the tabs do.
//
// Environment:
//   IDLECPU_SECONDS   length of each measurement (default 6)
#include "settingsinterface.h"
#include "testharness.h"
#include "targetprogram.h"
#include "testpanel.h"
#include "windowcycle.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <QPluginLoader>
#include <QTabWidget>
#include <QtTest>

#include <sys/resource.h>

namespace {

// Allowed difference to the bare window, in percentage points of one core.
constexpr double AllowedPoints = 0.3;

qint64 cpuMicroseconds()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return qint64(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1000000
        + usage.ru_utime.tv_usec + usage.ru_stime.tv_usec;
}

// Share of one core used while the event loop runs for `ms`.
double idlePercent(int ms)
{
    QElapsedTimer wall;
    const qint64 before = cpuMicroseconds();
    wall.start();
    // A plain event loop: QTest::qWait wakes every few milliseconds itself.
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
    const qint64 used = cpuMicroseconds() - before;
    return 100.0 * double(used) / (double(wall.nsecsElapsed()) / 1000.0);
}

int measureMs()
{
    const int seconds = qEnvironmentVariableIntValue("IDLECPU_SECONDS");
    return (seconds > 0 ? seconds : 6) * 1000;
}

} // namespace

class TestIdleCpu : public QObject
{
    Q_OBJECT

private slots:
    void windowWithEveryTabStaysCloseToBareWindow();

private:
    double bareWindow(int ms);
    static void setRunning(const QList<QTimer *> &timers, bool running);
};

double TestIdleCpu::bareWindow(int ms)
{
    QWidget bare;
    bare.resize(800, 480);
    bare.show();
    if (!QTest::qWaitForWindowExposed(&bare))
        return -1;
    QTest::qWait(500);
    return idlePercent(ms);
}

void TestIdleCpu::setRunning(const QList<QTimer *> &timers, bool running)
{
    for (QTimer *timer : timers) {
        // Only the repeating polls; single shots belong to a press.
        if (timer->isSingleShot())
            continue;
        if (running)
            timer->start();
        else
            timer->stop();
    }
}

void TestIdleCpu::windowWithEveryTabStaysCloseToBareWindow()
{
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    QPluginLoader loader(QString::fromLocal8Bit(SETTINGS_PLUGIN_PATH));
    auto *plugin = qobject_cast<SettingsInterface *>(loader.instance());
    QVERIFY2(plugin, qPrintable(loader.errorString()));
    const int ms = measureMs();

    const double bareBefore = bareWindow(ms);
    QVERIFY(bareBefore >= 0);

    WindowCycle cycle(plugin);
    QScopedPointer<QDialog> window(cycle.open());
    QVERIFY2(window, qPrintable(cycle.errorString()));
    // Every tab built and shown once, as after an operator's visit; the
    // network page stays current so its visible tab paints when it changes.
    QVERIFY2(cycle.visitPages(window.data()), qPrintable(cycle.errorString()));
    const QStringList wanted {QStringLiteral("WirelessWgtUI"), QStringLiteral("MobileNetworkUI"),
                              QStringLiteral("VpnSetUI")};
    for (const QString &name : wanted)
        QVERIFY2(window->findChild<QWidget *>(name), qPrintable(name + QStringLiteral(" missing")));
    QList<QTimer *> ticks;
    for (const QString &name : wanted)
        ticks += window->findChild<QWidget *>(name)->findChildren<QTimer *>();
    QVERIFY(!ticks.isEmpty());
    QTest::qWait(1500);
    // The tabs' ticks on and off in turn, so that a change in the machine's
    // load during the run falls on both sides alike.
    double withTicks = 0;
    double withoutTicks = 0;
    for (int round = 0; round < 2; ++round) {
        setRunning(ticks, false);
        withoutTicks += idlePercent(ms / 2) / 2;
        setRunning(ticks, true);
        withTicks += idlePercent(ms / 2) / 2;
    }
    QVERIFY2(cycle.closeThroughRegister(window.data()), qPrintable(cycle.errorString()));
    window.reset();

    const double bareAfter = bareWindow(ms);
    QVERIFY(bareAfter >= 0);
    const double bare = (bareBefore + bareAfter) / 2;
    const double allowed = AllowedPoints * timeAllowance();
    qInfo("idle CPU over %d s each: bare widget %.3f %%; settings window with the WLAN, 4G and VPN "
          "ticks stopped %.3f %%, running %.3f %%: the ticks add %.3f points (allowed %.1f)",
          ms / 1000, bare, withoutTicks, withTicks, withTicks - withoutTicks, allowed);
    QVERIFY2(withTicks - withoutTicks <= allowed,
             qPrintable(QStringLiteral("the tabs' ticks use %1 points")
                            .arg(withTicks - withoutTicks, 0, 'f', 3)));
}

PANEL_GUI_TEST_MAIN(TestIdleCpu)
#include "tst_idlecpu.moc"
