// The date and time dialog driven offscreen: fields opening the keypad with
// their ranges, the clock commands, the lock register, sizes by panel width
// and dragging.
#include "datetimedialog.h"
#include "inputdialog.h"
#include "modaldriver.h"
#include "sysreg.h"
#include "testharness.h"
#include "testpanel.h"

#include <QDateTime>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSettings>
#include <QtTest>

#include <climits>
#include <memory>

using CallList = QList<QStringList>;
Q_DECLARE_METATYPE(CallList)

namespace {

const char SettingsFile[] = "/hmi/Config/system_settings.ini";
const char *const FieldNames[] = {
    "yearLineEdit", "monthLineEdit", "dateLineEdit", "hourLineEdit", "minuteLineEdit", "secondLineEdit",
};

// The dialog is one per process; each test takes its own and deletes it.
struct DialogGuard
{
    explicit DialogGuard(DateTimeDialog *d) : dialog(d) {}
    ~DialogGuard() { delete dialog.data(); }
    QPointer<DateTimeDialog> dialog;
};

// A panel, its settings file and the one dialog, as most tests want them.
struct Bench
{
    explicit Bench(const SimulatedPanel::Options &options = SimulatedPanel::Options())
        : panel(options),
          settings(panel.path(SettingsFile), QSettings::IniFormat),
          dialog(DateTimeDialog::Instance(-1, &settings, nullptr))
    {
    }
    ~Bench() { delete dialog.data(); }

    // Shows the dialog holding the sample time.
    void showSample();

    TestPanel panel;
    QSettings settings;
    QPointer<DateTimeDialog> dialog;
};

QLineEdit *field(QWidget *dialog, const char *name)
{
    return dialog->findChild<QLineEdit *>(QLatin1String(name));
}

void setBuzzer(QSettings &settings, bool on)
{
    settings.setValue(QStringLiteral("General/buzzer"), on ? QStringLiteral("on") : QStringLiteral("off"));
    settings.sync();
}

bool setClockLock(quint8 value)
{
    return SysReg_Write(SysRegIdx::DateTimeLocked, &value, 1) == 0;
}

// Presses a field the way a finger does; returns only once any keypad the
// press opened has been answered.
void touch(QLineEdit *edit)
{
    QTest::mousePress(edit, Qt::LeftButton, Qt::NoModifier, edit->rect().center());
    QTest::mouseRelease(edit, Qt::LeftButton, Qt::NoModifier, edit->rect().center());
}

void sendMove(QWidget *dialog, const QPoint &local)
{
    QMouseEvent move(QEvent::MouseMove, local, dialog->mapToGlobal(local), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(dialog, &move);
}

QDateTime sampleTime()
{
    return QDateTime(QDate(2024, 2, 10), QTime(8, 0, 30));
}

void Bench::showSample()
{
    QDateTime time = sampleTime();
    dialog->onUpdateCurrentDateTime(time);
    dialog->show();
}

} // namespace

class TestDateTimeDialog : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void clockCommands_data();
    void clockCommands();
    void fieldsShowZeroFilled_data();
    void fieldsShowZeroFilled();
    void fieldOpensKeypadWithItsRange_data();
    void fieldOpensKeypadWithItsRange();
    void lockedClockOpensNoKeypad_data();
    void lockedClockOpensNoKeypad();
    void acceptedValueSetsTheClock_data();
    void acceptedValueSetsTheClock();
    void cancelLeavesClockUntouched_data();
    void cancelLeavesClockUntouched();
    void emptyFieldOpensNoKeypad();
    void secondInstanceIsTheSame();
    void sizesFollowPanelWidth_data();
    void sizesFollowPanelWidth();
    void titleBarDragSetsMoveFlag();
    void pressOutsideTitleBarStartsNoDrag();
    void otherObjectsEventsAreSwallowed();
    void closeButtonClosesAndBeeps_data();
    void closeButtonClosesAndBeeps();
};

