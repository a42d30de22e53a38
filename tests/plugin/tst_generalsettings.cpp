// The general settings page driven offscreen on a simulated panel: the
// brightness scales, slider, step buttons and keypad, the clock label, the
// buzzer register, the hidden backlight rows, and the page inside the real
// settings window writing the device record.
#include "datetimedialog.h"
#include "eeinfohandle.h"
#include "fiforeader.h"
#include "generalsettings.h"
#include "inputdialog.h"
#include "modaldriver.h"
#include "settings.h"
#include "sysreg.h"
#include "testharness.h"
#include "testpanel.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QSlider>
#include <QtEndian>
#include <QtTest>


namespace {

const char SettingsFile[] = "/hmi/Config/system_settings.ini";

// The page as the window sets it up, with the record changes it reports.
struct PageUnderTest
{
    explicit PageUnderTest(TestPanel &panel)
        : settings(panel.path(QLatin1String(SettingsFile)), QSettings::IniFormat)
    {
        EEInfoHandle::instance()->read_flash_wr1_info(&record);
        page.init(-1, record, &settings);
        QObject::connect(&page, &GeneralSettings::updateEEData,
                         [this](EEInfoDetail::Flash_WR_1 &changed, Settings::FlashWR1DataType type) {
                             reported << qMakePair(int(changed.brightness), int(type));
                         });
    }

    template <typename T>
    T *child(const char *name) { return page.findChild<T *>(QLatin1String(name)); }
    QLineEdit *stepEdit() { return child<QLineEdit>("brightnessLineEdit"); }
    QSlider *slider() { return child<QSlider>("brightnessSlider"); }
    QString buzzer() { return settings.value(QStringLiteral("General/buzzer")).toString(); }

    QSettings settings;
    EEInfoDetail::Flash_WR_1 record {};
    GeneralSettings page;
    QList<QPair<int, int>> reported;    // (brightness field, data type)
};

// The rows that are built but never placed have no parent: they are
// top-level widgets of their own.
template <typename T>
T *unplaced(const char *name)
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->objectName() == QLatin1String(name))
            return qobject_cast<T *>(widget);
    }
    return nullptr;
}

QLabel *unplacedLabelWithText(const QString &text)
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        auto *label = qobject_cast<QLabel *>(widget);
        if (label && label->text() == text)
            return label;
    }
    return nullptr;
}

void writeRegister(unsigned index, qint32 value)
{
    SysReg_Write(index, &value, sizeof value);
}

qint32 readRegister(unsigned index)
{
    qint32 value = 0;
    SysReg_Read(index, &value);
    return value;
}

QStringList arguments(const QList<QStringList> &calls)
{
    QStringList values;
    for (const QStringList &call : calls)
        values << call.value(1);
    return values;
}

QStringList repeated(int count, const QString &text)
{
    QStringList list;
    for (int i = 0; i < count; ++i)
        list << text;
    return list;
}

SimulatedPanel::Options withBrightness(int brightness)
{
    SimulatedPanel::Options options;
    options.brightness = brightness;
    return options;
}

} // namespace

class TestGeneralSettings : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void toOriginalValue_data();
    void toOriginalValue();
    void fromOriginalValue_data();
    void fromOriginalValue();
    void sliderValueAt_data();
    void sliderValueAt();

    void backlightOffShowsZeroZero();
    void deviceBrightnessSetsStep();
    void brightenAtTopSendsNothing();
    void darkenAtBottomSendsNothing();
    void stepButtonsSendDeviceValue_data();
    void stepButtonsSendDeviceValue();
    void sliderJumpsOnPress();

    void keypadRanges_data();
    void keypadRanges();
    void brightnessKeypadAppliesStep();
    void keypadCancelChangesNothing();
    void backlightZeroMinutesSwitchesOffAtOnce();
    void otherEditsOpenNoKeypad();

    void registerValueThreeIsOn();
    void switchingBuzzerOnBeeps();
    void keyClickRules_data();
    void keyClickRules();

    void backlightRowsAreNotShown();
    void backlightSwitchAndOn();

    void dateLabelFormat_data();
    void dateLabelFormat();
    void dayText_data();
    void dayText();
    void clockTicks();
    void settingButtonOpensDateDialog();
    void languageSwitchRetranslates();
    void sizesFollowPanelWidth_data();
    void sizesFollowPanelWidth();
    void rowsFitThePanel_data();
    void rowsFitThePanel();
    void detectProcess();

    void keypadInWindowWritesRecord();
};

void TestGeneralSettings::cleanup()
{
    // The date dialog is made once per process and keeps the settings
    // pointer of the page that made it: start every test without it.
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (qobject_cast<DateTimeDialog *>(widget))
            delete widget;
    }
    QTRY_COMPARE(ModalDriver::pending(), 0);
}

