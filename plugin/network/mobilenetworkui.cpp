#include "mobilenetworkui.h"
#include "ui_mobilenetworkui.h"

#include "adapterlist.h"
#include "eeinfohandle.h"
#include "keyclick.h"
#include "mobilestatus.h"
#include "panelfont.h"
#include "panelroot.h"
#include "panelscreen.h"
#include "resolverfile.h"
#include "sysreg.h"
#include "testbuttonstyle.h"

#include <QFile>
#include <QFileInfo>
#include <QLayout>
#include <QLineEdit>
#include <QLoggingCategory>
#include <QPainter>
#include <QPixmap>
#include <QSettings>
#include <QSignalBlocker>
#include <QSvgRenderer>
#include <QTimer>

Q_LOGGING_CATEGORY(lcMobile, "tavro.settings.mobile")

namespace {

constexpr int TickMs = 1000;
constexpr int PageFontWeight = 75;
constexpr int PageFontPointSize = 13;
const char NoAddress[] = "0.0.0.0";
const char LinkInterface[] = "ppp0";
const char ConfigFile[] = "/hmi/Config/system_settings.ini";

const char HeadingStyle[] = "color:#008cba;";
const char FieldStyle[] = "QLineEdit{border-radius:6px;border:2px solid #008cba;padding:0px;"
                          "background-color:rgba(163, 198, 218, 100);}";

// Row, switch, list and picture sizes for the panel widths the product
// ships with; the panel height goes with the width.
struct Sizes
{
    int minWidth;
    int panelHeight;
    int rowHeight;
    int switchWidth;
    int valueWidth;
    int testWidth;
    int spacing;
};
const Sizes SizeTable[] = {
    {800, 480, 30, 58, 236, 80, 4},
    {1024, 600, 34, 70, 270, 90, 8},
    {1280, 800, 40, 70, 320, 100, 12},
    {1920, 1080, 52, 90, 420, 140, 20},
};



bool bitSet(unsigned index)
{
    return SysReg_ReadValue(index) & 1u;
}

void writeNotify(unsigned index, quint32 value, unsigned length)
{
    SysReg_WriteNotify(index, &value, length);
}

} // namespace

MobileNetworkUI::MobileNetworkUI(int fontId, QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::MobileNetworkUI)
    , m_timer(new QTimer(this))
    , m_picture(QLatin1String(MobileStatus::NoSignalPicture))
{
    // The font before the children: a combo box told of a new font later
    // builds its popup at once (see RowHidingComboBox).
    setFont(PanelFont::font(fontId, PageFontWeight, PageFontPointSize));
    ui->setupUi(this);
    // A style sheet above the page keeps the page's font from its children.
    for (QWidget *child : findChildren<QWidget *>())
        child->setFont(font());
    addUIStyles();
    adjustWgtSize();
    drawPicture();
    showDns(QLatin1String(NoAddress));
    connect(ui->switch_4g, SIGNAL(statusChanged(bool)), this, SLOT(slot_switchBox_4g_toggled(bool)));
    connect(ui->ipLineEdit_dns1, SIGNAL(valueChanged()), this, SLOT(recvDns1ChangeSlot()));
    connect(ui->ipLineEdit_dns2, SIGNAL(valueChanged()), this, SLOT(recvDns2ChangeSlot()));
    connect(m_timer, SIGNAL(timeout()), this, SLOT(K4G_Timer()));
    m_timer->start(TickMs);
}

MobileNetworkUI::~MobileNetworkUI()
{
    delete ui;
}

void MobileNetworkUI::addUIStyles()
{
    ui->label_dnsInfo->setStyleSheet(QLatin1String(HeadingStyle));
    ui->label_gatewayInfo->setStyleSheet(QLatin1String(HeadingStyle));
    for (IPLineEdit *edit : {ui->ipLineEdit_dns1, ui->ipLineEdit_dns2}) {
        edit->setStyleSheet(QLatin1String(FieldStyle));
        // The link's servers are the host's to set: the fields only show them.
        edit->setAttribute(Qt::WA_TransparentForMouseEvents);
        for (QLineEdit *field : edit->findChildren<QLineEdit *>()) {
            field->setAlignment(Qt::AlignCenter);
            field->setReadOnly(true);
            field->setFocusPolicy(Qt::NoFocus);
        }
    }
    ui->pushButton_test->setStyleSheet(TestButtonStyle::idle(QStringLiteral("pushButton_test")));
}

