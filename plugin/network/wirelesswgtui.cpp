#include "wirelesswgtui.h"
#include "ui_wirelesswgtui.h"

#include "adapterlist.h"
#include "eeinfohandle.h"
#include "encryptionlist.h"
#include "keyclick.h"
#include "languagemessage.h"
#include "networksettings.h"
#include "panelroot.h"
#include "resolverfile.h"
#include "savedpasswords.h"
#include "scanlist.h"
#include "sysreg.h"
#include "testbuttonstyle.h"
#include "wirelesspagelook.h"
#include "wirelesspswdialog.h"
#include "wlanadapterbox.h"
#include "wlanaddressing.h"
#include "wlanfields.h"
#include "wlanconnectrequest.h"
#include "wlanregisters.h"
#include "wlanstatus.h"

#include <QFile>
#include <QListWidgetItem>
#include <QLoggingCategory>
#include <QEvent>
#include <QScrollBar>
#include <QSettings>
#include <QSignalBlocker>
#include <QTextCodec>
#include <QThread>
#include <QTimer>

Q_LOGGING_CATEGORY(lcWireless, "tavro.settings.wireless")

namespace {

const char ScanListPath[] = "/tmp/scan_parse";
const char EncryptionListPath[] = "/tmp/wifiEnc";
const char SavedPasswordPath[] = "/hmi_data/WiFipassword";
const char SettingsPath[] = "/hmi/Config/system_settings.ini";
const char StaticKey[] = "WirelessNetwork/static";

constexpr int ScanPeriodMs = 1000;
constexpr int ScanButtonRestoreMs = 100;
// The DHCP lease usually arrives within this; the page then shows it.
constexpr unsigned long LeaseWaitSeconds = 1;
constexpr int ItemHeight = 50;
constexpr int ListIconSize = 30;
// Items keep the path of their signal picture, for whoever inspects the list.
constexpr int IconPathRole = Qt::UserRole;

QSettings *openSettings(QObject *parent)
{
    return new QSettings(PanelRoot::path(QString::fromLatin1(SettingsPath)), QSettings::IniFormat, parent);
}

} // namespace

bool WirelessWgtUI::m_isStaticIP = false;

WirelessWgtUI::WirelessWgtUI(QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::WirelessWgtUI)
    , m_lookup(NetworkSettings::liveAddresses)
{
    ui->setupUi(this);
    // The form builds its scroll areas' contents without a parent and moves
    // them in afterwards; under a style sheet Qt hands no font down to
    // widgets that are already there. So each takes the network page's.
    const QFont pageFont = parent ? parent->font() : font();
    setFont(pageFont);
    for (QWidget *widget : findChildren<QWidget *>())
        widget->setFont(pageFont);
    EEInfoHandle::instance()->read_flash_r_info(&m_readOnly);
    initUI();
    connect(ui->switchbox_disableNet, SIGNAL(statusChanged(bool)), this, SLOT(slot_switchBox_disableNet_toggled(bool)));
    connect(ui->switchbox_staticIP, SIGNAL(statusChanged(bool)), this, SLOT(slot_switchBox_staticIP_toggled(bool)));
    connect(ui->ipLineEdit_dns1, SIGNAL(valueChanged()), this, SLOT(recvDns1ChangeSlot()));
    connect(ui->ipLineEdit_dns2, SIGNAL(valueChanged()), this, SLOT(recvDns2ChangeSlot()));
    connect(ui->ipLineEdit_ip, SIGNAL(valueChanged()), this, SLOT(recvIpChangeSlot()));
    connect(ui->ipLineEdit_mask, SIGNAL(valueChanged()), this, SLOT(recvsubMaskChangeSlot()));
    connect(ui->ipLineEdit_gateway, SIGNAL(valueChanged()), this, SLOT(recvgateWayChangeSlot()));
    m_scanTimer = new QTimer(this);
    connect(m_scanTimer, SIGNAL(timeout()), this, SLOT(KscanWifiList_Timer()));
    m_scanTimer->start(ScanPeriodMs);
    m_wifiState = WlanRegisters::byte(SysRegIdx::WlanState);
    m_wifiDisabled = 0;
    m_pswDialog = nullptr;
}

WirelessWgtUI::~WirelessWgtUI()
{
    delete ui;
}

void WirelessWgtUI::initUI()
{
    addUIStyles();
    adjustWgtSize();
    ui->stackedWidget->setCurrentIndex(0);
    ui->groupBox_skip->installEventFilter(this);
    initIpData();
    const bool disabled = WlanRegisters::byte(SysRegIdx::WlanDisabled) & 1;
    setWifiWgtEnable(disabled);
    ui->switchbox_disableNet->setChecked(disabled);
    m_initializing = true;
    WlanAdapterBox::fill(ui->comboBox_network, secondPort(), !disabled, WlanRegisters::byte(SysRegIdx::DefaultAdapter));
    m_initializing = false;
}

