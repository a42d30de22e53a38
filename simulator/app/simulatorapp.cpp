#include "simulatorapp.h"
#include "controlwindow.h"
#include "hostsession.h"
#include "interrupthandler.h"
#include "screenshotpass.h"
#include "scriptrunner.h"
#include "simulatorlog.h"

#include <QCoreApplication>
#include <QDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QScreen>

#include <cstdio>

namespace {

// How long the host waits, after the close button was pressed, for the
// register-86 notification that makes it delete the window.
const int CloseTimeoutMs = 5000;

void printLine(const QString &line)
{
    std::fputs(line.toLocal8Bit().constData(), stdout);
    std::fputc('\n', stdout);
    // Line by line: a test or a pipe reads the output as it comes.
    std::fflush(stdout);
}

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
    QString error;
    if (!prepare(&error) || !createWindow(&error)) {
        qCCritical(lcSimulator).noquote() << error;
        shutDown();
        return 1;
    }
    startMode();
    const int status = QCoreApplication::exec();
    shutDown();
    return status;
}

bool SimulatorApp::prepare(QString *error)
{
    // Panel and environment come first: the plug-in may run commands or
    // open panel files as soon as it is loaded.
    if (!m_panel.create(m_size, m_options.keepRoot, error))
        return false;
    if (m_options.keepRoot)
        printLine(QStringLiteral("panel root: ") + m_panel.root());
    m_session = new HostSession(m_panel.root(), this);
    connect(m_session, &HostSession::logLine, this, &SimulatorApp::report);
    connect(m_session, &HostSession::windowDeleted, this, &SimulatorApp::onWindowDeleted);
    if (!m_session->start(error))
        return false;
    if (m_mode == SimulatorOptions::Mode::Interactive) {
        m_control = new ControlWindow(m_panel.root(), QFileInfo(m_options.pluginPath).absoluteFilePath());
        connect(m_control, &ControlWindow::openSettingsRequested, this, &SimulatorApp::openWindow);
        connect(m_control, &ControlWindow::quitRequested, this, [this]() { finish(0); });
        // Beside the settings window (which sits at the top left) when the
        // screen has room, so neither hides the other.
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        if (screen.width() >= m_size.width() + m_control->width())
            m_control->move(screen.left() + m_size.width(), screen.top());
        m_control->show();
    }
    return m_plugin.load(error);
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
        connect(script, &ScriptRunner::closePressed, this, &SimulatorApp::onClosePressed);
        connect(script, &ScriptRunner::quitRequested, this, [this]() { finish(0); });
        connect(script, &ScriptRunner::screenshotSaved, this, &SimulatorApp::report);
        connect(script, &ScriptRunner::failed, this, &SimulatorApp::fail);
        script->start();
    } else if (m_mode == SimulatorOptions::Mode::ScreenshotPass) {
        auto *pass = new ScreenshotPass(&m_driver, m_options.screenshotDir, m_size, this);
        connect(pass, &ScreenshotPass::saved, this, [](const QString &path) { printLine(path); });
        connect(pass, &ScreenshotPass::failed, this, &SimulatorApp::fail);
        connect(pass, &ScreenshotPass::finished, this, [this]() { finish(0); });
        pass->start();
    }
}

void SimulatorApp::report(const QString &line)
{
    if (m_control)
        m_control->appendLine(line);
    printLine(line);
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
}
