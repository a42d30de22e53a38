#include "versioninfoui.h"
#include "ui_versioninfoui.h"

#include "eeinfohandle.h"
#include "languagelist.h"
#include "panelfont.h"
#include "panelscreen.h"

#include <QLoggingCategory>
#include <QPainter>
#include <QPixmap>
#include <QTranslator>

#include <qrcodegen.hpp>

#include <cstring>

Q_LOGGING_CATEGORY(lcVersionInfo, "tavro.settings.version")

namespace {

// Every page draws its title in the panel font, bold, at this size.
constexpr int TitleFontWeight = 75;
constexpr int TitleFontPointSize = 13;

// White quiet zone left of and above the symbol; the right and bottom
// margin is whatever the integer module size leaves over.
constexpr int QrQuietZone = 24;

} // namespace

VersionInfoUI::VersionInfoUI(QWidget *parent)
    : QTableView(parent), ui(new Ui::VersionInfoUI), m_translator(new QTranslator(this))
{
    ui->setupUi(this);
    adjustWgtSize();
}

VersionInfoUI::~VersionInfoUI()
{
    delete ui;
}

VersionInfoUI::WidgetSizes VersionInfoUI::widgetSizes(const QSize &screen)
{
    // The panel's own formulas, in floating point and truncated: the exact
    // sizes of the four panels (40, 45, 120 x 28 at 800 x 480) come out
    // whole, so no value drops a pixel.
    const double w = screen.width();
    const double h = screen.height();
    WidgetSizes sizes;
    sizes.spaceWidth = int(w / 35.0 + 120.0 / 7.0);
    sizes.titleHeight = int(11.0 * h / 120.0 + 1.0);
    sizes.devNameSize = QSize(int(0.15 * w), int(0.065 * h - 3.2));
    sizes.barcodeSide = int(0.15 * w);
    sizes.numHeight = int(h / 24.0);
    sizes.numMinWidth = int(0.15 * w + 80.0);
    return sizes;
}

void VersionInfoUI::adjustWgtSize()
{
    const WidgetSizes sizes = widgetSizes(PanelScreen::size());
    ui->label_space->setFixedWidth(sizes.spaceWidth);
    ui->label_space2->setFixedWidth(sizes.spaceWidth);
    ui->label_title->setFixedHeight(sizes.titleHeight);
    ui->pushButton_devName->setFixedSize(sizes.devNameSize);
    ui->label_barcode->setFixedSize(sizes.barcodeSide, sizes.barcodeSide);
    ui->label_num->setFixedHeight(sizes.numHeight);
    ui->label_num->setMinimumWidth(sizes.numMinWidth);
}

void VersionInfoUI::init(int fontId)
{
    m_fontId = fontId;
    ui->label_title->setFont(PanelFont::font(fontId, TitleFontWeight, TitleFontPointSize));
}

VersionInfoUI::QrPlacement VersionInfoUI::qrPlacement(int side, int modules)
{
    QrPlacement placement;
    placement.origin = QrQuietZone;
    if (modules > 0 && side > 2 * QrQuietZone)
        placement.moduleSize = (side - 2 * QrQuietZone) / modules;
    return placement;
}

QByteArray VersionInfoUI::recordText(const EEInfoDetail::Flash_WR_2 &record)
{
    // The firmware may fill qrCodeText to the last byte; the text then goes
    // on into the next block, but never past the record.
    const char *bytes = reinterpret_cast<const char *>(&record);
    const void *nul = std::memchr(bytes, 0, sizeof record);
    const int length = nul ? int(static_cast<const char *>(nul) - bytes) : int(sizeof record);
    return QByteArray(bytes, length);
}

QImage VersionInfoUI::qrImage(const QByteArray &text, int side)
{
    QImage image(qMax(side, 0), qMax(side, 0), QImage::Format_RGB32);
    image.fill(Qt::white);
    if (image.isNull())
        return image;
    try {
        const qrcodegen::QrCode code =
            qrcodegen::QrCode::encodeText(text.constData(), qrcodegen::QrCode::Ecc::LOW);
        const int n = code.getSize();
        const QrPlacement placement = qrPlacement(side, n);
        const int m = placement.moduleSize;
        if (m == 0)
            return image;
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        for (int y = 0; y < n; ++y) {
            for (int x = 0; x < n; ++x) {
                const QRect module(placement.origin + x * m, placement.origin + y * m, m, m);
                painter.fillRect(module, code.getModule(x, y) ? Qt::black : Qt::white);
            }
        }
    } catch (const qrcodegen::data_too_long &) {
        // A record holds far less than a symbol takes; only a caller with
        // some other text gets here, and it gets a blank picture.
        qCDebug(lcVersionInfo) << "text too long for a QR code:" << text.size() << "bytes";
    }
    return image;
}

void VersionInfoUI::refresh()
{
    ui->retranslateUi(this);
    EEInfoDetail::Flash_WR_2 record;
    std::memset(&record, 0, sizeof record);
    EEInfoHandle::instance()->read_flash_wr2_info(&record);
    const QByteArray text = recordText(record);
    ui->label_num->setText(QString::fromLatin1(text));
    ui->label_barcode->setPixmap(QPixmap::fromImage(qrImage(text, ui->label_barcode->width())));
}

void VersionInfoUI::onChangeLanguage(Settings::Language lang)
{
    LanguageList::install(m_translator, lang);
    refresh();
}
