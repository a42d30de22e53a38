#include "generalsettings.h"

#include "languagelist.h"

#include <QTranslator>

GeneralSettings::GeneralSettings(QWidget *parent)
    : QTableView(parent), m_translator(new QTranslator(this))
{
}

void GeneralSettings::init(int fontId, EEInfoDetail::Flash_WR_1 &record, QSettings *settings)
{
    m_fontId = fontId;
    m_record = record;
    m_settings = settings;
    connectSlots();
}

void GeneralSettings::refresh()
{
}

void GeneralSettings::onChangeLanguage(Settings::Language lang)
{
    m_language = lang;
    LanguageList::install(m_translator, lang);
    refresh();
}

void GeneralSettings::onBacklightOn()
{
}

void GeneralSettings::connectSlots()
{
}
