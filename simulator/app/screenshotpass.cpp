#include "screenshotpass.h"
#include "hostlinks.h"
#include "scriptrunner.h"
#include "simulatoroptions.h"
#include "windowdriver.h"

#include <QDir>
#include <QTimer>

namespace {

// Changes on the network page are immediate; this only lets the style
// sheets and the result box's layout settle before a grab.
const QString NetworkSettle = QStringLiteral("wait=50");
// Between the other steps of the network states.
const int NetworkStepDelayMs = 50;

// The host's links answer after this in the pass: long enough to shoot
// the "connecting" states first, short enough for four languages and sizes.
const int LinkAnswerMs = 1500;
// The pages poll their registers once a second.
const QString PageTick = QStringLiteral("wait=1200");
const QString LinkAnswered = QStringLiteral("wait=2000");
// A switch slides its knob over for a moment after the touch.
const QString SwitchSettled = QStringLiteral("wait=400");
// Networks of the host's scan, one per language: a password saved by the
// first connection would skip the dialog for the second.
const QString NetworkZh = QStringLiteral("Lab_5G");
const QString PasswordZh = QStringLiteral("lab5g-test");
const QString NetworkEn = QStringLiteral("TAVRO-Office");
const QString PasswordEn = QStringLiteral("tavro2024");

QString portsName(int wiredPorts)
{
    return wiredPorts == 1 ? QStringLiteral("network-1port") : QStringLiteral("network-%1ports").arg(wiredPorts);
}

} // namespace

ScreenshotPass::ScreenshotPass(WindowDriver *driver, const QString &dir, const QSize &panelSize, int wiredPorts,
                               QObject *parent)
    : QObject(parent)
    , m_driver(driver)
    , m_dir(dir)
    , m_size(panelSize)
    , m_ports(wiredPorts)
{
    // The other pages do not change with the ports.
    if (wiredPorts != 2)
        return;
    for (const QString &language : WindowDriver::languageNames()) {
        for (const QString &page : WindowDriver::pageNames() + WindowDriver::dialogNames())
            m_shots << qMakePair(language, page);
    }
}

QString ScreenshotPass::fileName(const QString &dir, const QSize &panelSize,
                                 const QString &page, const QString &language)
{
    return QDir(dir).absoluteFilePath(SimulatorOptions::sizeName(panelSize) + QLatin1Char('/')
                                      + page + QLatin1Char('_') + language + QStringLiteral(".png"));
}

void ScreenshotPass::start(int settleMs)
{
    m_settleMs = settleMs;
    m_next = 0;
    QTimer::singleShot(m_settleMs, this, &ScreenshotPass::prepareNext);
}

QStringList ScreenshotPass::networkScript(const QString &dir, const QSize &panelSize, int wiredPorts)
{
    auto shot = [&](const QString &language, const char *state) {
        const QString name = portsName(wiredPorts) + QLatin1Char('-') + QLatin1String(state);
        return QStringList{NetworkSettle, QStringLiteral("shot=") + fileName(dir, panelSize, name, language)};
    };
    QStringList steps;
    for (const QString &language : WindowDriver::languageNames()) {
        steps << language << QStringLiteral("network") << QStringLiteral("eth0") << QStringLiteral("static")
              << shot(language, "eth0-static-idle");
        steps << QStringLiteral("outer=up") << QStringLiteral("test") << shot(language, "eth0-static-running")
              << QStringLiteral("testresult") << shot(language, "eth0-static-succeeded") << QStringLiteral("dismiss");
        steps << QStringLiteral("outer=down") << QStringLiteral("test") << QStringLiteral("testresult")
              << shot(language, "eth0-static-failed") << QStringLiteral("dismiss") << QStringLiteral("outer=up");
        if (wiredPorts > 1)
            steps << QStringLiteral("eth1") << shot(language, "eth1-static-idle");
    }
    // DHCP last: where the page can see a lease of this machine's own eth0
    // it keeps it, and the static shots must not show that.
    for (const QString &language : WindowDriver::languageNames()) {
        steps << language << QStringLiteral("eth0") << QStringLiteral("dhcp") << shot(language, "eth0-dhcp-idle");
        if (wiredPorts > 1) {
            steps << QStringLiteral("eth1") << QStringLiteral("dhcp") << shot(language, "eth1-dhcp-idle")
                  << QStringLiteral("static");
        }
        steps << QStringLiteral("eth0") << QStringLiteral("static");
    }
    return steps;
}

QStringList ScreenshotPass::linkStates()
{
    return {QStringLiteral("wlan-main"), QStringLiteral("wlan-search"), QStringLiteral("wlan-password"),
            QStringLiteral("wlan-keyboard"), QStringLiteral("wlan-keyboard-caps"), QStringLiteral("wlan-online"),
            QStringLiteral("wlan-online-main"), QStringLiteral("4g-connecting"), QStringLiteral("4g-connected"),
            QStringLiteral("vpn-prepare"), QStringLiteral("vpn-ok")};
}

