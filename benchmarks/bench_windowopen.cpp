// Opening the settings window as the host does (plug-in loaded, window asked
// for, shown, until its first paint) against a bare dialog with as many
// widgets that starts, on its own, the same programs the window starts.
//
// Environment: BENCH_PROGRAM_LIST names a file for the programs one
// opening started.
#include "baredialog.h"
#include "benchmain.h"
#include "processcost.h"
#include "settingsinterface.h"
#include "testpanel.h"
#include "windowbench.h"

#include <benchmark/benchmark.h>

#include <QDialog>
#include <QElapsedTimer>
#include <QFile>

namespace {

enum class Variant { Window, Baseline, DialogOnly, ProgramsOnly };

// The programs one opening started, a line each, for the report.
void writeProgramList(const QList<QStringList> &programs)
{
    const QString path = qEnvironmentVariable("BENCH_PROGRAM_LIST");
    QFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return;
    for (const QStringList &call : programs)
        file.write(call.join(QLatin1Char(' ')).toLocal8Bit() + '\n');
}

bool runAll(const QList<QStringList> &calls)
{
    for (const QStringList &call : calls) {
        if (ProcessCost::runCall(call) == -1)
            return false;
    }
    return true;
}

void openWindow(benchmark::State &state, Variant variant)
{
    QString error;
    WindowBench::Opening opening;
    QList<QStringList> calls;
    if (!WindowBench::observeOpening(&opening, &error) || !WindowBench::runnablePrograms(opening.programs, &calls)) {
        state.SkipWithError(error.isEmpty() ? "a program the window starts is no stand-in" : qPrintable(error));
        return;
    }
    writeProgramList(opening.programs);
    const bool withDialog = variant != Variant::ProgramsOnly;
    const bool withPrograms = variant != Variant::DialogOnly;
    qint64 createNs = 0;
    qint64 paintNs = 0;
    BenchMain::panel().clearCalls();
    for (auto _ : state) {
        QElapsedTimer clock;
        clock.start();
        QDialog *window = nullptr;
        bool done = true;
        if (variant == Variant::Window) {
            SettingsInterface *settings = WindowBench::plugin(&error);
            window = settings ? settings->createInstance() : nullptr;
        } else {
            // The window starts its programs while it is built, before it shows.
            done = !withPrograms || runAll(calls);
            window = withDialog ? new BareDialog(opening.widgets) : nullptr;
        }
        createNs += clock.nsecsElapsed();
        if (window)
            done = WindowBench::waitForFirstPaint(window) && done;
        paintNs += clock.nsecsElapsed();
        state.PauseTiming();
        WindowBench::dispose(window);
        state.ResumeTiming();
        if (!done || (withDialog && !window)) {
            state.SkipWithError("no window, no paint, or a program not started");
            break;
        }
    }
    paintNs -= createNs;
    using C = benchmark::Counter;
    state.counters["widgets"] = withDialog ? opening.widgets : 0;
    state.counters["programs"] = C(double(BenchMain::panel().calls().size()), C::kAvgIterations);
    state.counters["build_ms"] = C(double(createNs) / 1e6, C::kAvgIterations);
    state.counters["paint_ms"] = C(double(paintNs) / 1e6, C::kAvgIterations);
}

void registerVariant(const char *name, Variant variant)
{
    benchmark::RegisterBenchmark(name, [variant](benchmark::State &s) { openWindow(s, variant); })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
}

int registerAll()
{
    registerVariant("window_open/settings/plugin", Variant::Window);
    registerVariant("window_open/settings/baseline", Variant::Baseline);
    // The baseline's two halves, to tell what the opening's cost is made of.
    registerVariant("window_open/part/bare_dialog", Variant::DialogOnly);
    registerVariant("window_open/part/programs", Variant::ProgramsOnly);
    return 0;
}

[[maybe_unused]] const int registered = registerAll();

} // namespace

PANEL_BENCHMARK_MAIN(true)
