#include "networksettings.h"

#include "commandtext.h"
#include "devicecommands.h"
#include "dhcpclient.h"
#include "eeinfohandle.h"
#include "inputdialog.h"
#include "keyclick.h"
#include "languagelist.h"
#include "mobilenetworkui.h"
#include "networkaddress.h"
#include "outernetworktest.h"
#include "panelfont.h"
#include "panelroot.h"
#include "processlookup.h"
#include "processrunner.h"
#include "resolverfile.h"
#include "rowhidingcombobox.h"
#include "routerules.h"
#include "sysreg.h"
#include "vpnsetui.h"
#include "wiredportpage.h"
#include "wirelesswgtui.h"

#include <QComboBox>
#include <QEvent>
#include <QFile>
#include <QLineEdit>
#include <QLoggingCategory>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QSignalBlocker>
#include <QTabBar>
#include <QTimer>
#include <QTranslator>
#include <QtEndian>

#include <cstddef>

Q_LOGGING_CATEGORY(lcNetwork, "tavro.settings.network")

// Where each stored address value goes, for eth0 and eth1.
const NetworkSettings::StoredField NetworkSettings::AddressField = {
    {EEInfoDetail::Flash_WR_1::Eth0IpOffset, EEInfoDetail::Flash_WR_1::Eth1IpOffset},
    Settings::IpAddress, {SysRegIdx::Eth0Ip, SysRegIdx::Eth1Ip}};
const NetworkSettings::StoredField NetworkSettings::MaskField = {
    {EEInfoDetail::Flash_WR_1::Eth0MaskOffset, EEInfoDetail::Flash_WR_1::Eth1MaskOffset},
    Settings::SubnetMask, {SysRegIdx::Eth0Mask, SysRegIdx::Eth1Mask}};
const NetworkSettings::StoredField NetworkSettings::GatewayField = {
    {EEInfoDetail::Flash_WR_1::Eth0GatewayOffset, EEInfoDetail::Flash_WR_1::Eth1GatewayOffset},
    Settings::Gateway, {SysRegIdx::Eth0Gateway, SysRegIdx::Eth1Gateway}};

namespace {

constexpr int PageFontWeight = 75;
constexpr int PageFontPointSize = 13;
constexpr int LeasePollMs = 100;
constexpr int SmallTabsBelowWidth = 1024;
constexpr int SmallTabPointSize = 11;
constexpr int OctetMax = 255;

const char EnableKey[] = "Network%1/enable";

const unsigned DisabledRegister[2] = {SysRegIdx::Eth0Disabled, SysRegIdx::Eth1Disabled};
const unsigned DhcpRegister[2] = {SysRegIdx::Eth0Dhcp, SysRegIdx::Eth1Dhcp};

bool validPort(int port)
{
    return port == 0 || port == 1;
}

bool registerBit(unsigned index)
{
    quint8 value = 0;
    return SysReg_Read(index, &value) == 0 && (value & 1);
}

void writeByteNotify(unsigned index, quint8 value)
{
    SysReg_WriteNotify(index, &value, sizeof value);
}

QStringList bytesOf(quint32 value)
{
    return NetworkAddress::toOctets(value);
}

QStringList macOf(const quint8 *mac)
{
    QStringList bytes;
    for (int i = 0; i < 6; ++i)
        bytes << QString::number(mac[i], 16);
    return bytes;
}

} // namespace

NetworkSettings::NetworkSettings(QWidget *parent)
    : QTabWidget(parent)
    , m_translator(new QTranslator(this))
    , m_pingTimer(new QTimer(this))
    , m_lookup(liveAddresses)
{
    static_assert(offsetof(Records, readOnly) == EEInfoDetail::Flash_WR_1::Size,
                  "the record copies must lie back to back");
    setObjectName(QStringLiteral("NetworkSettings"));
    for (QTimer *&timer : m_leaseTimers)
        timer = new QTimer(this);
}

NetworkSettings::~NetworkSettings() = default;

