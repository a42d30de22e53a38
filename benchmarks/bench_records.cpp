// A device record read and written through EEInfoHandle against starting
// the image tools alone: the same stand-in programs, moving the same 1024
// bytes, with nothing else done. And one program started through the
// plug-in's runner against system()'s way.
#include "benchmain.h"
#include "eeinfohandle.h"
#include "panelroot.h"
#include "processcost.h"
#include "processrunner.h"
#include "testpanel.h"

#include <benchmark/benchmark.h>

namespace {

constexpr int ImageSize = 1024;

QByteArray tool(const char *name)
{
    return PanelRoot::path((QByteArray("/root/plat-intf/") + name).constData());
}

// How many programs the stand-ins saw started per iteration.
void countStarts(benchmark::State &state)
{
    state.counters["programs"] =
        benchmark::Counter(double(BenchMain::panel().calls().size()), benchmark::Counter::kAvgIterations);
}

void recordRead(benchmark::State &state, bool bare)
{
    const QByteArray readee = tool("readee");
    EEInfoDetail::Flash_WR_1 record {};
    char image[ImageSize];
    BenchMain::panel().clearCalls();
    for (auto _ : state) {
        if (bare) {
            if (ProcessCost::readFrom(readee, image, ImageSize) != ImageSize) {
                state.SkipWithError("readee gave no whole image");
                break;
            }
        } else {
            EEInfoHandle::instance()->read_flash_wr1_info(&record);
            if (!EEInfoHandle::instance()->lastReadComplete()) {
                state.SkipWithError("the record read had no whole image");
                break;
            }
        }
        benchmark::DoNotOptimize(image);
        benchmark::DoNotOptimize(record);
    }
    countStarts(state);
}

void recordWrite(benchmark::State &state, bool bare)
{
    const QByteArray readee = tool("readee");
    const QByteArray writeee = tool("writeee") + " count=16";
    const QByteArray before = BenchMain::panel().image();
    EEInfoDetail::Flash_WR_1 record {};
    EEInfoHandle::instance()->read_flash_wr1_info(&record);
    char image[ImageSize];
    BenchMain::panel().clearCalls();
    for (auto _ : state) {
        if (bare) {
            if (ProcessCost::readFrom(readee, image, ImageSize) != ImageSize
                || ProcessCost::writeTo(writeee, image, ImageSize) != 0) {
                state.SkipWithError("the image tools failed");
                break;
            }
        } else {
            const quint64 writes = EEInfoHandle::instance()->writeCount();
            EEInfoHandle::instance()->write_flash_wr1_info(&record);
            if (EEInfoHandle::instance()->writeCount() == writes) {
                state.SkipWithError("the record was not written");
                break;
            }
        }
    }
    countStarts(state);
    // Both write back what they read: the image must come out unchanged.
    if (BenchMain::panel().image() != before)
        state.SkipWithError("the device image changed");
}

// One short firmware tool through the plug-in's program runner (its own
// process group, a time bound) against system()'s way: what the runner
// itself adds to every program the pages start.
void programRun(benchmark::State &state, bool bare)
{
    const QByteArray setbeep = tool("setbeep");
    const QStringList call {QString::fromLocal8Bit(setbeep), QStringLiteral("short")};
    const QByteArray command = setbeep + " short";
    BenchMain::panel().clearCalls();
    for (auto _ : state) {
        const int status = bare ? ProcessCost::runCall(call) : ProcessRunner::system(command, WaitBound::FirmwareTool);
        if (status != 0) {
            state.SkipWithError("setbeep failed");
            break;
        }
    }
    countStarts(state);
}

[[maybe_unused]] const auto *const runPlugin =
    benchmark::RegisterBenchmark("program_run/setbeep/plugin", [](benchmark::State &s) { programRun(s, false); });
[[maybe_unused]] const auto *const runBare =
    benchmark::RegisterBenchmark("program_run/setbeep/baseline", [](benchmark::State &s) { programRun(s, true); });
[[maybe_unused]] const auto *const readPlugin =
    benchmark::RegisterBenchmark("record_read/flash_wr1/plugin", [](benchmark::State &s) { recordRead(s, false); });
[[maybe_unused]] const auto *const readBare =
    benchmark::RegisterBenchmark("record_read/flash_wr1/baseline", [](benchmark::State &s) { recordRead(s, true); });
[[maybe_unused]] const auto *const writePlugin =
    benchmark::RegisterBenchmark("record_write/flash_wr1/plugin", [](benchmark::State &s) { recordWrite(s, false); });
[[maybe_unused]] const auto *const writeBare =
    benchmark::RegisterBenchmark("record_write/flash_wr1/baseline", [](benchmark::State &s) { recordWrite(s, true); });

} // namespace