void WirelessWgtUI::addUIStyles()
{
    WirelessPageLook::applyStyles(ui, this);
    ui->pushButton_test->setStyleSheet(TestButtonStyle::idle(QStringLiteral("pushButton_test")));
    ui->pushButton_refreshWlan->setSvgFilepath(QStringLiteral(":/Resources/refresh.svg"));
}

void WirelessWgtUI::adjustWgtSize()
{
    WirelessPageLook::applySizes(ui, m_readOnly.screenWidth());
}

void WirelessWgtUI::initIpData()
{
    QScopedPointer<QSettings> settings(openSettings(nullptr));
    m_isStaticIP = settings->value(QLatin1String(StaticKey)).toString() == QLatin1String("true");
    ui->switchbox_staticIP->setChecked(m_isStaticIP);
    WlanFields::setAddressBlockEnabled(ui, m_isStaticIP);
    // Under DHCP the record's addresses are not shown: no need to read it.
    EEInfoDetail::Flash_WR_1 record {};
    if (m_isStaticIP)
        EEInfoHandle::instance()->read_flash_wr1_info(&record);
    if (m_isStaticIP && EEInfoHandle::instance()->lastReadComplete())
        WlanFields::showRecord(ui, record);
    else
        WlanFields::clear(ui);
    ui->ipLineEdit_dns1->setIPVal(ResolverFile::systemServer(ResolverFile::wlanTag(), ResolverFile::First));
    ui->ipLineEdit_dns2->setIPVal(ResolverFile::systemServer(ResolverFile::wlanTag(), ResolverFile::Backup));
    ui->lineEdit_macAddr->setText(WlanStatus::macText(QByteArray(), QString()));
}

void WirelessWgtUI::getEEDate(EEInfoDetail::Flash_WR_1 &record, EEInfoDetail::Flash_ROnly &readOnly)
{
    m_record = record;
    m_readOnly = readOnly;
    if (m_isStaticIP)
        WlanFields::showRecord(ui, m_record);
}

void WirelessWgtUI::refresh()
{
    ui->retranslateUi(this);
    // A change of language must not choose another adapter.
    const QSignalBlocker blocker(ui->comboBox_network);
    WlanAdapterBox::retranslate(ui->comboBox_network, !(WlanRegisters::byte(SysRegIdx::WlanDisabled) & 1));
    ui->label_wifiStatus->setText(m_wifiState == WlanStatus::Connected && !m_wifiDisabled ? tr("Online")
                                                                                           : tr("Disabled"));
}

void WirelessWgtUI::setPintTestBtnStyle()
{
    ui->pushButton_test->setStyleSheet(TestButtonStyle::idle(QStringLiteral("pushButton_test")));
}

void WirelessWgtUI::on_pushButton_test_clicked()
{
    playKeyClick();
    emit pingTestSignal();
    ui->pushButton_test->setStyleSheet(TestButtonStyle::running(QStringLiteral("pushButton_test")));
}

void WirelessWgtUI::on_updateDefaultNetwork(int index)
{
    if (index < 0 || index >= ui->comboBox_network->count())
        return;
    // Mirrors the choice made elsewhere; it must not be announced again.
    const QSignalBlocker blocker(ui->comboBox_network);
    ui->comboBox_network->setCurrentIndex(index);
}

void WirelessWgtUI::on_comboBox_network_currentIndexChanged(const QString &text)
{
    if (m_initializing)
        return;
    const AdapterList::Choice choice = AdapterList::choice(text, AdapterList::Wlan, secondPort());
    if (choice.index < 0)
        return;
    emit updateDefaultNetworkSignal(choice.index);
    if (!choice.interfaceName.isEmpty())
        changeResolvDnsFile(choice.interfaceName);
}

void WirelessWgtUI::changeResolvDnsFile(QString interfaceName)
{
    ResolverFile::putFirst(interfaceName);
}

QStringList WirelessWgtUI::getipAddress(const QString &name) const
{
    return m_lookup ? m_lookup(name) : QStringList();
}

void WirelessWgtUI::setInterfaceLookup(const InterfaceLookup &lookup)
{
    m_lookup = lookup ? lookup : InterfaceLookup(NetworkSettings::liveAddresses);
}

