// The idle cost of the open window with every page and tab visited, against
// a bare dialog with as many widgets: CPU time of the whole process over a
// fixed wall time in a plain event loop.
//
// Environment: BENCH_IDLE_SECONDS, the wall time of one measurement
// (default 5).
#include "baredialog.h"
#include "processcost.h"
#include "settingsinterface.h"
#include "windowbench.h"
#include "windowcycle.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QEvent>

namespace {

constexpr double DefaultSeconds = 5.0;
constexpr int SettleMs = 1500;

int idleMs()
{
    bool ok = false;
    const double seconds = qEnvironmentVariable("BENCH_IDLE_SECONDS").toDouble(&ok);
    return int(1000 * (ok && seconds > 0 ? seconds : DefaultSeconds));
}

// Counts the timer events the whole application delivers.
class TimerEvents : public QObject
{
public:
    TimerEvents() { QCoreApplication::instance()->installEventFilter(this); }
    qint64 count = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Timer)
            ++count;
        return false;
    }
};

enum class Variant { Window, Baseline, BaselineWithPoll };

QDialog *openVariant(Variant variant, QString *error)
{
    if (variant != Variant::Window) {
        WindowBench::Opening opening;
        if (!WindowBench::observeOpening(&opening, error))
            return nullptr;
        return new BareDialog(opening.widgets, variant == Variant::BaselineWithPoll);
    }
    SettingsInterface *settings = WindowBench::plugin(error);
    if (!settings)
        return nullptr;
    WindowCycle cycle(settings);
    QDialog *window = cycle.open();
    // As after an operator's visit: every page and tab built and shown once.
    if (!window || !cycle.visitPages(window)) {
        *error = cycle.errorString();
        delete window;
        return nullptr;
    }
    return window;
}

void idleCpu(benchmark::State &state, Variant variant)
{
    QString error;
    QDialog *window = openVariant(variant, &error);
    // The settings window comes shown and exposed; the bare one shows here.
    if (!window || (!window->isVisible() && !WindowBench::waitForFirstPaint(window))) {
        state.SkipWithError(qPrintable(QStringLiteral("no window: ") + error));
        WindowBench::dispose(window);
        return;
    }
    WindowBench::idle(SettleMs);
    const int ms = idleMs();
    double percent = 0;
    double timersPerSecond = 0;
    for (auto _ : state) {
        TimerEvents timers;
        QElapsedTimer wall;
        const qint64 before = ProcessCost::cpuMicroseconds();
        wall.start();
        WindowBench::idle(ms);
        const double wallUs = double(wall.nsecsElapsed()) / 1000.0;
        percent = 100.0 * double(ProcessCost::cpuMicroseconds() - before) / wallUs;
        timersPerSecond = double(timers.count) * 1e6 / wallUs;
    }
    state.counters["cpu_pct"] = percent;
    state.counters["timer_events_per_s"] = timersPerSecond;
    WindowBench::dispose(window);
}

void registerVariant(const char *name, Variant variant)
{
    benchmark::RegisterBenchmark(name, [variant](benchmark::State &s) { idleCpu(s, variant); })
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
}

int registerAll()
{
    registerVariant("idle_cpu/settings/plugin", Variant::Window);
    registerVariant("idle_cpu/settings/baseline", Variant::Baseline);
    // The bare dialog with the window's 10 ms repaint poll added.
    registerVariant("idle_cpu/part/bare_dialog_10ms_poll", Variant::BaselineWithPoll);
    return 0;
}

[[maybe_unused]] const int registered = registerAll();

} // namespace
