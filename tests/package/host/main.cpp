#include <tavro/settingsinterface.h>

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QJsonObject>
#include <QPluginLoader>
#include <QStandardPaths>
#include <QStringList>
#include <QTextStream>
#include <QTimer>

// Loads the installed settings plug-in as the HMI runtime does, opens its
// window, and prints what the package test checks. Started by that test
// only: the window runs the panel's system tools, so the host refuses to
// open it unless every one of them is the test's recording stand-in.
//
//   settingshost [plug-in]      (default: the one the package installed)
//
// Environment: SETTINGSHOST_STANDINS, the stand-ins' folder, and
// SETTINGSHOST_GUARDED, the tool names that must resolve into it.

namespace {

enum Exit { Opened = 0, NotLoaded = 1, NoInterface = 2, Unguarded = 3, NoWindow = 4 };

// Long enough for one tick of the window's one-second timers.
constexpr int LookAfterMs = 1500;

QString unguardedTool()
{
    const QString dir = qEnvironmentVariable("SETTINGSHOST_STANDINS");
    const QStringList tools = qEnvironmentVariable("SETTINGSHOST_GUARDED").split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (dir.isEmpty() || tools.isEmpty())
        return QStringLiteral("no stand-ins named");
    for (const QString &tool : tools) {
        const QString found = QStandardPaths::findExecutable(tool);
        if (!found.startsWith(dir + QLatin1Char('/')))
            return QStringLiteral("%1 would be %2").arg(tool, found.isEmpty() ? QStringLiteral("missing") : found);
    }
    return QString();
}

QStringList comboTexts(const QDialog *window, const char *name)
{
    QStringList texts;
    if (const auto *box = window->findChild<QComboBox *>(QLatin1String(name))) {
        for (int i = 0; i < box->count(); ++i)
            texts << box->itemText(i);
    }
    return texts;
}

} // namespace

int main(int argc, char *argv[])
{
    // Before anything else, a display included.
    const QString unguarded = unguardedTool();
    if (!unguarded.isEmpty()) {
        qCritical("refusing to open the settings window: %s", qPrintable(unguarded));
        return Unguarded;
    }

    QApplication app(argc, argv);
    QTextStream out(stdout);

    const QString plugin = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral(SETTINGS_PLUGIN);
    QPluginLoader loader(plugin);
    out << "plugin: " << plugin << Qt::endl;
    out << "iid: " << loader.metaData().value(QLatin1String("IID")).toString() << Qt::endl;
    out << "class: " << loader.metaData().value(QLatin1String("className")).toString() << Qt::endl;

    QObject *instance = loader.instance();
    if (!instance) {
        qCritical("cannot load the plug-in: %s", qPrintable(loader.errorString()));
        return NotLoaded;
    }
    auto *settings = qobject_cast<SettingsInterface *>(instance);
    if (!settings) {
        qCritical("the plug-in's instance is no SettingsInterface");
        return NoInterface;
    }
    QDialog *window = settings->createInstance();
    if (!window)
        return NoWindow;
    window->show();

    QTimer::singleShot(LookAfterMs, &app, [&]() {
        out << "window: " << window->metaObject()->className()
            << (window->isVisible() ? " shown" : " hidden") << Qt::endl;
        out << "languages: " << comboTexts(window, "comboBox").join(QLatin1Char('|')) << Qt::endl;
        delete window;
        app.quit();
    });
    return app.exec();
}
