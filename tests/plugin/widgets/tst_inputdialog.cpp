// The numeric keypad, driven key by key offscreen with its modal run
// answered from timers, as the pages use it.
#include "inputdialog.h"
#include "modaldriver.h"
#include "testharness.h"
#include "testpanel.h"

#include <QFrame>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>
#include <QSettings>
#include <QTranslator>
#include <QtTest>

namespace {

const char SettingsFile[] = "/hmi/Config/system_settings.ini";

struct Run {
    int result = -1;
    QStringList shown;       // the number field after each key
    QString boxTitle;
    QString boxText;
    QString fieldAtOpen;
};

// Opens a keypad on range min..max with current, types keys, and answers
// an out-of-range box if one comes (then closes the keypad) when
// expectBox is set.
Run runKeypad(int min, int max, int current, const QStringList &keys, bool expectBox = false,
              QSettings *settings = nullptr)
{
    Run run;
    InputDialog *keypad = InputDialog::Instance(-1, min, max, current, settings, nullptr);
    run.fieldAtOpen = keypad->findChild<QLineEdit *>("numLineEdit")->text();
    ModalDriver::typeOnKeypad(keys, &run.shown);
    if (expectBox) {
        ModalDriver::acceptMessageBox(&run.boxTitle, &run.boxText);
        ModalDriver::typeOnKeypad({QStringLiteral("close")});
    }
    run.result = keypad->exec();
    return run;
}

int beeps(const TestPanel &panel)
{
    return panel.calls(QStringLiteral("setbeep")).size();
}

QMouseEvent mouseEvent(QEvent::Type type, const QPoint &local, QWidget *w, Qt::MouseButton button,
                       Qt::MouseButtons buttons)
{
    return QMouseEvent(type, local, w->mapToGlobal(local), button, buttons, Qt::NoModifier);
}

} // namespace

class TestInputDialog : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void append_data();
    void append();
    void typing_data();
    void typing();
    void enterAtOnceIsACancel();
    void outOfRangeKeepsTheTextAndTheDialog();
    void tooLongANumberIsOutOfRange();
    void backspaceOnOneDigitLeavesZero();
    void negativeAndDotAreInert();
    void closeButtonCancels();
    void secondKeypadDeletesTheFirst();
    void rangeCaptions();
    void rangeCaptionsInChinese();
    void setters();
    void formGeometry();
    void everyKeyClicksWhenTheBuzzerIsOn_data();
    void everyKeyClicksWhenTheBuzzerIsOn();
    void pressOutsideTheTitleBarStartsNoDrag();
    void dragByTheTitleBarMovesAndSetsFlag();
    void titleBarRangeIsInclusive_data();
    void titleBarRangeIsInclusive();
};

void TestInputDialog::init()
{
    InputDialog::p_move = false;
}

void TestInputDialog::cleanup()
{
    QTRY_COMPARE(ModalDriver::pending(), 0);
    delete InputDialog::Instance(-1, 0, 0, 0, nullptr, nullptr);
}

void TestInputDialog::append_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("digit");
    QTest::addColumn<QString>("result");
    QTest::newRow("empty") << "" << 4 << "4";
    QTest::newRow("lone zero replaced") << "0" << 7 << "7";
    QTest::newRow("zero by zero") << "0" << 0 << "0";
    QTest::newRow("appended") << "7" << 0 << "70";
    QTest::newRow("inner zero kept") << "10" << 5 << "105";
}

void TestInputDialog::append()
{
    QFETCH(QString, text);
    QFETCH(int, digit);
    QFETCH(QString, result);
    QCOMPARE(InputDialog::append(text, digit), result);
    QCOMPARE(text, result);
}

