#include "simulatorchild.h"
#include "interrupthandler.h"
#include "simulatorlog.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>

SimulatorChild::SimulatorChild(const QString &name, QObject *parent)
    : QObject(parent)
    , m_name(name)
{
    connect(&m_process, &QProcess::readyReadStandardOutput, this, [this]() { readLines(false); });
    connect(&m_process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished),
            this, &SimulatorChild::onFinished);
}

SimulatorChild::~SimulatorChild()
{
    // Whoever listened may be half destroyed by now.
    blockSignals(true);
    stop();
}

QStringList SimulatorChild::commonArguments(const SimulatorOptions &options, const QSize &size)
{
    QStringList arguments{QStringLiteral("--size"), SimulatorOptions::sizeName(size),
                          QStringLiteral("--plugin"), QFileInfo(options.pluginPath).absoluteFilePath()};
    if (options.keepRoot)
        arguments << QStringLiteral("--keep-root");
    arguments << QStringLiteral("--ports") << QString::number(options.wiredPorts) << QStringLiteral("--outer-net")
              << QLatin1String(options.outerNetworkUp ? "up" : "down");
    if (options.inNetworkLab)
        arguments << QStringLiteral("--") + QLatin1String(SimulatorOptions::InLabOption);
    return arguments;
}

QProcessEnvironment SimulatorChild::environment(const QString &display)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // Qt would prefer a Wayland compositor to the X display we give it.
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    if (display.isEmpty()) {
        environment.remove(QStringLiteral("DISPLAY"));
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    } else {
        environment.insert(QStringLiteral("DISPLAY"), display);
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    }
    return environment;
}

bool SimulatorChild::start(const QStringList &arguments, const QProcessEnvironment &environment,
                           Output output, QString *error)
{
    m_process.setProcessEnvironment(environment);
    m_process.setProcessChannelMode(output == Output::Forwarded ? QProcess::ForwardedChannels
                                                                : QProcess::ForwardedErrorChannel);
    m_process.start(QCoreApplication::applicationFilePath(), arguments);
    if (!m_process.waitForStarted()) {
        *error = QStringLiteral("cannot start %1: %2").arg(m_name, m_process.errorString());
        return false;
    }
    return true;
}

int SimulatorChild::waitForEnd(int timeoutMs)
{
    // Waited in slices so that Ctrl-C can end the child (and then the
    // caller its X server).
    QElapsedTimer clock;
    clock.start();
    while (isRunning() && !m_process.waitForFinished(200)) {
        if (InterruptHandler::wasInterrupted() || clock.elapsed() > timeoutMs) {
            if (!InterruptHandler::wasInterrupted())
                qCCritical(lcSimulator).noquote() << m_name << "took longer than" << timeoutMs / 1000 << "s";
            stop();
            return InterruptHandler::wasInterrupted() ? 130 : 1;
        }
    }
    if (m_process.exitStatus() != QProcess::NormalExit)
        return 1;
    return m_process.exitCode();
}

void SimulatorChild::send(const QString &line)
{
    if (isRunning())
        m_process.write(line.toLocal8Bit() + '\n');
}

void SimulatorChild::stop()
{
    if (!isRunning())
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(5000)) {
        m_process.kill();
        m_process.waitForFinished(2000);
    }
}

void SimulatorChild::onFinished(int exitCode, QProcess::ExitStatus exitStatus)
{
    // What the child said last comes before the news that it ended.
    readLines(true);
    if (exitStatus != QProcess::NormalExit)
        qCCritical(lcSimulator).noquote() << m_name << "crashed";
    emit ended(exitStatus == QProcess::NormalExit ? exitCode : 1);
}

void SimulatorChild::readLines(bool toTheEnd)
{
    if (m_process.processChannelMode() == QProcess::ForwardedChannels)
        return;
    while (m_process.canReadLine() || (toTheEnd && m_process.bytesAvailable() > 0)) {
        QByteArray bytes = m_process.readLine();
        if (bytes.endsWith('\n'))
            bytes.chop(1);
        emit lineReceived(QString::fromLocal8Bit(bytes));
    }
}
