#include "simulatorapp.h"
#include "commandreader.h"
#include "controlwindow.h"
#include "hostlinks.h"
#include "hostsession.h"
#include "interrupthandler.h"
#include "linkinterfaces.h"
#include "networklab.h"
#include "outernetwork.h"
#include "screenshotpass.h"
#include "scriptrunner.h"
#include "simulatedpanel.h"
#include "simulatorlog.h"

#include <QCoreApplication>
#include <QDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QScreen>

namespace {

// How long the host waits, after the close button was pressed, for the
// register-86 notification that makes it delete the window.
const int CloseTimeoutMs = 5000;

} // namespace

SimulatorApp::SimulatorApp(const SimulatorOptions &options, QObject *parent)
    : QObject(parent)
    , m_options(options)
    , m_mode(options.mode())
    , m_size(options.sizes.value(0))
    , m_plugin(options.pluginPath)
    , m_interrupt(new InterruptHandler(this))
{
    m_closeWatchdog.setSingleShot(true);
    connect(&m_closeWatchdog, &QTimer::timeout, this, &SimulatorApp::onCloseOverdue);
    connect(m_interrupt, &InterruptHandler::interrupted, this, [this]() { finish(130); });
}

SimulatorApp::~SimulatorApp()
{
    shutDown();
}

int SimulatorApp::run()
{
    // The simulator ends through finish() only: with --stay, or on a nested
    // screen whose log window is in the parent, the deleted settings window
    // may well have been the last one here.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QString error;
    if (!prepare(&error) || !createWindow(&error)) {
        qCCritical(lcSimulator).noquote() << error;
        shutDown();
        return 1;
    }
    warnIfScreenIsNotThePanel();
    startMode();
    const int status = QCoreApplication::exec();
    shutDown();
    return status;
}

bool SimulatorApp::prepare(QString *error)
{
    // Panel and environment come first: the plug-in may run commands or
    // open panel files as soon as it is loaded.
    if (!m_panel.create(m_options, m_size, error))
        return false;
    // The parent of a nested-screen child shows the folder and removes it
    // should the child die without doing so.
    if (m_options.keepRoot || m_options.nestedChild)
        printLogLine(QStringLiteral("panel root: ") + m_panel.root());
    if (!prepareNetwork(error))
        return false;
    m_session = new HostSession(m_panel.root(),
                                m_options.inNetworkLab ? NetworkLab::realTool(QStringLiteral("ip")) : QString(), this);
    connect(m_session, &HostSession::logLine, this, &SimulatorApp::report);
    connect(m_session, &HostSession::windowDeleted, this, &SimulatorApp::onWindowDeleted);
    if (m_options.inNetworkLab) {
        m_session->links()->useLabAddresses();
        m_labLinks = new LinkInterfaces(NetworkLab::realTool(QStringLiteral("ip")), this);
        connect(m_labLinks, &LinkInterfaces::logLine, this, &SimulatorApp::report);
        connect(m_session->links(), &HostLinks::interfaceChanged, m_labLinks, &LinkInterfaces::apply);
    } else {
        connect(m_session->links(), &HostLinks::interfaceChanged, this, &SimulatorApp::setStandInLink);
    }
    if (!m_session->start(error))
        return false;
    if (m_mode == SimulatorOptions::Mode::Interactive) {
        m_control = new ControlWindow(m_panel.root(), QFileInfo(m_options.pluginPath).absoluteFilePath());
        connect(m_control, &ControlWindow::openSettingsRequested, this, &SimulatorApp::openWindow);
        connect(m_control, &ControlWindow::quitRequested, this, [this]() { finish(0); });
        connect(m_control, &ControlWindow::outerNetworkToggled, this, &SimulatorApp::setOuterNetwork);
        connect(m_control, &ControlWindow::hostCommand, this, &SimulatorApp::runHostCommand);
        m_control->setOuterNetworkUp(m_options.outerNetworkUp);
        m_control->placeBeside(m_size);
        m_control->show();
    }
    if (m_options.nestedChild) {
        m_commands = new CommandReader(this);
        connect(m_commands, &CommandReader::commandReceived, this, &SimulatorApp::onCommand);
        // The parent is gone: nobody could see or end this window any more.
        connect(m_commands, &CommandReader::inputEnded, this, [this]() { finish(0); });
    }
    return m_plugin.load(error);
}