void NetworkSettings::init(int fontId, EEInfoDetail::Flash_WR_1 &record,
                           EEInfoDetail::Flash_ROnly &readOnly, QSettings *settings)
{
    EEInfoDetail::Flash_ROnly fresh {};
    EEInfoHandle::instance()->read_flash_r_info(&fresh);
    m_records.wr1 = record;
    m_records.readOnly = readOnly;
    m_settings = settings;
    m_fontId = fontId;
    m_font = PanelFont::font(fontId, PageFontWeight, PageFontPointSize);
    setFont(m_font);
    clear();
    buildPorts(fresh.screenWidth());
    // Five English titles fit the smallest panel only in a smaller size.
    QFont tabFont = m_font;
    if (fresh.screenWidth() < SmallTabsBelowWidth)
        tabFont.setPointSize(SmallTabPointSize);
    tabBar()->setFont(tabFont);
    fillSelectors();
    for (int port = 0; port < wiredCount(); ++port) {
        const QString key = QString::fromLatin1(EnableKey).arg(port);
        m_disabled[port] = m_settings && m_settings->contains(key) && !m_settings->value(key).toBool();
        m_ports[port]->setSwitchShowsDisabled(m_disabled[port]);
        if (m_disabled[port])
            disableNetworkConfig(port, 0);
        else
            enableNetworkConfig(port);
    }
    addTabPages();
    quint8 choice = 0;
    SysReg_Read(SysRegIdx::DefaultAdapter, &choice);
    m_defaultGateway = m_ports[choice == 2 && supportEth2() ? 1 : 0]->octets(WiredPortPage::Gateway);
    updateDefaultGateway(eth0);
    updateDefaultGateway(eth1);
    connectSlots();
}

void NetworkSettings::buildPorts(int screenWidth)
{
    // Both ports always have their editors: the route rules read eth1's
    // gateway even on a panel without the port.
    for (int port = 0; port < 2; ++port) {
        if (!m_ports[port]) {
            m_ports[port] = new WiredPortPage(port, m_font, this);
            m_ports[port]->setObjectName(QStringLiteral("eth%1Tab").arg(port));
            m_ports[port]->hide();
        }
        WiredPortPage *page = m_ports[port];
        page->adjustToScreen(screenWidth);
        if (page->modeComboBox()->count() == 0)
            page->modeComboBox()->addItems({QString(), QString()});
        for (QLineEdit *field : page->fields())
            field->installEventFilter(this);
        for (QPushButton *button : page->findChildren<QPushButton *>())
            button->installEventFilter(this);
        updateIPData(port);
        updateMaskData(port);
        updateGatewayData(port);
        page->setMac(getMacFromEE(networkIndexType(port)));
        if (port < wiredCount())
            addTab(page, tr("wired network") + QStringLiteral("%1").arg(port));
    }
}

void NetworkSettings::addTabPages()
{
    if (supportWifi() && !m_wifi) {
        m_wifi = new WirelessWgtUI(this);
        connect(this, SIGNAL(updateDefaultNetwork(int)), m_wifi, SLOT(on_updateDefaultNetwork(int)));
        connect(m_wifi, SIGNAL(updateDefaultNetworkSignal(int)), this, SLOT(on_updateDefaultNetworkSlot(int)));
        connect(m_wifi, &WirelessWgtUI::wifiEanbleSignal, this, &NetworkSettings::on_wifiEanableSlot);
        connect(m_wifi, SIGNAL(pingTestSignal()), this, SLOT(onSetTest()));
        m_wifi->getEEDate(m_records.wr1, m_records.readOnly);
    }
    if (m_wifi)
        addTab(m_wifi, tr("wireless network"));
    if (support4G() && !m_mobile) {
        m_mobile = new MobileNetworkUI(m_fontId, this);
        connect(this, SIGNAL(updateDefaultNetwork(int)), m_mobile, SLOT(on_updateDefaultNetwork(int)));
        connect(this, SIGNAL(enableNetworkSignal(int, int)), m_mobile, SLOT(on_enableNetwork(int, int)));
        connect(m_mobile, &MobileNetworkUI::Eanble_4G_Signal, this, &NetworkSettings::on_wifiEanableSlot);
        connect(m_mobile, SIGNAL(updateDefaultNetworkSignal(int)), this, SLOT(on_updateDefaultNetworkSlot(int)));
        connect(m_mobile, SIGNAL(pingTestSignal()), this, SLOT(onSetTest()));
    }
    if (m_mobile)
        addTab(m_mobile, tr("Mobile network"));
    if (!m_vpn)
        m_vpn = new VpnSetUI(m_fontId, this);
    addTab(m_vpn, tr("VPN"));
}

