#ifndef PANELFONT_H
#define PANELFONT_H

#include <QFont>
#include <QString>

// Every page and dialog draws its text in the panel's application font (the
// font file the window registers at start), taken by its id.
namespace PanelFont {

// The first family of the application font, or an empty string when the id
// names no loaded font.
QString family(int fontId);

// That family at the given weight and point size.
QFont font(int fontId, int weight, int pointSize);

} // namespace PanelFont

#endif // PANELFONT_H