void TestGeneralSettings::toOriginalValue_data()
{
    QTest::addColumn<int>("step");
    QTest::addColumn<int>("raw");
    QTest::newRow("1") << 1 << 76;
    QTest::newRow("2") << 2 << 80;
    QTest::newRow("19") << 19 << 148;
    QTest::newRow("20") << 20 << 152;
    QTest::newRow("32") << 32 << 200;
    QTest::newRow("0 not clamped") << 0 << 72;
    QTest::newRow("33 not clamped") << 33 << 204;
}

void TestGeneralSettings::toOriginalValue()
{
    QFETCH(int, step);
    QFETCH(int, raw);
    QCOMPARE(GeneralSettings::convertBrightnessToOriginalValue(step), raw);
}

void TestGeneralSettings::fromOriginalValue_data()
{
    QTest::addColumn<int>("raw");
    QTest::addColumn<int>("step");
    QTest::newRow("0 off") << 0 << 0;
    QTest::newRow("-5") << -5 << 0;
    QTest::newRow("75") << 75 << 0;
    QTest::newRow("76") << 76 << 1;
    QTest::newRow("77") << 77 << 1;
    QTest::newRow("78") << 78 << 1;
    QTest::newRow("79") << 79 << 1;
    QTest::newRow("80") << 80 << 2;
    QTest::newRow("148") << 148 << 19;
    QTest::newRow("200") << 200 << 32;
    QTest::newRow("203") << 203 << 32;
    QTest::newRow("204 not clamped") << 204 << 33;
    QTest::newRow("255") << 255 << 45;
}

void TestGeneralSettings::fromOriginalValue()
{
    QFETCH(int, raw);
    QFETCH(int, step);
    QCOMPARE(GeneralSettings::convertBrightnessFromOriginalValue(raw), step);
}

void TestGeneralSettings::sliderValueAt_data()
{
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("value");
    QTest::newRow("left edge") << 0 << 320 << 1;
    QTest::newRow("just below 2") << 9 << 320 << 1;
    QTest::newRow("first of 2") << 10 << 320 << 2;
    QTest::newRow("middle") << 160 << 320 << 17;
    QTest::newRow("right edge") << 319 << 320 << 32;
    QTest::newRow("250 wide, 7") << 7 << 250 << 1;
    QTest::newRow("250 wide, 8") << 8 << 250 << 2;
    QTest::newRow("250 wide, 249") << 249 << 250 << 32;
    QTest::newRow("600 wide, 299") << 299 << 600 << 16;
    QTest::newRow("no width") << 10 << 0 << 1;
}

void TestGeneralSettings::sliderValueAt()
{
    QFETCH(int, x);
    QFETCH(int, width);
    QFETCH(int, value);
    QCOMPARE(GeneralSettings::sliderValueAt(1, 32, x, width), value);
}

void TestGeneralSettings::backlightOffShowsZeroZero()
{
    TestPanel panel(withBrightness(0));
    PageUnderTest t(panel);
    QCOMPARE(t.stepEdit()->text(), QStringLiteral("00"));
    QCOMPARE(t.slider()->value(), 1);
    // Showing the page leaves the backlight off.
    QVERIFY(panel.calls("setbright").isEmpty());
    QVERIFY(t.reported.isEmpty());
}

void TestGeneralSettings::deviceBrightnessSetsStep()
{
    TestPanel panel(withBrightness(200));
    PageUnderTest t(panel);
    QCOMPARE(t.stepEdit()->text(), QStringLiteral("32"));
    QCOMPARE(t.slider()->value(), 32);
    QCOMPARE(t.slider()->minimum(), 1);
    QCOMPARE(t.slider()->maximum(), 32);
    QVERIFY(!t.slider()->hasTracking());
    QCOMPARE(t.slider()->pageStep(), 0);
}

void TestGeneralSettings::brightenAtTopSendsNothing()
{
    TestPanel panel(withBrightness(200));
    writeRegister(SysRegIdx::KeyBuzzer, 1);
    PageUnderTest t(panel);
    panel.clearCalls();
    QTest::mouseClick(t.child<QPushButton>("brightenButton"), Qt::LeftButton);
    t.page.onBrightenClicked();
    QCOMPARE(t.stepEdit()->text(), QStringLiteral("32"));
    QCOMPARE(t.slider()->value(), 32);
    QVERIFY(panel.calls("setbright").isEmpty());
    QVERIFY(panel.calls("setbeep").isEmpty());
    QVERIFY(t.reported.isEmpty());
}

void TestGeneralSettings::darkenAtBottomSendsNothing()
{
    for (int brightness : {76, 0}) {
        TestPanel panel(withBrightness(brightness));
        writeRegister(SysRegIdx::KeyBuzzer, 1);
        PageUnderTest t(panel);
        const QString shown = t.stepEdit()->text();
        panel.clearCalls();
        QTest::mouseClick(t.child<QPushButton>("darkenButton"), Qt::LeftButton);
        t.page.onDarkenClicked();
        QCOMPARE(t.stepEdit()->text(), shown);
        QCOMPARE(t.slider()->value(), 1);
        QVERIFY(panel.calls("setbright").isEmpty());
        QVERIFY(panel.calls("setbeep").isEmpty());
        QVERIFY(t.reported.isEmpty());
    }
}

