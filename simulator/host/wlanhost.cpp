#include "wlanhost.h"
#include "hostregisters.h"
#include "resolverlines.h"

#include <QFile>
#include <QFileInfo>

namespace {

enum : unsigned {
    WlanDisabled = 98,
    WlanState = 100,
    ConnectRequest = 101,
    Ssid = 103,
    Password = 104,
    Ip = 106,
    MacRegister = 107,
    Mask = 108,
    Gateway = 109,
    ScanCount = 111,
    ScanRequest = 114,
};

enum : quint64 { NotConnected = 0, Connected = 2, WrongPassword = 4 };

const char ScanFile[] = "/tmp/scan_parse";
const char EncryptionFile[] = "/tmp/wifiEnc";
const char PasswordFile[] = "/hmi_data/WiFipassword";
const char ResetFlag[] = "/tmp/ResetWifiFlag";
const int ResetFlagPollMs = 500;

} // namespace

WlanHost::WlanHost(HostRegisters *registers, QObject *parent)
    : HostLink(registers, parent)
    , m_networks(defaultNetworks())
{
    setAddress({QStringLiteral("192.168.8.23"), QStringLiteral("255.255.255.0"), QStringLiteral("192.168.8.1"),
                {QStringLiteral("192.168.8.1")}});
    m_flagPoll.setInterval(ResetFlagPollMs);
    connect(&m_flagPoll, &QTimer::timeout, this, &WlanHost::checkResetFlag);
}

QList<SimNetwork> WlanHost::defaultNetworks()
{
    return {
        {QStringLiteral("TAVRO-Office"), 86, QStringLiteral("tavro2024")},
        {QStringLiteral("车间无线"), 72, QStringLiteral("chejian88")},
        {QStringLiteral("Warehouse-AP"), 61, QStringLiteral("store1234")},
        {QStringLiteral("访客网络"), 47, QString()},
        {QStringLiteral("Lab_5G"), 18, QStringLiteral("lab5g-test")},
    };
}

QList<SavedPassword> WlanHost::defaultSavedPasswords()
{
    return {{QStringLiteral("车间无线"), QStringLiteral("chejian88")},
            {QStringLiteral("Warehouse-AP"), QStringLiteral("store1234")}};
}

QList<unsigned> WlanHost::requestRegisters() const
{
    return {WlanDisabled, ConnectRequest, ScanRequest};
}

void WlanHost::start()
{
    writePanelFile(QLatin1String(PasswordFile), WlanFiles::passwordTable(defaultSavedPasswords()));
    m_flagPoll.start();
}

void WlanHost::onRequest(unsigned index)
{
    // The page makes the flag file and asks for a scan right after.
    checkResetFlag();
    if (index == ScanRequest && m_registers->flag(ScanRequest))
        scan();
    else if (index == ConnectRequest && m_registers->flag(ConnectRequest))
        requestConnection();
    else if (index == WlanDisabled && m_registers->flag(WlanDisabled))
        disconnect(QStringLiteral("WLAN switched off"));
}

void WlanHost::scan()
{
    m_scanned = true;
    const QByteArray list = WlanFiles::scanList(m_networks);
    if (!writePanelFile(QLatin1String(ScanFile), list)
        || !writePanelFile(QLatin1String(EncryptionFile), WlanFiles::encryptionList(m_networks)))
        return;
    QStringList names;
    for (const SimNetwork &network : m_networks)
        names << QStringLiteral("%1 (%2%3)").arg(network.ssid).arg(network.quality)
                     .arg(network.isOpen() ? QStringLiteral(", open") : QString());
    report(QStringLiteral("scan: %1 networks in %2 and %3: %4")
               .arg(m_networks.size()).arg(QLatin1String(ScanFile), QLatin1String(EncryptionFile),
                                            names.join(QStringLiteral(", "))));
    store(ScanCount, quint64(m_networks.size()), QStringLiteral("networks found"));
}

void WlanHost::requestConnection()
{
    m_requestedSsid = WlanFiles::decode(m_registers->bytes(Ssid));
    m_requestedPassword = WlanFiles::decode(m_registers->bytes(Password));
    report(QStringLiteral("connection request for \"%1\" with a password of %2 characters; answer in %3 ms")
               .arg(m_requestedSsid).arg(m_requestedPassword.size()).arg(answerDelay()));
    answerLater();
}

