// The version page driven offscreen against a simulated panel: its form,
// its sizes, the text it reads from the device image and the QR code it
// draws from that text, module by module.
#include "flash_wr_2.h"
#include "panelfont.h"
#include "targetprogram.h"
#include "testharness.h"
#include "testpanel.h"
#include "versioninfoui.h"

#include <QFontDatabase>
#include <QFrame>
#include <QGuiApplication>
#include <QLabel>
#include <QLayout>
#include <QProcess>
#include <QPushButton>
#include <QScreen>
#include <QtTest>

#include <qrcodegen.hpp>

#include <cstring>

namespace {

using EEInfoDetail::Flash_WR_2;

const QRgb Black = qRgb(0, 0, 0);
const QRgb White = qRgb(255, 255, 255);
const int QuietZone = 24;

// Set in the child process that checks a never-read device image.
const char FreshProcessVariable[] = "TST_VERSIONINFOUI_FRESH_PROCESS";

// The device image of the panel with its Flash_WR_2 record replaced by
// record (zero-padded to the record's size).
void putRecord(const TestPanel &panel, const QByteArray &record)
{
    QByteArray image = panel.image();
    QByteArray bytes = record.left(Flash_WR_2::Size);
    bytes.append(QByteArray(Flash_WR_2::Size - bytes.size(), '\0'));
    image.replace(Flash_WR_2::ImageBase, Flash_WR_2::Size, bytes);
    panel.setImage(image);
}

QLabel *label(VersionInfoUI &page, const char *name)
{
    return page.findChild<QLabel *>(QLatin1String(name));
}

QImage barcodeImage(VersionInfoUI &page)
{
    return label(page, "label_barcode")->pixmap(Qt::ReturnByValue).toImage().convertToFormat(QImage::Format_RGB32);
}

QString pixelText(int x, int y, QRgb found)
{
    return QStringLiteral("pixel (%1, %2) is #%3").arg(x).arg(y).arg(found & 0xFFFFFF, 6, 16, QLatin1Char('0'));
}

// Empty when picture is the symbol qrcodegen makes for text, drawn with
// moduleSize pixels a module from (24, 24) on a white ground; otherwise the
// first pixel that differs.
QString symbolMismatch(const QImage &picture, const QByteArray &text, int moduleSize)
{
    const qrcodegen::QrCode code = qrcodegen::QrCode::encodeText(text.constData(), qrcodegen::QrCode::Ecc::LOW);
    const int n = code.getSize();
    const int end = QuietZone + n * moduleSize;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const bool inSymbol = x >= QuietZone && y >= QuietZone && x < end && y < end;
            const bool dark = inSymbol
                && code.getModule((x - QuietZone) / moduleSize, (y - QuietZone) / moduleSize);
            const QRgb found = picture.pixel(x, y) & 0xFFFFFF;
            if (found != ((dark ? Black : White) & 0xFFFFFF))
                return pixelText(x, y, found) + (dark ? QStringLiteral(", want black") : QStringLiteral(", want white"));
        }
    }
    return QString();
}

bool allWhite(const QImage &picture)
{
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if ((picture.pixel(x, y) & 0xFFFFFF) != (White & 0xFFFFFF))
                return false;
        }
    }
    return true;
}

QByteArray repeated(const char *pattern, int length)
{
    QByteArray text;
    while (text.size() < length)
        text += pattern;
    return text.left(length);
}

} // namespace

class TestVersionInfoUI : public QObject
{
    Q_OBJECT

private slots:
    // Declared first so that, run as a whole, no test has read an image yet;
    // it checks a fresh process of its own all the same.
    void unreadableRecordShowsEmptyText();
    void unreadableAfterAGoodReadKeepsTheLastImage();

    void widgetSizes_data();
    void widgetSizes();
    void sizesFollowTheScreen();
    void qrPlacement_data();
    void qrPlacement();
    void recordText_data();
    void recordText();