void TestDateTimeDialog::init()
{
    InputDialog::p_move = false;
}

void TestDateTimeDialog::cleanup()
{
    QTRY_COMPARE(ModalDriver::pending(), 0);
}

void TestDateTimeDialog::clockCommands_data()
{
    QTest::addColumn<QList<int>>("values");
    QTest::addColumn<QByteArrayList>("commands");
    const QByteArray hwclock("hwclock --systohc --utc");
    QTest::newRow("no padding") << QList<int>{2024, 2, 10, 8, 5, 30}
        << QByteArrayList{"date -s 2024-2-10 >> /dev/null", "date -s 8:5:30 >> /dev/null", hwclock};
    QTest::newRow("lowest") << QList<int>{1970, 1, 1, 0, 0, 0}
        << QByteArrayList{"date -s 1970-1-1 >> /dev/null", "date -s 0:0:0 >> /dev/null", hwclock};
    QTest::newRow("highest") << QList<int>{2038, 12, 31, 23, 59, 59}
        << QByteArrayList{"date -s 2038-12-31 >> /dev/null", "date -s 23:59:59 >> /dev/null", hwclock};
    QTest::newRow("widest numbers") << QList<int>{INT_MIN, INT_MIN, INT_MIN, INT_MAX, INT_MAX, INT_MAX}
        << QByteArrayList{"date -s -2147483648--2147483648--2147483648 >> /dev/null",
                          "date -s 2147483647:2147483647:2147483647 >> /dev/null", hwclock};
}

void TestDateTimeDialog::clockCommands()
{
    QFETCH(QList<int>, values);
    QFETCH(QByteArrayList, commands);
    QCOMPARE(DateTimeDialog::clockCommands(values[0], values[1], values[2], values[3], values[4],
                                           values[5]),
             commands);
}

void TestDateTimeDialog::fieldsShowZeroFilled_data()
{
    QTest::addColumn<QDateTime>("time");
    QTest::addColumn<QStringList>("texts");
    QTest::newRow("small numbers") << sampleTime()
                                   << QStringList{"2024", "02", "10", "08", "00", "30"};
    QTest::newRow("largest") << QDateTime(QDate(2038, 12, 31), QTime(23, 59, 59))
                             << QStringList{"2038", "12", "31", "23", "59", "59"};
    QTest::newRow("short year") << QDateTime(QDate(987, 1, 5), QTime(0, 9, 1))
                                << QStringList{"0987", "01", "05", "00", "09", "01"};
}

void TestDateTimeDialog::fieldsShowZeroFilled()
{
    QFETCH(QDateTime, time);
    QFETCH(QStringList, texts);
    Bench bench;
    QVERIFY2(bench.panel.isValid(), qPrintable(bench.panel.errorString()));
    bench.dialog->onUpdateCurrentDateTime(time);
    for (int i = 0; i < 6; ++i)
        QCOMPARE(field(bench.dialog, FieldNames[i])->text(), texts[i]);
}

void TestDateTimeDialog::fieldOpensKeypadWithItsRange_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("minText");
    QTest::addColumn<QString>("maxText");
    QTest::addColumn<QString>("current");
    QTest::newRow("year") << "yearLineEdit" << "Min:1970" << "Max:2038" << "2024";
    QTest::newRow("month") << "monthLineEdit" << "Min:1" << "Max:12" << "2";
    QTest::newRow("day") << "dateLineEdit" << "Min:1" << "Max:31" << "10";
    QTest::newRow("hour") << "hourLineEdit" << "Min:0" << "Max:23" << "8";
    QTest::newRow("minute") << "minuteLineEdit" << "Min:0" << "Max:59" << "0";
    QTest::newRow("second") << "secondLineEdit" << "Min:0" << "Max:59" << "30";
}