void NetworkSettings::connectSlots()
{
    for (int port = 0; port < 2; ++port) {
        WiredPortPage *page = m_ports[port];
        connect(page->modeComboBox(), SIGNAL(currentIndexChanged(int)), this, SLOT(onSetCombobox(int)),
                Qt::UniqueConnection);
        connect(page->defaultNetworkComboBox(), SIGNAL(currentIndexChanged(int)), this,
                SLOT(onSetAdapterCombobox(int)), Qt::UniqueConnection);
        connect(page->disableSwitch(), SIGNAL(clicked()), this, SLOT(onDisableNetworkSwitched()),
                Qt::UniqueConnection);
        connect(page->setDefaultGatewayButton(), SIGNAL(clicked()), this, SLOT(onSetDefaultGateway()),
                Qt::UniqueConnection);
        connect(page->testButton(), SIGNAL(clicked()), this, SLOT(onSetTest()), Qt::UniqueConnection);
    }
    connect(m_leaseTimers[0], SIGNAL(timeout()), this, SLOT(slotdhcp()), Qt::UniqueConnection);
    connect(m_leaseTimers[1], SIGNAL(timeout()), this, SLOT(slotdhcp1()), Qt::UniqueConnection);
    connect(m_pingTimer, SIGNAL(timeout()), this, SLOT(ping_test()), Qt::UniqueConnection);
    connect(tabBar(), SIGNAL(tabBarClicked(int)), this, SLOT(onTabBarSwitched(int)), Qt::UniqueConnection);
}

void NetworkSettings::refresh()
{
    for (int port = 0; port < 2; ++port) {
        WiredPortPage *page = m_ports[port];
        if (!page)
            continue;
        page->retranslate();
        QComboBox *mode = page->modeComboBox();
        // A change of language must not act on the network.
        const QSignalBlocker blocker(mode);
        mode->setItemText(WiredPortPage::StaticRow, tr("Static IP"));
        mode->setItemText(WiredPortPage::DynamicRow, tr("Dynamic IP"));
        mode->setCurrentIndex(registerBit(DhcpRegister[port]) ? WiredPortPage::DynamicRow
                                                              : WiredPortPage::StaticRow);
        if (port < wiredCount())
            setTabText(port, tr("wired network") + QStringLiteral("%1").arg(port));
        updateDefaultNetwork(networkIndexType(port));
        updateDefaultGateway(networkIndexType(port));
    }
    fillSelectors();
    if (m_wifi) {
        setTabText(indexOf(m_wifi), tr("wireless network"));
        m_wifi->refresh();
    }
    if (m_mobile) {
        setTabText(indexOf(m_mobile), tr("Mobile network"));
        m_mobile->refresh();
    }
    if (m_vpn) {
        setTabText(indexOf(m_vpn), tr("VPN"));
        m_vpn->refresh();
    }
}

void NetworkSettings::onChangeLanguage(Settings::Language lang)
{
    LanguageList::install(m_translator, lang);
    refresh();
}

void NetworkSettings::onTabBarSwitched(int index)
{
    Q_UNUSED(index)
    KeyClick::play(m_settings);
}

bool NetworkSettings::supportEth2() const
{
    return m_records.readOnly.hasEth1();
}

bool NetworkSettings::supportWifi() const
{
    return m_records.readOnly.hasWlan();
}

bool NetworkSettings::support4G() const
{
    return m_records.readOnly.has4G();
}

int NetworkSettings::wiredCount() const
{
    return supportEth2() ? 2 : 1;
}

QStringList NetworkSettings::getIPFromEE(networkIndexType port) const
{
    if (!validPort(port))
        return {};
    return bytesOf(port == eth0 ? m_records.wr1.eth0Ip : m_records.wr1.eth1Ip);
}

QStringList NetworkSettings::getMaskFromEE(networkIndexType port) const
{
    if (!validPort(port))
        return {};
    return bytesOf(port == eth0 ? m_records.wr1.eth0Mask : m_records.wr1.eth1Mask);
}

QStringList NetworkSettings::getGatewayFromEE(networkIndexType port) const
{
    if (!validPort(port))
        return {};
    return bytesOf(port == eth0 ? m_records.wr1.eth0Gateway : m_records.wr1.eth1Gateway);
}

QStringList NetworkSettings::getMacFromEE(networkIndexType port) const
{
    if (!validPort(port))
        return {};
    return macOf(port == eth0 ? m_records.wr1.eth0Mac : m_records.wr1.eth1Mac);
}