void TestGeneralSettings::stepButtonsSendDeviceValue_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("buzzerOn");
    QTest::addColumn<int>("step");
    QTest::newRow("brighten, buzzer on") << "brightenButton" << true << 20;
    QTest::newRow("brighten, buzzer off") << "brightenButton" << false << 20;
    QTest::newRow("darken, buzzer on") << "darkenButton" << true << 18;
    QTest::newRow("darken, buzzer off") << "darkenButton" << false << 18;
}

void TestGeneralSettings::stepButtonsSendDeviceValue()
{
    QFETCH(QString, button);
    QFETCH(bool, buzzerOn);
    QFETCH(int, step);
    TestPanel panel(withBrightness(148));   // step 19
    writeRegister(SysRegIdx::KeyBuzzer, buzzerOn ? 1 : 0);
    PageUnderTest t(panel);
    panel.clearCalls();
    QTest::mouseClick(t.page.findChild<QPushButton *>(button), Qt::LeftButton);

    const int device = (step + 18) * 4;
    QCOMPARE(t.stepEdit()->text(), QString::number(step));
    QCOMPARE(t.slider()->value(), step);
    const QStringList sent = arguments(panel.calls("setbright"));
    QVERIFY(!sent.isEmpty());
    QCOMPARE(sent, repeated(sent.size(), QString::number(device)));
    QCOMPARE(panel.readFile(QStringLiteral("/sim/brightness")).trimmed(), QByteArray::number(device));
    QCOMPARE(panel.calls("setbeep").size(), buzzerOn ? 1 : 0);
    QVERIFY(!t.reported.isEmpty());
    for (const auto &report : t.reported)
        QCOMPARE(report, qMakePair(device, int(Settings::Brightness)));
}

void TestGeneralSettings::sliderJumpsOnPress()
{
    TestPanel panel(withBrightness(148));   // step 19
    PageUnderTest t(panel);
    t.page.resize(1000, 400);
    t.page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&t.page));
    QSlider *slider = t.slider();
    slider->setFixedWidth(320);
    QTRY_COMPARE(slider->width(), 320);
    const int y = slider->height() / 2;

    panel.clearCalls();
    QTest::mousePress(slider, Qt::LeftButton, Qt::NoModifier, QPoint(160, y));
    QTest::mouseRelease(slider, Qt::LeftButton, Qt::NoModifier, QPoint(160, y));
    QCOMPARE(slider->value(), 17);
    QCOMPARE(t.stepEdit()->text(), QStringLiteral("17"));
    QCOMPARE(arguments(panel.calls("setbright")), QStringList{QStringLiteral("140")});
    QCOMPARE(t.reported, (QList<QPair<int, int>>{{140, 1}}));

    // A press that lands on the current value changes nothing.
    panel.clearCalls();
    QTest::mousePress(slider, Qt::LeftButton, Qt::NoModifier, QPoint(165, y));
    QTest::mouseRelease(slider, Qt::LeftButton, Qt::NoModifier, QPoint(165, y));
    QCOMPARE(slider->value(), 17);
    QVERIFY(panel.calls("setbright").isEmpty());

    QTest::mousePress(slider, Qt::LeftButton, Qt::NoModifier, QPoint(319, y));
    QTest::mouseRelease(slider, Qt::LeftButton, Qt::NoModifier, QPoint(319, y));
    QCOMPARE(slider->value(), 32);
    QCOMPARE(arguments(panel.calls("setbright")), QStringList{QStringLiteral("200")});

    // Only the left button jumps.
    panel.clearCalls();
    QMouseEvent rightPress(QEvent::MouseButtonPress, QPointF(10, y), Qt::RightButton, Qt::RightButton,
                           Qt::NoModifier);
    QApplication::sendEvent(slider, &rightPress);
    QCOMPARE(slider->value(), 32);
    QVERIFY(panel.calls("setbright").isEmpty());
}

void TestGeneralSettings::keypadRanges_data()
{
    QTest::addColumn<QString>("edit");
    QTest::addColumn<QString>("min");
    QTest::addColumn<QString>("max");
    QTest::newRow("brightness") << "brightnessLineEdit" << "1" << "32";
    QTest::newRow("backlight minutes") << "backlightOff" << "0" << "65535";
}

void TestGeneralSettings::keypadRanges()
{
    QFETCH(QString, edit);
    QFETCH(QString, min);
    QFETCH(QString, max);
    TestPanel panel;
    PageUnderTest t(panel);
    QLineEdit *field = t.page.findChild<QLineEdit *>(edit);
    if (!field)
        field = unplaced<QLineEdit>(qPrintable(edit));
    QVERIFY(field);
    field->setText(QStringLiteral("7"));
    QString minText, maxText, current;
    ModalDriver::onNext<InputDialog>([&](InputDialog *keypad) {
        minText = keypad->findChild<QLabel *>(QStringLiteral("minText"))->text();
        maxText = keypad->findChild<QLabel *>(QStringLiteral("maxText"))->text();
        current = keypad->findChild<QLineEdit *>(QStringLiteral("numLineEdit"))->text();
        keypad->findChild<QPushButton *>(QStringLiteral("closePushButton"))->click();
    });
    t.page.doModal(field);
    QVERIFY(minText.endsWith(min));
    QVERIFY(!minText.endsWith(QLatin1Char('1') + min));
    QVERIFY(maxText.endsWith(max));
    QCOMPARE(current, QStringLiteral("7"));
}

