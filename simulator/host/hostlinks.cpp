#include "hostlinks.h"
#include "mobilehost.h"
#include "vpnhost.h"
#include "wlanhost.h"

namespace {

const QString SignalPrefix = QStringLiteral("signal=");
const QString ScanAddPrefix = QStringLiteral("scan-add=");
const QString ScanRemovePrefix = QStringLiteral("scan-remove=");
const int AddedNetworkQuality = 64;

bool parseSignal(const QString &command, int *level)
{
    if (!command.startsWith(SignalPrefix))
        return false;
    bool ok = false;
    *level = command.mid(SignalPrefix.size()).toInt(&ok);
    return ok && *level >= 0 && *level <= 100;
}

} // namespace

HostLinks::HostLinks(const QString &root, QObject *parent)
    : QObject(parent)
    , m_registers(root)
    , m_wlan(new WlanHost(&m_registers, this))
    , m_mobile(new MobileHost(&m_registers, this))
    , m_vpn(new VpnHost(&m_registers, this))
{
    for (HostLink *link : links()) {
        connect(link, &HostLink::logLine, this, &HostLinks::logLine);
        connect(link, &HostLink::interfaceChanged, this, &HostLinks::interfaceChanged);
    }
}

QList<HostLink *> HostLinks::links() const
{
    return {m_wlan, m_mobile, m_vpn};
}

void HostLinks::start()
{
    m_wlan->start();
}

void HostLinks::notify(unsigned index)
{
    for (HostLink *link : links()) {
        if (link->requestRegisters().contains(index))
            link->onRequest(index);
    }
}

void HostLinks::setAnswerDelay(int ms)
{
    for (HostLink *link : links())
        link->setAnswerDelay(ms);
}

void HostLinks::useLabAddresses()
{
    // The far side of the lab answers at .1 of each subnet, name service included.
    m_wlan->setAddress({QStringLiteral("10.79.0.23"), QStringLiteral("255.255.255.0"), QStringLiteral("10.79.0.1"),
                        {QStringLiteral("10.79.0.1")}});
    m_mobile->setAddress({QStringLiteral("10.80.0.7"), QStringLiteral("255.255.255.0"), QStringLiteral("10.80.0.1"),
                          {QStringLiteral("10.80.0.1")}});
}

QStringList HostLinks::commandNames()
{
    return {QStringLiteral("wlan-password-wrong"), QStringLiteral("wlan-drop"), QStringLiteral("4g-drop"),
            QStringLiteral("vpn-drop"), QStringLiteral("signal=NN"), QStringLiteral("signal=drift"),
            QStringLiteral("scan-add=NAME[:PASSWORD]"), QStringLiteral("scan-remove=NAME")};
}

bool HostLinks::isCommand(const QString &command)
{
    int level = 0;
    static const QStringList fixed = {QStringLiteral("wlan-password-wrong"), QStringLiteral("wlan-drop"),
                                      QStringLiteral("4g-drop"), QStringLiteral("vpn-drop"),
                                      QStringLiteral("signal=drift")};
    return fixed.contains(command) || parseSignal(command, &level)
        || (command.startsWith(ScanAddPrefix) && command.size() > ScanAddPrefix.size()
            && !command.mid(ScanAddPrefix.size()).startsWith(QLatin1Char(':')))
        || (command.startsWith(ScanRemovePrefix) && command.size() > ScanRemovePrefix.size());
}

bool HostLinks::command(const QString &command, QString *error)
{
    if (!isCommand(command)) {
        *error = QStringLiteral("unknown host command \"%1\" (commands: %2)")
                     .arg(command, commandNames().join(QStringLiteral(", ")));
        return false;
    }
    int level = 0;
    if (command == QLatin1String("wlan-password-wrong"))
        m_wlan->failNextPassword();
    else if (command == QLatin1String("wlan-drop"))
        m_wlan->drop();
    else if (command == QLatin1String("4g-drop"))
        m_mobile->drop();
    else if (command == QLatin1String("vpn-drop"))
        m_vpn->drop();
    else if (command == QLatin1String("signal=drift"))
        m_mobile->letSignalDrift();
    else if (parseSignal(command, &level))
        m_mobile->holdSignal(level);
    else
        return scanCommand(command, error);
    return true;
}

bool HostLinks::scanCommand(const QString &command, QString *error)
{
    if (command.startsWith(ScanRemovePrefix)) {
        const QString ssid = command.mid(ScanRemovePrefix.size());
        if (m_wlan->removeNetwork(ssid))
            return true;
        *error = QStringLiteral("no network \"%1\" in range").arg(ssid);
        return false;
    }
    const QString nameAndPassword = command.mid(ScanAddPrefix.size());
    const int colon = nameAndPassword.indexOf(QLatin1Char(':'));
    SimNetwork network;
    network.ssid = colon < 0 ? nameAndPassword : nameAndPassword.left(colon);
    network.password = colon < 0 ? QString() : nameAndPassword.mid(colon + 1);
    network.quality = AddedNetworkQuality;
    m_wlan->addNetwork(network);
    return true;
}