QStringList NetworkSettings::liveAddresses(const QString &name)
{
    const QNetworkInterface interface = QNetworkInterface::interfaceFromName(name);
    if (!interface.isValid())
        return {};
    return addressList(interface.flags(), interface.addressEntries());
}

QStringList NetworkSettings::addressList(QNetworkInterface::InterfaceFlags flags,
                                         const QList<QNetworkAddressEntry> &entries)
{
    QStringList list;
    const QNetworkInterface::InterfaceFlags live = QNetworkInterface::IsUp | QNetworkInterface::IsRunning;
    if (entries.isEmpty() || (flags & live) != live)
        return list;
    for (const QNetworkAddressEntry &entry : entries) {
        if (entry.ip().protocol() == QAbstractSocket::IPv4Protocol)
            list << entry.ip().toString() << entry.netmask().toString();
    }
    return list;
}

QStringList NetworkSettings::getipAddress(const QString &name) const
{
    return m_lookup ? m_lookup(name) : QStringList();
}

void NetworkSettings::setInterfaceLookup(const InterfaceLookup &lookup)
{
    m_lookup = lookup ? lookup : InterfaceLookup(liveAddresses);
}

WiredPortPage *NetworkSettings::portPage(int port) const
{
    return validPort(port) ? m_ports[port] : nullptr;
}

QTimer *NetworkSettings::leaseTimer(int port) const
{
    return validPort(port) ? m_leaseTimers[port] : nullptr;
}

bool NetworkSettings::isPortDisabled(int port) const
{
    return validPort(port) && m_disabled[port];
}

QList<WiredPortPage *> NetworkSettings::wiredPages() const
{
    QList<WiredPortPage *> pages;
    for (int port = 0; port < wiredCount(); ++port)
        pages << m_ports[port];
    return pages;
}

bool NetworkSettings::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress) {
        if (auto *field = qobject_cast<QLineEdit *>(watched)) {
            if (field->isEnabled())
                doModal(field);
        } else if (qobject_cast<QPushButton *>(watched)) {
            KeyClick::play(m_settings);
        }
    }
    return QTabWidget::eventFilter(watched, event);
}

void NetworkSettings::doModal(QLineEdit *field)
{
    KeyClick::play(m_settings);
    if (!field)
        return;
    // The keypad's result is the value + 1; below 1 the user cancelled.
    const int result = InputDialog::Instance(m_fontId, 0, OctetMax, field->text().toInt(), m_settings,
                                             nullptr)
                           ->exec();
    if (result < 1)
        return;
    field->setText(QString::number(result - 1));
    for (int port = 0; port < 2; ++port) {
        if (m_ports[port] && m_ports[port]->groupOf(field) != WiredPortPage::GroupCount)
            updateSystemAndSaveToEE(port, field);
    }
}

bool NetworkSettings::isConfigIp(int port, const QLineEdit *field) const
{
    return validPort(port) && m_ports[port] && m_ports[port]->groupOf(field) == WiredPortPage::Address;
}

bool NetworkSettings::isConfigMask(int port, const QLineEdit *field) const
{
    return validPort(port) && m_ports[port] && m_ports[port]->groupOf(field) == WiredPortPage::Mask;
}

bool NetworkSettings::isConfigGateway(int port, const QLineEdit *field) const
{
    return validPort(port) && m_ports[port] && m_ports[port]->groupOf(field) == WiredPortPage::Gateway;
}

bool NetworkSettings::isConfigFirstDns(int port, const QLineEdit *field) const
{
    return validPort(port) && m_ports[port] && m_ports[port]->groupOf(field) == WiredPortPage::FirstDns;
}

bool NetworkSettings::isConfigBackupDns(int port, const QLineEdit *field) const
{
    return validPort(port) && m_ports[port] && m_ports[port]->groupOf(field) == WiredPortPage::BackupDns;
}

