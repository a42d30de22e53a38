#include "versioninfoui.h"

#include "languagelist.h"

#include <QTranslator>

VersionInfoUI::VersionInfoUI(QWidget *parent)
    : QTableView(parent), m_translator(new QTranslator(this))
{
}

void VersionInfoUI::init(int fontId)
{
    m_fontId = fontId;
}

void VersionInfoUI::refresh()
{
}

void VersionInfoUI::onChangeLanguage(Settings::Language lang)
{
    LanguageList::install(m_translator, lang);
    refresh();
}