bool ScreenshotPass::hasLinkShots(const QSize &panelSize, int wiredPorts)
{
    return wiredPorts == 2 && (panelSize == QSize(800, 480) || panelSize == QSize(1920, 1080));
}

QStringList ScreenshotPass::linkScript(const QString &dir, const QSize &panelSize)
{
    QStringList steps;
    for (const QString &language : WindowDriver::languageNames()) {
        auto shot = [&](const char *state) {
            return QStringList{NetworkSettle, QStringLiteral("shot=") + fileName(dir, panelSize,
                                                                                 QStringLiteral("link-") + QLatin1String(state),
                                                                                 language)};
        };
        const bool zh = language == QLatin1String("zh");
        steps << language << QStringLiteral("network") << QStringLiteral("wlan") << PageTick << shot("wlan-main");
        steps << QStringLiteral("wlan-search") << QStringLiteral("wlan-scan") << PageTick << shot("wlan-search");
        steps << QStringLiteral("wlan-pick=") + (zh ? NetworkZh : NetworkEn) << shot("wlan-password");
        steps << QStringLiteral("psw-keyboard") << shot("wlan-keyboard") << QStringLiteral("psw-caps")
              << shot("wlan-keyboard-caps") << QStringLiteral("psw-caps");
        steps << QStringLiteral("psw-type=") + (zh ? PasswordZh : PasswordEn) << QStringLiteral("psw-enter")
              << QStringLiteral("psw-connect") << LinkAnswered << PageTick << shot("wlan-online");
        steps << QStringLiteral("wlan") << shot("wlan-online-main") << QStringLiteral("wlan-drop");
        steps << QStringLiteral("4g") << QStringLiteral("4g-on") << SwitchSettled << shot("4g-connecting") << LinkAnswered << PageTick
              << shot("4g-connected") << QStringLiteral("4g-off");
        // The page shows "Prepare to connect" until the host has joined.
        steps << QStringLiteral("vpn") << QStringLiteral("vpn-on") << SwitchSettled << shot("vpn-prepare") << LinkAnswered << PageTick
              << shot("vpn-ok") << QStringLiteral("vpn-off");
    }
    return steps;
}

void ScreenshotPass::playNetworkScript()
{
    QStringList steps = networkScript(m_dir, m_size, m_ports);
    if (hasLinkShots(m_size, m_ports) && m_links) {
        m_links->setAnswerDelay(LinkAnswerMs);
        steps << linkScript(m_dir, m_size);
    }
    auto *script = new ScriptRunner(steps, m_driver, this);
    script->setHostLinks(m_links);
    connect(script, &ScriptRunner::screenshotSaved, this, &ScreenshotPass::saved);
    connect(script, &ScriptRunner::failed, this, &ScreenshotPass::failed);
    connect(script, &ScriptRunner::finished, this, &ScreenshotPass::finished);
    script->start(NetworkStepDelayMs);
}

void ScreenshotPass::prepareNext()
{
    if (m_next >= m_shots.size()) {
        playNetworkScript();
        return;
    }
    const QPair<QString, QString> &shot = m_shots.at(m_next);
    const bool dialog = WindowDriver::dialogNames().contains(shot.second);
    // The dialogs belong to the general page.
    const QString page = dialog ? WindowDriver::pageNames().first() : shot.second;
    QString error;
    if (!m_driver->selectLanguage(shot.first, &error) || !m_driver->showPage(page, &error)) {
        emit failed(error);
        return;
    }
    QTimer::singleShot(m_settleMs, this, dialog ? &ScreenshotPass::openDialog : &ScreenshotPass::grabCurrent);
}

void ScreenshotPass::openDialog()
{
    QString error;
    if (!m_driver->openDialog(m_shots.at(m_next).second, &error)) {
        emit failed(error);
        return;
    }
    QTimer::singleShot(m_settleMs, this, &ScreenshotPass::grabCurrent);
}

void ScreenshotPass::grabCurrent()
{
    const QPair<QString, QString> &shot = m_shots.at(m_next++);
    const QString file = fileName(m_dir, m_size, shot.second, shot.first);
    QString error;
    if (!m_driver->saveImage(file, &error)) {
        emit failed(error);
        return;
    }
    emit saved(file);
    // The dialog's own event loop is running under this call: close it and
    // go on from the window's loop.
    if (WindowDriver::dialogNames().contains(shot.second) && !m_driver->dismissDialog(&error)) {
        emit failed(error);
        return;
    }
    QTimer::singleShot(0, this, &ScreenshotPass::prepareNext);
}
