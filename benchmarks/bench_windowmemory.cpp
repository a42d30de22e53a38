// The resident memory an open window adds: after its first paint minus
// before it was asked for, against the bare dialog with as many widgets.
// The first window of a process also fills Qt's caches and loads the panel
// font; a second window shows what each later one costs. Run each variant
// in a process of its own for the first-window figures (scripts/benchmark
// does). BENCH_MEMORY_MAPS names a file for the mappings that grew most.
#include "baredialog.h"
#include "settingsinterface.h"
#include "windowbench.h"
#include "windowcycle.h"

#include <benchmark/benchmark.h>

#include <QDialog>

namespace {

constexpr int SettleMs = 300;

struct Delta
{
    WindowBench::Memory before = WindowBench::memoryNow();
    qint64 residentKib() const { return WindowBench::memoryNow().residentKib - before.residentKib; }
};

QDialog *open(bool settingsWindow, int widgets)
{
    if (!settingsWindow)
        return new BareDialog(widgets);
    SettingsInterface *settings = WindowBench::plugin(nullptr);
    return settings ? settings->createInstance() : nullptr;
}

void residentMemory(benchmark::State &state, bool settingsWindow)
{
    QString error;
    // The offscreen screen and Qt's first widget exist for both sides alike.
    auto *warmUp = new QWidget;
    WindowBench::waitForFirstPaint(warmUp);
    WindowBench::dispose(warmUp);
    const Delta load;
    // The plug-in's library, loaded here for both sides too.
    WindowBench::plugin(&error);
    const qint64 loadKib = load.residentKib();
    // The bare dialog needs the window's widget count, which only opening a
    // window tells: scripts/benchmark passes it in BENCH_WINDOW_WIDGETS from
    // the opening benchmark, so that no window runs in the bare dialog's
    // process first. Without it a window is opened here.
    int widgets = settingsWindow ? 0 : qEnvironmentVariableIntValue("BENCH_WINDOW_WIDGETS");
    WindowBench::Opening opening;
    if (!settingsWindow && widgets <= 0) {
        if (!WindowBench::observeOpening(&opening, &error)) {
            state.SkipWithError(qPrintable(error));
            return;
        }
        widgets = opening.widgets;
    }
    for (auto _ : state) {
        const QMap<QString, qint64> mappings = WindowBench::residentByMapping();
        const WindowBench::Memory before = WindowBench::memoryNow();
        QDialog *window = open(settingsWindow, widgets);
        if (!window || !WindowBench::waitForFirstPaint(window)) {
            state.SkipWithError("no window");
            WindowBench::dispose(window);
            return;
        }
        WindowBench::idle(SettleMs);
        const WindowBench::Memory after = WindowBench::memoryNow();
        WindowBench::writeGrowth(qEnvironmentVariable("BENCH_MEMORY_MAPS"), mappings);
        state.counters["rss_kib"] = double(after.residentKib - before.residentKib);
        state.counters["anon_kib"] = double(after.anonKib - before.anonKib);
        state.counters["file_kib"] = double(after.fileKib - before.fileKib);
        state.counters["heap_kib"] = double(after.heapBytes - before.heapBytes) / 1024.0;
        state.counters["widgets"] = window->findChildren<QWidget *>().size();
        WindowBench::dispose(window);
        const Delta again;
        window = open(settingsWindow, widgets);
        WindowBench::waitForFirstPaint(window);
        WindowBench::idle(SettleMs);
        state.counters["rss_again_kib"] = double(again.residentKib());
        WindowBench::dispose(window);
    }
    state.counters["plugin_load_kib"] = double(loadKib);
}

[[maybe_unused]] const auto *const windowMemory =
    benchmark::RegisterBenchmark("memory/settings/plugin", [](benchmark::State &s) { residentMemory(s, true); })
        ->Iterations(1);
[[maybe_unused]] const auto *const bareMemory =
    benchmark::RegisterBenchmark("memory/settings/baseline", [](benchmark::State &s) { residentMemory(s, false); })
        ->Iterations(1);

} // namespace