    void formBeforeTheFirstRefresh();
    void initSetsTheTitleFont();
    void refreshShowsTheRecordText();
    void barcodeIsTheLibrarySymbol_data();
    void barcodeIsTheLibrarySymbol();
    void versionOneSymbolAt120();
    void fullTextFieldRunsIntoTheNextBlock();
    void languageSwitchRedrawsFromAFreshRead();
    void narrowLabelGivesABlankPicture();
};

void TestVersionInfoUI::unreadableRecordShowsEmptyText()
{
    if (!qEnvironmentVariableIsSet(FreshProcessVariable)) {
        // The image buffer outlives every page of the process, so only a
        // process that has never read an image shows the all-zero record.
        QProcess child;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QLatin1String(FreshProcessVariable), QStringLiteral("1"));
        child.setProcessEnvironment(environment);
        child.setProcessChannelMode(QProcess::MergedChannels);
        const TargetProgram self = targetProgram(QCoreApplication::applicationFilePath(),
                                                 {QStringLiteral("unreadableRecordShowsEmptyText")});
        child.start(self.program, self.arguments);
        QVERIFY(child.waitForFinished(60000));
        const QString output = QString::fromLocal8Bit(child.readAll());
        if (child.exitCode() != 0)
            qWarning("%s", qPrintable(output));
        QCOMPARE(child.exitStatus(), QProcess::NormalExit);
        QCOMPARE(child.exitCode(), 0);
        QVERIFY(output.contains(QLatin1String("PASS   : TestVersionInfoUI::unreadableRecordShowsEmptyText()")));
        return;
    }
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    QVERIFY(panel.removeFile(QStringLiteral("/root/plat-intf/readee")));
    VersionInfoUI page;
    page.refresh();
    QCOMPARE(label(page, "label_num")->text(), QString());
    const QImage picture = barcodeImage(page);
    QCOMPARE(picture.width(), label(page, "label_barcode")->width());
    const int n = qrcodegen::QrCode::encodeText("", qrcodegen::QrCode::Ecc::LOW).getSize();
    const VersionInfoUI::QrPlacement placement = VersionInfoUI::qrPlacement(picture.width(), n);
    QVERIFY(placement.moduleSize > 0);
    const QString mismatch = symbolMismatch(picture, QByteArray(), placement.moduleSize);
    QVERIFY2(mismatch.isEmpty(), qPrintable(mismatch));
}

void TestVersionInfoUI::unreadableAfterAGoodReadKeepsTheLastImage()
{
    // A failed read only clears the image's first byte, which is not part
    // of this record: the page goes on showing the last text it read.
    TestPanel panel;
    putRecord(panel, "CLOUD-ID-42");
    VersionInfoUI page;
    page.refresh();
    QCOMPARE(label(page, "label_num")->text(), QStringLiteral("CLOUD-ID-42"));
    QVERIFY(panel.removeFile(QStringLiteral("/root/plat-intf/readee")));
    page.refresh();
    QCOMPARE(label(page, "label_num")->text(), QStringLiteral("CLOUD-ID-42"));
    const QImage picture = barcodeImage(page);
    const qrcodegen::QrCode code = qrcodegen::QrCode::encodeText("CLOUD-ID-42", qrcodegen::QrCode::Ecc::LOW);
    const QString mismatch = symbolMismatch(
        picture, "CLOUD-ID-42", VersionInfoUI::qrPlacement(picture.width(), code.getSize()).moduleSize);
    QVERIFY2(mismatch.isEmpty(), qPrintable(mismatch));
}

void TestVersionInfoUI::widgetSizes_data()
{
    QTest::addColumn<QSize>("screen");
    QTest::addColumn<int>("space");
    QTest::addColumn<int>("title");
    QTest::addColumn<QSize>("devName");
    QTest::addColumn<int>("barcode");
    QTest::addColumn<int>("numHeight");
    QTest::addColumn<int>("numMinWidth");
    QTest::newRow("800x480") << QSize(800, 480) << 40 << 45 << QSize(120, 28) << 120 << 20 << 200;
    QTest::newRow("1024x600") << QSize(1024, 600) << 46 << 56 << QSize(153, 35) << 153 << 25 << 233;
    QTest::newRow("1280x800") << QSize(1280, 800) << 53 << 74 << QSize(192, 48) << 192 << 33 << 272;
    QTest::newRow("1920x1080") << QSize(1920, 1080) << 72 << 100 << QSize(288, 67) << 288 << 45 << 368;
}