void TestInputDialog::typing_data()
{
    QTest::addColumn<int>("min");
    QTest::addColumn<int>("max");
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<QStringList>("shown");
    QTest::addColumn<int>("result");
    QTest::newRow("32 in 1..32") << 1 << 32 << QStringList{"3", "2", "ENTER"}
                                 << QStringList{"3", "32", "32"} << 33;
    QTest::newRow("0 in 0..65535") << 0 << 65535 << QStringList{"0", "ENTER"} << QStringList{"0", "0"} << 1;
    QTest::newRow("CLR in 0..65535") << 0 << 65535 << QStringList{"CLR", "ENTER"} << QStringList{"0", "0"} << 1;
    QTest::newRow("0 0 7") << 0 << 255 << QStringList{"0", "0", "7", "ENTER"}
                           << QStringList{"0", "0", "7", "7"} << 8;
    QTest::newRow("7 0") << 0 << 255 << QStringList{"7", "0", "ENTER"} << QStringList{"7", "70", "70"} << 71;
    QTest::newRow("65535") << 0 << 65535 << QStringList{"6", "5", "5", "3", "5", "ENTER"}
                           << QStringList{"6", "65", "655", "6553", "65535", "65535"} << 65536;
    QTest::newRow("lower bound") << 1970 << 2038 << QStringList{"1", "9", "7", "0", "ENTER"}
                                 << QStringList{"1", "19", "197", "1970", "1970"} << 1971;
    QTest::newRow("CLR then digits") << 0 << 255 << QStringList{"9", "CLR", "4", "ENTER"}
                                     << QStringList{"9", "0", "4", "4"} << 5;
}

void TestInputDialog::typing()
{
    QFETCH(int, min);
    QFETCH(int, max);
    QFETCH(QStringList, keys);
    QFETCH(QStringList, shown);
    QFETCH(int, result);
    TestPanel panel;
    const Run run = runKeypad(min, max, 5, keys);
    QCOMPARE(run.shown, shown);
    QCOMPARE(run.result, result);
}

void TestInputDialog::enterAtOnceIsACancel()
{
    TestPanel panel;
    const Run run = runKeypad(1, 32, 5, {QStringLiteral("ENTER")});
    QCOMPARE(run.fieldAtOpen, QStringLiteral("5"));
    QCOMPARE(run.result, 0);
}

void TestInputDialog::outOfRangeKeepsTheTextAndTheDialog()
{
    TestPanel panel;
    InputDialog *keypad = InputDialog::Instance(-1, 1, 32, 5, nullptr, nullptr);
    QPointer<InputDialog> guard(keypad);
    QString title, text;
    bool openAfterBox = false;
    QString fieldAfterBox;
    ModalDriver::typeOnKeypad({"3", "3", "ENTER"});
    ModalDriver::acceptMessageBox(&title, &text);
    // Once the box is answered: the keypad is still up with "33"; correct it.
    ModalDriver::onNext<InputDialog>([&](InputDialog *d) {
        openAfterBox = d->isVisible();
        fieldAfterBox = d->findChild<QLineEdit *>("numLineEdit")->text();
        QTest::mouseClick(d->findChild<QPushButton *>("pushButtonBackspace"), Qt::LeftButton);
        QTest::mouseClick(d->findChild<QPushButton *>("pushButtonEnter"), Qt::LeftButton);
    });
    const int result = keypad->exec();
    QCOMPARE(title, QStringLiteral("Tips"));
    QCOMPARE(text, QStringLiteral("Input number is out of range!"));
    QVERIFY(openAfterBox);
    QCOMPARE(fieldAfterBox, QStringLiteral("33"));
    QCOMPARE(result, 4);   // "3" after the backspace
    QVERIFY(guard);
}

void TestInputDialog::tooLongANumberIsOutOfRange()
{
    TestPanel panel;
    const QStringList keys = QString("99999999999999999999").split(QString(), Qt::SkipEmptyParts)
                             << QStringLiteral("ENTER");
    const Run run = runKeypad(0, 255, 0, keys, true);
    QCOMPARE(run.boxText, QStringLiteral("Input number is out of range!"));
    QCOMPARE(run.result, 0);
}

void TestInputDialog::backspaceOnOneDigitLeavesZero()
{
    TestPanel panel;
    const Run run = runKeypad(0, 255, 9, {"4", "<-", "<-", "2", "5", "<-", "ENTER"});
    QCOMPARE(run.shown, (QStringList{"4", "0", "0", "2", "25", "2", "2"}));
    QCOMPARE(run.result, 3);
}

