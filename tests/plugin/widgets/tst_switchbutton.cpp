// The on/off switch: its state, the knob's slide and what it paints.
#include "switchbutton.h"
#include "paintcounter.h"
#include "testharness.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTimer>
#include <QtTest>

namespace {

constexpr int TrackAlpha = 140;
const QColor TrackOn(50, 105, 206);
const QColor TrackOff(111, 122, 126);
const QColor TrackDisabled(224, 224, 224);
const QColor Knob(255, 255, 255);
const QColor Background(0, 0, 0);
constexpr int ColourTolerance = 2;

QTimer *animationTimer(SwitchButton *button)
{
    return button->findChild<QTimer *>();
}

// A switch on its own window, so that its background is a known colour.
void prepare(SwitchButton *button, int w, int h)
{
    QPalette palette = button->palette();
    palette.setColor(QPalette::Window, Background);
    button->setPalette(palette);
    button->resize(w, h);
}

QColor over(const QColor &colour, int alpha, const QColor &background)
{
    auto mix = [alpha](int c, int b) { return b + (c - b) * alpha / 255; };
    return QColor(mix(colour.red(), background.red()), mix(colour.green(), background.green()),
                  mix(colour.blue(), background.blue()));
}

bool near(const QColor &actual, const QColor &expected)
{
    return qAbs(actual.red() - expected.red()) <= ColourTolerance
        && qAbs(actual.green() - expected.green()) <= ColourTolerance
        && qAbs(actual.blue() - expected.blue()) <= ColourTolerance;
}

QString describe(const QColor &c)
{
    return QStringLiteral("rgb(%1, %2, %3)").arg(c.red()).arg(c.green()).arg(c.blue());
}

} // namespace

class TestSwitchbutton : public QObject
{
    Q_OBJECT

private slots:
    void constructorValues_data();
    void constructorValues();
    void setters_data();
    void setters();
    void touchSlidesKnob_data();
    void touchSlidesKnob();
    void touchRunsOnTimer();
    void anyButtonToggles_data();
    void anyButtonToggles();
    void touchWithoutAnimationJumps_data();
    void touchWithoutAnimationJumps();
    void setCheckedSameStateChangesNothing_data();
    void setCheckedSameStateChangesNothing();
    void setCheckedNeverEmits_data();
    void setCheckedNeverEmits();
    void setCheckedWithoutAnimationDoesNotRepaint();
    void paintsTrackAndKnob_data();
    void paintsTrackAndKnob();
    void paintsPillShape();
};

void TestSwitchbutton::constructorValues_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("expected");
    QTest::newRow("space") << QByteArray("space") << QVariant(2);
    QTest::newRow("radius") << QByteArray("radius") << QVariant(5);
    QTest::newRow("checked") << QByteArray("checked") << QVariant(false);
    QTest::newRow("showText") << QByteArray("showText") << QVariant(false);
    QTest::newRow("showCircle") << QByteArray("showCircle") << QVariant(false);
    QTest::newRow("animation") << QByteArray("animation") << QVariant(true);
    QTest::newRow("bgColorOn") << QByteArray("bgColorOn") << QVariant(QColor(50, 105, 206));
    QTest::newRow("bgColorOff") << QByteArray("bgColorOff") << QVariant(QColor(111, 122, 126));
    QTest::newRow("sliderColorOn") << QByteArray("sliderColorOn") << QVariant(QColor(255, 255, 255));
    QTest::newRow("sliderColorOff") << QByteArray("sliderColorOff") << QVariant(QColor(255, 255, 255));
    QTest::newRow("textColor") << QByteArray("textColor") << QVariant(QColor(255, 255, 255));
    QTest::newRow("textOn") << QByteArray("textOn") << QVariant(QString());
    QTest::newRow("textOff") << QByteArray("textOff") << QVariant(QString());
}

void TestSwitchbutton::constructorValues()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, expected);
    SwitchButton button;
    const QVariant actual = button.property(property.constData());
    QVERIFY2(actual.isValid(), property.constData());
    QCOMPARE(actual, expected);
    // The knob rests at the left with nothing to do.
    QCOMPARE(button.step(), 0);
    QCOMPARE(button.startX(), 0);
    QCOMPARE(button.endX(), 0);
    QVERIFY(animationTimer(&button));
    QCOMPARE(animationTimer(&button)->interval(), 30);
    QVERIFY(!animationTimer(&button)->isActive());
}