void TestGeneralSettings::brightnessKeypadAppliesStep()
{
    TestPanel panel(withBrightness(148));
    PageUnderTest t(panel);
    panel.clearCalls();
    QStringList shown;
    ModalDriver::typeOnKeypad({"5", "ENTER"}, &shown);
    // A press on the field opens the keypad through the page's filter.
    QTest::mouseClick(t.stepEdit(), Qt::LeftButton);
    QCOMPARE(shown.value(0), QStringLiteral("5"));
    QCOMPARE(t.slider()->value(), 5);
    QCOMPARE(t.stepEdit()->text(), QStringLiteral("05"));
    const QStringList sent = arguments(panel.calls("setbright"));
    QVERIFY(!sent.isEmpty());
    QCOMPARE(sent, repeated(sent.size(), QStringLiteral("92")));
    QCOMPARE(t.reported.last(), qMakePair(92, 1));
}

void TestGeneralSettings::keypadCancelChangesNothing()
{
    TestPanel panel(withBrightness(148));
    PageUnderTest t(panel);
    panel.clearCalls();
    ModalDriver::typeOnKeypad({"7", "close"});
    t.page.doModal(t.stepEdit());
    ModalDriver::typeOnKeypad({"ENTER"});   // ENTER before any key is a cancel too
    t.page.doModal(t.stepEdit());
    QCOMPARE(t.stepEdit()->text(), QStringLiteral("19"));
    QCOMPARE(t.slider()->value(), 19);
    QVERIFY(panel.calls("setbright").isEmpty());
    QVERIFY(t.reported.isEmpty());
}

void TestGeneralSettings::backlightZeroMinutesSwitchesOffAtOnce()
{
    TestPanel panel(withBrightness(148));
    PageUnderTest t(panel);
    auto *minutes = unplaced<QLineEdit>("backlightOff");
    QVERIFY(minutes);
    panel.clearCalls();
    ModalDriver::typeOnKeypad({"0", "ENTER"});
    t.page.doModal(minutes);
    QCOMPARE(minutes->text(), QStringLiteral("0"));
    // Armed, not yet run: the zero-delay timer fires from the event loop.
    QVERIFY(panel.calls("setbright").isEmpty());
    QTRY_COMPARE_WITH_TIMEOUT(arguments(panel.calls("setbright")), QStringList{QStringLiteral("0")}, 200);
    QCOMPARE(t.reported, (QList<QPair<int, int>>{{0, int(Settings::Brightness)}}));
    QCOMPARE(panel.readFile(QStringLiteral("/sim/brightness")).trimmed(), QByteArray("0"));
    // The step shown is kept for switching the backlight on again.
    QCOMPARE(t.stepEdit()->text(), QStringLiteral("19"));
}

void TestGeneralSettings::otherEditsOpenNoKeypad()
{
    TestPanel panel;
    writeRegister(SysRegIdx::KeyBuzzer, 1);
    PageUnderTest t(panel);
    auto *initial = unplaced<QLineEdit>("initialWindow");
    QVERIFY(initial);
    bool opened = false;
    ModalDriver::onNextModal([&opened](QWidget *modal) {
        opened = true;
        modal->close();
        return true;
    }, 300);
    panel.clearCalls();
    t.page.doModal(initial);
    t.page.doModal(nullptr);
    QTRY_COMPARE(ModalDriver::pending(), 0);
    QVERIFY(!opened);
    // Each touch still clicks.
    QCOMPARE(panel.calls("setbeep").size(), 2);
}

void TestGeneralSettings::registerValueThreeIsOn()
{
    TestPanel panel;
    // Register 79 is one bit; the byte read for it also carries the WLAN
    // switch bit above it, so "on" with WLAN off reads as 3.
    writeRegister(SysRegIdx::KeyBuzzer, 1);
    writeRegister(SysRegIdx::WlanDisabled, 1);
    QCOMPARE(readRegister(SysRegIdx::KeyBuzzer), 3);
    QSettings(panel.path(QLatin1String(SettingsFile)), QSettings::IniFormat)
        .setValue(QStringLiteral("General/buzzer"), QStringLiteral("off"));

    PageUnderTest t(panel);
    auto *buzzer = t.child<QPushButton>("buzzerSwitch");
    QCOMPARE(buzzer->styleSheet(), QStringLiteral("border-image:url(:/Resources/switch_on.png);"));
    QCOMPARE(t.buzzer(), QStringLiteral("on"));
    QCOMPARE(buzzer->focusPolicy(), Qt::NoFocus);

    FifoReader fifo(panel.path(QStringLiteral("/tmp/fifo_sysreg")));
    QVERIFY(fifo.isOpen());
    panel.clearCalls();
    QTest::mouseClick(buzzer, Qt::LeftButton);
    QCOMPARE(readRegister(SysRegIdx::KeyBuzzer) & 1, 0);
    QCOMPARE(readRegister(SysRegIdx::WlanDisabled) & 1, 1);
    QCOMPARE(fifo.registerIndices(), QList<quint32>{SysRegIdx::KeyBuzzer});
    QCOMPARE(buzzer->styleSheet(), QStringLiteral("border-image:url(:/Resources/switch_off.png);"));
    QCOMPARE(t.buzzer(), QStringLiteral("off"));
    QVERIFY(panel.calls("setbeep").isEmpty());
    QVERIFY(t.reported.isEmpty());
}

