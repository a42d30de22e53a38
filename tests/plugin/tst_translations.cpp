// Both catalogues translate every text the plug-in marks for translation.
#include "testharness.h"
#include "testpanel.h"

#include <QFile>
#include <QProcess>
#include <QSet>
#include <QXmlStreamReader>
#include <QtTest>

namespace {

struct Catalogue {
    QSet<QString> sources;               // "context|source"
    QStringList unfinished;
    bool ok = false;
};

Catalogue readCatalogue(const QString &path)
{
    Catalogue catalogue;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return catalogue;
    QXmlStreamReader xml(&file);
    QString context, source;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (xml.name() == QLatin1String("source")) {
            source = xml.readElementText();
            catalogue.sources.insert(context + QLatin1Char('|') + source);
        } else if (xml.name() == QLatin1String("translation")) {
            const bool unfinished = xml.attributes().value(QLatin1String("type")) == QLatin1String("unfinished");
            if (unfinished || xml.readElementText().isEmpty())
                catalogue.unfinished << context + QLatin1Char('|') + source;
        }
    }
    catalogue.ok = !xml.hasError();
    if (!catalogue.ok)
        qWarning("%s: %s", qPrintable(path), qPrintable(xml.errorString()));
    return catalogue;
}

} // namespace

class TestTranslations : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void catalogueIsComplete_data();
    void catalogueIsComplete();
    void chineseIsChinese();

private:
    QSet<QString> m_marked;
};

void TestTranslations::initTestCase()
{
    // What the sources mark today, as lupdate extracts it.
    TestPanel panel;
    const QString extracted = panel.path(QStringLiteral("/tmp/extracted.ts"));
    QProcess lupdate;
    lupdate.start(QStringLiteral(LUPDATE_EXECUTABLE),
                  {QStringLiteral("-silent"), QStringLiteral(PLUGIN_SOURCE_DIR), QStringLiteral("-ts"), extracted});
    QVERIFY(lupdate.waitForFinished(60000));
    QCOMPARE(lupdate.exitCode(), 0);
    const Catalogue catalogue = readCatalogue(extracted);
    QVERIFY(catalogue.ok);
    m_marked = catalogue.sources;
    QVERIFY(m_marked.contains(QStringLiteral("Settings|General11")));
}

void TestTranslations::catalogueIsComplete_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("Chinese") << QStringLiteral(TRANSLATIONS_DIR "/Translate_CN.ts");
    QTest::newRow("English") << QStringLiteral(TRANSLATIONS_DIR "/Translate_EN.ts");
}

void TestTranslations::catalogueIsComplete()
{
    QFETCH(QString, file);
    const Catalogue catalogue = readCatalogue(file);
    QVERIFY(catalogue.ok);
    const QSet<QString> missing = m_marked - catalogue.sources;
    QVERIFY2(missing.isEmpty(), qPrintable(QStringList(missing.values()).join(QLatin1String(", "))));
    QVERIFY2(catalogue.unfinished.isEmpty(), qPrintable(catalogue.unfinished.join(QLatin1String(", "))));
}

void TestTranslations::chineseIsChinese()
{
    QTranslator chinese;
    QVERIFY(chinese.load(QStringLiteral(TRANSLATIONS_BUILD_DIR "/Translate_CN.qm")));
    QCOMPARE(chinese.translate("Settings", "Chinese"), QStringLiteral("中文"));
    QCOMPARE(chinese.translate("Settings", "General11"), QStringLiteral("通用"));
    QCOMPARE(chinese.translate("Settings", "Network22"), QStringLiteral("网络"));
    QTranslator english;
    QVERIFY(english.load(QStringLiteral(TRANSLATIONS_BUILD_DIR "/Translate_EN.qm")));
    QCOMPARE(english.translate("Settings", "General11"), QStringLiteral("General"));
    QCOMPARE(english.translate("Settings", "Network22"), QStringLiteral("Network"));
}

PANEL_TEST_MAIN(TestTranslations)
#include "tst_translations.moc"