void MobileNetworkUI::adjustWgtSize()
{
    // The screen, not the record: reading the record runs the image tool,
    // and the window already pays for that a few times while it opens.
    const Sizes &sizes = PanelScreen::rowFor(SizeTable, PanelScreen::size().width());
    ui->pageLayout->setVerticalSpacing(sizes.spacing);
    ui->pageLayout->setHorizontalSpacing(sizes.spacing * 2 + 8);
    ui->switch_4g->setFixedSize(sizes.switchWidth, sizes.switchWidth * 3 / 7);
    ui->label_networkStatus->setMinimumWidth(sizes.valueWidth);
    ui->label_networkStatus->setFixedHeight(sizes.rowHeight);
    m_pictureSize = QSize(sizes.rowHeight, sizes.rowHeight);
    ui->label_signal->setFixedSize(m_pictureSize);
    ui->comboBox_network->setFixedSize(sizes.valueWidth, sizes.rowHeight);
    ui->pushButton_test->setFixedSize(sizes.testWidth, sizes.rowHeight + 4);
    const QSize field = IPLineEdit::fieldSize(QSize(sizes.minWidth, sizes.panelHeight));
    for (IPLineEdit *edit : {ui->ipLineEdit_dns1, ui->ipLineEdit_dns2}) {
        if (edit->layout())
            edit->layout()->setContentsMargins(0, 0, 0, 0);
        for (QLineEdit *octet : edit->findChildren<QLineEdit *>())
            octet->setFixedSize(field);
    }
    // A little air above each section heading.
    for (QLabel *heading : {ui->label_dnsInfo, ui->label_gatewayInfo})
        heading->setContentsMargins(0, sizes.spacing * 2, 0, 0);
}

void MobileNetworkUI::refresh()
{
    ui->retranslateUi(this);
    {
        const QSignalBlocker blocker(ui->comboBox_network);
        m_initialising = true;
        fillAdapterList();
        m_initialising = false;
        selectDefaultAdapter();
    }
    showLinkState(SysReg_ReadValue(SysRegIdx::Mobile4GState));
}

void MobileNetworkUI::fillAdapterList()
{
    RowHidingComboBox *list = ui->comboBox_network;
    list->clear();
    // Row 0 is the automatic choice; it shows no text.
    list->addItem(QString());
    list->addItem(tr("wired network0"));
    list->setRowHidden(AdapterList::Wired0Row, bitSet(SysRegIdx::Eth0Disabled));
    list->setRowHidden(AdapterList::Wired1Row, false);
    EEInfoHandle::instance()->read_flash_r_info(&m_readOnly);
    if (secondPort()) {
        list->addItem(tr("wired network1"));
        list->setRowHidden(AdapterList::Wired1Row, bitSet(SysRegIdx::Eth1Disabled));
    }
    const bool on = bitSet(SysRegIdx::Mobile4GSwitch);
    ui->switch_4g->setChecked(on);
    if (on)
        list->addItem(tr("4G network"));
}

void MobileNetworkUI::selectDefaultAdapter()
{
    RowHidingComboBox *list = ui->comboBox_network;
    const quint32 stored = SysReg_ReadValue(SysRegIdx::DefaultAdapter);
    // A hidden row names a port that is switched off: it cannot carry the route.
    const bool usable = stored < quint32(list->count()) && !list->isRowHidden(int(stored));
    list->setCurrentIndex(usable ? int(stored) : int(AdapterList::AutoRow));
}

void MobileNetworkUI::K4G_Timer()
{
    showLinkState(SysReg_ReadValue(SysRegIdx::Mobile4GState));
}

void MobileNetworkUI::showLinkState(unsigned state)
{
    switch (state) {
    case MobileStatus::Connected:
        showStatus(state);
        showPicture(MobileStatus::signalPicture(SysReg_ReadValue(SysRegIdx::Mobile4GSignal), m_picture));
        // The host writes the link's servers once it is up; after that the
        // file is left alone until the link drops.
        if (ui->ipLineEdit_dns1->getIPVal() == QLatin1String(NoAddress))
            readLinkServer();
        break;
    case MobileStatus::Connecting:
    case MobileStatus::NotConnected:
        showStatus(state);
        showPicture(QLatin1String(MobileStatus::NoSignalPicture));
        showDns(QLatin1String(NoAddress));
        break;
    default:
        break;
    }
}

void MobileNetworkUI::showStatus(unsigned state)
{
    if (const char *text = MobileStatus::statusText(state))
        ui->label_networkStatus->setText(tr(text));
}

void MobileNetworkUI::showPicture(const QString &picture)
{
    if (picture == m_picture)
        return;
    m_picture = picture;
    drawPicture();
}