void TestVersionInfoUI::widgetSizes()
{
    QFETCH(QSize, screen);
    const VersionInfoUI::WidgetSizes sizes = VersionInfoUI::widgetSizes(screen);
    QTEST(sizes.spaceWidth, "space");
    QTEST(sizes.titleHeight, "title");
    QTEST(sizes.devNameSize, "devName");
    QTEST(sizes.barcodeSide, "barcode");
    QTEST(sizes.numHeight, "numHeight");
    QTEST(sizes.numMinWidth, "numMinWidth");
}

void TestVersionInfoUI::sizesFollowTheScreen()
{
    TestPanel panel;
    VersionInfoUI page;
    const QScreen *screen = QGuiApplication::primaryScreen();
    QVERIFY(screen);
    const VersionInfoUI::WidgetSizes sizes = VersionInfoUI::widgetSizes(screen->geometry().size());
    for (const char *name : {"label_space", "label_space2"}) {
        QCOMPARE(label(page, name)->minimumWidth(), sizes.spaceWidth);
        QCOMPARE(label(page, name)->maximumWidth(), sizes.spaceWidth);
    }
    QCOMPARE(label(page, "label_title")->minimumHeight(), sizes.titleHeight);
    QCOMPARE(label(page, "label_title")->maximumHeight(), sizes.titleHeight);
    QPushButton *devName = page.findChild<QPushButton *>(QStringLiteral("pushButton_devName"));
    QCOMPARE(devName->minimumSize(), sizes.devNameSize);
    QCOMPARE(devName->maximumSize(), sizes.devNameSize);
    QCOMPARE(label(page, "label_barcode")->minimumSize(), QSize(sizes.barcodeSide, sizes.barcodeSide));
    QCOMPARE(label(page, "label_barcode")->maximumSize(), QSize(sizes.barcodeSide, sizes.barcodeSide));
    QCOMPARE(label(page, "label_num")->minimumHeight(), sizes.numHeight);
    QCOMPARE(label(page, "label_num")->maximumHeight(), sizes.numHeight);
    QCOMPARE(label(page, "label_num")->minimumWidth(), sizes.numMinWidth);
    // Laid out, the picture keeps its square whatever the page's size.
    page.resize(screen->geometry().size() * 3 / 4);
    page.layout()->activate();
    QCOMPARE(label(page, "label_barcode")->size(), QSize(sizes.barcodeSide, sizes.barcodeSide));
}

void TestVersionInfoUI::qrPlacement_data()
{
    QTest::addColumn<int>("side");
    QTest::addColumn<int>("modules");
    QTest::addColumn<int>("moduleSize");
    QTest::newRow("120, version 1") << 120 << 21 << 3;
    QTest::newRow("153, version 1") << 153 << 21 << 5;
    QTest::newRow("192, version 2") << 192 << 25 << 5;
    QTest::newRow("288, version 1") << 288 << 21 << 11;
    QTest::newRow("288, version 8") << 288 << 49 << 4;
    QTest::newRow("120, version 4") << 120 << 33 << 2;
    QTest::newRow("just fits one pixel a module") << 69 << 21 << 1;
    QTest::newRow("one pixel short") << 68 << 21 << 0;
    QTest::newRow("nothing but quiet zone") << 48 << 21 << 0;
    QTest::newRow("narrower than the quiet zone") << 30 << 21 << 0;
    QTest::newRow("no width") << 0 << 21 << 0;
    QTest::newRow("no modules") << 120 << 0 << 0;
}

void TestVersionInfoUI::qrPlacement()
{
    QFETCH(int, side);
    QFETCH(int, modules);
    const VersionInfoUI::QrPlacement placement = VersionInfoUI::qrPlacement(side, modules);
    QTEST(placement.moduleSize, "moduleSize");
    QCOMPARE(placement.origin, 24);
}

