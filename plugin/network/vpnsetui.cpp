#include "vpnsetui.h"
#include "ui_vpnsetui.h"

#include "addressregister.h"
#include "commandtext.h"
#include "languagemessage.h"
#include "panelfont.h"
#include "panelroot.h"
#include "panelscreen.h"
#include "processrunner.h"
#include "sysreg.h"
#include "vpnstatus.h"

#include <QDir>
#include <QLoggingCategory>
#include <QTimer>

Q_LOGGING_CATEGORY(lcVpn, "tavro.settings.vpn")

namespace {

constexpr int TickMs = 1000;
constexpr int PageFontWeight = 75;
constexpr int PageFontPointSize = 13;
const char MoonsFolder[] = "/var/lib/zerotier-one/moons.d/";
const char TitleStyle[] = "color:#008cba;";

// Row, switch and list sizes for the panel widths the product ships with.
struct Sizes
{
    int minWidth;
    int rowHeight;
    int switchWidth;
    int valueWidth;
    int spacing;
};
const Sizes SizeTable[] = {
    {800, 30, 58, 236, 10},
    {1024, 34, 70, 270, 14},
    {1280, 40, 70, 320, 18},
    {1920, 52, 90, 420, 28},
};



bool vpnOn()
{
    return SysReg_ReadValue(SysRegIdx::VpnSwitch) & 1u;
}

void writeNotify(unsigned index, quint32 value, unsigned length)
{
    SysReg_WriteNotify(index, &value, length);
}

} // namespace

VpnSetUI::VpnSetUI(int fontId, QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::VpnSetUI)
    , m_timer(new QTimer(this))
{
    // The font before the children: a combo box told of a new font later
    // builds its popup at once (see RowHidingComboBox).
    const QFont font = PanelFont::font(fontId, PageFontWeight, PageFontPointSize);
    setFont(font);
    ui->setupUi(this);
    // A style sheet above the page keeps the page's font from its children.
    for (QWidget *child : findChildren<QWidget *>())
        child->setFont(font);
    ui->label_title->setFont(font);
    ui->label_title->setStyleSheet(QLatin1String(TitleStyle));
    adjustWgtSize();
    connect(ui->switch_vpn, SIGNAL(statusChanged(bool)), this, SLOT(slot_switchBox_vpn_toggled(bool)));
    connect(m_timer, SIGNAL(timeout()), this, SLOT(Kvpn_Timer()));
    m_timer->start(TickMs);
    ui->switch_vpn->setChecked(vpnOn());
    m_initialising = true;
    ui->comboBox_server->addItems(VpnStatus::serverNames(true));
    ui->comboBox_server->setCurrentIndex(VpnStatus::regionIndex(SysReg_ReadValue(SysRegIdx::VpnRegion)));
    m_initialising = false;
}

VpnSetUI::~VpnSetUI()
{
    delete ui;
}

void VpnSetUI::adjustWgtSize()
{
    // The screen, not the record: reading the record runs the image tool,
    // and the window already pays for that a few times while it opens.
    const Sizes &sizes = PanelScreen::rowFor(SizeTable, PanelScreen::size().width());
    ui->pageLayout->setVerticalSpacing(sizes.spacing);
    ui->pageLayout->setHorizontalSpacing(sizes.spacing + 10);
    ui->switch_vpn->setFixedSize(sizes.switchWidth, sizes.switchWidth * 3 / 7);
    ui->comboBox_server->setFixedSize(sizes.valueWidth, sizes.rowHeight);
    ui->label_connectStatue->setMinimumWidth(sizes.valueWidth);
    ui->label_connectStatue->setFixedHeight(sizes.rowHeight);
    ui->label_title->setFixedHeight(sizes.rowHeight + sizes.spacing);
}

void VpnSetUI::refresh()
{
    qCInfo(lcVpn, "VpnSetUI::refresh() ");
    ui->retranslateUi(this);
}

void VpnSetUI::slot_switchBox_vpn_toggled(bool on)
{
    qCInfo(lcVpn, "slot_switchBox_vpn_toggled: %s", on ? "true" : "false");
    writeNotify(SysRegIdx::VpnSwitch, on ? 1u : 0u, 1);
}

void VpnSetUI::Kvpn_Timer()
{
    const bool on = vpnOn();
    const bool chinese = VpnStatus::chineseLanguage(SysReg_ReadValue(SysRegIdx::Language));
    if (!on) {
        // The next start then begins from "Prepare to connect", not from
        // whatever the host left behind.
        AddressRegister::clear(SysRegIdx::VpnAddress);
        writeNotify(SysRegIdx::VpnState, VpnStatus::Preparing, 4);
        ui->label_connectStatue->setText(VpnStatus::statusText(VpnStatus::Preparing, chinese));
    } else {
        AddressRegister::read(SysRegIdx::VpnAddress);
        const QString text = VpnStatus::statusText(SysReg_ReadValue(SysRegIdx::VpnState), chinese);
        if (!text.isEmpty())
            ui->label_connectStatue->setText(text);
    }
    const QStringList names = VpnStatus::serverNames(chinese);
    for (int row = 0; row < names.size() && row < ui->comboBox_server->count(); ++row)
        ui->comboBox_server->setItemText(row, names.at(row));
}

void VpnSetUI::on_comboBox_server_currentIndexChanged(int index)
{
    if (m_initialising || m_reverting || index < 0)
        return;
    if (vpnOn()) {
        // The service is joined to the current region's networks: moving
        // it while it runs would leave it half in both.
        m_reverting = true;
        ui->comboBox_server->setCurrentIndex(VpnStatus::regionIndex(SysReg_ReadValue(SysRegIdx::VpnRegion)));
        LanguageMessage::warn(this, QStringLiteral("Please turn off VPN first!"), QStringLiteral("请先关闭VPN!"));
        m_reverting = false;
        return;
    }
    writeNotify(SysRegIdx::VpnRegion, quint32(index), 4);
    forgetNetworks();
}

void VpnSetUI::forgetNetworks()
{
    // The service keeps what it learnt of the old region's planet, its
    // networks and peers here; without them it joins the new region afresh.
    if (!QDir(PanelRoot::path(QString::fromLatin1(MoonsFolder))).exists())
        return;
    runCommand(CommandText("rm -R /var/lib/zerotier-one/moons.d"));
    runCommand(CommandText("rm -R /var/lib/zerotier-one/networks.d"));
    runCommand(CommandText("rm -R /var/lib/zerotier-one/peers.d"));
}
