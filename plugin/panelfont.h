#ifndef PANELFONT_H
#define PANELFONT_H

#include <QFont>
#include <QString>

// Every page and dialog draws its text in the panel's application font
// ("/hmi/default.ttf"), taken by its id.
namespace PanelFont {

// The id of the panel font, registered with the font database the first
// time it is asked for in this process and reused afterwards for as long as
// that id still names the font. The host runtime lives for months and opens
// the window many times a day: every registration of the same file would
// stay in the font database (and in the font configuration behind it) until
// the process ends. -1 when the font cannot be loaded.
int registerPanelFont();

// The first family of the application font, or an empty string when the id
// names no loaded font.
QString family(int fontId);

// That family at the given weight and point size.
QFont font(int fontId, int weight, int pointSize);

} // namespace PanelFont

#endif // PANELFONT_H
