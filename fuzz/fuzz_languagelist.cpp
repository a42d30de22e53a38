// The language list is written by the panel's project tools, not by us:
// whatever the file holds, the list is read only from a JSON object, never
// holds more languages than the file has objects, reads the same twice,
// survives being written out and read again, and the register correction
// touches only the one value it is meant for.
#include "fuzzsupport.h"
#include "languagelist.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <climits>

#include <sanitizer/lsan_interface.h>

namespace {

// Qt 5.15's JSON reader loses the array or object a repeated key replaces
// ({"a":[{}],"a":[{}]} leaks both). That is Qt's, not the list's; the
// reads below are kept out of the leak check so that the fuzzer goes on
// looking for faults of the list itself.
LanguageList::Status parseUnchecked(LanguageList &list, const QByteArray &json)
{
    __lsan_disable();
    const LanguageList::Status status = list.parse(json);
    __lsan_enable();
    return status;
}

QJsonDocument documentUnchecked(const QByteArray &json, QJsonParseError *error)
{
    __lsan_disable();
    const QJsonDocument document = QJsonDocument::fromJson(json, error);
    __lsan_enable();
    return document;
}

QByteArray describe(const QList<LanguageList::Entry> &entries)
{
    QByteArray text;
    for (const LanguageList::Entry &e : entries)
        text += QByteArray::number(e.id) + ':' + e.name.toUtf8() + ';';
    return text;
}

// The entries as a language file of our own, one list under one key.
QByteArray rewritten(const QList<LanguageList::Entry> &entries)
{
    QJsonArray list;
    for (const LanguageList::Entry &e : entries)
        list.append(QJsonObject{{QStringLiteral("id"), e.id}, {QStringLiteral("name"), e.name}});
    return QJsonDocument(QJsonObject{{QStringLiteral("lange"), list}}).toJson(QJsonDocument::Compact);
}

void checkCorrection(const QList<LanguageList::Entry> &entries)
{
    const int count = entries.size();
    QList<int> values{0, 1, 2, count - 1, count, count + 1, INT_MIN, INT_MAX};
    for (const LanguageList::Entry &e : entries)
        values << e.id;
    for (const int value : values) {
        const int corrected = LanguageList::correctedLanguage(value, count);
        FUZZ_CHECK(corrected == (value == count ? 0 : value), QByteArray::number(value));
        const bool chinese = LanguageList::catalogueFor(value).endsWith(QLatin1String("Translate_CN.qm"));
        const bool english = LanguageList::catalogueFor(value).endsWith(QLatin1String("Translate_EN.qm"));
        FUZZ_CHECK(chinese == (value == 0) && english == (value != 0), QByteArray::number(value));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input = FuzzSupport::bytes(data, size);

    LanguageList list;
    const LanguageList::Status status = parseUnchecked(list, input);
    const QList<LanguageList::Entry> entries = list.entries();

    QJsonParseError error{};
    const QJsonDocument document = documentUnchecked(input, &error);
    const bool isObject = error.error == QJsonParseError::NoError && document.isObject();
    FUZZ_CHECK((status == LanguageList::Status::Ok) == isObject, input);
    if (!isObject)
        FUZZ_CHECK(entries.isEmpty(), input);

    // Every language is an object of its own inside the top-level one, and
    // each object opens with a brace somewhere in the text.
    FUZZ_CHECK(entries.size() <= qMax(0, input.count('{') - 1), input);

    // A second read of the same bytes, also by a list that read something
    // else before, gives the same languages.
    LanguageList again;
    parseUnchecked(again, QByteArrayLiteral("{\"x\":[{\"id\":5,\"name\":\"other\"}]}"));
    FUZZ_CHECK(parseUnchecked(again, input) == status, input);
    FUZZ_CHECK(again.entries() == entries, describe(entries) + " / " + describe(again.entries()));
    FUZZ_CHECK(parseUnchecked(list, input) == status && list.entries() == entries, input);

    if (isObject) {
        LanguageList copy;
        const QByteArray file = rewritten(entries);
        FUZZ_CHECK(parseUnchecked(copy, file) == LanguageList::Status::Ok, file);
        FUZZ_CHECK(copy.entries() == entries, describe(entries) + " / " + describe(copy.entries()));
        FUZZ_CHECK(copy.defaultLanguage() == 0, file);
    }

    checkCorrection(entries);
    return 0;
}