void WirelessWgtUI::playKeyClick()
{
    QScopedPointer<QSettings> settings(openSettings(nullptr));
    KeyClick::play(settings.data());
}

void WirelessWgtUI::on_pushButton_refreshWlan_clicked()
{
    playKeyClick();
    ui->pushButton_refreshWlan->setSvgFilepath(QStringLiteral(":/Resources/refresh-green.svg"));
    ui->pushButton_refreshWlan->setEnabled(false);
    qCDebug(lcWireless) << "on_pushButton_refreshWlan_clicked...";
    WlanRegisters::writeByte(SysRegIdx::WlanScanRequest, 1);
    QTimer::singleShot(ScanButtonRestoreMs, this, [this]() {
        ui->pushButton_refreshWlan->setSvgFilepath(QStringLiteral(":/Resources/refresh.svg"));
        ui->pushButton_refreshWlan->setEnabled(true);
    });
}

void WirelessWgtUI::updateWlanList()
{
    const int count = WlanRegisters::byte(SysRegIdx::WlanScanCount);
    if (count != 0) {
        ui->listWidget_wifi->clear();
        QByteArray bytes;
        QString error;
        if (!ScanList::readFile(QString::fromLatin1(ScanListPath), &bytes, &error))
            qCDebug(lcWireless).noquote() << error;
        // Kept process-wide on purpose: later local 8-bit conversions of
        // SSIDs (the connection registers) use the scan list's encoding.
        if (QTextCodec *codec = QTextCodec::codecForName("GB2312"))
            QTextCodec::setCodecForLocale(codec);
        const bool connected = WlanRegisters::byte(SysRegIdx::WlanState) == WlanStatus::Connected;
        const QString connectedSsid = ScanList::decode(WlanRegisters::text(SysRegIdx::WlanSsid));
        for (const ScanList::Entry &entry : ScanList::parse(ScanList::decode(bytes))) {
            const QString icon = ScanList::iconFor(entry.quality);
            if (connected && entry.ssid == connectedSsid) {
                ui->label_connectedWifiLogo->setPixmap(WirelessPageLook::picture(icon, WirelessPageLook::StateIconSize));
                continue;
            }
            auto *item = new QListWidgetItem(entry.ssid, ui->listWidget_wifi);
            item->setData(IconPathRole, icon);
            item->setIcon(WirelessPageLook::listIcon(icon, ListIconSize));
        }
    }
    ui->listWidget_wifi->setFixedHeight(ItemHeight * count);
    ui->label_loading->hide();
}

void WirelessWgtUI::KscanWifiList_Timer()
{
    updateWlanList();
    const int state = WlanRegisters::byte(SysRegIdx::WlanState);
    const bool promptAllowed = !m_pswDialog && m_pswErrorSsid != m_clickedSsid;
    const WlanStatus::Tick tick = WlanStatus::decide(state, m_wifiDisabled, m_wifiState, promptAllowed);
    // The edge memory goes first: the message box below runs a nested event
    // loop in which further ticks must see the error as already handled.
    m_wifiState = tick.lastState;
    switch (tick.action) {
    case WlanStatus::ShowOnline:
        showOnline();
        break;
    case WlanStatus::PromptPassword:
        promptPasswordError();
        break;
    case WlanStatus::PromptSuppressed:
        qCDebug(lcWireless) << "psdDialog not null........";
        break;
    case WlanStatus::ShowOffline:
        showOffline();
        break;
    }
    if (tick.scrollToTop)
        ui->scrollArea_wifiSearchPage->verticalScrollBar()->setValue(0);
}

void WirelessWgtUI::showOnline()
{
    ui->label_wifiStatus->setText(tr(WlanStatus::statusSource(WlanStatus::ShowOnline)));
    m_pswErrorSsid.clear();
    const QString ssid = ScanList::decode(WlanRegisters::text(SysRegIdx::WlanSsid)).simplified();
    ui->label_connectedWlanNm->setText(ssid);
    ui->label_connectedWifiName->setText(ssid);
    WlanFields::showRegisters(ui);
    const QByteArray mac = WlanRegisters::text(SysRegIdx::WlanMac);
    const QString shown = WlanStatus::macText(mac, m_macAddress);
    if (!mac.isEmpty())
        m_macAddress = shown;
    ui->lineEdit_macAddr->clear();
    ui->lineEdit_macAddr->setText(shown);
    ui->label_connectedWifiState->setPixmap(
        WirelessPageLook::picture(QStringLiteral(":/Resources/connected.svg"), WirelessPageLook::StateIconSize));
    WlanFields::showDns(ui);
}

