#include "wirelesspagelook.h"
#include "ui_wirelesswgtui.h"

#include "panelscreen.h"
#include <QFile>
#include <QHash>
#include <QPainter>
#include <QSvgRenderer>

namespace {

const char PageRules[] =
    "QWidget#scrollAreaWidgetContents_main, QWidget#scrollAreaWidgetContents_search{background:white;}"
    "QGroupBox#groupBox_skip{border:1px solid rgb(163, 198, 218);border-radius:8px;"
    "background:transparent;margin-top:0px;}"
    "QGroupBox#groupBox_skip:disabled{border-color:rgb(210, 210, 210);}"
    "QGroupBox#groupBox_linkedWifi{border:1px solid rgb(163, 198, 218);border-radius:8px;"
    "margin-top:14px;padding-top:6px;}"
    "QGroupBox#groupBox_linkedWifi::title{subcontrol-origin:margin;left:10px;padding:0px 4px;"
    "color:rgb(46, 110, 146);}"
    "QLabel#label_dnsInfo, QLabel#label_nearby{color:rgb(46, 110, 146);}"
    "QLabel#label_skipArrow{color:rgb(96, 157, 191);}"
    // 49 + the item's 1-pixel rule: the rows fill the list's 50 pixels each.
    "QListWidget#listWidget_wifi::item{min-height:49px;}"
    "QPushButton#pushButton_backToPage{border:none;color:rgb(46, 110, 146);text-align:left;}"
    "QPushButton#pushButton_backToPage:pressed{color:rgb(96, 157, 191);}"
    "QPushButton#pushButton_resetWifi{border-radius:8px;padding:2px 10px;color:white;"
    "background-color:rgb(96, 157, 191);}"
    "QPushButton#pushButton_resetWifi:pressed{background-color:#2E6E92;}";

// Row, switch and field sizes per panel width.
struct Sizes
{
    int minWidth;
    int rowHeight;
    int switchWidth;
    int comboWidth;
    int macWidth;
    int testWidth;
    int buttonWidth;
    int refreshSize;
    int margin;
    int spacing;
};
const Sizes SizeTable[] = {
    {800, 30, 58, 170, 180, 170, 130, 26, 8, 6},
    {1024, 34, 70, 190, 200, 190, 150, 30, 12, 8},
    {1280, 40, 70, 220, 230, 210, 170, 34, 16, 10},
    {1920, 52, 90, 300, 300, 280, 220, 44, 24, 16},
};


} // namespace

namespace WirelessPageLook {

void applyStyles(Ui::WirelessWgtUI *ui, QWidget *page)
{
    QFile file(QStringLiteral(":/style.qss"));
    QString rules;
    if (file.open(QIODevice::ReadOnly | QIODevice::Text))
        rules = QString::fromUtf8(file.readAll());
    page->setStyleSheet(rules + QLatin1String(PageRules));
    ui->label_skipArrow->setText(QStringLiteral(">"));
}

void applySizes(Ui::WirelessWgtUI *ui, int screenWidth)
{
    const Sizes &sizes = PanelScreen::rowFor(SizeTable, screenWidth);
    for (IPLineEdit *field : {ui->ipLineEdit_ip, ui->ipLineEdit_mask, ui->ipLineEdit_gateway, ui->ipLineEdit_dns1,
                              ui->ipLineEdit_dns2}) {
        field->resizeUIWgt();
        // Four octets side by side, as compact as the wired tabs show them.
        if (QLayout *octets = field->layout()) {
            octets->setContentsMargins(0, 0, 0, 0);
            octets->setSpacing(sizes.spacing / 2 + 2);
        }
        field->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    }
    ui->horizontalLayout_network->setSpacing(sizes.spacing * 2);
    ui->switchbox_disableNet->setFixedSize(sizes.switchWidth, sizes.switchWidth * 3 / 7);
    ui->switchbox_staticIP->setFixedSize(sizes.switchWidth, sizes.switchWidth * 3 / 7);
    ui->comboBox_network->setFixedSize(sizes.comboWidth, sizes.rowHeight);
    ui->lineEdit_macAddr->setFixedSize(sizes.macWidth, sizes.rowHeight);
    ui->pushButton_test->setFixedSize(sizes.testWidth, sizes.rowHeight + 4);
    ui->pushButton_backToPage->setFixedHeight(sizes.rowHeight);
    ui->pushButton_resetWifi->setFixedSize(sizes.buttonWidth, sizes.rowHeight);
    ui->pushButton_refreshWlan->setFixedSize(sizes.refreshSize, sizes.refreshSize);
    ui->groupBox_skip->setMinimumHeight(sizes.rowHeight + 2 * sizes.spacing);
    // Room for the title above the frame and a row inside it.
    ui->groupBox_linkedWifi->setMinimumHeight(2 * sizes.rowHeight + 2 * sizes.spacing);
    for (QLabel *label : {ui->label_wifiLogo, ui->label_connectedWifiLogo, ui->label_connectedWifiState,
                          ui->label_loading})
        label->setFixedSize(StateIconSize, StateIconSize);
    ui->label_wifiLogo->setPixmap(picture(QStringLiteral(":/Resources/wifi.svg"), StateIconSize));
    for (QLayout *layout : {ui->verticalLayout_main, ui->verticalLayout_search}) {
        layout->setContentsMargins(sizes.margin, sizes.margin, sizes.margin, sizes.margin);
        layout->setSpacing(sizes.spacing + 4);
    }
    ui->gridLayout_address->setHorizontalSpacing(sizes.spacing * 2);
    ui->gridLayout_address->setVerticalSpacing(sizes.spacing);
}

QPixmap picture(const QString &svgPath, int size)
{
    // The page's own few pictures at its few sizes, asked for every second:
    // each is drawn once.
    static QHash<QString, QPixmap> drawn;
    const QString key = svgPath + QLatin1Char('@') + QString::number(size);
    const auto found = drawn.constFind(key);
    if (found != drawn.constEnd())
        return found.value();
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QSvgRenderer renderer(svgPath);
    QPainter painter(&pixmap);
    renderer.render(&painter);
    painter.end();
    drawn.insert(key, pixmap);
    return pixmap;
}

QIcon listIcon(const QString &svgPath, int size)
{
    static QHash<QString, QIcon> icons;
    const QString key = svgPath + QLatin1Char('@') + QString::number(size);
    auto found = icons.constFind(key);
    if (found == icons.constEnd())
        found = icons.insert(key, QIcon(picture(svgPath, size)));
    return found.value();
}

} // namespace WirelessPageLook