void TestGeneralSettings::switchingBuzzerOnBeeps()
{
    TestPanel panel;
    writeRegister(SysRegIdx::KeyBuzzer, 0);
    PageUnderTest t(panel);
    // The simulated panel's file says "on"; the register wins.
    QCOMPARE(t.buzzer(), QStringLiteral("off"));
    auto *buzzer = t.child<QPushButton>("buzzerSwitch");
    QCOMPARE(buzzer->styleSheet(), QStringLiteral("border-image:url(:/Resources/switch_off.png);"));

    FifoReader fifo(panel.path(QStringLiteral("/tmp/fifo_sysreg")));
    panel.clearCalls();
    QTest::mouseClick(buzzer, Qt::LeftButton);
    QCOMPARE(readRegister(SysRegIdx::KeyBuzzer), 1);
    QCOMPARE(fifo.registerIndices(), QList<quint32>{SysRegIdx::KeyBuzzer});
    QCOMPARE(t.buzzer(), QStringLiteral("on"));
    QCOMPARE(buzzer->styleSheet(), QStringLiteral("border-image:url(:/Resources/switch_on.png);"));
    QCOMPARE(panel.calls("setbeep").size(), 1);
}

void TestGeneralSettings::keyClickRules_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("buzzerOn");
    QTest::addColumn<int>("beeps");
    QTest::newRow("setting, on") << "settingButton" << true << 1;
    QTest::newRow("setting, off") << "settingButton" << false << 0;
    QTest::newRow("backlight switch, on") << "backlightSwitch" << true << 1;
    QTest::newRow("brighten, on") << "brightenButton" << true << 0;
    QTest::newRow("darken, on") << "darkenButton" << true << 0;
    QTest::newRow("buzzer switch, on") << "buzzerSwitch" << true << 0;
}

void TestGeneralSettings::keyClickRules()
{
    QFETCH(QString, button);
    QFETCH(bool, buzzerOn);
    QFETCH(int, beeps);
    TestPanel panel;
    writeRegister(SysRegIdx::KeyBuzzer, buzzerOn ? 1 : 0);
    PageUnderTest t(panel);
    auto *target = t.page.findChild<QPushButton *>(button);
    if (!target)
        target = unplaced<QPushButton>(qPrintable(button));
    QVERIFY(target);
    panel.clearCalls();
    // A press alone: the filter's own click, no slot behind the button.
    QTest::mousePress(target, Qt::LeftButton);
    QCOMPARE(panel.calls("setbeep").size(), beeps);
    // The filter passes the press on: the button went down.
    QVERIFY(target->isDown());
    // Let go outside the button, so that no slot runs.
    QMouseEvent release(QEvent::MouseButtonRelease, QPointF(-10, -10), Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    QApplication::sendEvent(target, &release);
    QVERIFY(!target->isDown());
}

void TestGeneralSettings::backlightRowsAreNotShown()
{
    TestPanel panel;
    PageUnderTest t(panel);
    t.page.resize(1000, 400);
    t.page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&t.page));
    for (const char *name : {"backlightOff", "backlightSwitch", "initialWindow"}) {
        QWidget *widget = unplaced<QWidget>(name);
        QVERIFY2(widget, name);
        QVERIFY(!widget->isVisible());
        QVERIFY(!t.page.isAncestorOf(widget));
    }
    QVERIFY(unplacedLabelWithText(QStringLiteral("Auto Backlight Off:")));
    QVERIFY(unplacedLabelWithText(QStringLiteral("Initial Window:")));
    for (QLabel *label : t.page.findChildren<QLabel *>())
        QVERIFY(!label->text().contains(QLatin1String("Backlight")));
    // What the page does show.
    for (const char *name : {"brightnessLineEdit", "darkenButton", "brightenButton", "brightnessSlider",
                             "dateTimeLabel", "settingButton", "buzzerSwitch"})
        QVERIFY2(t.page.findChild<QWidget *>(QLatin1String(name))->isVisible(), name);
}