void NetworkSettings::updateSystemAndSaveToEE(int port, QLineEdit *field)
{
    if (validPort(port)) {
        WiredPortPage *page = m_ports[port];
        if (isConfigIp(port, field)) {
            setIP(port, NetworkAddress::dotted(page->octets(WiredPortPage::Address)));
            setIPToEE(port, NetworkAddress::fromOctets(page->octets(WiredPortPage::Address)));
        } else if (isConfigMask(port, field)) {
            setMask(port, NetworkAddress::dotted(page->octets(WiredPortPage::Mask)));
            setMaskToEE(port, NetworkAddress::fromOctets(page->octets(WiredPortPage::Mask)));
        } else if (isConfigGateway(port, field)) {
            setGateway(-1);
            setGatewayToEE(port, NetworkAddress::fromOctets(page->octets(WiredPortPage::Gateway)));
        } else if (isConfigFirstDns(port, field)) {
            setDNSToSys(port, firstDns, NetworkAddress::dotted(page->octets(WiredPortPage::FirstDns)));
        } else if (isConfigBackupDns(port, field)) {
            setDNSToSys(port, backupDns, NetworkAddress::dotted(page->octets(WiredPortPage::BackupDns)));
        }
    }
    updateDefaultGatewayFromReg();
}

void NetworkSettings::setIP(int port, const QString &address)
{
    EEInfoHandle::instance()->setIP(port, address.toStdString());
}

void NetworkSettings::setMask(int port, const QString &mask)
{
    EEInfoHandle::instance()->setMask(port, mask.toStdString());
}

void NetworkSettings::storeField(const StoredField &stored, int port, quint32 value)
{
    if (!validPort(port))
        return;
    // By offset: the fields lie at odd offsets of the packed record, where a
    // plain quint32 reference would be an unaligned access on ARM.
    auto *bytes = reinterpret_cast<unsigned char *>(&m_records.wr1) + stored.offset[port];
    qToLittleEndian<quint32>(value, bytes);
    emit updateEEData(m_records.wr1, stored.type);
    // The register is wider than the field: the bytes after it go along.
    SysReg_Write(stored.registerIndex[port], bytes, sizeof value);
}

void NetworkSettings::setIPToEE(int port, unsigned int value)
{
    storeField(AddressField, port, value);
}

void NetworkSettings::setMaskToEE(int port, unsigned int value)
{
    storeField(MaskField, port, value);
}

void NetworkSettings::setGatewayToEE(int port, unsigned int value)
{
    storeField(GatewayField, port, value);
}

void NetworkSettings::updateIPData(int port)
{
    if (validPort(port))
        m_ports[port]->setOctets(WiredPortPage::Address, getIPFromEE(networkIndexType(port)));
}

void NetworkSettings::updateMaskData(int port)
{
    if (validPort(port))
        m_ports[port]->setOctets(WiredPortPage::Mask, getMaskFromEE(networkIndexType(port)));
}

void NetworkSettings::updateGatewayData(int port)
{
    if (validPort(port))
        m_ports[port]->setOctets(WiredPortPage::Gateway, getGatewayFromEE(networkIndexType(port)));
}

void NetworkSettings::disableNetwork(int port)
{
    if (!validPort(port))
        return;
    emit enableNetworkSignal(port, 0);
    m_ports[port]->clearFields();
    m_ports[port]->setFieldsEnabled(false);
}

void NetworkSettings::enableNetwork(int port)
{
    if (!validPort(port))
        return;
    emit enableNetworkSignal(port, 1);
    m_ports[port]->setFieldsEnabled(true);
    updateIPData(port);
    updateMaskData(port);
    updateGatewayData(port);
    updateDNSData(port, firstDns);
    updateDNSData(port, backupDns);
    // The mask is not part of this command: until it is set the kernel
    // uses the default of the address's class.
    runCommand(DeviceCommands::upWithAddress(port, port == eth0 ? m_records.wr1.eth0Ip : m_records.wr1.eth1Ip));
}

void NetworkSettings::disableNetworkConfig(int port, int platform)
{
    if (!validPort(port))
        return;
    m_leaseTimers[port]->stop();
    disableNetwork(port);
    m_ports[port]->modeComboBox()->setEnabled(false);
    setSelectorRowHidden(port + 1, true);
    if (platform == 1)
        EEInfoHandle::instance()->disableNetwork(port);
    if (m_settings) {
        m_settings->setValue(QString::fromLatin1(EnableKey).arg(port), false);
        m_settings->sync();
    }
    writeByteNotify(DisabledRegister[port], 1);
}

