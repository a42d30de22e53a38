#include "headlessrunner.h"
#include "interrupthandler.h"
#include "simulatorlog.h"
#include "xvfbserver.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>

namespace {

// A pass takes a few seconds; this only catches a hung plug-in.
const int PassTimeoutMs = 180000;

} // namespace

HeadlessRunner::HeadlessRunner(const SimulatorOptions &options)
    : m_options(options)
{
}

int HeadlessRunner::run()
{
    const bool useXvfb = XvfbServer::available();
    if (!useXvfb)
        qCWarning(lcSimulator) << "Xvfb not found (install the xvfb package): using Qt's offscreen"
                               << "platform, whose screen is always 800x600, so the plug-in lays"
                               << "itself out for 800x600 whatever --size says";
    int status = 0;
    for (const QSize &size : m_options.sizes) {
        const int passStatus = runForSize(size, useXvfb);
        if (passStatus != 0)
            status = passStatus;
        if (InterruptHandler::wasInterrupted())
            return 130;
    }
    return status;
}

QStringList HeadlessRunner::childArguments(const QSize &size) const
{
    QStringList arguments{QStringLiteral("--") + QLatin1String(SimulatorOptions::PassOption),
                          QStringLiteral("--size"), SimulatorOptions::sizeName(size),
                          QStringLiteral("--screenshots"), QFileInfo(m_options.screenshotDir).absoluteFilePath(),
                          QStringLiteral("--plugin"), QFileInfo(m_options.pluginPath).absoluteFilePath()};
    if (m_options.keepRoot)
        arguments << QStringLiteral("--keep-root");
    return arguments;
}

int HeadlessRunner::runForSize(const QSize &size, bool useXvfb)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    XvfbServer server;
    if (useXvfb) {
        QString error;
        if (!server.start(size, &error)) {
            qCCritical(lcSimulator).noquote() << error;
            return 1;
        }
        environment.insert(QStringLiteral("DISPLAY"), server.display());
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    } else {
        environment.remove(QStringLiteral("DISPLAY"));
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    }
    const int status = runChild(childArguments(size), environment);
    server.stop();
    return status;
}

int HeadlessRunner::runChild(const QStringList &arguments, const QProcessEnvironment &environment)
{
    QProcess child;
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::ForwardedChannels);
    child.start(QCoreApplication::applicationFilePath(), arguments);
    if (!child.waitForStarted()) {
        qCCritical(lcSimulator).noquote() << "cannot start the screenshot pass:" << child.errorString();
        return 1;
    }
    // Waited in slices so that Ctrl-C can end the pass and the X server.
    QElapsedTimer clock;
    clock.start();
    while (child.state() != QProcess::NotRunning && !child.waitForFinished(200)) {
        if (InterruptHandler::wasInterrupted() || clock.elapsed() > PassTimeoutMs) {
            if (!InterruptHandler::wasInterrupted())
                qCCritical(lcSimulator) << "the screenshot pass took longer than" << PassTimeoutMs / 1000 << "s";
            child.terminate();
            if (!child.waitForFinished(5000))
                child.kill();
            child.waitForFinished(2000);
            return InterruptHandler::wasInterrupted() ? 130 : 1;
        }
    }
    if (child.exitStatus() != QProcess::NormalExit) {
        qCCritical(lcSimulator) << "the screenshot pass crashed";
        return 1;
    }
    return child.exitCode();
}