void TestVersionInfoUI::recordText_data()
{
    QTest::addColumn<QByteArray>("record");
    QTest::addColumn<QByteArray>("text");
    const QByteArray full64 = repeated("0123456789ABCDEF", 64);
    QTest::newRow("short") << QByteArray("TAVRO-HMI-1") << QByteArray("TAVRO-HMI-1");
    QTest::newRow("empty") << QByteArray() << QByteArray();
    QTest::newRow("bytes after the NUL") << QByteArray("AB\0CD", 5) << QByteArray("AB");
    QTest::newRow("63 bytes") << full64.left(63) << full64.left(63);
    QTest::newRow("64 bytes, next block empty") << full64 << full64;
    QTest::newRow("64 bytes into the next block") << full64 + "XYZ" << full64 + "XYZ";
    QTest::newRow("into the third block") << repeated("abc", 150) << repeated("abc", 150);
    QTest::newRow("no NUL in the record") << repeated("Q", 192) << repeated("Q", 192);
}

void TestVersionInfoUI::recordText()
{
    QFETCH(QByteArray, record);
    Flash_WR_2 wr2;
    std::memset(&wr2, 0, sizeof wr2);
    std::memcpy(&wr2, record.constData(), size_t(qMin(record.size(), int(sizeof wr2))));
    QTEST(VersionInfoUI::recordText(wr2), "text");
}

void TestVersionInfoUI::formBeforeTheFirstRefresh()
{
    TestPanel panel;
    VersionInfoUI page;
    QVERIFY(panel.calls(QStringLiteral("readee")).isEmpty());
    QCOMPARE(page.windowTitle(), QStringLiteral("Form"));
    for (const char *name : {"verticalLayout", "horizontalLayout", "horizontalLayout_2", "verticalLayout_2"})
        QVERIFY2(page.findChild<QLayout *>(QLatin1String(name)), name);
    for (const char *name : {"label_space", "label_space2", "label_4"})
        QCOMPARE(label(page, name)->text(), QString());
    QVERIFY(page.findChild<QFrame *>(QStringLiteral("line")));
    QCOMPARE(page.findChild<QFrame *>(QStringLiteral("line"))->maximumHeight(), 1);
    QCOMPARE(label(page, "label_title")->text(), QStringLiteral("Cloud Information"));
    QPushButton *devName = page.findChild<QPushButton *>(QStringLiteral("pushButton_devName"));
    QVERIFY(devName);
    QCOMPARE(devName->text(), QStringLiteral("Device name"));
    QCOMPARE(devName->styleSheet(),
             QStringLiteral("color: rgb(255, 255, 255);\nbackground-color: #007CF8;\nborder-radius: 2px;"));
    QLabel *barcode = label(page, "label_barcode");
    QCOMPARE(barcode->text(), QStringLiteral("barcode"));
    QVERIFY(barcode->pixmap(Qt::ReturnByValue).isNull());
    QCOMPARE(barcode->styleSheet(), QStringLiteral("border-radius: 4px;\nborder: 1px solid #BFC6CD;"));
    QLabel *num = label(page, "label_num");
    QCOMPARE(num->styleSheet(), QStringLiteral("color: #000000;"));
    QCOMPARE(num->text().size(), 15);
    for (const QChar c : num->text())
        QVERIFY(c.isDigit());
}

void TestVersionInfoUI::initSetsTheTitleFont()
{
    TestPanel panel;
    const int fontId = QFontDatabase::addApplicationFont(panel.path(QStringLiteral("/hmi/default.ttf")));
    QVERIFY(fontId >= 0);
    VersionInfoUI page;
    page.init(fontId);
    const QFont font = label(page, "label_title")->font();
    QCOMPARE(font.family(), QFontDatabase::applicationFontFamilies(fontId).value(0));
    QCOMPARE(font.weight(), 75);
    QCOMPARE(font.pointSize(), 13);
    QVERIFY(panel.calls(QStringLiteral("readee")).isEmpty());
    QFontDatabase::removeApplicationFont(fontId);
}