void NetworkSettings::enableNetworkConfig(int port)
{
    if (!validPort(port))
        return;
    const bool dhcp = registerBit(DhcpRegister[port]);
    updateDNSData(port, firstDns);
    updateDNSData(port, backupDns);
    WiredPortPage *page = m_ports[port];
    if (dhcp) {
        udhcpc(port);
        page->modeComboBox()->setCurrentIndex(WiredPortPage::DynamicRow);
        disableNetwork(port);
        m_leaseTimers[port]->start(LeasePollMs);
    } else {
        killudhcpc(port);
        page->modeComboBox()->setCurrentIndex(WiredPortPage::StaticRow);
        updateIPData(port);
        updateMaskData(port);
        updateGatewayData(port);
        page->setFieldsEnabled(true);
        enableNetwork(port);
        setGateway(-1);
    }
    page->modeComboBox()->setEnabled(true);
    setSelectorRowHidden(port + 1, false);
    if (m_settings) {
        m_settings->setValue(QString::fromLatin1(EnableKey).arg(port), true);
        m_settings->sync();
    }
    writeByteNotify(DisabledRegister[port], 0);
}

void NetworkSettings::onDisableNetworkSwitched()
{
    const int port = m_ports[0] && sender() == m_ports[0]->disableSwitch() ? 0 : 1;
    m_disabled[port] = !m_disabled[port];
    qCInfo(lcNetwork, "eth%d switched %s", port, m_disabled[port] ? "off" : "on");
    m_ports[port]->setSwitchShowsDisabled(m_disabled[port]);
    if (m_disabled[port])
        disableNetworkConfig(port, 1);
    else
        enableNetworkConfig(port);
}

void NetworkSettings::getDns(QFile &file, networkIndexType port, dnsType type, QString &out) const
{
    out = ResolverFile::server(ResolverFile::readText(file), ResolverFile::ethTag(port), type);
}

QStringList NetworkSettings::getDNSFromSys(networkIndexType port, dnsType type)
{
    if (!validPort(port) || (type != firstDns && type != backupDns))
        return {};
    const QStringList octets = ResolverFile::systemServer(ResolverFile::ethTag(port), type)
                                   .split(QLatin1Char('.'));
    m_dns[port][type] = octets;
    return octets;
}

void NetworkSettings::updateDNSData(int port, int type)
{
    if (!validPort(port) || (type != firstDns && type != backupDns))
        return;
    const QStringList octets = getDNSFromSys(networkIndexType(port), dnsType(type));
    m_ports[port]->setOctets(type == firstDns ? WiredPortPage::FirstDns : WiredPortPage::BackupDns, octets);
}

void NetworkSettings::replaceDns(QFile &file, networkIndexType port, dnsType type, QString dns)
{
    ResolverFile::rewrite(file, ResolverFile::ethTag(port), type, dns);
}

void NetworkSettings::setDNSToSys(int port, int type, const QString &dns)
{
    if (!validPort(port))
        return;
    QFile file(PanelRoot::path(QString::fromLatin1(ResolverFile::Path)));
    replaceDns(file, networkIndexType(port), dnsType(type), dns);
}

void NetworkSettings::udhcpc(int port)
{
    DhcpClient::start(port);
}

void NetworkSettings::killudhcpc(int port)
{
    DhcpClient::stop(port);
}

void NetworkSettings::updateDHCPConfig(int port, bool dhcp)
{
    if (!validPort(port))
        return;
    if (dhcp) {
        disableNetwork(port);
        // eth1 starts its client whatever its enable setting says; only
        // eth0 looks at it.
        const QString key = QString::fromLatin1(EnableKey).arg(port);
        const bool disabled = m_settings && m_settings->contains(key) && !m_settings->value(key).toBool();
        if (port == eth1 || !disabled) {
            udhcpc(port);
            m_leaseTimers[port]->start(LeasePollMs);
        }
    } else {
        killudhcpc(port);
        enableNetwork(port);
        m_leaseTimers[port]->stop();
    }
    writeByteNotify(DhcpRegister[port], dhcp ? 1 : 0);
}

void NetworkSettings::onSetCombobox(int index)
{
    KeyClick::play(m_settings);
    const int port = portOfSender();
    if (port < 0)
        return;
    m_ports[port]->modeComboBox()->setCurrentIndex(index != 0 ? WiredPortPage::DynamicRow
                                                               : WiredPortPage::StaticRow);
    updateDHCPConfig(port, index != 0);
}

int NetworkSettings::portOfSender() const
{
    for (int port = 0; port < 2; ++port) {
        if (m_ports[port] && m_ports[port]->isAncestorOf(qobject_cast<QWidget *>(sender())))
            return port;
    }
    return -1;
}

