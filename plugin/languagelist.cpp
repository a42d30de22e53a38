#include "languagelist.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTranslator>

const char *LanguageList::ChineseName = "Chinese(Simplified Han)";
const char *LanguageList::EnglishName = "English(Latin)";

LanguageList::Status LanguageList::parse(const QByteArray &json)
{
    m_entries.clear();
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject())
        return Status::NotAnObject;
    const QJsonObject top = document.object();
    // Read, but deliberately without effect: the register decides.
    m_defaultLanguage = top.value(QStringLiteral("defaultLange")).toInt();
    for (auto it = top.constBegin(); it != top.constEnd(); ++it) {
        if (!it.value().isArray())
            continue;
        const QJsonArray list = it.value().toArray();
        for (const QJsonValue &element : list) {
            if (!element.isObject())
                continue;
            const QJsonObject language = element.toObject();
            m_entries << Entry{language.value(QStringLiteral("id")).toInt(),
                               language.value(QStringLiteral("name")).toString()};
        }
    }
    return Status::Ok;
}

int LanguageList::correctedLanguage(int registerValue, int listedCount)
{
    return registerValue == listedCount ? 0 : registerValue;
}

QString LanguageList::catalogueFor(int language)
{
    return language == 0 ? QStringLiteral(":/Languages/Translate_CN.qm")
                         : QStringLiteral(":/Languages/Translate_EN.qm");
}

bool LanguageList::install(QTranslator *translator, int language)
{
    if (!translator || !translator->load(catalogueFor(language)))
        return false;
    installFirst(translator);
    return true;
}

void LanguageList::installFirst(QTranslator *translator)
{
    QCoreApplication::removeTranslator(translator);
    QCoreApplication::installTranslator(translator);
}