void TestDateTimeDialog::fieldOpensKeypadWithItsRange()
{
    QFETCH(QString, name);
    QFETCH(QString, minText);
    QFETCH(QString, maxText);
    QFETCH(QString, current);
    Bench bench;
    QVERIFY2(bench.panel.isValid(), qPrintable(bench.panel.errorString()));
    bench.showSample();

    bool shown = false;
    QString seenMin, seenMax, seenCurrent;
    ModalDriver::onNext<InputDialog>([&](InputDialog *keypad) {
        shown = true;
        seenMin = keypad->findChild<QLabel *>(QStringLiteral("minText"))->text();
        seenMax = keypad->findChild<QLabel *>(QStringLiteral("maxText"))->text();
        seenCurrent = keypad->findChild<QLineEdit *>(QStringLiteral("numLineEdit"))->text();
        QTest::mouseClick(keypad->findChild<QPushButton *>(QStringLiteral("closePushButton")),
                          Qt::LeftButton);
    });
    touch(field(bench.dialog, qPrintable(name)));
    QVERIFY(shown);
    QCOMPARE(seenMin, minText);
    QCOMPARE(seenMax, maxText);
    QCOMPARE(seenCurrent, current);
}

void TestDateTimeDialog::lockedClockOpensNoKeypad_data()
{
    QTest::addColumn<bool>("buzzer");
    QTest::addColumn<int>("beeps");
    QTest::newRow("buzzer on") << true << 1;
    QTest::newRow("buzzer off") << false << 0;
}

void TestDateTimeDialog::lockedClockOpensNoKeypad()
{
    QFETCH(bool, buzzer);
    QFETCH(int, beeps);
    Bench bench;
    QVERIFY2(bench.panel.isValid(), qPrintable(bench.panel.errorString()));
    setBuzzer(bench.settings, buzzer);
    bench.showSample();
    QVERIFY(setClockLock(1));
    bench.panel.clearCalls();

    // A keypad would block the press in exec() until answered here.
    constexpr int WaitMs = 300;
    bool keypadShown = false;
    QTest::ignoreMessage(QtWarningMsg, "ModalDriver: no modal dialog to answer within 300 ms");
    ModalDriver::onNext<InputDialog>([&](InputDialog *keypad) {
        keypadShown = true;
        keypad->reject();
    }, WaitMs);
    QLineEdit *minute = field(bench.dialog, "minuteLineEdit");
    touch(minute);
    QTRY_COMPARE(ModalDriver::pending(), 0);
    QVERIFY(!keypadShown);
    QCOMPARE(minute->text(), QStringLiteral("00"));
    QCOMPARE(bench.panel.calls("date"), CallList());
    QCOMPARE(bench.panel.calls("hwclock"), CallList());
    QCOMPARE(bench.panel.calls("setbeep").size(), beeps);

    // The same touch with the lock cleared does open the keypad.
    QVERIFY(setClockLock(0));
    ModalDriver::onNext<InputDialog>([&](InputDialog *keypad) {
        keypadShown = true;
        keypad->reject();
    });
    touch(minute);
    QVERIFY(keypadShown);
}

void TestDateTimeDialog::acceptedValueSetsTheClock_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("time");
    QTest::newRow("minute 5") << "minuteLineEdit" << QStringList{"5", "ENTER"} << "05"
                              << "2024-2-10" << "8:5:30";
    QTest::newRow("year 2030") << "yearLineEdit" << QStringList{"2", "0", "3", "0", "ENTER"} << "2030"
                               << "2030-2-10" << "8:0:30";
    QTest::newRow("day 31 in February") << "dateLineEdit" << QStringList{"3", "1", "ENTER"} << "31"
                                        << "2024-2-31" << "8:0:30";
    QTest::newRow("hour 0") << "hourLineEdit" << QStringList{"0", "ENTER"} << "00"
                            << "2024-2-10" << "0:0:30";
    QTest::newRow("second 59") << "secondLineEdit" << QStringList{"5", "9", "ENTER"} << "59"
                               << "2024-2-10" << "8:0:59";
}

