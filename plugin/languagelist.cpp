#include "languagelist.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTranslator>

const char *LanguageList::ChineseName = "Chinese(Simplified Han)";
const char *LanguageList::EnglishName = "English(Latin)";

namespace {

// The last list read, by its exact bytes. Qt 5.15's JSON parser leaks the
// value a repeated key replaces when that value is an array or an object,
// and the window reads the list at every opening: a list with such a key
// would cost memory each time. The host's list rarely changes, so reading
// it once per content keeps the loss to one.
struct ParsedList
{
    QByteArray json;
    bool valid = false;
    bool isObject = false;
    QList<LanguageList::Entry> entries;
    int defaultLanguage = 0;
};

ParsedList &lastParsed()
{
    static ParsedList parsed;
    return parsed;
}

} // namespace

LanguageList::Status LanguageList::parse(const QByteArray &json)
{
    ParsedList &last = lastParsed();
    if (!last.valid || last.json != json) {
        LanguageList fresh;
        last.isObject = fresh.parseDocument(json) == Status::Ok;
        last.json = json;
        last.entries = fresh.m_entries;
        last.defaultLanguage = fresh.m_defaultLanguage;
        last.valid = true;
    }
    m_entries = last.entries;
    if (!last.isObject)
        return Status::NotAnObject;
    m_defaultLanguage = last.defaultLanguage;
    return Status::Ok;
}

LanguageList::Status LanguageList::parseDocument(const QByteArray &json)
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
