// The panel's language list and the rules tying language ids to catalogues.
#include "languagelist.h"
#include "testharness.h"

#include <QtTest>

#include <malloc.h>

Q_DECLARE_METATYPE(LanguageList::Entry)

class TestLanguageList : public QObject
{
    Q_OBJECT

private slots:
    void parse_data();
    void parse();
    void notAnObject_data();
    void notAnObject();
    void correctedLanguage_data();
    void correctedLanguage();
    void catalogue_data();
    void catalogue();
    void repeatedKeyCostsNothingPerRead();
};

using Entries = QList<LanguageList::Entry>;

void TestLanguageList::parse_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<Entries>("expected");
    QTest::addColumn<int>("defaultLanguage");

    QTest::newRow("panel default")
        << QByteArray(R"J({"defaultLange":1,"lange":[{"id":0,"name":"Chinese(Simplified Han)"},
                          {"id":1,"name":"English(Latin)"}]})J")
        << Entries{{0, "Chinese(Simplified Han)"}, {1, "English(Latin)"}} << 1;
    QTest::newRow("three languages")
        << QByteArray(R"J({"l":[{"id":0,"name":"Chinese(Simplified Han)"},{"id":1,"name":"English(Latin)"},
                          {"id":2,"name":"Deutsch"}]})J")
        << Entries{{0, "Chinese(Simplified Han)"}, {1, "English(Latin)"}, {2, "Deutsch"}} << 0;
    QTest::newRow("other letter case is ignored")
        << QByteArray(R"J({"l":[{"ID":5,"name":"Deutsch"},{"id":3,"Name":"Français"}]})J")
        << Entries{{0, "Deutsch"}, {3, QString()}} << 0;
    QTest::newRow("every array, in key order")
        << QByteArray(R"J({"b":[{"id":2,"name":"B"}],"a":[{"id":1,"name":"A"}],"x":5})J")
        << Entries{{1, "A"}, {2, "B"}} << 0;
    QTest::newRow("elements that are not objects")
        << QByteArray(R"J({"l":[1,"two",[3],{"id":4,"name":"Four"},null]})J") << Entries{{4, "Four"}} << 0;
    QTest::newRow("no arrays at all") << QByteArray(R"J({"defaultLange":2})J") << Entries{} << 2;
}

void TestLanguageList::parse()
{
    QFETCH(QByteArray, json);
    QFETCH(Entries, expected);
    QFETCH(int, defaultLanguage);
    LanguageList list;
    QCOMPARE(list.parse(json), LanguageList::Status::Ok);
    QCOMPARE(list.entries(), expected);
    QCOMPARE(list.defaultLanguage(), defaultLanguage);
}

void TestLanguageList::notAnObject_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("array") << QByteArray("[{\"id\":0,\"name\":\"x\"}]");
    QTest::newRow("garbage") << QByteArray("{\"lange\": [ {\"id\": 0,");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("binary") << QByteArray("\x00\xff\xfe{", 4);
}

void TestLanguageList::notAnObject()
{
    QFETCH(QByteArray, json);
    LanguageList list;
    QCOMPARE(list.parse(json), LanguageList::Status::NotAnObject);
    QVERIFY(list.entries().isEmpty());
}

void TestLanguageList::correctedLanguage_data()
{
    QTest::addColumn<int>("registerValue");
    QTest::addColumn<int>("listed");
    QTest::addColumn<int>("expected");
    QTest::newRow("equal to the count is reset") << 3 << 3 << 0;
    QTest::newRow("beyond the list is kept") << 7 << 3 << 7;
    QTest::newRow("listed id is kept") << 2 << 3 << 2;
    QTest::newRow("two languages, 2 resets") << 2 << 2 << 0;
    QTest::newRow("empty list, 0 stays 0") << 0 << 0 << 0;
}

void TestLanguageList::correctedLanguage()
{
    QFETCH(int, registerValue);
    QFETCH(int, listed);
    QFETCH(int, expected);
    QCOMPARE(LanguageList::correctedLanguage(registerValue, listed), expected);
}

void TestLanguageList::catalogue_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("catalogue");
    QTest::newRow("Chinese") << 0 << ":/Languages/Translate_CN.qm";
    QTest::newRow("English") << 1 << ":/Languages/Translate_EN.qm";
    QTest::newRow("any other id shows English") << 2 << ":/Languages/Translate_EN.qm";
    QTest::newRow("negative") << -1 << ":/Languages/Translate_EN.qm";
}

void TestLanguageList::catalogue()
{
    QFETCH(int, language);
    QFETCH(QString, catalogue);
    QCOMPARE(LanguageList::catalogueFor(language), catalogue);
}

// The window reads the list at each opening; a list whose key repeats
// must not cost memory each time (Qt's parser loses the replaced value).
void TestLanguageList::repeatedKeyCostsNothingPerRead()
{
#if defined(__SANITIZE_ADDRESS__)
    QSKIP("the heap is counted by glibc's allocator, which AddressSanitizer replaces");
#else
    const QByteArray json(R"J({"lange":[{"id":0,"name":"A"}],"lange":[{"id":1,"name":"B"}]})J");
    LanguageList first;
    QCOMPARE(first.parse(json), LanguageList::Status::Ok);
    const size_t before = mallinfo2().uordblks;
    for (int i = 0; i < 2000; ++i) {
        LanguageList list;
        QCOMPARE(list.parse(json), LanguageList::Status::Ok);
        QCOMPARE(list.entries(), first.entries());
    }
    const size_t after = mallinfo2().uordblks;
    QVERIFY2(after < before + 16 * 1024,
             qPrintable(QStringLiteral("heap grew by %1 bytes").arg(qint64(after) - qint64(before))));
#endif
}

PANEL_TEST_MAIN(TestLanguageList)
#include "tst_languagelist.moc"
