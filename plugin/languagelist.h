#ifndef LANGUAGELIST_H
#define LANGUAGELIST_H

#include <QByteArray>
#include <QList>
#include <QString>

class QTranslator;

// The language list of the panel ("/hmi/Config/lange.json") and the rules
// that tie a language id to a translation catalogue.
class LanguageList
{
public:
    struct Entry {
        int id = 0;
        QString name;
        bool operator==(const Entry &o) const { return id == o.id && name == o.name; }
    };

    enum class Status { Ok, NotAnObject };

    // A list of a few languages takes a few hundred bytes; a larger file
    // is not read as one.
    static constexpr qint64 MaxFileSize = 64 * 1024;

    // Reads every array among the top-level values (in key order) and every
    // object in it. Keys are case-sensitive; a missing "id" counts as 0.
    // The same bytes as last time give the same list without parsing again.
    Status parse(const QByteArray &json);
    QList<Entry> entries() const { return m_entries; }
    int defaultLanguage() const { return m_defaultLanguage; }

    static const char *ChineseName;   // "Chinese(Simplified Han)"
    static const char *EnglishName;   // "English(Latin)"

    // A register value equal to the number of listed languages is reset to
    // 0; any other value, listed or not, is kept.
    static int correctedLanguage(int registerValue, int listedCount);

    // Chinese (0) has its own catalogue; every other language shows English.
    static QString catalogueFor(int language);

    // Loads the language's catalogue into translator and installs it in the
    // application. A catalogue that fails to load leaves the previous
    // translations in place.
    static bool install(QTranslator *translator, int language);

    // Puts the translator first in the application's list. The application
    // keeps a translator once for every time it was installed, and every
    // translated text walks that list: a window whose language is switched
    // again and again would make it ever longer.
    static void installFirst(QTranslator *translator);

private:
    Status parseDocument(const QByteArray &json);

    QList<Entry> m_entries;
    int m_defaultLanguage = 0;
};

#endif // LANGUAGELIST_H
