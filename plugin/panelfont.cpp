#include "panelfont.h"

#include "panelroot.h"

#include <QCoreApplication>
#include <QFontDatabase>
#include <QStringList>
#include <QVariant>

namespace PanelFont {

namespace {

const char FontFile[] = "/hmi/default.ttf";

// Kept on the application object, not in a static of this library: the
// registration belongs to the process's font database, so it must survive
// the host unloading and reloading the plug-in, and be found by every copy
// of this code that the process holds.
const char FileProperty[] = "tavro.panelFont.file";
const char IdProperty[] = "tavro.panelFont.id";
const char FamilyProperty[] = "tavro.panelFont.family";

struct Registration {
    QString file;
    int id = -1;
    QString family;
};

Registration fallback;   // only without an application object

Registration stored()
{
    QCoreApplication *app = QCoreApplication::instance();
    if (!app)
        return fallback;
    const QVariant id = app->property(IdProperty);
    if (!id.isValid())
        return {};
    return {app->property(FileProperty).toString(), id.toInt(), app->property(FamilyProperty).toString()};
}

void store(const Registration &registration)
{
    QCoreApplication *app = QCoreApplication::instance();
    if (!app) {
        fallback = registration;
        return;
    }
    app->setProperty(FileProperty, registration.file);
    app->setProperty(IdProperty, registration.id);
    app->setProperty(FamilyProperty, registration.family);
}

} // namespace

int registerPanelFont()
{
    const QString file = PanelRoot::path(QString::fromLatin1(FontFile));
    const Registration known = stored();
    // The host may have removed the font, and the database hands a freed id
    // to the next font it loads: reuse the id only while it still names ours.
    if (known.id >= 0 && known.file == file && !known.family.isEmpty() && family(known.id) == known.family)
        return known.id;
    const int id = QFontDatabase::addApplicationFont(file);
    store({file, id, family(id)});
    return id;
}

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