void TestDateTimeDialog::acceptedValueSetsTheClock()
{
    QFETCH(QString, name);
    QFETCH(QStringList, keys);
    QFETCH(QString, shown);
    QFETCH(QString, date);
    QFETCH(QString, time);
    Bench bench;
    QVERIFY2(bench.panel.isValid(), qPrintable(bench.panel.errorString()));
    setBuzzer(bench.settings, false);
    bench.showSample();
    bench.panel.clearCalls();

    QStringList seen;
    ModalDriver::typeOnKeypad(keys, &seen);
    QLineEdit *edit = field(bench.dialog, qPrintable(name));
    touch(edit);
    QCOMPARE(seen.size(), keys.size());
    QCOMPARE(edit->text(), shown);
    QVERIFY(bench.dialog->focusWidget() != edit);
    const CallList expected{
        {"date", "-s", date},
        {"date", "-s", time},
        {"hwclock", "--systohc", "--utc"},
    };
    QCOMPARE(bench.panel.calls(), expected);
}

void TestDateTimeDialog::cancelLeavesClockUntouched_data()
{
    QTest::addColumn<QStringList>("keys");
    QTest::newRow("close button") << QStringList{"close"};
    QTest::newRow("ENTER without a key") << QStringList{"ENTER"};
    QTest::newRow("typed, then closed") << QStringList{"4", "close"};
}

void TestDateTimeDialog::cancelLeavesClockUntouched()
{
    QFETCH(QStringList, keys);
    Bench bench;
    QVERIFY2(bench.panel.isValid(), qPrintable(bench.panel.errorString()));
    bench.showSample();
    bench.panel.clearCalls();

    QStringList seen;
    ModalDriver::typeOnKeypad(keys, &seen);
    QLineEdit *hour = field(bench.dialog, "hourLineEdit");
    touch(hour);
    QCOMPARE(seen.size(), keys.size());
    QCOMPARE(hour->text(), QStringLiteral("08"));
    QCOMPARE(bench.panel.calls("date"), CallList());
    QCOMPARE(bench.panel.calls("hwclock"), CallList());

    // The cancelled value is not kept either: the next accepted field sets
    // the clock from the values the dialog was fed.
    ModalDriver::typeOnKeypad({"7", "ENTER"});
    touch(field(bench.dialog, "secondLineEdit"));
    const CallList expected{{"date", "-s", "2024-2-10"}, {"date", "-s", "8:0:7"}};
    QCOMPARE(bench.panel.calls("date"), expected);
}

void TestDateTimeDialog::emptyFieldOpensNoKeypad()
{
    Bench bench;
    QVERIFY2(bench.panel.isValid(), qPrintable(bench.panel.errorString()));
    bench.dialog->show();
    bench.panel.clearCalls();

    bool keypadShown = false;
    QTest::ignoreMessage(QtWarningMsg, "ModalDriver: no modal dialog to answer within 300 ms");
    ModalDriver::onNext<InputDialog>([&](InputDialog *keypad) {
        keypadShown = true;
        keypad->reject();
    }, 300);
    touch(field(bench.dialog, "yearLineEdit"));
    QTRY_COMPARE(ModalDriver::pending(), 0);
    QVERIFY(!keypadShown);
    QCOMPARE(bench.panel.calls("date"), CallList());
    // The press still clicks: the buzzer of the simulated panel is on.
    QCOMPARE(bench.panel.calls("setbeep").size(), 1);
}