void TestVersionInfoUI::refreshShowsTheRecordText()
{
    TestPanel panel;
    putRecord(panel, QByteArray("HMI-CLOUD-0815\0trailing", 23));
    VersionInfoUI page;
    panel.clearCalls();
    page.refresh();
    QCOMPARE(panel.calls(QStringLiteral("readee")).size(), 1);
    QCOMPARE(label(page, "label_num")->text(), QStringLiteral("HMI-CLOUD-0815"));
    QVERIFY(!barcodeImage(page).isNull());
    QCOMPARE(barcodeImage(page).size(), label(page, "label_barcode")->size());
}

void TestVersionInfoUI::barcodeIsTheLibrarySymbol_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("side");
    QTest::newRow("sample id, 120") << QByteArray("TAVRO-HMI-7A3F19C2-0001") << 120;
    QTest::newRow("digits, 153") << QByteArray("862153045678901") << 153;
    QTest::newRow("lower case, 192") << QByteArray("device://cloud.example/id?x=1") << 192;
    QTest::newRow("full field, 288") << repeated("0123456789abcdef", 64) << 288;
    QTest::newRow("whole record, 288") << repeated("Za9-", 191) << 288;
}

void TestVersionInfoUI::barcodeIsTheLibrarySymbol()
{
    QFETCH(QByteArray, text);
    QFETCH(int, side);
    TestPanel panel;
    putRecord(panel, text);
    VersionInfoUI page;
    label(page, "label_barcode")->setFixedSize(side, side);
    page.refresh();
    QCOMPARE(label(page, "label_num")->text(), QString::fromLatin1(text));

    const QImage picture = barcodeImage(page);
    QCOMPARE(picture.size(), QSize(side, side));
    const qrcodegen::QrCode code = qrcodegen::QrCode::encodeText(text.constData(), qrcodegen::QrCode::Ecc::LOW);
    const int m = (side - 48) / code.getSize();
    QVERIFY(m > 0);
    // The finder pattern's corner module is dark and sits exactly at 24, 24.
    QCOMPARE(picture.pixel(24, 24) & 0xFFFFFF, Black & 0xFFFFFF);
    QCOMPARE(picture.pixel(23, 24) & 0xFFFFFF, White & 0xFFFFFF);
    QCOMPARE(picture.pixel(24, 23) & 0xFFFFFF, White & 0xFFFFFF);
    const QString mismatch = symbolMismatch(picture, text, m);
    QVERIFY2(mismatch.isEmpty(), qPrintable(mismatch));
}

void TestVersionInfoUI::versionOneSymbolAt120()
{
    TestPanel panel;
    const QByteArray text = "PANEL-01";
    QCOMPARE(qrcodegen::QrCode::encodeText(text.constData(), qrcodegen::QrCode::Ecc::LOW).getSize(), 21);
    putRecord(panel, text);
    VersionInfoUI page;
    label(page, "label_barcode")->setFixedSize(120, 120);
    page.refresh();
    const QImage picture = barcodeImage(page);
    QCOMPARE(picture.size(), QSize(120, 120));
    // m = 3: the top-left finder's seven dark modules span 24..44 on row 24,
    // the top-right finder ends on pixel 86, and from 87 on all is white.
    for (int x = 24; x <= 44; ++x)
        QCOMPARE(picture.pixel(x, 24) & 0xFFFFFF, Black & 0xFFFFFF);
    QCOMPARE(picture.pixel(45, 24) & 0xFFFFFF, White & 0xFFFFFF);
    QCOMPARE(picture.pixel(86, 24) & 0xFFFFFF, Black & 0xFFFFFF);
    QCOMPARE(picture.pixel(24, 86) & 0xFFFFFF, Black & 0xFFFFFF);
    for (int i = 0; i < 120; ++i) {
        for (int edge = 87; edge < 120; ++edge) {
            QCOMPARE(picture.pixel(edge, i) & 0xFFFFFF, White & 0xFFFFFF);
            QCOMPARE(picture.pixel(i, edge) & 0xFFFFFF, White & 0xFFFFFF);
        }
    }
    const QString mismatch = symbolMismatch(picture, text, 3);
    QVERIFY2(mismatch.isEmpty(), qPrintable(mismatch));
}