void NetworkSettings::slotdhcp()
{
    leaseArrived(eth0);
}

void NetworkSettings::slotdhcp1()
{
    leaseArrived(eth1);
}

void NetworkSettings::leaseArrived(int port)
{
    const QStringList addresses = getipAddress(QStringLiteral("eth%1").arg(port));
    if (addresses.isEmpty())
        return;
    qCInfo(lcNetwork, "eth%d leased %s/%s", port, qPrintable(addresses.value(0)), qPrintable(addresses.value(1)));
    const NetworkAddress::Lease lease = NetworkAddress::leaseValues(addresses.value(0), addresses.value(1));
    setIPToEE(port, lease.address);
    updateIPData(port);
    setMaskToEE(port, lease.mask);
    updateMaskData(port);
    setGatewayToEE(port, lease.gateway);
    updateGatewayData(port);
    updateDNSData(port, firstDns);
    updateDNSData(port, backupDns);
    updateDefaultGatewayFromReg();
    m_leaseTimers[port]->stop();
}

int NetworkSettings::sharedRow() const
{
    return RouteRules::sharedRow(supportEth2());
}

bool NetworkSettings::sharedRowShown() const
{
    const bool wlanOn = supportWifi() && !registerBit(SysRegIdx::WlanDisabled);
    const bool mobileOn = support4G() && registerBit(SysRegIdx::Mobile4GSwitch);
    return wlanOn || mobileOn;
}

void NetworkSettings::fillSelectors()
{
    quint8 stored = 0;
    SysReg_Read(SysRegIdx::DefaultAdapter, &stored);
    for (WiredPortPage *page : wiredPages()) {
        QComboBox *selector = page->defaultNetworkComboBox();
        const QSignalBlocker blocker(selector);
        QStringList rows {QString()};
        for (int port = 0; port < wiredCount(); ++port)
            rows << tr("wired network") + QStringLiteral("%1").arg(port);
        rows << (supportWifi() ? tr("wireless network") : tr("4G network"));
        if (selector->count() != rows.size()) {
            selector->clear();
            selector->addItems(rows);
        }
        for (int row = 0; row < rows.size(); ++row)
            selector->setItemText(row, rows.at(row));
        selector->setCurrentIndex(stored < rows.size() ? stored : 0);
    }
    for (int port = 0; port < wiredCount(); ++port)
        setSelectorRowHidden(port + 1, registerBit(DisabledRegister[port]));
    setSelectorRowHidden(sharedRow(), !sharedRowShown());
}

void NetworkSettings::setSelectorRowHidden(int row, bool hidden)
{
    for (WiredPortPage *page : wiredPages()) {
        RowHidingComboBox *selector = page->defaultNetworkComboBox();
        selector->setRowHidden(row, hidden);
        // Leaving a hidden row goes through the selector's own handler,
        // which re-applies the routes.
        if (hidden && selector->currentIndex() == row)
            selector->setCurrentIndex(0);
    }
}

void NetworkSettings::setSelectors(int row)
{
    for (WiredPortPage *page : wiredPages())
        page->defaultNetworkComboBox()->setCurrentIndex(row);
}

void NetworkSettings::setGateway(int which)
{
    RouteSituation situation;
    situation.selection = which;
    situation.secondPort = supportEth2();
    situation.wlanPage = m_wifi != nullptr;
    situation.mobilePage = m_mobile != nullptr;
    if (which == -1) {
        quint32 stored = 0;
        SysReg_Read(SysRegIdx::DefaultAdapter, &stored);
        situation.storedSelection = int(stored & 0xffu);
    }
    if (which == sharedRow()) {
        situation.wlanAddress = getipAddress(QStringLiteral("wlan0")).value(0);
        situation.pppHasAddress = !getipAddress(QStringLiteral("ppp0")).isEmpty();
    }
    for (int port = 0; port < 2; ++port)
        situation.gateway[port] = NetworkAddress::dotted(m_ports[port]->octets(WiredPortPage::Gateway));
    for (const CommandText &command : RouteRules::commands(situation))
        runCommand(command);
}

void NetworkSettings::updateDefaultGatewayFromReg()
{
    setGateway(-1);
}

void NetworkSettings::onSetAdapterCombobox(int index)
{
    KeyClick::play(m_settings);
    setSelectors(index);
    setGateway(index);
    writeByteNotify(SysRegIdx::DefaultAdapter, quint8(index));
    emit updateDefaultNetwork(index);
}