void TestGeneralSettings::backlightSwitchAndOn()
{
    TestPanel panel(withBrightness(148));
    PageUnderTest t(panel);
    auto *backlight = unplaced<QPushButton>("backlightSwitch");
    auto *minutes = unplaced<QLineEdit>("backlightOff");
    QVERIFY(backlight && minutes);
    QCOMPARE(backlight->styleSheet(), QStringLiteral("border-image:url(:/Resources/switch_off.png);"));

    minutes->setText(QStringLiteral("0"));
    panel.clearCalls();
    QTest::mouseClick(backlight, Qt::LeftButton);
    QCOMPARE(backlight->styleSheet(), QStringLiteral("border-image:url(:/Resources/switch_on.png);"));
    QVERIFY(minutes->isEnabled());
    QTRY_COMPARE_WITH_TIMEOUT(arguments(panel.calls("setbright")), QStringList{QStringLiteral("0")}, 200);

    QTest::mouseClick(backlight, Qt::LeftButton);
    QCOMPARE(backlight->styleSheet(), QStringLiteral("border-image:url(:/Resources/switch_off.png);"));
    QVERIFY(!minutes->isEnabled());

    // Switching the backlight on again restores the step shown.
    panel.clearCalls();
    t.reported.clear();
    t.stepEdit()->setText(QStringLiteral("x"));
    t.page.onBacklightOn();
    QCOMPARE(arguments(panel.calls("setbright")), QStringList{QStringLiteral("148")});
    QCOMPARE(t.stepEdit()->text(), QStringLiteral("19"));
    QCOMPARE(t.reported, (QList<QPair<int, int>>{{148, 1}}));
}

void TestGeneralSettings::dateLabelFormat_data()
{
    QTest::addColumn<QDateTime>("moment");
    QTest::addColumn<QString>("text");
    QTest::newRow("Sunday 5 March 2023") << QDateTime(QDate(2023, 3, 5), QTime(9, 7, 3))
                                         << "2023/03/05   Sun    09:07:03";
    QTest::newRow("new year's eve") << QDateTime(QDate(1999, 12, 31), QTime(23, 59, 59))
                                    << "1999/12/31   Fri    23:59:59";
    QTest::newRow("short year") << QDateTime(QDate(999, 1, 4), QTime(0, 0, 0)) << " 999/01/04   Fri    00:00:00";
    QTest::newRow("invalid") << QDateTime() << QString();
}

void TestGeneralSettings::dateLabelFormat()
{
    QFETCH(QDateTime, moment);
    QFETCH(QString, text);
    TestPanel panel;
    GeneralSettings page;
    if (!moment.isValid()) {
        // No date: no crash, the day reads as invalid.
        QVERIFY(page.dateTimeText(moment).contains(QLatin1String("Invalid Day")));
        return;
    }
    QCOMPARE(page.dateTimeText(moment), text);
}

void TestGeneralSettings::dayText_data()
{
    QTest::addColumn<int>("day");
    QTest::addColumn<QString>("english");
    QTest::addColumn<QString>("chinese");
    QTest::newRow("1") << 1 << "Mon" << "周一";
    QTest::newRow("2") << 2 << "Tue" << "周二";
    QTest::newRow("3") << 3 << "Wed" << "周三";
    QTest::newRow("4") << 4 << "Thu" << "周四";
    QTest::newRow("5") << 5 << "Fri" << "周五";
    QTest::newRow("6") << 6 << "Sat" << "周六";
    QTest::newRow("7") << 7 << "Sun" << "周日";
    QTest::newRow("0") << 0 << "Invalid Day" << "无效日期";
    QTest::newRow("8") << 8 << "Invalid Day" << "无效日期";
    QTest::newRow("-1") << -1 << "Invalid Day" << "无效日期";
}

void TestGeneralSettings::dayText()
{
    QFETCH(int, day);
    QFETCH(QString, english);
    QFETCH(QString, chinese);
    TestPanel panel;
    GeneralSettings page;
    QCOMPARE(page.getDayText(day), english);
    page.onChangeLanguage(Settings::Chinese);
    QCOMPARE(page.getDayText(day), chinese);
    page.onChangeLanguage(Settings::English);
    QCOMPARE(page.getDayText(day), english);
}

void TestGeneralSettings::clockTicks()
{
    TestPanel panel;
    PageUnderTest t(panel);
    auto *label = t.child<QLabel>("dateTimeLabel");
    const QRegularExpression format(
        QStringLiteral("^\\d{4}/\\d\\d/\\d\\d   (Mon|Tue|Wed|Thu|Fri|Sat|Sun)    \\d\\d:\\d\\d:\\d\\d$"));
    QVERIFY2(format.match(label->text()).hasMatch(), qPrintable(label->text()));
    QList<QDateTime> ticks;
    connect(&t.page, &GeneralSettings::updateCurrentDateTime, this,
            [&ticks](QDateTime &moment) { ticks << moment; });
    const QString first = label->text();
    QTRY_VERIFY_WITH_TIMEOUT(ticks.size() >= 1, 1500);
    QCOMPARE(label->text(), t.page.dateTimeText(ticks.last()));
    QVERIFY(qAbs(ticks.last().secsTo(QDateTime::currentDateTime())) <= 2);
    QTRY_VERIFY_WITH_TIMEOUT(label->text() != first, 2500);
}

