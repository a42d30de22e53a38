#ifndef SETTINGSPLUGIN_H
#define SETTINGSPLUGIN_H

#include "settingsinterface.h"

#include <QObject>

// The plug-in's only entry object. The host obtains it through Qt's plug-in
// loader and asks it for a new settings window whenever one is wanted.
class SettingsPlugin : public QObject, public SettingsInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "cn.tavro.SettingsInterface")
    Q_INTERFACES(SettingsInterface)

public:
    // The parent is deliberately not passed on: the loader owns the instance.
    explicit SettingsPlugin(QObject *parent = nullptr);

    QDialog *createInstance() override;
};

#endif // SETTINGSPLUGIN_H
