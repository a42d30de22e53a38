#include "panelfont.h"

#include <QFontDatabase>
#include <QStringList>

namespace PanelFont {

QString family(int fontId)
{
    const QStringList families = QFontDatabase::applicationFontFamilies(fontId);
    return families.isEmpty() ? QString() : families.first();
}

QFont font(int fontId, int weight, int pointSize)
{
    QFont f;
    const QString name = family(fontId);
    if (!name.isEmpty())
        f.setFamily(name);
    f.setWeight(weight);
    f.setPointSize(pointSize);
    return f;
}

} // namespace PanelFont