void WirelessWgtUI::showOffline()
{
    ui->label_wifiStatus->setText(tr(WlanStatus::statusSource(WlanStatus::ShowOffline)));
    ui->label_connectedWlanNm->clear();
    ui->label_connectedWifiName->clear();
    ui->label_connectedWifiState->setPixmap(
        WirelessPageLook::picture(QStringLiteral(":/Resources/unconnnected.svg"), WirelessPageLook::StateIconSize));
    ui->label_connectedWifiLogo->setPixmap(
        WirelessPageLook::picture(QStringLiteral(":/Resources/wifi0.svg"), WirelessPageLook::StateIconSize));
}

void WirelessWgtUI::promptPasswordError()
{
    LanguageMessage::warn(this, QStringLiteral("Password error, please re-enter"),
                          QStringLiteral("密码错误，请重新输入"));
    openPasswordDialog(m_clickedSsid);
}

void WirelessWgtUI::openPasswordDialog(const QString &ssid)
{
    m_pswDialog = new WirelessPswDialog(ssid, this);
    connect(m_pswDialog, SIGNAL(frame_close(int)), this, SLOT(recv_psw_slot(int)));
    m_pswDialog->show();
}

void WirelessWgtUI::recv_psw_slot(int result)
{
    // The dialog is done with once it reported; it must not pile up under
    // the page, one per prompt, for as long as the window lives.
    if (m_pswDialog)
        m_pswDialog->deleteLater();
    m_pswDialog = nullptr;
    if (result != 0)
        m_pswErrorSsid.clear();
    else
        m_pswErrorSsid = m_clickedSsid;
}

void WirelessWgtUI::on_listWidget_wifi_itemClicked(QListWidgetItem *item)
{
    if (!item)
        return;
    m_clickedSsid = item->text();
    m_pswErrorSsid.clear();
    QByteArray bytes;
    if (!ScanList::readFile(QString::fromLatin1(EncryptionListPath), &bytes)) {
        qCDebug(lcWireless) << "open /tmp/scan_result error";
        return;
    }
    const EncryptionList::Kind kind = EncryptionList::lookup(ScanList::decode(bytes), m_clickedSsid);
    if (kind == EncryptionList::NotListed)
        return;
    if (kind == EncryptionList::Open) {
        WlanConnectRequest::send(m_clickedSsid, QString());
        return;
    }
    QByteArray table;
    if (!SavedPasswords::readFile(QString::fromLatin1(SavedPasswordPath), &table))
        return;
    const SavedPasswords::Result saved = SavedPasswords::lookup(table, m_clickedSsid);
    if (saved.found)
        WlanConnectRequest::send(m_clickedSsid, QString::fromLocal8Bit(saved.password));
    else
        openPasswordDialog(m_clickedSsid);
}

bool WirelessWgtUI::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != ui->groupBox_skip)
        return QWidget::eventFilter(watched, event);
    if (!ui->groupBox_skip->isEnabled())
        return false;
    if (event->type() == QEvent::MouseButtonPress) {
        ui->groupBox_skip->setStyleSheet(QStringLiteral("QGroupBox{background: #e6e7e9;}"));
        return true;
    }
    if (event->type() == QEvent::MouseButtonRelease) {
        ui->stackedWidget->setCurrentIndex(1);
        ui->label_loading->setPixmap(
            WirelessPageLook::picture(QStringLiteral(":/Resources/loading.svg"), WirelessPageLook::StateIconSize));
        ui->label_loading->show();
        ui->groupBox_skip->setStyleSheet(QStringLiteral("QGroupBox{background: transparent;}"));
        return true;
    }
    return false;
}

void WirelessWgtUI::on_stackedWidget_currentChanged(int index)
{
    if (index == 1)
        updateWlanList();
}

void WirelessWgtUI::on_pushButton_backToPage_clicked()
{
    playKeyClick();
    ui->stackedWidget->setCurrentIndex(0);
}

void WirelessWgtUI::slot_switchBox_disableNet_toggled(bool checked)
{
    qCDebug(lcWireless).nospace() << "wifi enable: " << (checked ? "true" : "false");
    WlanRegisters::writeByte(SysRegIdx::WlanDisabled, checked ? 1 : 0);
    setWifiWgtEnable(checked);
    EEInfoHandle::instance()->read_flash_r_info(&m_readOnly);
    emit wifiEanbleSignal(checked ? 1 : 0);
    WlanAdapterBox::setWlanShown(ui->comboBox_network, !checked, secondPort());
}

