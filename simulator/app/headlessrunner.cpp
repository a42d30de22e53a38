#include "headlessrunner.h"
#include "interrupthandler.h"
#include "simulatorchild.h"
#include "simulatorlog.h"
#include "xserver.h"

#include <QFileInfo>

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
    if (!m_options.networkNote.isEmpty())
        printLogLine(m_options.networkNote);
    const bool useXvfb = XServer::available(XServer::Kind::Virtual);
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

QStringList HeadlessRunner::childArguments(const QSize &size, int wiredPorts) const
{
    SimulatorOptions pass = m_options;
    pass.wiredPorts = wiredPorts;
    return QStringList{QStringLiteral("--") + QLatin1String(SimulatorOptions::PassOption),
                       QStringLiteral("--screenshots"), QFileInfo(m_options.screenshotDir).absoluteFilePath()}
        + SimulatorChild::commonArguments(pass, size);
}

int HeadlessRunner::runForSize(const QSize &size, bool useXvfb)
{
    XServer server(XServer::Kind::Virtual);
    if (useXvfb) {
        QString error;
        if (!server.start(size, &error)) {
            qCCritical(lcSimulator).noquote() << error;
            return 1;
        }
    }
    // Two panels on the same screen: with both wired ports (every page),
    // then with eth0 alone (the network page's states).
    int status = 0;
    for (int wiredPorts : {2, 1}) {
        SimulatorChild child(QStringLiteral("the screenshot pass"));
        QString error;
        if (!child.start(childArguments(size, wiredPorts), SimulatorChild::environment(server.display()),
                         SimulatorChild::Output::Forwarded, &error)) {
            qCCritical(lcSimulator).noquote() << error;
            status = 1;
            break;
        }
        status = child.waitForEnd(PassTimeoutMs);
        // The child first: it must not outlive its X server.
        child.stop();
        if (status != 0)
            break;
    }
    server.stop();
    return status;
}