void TestInputDialog::negativeAndDotAreInert()
{
    TestPanel panel;
    QSettings settings(panel.path(SettingsFile), QSettings::IniFormat);
    settings.setValue("General/buzzer", "on");
    const Run run = runKeypad(0, 255, 12, {"4", "-", ".", "ENTER"}, false, &settings);
    QCOMPARE(run.shown, (QStringList{"4", "4", "4", "4"}));
    QCOMPARE(run.result, 5);
    // Inert, yet each key still clicks.
    QCOMPARE(beeps(panel), 4);
}

void TestInputDialog::closeButtonCancels()
{
    TestPanel panel;
    QSettings settings(panel.path(SettingsFile), QSettings::IniFormat);
    settings.setValue("General/buzzer", "on");
    InputDialog *keypad = InputDialog::Instance(-1, 0, 255, 17, &settings, nullptr);
    QString fieldAfterClose = QStringLiteral("unset");
    ModalDriver::typeOnKeypad({"4", "close"});
    const int result = keypad->exec();
    fieldAfterClose = keypad->findChild<QLineEdit *>("numLineEdit")->text();
    QCOMPARE(result, 0);
    QVERIFY(fieldAfterClose.isEmpty());
    QVERIFY(!keypad->isVisible());
    // The digit clicks in the filter; the close button sounds from its slot.
    QCOMPARE(beeps(panel), 2);
}

void TestInputDialog::secondKeypadDeletesTheFirst()
{
    TestPanel panel;
    QPointer<InputDialog> first = InputDialog::Instance(-1, 0, 9, 1, nullptr, nullptr);
    QVERIFY(first);
    InputDialog *second = InputDialog::Instance(-1, 0, 9, 2, nullptr, nullptr);
    QVERIFY(!first);
    QVERIFY(second);
    QCOMPARE(second->findChild<QLineEdit *>("numLineEdit")->text(), QStringLiteral("2"));
    const QWidgetList windows = QApplication::topLevelWidgets();
    QCOMPARE(std::count_if(windows.begin(), windows.end(), [](QWidget *w) { return w->inherits("InputDialog"); }), 1);
}

void TestInputDialog::rangeCaptions()
{
    TestPanel panel;
    InputDialog *keypad = InputDialog::Instance(-1, 1970, 2038, 2024, nullptr, nullptr);
    auto *maxText = keypad->findChild<QLabel *>("maxText");
    auto *minText = keypad->findChild<QLabel *>("minText");
    QCOMPARE(maxText->text(), QStringLiteral("Max:2038"));
    QCOMPARE(minText->text(), QStringLiteral("Min:1970"));
    QCOMPARE(maxText->font().pointSize(), 9);
    QCOMPARE(maxText->font().weight(), int(QFont::Bold));
    QCOMPARE(minText->styleSheet(), QStringLiteral("background:transparent; color:white"));
    QCOMPARE(keypad->findChild<QLineEdit *>("numLineEdit")->text(), QStringLiteral("2024"));
}

void TestInputDialog::rangeCaptionsInChinese()
{
    TestPanel panel;
    QTranslator chinese;
    QVERIFY(chinese.load(QStringLiteral(":/Languages/Translate_CN.qm")));
    QCoreApplication::installTranslator(&chinese);
    InputDialog *keypad = InputDialog::Instance(-1, 0, 255, 0, nullptr, nullptr);
    const QString max = keypad->findChild<QLabel *>("maxText")->text();
    const QString clear = keypad->findChild<QPushButton *>("pushButtonClear")->text();
    const QString enter = keypad->findChild<QPushButton *>("pushButtonEnter")->text();
    QString boxText;
    ModalDriver::typeOnKeypad({"9", "9", "9", "ENTER"});
    ModalDriver::acceptMessageBox(nullptr, &boxText);
    ModalDriver::typeOnKeypad({"close"});
    keypad->exec();
    QCoreApplication::removeTranslator(&chinese);
    QCOMPARE(max, QStringLiteral("最大值：255"));
    QCOMPARE(clear, QStringLiteral("清除"));
    QCOMPARE(enter, QStringLiteral("确认"));
    QCOMPARE(boxText, QStringLiteral("输入的数值超出范围！"));
}