void NetworkSettings::on_updateDefaultNetworkSlot(int index)
{
    setSelectors(index);
    setGateway(index);
    writeByteNotify(SysRegIdx::DefaultAdapter, quint8(index));
}

void NetworkSettings::onSetDefaultGateway()
{
    const int port = m_ports[0] && sender() == m_ports[0]->setDefaultGatewayButton() ? 0 : 1;
    m_defaultGateway = m_ports[port]->octets(WiredPortPage::Gateway);
    for (WiredPortPage *page : wiredPages())
        page->setNetworkLabel(tr("Network:"));
    updateDefaultGateway(networkIndexType(port));
    // The port number, not the selector row: the stored choice then reads
    // as "no network named" or "eth0", which is how the product behaves.
    const quint32 stored = quint32(port);
    SysReg_WriteNotify(SysRegIdx::DefaultAdapter, &stored, sizeof stored);
    setGateway(-1);
}

void NetworkSettings::updateDefaultGateway(networkIndexType port)
{
    if (validPort(port) && m_ports[port])
        m_ports[port]->setGatewayLabel(tr("Gateway:") + NetworkAddress::dotted(m_defaultGateway));
}

void NetworkSettings::updateDefaultNetwork(networkIndexType port)
{
    if (validPort(port) && m_ports[port])
        m_ports[port]->setNetworkLabel(tr("Network:"));
}

void NetworkSettings::on_wifiEanableSlot(int state)
{
    EEInfoDetail::Flash_ROnly fresh {};
    EEInfoHandle::instance()->read_flash_r_info(&fresh);
    setSelectorRowHidden(sharedRow(), state == 1);
}

bool NetworkSettings::isConflictIp(const QString &a1, const QString &a2, const QString &a3,
                                   const QString &a4, const QString &b1, const QString &b2,
                                   const QString &b3, const QString &b4)
{
    return NetworkAddress::isConflictIp(a1, a2, a3, a4, b1, b2, b3, b4);
}

int NetworkSettings::checkConflictIp(QLineEdit *field, int value)
{
    for (int port = 0; port < 2; ++port) {
        if (!isConfigIp(port, field))
            continue;
        QStringList mine = m_ports[port]->octets(WiredPortPage::Address);
        for (int octet = 0; octet < 4; ++octet) {
            if (m_ports[port]->field(WiredPortPage::Address, octet) == field)
                mine[octet] = QString::number(value);
        }
        const QStringList other = m_ports[1 - port]->octets(WiredPortPage::Address);
        if (!isConflictIp(mine.value(0), mine.value(1), mine.value(2), mine.value(3), other.value(0),
                          other.value(1), other.value(2), other.value(3)))
            return 1;
        QMessageBox::information(nullptr, tr("Tips"),
                                 port == 0 ? tr("IP is conflict with eth1!") : tr("IP is conflict with eth0!"),
                                 QMessageBox::Yes, QMessageBox::Yes);
        return 0;
    }
    return 1;
}

void NetworkSettings::onSetTest()
{
    KeyClick::play(m_settings);
    OuterNetworkTest::start();
    for (WiredPortPage *page : wiredPages()) {
        page->setLamp(WiredPortPage::LampRunning);
        page->setTestRunning(true);
    }
    m_pingTimer->start(OuterNetworkTest::ResultDelayMs);
}

void NetworkSettings::ping_test()
{
    const PingResult::State state = OuterNetworkTest::result();
    if (state == PingResult::Missing)
        return;
    const bool succeeded = state == PingResult::Succeeded;
    qCInfo(lcNetwork, "outer-network test %s", succeeded ? "succeeded" : "failed");
    for (WiredPortPage *page : wiredPages())
        page->setLamp(succeeded ? WiredPortPage::LampSucceeded : WiredPortPage::LampIdle);
    // The box runs its own event loop: a tick meanwhile reads the file again.
    OuterNetworkTest::showResult(succeeded, tr("test successful"), tr("test failed"), m_font);
    m_pingTimer->stop();
    if (m_wifi)
        m_wifi->setPintTestBtnStyle();
    if (m_mobile)
        m_mobile->setPintTestBtnStyle();
    for (WiredPortPage *page : wiredPages())
        page->setTestRunning(false);
}

int NetworkSettings::detect_process(const char *name)
{
    return ProcessLookup::detectProcess(name);
}
