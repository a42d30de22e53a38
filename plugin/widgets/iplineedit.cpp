#include "iplineedit.h"
#include "ui_iplineedit.h"

#include "inputdialog.h"
#include "octetvalidator.h"
#include "panelfont.h"
#include "panelroot.h"
#include "panelscreen.h"
#include "wirelesswgtui.h"

#include <QEvent>
#include <QLineEdit>
#include <QLoggingCategory>
#include <QPointer>
#include <QSettings>
#include <QStringList>

Q_LOGGING_CATEGORY(lcIpLineEdit, "tavro.settings.iplineedit")

namespace {

constexpr int OctetCount = 4;
constexpr int OctetMin = 0;
constexpr int OctetMax = 255;

const char ConfigFile[] = "/hmi/Config/system_settings.ini";
const QLatin1Char Dot('.');

} // namespace

IPLineEdit::IPLineEdit(QWidget *parent)
    : QWidget(parent),
      ui(new Ui::IPLineEdit),
      m_validator(new OctetValidator(this))
{
    ui->setupUi(this);
    for (QLineEdit *field : {ui->lineEdit_ip1, ui->lineEdit_ip2, ui->lineEdit_ip3, ui->lineEdit_ip4}) {
        field->setValidator(m_validator);
        field->installEventFilter(this);
    }
    resizeUIWgt();
}

IPLineEdit::~IPLineEdit()
{
    delete ui;
}

QString IPLineEdit::getIPVal()
{
    return QStringList {ui->lineEdit_ip1->text(), ui->lineEdit_ip2->text(), ui->lineEdit_ip3->text(),
                        ui->lineEdit_ip4->text()}
        .join(Dot);
}

void IPLineEdit::setIPVal(QString ip)
{
    const QStringList parts = ip.split(Dot, Qt::KeepEmptyParts);
    if (parts.size() != OctetCount) {
        qCDebug(lcIpLineEdit) << "not an address of four parts, kept the fields:" << ip;
        return;
    }
    ui->lineEdit_ip1->setText(parts.at(0));
    ui->lineEdit_ip2->setText(parts.at(1));
    ui->lineEdit_ip3->setText(parts.at(2));
    ui->lineEdit_ip4->setText(parts.at(3));
}

QSize IPLineEdit::fieldSize(const QSize &screen)
{
    const double width = 3.0 * screen.width() / 112.0 + 200.0 / 7.0;
    const double height = screen.height() / 30.0 + 14.0;
    return QSize(int(width), int(height));
}

void IPLineEdit::resizeUIWgt()
{
    const QSize size = fieldSize(PanelScreen::size());
    for (QLineEdit *field : {ui->lineEdit_ip1, ui->lineEdit_ip2, ui->lineEdit_ip3, ui->lineEdit_ip4})
        field->setFixedSize(size);
}

QLineEdit *IPLineEdit::octetField(QObject *object) const
{
    for (QLineEdit *field : {ui->lineEdit_ip1, ui->lineEdit_ip2, ui->lineEdit_ip3, ui->lineEdit_ip4}) {
        if (object == field)
            return field;
    }
    return nullptr;
}

bool IPLineEdit::eventFilter(QObject *watched, QEvent *event)
{
    QLineEdit *field = octetField(watched);
    if (!field)
        return QWidget::eventFilter(watched, event);
    if (event->type() != QEvent::MouseButtonPress)
        return false;
    // The WLAN page's address choice governs every address editor: under
    // DHCP the addresses are the server's and a touch must not change them.
    if (WirelessWgtUI::m_isStaticIP)
        editOnKeypad(field);
    return true;
}

void IPLineEdit::editOnKeypad(QLineEdit *field)
{
    const int current = field->text().toInt();
    const int fontId = PanelFont::registerPanelFont();
    if (fontId < 0)
        qCDebug(lcIpLineEdit) << "panel font not loaded, the keypad uses the default font";
    QSettings settings(PanelRoot::path(QString::fromLatin1(ConfigFile)), QSettings::IniFormat);

    // The modal run may outlive this editor (its page closed meanwhile).
    QPointer<IPLineEdit> self(this);
    QPointer<QLineEdit> target(field);
    const int result = InputDialog::Instance(fontId, OctetMin, OctetMax, current, &settings, nullptr)->exec();
    if (!self || !target || result < 1)
        return;
    target->setText(QString::number(result - 1));
    emit valueChanged();
}
