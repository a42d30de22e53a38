#include "pluginhost.h"
#include "settingsinterface.h"
#include "simulatorlog.h"

#include <QDialog>
#include <QFileInfo>
#include <QJsonObject>

PluginHost::PluginHost(const QString &libraryPath)
    : m_path(QFileInfo(libraryPath).absoluteFilePath())
{
    // Resolve symbols at load time: a missing one must fail here, with the
    // loader's message, not later inside a click handler.
    m_loader.setLoadHints(QLibrary::ResolveAllSymbolsHint);
}

bool PluginHost::load(QString *error)
{
    // Checked first: QPluginLoader only warns about a missing file.
    if (!QFileInfo::exists(m_path)) {
        *error = QStringLiteral("no plug-in at %1 (build the settingsplugin target or pass --plugin)")
                     .arg(m_path);
        return false;
    }
    m_loader.setFileName(m_path);
    const QString iid = m_loader.metaData().value(QStringLiteral("IID")).toString();
    if (iid != QLatin1String(SettingsInterface_iid)) {
        *error = QStringLiteral("%1 declares interface \"%2\", expected \"%3\"")
                     .arg(m_loader.fileName(), iid, QLatin1String(SettingsInterface_iid));
        return false;
    }
    QObject *root = m_loader.instance();
    if (!root) {
        *error = QStringLiteral("cannot load %1: %2").arg(m_loader.fileName(), m_loader.errorString());
        return false;
    }
    m_interface = qobject_cast<SettingsInterface *>(root);
    if (!m_interface) {
        *error = QStringLiteral("%1: the plug-in object (%2) does not implement %3")
                     .arg(m_loader.fileName(), QLatin1String(root->metaObject()->className()),
                          QLatin1String(SettingsInterface_iid));
        return false;
    }
    qCInfo(lcSimulator).noquote() << "loaded" << m_loader.fileName()
                                  << "class" << root->metaObject()->className();
    return true;
}

QDialog *PluginHost::createWindow(QString *error)
{
    if (!m_interface) {
        *error = QStringLiteral("the plug-in is not loaded");
        return nullptr;
    }
    QDialog *window = m_interface->createInstance();
    if (!window)
        *error = QStringLiteral("createInstance() returned no window");
    return window;
}
