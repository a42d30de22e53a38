#ifndef PLUGINHOST_H
#define PLUGINHOST_H

#include <QPluginLoader>
#include <QString>

class QDialog;
class SettingsInterface;

// Loads the settings plug-in the way the HMI runtime does: by file path
// through QPluginLoader, then a qobject_cast of the root object to the
// interface. The library stays loaded for the life of the process, as in
// the runtime, because windows and their resources come from it.
class PluginHost
{
public:
    explicit PluginHost(const QString &libraryPath);

    bool load(QString *error);
    // A new, initialised settings window owned by the caller.
    QDialog *createWindow(QString *error);
    QString libraryPath() const { return m_path; }

private:
    QString m_path;
    QPluginLoader m_loader;
    SettingsInterface *m_interface = nullptr;
};

#endif // PLUGINHOST_H