void TestInputDialog::setters()
{
    TestPanel panel;
    InputDialog *keypad = InputDialog::Instance(-1, 0, 10, 3, nullptr, nullptr);
    keypad->setMinValue(4);
    keypad->setMaxValue(6);
    QCOMPARE(keypad->findChild<QLabel *>("minText")->text(), QStringLiteral("Min:4"));
    QCOMPARE(keypad->findChild<QLabel *>("maxText")->text(), QStringLiteral("Max:6"));
    keypad->setCurrentValue(42);
    QCOMPARE(keypad->findChild<QLineEdit *>("numLineEdit")->text(), QStringLiteral("42"));
    // The new bounds decide; the shown value alone is no confirmation.
    const Run run = [&]() {
        Run r;
        ModalDriver::typeOnKeypad({"7", "ENTER"});
        ModalDriver::acceptMessageBox(&r.boxTitle, &r.boxText);
        ModalDriver::typeOnKeypad({"<-", "5", "ENTER"});
        r.result = keypad->exec();
        return r;
    }();
    QCOMPARE(run.boxTitle, QStringLiteral("Tips"));
    QCOMPARE(run.result, 6);
}

void TestInputDialog::formGeometry()
{
    TestPanel panel;
    InputDialog *keypad = InputDialog::Instance(-1, 0, 255, 0, nullptr, nullptr);
    keypad->show();
    QVERIFY(QTest::qWaitForWindowExposed(keypad));
    QCOMPARE(keypad->size(), QSize(470, 450));
    QCOMPARE(keypad->windowFlags() & ~Qt::WindowType_Mask, Qt::FramelessWindowHint);
    QCOMPARE(keypad->windowTitle(), QStringLiteral("Dialog"));
    QCOMPARE(keypad->findChild<QLineEdit *>("numLineEdit")->size(), QSize(430, 50));
    QVERIFY(keypad->findChild<QLineEdit *>("numLineEdit")->alignment() & Qt::AlignRight);
    QCOMPARE(keypad->findChild<QPushButton *>("closePushButton")->size(), QSize(45, 45));
    QCOMPARE(keypad->findChild<QFrame *>("titleBarFrame")->height(), 45);
    const QList<QPushButton *> keys = keypad->findChildren<QPushButton *>(QRegularExpression("^pushButton"));
    QCOMPARE(keys.size(), 15);
    QRect all;
    for (QPushButton *key : keys) {
        QCOMPARE(key->size(), key->objectName() == "pushButtonEnter" ? QSize(210, 60) : QSize(100, 60));
        QCOMPARE(key->font().pointSize(), 15);
        QVERIFY(key->styleSheet().contains("button_up.png"));
        all |= QRect(key->mapTo(keypad, QPoint()), key->size());
    }
    // Nothing spills over the dialog's 3-pixel border.
    QVERIFY2(QRect(3, 3, 464, 444).contains(all), qPrintable(QString("keys span %1,%2 %3x%4")
             .arg(all.x()).arg(all.y()).arg(all.width()).arg(all.height())));
    QCOMPARE(keypad->findChild<QPushButton *>("pushButtonBackspace")->text(), QStringLiteral("<-"));
    QCOMPARE(keypad->findChild<QPushButton *>("pushButtonClear")->text(), QStringLiteral("CLR"));
}

void TestInputDialog::everyKeyClicksWhenTheBuzzerIsOn_data()
{
    QTest::addColumn<QString>("buzzer");
    QTest::addColumn<int>("expectedBeeps");
    QTest::newRow("on") << "on" << 3;
    QTest::newRow("off") << "off" << 0;
    QTest::newRow("missing") << "" << 0;
}

void TestInputDialog::everyKeyClicksWhenTheBuzzerIsOn()
{
    QFETCH(QString, buzzer);
    QFETCH(int, expectedBeeps);
    TestPanel panel;
    QSettings settings(panel.path(SettingsFile), QSettings::IniFormat);
    if (buzzer.isEmpty())
        settings.remove("General/buzzer");
    else
        settings.setValue("General/buzzer", buzzer);
    panel.clearCalls();
    const Run run = runKeypad(0, 255, 0, {"1", "CLR", "ENTER"}, false, &settings);
    QCOMPARE(run.result, 1);
    QCOMPARE(beeps(panel), expectedBeeps);
    for (const QStringList &call : panel.calls(QStringLiteral("setbeep")))
        QCOMPARE(call.mid(1), QStringList{QStringLiteral("long")});
}