void TestDateTimeDialog::secondInstanceIsTheSame()
{
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    QSettings settings(panel.path(SettingsFile), QSettings::IniFormat);
    QSettings other(panel.path("/tmp/other.ini"), QSettings::IniFormat);
    DialogGuard guard(DateTimeDialog::Instance(0, &settings, nullptr));
    QVERIFY(guard.dialog);
    guard.dialog->setProperty("first", true);
    QCOMPARE(DateTimeDialog::Instance(7, &other, nullptr), guard.dialog.data());

    // Deleting the dialog forgets it: the next call makes a fresh one.
    delete guard.dialog.data();
    QVERIFY(!guard.dialog);
    guard.dialog = DateTimeDialog::Instance(7, &other, nullptr);
    QVERIFY(guard.dialog);
    QVERIFY(!guard.dialog->property("first").isValid());
}

void TestDateTimeDialog::sizesFollowPanelWidth_data()
{
    QTest::addColumn<int>("screenWidth");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("yearWidth");
    QTest::addColumn<int>("fieldWidth");
    QTest::newRow("800") << 800 << 500 << 80 << 40;
    QTest::newRow("1024") << 1024 << 500 << 80 << 40;
    QTest::newRow("1920") << 1920 << 700 << 100 << 60;
}

void TestDateTimeDialog::sizesFollowPanelWidth()
{
    QFETCH(int, screenWidth);
    QFETCH(int, width);
    QFETCH(int, yearWidth);
    QFETCH(int, fieldWidth);
    SimulatedPanel::Options options;
    options.screenWidth = screenWidth;
    Bench bench(options);
    QVERIFY2(bench.panel.isValid(), qPrintable(bench.panel.errorString()));
    DateTimeDialog *dialog = bench.dialog;
    QDateTime now = sampleTime();
    dialog->onUpdateCurrentDateTime(now);
    dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(dialog));

    QCOMPARE(dialog->size(), QSize(width, 120));
    QCOMPARE(dialog->minimumSize(), dialog->maximumSize());
    QVERIFY(dialog->windowFlags() & Qt::FramelessWindowHint);
    QCOMPARE(dialog->windowTitle(), QStringLiteral("Dialog"));
    QCOMPARE(dialog->font().weight(), int(QFont::Bold));
    QCOMPARE(dialog->font().pointSize(), 13);
    QCOMPARE(dialog->styleSheet(), QStringLiteral("#DateTimeDialog{border:3px solid rgb(0, 0, 0);}"));
    // No field looks as if it were being typed into before it is touched.
    QCOMPARE(dialog->focusWidget(), static_cast<QWidget *>(nullptr));

    auto *titleBar = dialog->findChild<QFrame *>(QStringLiteral("titleBarFrame"));
    auto *close = dialog->findChild<QPushButton *>(QStringLiteral("closePushButton"));
    QCOMPARE(titleBar->size(), QSize(width - 6, 50));
    QCOMPARE(close->size(), QSize(45, 45));
    QVERIFY(close->text().isEmpty());
    QVERIFY(titleBar->rect().contains(close->geometry()));

    // Every field and separator is whole inside the border, below the title
    // bar, and the fields do not overlap.
    const QRect inside = dialog->rect().adjusted(3, 3, -3, -3);
    QRect previous;
    for (int i = 0; i < 6; ++i) {
        QLineEdit *edit = field(dialog, FieldNames[i]);
        QCOMPARE(edit->size(), QSize(i == 0 ? yearWidth : fieldWidth, 40));
        QVERIFY(inside.contains(edit->geometry()));
        QVERIFY(edit->geometry().top() >= titleBar->geometry().bottom());
        QVERIFY(!edit->geometry().intersects(previous));
        previous = edit->geometry();
    }
    const QStringList separators{"/", "/", ":", ":"};
    const char *const labelNames[] = {"label", "label_2", "label_3", "label_4"};
    for (int i = 0; i < 4; ++i) {
        auto *label = dialog->findChild<QLabel *>(QLatin1String(labelNames[i]));
        QCOMPARE(label->text(), separators[i]);
        QVERIFY(inside.contains(label->geometry()));
        QVERIFY(label->width() >= label->sizeHint().width());
    }
}

