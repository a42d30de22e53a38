// The picture button: it paints its SVG over the whole button and nothing else.
#include "svgpushbutton.h"
#include "paintcounter.h"
#include "testharness.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

namespace {

// Left half red, right half left empty (transparent).
const char HalfRedSvg[] =
    "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"10\" height=\"10\" viewBox=\"0 0 10 10\">"
    "<rect x=\"0\" y=\"0\" width=\"5\" height=\"10\" fill=\"#ff0000\"/></svg>";

const QColor Red(255, 0, 0);

// Pixels of the image that are not fully transparent.
int opaquePixels(const QImage &image, const QRect &area)
{
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (image.pixelColor(x, y).alpha() != 0)
                ++count;
        }
    }
    return count;
}

// Only what the widget paints itself, over a transparent image: no window
// background, which a grab() would put behind a widget of its own.
QImage ownPaint(QWidget *widget)
{
    QImage image(widget->size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    widget->render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

// Shows what a plain push button with the same text would paint: the
// assertions below are only meaningful if that is something.
QImage plainButtonLook(const QSize &size, bool down)
{
    QPushButton plain(QStringLiteral("MMMMMMMM"));
    plain.resize(size);
    plain.setDown(down);
    return ownPaint(&plain);
}

} // namespace

class TestSvgpushbutton : public QObject
{
    Q_OBJECT

private slots:
    void paintsNothingWithoutPicture_data();
    void paintsNothingWithoutPicture();
    void paintsOnlyThePicture_data();
    void paintsOnlyThePicture();
    void paintsCompiledInPicture();
    void settingPathRepaints();
};

void TestSvgpushbutton::paintsNothingWithoutPicture_data()
{
    QTest::addColumn<QString>("path");   // relative to a temporary folder, or empty
    QTest::addColumn<QByteArray>("content");  // written there when not empty
    QTest::newRow("empty path") << QString() << QByteArray();
    QTest::newRow("missing file") << QStringLiteral("nothere.svg") << QByteArray();
    QTest::newRow("missing resource") << QStringLiteral(":/Resources/nothere.svg") << QByteArray();
    QTest::newRow("not an SVG") << QStringLiteral("broken.svg") << QByteArray("this is no picture");
}

void TestSvgpushbutton::paintsNothingWithoutPicture()
{
    QFETCH(QString, path);
    QFETCH(QByteArray, content);
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QString file = path;
    if (!path.isEmpty() && !path.startsWith(QLatin1Char(':')))
        file = dir.filePath(path);
    if (!content.isEmpty()) {
        QFile out(file);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(content);
    }

    // On a page with a coloured background the button leaves no mark.
    QWidget page;
    page.setAutoFillBackground(true);
    QPalette palette = page.palette();
    palette.setColor(QPalette::Window, QColor(0, 128, 0));
    page.setPalette(palette);
    page.resize(120, 60);
    auto *button = new SvgPushButton(&page);
    button->setText(QStringLiteral("MMMMMMMM"));
    button->setGeometry(10, 10, 100, 40);
    button->setSvgFilepath(file);
    QCOMPARE(button->svgFilepath(), file);

    QVERIFY(opaquePixels(plainButtonLook(button->size(), false), button->rect()) > 0);
    for (bool down : {false, true}) {
        button->setDown(down);
        const QImage alone = ownPaint(button);
        QCOMPARE(opaquePixels(alone, alone.rect()), 0);
        const QImage onPage = page.grab().toImage();
        for (int y = 0; y < onPage.height(); ++y) {
            for (int x = 0; x < onPage.width(); ++x)
                QCOMPARE(onPage.pixelColor(x, y).rgba(), QColor(0, 128, 0).rgba());
        }
    }
}

void TestSvgpushbutton::paintsOnlyThePicture_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("down");
    QTest::newRow("100x40") << QSize(100, 40) << false;
    QTest::newRow("100x40 pressed") << QSize(100, 40) << true;
    QTest::newRow("40x100, stretched, not fitted") << QSize(40, 100) << false;
    QTest::newRow("60x60") << QSize(60, 60) << true;
}

void TestSvgpushbutton::paintsOnlyThePicture()
{
    QFETCH(QSize, size);
    QFETCH(bool, down);
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString file = dir.filePath(QStringLiteral("half.svg"));
    {
        QFile out(file);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(HalfRedSvg);
    }
    SvgPushButton button;
    button.setText(QStringLiteral("MMMMMMMM"));
    button.resize(size);
    button.setSvgFilepath(file);
    button.setDown(down);
    const int half = size.width() / 2;
    const QRect right(half + 1, 0, size.width() - half - 1, size.height());
    QVERIFY(opaquePixels(plainButtonLook(size, down), right) > 0);

    const QImage image = ownPaint(&button);
    QCOMPARE(image.size(), size);
    // The picture fills the whole left half, corners included: scaled to
    // the button, not fitted into it.
    const QRect left(0, 0, half - 1, size.height());
    for (int y = left.top(); y <= left.bottom(); ++y) {
        for (int x = left.left(); x <= left.right(); ++x)
            QCOMPARE(image.pixelColor(x, y).rgba(), Red.rgba());
    }
    // No frame, text or pressed shade anywhere the picture leaves empty.
    QCOMPARE(opaquePixels(image, right), 0);
}

void TestSvgpushbutton::paintsCompiledInPicture()
{
    SvgPushButton button;
    button.resize(64, 64);
    const QImage before = ownPaint(&button);
    QCOMPARE(opaquePixels(before, before.rect()), 0);
    button.setSvgFilepath(QStringLiteral(":/Resources/wifi.svg"));
    const QImage after = ownPaint(&button);
    QVERIFY(opaquePixels(after, after.rect()) > 0);
}

void TestSvgpushbutton::settingPathRepaints()
{
    SvgPushButton button;
    button.resize(50, 50);
    button.show();
    QVERIFY(QTest::qWaitForWindowExposed(&button));
    QTest::qWait(50);
    PaintCounter paints(&button);
    button.setSvgFilepath(QStringLiteral(":/Resources/wifi.svg"));
    QTRY_VERIFY(paints.count > 0);
}

PANEL_GUI_TEST_MAIN(TestSvgpushbutton)
#include "tst_svgpushbutton.moc"
