#include "networksettings.h"

#include "languagelist.h"

#include <QTranslator>

NetworkSettings::NetworkSettings(QWidget *parent)
    : QTabWidget(parent), m_translator(new QTranslator(this))
{
}

void NetworkSettings::init(int fontId, EEInfoDetail::Flash_WR_1 &record,
                           EEInfoDetail::Flash_ROnly &readOnly, QSettings *settings)
{
    m_fontId = fontId;
    m_record = record;
    m_readOnly = readOnly;
    m_settings = settings;
    connectSlots();
}

void NetworkSettings::refresh()
{
}

void NetworkSettings::onChangeLanguage(Settings::Language lang)
{
    LanguageList::install(m_translator, lang);
    refresh();
}

void NetworkSettings::connectSlots()
{
}
