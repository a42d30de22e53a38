#ifndef WIRELESSPAGELOOK_H
#define WIRELESSPAGELOOK_H

#include <QIcon>
#include <QPixmap>
#include <QString>

class QWidget;
namespace Ui {
class WirelessWgtUI;
}

// Style sheet and sizes of the WLAN page for the panel widths the product
// ships with, and its small status pictures.
namespace WirelessPageLook {

// Side of the status pictures (connected, signal, loading).
constexpr int StateIconSize = 22;

// ":/style.qss" plus the page's own rules.
void applyStyles(Ui::WirelessWgtUI *ui, QWidget *page);
void applySizes(Ui::WirelessWgtUI *ui, int screenWidth);

// An SVG drawn at size x size; each picture is drawn once and kept, the
// set of pictures and sizes being fixed.
QPixmap picture(const QString &svgPath, int size);

// The list's signal icon for an SVG, drawn once per picture and kept: the
// list is rebuilt every second.
QIcon listIcon(const QString &svgPath, int size);

} // namespace WirelessPageLook

#endif // WIRELESSPAGELOOK_H