bool SimulatorApp::prepareNetwork(QString *error)
{
    if (!m_options.networkNote.isEmpty())
        report(m_options.networkNote);
    if (!m_options.inNetworkLab) {
        report(QStringLiteral("network: recording stand-ins, nothing on this machine changes; the routing table"
                              " shown is the one they keep for the panel (outer network %1)")
                   .arg(QLatin1String(m_options.outerNetworkUp ? "up" : "down")));
        return true;
    }
    if (!NetworkLab::coverResolver(m_panel.path(QStringLiteral("/etc/resolv.conf")), error))
        return false;
    m_resolverCovered = true;
    if (!m_options.outerNetworkUp && !NetworkLab::setFarLinks(false, error))
        return false;
    report(QStringLiteral("network: private lab; eth0 and eth1 lead to a far side with DHCP and DNS (%1 answers"
                          " there), and ifconfig, route, ip, udhcpc, killall and ping run for real in it. The"
                          " routing table shown is the lab's own (ip -4 route show)")
               .arg(qEnvironmentVariable("NETLAB_PING_HOST")));
    return true;
}

bool SimulatorApp::createWindow(QString *error)
{
    QDialog *window = m_plugin.createWindow(error);
    if (!window)
        return false;
    m_session->adoptWindow(window);
    m_driver.setWindow(window);
    // The plug-in lays itself out for the primary screen; the window gets
    // the panel's size so that it fills the (simulated) panel exactly.
    window->setFixedSize(m_size);
    window->move(0, 0);
    window->show();
    report(QStringLiteral("settings window open at %1").arg(SimulatorOptions::sizeName(m_size)));
    return true;
}

void SimulatorApp::openWindow()
{
    if (QDialog *window = m_driver.window()) {
        window->show();
        window->raise();
        window->activateWindow();
        report(QStringLiteral("settings window raised"));
        return;
    }
    QString error;
    if (!createWindow(&error))
        report(error);
}

void SimulatorApp::startMode()
{
    if (m_mode == SimulatorOptions::Mode::Script) {
        auto *script = new ScriptRunner(m_options.script, &m_driver, this);
        script->setHostLinks(m_session->links());
        connect(script, &ScriptRunner::closePressed, this, &SimulatorApp::onClosePressed);
        connect(script, &ScriptRunner::quitRequested, this, [this]() { finish(0); });
        connect(script, &ScriptRunner::screenshotSaved, this, &SimulatorApp::report);
        connect(script, &ScriptRunner::failed, this, &SimulatorApp::fail);
        script->start();
    } else if (m_mode == SimulatorOptions::Mode::ScreenshotPass) {
        auto *pass = new ScreenshotPass(&m_driver, m_options.screenshotDir, m_size, m_options.wiredPorts, this);
        pass->setHostLinks(m_session->links());
        connect(pass, &ScreenshotPass::saved, this, [](const QString &path) { printLogLine(path); });
        connect(pass, &ScreenshotPass::failed, this, &SimulatorApp::fail);
        connect(pass, &ScreenshotPass::finished, this, [this]() { finish(0); });
        pass->start();
    }
}