void WirelessWgtUI::setWifiWgtEnable(bool disabled)
{
    ui->groupBox_skip->setEnabled(!disabled);
    if (!disabled) {
        m_wifiDisabled = 0;
        ui->switchbox_staticIP->setEnabled(true);
        return;
    }
    m_wifiDisabled = 1;
    WlanFields::clear(ui);
    ui->label_connectedWlanNm->clear();
    ui->label_connectedWifiName->clear();
    ui->label_wifiStatus->setText(tr(WlanStatus::statusSource(WlanStatus::ShowOffline)));
    ui->switchbox_staticIP->setEnabled(false);
    ui->listWidget_wifi->clear();
    slot_switchBox_staticIP_toggled(false);
}

void WirelessWgtUI::slot_switchBox_staticIP_toggled(bool on)
{
    EEInfoHandle::instance()->read_flash_r_info(&m_readOnly);
    const int defaultAdapter = WlanRegisters::byte(SysRegIdx::DefaultAdapter);
    ui->switchbox_staticIP->setChecked(on);
    m_isStaticIP = on;
    QScopedPointer<QSettings> settings(openSettings(nullptr));
    settings->setValue(QLatin1String(StaticKey), on ? QStringLiteral("true") : QStringLiteral("false"));
    settings->sync();
    WlanFields::setAddressBlockEnabled(ui, on);
    if (on) {
        EEInfoDetail::Flash_WR_1 record {};
        EEInfoHandle::instance()->read_flash_wr1_info(&record);
        WlanFields::showRecord(ui, record);
        WlanAddressing::storeRegisters(ui->ipLineEdit_ip->getIPVal(), ui->ipLineEdit_mask->getIPVal(),
                                       ui->ipLineEdit_gateway->getIPVal());
        WlanAddressing::stopDhcpClient();
        return;
    }
    WlanFields::clear(ui);
    const bool connected = WlanRegisters::byte(SysRegIdx::WlanState) == WlanStatus::Connected;
    if (connected)
        WlanAddressing::startDhcpClient();
    // Blocks the screen on purpose: the lease should be there when the
    // interface is read below.
    QThread::sleep(LeaseWaitSeconds);
    const QStringList lease = getipAddress(QStringLiteral("wlan0"));
    if (lease.isEmpty() || !connected || !WlanAddressing::applyLease(lease, defaultAdapter, secondPort()))
        WlanAddressing::clearRegisters();
}

void WirelessWgtUI::recvIpChangeSlot()
{
    updateSystemAndSaveToEE(WlanAddressing::Address, ui->ipLineEdit_ip->getIPVal());
}

void WirelessWgtUI::recvsubMaskChangeSlot()
{
    updateSystemAndSaveToEE(WlanAddressing::Mask, ui->ipLineEdit_mask->getIPVal());
}

void WirelessWgtUI::recvgateWayChangeSlot()
{
    updateSystemAndSaveToEE(WlanAddressing::Gateway, ui->ipLineEdit_gateway->getIPVal());
}

void WirelessWgtUI::recvDns1ChangeSlot()
{
    qCDebug(lcWireless).nospace().noquote() << "Dns1: " << ui->ipLineEdit_dns1->getIPVal();
    updateSystemAndSaveToEE(WlanAddressing::FirstDns, ui->ipLineEdit_dns1->getIPVal());
}

void WirelessWgtUI::recvDns2ChangeSlot()
{
    qCDebug(lcWireless).nospace().noquote() << "Dns2: " << ui->ipLineEdit_dns2->getIPVal();
    updateSystemAndSaveToEE(WlanAddressing::BackupDns, ui->ipLineEdit_dns2->getIPVal());
}

void WirelessWgtUI::updateSystemAndSaveToEE(int type, QString value)
{
    if (type == WlanAddressing::FirstDns || type == WlanAddressing::BackupDns)
        setDNSToSys(type, value);
    else
        WlanAddressing::apply(WlanAddressing::ValueType(type), value);
}

void WirelessWgtUI::setDNSToSys(int type, QString address)
{
    QFile file(PanelRoot::path(QString::fromLatin1(ResolverFile::Path)));
    ResolverFile::rewrite(file, ResolverFile::wlanTag(), type - WlanAddressing::FirstDns, address);
}

void WirelessWgtUI::on_pushButton_resetWifi_clicked()
{
    playKeyClick();
    qCDebug(lcWireless) << "Reset Wifi Ope...";
    if (!WlanAddressing::requestReset()) {
        qCDebug(lcWireless) << "Cant not creat file ResetWifiFlag";
        return;
    }
    WlanFields::clear(ui, true);
    // After the fields: the host's new scan follows the cleared state.
    WlanRegisters::writeByte(SysRegIdx::WlanScanRequest, 1);
}
