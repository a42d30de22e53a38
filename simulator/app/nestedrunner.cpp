#include "nestedrunner.h"
#include "commandreader.h"
#include "controlwindow.h"
#include "interrupthandler.h"
#include "simulatorlog.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>

namespace {

// How long Quit waits for the child to close its window and clean up.
const int QuitTimeoutMs = 5000;
const QString RootPrefix = QStringLiteral("panel root: ");

} // namespace

NestedRunner::NestedRunner(const SimulatorOptions &options, QObject *parent)
    : QObject(parent)
    , m_options(options)
    , m_size(options.sizes.value(0))
    , m_server(XServer::Kind::Nested)
    , m_child(QStringLiteral("the settings window's process"))
    , m_interrupt(new InterruptHandler(this))
{
    m_quitWatchdog.setSingleShot(true);
    connect(&m_quitWatchdog, &QTimer::timeout, this, [this]() { finish(0); });
    connect(m_interrupt, &InterruptHandler::interrupted, this, [this]() { finish(130); });
    connect(&m_child, &SimulatorChild::lineReceived, this, &NestedRunner::onChildLine);
    connect(&m_child, &SimulatorChild::ended, this, &NestedRunner::onChildEnded);
    connect(&m_server, &XServer::ended, this, &NestedRunner::onServerEnded);
}

NestedRunner::~NestedRunner()
{
    shutDown();
}

int NestedRunner::run()
{
    const QString userDisplay = qEnvironmentVariable("DISPLAY");
    QString error;
    if (!m_server.start(m_size, &error)) {
        qCCritical(lcSimulator).noquote() << error << "(--no-nested opens the window on the desktop's screen)";
        return 1;
    }
    if (m_options.mode() == SimulatorOptions::Mode::Interactive)
        showControlWindow();
    if (!m_options.networkNote.isEmpty())
        report(m_options.networkNote);
    report(QStringLiteral("panel screen %1 (%2) in a Xephyr window on %3")
               .arg(m_server.display(), SimulatorOptions::sizeName(m_size), userDisplay));
    if (!m_child.start(childArguments(), SimulatorChild::environment(m_server.display()),
                       SimulatorChild::Output::Lines, &error)) {
        qCCritical(lcSimulator).noquote() << error;
        shutDown();
        return 1;
    }
    const int status = QCoreApplication::exec();
    shutDown();
    return status;
}

QStringList NestedRunner::childArguments() const
{
    QStringList arguments{QStringLiteral("--") + QLatin1String(SimulatorOptions::NestedChildOption)};
    arguments += SimulatorChild::commonArguments(m_options, m_size);
    if (m_options.stay)
        arguments << QStringLiteral("--stay");
    if (!m_options.script.isEmpty())
        arguments << QStringLiteral("--script") << m_options.script.join(QLatin1Char(','));
    return arguments;
}

void NestedRunner::showControlWindow()
{
    // Closing the log window is a request to quit, answered once the child
    // has closed the settings window; Qt must not end the loop before.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    m_control = new ControlWindow(QString(), QFileInfo(m_options.pluginPath).absoluteFilePath());
    connect(m_control, &ControlWindow::openSettingsRequested, this,
            [this]() { m_child.send(QLatin1String(CommandReader::ShowCommand)); });
    connect(m_control, &ControlWindow::quitRequested, this, &NestedRunner::requestQuit);
    connect(m_control, &ControlWindow::outerNetworkToggled, this, [this](bool up) {
        m_child.send(QLatin1String(up ? CommandReader::OuterUpCommand : CommandReader::OuterDownCommand));
    });
    connect(m_control, &ControlWindow::hostCommand, this, [this](const QString &command) {
        m_child.send(command);
    });
    m_control->setOuterNetworkUp(m_options.outerNetworkUp);
    m_control->placeBeside(m_size);
    m_control->show();
}

void NestedRunner::report(const QString &line)
{
    if (m_control)
        m_control->appendLine(line);
    printLogLine(line);
}

void NestedRunner::onChildLine(const QString &line)
{
    if (line.startsWith(RootPrefix)) {
        m_childRoot = line.mid(RootPrefix.size());
        if (m_control)
            m_control->setPanelRoot(m_childRoot);
        // Printed for us; the user asked for it only with --keep-root.
        if (!m_options.keepRoot)
            return;
    }
    report(line);
}

void NestedRunner::onChildEnded(int status)
{
    if (status != 0 && !m_finishing)
        report(QStringLiteral("the settings window's process ended with status %1").arg(status));
    finish(status);
}

void NestedRunner::onServerEnded()
{
    if (m_finishing)
        return;
    report(QStringLiteral("the panel screen was closed: ending the settings window's process"));
    // A script cut short has not done its job; a user closing the panel
    // window has simply finished.
    finish(m_options.script.isEmpty() ? 0 : 1);
}

void NestedRunner::requestQuit()
{
    if (!m_child.isRunning()) {
        finish(0);
        return;
    }
    m_child.send(QLatin1String(CommandReader::QuitCommand));
    m_quitWatchdog.start(QuitTimeoutMs);
}

void NestedRunner::finish(int status)
{
    if (m_finishing)
        return;
    m_finishing = true;
    QCoreApplication::exit(status);
}

void NestedRunner::shutDown()
{
    m_finishing = true;
    m_quitWatchdog.stop();
    // The child first, while its X server still exists: it then closes its
    // window and removes its panel folder itself.
    m_child.stop();
    removeLeftoverRoot();
    m_server.stop();
    delete m_control;
    m_control = nullptr;
}

void NestedRunner::removeLeftoverRoot()
{
    if (m_options.keepRoot || m_childRoot.isEmpty())
        return;
    // Only the throw-away folder the child named, never anything else.
    const QFileInfo root(m_childRoot);
    if (!root.isDir() || root.absolutePath() != QDir::tempPath()
        || !root.fileName().startsWith(QLatin1String("panel-sim-")))
        return;
    QDir(m_childRoot).removeRecursively();
    qCInfo(lcSimulator).noquote() << "removed the panel folder the settings window's process left:" << m_childRoot;
    m_childRoot.clear();
}