void TestVersionInfoUI::fullTextFieldRunsIntoTheNextBlock()
{
    TestPanel panel;
    const QByteArray field = repeated("CLOUDID7", 64);
    QCOMPARE(field.size(), 64);
    QVERIFY(!field.contains('\0'));
    putRecord(panel, field + "-TAIL" + QByteArray(1, '\0') + "HIDDEN");
    VersionInfoUI page;
    label(page, "label_barcode")->setFixedSize(192, 192);
    page.refresh();
    const QByteArray expected = field + "-TAIL";
    QCOMPARE(label(page, "label_num")->text(), QString::fromLatin1(expected));
    const QImage picture = barcodeImage(page);
    const int n = qrcodegen::QrCode::encodeText(expected.constData(), qrcodegen::QrCode::Ecc::LOW).getSize();
    const QString mismatch = symbolMismatch(picture, expected, (192 - 48) / n);
    QVERIFY2(mismatch.isEmpty(), qPrintable(mismatch));
    // The 64-byte text alone would be another symbol.
    QVERIFY(!symbolMismatch(picture, field, (192 - 48) / n).isEmpty());
}

void TestVersionInfoUI::languageSwitchRedrawsFromAFreshRead()
{
    TestPanel panel;
    putRecord(panel, "FIRST-TEXT");
    VersionInfoUI page;
    page.onChangeLanguage(Settings::English);
    QCOMPARE(label(page, "label_title")->text(), QStringLiteral("Cloud Information"));
    QCOMPARE(page.findChild<QPushButton *>(QStringLiteral("pushButton_devName"))->text(),
             QStringLiteral("Device name"));
    QCOMPARE(label(page, "label_num")->text(), QStringLiteral("FIRST-TEXT"));

    struct Step { Settings::Language language; QByteArray text; const char *title; const char *caption; };
    const Step steps[] = {
        {Settings::Chinese, "SECOND-TEXT-AFTER-SWITCH", "云信息", "设备名称"},
        {Settings::English, "3", "Cloud Information", "Device name"},
    };
    for (const Step &step : steps) {
        putRecord(panel, step.text);
        panel.clearCalls();
        page.onChangeLanguage(step.language);
        QCOMPARE(panel.calls(QStringLiteral("readee")).size(), 1);
        QCOMPARE(label(page, "label_title")->text(), QString::fromUtf8(step.title));
        QCOMPARE(page.findChild<QPushButton *>(QStringLiteral("pushButton_devName"))->text(),
                 QString::fromUtf8(step.caption));
        QCOMPARE(label(page, "label_num")->text(), QString::fromLatin1(step.text));
        const QImage picture = barcodeImage(page);
        const int n = qrcodegen::QrCode::encodeText(step.text.constData(), qrcodegen::QrCode::Ecc::LOW).getSize();
        const QString mismatch = symbolMismatch(picture, step.text, VersionInfoUI::qrPlacement(picture.width(), n).moduleSize);
        QVERIFY2(mismatch.isEmpty(), qPrintable(mismatch));
    }
}

void TestVersionInfoUI::narrowLabelGivesABlankPicture()
{
    TestPanel panel;
    putRecord(panel, "PANEL-01");   // a 21-module symbol
    VersionInfoUI page;
    QLabel *barcode = label(page, "label_barcode");
    barcode->setMinimumSize(0, 0);
    for (int side : {68, 48, 20}) {
        barcode->setFixedSize(side, side);
        page.refresh();
        const QImage picture = barcodeImage(page);
        QCOMPARE(picture.size(), QSize(side, side));
        QVERIFY2(allWhite(picture), qPrintable(QString::number(side)));
        QCOMPARE(label(page, "label_num")->text(), QStringLiteral("PANEL-01"));
    }
    // One pixel more and every module gets its single pixel.
    barcode->setFixedSize(69, 69);
    page.refresh();
    const QString mismatch = symbolMismatch(barcodeImage(page), "PANEL-01", 1);
    QVERIFY2(mismatch.isEmpty(), qPrintable(mismatch));
}

PANEL_GUI_TEST_MAIN(TestVersionInfoUI)
#include "tst_versioninfoui.moc"