void TestGeneralSettings::settingButtonOpensDateDialog()
{
    TestPanel panel;
    writeRegister(SysRegIdx::KeyBuzzer, 1);
    PageUnderTest t(panel);
    QList<QDateTime> fed;
    connect(&t.page, &GeneralSettings::updateCurrentDateTime, this,
            [&fed](QDateTime &moment) { fed << moment; });
    bool shown = false;
    bool fedBeforeShown = false;
    ModalDriver::onNext<DateTimeDialog>([&](DateTimeDialog *dialog) {
        shown = true;
        fedBeforeShown = !fed.isEmpty();
        dialog->reject();
    });
    panel.clearCalls();
    QTest::mouseClick(t.child<QPushButton>("settingButton"), Qt::LeftButton);
    QVERIFY(shown);
    QVERIFY(fedBeforeShown);
    QVERIFY(qAbs(fed.first().secsTo(QDateTime::currentDateTime())) <= 2);
    QVERIFY(panel.calls("setbeep").size() >= 1);
}

void TestGeneralSettings::languageSwitchRetranslates()
{
    TestPanel panel;
    PageUnderTest t(panel);
    auto captions = [&t]() {
        QStringList texts;
        for (QLabel *label : t.page.findChildren<QLabel *>())
            texts << label->text();
        texts << t.child<QPushButton>("settingButton")->text();
        return texts;
    };
    t.page.onChangeLanguage(Settings::Chinese);
    QStringList texts = captions();
    for (const char *chinese : {"亮度：", "日期时间：", "蜂鸣器：", "设置"})
        QVERIFY2(texts.contains(QString::fromUtf8(chinese)), chinese);
    QVERIFY(unplacedLabelWithText(QStringLiteral("自动关闭背光：")));
    QVERIFY(unplacedLabelWithText(QStringLiteral("初始画面：")));
    const QString day = t.page.getDayText(QDate::currentDate().dayOfWeek());
    QVERIFY(day.startsWith(QStringLiteral("周")));
    QVERIFY(t.child<QLabel>("dateTimeLabel")->text().contains(day));

    t.page.onChangeLanguage(Settings::English);
    texts = captions();
    for (const char *english : {"Brightness:", "Date&Time:", "Buzzer:", "setting"})
        QVERIFY2(texts.contains(QLatin1String(english)), english);
    QVERIFY(unplacedLabelWithText(QStringLiteral("Auto Backlight Off:")));
    QVERIFY(!t.child<QLabel>("dateTimeLabel")->text().contains(QStringLiteral("周")));
}

void TestGeneralSettings::sizesFollowPanelWidth_data()
{
    QTest::addColumn<int>("panelWidth");
    QTest::addColumn<int>("sliderWidth");
    QTest::addColumn<int>("buttonWidth");
    QTest::newRow("800") << 800 << 250 << 100;
    QTest::newRow("1024") << 1024 << 250 << 100;
    QTest::newRow("1280") << 1280 << 350 << 100;
    QTest::newRow("1920") << 1920 << 600 << 120;
}

void TestGeneralSettings::sizesFollowPanelWidth()
{
    QFETCH(int, panelWidth);
    QFETCH(int, sliderWidth);
    QFETCH(int, buttonWidth);
    SimulatedPanel::Options options;
    options.screenWidth = panelWidth;
    TestPanel panel(options);
    PageUnderTest t(panel);
    QCOMPARE(t.slider()->minimumWidth(), sliderWidth);
    QCOMPARE(t.slider()->minimumHeight(), 32);
    QCOMPARE(t.child<QPushButton>("settingButton")->size(), QSize(buttonWidth, 40));
    QCOMPARE(t.stepEdit()->size(), QSize(70, 40));
    QCOMPARE(t.child<QPushButton>("buzzerSwitch")->size(), QSize(70, 30));
}

void TestGeneralSettings::rowsFitThePanel_data()
{
    QTest::addColumn<QSize>("screen");
    QTest::addColumn<Settings::Language>("language");
    QTest::newRow("800x480 Chinese") << QSize(800, 480) << Settings::Chinese;
    QTest::newRow("800x480 English") << QSize(800, 480) << Settings::English;
    QTest::newRow("1920x1080 Chinese") << QSize(1920, 1080) << Settings::Chinese;
    QTest::newRow("1920x1080 English") << QSize(1920, 1080) << Settings::English;
}

