#include "contactsheet.h"

#include <QFileInfo>
#include <QPainter>
#include <QSvgRenderer>

namespace {

const int kTile = 96;       // side of one background tile
const int kLabel = 16;      // height of the caption line
const int kGap = 8;
const int kColumns = 8;
const int kCellWidth = 2 * kTile + kGap;
const int kCellHeight = kTile + kLabel + kGap;

QImage loadPicture(const QString &file)
{
    if (file.endsWith(QLatin1String(".svg"), Qt::CaseInsensitive)) {
        QSvgRenderer renderer(file);
        if (!renderer.isValid())
            return QImage();
        QImage image(renderer.defaultSize(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        renderer.render(&painter);
        return image;
    }
    return QImage(file);
}

// Fits the picture into the tile, keeping its aspect ratio and never
// enlarging it by more than a factor of two.
QRect fittedRect(const QSize &size, const QRect &tile)
{
    QSize fitted = size.scaled(tile.size() - QSize(8, 8), Qt::KeepAspectRatio);
    if (fitted.width() > 2 * size.width())
        fitted = size * 2;
    QRect rect(QPoint(0, 0), fitted);
    rect.moveCenter(tile.center());
    return rect;
}

void drawCell(QPainter &painter, const QPoint &origin, const QString &file)
{
    const QImage picture = loadPicture(file);
    const QRect light(origin, QSize(kTile, kTile));
    const QRect blue = light.translated(kTile, 0);
    painter.fillRect(light, QColor(240, 240, 240));
    painter.fillRect(blue, QColor(96, 157, 191));
    if (picture.isNull()) {
        painter.setPen(Qt::red);
        painter.drawText(light, Qt::AlignCenter, QStringLiteral("BROKEN"));
    } else {
        painter.drawImage(fittedRect(picture.size(), light), picture);
        painter.drawImage(fittedRect(picture.size(), blue), picture);
    }
    const QString caption = QStringLiteral("%1 %2x%3").arg(QFileInfo(file).fileName())
                                .arg(picture.width()).arg(picture.height());
    painter.setPen(Qt::black);
    painter.drawText(QRect(origin.x(), origin.y() + kTile, 2 * kTile, kLabel),
                     Qt::AlignLeft | Qt::AlignVCenter, caption);
}

} // namespace

QImage makeContactSheet(const QStringList &files)
{
    const int rows = (files.size() + kColumns - 1) / kColumns;
    QImage sheet(kColumns * kCellWidth + kGap, rows * kCellHeight + kGap,
                 QImage::Format_ARGB32_Premultiplied);
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    QFont font = painter.font();
    font.setPixelSize(10);
    painter.setFont(font);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (int i = 0; i < files.size(); ++i) {
        const QPoint origin(kGap + (i % kColumns) * kCellWidth, kGap + (i / kColumns) * kCellHeight);
        drawCell(painter, origin, files.at(i));
    }
    return sheet;
}