void SimulatorApp::warnIfScreenIsNotThePanel()
{
    // A screenshot pass without Xvfb has been warned about by its parent.
    const QSize screen = QGuiApplication::primaryScreen()->size();
    if (m_mode == SimulatorOptions::Mode::ScreenshotPass || screen == m_size)
        return;
    QString why = QStringLiteral("Xephyr not found: install the xserver-xephyr package");
    if (m_options.nestedChild)
        why = QStringLiteral("the nested screen came out at another size");
    else if (m_options.noNested)
        why = QStringLiteral("--no-nested");
    else if (qEnvironmentVariableIsEmpty("DISPLAY"))
        why = QStringLiteral("no X display to show a panel screen on");
    report(QStringLiteral("warning: the plug-in sizes itself from this screen (%1), not from the panel's"
                          " (%2), so its close button and sizes may be wrong (%3)")
               .arg(SimulatorOptions::sizeName(screen), SimulatorOptions::sizeName(m_size), why));
}

void SimulatorApp::onCommand(const QString &command)
{
    if (command == QLatin1String(CommandReader::ShowCommand))
        openWindow();
    else if (command == QLatin1String(CommandReader::QuitCommand))
        finish(0);
    else if (command == QLatin1String(CommandReader::OuterUpCommand)
             || command == QLatin1String(CommandReader::OuterDownCommand))
        setOuterNetwork(command == QLatin1String(CommandReader::OuterUpCommand));
    else if (HostLinks::isCommand(command))
        runHostCommand(command);
    else
        report(QStringLiteral("unknown command \"%1\"").arg(command));
}

void SimulatorApp::setOuterNetwork(bool up)
{
    QString error;
    if (OuterNetwork::set(up, &error))
        report(QStringLiteral("outer network now %1").arg(QLatin1String(up ? "up" : "down")));
    else
        report(error);
}

void SimulatorApp::setStandInLink(const QString &port, const QString &address, const QString &mask)
{
    if (!SimulatedPanel::setLinkInterface(m_panel.root(), port, address, mask)) {
        report(QStringLiteral("cannot record %1 in the stand-ins' network").arg(port));
        return;
    }
    report(address.isEmpty() ? QStringLiteral("panel: %1 gone").arg(port)
                             : QStringLiteral("panel: %1 up with %2 netmask %3").arg(port, address, mask));
    m_session->flush();
}

void SimulatorApp::runHostCommand(const QString &command)
{
    QString error;
    if (!m_session || !m_session->links()->command(command, &error))
        report(error.isEmpty() ? QStringLiteral("no host session for \"%1\"").arg(command) : error);
}

void SimulatorApp::report(const QString &line)
{
    if (m_control)
        m_control->appendLine(line);
    printLogLine(line);
}

void SimulatorApp::onWindowDeleted()
{
    m_closeWatchdog.stop();
    if (m_finishing)
        return;
    if (m_mode == SimulatorOptions::Mode::ScreenshotPass) {
        fail(QStringLiteral("the settings window went away during the screenshot pass"));
    } else if (m_options.stay) {
        report(QStringLiteral("--stay: still running"));
    } else {
        finish(0);
    }
}

void SimulatorApp::onClosePressed()
{
    report(QStringLiteral("close button pressed"));
    m_closeWatchdog.start(CloseTimeoutMs);
}

void SimulatorApp::onCloseOverdue()
{
    if (m_driver.window())
        fail(QStringLiteral("the window was still open %1 ms after its close button was pressed:"
                            " register 86 not released or not announced").arg(CloseTimeoutMs));
}

void SimulatorApp::finish(int status)
{
    if (m_finishing)
        return;
    m_finishing = true;
    QCoreApplication::exit(status);
}

void SimulatorApp::fail(const QString &error)
{
    qCCritical(lcSimulator).noquote() << error;
    finish(1);
}

void SimulatorApp::shutDown()
{
    m_finishing = true;
    m_closeWatchdog.stop();
    // The window goes before the plug-in and the panel folder it uses;
    // what it ran on its way out is still reported.
    delete m_driver.window();
    if (m_session)
        m_session->flush();
    delete m_control;
    m_control = nullptr;
    // Before the panel folder, and the file in it, go.
    if (m_resolverCovered)
        NetworkLab::uncoverResolver();
    m_resolverCovered = false;
}
