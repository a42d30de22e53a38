#include "headlessrunner.h"
#include "interrupthandler.h"
#include "nestedrunner.h"
#include "networklab.h"
#include "simulatorapp.h"
#include "simulatoroptions.h"
#include "xserver.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <memory>

namespace {

// The settings window runs in a child on a nested panel screen; this
// process only needs widgets for the log window of an interactive run.
int runNested(char *argv[], const SimulatorOptions &options)
{
    int qtArgc = 1;
    std::unique_ptr<QCoreApplication> app;
    if (options.mode() == SimulatorOptions::Mode::Interactive)
        app.reset(new QApplication(qtArgc, argv));
    else
        app.reset(new QCoreApplication(qtArgc, argv));
    NestedRunner runner(options);
    return runner.run();
}

// --real-network: the simulator runs again inside a private lab, and this
// process only waits for it (true, with its status). Where no lab can be
// made, and in a process that claims to be in one but is not, the network
// tools stay recording stand-ins and the log says why.
bool runInNetworkLab(const QStringList &arguments, SimulatorOptions &options, int *status)
{
    if (options.inNetworkLab) {
        const QString outside = NetworkLab::notInsideLab();
        if (!outside.isEmpty()) {
            options.inNetworkLab = false;
            options.networkNote = QStringLiteral("not inside a private network lab (%1): using the recording stand-ins")
                                      .arg(outside);
        }
        return false;
    }
    if (!options.realNetwork)
        return false;
    QString why = NetworkLab::whyUnavailable();
    if (why.isEmpty()) {
        why = NetworkLab::runInLab(arguments.mid(1) << QStringLiteral("--") + QLatin1String(SimulatorOptions::InLabOption),
                                   status);
        if (why.isEmpty() && *status != NetworkLab::Skipped)
            return true;
        if (why.isEmpty())
            why = QStringLiteral("the lab runner could not build the lab (its reason is above)");
    }
    options.networkNote = QStringLiteral("real network unavailable, using the recording stand-ins: %1").arg(why);
    return false;
}

} // namespace

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
    int labStatus = 0;
    if (runInNetworkLab(arguments, options, &labStatus))
        return labStatus;
    if (options.mode() == SimulatorOptions::Mode::Screenshots) {
        // Only starts X servers and child processes: no GUI here.
        QCoreApplication app(argc, argv);
        InterruptHandler interrupt;
        return HeadlessRunner(options).run();
    }
    // Without a session runtime folder Qt would create one of its own
    // under /tmp and leave it behind; a private one goes away with us. A
    // nested-screen child uses its parent's: it can die without cleaning
    // up when its X server goes away.
    std::unique_ptr<QTemporaryDir> runtimeDir;
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) {
        runtimeDir.reset(new QTemporaryDir(QDir::tempPath() + QStringLiteral("/panel-sim-runtime-XXXXXX")));
        if (runtimeDir->isValid())
            qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtimeDir->path()));
    }
    // Without Xephyr the window opens on the desktop's screen, and the
    // simulator says so in its log.
    if (options.wantsNestedScreen() && XServer::available(XServer::Kind::Nested))
        return runNested(argv, options);
    // Screenshots show what a panel without a DHCP server shows, whatever
    // this machine's own eth0 holds. The pass's X server is local, reached
    // through its socket file, so it stays in reach.
    if (options.mode() == SimulatorOptions::Mode::ScreenshotPass && !options.inNetworkLab)
        NetworkLab::isolateFromMachineNetwork();
    if (!SimulatorOptions::hasDisplay() && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Qt only sees the program name: QGuiApplication would otherwise take
    // our --plugin for its own generic-plugin option.
    int qtArgc = 1;
    QApplication app(qtArgc, argv);
    SimulatorApp simulator(options);
    return simulator.run();
}