void TestDateTimeDialog::titleBarDragSetsMoveFlag()
{
    Bench bench;
    QVERIFY2(bench.panel.isValid(), qPrintable(bench.panel.errorString()));
    DateTimeDialog *dialog = bench.dialog;
    dialog->move(100, 100);
    dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(dialog));

    auto *titleBar = dialog->findChild<QFrame *>(QStringLiteral("titleBarFrame"));
    const QPoint grip(20, 20);  // in the title bar, clear of the close button
    QTest::mousePress(titleBar, Qt::LeftButton, Qt::NoModifier, grip);
    const QPoint pressAt = titleBar->mapTo(dialog, grip);
    sendMove(dialog, pressAt + QPoint(30, 40));
    QVERIFY(InputDialog::p_move);
    // The point taken stays under the finger.
    QCOMPARE(dialog->pos(), QPoint(130, 140));
}

void TestDateTimeDialog::pressOutsideTitleBarStartsNoDrag()
{
    Bench bench;
    QVERIFY2(bench.panel.isValid(), qPrintable(bench.panel.errorString()));
    DateTimeDialog *dialog = bench.dialog;
    dialog->move(100, 100);
    dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(dialog));

    auto *titleBar = dialog->findChild<QFrame *>(QStringLiteral("titleBarFrame"));
    const QPoint below(2, titleBar->geometry().bottom() + 8);
    QVERIFY(!titleBar->geometry().adjusted(0, 0, 1, 1).contains(below));
    QVERIFY(dialog->childAt(below) == nullptr);
    QTest::mousePress(dialog, Qt::LeftButton, Qt::NoModifier, below);
    sendMove(dialog, below + QPoint(30, 40));
    QVERIFY(!InputDialog::p_move);
    QCOMPARE(dialog->pos(), QPoint(100, 100));
}

void TestDateTimeDialog::otherObjectsEventsAreSwallowed()
{
    Bench bench;
    QVERIFY2(bench.panel.isValid(), qPrintable(bench.panel.errorString()));
    QDateTime now = sampleTime();
    bench.dialog->onUpdateCurrentDateTime(now);

    QLineEdit stranger;
    QTest::keyClick(&stranger, Qt::Key_A);
    QCOMPARE(stranger.text(), QStringLiteral("a"));
    stranger.installEventFilter(bench.dialog);
    QTest::keyClick(&stranger, Qt::Key_B);
    QCOMPARE(stranger.text(), QStringLiteral("a"));

    // The dialog's own fields get their key events.
    QLineEdit *month = field(bench.dialog, "monthLineEdit");
    month->setCursorPosition(month->text().size());
    QTest::keyClick(month, Qt::Key_1);
    QCOMPARE(month->text(), QStringLiteral("021"));
}

void TestDateTimeDialog::closeButtonClosesAndBeeps_data()
{
    QTest::addColumn<bool>("buzzer");
    QTest::addColumn<int>("beeps");
    QTest::newRow("buzzer on") << true << 1;
    QTest::newRow("buzzer off") << false << 0;
}

void TestDateTimeDialog::closeButtonClosesAndBeeps()
{
    QFETCH(bool, buzzer);
    QFETCH(int, beeps);
    Bench bench;
    QVERIFY2(bench.panel.isValid(), qPrintable(bench.panel.errorString()));
    setBuzzer(bench.settings, buzzer);
    bench.dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(bench.dialog));
    bench.panel.clearCalls();

    QTest::mouseClick(bench.dialog->findChild<QPushButton *>(QStringLiteral("closePushButton")),
                      Qt::LeftButton);
    QVERIFY(!bench.dialog->isVisible());
    QCOMPARE(bench.panel.calls("setbeep").size(), beeps);
    QCOMPARE(bench.panel.calls("date"), CallList());
}

PANEL_GUI_TEST_MAIN(TestDateTimeDialog)
#include "tst_datetimedialog.moc"