void TestSwitchbutton::setters_data()
{
    QTest::addColumn<QByteArray>("setter");
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("space") << QByteArray("setSpace") << QByteArray("space") << QVariant(4);
    QTest::newRow("radius") << QByteArray("setRadius") << QByteArray("radius") << QVariant(9);
    QTest::newRow("showText") << QByteArray("setShowText") << QByteArray("showText") << QVariant(true);
    QTest::newRow("showCircle") << QByteArray("setShowCircle") << QByteArray("showCircle") << QVariant(true);
    QTest::newRow("animation") << QByteArray("setAnimation") << QByteArray("animation") << QVariant(false);
    QTest::newRow("bgColorOn") << QByteArray("setBgColorOn") << QByteArray("bgColorOn")
                               << QVariant(QColor(1, 2, 3));
    QTest::newRow("bgColorOff") << QByteArray("setBgColorOff") << QByteArray("bgColorOff")
                                << QVariant(QColor(4, 5, 6));
    QTest::newRow("sliderColorOn") << QByteArray("setSliderColorOn") << QByteArray("sliderColorOn")
                                   << QVariant(QColor(7, 8, 9));
    QTest::newRow("sliderColorOff") << QByteArray("setSliderColorOff") << QByteArray("sliderColorOff")
                                    << QVariant(QColor(10, 11, 12));
    QTest::newRow("textColor") << QByteArray("setTextColor") << QByteArray("textColor")
                               << QVariant(QColor(13, 14, 15));
    QTest::newRow("textOn") << QByteArray("setTextOn") << QByteArray("textOn") << QVariant(QStringLiteral("ON"));
    QTest::newRow("textOff") << QByteArray("setTextOff") << QByteArray("textOff")
                             << QVariant(QStringLiteral("OFF"));
}

// Every setter is a slot, so pages may wire them by name.
void TestSwitchbutton::setters()
{
    QFETCH(QByteArray, setter);
    QFETCH(QByteArray, property);
    QFETCH(QVariant, value);
    SwitchButton button;
    const QMetaObject *meta = button.metaObject();
    const QByteArray signature = setter + '(' + QByteArray(value.typeName()) + ')';
    const int index = meta->indexOfMethod(QMetaObject::normalizedSignature(signature.constData()));
    QVERIFY2(index >= 0, signature.constData());
    QCOMPARE(meta->method(index).methodType(), QMetaMethod::Slot);
    QVERIFY(meta->method(index).invoke(&button, Qt::DirectConnection,
                                       QGenericArgument(value.typeName(), value.constData())));
    QCOMPARE(button.property(property.constData()), value);
}

void TestSwitchbutton::touchSlidesKnob_data()
{
    QTest::addColumn<int>("w");
    QTest::addColumn<int>("h");
    QTest::addColumn<int>("step");
    QTest::addColumn<int>("endX");
    QTest::addColumn<QList<int>>("ticks");  // startX after each tick until the timer stops
    QTest::newRow("70x30 overshoots then snaps") << 70 << 30 << 7 << 40
                                                 << QList<int> {7, 14, 21, 28, 35, 42, 40};
    QTest::newRow("100x40 lands on its end") << 100 << 40 << 10 << 60
                                             << QList<int> {10, 20, 30, 40, 50, 60, 60};
    QTest::newRow("59x25 width rounds down") << 59 << 25 << 5 << 34
                                             << QList<int> {5, 10, 15, 20, 25, 30, 35, 34};
}

void TestSwitchbutton::touchSlidesKnob()
{
    QFETCH(int, w);
    QFETCH(int, h);
    QFETCH(int, step);
    QFETCH(int, endX);
    QFETCH(QList<int>, ticks);
    SwitchButton button;
    prepare(&button, w, h);
    QSignalSpy spy(&button, SIGNAL(statusChanged(bool)));

    QTest::mousePress(&button, Qt::LeftButton, Qt::NoModifier, QPoint(w / 2, h / 2));
    QVERIFY(button.checked());
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toBool(), true);
    QCOMPARE(button.step(), step);
    QCOMPARE(button.endX(), endX);
    QCOMPARE(button.startX(), 0);
    QVERIFY(animationTimer(&button)->isActive());

    for (int i = 0; i < ticks.size(); ++i) {
        QVERIFY2(animationTimer(&button)->isActive(), qPrintable(QStringLiteral("tick %1").arg(i + 1)));
        button.UpdateValue();
        QCOMPARE(button.startX(), ticks.at(i));
    }
    QVERIFY(!animationTimer(&button)->isActive());

    // And back: the knob slides left by the same step and is put on 0.
    QTest::mousePress(&button, Qt::LeftButton, Qt::NoModifier, QPoint(w / 2, h / 2));
    QVERIFY(!button.checked());
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy.at(1).at(0).toBool(), false);
    QCOMPARE(button.endX(), 0);
    int expected = button.startX();
    while (expected > 0) {
        expected -= step;
        button.UpdateValue();
        QCOMPARE(button.startX(), expected);
    }
    QVERIFY(animationTimer(&button)->isActive());
    button.UpdateValue();
    QCOMPARE(button.startX(), 0);
    QVERIFY(!animationTimer(&button)->isActive());
    QCOMPARE(spy.count(), 2);
}

