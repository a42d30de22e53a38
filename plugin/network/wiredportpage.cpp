#include "wiredportpage.h"
#include "ui_wiredportpage.h"

#include "panelscreen.h"
#include "testbuttonstyle.h"

#include <QComboBox>
#include "rowhidingcombobox.h"
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QPushButton>
#include <QRegularExpression>

namespace {

const char SwitchOnStyle[] = "border-image:url(:/Resources/switch_on.png);";
const char SwitchOffStyle[] = "border-image:url(:/Resources/switch_off.png);";
const char FieldStyle[] = "QLineEdit{border-radius:6px;border:2px solid #008cba;padding:0px;"
                          "background-color:rgba(163, 198, 218, 100);}"
                          "QLineEdit:disabled{border-color:#a0a0a0;background-color:rgb(230, 230, 230);"
                          "color:rgb(120, 120, 120);}";
const char ButtonStyle[] = "QPushButton{border-radius:8px;padding:2px 8px;color:white;"
                           "background-color:rgb(96, 157, 191);}"
                           "QPushButton:pressed{background-color:#008cba;}";
const char LampIdleImage[] = ":/Resources/k.lamp0_00.png";
const char LampRunningImage[] = ":/Resources/k.lamp0_02.png";
const char LampSucceededImage[] = ":/Resources/k.lamp0_01.png";
constexpr int LampSize = 30;

// Field, switch and row sizes for the panel widths the product ships with.
struct Sizes
{
    int minWidth;
    int fieldWidth;
    int rowHeight;
    int switchWidth;
    int spacing;
    int comboWidth;
    int macWidth;
    int testWidth;
};
const Sizes SizeTable[] = {
    {800, 42, 30, 58, 2, 124, 160, 60},
    {1024, 50, 34, 70, 8, 150, 170, 72},
    {1280, 60, 40, 70, 12, 180, 190, 84},
    {1920, 84, 52, 90, 20, 260, 260, 120},
};


} // namespace

WiredPortPage::WiredPortPage(int port, const QFont &font, QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::WiredPortPage)
    , m_port(port)
{
    // The font before the children: a combo box told of a new font later
    // builds its popup at once, and Qt's style sheet engine keeps rules
    // for every such popup after it is gone, window after window.
    setFont(font);
    ui->setupUi(this);
    QLineEdit *const all[GroupCount][4] = {
        {ui->ipEdit1, ui->ipEdit2, ui->ipEdit3, ui->ipEdit4},
        {ui->maskEdit1, ui->maskEdit2, ui->maskEdit3, ui->maskEdit4},
        {ui->gatewayEdit1, ui->gatewayEdit2, ui->gatewayEdit3, ui->gatewayEdit4},
        {ui->firstDnsEdit1, ui->firstDnsEdit2, ui->firstDnsEdit3, ui->firstDnsEdit4},
        {ui->backupDnsEdit1, ui->backupDnsEdit2, ui->backupDnsEdit3, ui->backupDnsEdit4},
    };
    for (int group = 0; group < GroupCount; ++group) {
        for (int octet = 0; octet < 4; ++octet) {
            m_fields[group][octet] = all[group][octet];
            // Octets come from the keypad only: no cursor, no keyboard.
            all[group][octet]->setReadOnly(true);
            all[group][octet]->setFocusPolicy(Qt::NoFocus);
            all[group][octet]->setStyleSheet(QLatin1String(FieldStyle));
        }
    }
    ui->setDefaultGatewayButton->setStyleSheet(QLatin1String(ButtonStyle));
    ui->TestButton->setStyleSheet(TestButtonStyle::idle());
    ui->lampLabel->setFixedSize(LampSize, LampSize);
    setLamp(LampIdle);
    setSwitchShowsDisabled(false);
    retranslate();
}

WiredPortPage::~WiredPortPage()
{
    delete ui;
}

QLineEdit *WiredPortPage::field(Group group, int octet) const
{
    if (group < 0 || group >= GroupCount || octet < 0 || octet > 3)
        return nullptr;
    return m_fields[group][octet];
}

QList<QLineEdit *> WiredPortPage::fields() const
{
    QList<QLineEdit *> list;
    for (const auto &group : m_fields) {
        for (QLineEdit *edit : group)
            list << edit;
    }
    return list;
}

WiredPortPage::Group WiredPortPage::groupOf(const QObject *object) const
{
    for (int group = 0; group < GroupCount; ++group) {
        for (QLineEdit *edit : m_fields[group]) {
            if (edit == object)
                return Group(group);
        }
    }
    return GroupCount;
}