void MobileNetworkUI::drawPicture()
{
    QPixmap pixmap(m_pictureSize * devicePixelRatioF());
    pixmap.fill(Qt::transparent);
    QSvgRenderer renderer(m_picture);
    QPainter painter(&pixmap);
    renderer.render(&painter);
    painter.end();
    pixmap.setDevicePixelRatio(devicePixelRatioF());
    ui->label_signal->setPixmap(pixmap);
}

void MobileNetworkUI::showDns(const QString &server)
{
    ui->ipLineEdit_dns1->setIPVal(server);
    ui->ipLineEdit_dns2->setIPVal(server);
}

void MobileNetworkUI::readLinkServer()
{
    QFile file(PanelRoot::path(QString::fromLatin1(ResolverFile::Path)));
    // Only a plain file: a folder cannot be read, a FIFO would block the tick.
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Text))
        return;
    showDns(QLatin1String(NoAddress));
    // The modem keeps one server; the last line of the link names it.
    showDns(ResolverFile::lastServer(ResolverFile::readText(file), QLatin1String(LinkInterface)));
}

void MobileNetworkUI::slot_switchBox_4g_toggled(bool on)
{
    qCInfo(lcMobile, "4G switched %s", on ? "on" : "off");
    writeNotify(SysRegIdx::Mobile4GSwitch, 0, 1);
    RowHidingComboBox *list = ui->comboBox_network;
    const int linkRow = AdapterList::linkRow(secondPort());
    if (!on) {
        emit Eanble_4G_Signal(1);
        writeNotify(SysRegIdx::Mobile4GState, MobileStatus::NotConnected, 4);
        showStatus(MobileStatus::NotConnected);
        showPicture(QLatin1String(MobileStatus::NoSignalPicture));
        writeNotify(SysRegIdx::Mobile4GSwitch, 0, 1);
        showDns(QLatin1String(NoAddress));
        list->removeItem(linkRow);
        return;
    }
    emit Eanble_4G_Signal(0);
    writeNotify(SysRegIdx::Mobile4GState, MobileStatus::Connecting, 4);
    showStatus(MobileStatus::Connecting);
    // Off, then on: the host dials again on the edge.
    writeNotify(SysRegIdx::Mobile4GSwitch, 1, 1);
    list->addItem(tr("4G network"));
    list->setItemText(linkRow, tr("4G network"));
}

void MobileNetworkUI::on_comboBox_network_currentIndexChanged(const QString &text)
{
    if (m_initialising)
        return;
    AdapterList::Choice choice = AdapterList::choice(text, AdapterList::Mobile, secondPort());
    if (choice.index < 0)
        return;
    if (choice.interfaceName == QLatin1String(LinkInterface)) {
        // The link's index follows the wired ports the panel has.
        EEInfoHandle::instance()->read_flash_r_info(&m_readOnly);
        choice = AdapterList::choice(text, AdapterList::Mobile, secondPort());
    }
    emit updateDefaultNetworkSignal(choice.index);
    if (!choice.interfaceName.isEmpty())
        changeResolvDnsFile(choice.interfaceName);
}

void MobileNetworkUI::changeResolvDnsFile(QString interfaceName)
{
    if (!ResolverFile::putFirst(interfaceName))
        qCDebug(lcMobile) << "resolver file left as it is for" << interfaceName;
}

void MobileNetworkUI::on_updateDefaultNetwork(int index)
{
    ui->comboBox_network->setCurrentIndex(index);
}

void MobileNetworkUI::on_enableNetwork(int port, int state)
{
    const int row = port == 1 ? AdapterList::Wired1Row : AdapterList::Wired0Row;
    ui->comboBox_network->setRowHidden(row, state != 1);
}

void MobileNetworkUI::on_pushButton_test_pressed()
{
    QSettings settings(PanelRoot::path(QString::fromLatin1(ConfigFile)), QSettings::IniFormat);
    KeyClick::play(&settings);
}

void MobileNetworkUI::on_pushButton_test_clicked()
{
    emit pingTestSignal();
    ui->pushButton_test->setStyleSheet(TestButtonStyle::running(QStringLiteral("pushButton_test")));
}

void MobileNetworkUI::setPintTestBtnStyle()
{
    ui->pushButton_test->setStyleSheet(TestButtonStyle::idle(QStringLiteral("pushButton_test")));
}

void MobileNetworkUI::recvDns1ChangeSlot()
{
}

void MobileNetworkUI::recvDns2ChangeSlot()
{
}