void TestSwitchbutton::touchRunsOnTimer()
{
    SwitchButton button;
    prepare(&button, 70, 30);
    button.show();
    QVERIFY(QTest::qWaitForWindowExposed(&button));
    QSignalSpy spy(&button, SIGNAL(statusChanged(bool)));
    QElapsedTimer clock;
    clock.start();
    QTest::mousePress(&button, Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(!animationTimer(&button)->isActive(), 3000);
    // Seven ticks of 30 ms, the last one only snapping the knob back.
    QVERIFY2(clock.elapsed() >= 180, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(button.startX(), 40);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toBool(), true);
}

void TestSwitchbutton::anyButtonToggles_data()
{
    QTest::addColumn<int>("mouseButton");
    QTest::newRow("left") << int(Qt::LeftButton);
    QTest::newRow("right") << int(Qt::RightButton);
    QTest::newRow("middle") << int(Qt::MiddleButton);
}

void TestSwitchbutton::anyButtonToggles()
{
    QFETCH(int, mouseButton);
    SwitchButton button;
    prepare(&button, 70, 30);
    QSignalSpy spy(&button, SIGNAL(statusChanged(bool)));
    QTest::mousePress(&button, Qt::MouseButton(mouseButton));
    QVERIFY(button.checked());
    QTest::mouseRelease(&button, Qt::MouseButton(mouseButton));
    QVERIFY(button.checked());
    QCOMPARE(spy.count(), 1);
}

void TestSwitchbutton::touchWithoutAnimationJumps_data()
{
    QTest::addColumn<int>("w");
    QTest::addColumn<int>("h");
    QTest::addColumn<int>("endX");
    QTest::newRow("70x30") << 70 << 30 << 40;
    QTest::newRow("120x50") << 120 << 50 << 70;
}

void TestSwitchbutton::touchWithoutAnimationJumps()
{
    QFETCH(int, w);
    QFETCH(int, h);
    QFETCH(int, endX);
    SwitchButton button;
    prepare(&button, w, h);
    button.setAnimation(false);
    QSignalSpy spy(&button, SIGNAL(statusChanged(bool)));

    QTest::mousePress(&button, Qt::LeftButton);
    QCOMPARE(button.startX(), endX);
    QCOMPARE(button.endX(), endX);
    QVERIFY(!animationTimer(&button)->isActive());

    QTest::mousePress(&button, Qt::LeftButton);
    QCOMPARE(button.startX(), 0);
    QVERIFY(!animationTimer(&button)->isActive());
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy.at(0).at(0).toBool(), true);
    QCOMPARE(spy.at(1).at(0).toBool(), false);
}

void TestSwitchbutton::setCheckedSameStateChangesNothing_data()
{
    QTest::addColumn<bool>("state");
    QTest::newRow("already on") << true;
    QTest::newRow("already off") << false;
}

void TestSwitchbutton::setCheckedSameStateChangesNothing()
{
    QFETCH(bool, state);
    SwitchButton button;
    prepare(&button, 70, 30);
    if (state) {
        button.setChecked(true);
        while (animationTimer(&button)->isActive())
            button.UpdateValue();
        QCOMPARE(button.startX(), 40);
    }
    // Widen it: a recomputation would now give other numbers.
    button.resize(100, 30);
    const int step = button.step();
    const int startX = button.startX();
    const int endX = button.endX();
    QSignalSpy spy(&button, SIGNAL(statusChanged(bool)));

    button.setChecked(state);
    QCOMPARE(button.checked(), state);
    QVERIFY(!animationTimer(&button)->isActive());
    QCOMPARE(button.step(), step);
    QCOMPARE(button.startX(), startX);
    QCOMPARE(button.endX(), endX);
    QCOMPARE(spy.count(), 0);
}

void TestSwitchbutton::setCheckedNeverEmits_data()
{
    QTest::addColumn<bool>("animation");
    QTest::newRow("animated") << true;
    QTest::newRow("not animated") << false;
}

