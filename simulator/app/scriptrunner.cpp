#include "scriptrunner.h"
#include "hostlinks.h"
#include "linkpagedriver.h"
#include "outernetwork.h"
#include "pingwatch.h"
#include "windowdriver.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTimer>

namespace {

bool parseWait(const QString &step, int *ms)
{
    if (!step.startsWith(QLatin1String("wait=")))
        return false;
    bool ok = false;
    const int value = step.mid(5).toInt(&ok);
    if (ms)
        *ms = value;
    return ok && value >= 0 && value <= 600000;
}

// A ping waits 3 s for its answer; past this something else is wrong and
// the page reads whatever there is.
const int PingAnswerTimeoutMs = 5000;
const int PingPollMs = 50;

bool parseOuter(const QString &step, bool *up)
{
    if (step != QLatin1String("outer=up") && step != QLatin1String("outer=down"))
        return false;
    if (up)
        *up = step == QLatin1String("outer=up");
    return true;
}

// The network page's steps: port tabs, modes and the outer-network test.
bool isNetworkStep(const QString &step)
{
    return WindowDriver::portNames().contains(step) || WindowDriver::modeNames().contains(step)
        || step == QLatin1String("test") || step == QLatin1String("testresult") || parseOuter(step, nullptr);
}

} // namespace

ScriptRunner::ScriptRunner(const QStringList &steps, WindowDriver *driver, QObject *parent)
    : QObject(parent)
    , m_steps(steps)
    , m_driver(driver)
    , m_pages(new LinkPageDriver(driver))
{
}

ScriptRunner::~ScriptRunner()
{
    delete m_pages;
}

QString ScriptRunner::syntax()
{
    return QStringLiteral("general, network, version, zh, en, keypad, datetime, dismiss, eth0, eth1, static, dhcp, "
                          "test, testresult, outer=up, outer=down, wait=MS, shot=FILE, close, quit, ")
        + LinkPageDriver::stepNames().join(QStringLiteral(", ")) + QStringLiteral(", ")
        + HostLinks::commandNames().join(QStringLiteral(", "));
}

bool ScriptRunner::validate(const QStringList &steps, QString *error)
{
    if (steps.isEmpty()) {
        *error = QStringLiteral("the script is empty");
        return false;
    }
    for (const QString &step : steps) {
        const bool final = step == QLatin1String("close") || step == QLatin1String("quit");
        if (final && &step != &steps.last()) {
            *error = QStringLiteral("\"%1\" must be the last step").arg(step);
            return false;
        }
        const bool known = WindowDriver::pageNames().contains(step)
            || WindowDriver::languageNames().contains(step)
            || WindowDriver::dialogNames().contains(step) || step == QLatin1String("dismiss")
            || step == QLatin1String("close") || step == QLatin1String("quit")
            || isNetworkStep(step) || parseWait(step, nullptr) || LinkPageDriver::isStep(step)
            || HostLinks::isCommand(step)
            || (step.startsWith(QLatin1String("shot=")) && step.size() > 5);
        if (!known) {
            *error = QStringLiteral("unknown script step \"%1\" (steps: %2)").arg(step, syntax());
            return false;
        }
    }
    return true;
}

void ScriptRunner::start(int stepDelayMs)
{
    m_stepDelayMs = stepDelayMs;
    m_next = 0;
    QTimer::singleShot(m_stepDelayMs, this, &ScriptRunner::runNextStep);
}

void ScriptRunner::runNextStep()
{
    if (m_next >= m_steps.size()) {
        emit finished();
        return;
    }
    const QString step = m_steps.at(m_next++);
    if (step == QLatin1String("testresult")) {
        m_pingClock.start();
        awaitPingAnswer();
        return;
    }
    int pauseMs = m_stepDelayMs;
    QString error;
    if (!runStep(step, &pauseMs, &error)) {
        emit failed(QStringLiteral("step \"%1\": %2").arg(step, error));
        return;
    }
    // After close or quit the window or the program is on its way out;
    // the remaining steps would only fail.
    if (step == QLatin1String("close") || step == QLatin1String("quit"))
        return;
    QTimer::singleShot(pauseMs, this, &ScriptRunner::runNextStep);
}

void ScriptRunner::awaitPingAnswer()
{
    // The ping's redirection makes the file before the ping runs.
    const bool underway = !QFileInfo::exists(QStringLiteral("ping.txt")) || PingWatch::runningIn(QDir::currentPath());
    if (underway && m_pingClock.elapsed() < PingAnswerTimeoutMs) {
        QTimer::singleShot(PingPollMs, this, &ScriptRunner::awaitPingAnswer);
        return;
    }
    QString error;
    if (!m_driver->evaluateTest(&error)) {
        emit failed(QStringLiteral("step \"testresult\": %1").arg(error));
        return;
    }
    QTimer::singleShot(m_stepDelayMs, this, &ScriptRunner::runNextStep);
}

bool ScriptRunner::runNetworkStep(const QString &step, QString *error)
{
    bool up = true;
    if (parseOuter(step, &up))
        return OuterNetwork::set(up, error);
    if (WindowDriver::portNames().contains(step))
        return m_driver->showPort(step, error);
    if (WindowDriver::modeNames().contains(step))
        return m_driver->selectMode(step, error);
    return m_driver->pressTest(error);
}

bool ScriptRunner::runStep(const QString &step, int *pauseMs, QString *error)
{
    if (WindowDriver::pageNames().contains(step))
        return m_driver->showPage(step, error);
    if (WindowDriver::languageNames().contains(step))
        return m_driver->selectLanguage(step, error);
    if (WindowDriver::dialogNames().contains(step))
        return m_driver->openDialog(step, error);
    if (step == QLatin1String("dismiss"))
        return m_driver->dismissDialog(error);
    if (isNetworkStep(step))
        return runNetworkStep(step, error);
    if (LinkPageDriver::isStep(step))
        return m_pages->run(step, error);
    if (HostLinks::isCommand(step)) {
        if (m_links)
            return m_links->command(step, error);
        *error = QStringLiteral("no host links to command");
        return false;
    }
    if (parseWait(step, pauseMs))
        return true;
    if (step.startsWith(QLatin1String("shot="))) {
        const QString file = QDir::current().absoluteFilePath(step.mid(5));
        if (!m_driver->saveImage(file, error))
            return false;
        emit screenshotSaved(file);
        return true;
    }
    if (step == QLatin1String("close")) {
        if (!m_driver->pressClose(error))
            return false;
        emit closePressed();
        return true;
    }
    emit quitRequested();
    return true;
}