void WlanHost::answer()
{
    const SimNetwork *found = nullptr;
    for (const SimNetwork &network : m_networks) {
        if (network.ssid == m_requestedSsid)
            found = &network;
    }
    if (!found) {
        refuse(QStringLiteral("\"%1\" is not in range").arg(m_requestedSsid), NotConnected);
        return;
    }
    if (!found->isOpen() && (m_failNext || found->password != m_requestedPassword)) {
        const bool forced = m_failNext;
        m_failNext = false;
        writePanelFile(QLatin1String(PasswordFile),
                       WlanFiles::passwordTable(WlanFiles::forget(savedPasswords(), found->ssid)));
        refuse(QStringLiteral("wrong password for \"%1\"%2").arg(found->ssid,
               forced ? QStringLiteral(" (as asked from the control window)") : QString()), WrongPassword);
        return;
    }
    connectTo(*found);
}

void WlanHost::connectTo(const SimNetwork &network)
{
    if (isConnected() && m_connected != network.ssid)
        announceInterface(false);
    m_connected = network.ssid;
    if (!network.isOpen()) {
        writePanelFile(QLatin1String(PasswordFile), WlanFiles::passwordTable(WlanFiles::remember(
                                                        savedPasswords(), network.ssid, m_requestedPassword)));
    }
    report(QStringLiteral("associated with \"%1\"").arg(network.ssid));
    storeText(Ssid, WlanFiles::encode(network.ssid), network.ssid);
    storeAddress(Ip, address().address);
    storeAddress(Mask, address().mask);
    storeAddress(Gateway, address().gateway);
    storeText(MacRegister, QByteArray(Mac), QLatin1String(Mac));
    // The pages' own name-server lines for the WLAN stay; a lease adds one
    // only where there is none.
    const QString path = m_registers->root() + QStringLiteral("/etc/resolv.conf");
    if (!ResolverLines::hasInterface(ResolverLines::read(path), interfaceName()))
        editResolver({wlanServerLine()}, {});
    store(WlanState, Connected, QStringLiteral("connected"));
    announceInterface(true);
}

QString WlanHost::wlanServerLine() const
{
    return ResolverLines::line(address().nameServers.value(0, address().gateway), interfaceName());
}

void WlanHost::refuse(const QString &why, quint64 state)
{
    report(QStringLiteral("connection refused: %1").arg(why));
    if (isConnected())
        disconnect(QStringLiteral("association lost"));
    store(WlanState, state, state == WrongPassword ? QStringLiteral("wrong password") : QStringLiteral("not connected"));
}

void WlanHost::disconnect(const QString &why)
{
    cancelAnswer();
    const bool was = isConnected();
    m_connected.clear();
    report(QStringLiteral("%1%2").arg(why, was ? QString() : QStringLiteral(" (no link was up)")));
    store(WlanState, NotConnected, QStringLiteral("not connected"));
    storeAddress(Ip, QString());
    storeAddress(Mask, QString());
    storeAddress(Gateway, QString());
    editResolver({}, {wlanServerLine()});
    if (was)
        announceInterface(false);
}

void WlanHost::drop()
{
    disconnect(QStringLiteral("link dropped (out of range)"));
}

void WlanHost::failNextPassword()
{
    m_failNext = true;
    report(QStringLiteral("the next connection will fail on its password"));
}

void WlanHost::addNetwork(const SimNetwork &network)
{
    removeNetwork(network.ssid);
    m_networks << network;
    report(QStringLiteral("network \"%1\" now in range (%2)").arg(network.ssid,
           network.isOpen() ? QStringLiteral("open") : QStringLiteral("password \"%1\"").arg(network.password)));
    if (m_scanned)
        scan();
}

bool WlanHost::removeNetwork(const QString &ssid)
{
    for (int i = 0; i < m_networks.size(); ++i) {
        if (m_networks.at(i).ssid != ssid)
            continue;
        m_networks.removeAt(i);
        report(QStringLiteral("network \"%1\" out of range").arg(ssid));
        if (m_connected == ssid)
            drop();
        if (m_scanned)
            scan();
        return true;
    }
    return false;
}

void WlanHost::checkResetFlag()
{
    const QString flag = m_registers->root() + QLatin1String(ResetFlag);
    if (!QFileInfo::exists(flag))
        return;
    QFile::remove(flag);
    disconnect(QStringLiteral("reset asked for (%1 found and removed)").arg(QLatin1String(ResetFlag)));
}

QList<SavedPassword> WlanHost::savedPasswords() const
{
    QFile file(m_registers->root() + QLatin1String(PasswordFile));
    // A damaged or missing table counts as empty; it is written whole again.
    return file.open(QIODevice::ReadOnly) ? WlanFiles::parsePasswordTable(file.read(WlanFiles::TableSize))
                                          : QList<SavedPassword>();
}

bool WlanHost::writePanelFile(const QString &path, const QByteArray &contents)
{
    QFile file(m_registers->root() + path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(contents) == contents.size())
        return true;
    report(QStringLiteral("cannot write %1: %2").arg(path, file.errorString()));
    return false;
}