void TestSwitchbutton::setCheckedNeverEmits()
{
    QFETCH(bool, animation);
    SwitchButton button;
    prepare(&button, 70, 30);
    button.setAnimation(animation);
    QSignalSpy spy(&button, SIGNAL(statusChanged(bool)));

    button.setChecked(true);
    QVERIFY(button.checked());
    QCOMPARE(button.step(), 7);
    QCOMPARE(button.endX(), 40);
    QCOMPARE(animationTimer(&button)->isActive(), animation);
    QCOMPARE(button.startX(), animation ? 0 : 40);
    if (animation) {
        QTRY_VERIFY_WITH_TIMEOUT(!animationTimer(&button)->isActive(), 3000);
        QCOMPARE(button.startX(), 40);
    }

    button.setChecked(false);
    QVERIFY(!button.checked());
    QCOMPARE(button.endX(), 0);
    if (animation)
        QTRY_VERIFY_WITH_TIMEOUT(!animationTimer(&button)->isActive(), 3000);
    QCOMPARE(button.startX(), 0);
    QCOMPARE(spy.count(), 0);
}

void TestSwitchbutton::setCheckedWithoutAnimationDoesNotRepaint()
{
    SwitchButton button;
    prepare(&button, 70, 30);
    button.setAnimation(false);
    button.show();
    QVERIFY(QTest::qWaitForWindowExposed(&button));
    QTest::qWait(50);
    PaintCounter paints(&button);

    button.setChecked(true);
    QCOMPARE(button.startX(), 40);
    QTest::qWait(100);
    QCOMPARE(paints.count, 0);

    // The new place shows at the next repaint.
    button.repaint();
    QVERIFY(paints.count > 0);
    const QImage image = button.grab().toImage();
    QVERIFY(near(image.pixelColor(55, 15), Knob));
    QVERIFY(!near(image.pixelColor(15, 15), Knob));
}

void TestSwitchbutton::paintsTrackAndKnob_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("checked");
    QTest::addColumn<QColor>("track");
    QTest::addColumn<QPoint>("knobCentre");
    QTest::addColumn<QPoint>("trackEnd");  // far end of the track, away from the knob
    const QPoint left(15, 15);
    const QPoint right(55, 15);
    QTest::newRow("enabled off") << true << false << over(TrackOff, TrackAlpha, Background) << left << right;
    QTest::newRow("enabled on") << true << true << over(TrackOn, TrackAlpha, Background) << right << left;
    QTest::newRow("disabled off") << false << false << TrackDisabled << left << right;
    QTest::newRow("disabled on") << false << true << TrackDisabled << right << left;
}

void TestSwitchbutton::paintsTrackAndKnob()
{
    QFETCH(bool, enabled);
    QFETCH(bool, checked);
    QFETCH(QColor, track);
    QFETCH(QPoint, knobCentre);
    QFETCH(QPoint, trackEnd);
    SwitchButton button;
    prepare(&button, 70, 30);
    button.setAnimation(false);
    button.setChecked(checked);
    button.setEnabled(enabled);

    const QImage image = button.grab().toImage();
    QCOMPARE(image.size(), QSize(70, 30));
    for (const QPoint &p : {trackEnd, QPoint(35, 15), QPoint(35, 1), QPoint(35, 28)}) {
        QVERIFY2(near(image.pixelColor(p), track),
                 qPrintable(QStringLiteral("track at (%1,%2): %3, expected %4")
                                .arg(p.x()).arg(p.y())
                                .arg(describe(image.pixelColor(p)), describe(track))));
    }
    QVERIFY2(near(image.pixelColor(knobCentre), Knob), qPrintable(describe(image.pixelColor(knobCentre))));
    // The knob stays clear of the track's edge by the gap.
    QVERIFY2(near(image.pixelColor(knobCentre.x(), 1), track),
             qPrintable(describe(image.pixelColor(knobCentre.x(), 1))));
}

void TestSwitchbutton::paintsPillShape()
{
    SwitchButton button;
    prepare(&button, 70, 30);
    button.setBgColorOff(QColor(200, 0, 0));
    button.setSliderColorOff(QColor(0, 200, 0));
    const QImage image = button.grab().toImage();
    const QColor track = over(QColor(200, 0, 0), TrackAlpha, Background);
    // Round ends: the corners show the window behind.
    for (const QPoint &corner : {QPoint(0, 0), QPoint(69, 0), QPoint(0, 29), QPoint(69, 29)})
        QVERIFY2(near(image.pixelColor(corner), Background), qPrintable(describe(image.pixelColor(corner))));
    QVERIFY(near(image.pixelColor(35, 0), track));
    QVERIFY(near(image.pixelColor(68, 15), track));
    QVERIFY(near(image.pixelColor(15, 15), QColor(0, 200, 0)));
}

PANEL_GUI_TEST_MAIN(TestSwitchbutton)
#include "tst_switchbutton.moc"
