#ifndef CONTACTSHEET_H
#define CONTACTSHEET_H

#include <QImage>
#include <QStringList>

// Lays out pictures (PNG or SVG files) in a grid, each shown on a light and
// on a blue tile with its file name below, for reviewing an icon set.
QImage makeContactSheet(const QStringList &files);

#endif // CONTACTSHEET_H