QStringList WiredPortPage::octets(Group group) const
{
    QStringList texts;
    for (int octet = 0; octet < 4; ++octet)
        texts << m_fields[group][octet]->text();
    return texts;
}

void WiredPortPage::setOctets(Group group, const QStringList &octets)
{
    for (int octet = 0; octet < 4; ++octet)
        m_fields[group][octet]->setText(QStringLiteral("%1").arg(octets.value(octet)));
}

void WiredPortPage::setFieldsEnabled(bool enabled)
{
    for (QLineEdit *edit : fields())
        edit->setEnabled(enabled);
}

void WiredPortPage::clearFields()
{
    for (QLineEdit *edit : fields())
        edit->setText(QStringLiteral("0"));
}

RowHidingComboBox *WiredPortPage::modeComboBox() const { return ui->modeComboBox; }
RowHidingComboBox *WiredPortPage::defaultNetworkComboBox() const { return ui->defaultNetworkComboBox; }
QPushButton *WiredPortPage::disableSwitch() const { return ui->disableNetworkSwitch; }
QPushButton *WiredPortPage::testButton() const { return ui->TestButton; }
QPushButton *WiredPortPage::setDefaultGatewayButton() const { return ui->setDefaultGatewayButton; }

void WiredPortPage::setMac(const QStringList &bytes)
{
    ui->macLineEdit->setText(QStringLiteral("%1:%2:%3:%4:%5:%6")
                                 .arg(bytes.value(0), bytes.value(1), bytes.value(2), bytes.value(3),
                                      bytes.value(4), bytes.value(5)));
}

QString WiredPortPage::macText() const
{
    return ui->macLineEdit->text();
}

void WiredPortPage::setSwitchShowsDisabled(bool disabled)
{
    ui->disableNetworkSwitch->setStyleSheet(QLatin1String(disabled ? SwitchOnStyle : SwitchOffStyle));
}

void WiredPortPage::setLamp(Lamp lamp)
{
    m_lamp = lamp;
    const char *image = lamp == LampRunning ? LampRunningImage
        : lamp == LampSucceeded             ? LampSucceededImage
                                            : LampIdleImage;
    ui->lampLabel->setPixmap(QPixmap(QLatin1String(image))
                                 .scaled(LampSize, LampSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

void WiredPortPage::setTestRunning(bool running)
{
    ui->TestButton->setStyleSheet(running ? TestButtonStyle::running() : TestButtonStyle::idle());
}

void WiredPortPage::setNetworkLabel(const QString &text)
{
    ui->label_network->setText(text);
}

void WiredPortPage::setGatewayLabel(const QString &text)
{
    ui->label_defaultGateway->setText(text);
}

void WiredPortPage::retranslate()
{
    const QString network = ui->label_network->text();
    const QString gateway = ui->label_defaultGateway->text();
    ui->retranslateUi(this);
    ui->label_dnsInfo->setText(tr("Wired Network %1 DNS Server Info:").arg(m_port));
    // The page owner fills these two with values after every change.
    ui->label_network->setText(network);
    ui->label_defaultGateway->setText(gateway);
}

void WiredPortPage::adjustToScreen(int screenWidth)
{
    const Sizes &sizes = PanelScreen::rowFor(SizeTable, screenWidth);
    for (QLineEdit *edit : fields())
        edit->setFixedSize(sizes.fieldWidth, sizes.rowHeight);
    ui->modeComboBox->setFixedSize(sizes.comboWidth, sizes.rowHeight);
    ui->defaultNetworkComboBox->setFixedSize(sizes.comboWidth + sizes.fieldWidth, sizes.rowHeight);
    ui->macLineEdit->setFixedSize(sizes.macWidth, sizes.rowHeight);
    ui->disableNetworkSwitch->setFixedSize(sizes.switchWidth, sizes.switchWidth * 3 / 7);
    ui->TestButton->setFixedSize(sizes.testWidth, sizes.rowHeight + 4);
    ui->setDefaultGatewayButton->setFixedHeight(sizes.rowHeight);
    for (QLabel *dot : findChildren<QLabel *>(QRegularExpression(QStringLiteral("Dot\\d$"))))
        dot->setFixedWidth(qMax(6, sizes.spacing + 2));
    ui->portLayout->setHorizontalSpacing(sizes.spacing + 4);
    ui->portLayout->setVerticalSpacing(sizes.spacing / 2);
}