void TestInputDialog::pressOutsideTheTitleBarStartsNoDrag()
{
    TestPanel panel;
    InputDialog *keypad = InputDialog::Instance(-1, 0, 255, 0, nullptr, nullptr);
    keypad->move(100, 50);
    keypad->show();
    QVERIFY(QTest::qWaitForWindowExposed(keypad));
    const QPoint before = keypad->pos();
    const QPoint below(10, keypad->height() - 5);
    QMouseEvent press = mouseEvent(QEvent::MouseButtonPress, below, keypad, Qt::LeftButton, Qt::LeftButton);
    QApplication::sendEvent(keypad, &press);
    QMouseEvent move = mouseEvent(QEvent::MouseMove, below + QPoint(40, 30), keypad, Qt::NoButton, Qt::LeftButton);
    QApplication::sendEvent(keypad, &move);
    QCOMPARE(keypad->pos(), before);
    QVERIFY(!InputDialog::p_move);
}

void TestInputDialog::dragByTheTitleBarMovesAndSetsFlag()
{
    TestPanel panel;
    InputDialog *keypad = InputDialog::Instance(-1, 0, 255, 0, nullptr, nullptr);
    keypad->move(100, 50);
    keypad->show();
    QVERIFY(QTest::qWaitForWindowExposed(keypad));
    auto *titleBar = keypad->findChild<QFrame *>("titleBarFrame");
    const QPoint grip = titleBar->geometry().topLeft() + QPoint(200, 10);
    QMouseEvent press = mouseEvent(QEvent::MouseButtonPress, grip, keypad, Qt::LeftButton, Qt::LeftButton);
    QApplication::sendEvent(keypad, &press);
    // A move with another button held, or none, does not drag.
    QMouseEvent rightMove = mouseEvent(QEvent::MouseMove, grip + QPoint(5, 5), keypad, Qt::NoButton, Qt::RightButton);
    QApplication::sendEvent(keypad, &rightMove);
    QVERIFY(!InputDialog::p_move);

    const QPoint globalTarget = keypad->mapToGlobal(grip) + QPoint(60, 40);
    QMouseEvent move(QEvent::MouseMove, keypad->mapFromGlobal(globalTarget), globalTarget, Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(keypad, &move);
    QVERIFY(InputDialog::p_move);
    // The dialog follows the mouse: the grip point stays under it, shifted by
    // the title bar's place minus the layout margin (both 3 here).
    const QMargins m = keypad->layout()->contentsMargins();
    const QPoint offset = grip - titleBar->geometry().topLeft() + QPoint(m.left(), m.top());
    QCOMPARE(keypad->pos(), globalTarget - offset);
}

void TestInputDialog::titleBarRangeIsInclusive_data()
{
    QTest::addColumn<QPoint>("offset");   // from the title bar's bottom-right
    QTest::addColumn<bool>("drags");
    QTest::newRow("on the edge") << QPoint(0, 0) << true;
    QTest::newRow("one beyond") << QPoint(1, 1) << true;
    QTest::newRow("two below") << QPoint(0, 2) << false;
}

void TestInputDialog::titleBarRangeIsInclusive()
{
    QFETCH(QPoint, offset);
    QFETCH(bool, drags);
    TestPanel panel;
    InputDialog *keypad = InputDialog::Instance(-1, 0, 255, 0, nullptr, nullptr);
    keypad->show();
    QVERIFY(QTest::qWaitForWindowExposed(keypad));
    auto *titleBar = keypad->findChild<QFrame *>("titleBarFrame");
    const QPoint at = titleBar->geometry().bottomRight() + offset;
    QMouseEvent press = mouseEvent(QEvent::MouseButtonPress, at, keypad, Qt::LeftButton, Qt::LeftButton);
    QApplication::sendEvent(keypad, &press);
    QMouseEvent move = mouseEvent(QEvent::MouseMove, at + QPoint(-20, 20), keypad, Qt::NoButton, Qt::LeftButton);
    QApplication::sendEvent(keypad, &move);
    QCOMPARE(InputDialog::p_move, drags);
}

PANEL_GUI_TEST_MAIN(TestInputDialog)
#include "tst_inputdialog.moc"
