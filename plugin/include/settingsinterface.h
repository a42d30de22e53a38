#ifndef SETTINGSINTERFACE_H
#define SETTINGSINTERFACE_H

#include <QtPlugin>

class QDialog;

// What the HMI runtime sees of the settings plug-in. Load the library with
// QPluginLoader, qobject_cast the instance to SettingsInterface and call
// createInstance() whenever the settings window is wanted. Each call builds
// a fresh, initialised window; the caller owns it, shows it, and deletes it
// once system register 86 has gone to 0.
class SettingsInterface
{
public:
    virtual ~SettingsInterface() {}
    virtual QDialog *createInstance() = 0;
};

#define SettingsInterface_iid "cn.tavro.SettingsInterface"

Q_DECLARE_INTERFACE(SettingsInterface, SettingsInterface_iid)

#endif // SETTINGSINTERFACE_H
