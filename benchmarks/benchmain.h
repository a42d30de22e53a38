#ifndef BENCHMAIN_H
#define BENCHMAIN_H

#include <QString>

class TestPanel;

// Benchmarks run exactly as the tests do: the recording stand-ins of the
// system tools first in PATH, and every file below a temporary panel root.
// A process where either cannot be set up runs nothing.
namespace BenchMain {

// Builds the harness and the panel, then runs the benchmarks named on the
// command line. 2 when refusing to run.
int run(int argc, char **argv, bool gui);

// The one simulated panel of this process (valid while run() runs).
TestPanel &panel();
// Where the stand-ins of reboot, ifconfig, ... live.
QString standInDir();

} // namespace BenchMain

#define PANEL_BENCHMARK_MAIN(gui) \
    int main(int argc, char **argv) { return BenchMain::run(argc, argv, gui); }

#endif // BENCHMAIN_H