void TestGeneralSettings::rowsFitThePanel()
{
    QFETCH(QSize, screen);
    QFETCH(Settings::Language, language);
    SimulatedPanel::Options options;
    options.screenWidth = screen.width();
    TestPanel panel(options);
    Settings window;
    window.init();
    window.setFixedSize(screen);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.updateLanguage(language);
    auto *page = window.findChild<GeneralSettings *>();
    QVERIFY(page);
    QTRY_VERIFY(page->isVisible() && page->width() > 0);
    QTest::qWait(50);   // the new captions' layout pass

    QList<QWidget *> shown;
    for (QWidget *widget : page->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (widget->isVisible() && (qobject_cast<QLabel *>(widget) || qobject_cast<QPushButton *>(widget)
                                    || qobject_cast<QSlider *>(widget) || qobject_cast<QLineEdit *>(widget)))
            shown << widget;
    }
    QCOMPARE(shown.size(), 13);
    for (QWidget *widget : shown) {
        const QString name = widget->objectName() + QLatin1Char(' ') + widget->metaObject()->className();
        QVERIFY2(page->rect().contains(widget->geometry()), qPrintable(name + QStringLiteral(" leaves the page")));
        // A label narrower than its text would clip it.
        if (auto *label = qobject_cast<QLabel *>(widget))
            QVERIFY2(label->width() >= label->minimumSizeHint().width(),
                     qPrintable(QStringLiteral("%1: %2 < %3, page %4").arg(label->text()).arg(label->width()).arg(label->minimumSizeHint().width()).arg(page->width())));
        for (QWidget *other : shown) {
            if (other != widget)
                QVERIFY2(!widget->geometry().intersects(other->geometry()),
                         qPrintable(name + QStringLiteral(" overlaps ") + other->objectName()));
        }
    }
}

void TestGeneralSettings::detectProcess()
{
    TestPanel panel;
    const QString bin = panel.path(QStringLiteral("/sim/psbin"));
    QVERIFY(QDir().mkpath(bin));
    const QByteArray longTail(300, 'x');
    QVERIFY(panel.writeFile(QStringLiteral("/sim/psbin/ps"),
                            "#!/bin/sh\n"
                            "echo '  4242 root     /hmi/hmiapp'\n"
                            "echo '  77 root     /usr/bin/other'\n"
                            "echo '555 root /usr/bin/longname" + longTail + "'\n"));
    QFile(bin + QStringLiteral("/ps")).setPermissions(QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(bin) + ':' + path);
    const int found = GeneralSettings::detect_process("hmiapp");
    const int other = GeneralSettings::detect_process("other");
    const int longLine = GeneralSettings::detect_process("longname");
    const int missing = GeneralSettings::detect_process("nosuchprogram");
    const int tooLong = GeneralSettings::detect_process(QByteArray(400, 'a').constData());
    qputenv("PATH", path);
    QCOMPARE(found, 4242);
    QCOMPARE(other, 77);
    QCOMPARE(longLine, 555);
    QCOMPARE(missing, 1);
    QCOMPARE(tooLong, -1);
}

void TestGeneralSettings::keypadInWindowWritesRecord()
{
    TestPanel panel(withBrightness(148));
    Settings window;
    window.init();
    auto *page = window.findChild<GeneralSettings *>();
    QVERIFY(page);
    auto *edit = page->findChild<QLineEdit *>(QStringLiteral("brightnessLineEdit"));
    QVERIFY(edit);
    QCOMPARE(edit->text(), QStringLiteral("19"));

    const QByteArray before = panel.image();
    QCOMPARE(before.size(), 1024);
    panel.clearCalls();
    ModalDriver::typeOnKeypad({"2", "0", "ENTER"});
    QTest::mouseClick(edit, Qt::LeftButton);
    QElapsedTimer sinceEntry;
    sinceEntry.start();
    const int writesAtEntry = panel.calls("writeee").size();

    QCOMPARE(edit->text(), QStringLiteral("20"));
    QVERIFY(arguments(panel.calls("setbright")).contains(QStringLiteral("152")));
    QVERIFY(writesAtEntry >= 1);
    const QByteArray after = panel.image();
    QCOMPARE(after.size(), before.size());
    for (int i = 0; i < after.size(); ++i) {
        if (i != EEInfoDetail::Flash_WR_1::BrightnessOffset && i != EEInfoDetail::Flash_WR_1::BrightnessOffset + 1)
            QVERIFY2(after.at(i) == before.at(i), qPrintable(QStringLiteral("byte %1 changed").arg(i)));
    }
    QCOMPARE(qFromLittleEndian<quint16>(after.constData() + EEInfoDetail::Flash_WR_1::BrightnessOffset), quint16(152));

    // The window writes the brightness once more on its next second.
    QTRY_VERIFY_WITH_TIMEOUT(panel.calls("writeee").size() > writesAtEntry, 1300);
    QTest::qWait(int(qMax<qint64>(0, 1300 - sinceEntry.elapsed())));
    QCOMPARE(panel.calls("writeee").size(), writesAtEntry + 1);
    QCOMPARE(qFromLittleEndian<quint16>(panel.image().constData() + EEInfoDetail::Flash_WR_1::BrightnessOffset),
             quint16(152));
}

PANEL_GUI_TEST_MAIN(TestGeneralSettings)
#include "tst_generalsettings.moc"
