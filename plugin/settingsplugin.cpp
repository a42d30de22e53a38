#include "settingsplugin.h"

#include "settings.h"

#include <memory>

SettingsPlugin::SettingsPlugin(QObject *parent)
    : QObject(nullptr)
{
    Q_UNUSED(parent)
}

QDialog *SettingsPlugin::createInstance()
{
    auto window = std::make_unique<Settings>(nullptr);
    window->init();
    return window.release();
}
