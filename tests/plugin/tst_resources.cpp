// The compiled-in resource set "SettingsResource": every picture, the style
// sheet and the translation catalogues are present and usable.

#include "settingsresourcenames.h"
#include "testharness.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QSet>
#include <QSvgRenderer>
#include <QTranslator>
#include <QtTest>

namespace {

// The pictures the pages address by name.
const char *const kRequiredPictures[] = {
    "auto_backlight_off.png", "background.png", "brightness.png", "button_down.png",
    "button_up.png", "buzzer.png", "close.png", "close1.png", "connect_1.svg",
    "connect_2.svg", "connect_3.svg", "connect_4.svg", "connect_5.svg", "connect_6.svg",
    "connected.png", "connected.svg", "dnsInfo.png", "enter_down.png", "enter_up.png",
    "file_manager.png", "inital_window.png", "k.lamp0_00.png", "k.lamp0_01.png",
    "k.lamp0_02.png", "left_selected.png", "left_unselected.png", "loading.svg",
    "minus.png", "network.png", "network1.png", "networkcard.png", "plus.png",
    "refresh-green.svg", "refresh.svg", "restart.png", "right_selected.png",
    "right_unselected.png", "scrollbar.png", "sd.png", "setting_blue.png",
    "setting_button.png", "setting_white.png", "switch_off.png", "switch_on.png",
    "time.png", "titleBar.png", "udisk.png", "unconnnected.svg", "version.png",
    "version_white.png", "wifi.svg", "wifi0.svg", "wifi1.svg", "wifi2.svg", "wifi3.svg",
};

QStringList generatedNames()
{
    QStringList names;
    for (const char *name : kSettingsResourceNames)
        names << QString::fromUtf8(name);
    return names;
}

bool hasVisiblePixel(const QImage &image)
{
    const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < argb.height(); ++y) {
        const QRgb *line = reinterpret_cast<const QRgb *>(argb.constScanLine(y));
        for (int x = 0; x < argb.width(); ++x) {
            if (qAlpha(line[x]) > 0)
                return true;
        }
    }
    return false;
}

void addNameRows(const QString &suffix)
{
    QTest::addColumn<QString>("path");
    for (const QString &name : generatedNames()) {
        if (name.endsWith(suffix))
            QTest::newRow(qPrintable(name)) << name;
    }
}

} // namespace

class TestResources : public QObject
{
    Q_OBJECT

private slots:
    void requiredPicturesExist();
    void generatedNamesExist();
    void nothingUnlisted();
    void pngLoads_data();
    void pngLoads();
    void svgLoads_data();
    void svgLoads();
    void styleSheet();
    void translations_data();
    void translations();
};

void TestResources::requiredPicturesExist()
{
    const QStringList names = generatedNames();
    for (const char *picture : kRequiredPictures) {
        const QString path = QStringLiteral(":/Resources/") + QLatin1String(picture);
        QVERIFY2(QFile::exists(path), qPrintable(path));
        QVERIFY2(names.contains(path), qPrintable(path + " missing from the name list"));
    }
    QVERIFY(names.contains(QStringLiteral(":/style.qss")));
    QVERIFY(names.contains(QStringLiteral(":/Languages/Translate_EN.qm")));
    QVERIFY(names.contains(QStringLiteral(":/Languages/Translate_CN.qm")));
}

void TestResources::generatedNamesExist()
{
    const QStringList names = generatedNames();
    QVERIFY(!names.isEmpty());
    QCOMPARE(QSet<QString>(names.begin(), names.end()).size(), names.size());
    for (const QString &name : names)
        QVERIFY2(QFile::exists(name), qPrintable(name));
}

// The resource directories hold exactly the listed files.
void TestResources::nothingUnlisted()
{
    const QStringList list = generatedNames();
    const QSet<QString> names(list.begin(), list.end());
    for (const QString &dir : {QStringLiteral(":/Resources"), QStringLiteral(":/Languages")}) {
        const QStringList entries = QDir(dir).entryList(QDir::Files);
        QVERIFY2(!entries.isEmpty(), qPrintable(dir));
        for (const QString &entry : entries) {
            const QString path = dir + QLatin1Char('/') + entry;
            QVERIFY2(names.contains(path), qPrintable(path));
        }
    }
}

void TestResources::pngLoads_data()
{
    addNameRows(QStringLiteral(".png"));
}

void TestResources::pngLoads()
{
    QFETCH(QString, path);
    const QImage image(path);
    QVERIFY2(!image.isNull(), qPrintable(path));
    QVERIFY(image.width() >= 16 && image.width() <= 1024);
    QVERIFY(image.height() >= 16 && image.height() <= 1024);
    QVERIFY(image.hasAlphaChannel());
    QVERIFY2(hasVisiblePixel(image), qPrintable(path + " is fully transparent"));
}

void TestResources::svgLoads_data()
{
    addNameRows(QStringLiteral(".svg"));
}

void TestResources::svgLoads()
{
    QFETCH(QString, path);
    QSvgRenderer renderer(path);
    QVERIFY2(renderer.isValid(), qPrintable(path));
    QVERIFY(!renderer.defaultSize().isEmpty());

    QImage image(30, 30, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    painter.end();
    QVERIFY2(hasVisiblePixel(image), qPrintable(path + " renders nothing"));
}

// The style sheet is there and every picture it refers to exists.
void TestResources::styleSheet()
{
    QFile file(QStringLiteral(":/style.qss"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString sheet = QString::fromUtf8(file.readAll());
    QVERIFY(!sheet.trimmed().isEmpty());
    QVERIFY(sheet.contains(QLatin1String("QScrollBar")));

    const QRegularExpression url(QStringLiteral("url\\((:/[^)]+)\\)"));
    auto it = url.globalMatch(sheet);
    int urls = 0;
    while (it.hasNext()) {
        const QString path = it.next().captured(1);
        QVERIFY2(QFile::exists(path), qPrintable(path));
        ++urls;
    }
    QVERIFY(urls > 0);
}

void TestResources::translations_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("en") << QStringLiteral(":/Languages/Translate_EN.qm");
    QTest::newRow("cn") << QStringLiteral(":/Languages/Translate_CN.qm");
}

void TestResources::translations()
{
    QFETCH(QString, path);
    QTranslator translator;
    QVERIFY2(translator.load(path), qPrintable(path));
    QVERIFY(QCoreApplication::installTranslator(&translator));
    QVERIFY(QCoreApplication::removeTranslator(&translator));
}

PANEL_GUI_TEST_MAIN(TestResources)
#include "tst_resources.moc"
