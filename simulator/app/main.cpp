#include "headlessrunner.h"
#include "interrupthandler.h"
#include "simulatorapp.h"
#include "simulatoroptions.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>

int main(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    QCoreApplication::setApplicationName(QStringLiteral("panel-simulator"));

    // The mode decides which application object (and which Qt platform)
    // this process gets, so the command line is read before either exists.
    SimulatorOptions options;
    const SimulatorOptions::Parse parsed = options.parse(arguments);
    if (parsed == SimulatorOptions::Parse::Error) {
        std::fprintf(stderr, "panel-simulator: %s\n", qPrintable(options.errorString()));
        return 2;
    }
    if (parsed == SimulatorOptions::Parse::Help) {
        QCoreApplication app(argc, argv);
        std::fputs(qPrintable(SimulatorOptions::helpText()), stdout);
        return 0;
    }
    if (options.mode() == SimulatorOptions::Mode::Screenshots) {
        // Only starts X servers and child processes: no GUI here.
        QCoreApplication app(argc, argv);
        InterruptHandler interrupt;
        return HeadlessRunner(options).run();
    }
    // Without a session runtime folder Qt would create one of its own
    // under /tmp and leave it behind; a private one goes away with us.
    QTemporaryDir runtimeDir(QDir::tempPath() + QStringLiteral("/panel-sim-runtime-XXXXXX"));
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR") && runtimeDir.isValid())
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtimeDir.path()));
    if (!SimulatorOptions::hasDisplay() && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Qt only sees the program name: QGuiApplication would otherwise take
    // our --plugin for its own generic-plugin option.
    int qtArgc = 1;
    QApplication app(qtArgc, argv);
    SimulatorApp simulator(options);
    return simulator.run();
}
