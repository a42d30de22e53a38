// The IPv4 editor: its form, the dotted text in and out, the octet validator
// and entering an octet on the numeric keypad.
#include "inputdialog.h"
#include "iplineedit.h"
#include "modaldriver.h"
#include "octetvalidator.h"
#include "panelfont.h"
#include "testharness.h"
#include "testpanel.h"
#include "wirelesswgtui.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QtTest>

namespace {

const char *const FieldNames[] = {"lineEdit_ip1", "lineEdit_ip2", "lineEdit_ip3", "lineEdit_ip4"};

QLineEdit *field(IPLineEdit *edit, int index)
{
    return edit->findChild<QLineEdit *>(QLatin1String(FieldNames[index]));
}

QStringList fieldTexts(IPLineEdit *edit)
{
    QStringList texts;
    for (int i = 0; i < 4; ++i)
        texts << field(edit, i)->text();
    return texts;
}

void setFieldTexts(IPLineEdit *edit, const QStringList &texts)
{
    for (int i = 0; i < 4; ++i)
        field(edit, i)->setText(texts.at(i));
}

bool keypadShown()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *w : windows) {
        if (qobject_cast<InputDialog *>(w) && w->isVisible())
            return true;
    }
    return false;
}

// What the keypad showed when it opened.
struct KeypadSeen {
    QString minText;
    QString maxText;
    QString number;
    QString family;
    bool modal = false;
};

// Reads the keypad when it appears, then types keys on it.
void readKeypadThenType(KeypadSeen *seen, const QStringList &keys)
{
    ModalDriver::onNext<InputDialog>([seen, keys](InputDialog *keypad) {
        seen->minText = keypad->findChild<QLabel *>(QStringLiteral("minText"))->text();
        seen->maxText = keypad->findChild<QLabel *>(QStringLiteral("maxText"))->text();
        auto *number = keypad->findChild<QLineEdit *>(QStringLiteral("numLineEdit"));
        seen->number = number->text();
        seen->family = number->font().family();
        seen->modal = keypad->isModal();
        ModalDriver::typeOnKeypad(keys);
    });
}

} // namespace

class TestIplineedit : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void form();
    void fieldsShareOneOctetValidator();
    void octetValidator_data();
    void octetValidator();
    void fieldSize_data();
    void fieldSize();
    void resizeFollowsPrimaryScreen();
    void setIPVal_data();
    void setIPVal();
    void getIPVal_data();
    void getIPVal();
    void typingIsValidated_data();
    void typingIsValidated();
    void keypadEntersOctet_data();
    void keypadEntersOctet();
    void keypadUsesPanelFontAndSettings_data();
    void keypadUsesPanelFontAndSettings();
    void keypadRefusesOutOfRange();
    void pressUnderDhcpDoesNothing();
    void otherObjectsPassThrough();
};

void TestIplineedit::init()
{
    WirelessWgtUI::m_isStaticIP = false;
}

void TestIplineedit::cleanup()
{
    WirelessWgtUI::m_isStaticIP = false;
    // An answer armed for a keypad that never came must not outlive its test.
    QTRY_COMPARE_WITH_TIMEOUT(ModalDriver::pending(), 0, 6000);
}

void TestIplineedit::form()
{
    IPLineEdit edit;
    QCOMPARE(edit.windowTitle(), QStringLiteral("Form"));
    auto *layout = edit.findChild<QHBoxLayout *>(QStringLiteral("horizontalLayout"));
    QVERIFY(layout);
    QCOMPARE(layout->contentsMargins().left(), 0);
    QCOMPARE(layout->contentsMargins().right(), 0);
    const QStringList order = {QStringLiteral("lineEdit_ip1"), QStringLiteral("label"),
                               QStringLiteral("lineEdit_ip2"), QStringLiteral("label_2"),
                               QStringLiteral("lineEdit_ip3"), QStringLiteral("label_3"),
                               QStringLiteral("lineEdit_ip4")};
    QCOMPARE(layout->count(), order.size());
    for (int i = 0; i < order.size(); ++i) {
        QWidget *w = layout->itemAt(i)->widget();
        QVERIFY(w);
        QCOMPARE(w->objectName(), order.at(i));
        if (i % 2 == 0) {
            QVERIFY(qobject_cast<QLineEdit *>(w));
            QCOMPARE(qobject_cast<QLineEdit *>(w)->text(), QStringLiteral("0"));
        } else {
            QVERIFY(qobject_cast<QLabel *>(w));
            QCOMPARE(qobject_cast<QLabel *>(w)->text(), QStringLiteral("."));
        }
    }
    QCOMPARE(edit.getIPVal(), QStringLiteral("0.0.0.0"));
}

void TestIplineedit::fieldsShareOneOctetValidator()
{
    IPLineEdit edit;
    const QValidator *shared = field(&edit, 0)->validator();
    QVERIFY(qobject_cast<const OctetValidator *>(shared));
    for (int i = 1; i < 4; ++i)
        QCOMPARE(field(&edit, i)->validator(), shared);
    QCOMPARE(QString::fromLatin1(OctetValidator::Pattern),
             QStringLiteral("^(0|[1-9]|[1-9][0-9]|1[0-9][0-9]|2([0-4][0-9]|5[0-5]))$"));
}

void TestIplineedit::octetValidator_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("state");
    const int ok = QValidator::Acceptable;
    const int bad = QValidator::Invalid;
    QTest::newRow("0") << "0" << ok;
    QTest::newRow("7") << "7" << ok;
    QTest::newRow("10") << "10" << ok;
    QTest::newRow("99") << "99" << ok;
    QTest::newRow("100") << "100" << ok;
    QTest::newRow("199") << "199" << ok;
    QTest::newRow("200") << "200" << ok;
    QTest::newRow("249") << "249" << ok;
    QTest::newRow("250") << "250" << ok;
    QTest::newRow("255") << "255" << ok;
    QTest::newRow("25 on the way to 255") << "25" << ok;
    QTest::newRow("empty, while typing") << "" << int(QValidator::Intermediate);
    QTest::newRow("256") << "256" << bad;
    QTest::newRow("260") << "260" << bad;
    QTest::newRow("300") << "300" << bad;
    QTest::newRow("999") << "999" << bad;
    QTest::newRow("1000") << "1000" << bad;
    QTest::newRow("01") << "01" << bad;
    QTest::newRow("00") << "00" << bad;
    QTest::newRow("001") << "001" << bad;
    QTest::newRow("-1") << "-1" << bad;
    QTest::newRow("+1") << "+1" << bad;
    QTest::newRow("1.") << "1." << bad;
    QTest::newRow("leading space") << " 1" << bad;
    QTest::newRow("trailing space") << "1 " << bad;
    QTest::newRow("letters") << "abc" << bad;
    QTest::newRow("hex") << "0x1" << bad;
    QTest::newRow("full-width digit") << QStringLiteral("\uff11") << bad;
}

void TestIplineedit::octetValidator()
{
    QFETCH(QString, text);
    QFETCH(int, state);
    OctetValidator validator;
    int pos = 0;
    QCOMPARE(int(validator.validate(text, pos)), state);
}

void TestIplineedit::fieldSize_data()
{
    QTest::addColumn<QSize>("screen");
    QTest::addColumn<QSize>("expected");
    QTest::newRow("800x480") << QSize(800, 480) << QSize(50, 30);
    QTest::newRow("1920x1080") << QSize(1920, 1080) << QSize(80, 50);
    QTest::newRow("1024x600") << QSize(1024, 600) << QSize(56, 34);
    // 3 * 1280 / 112 + 200 / 7 = 62.86, 800 / 30 + 14 = 40.67: truncated.
    QTest::newRow("1280x800") << QSize(1280, 800) << QSize(62, 40);
}

void TestIplineedit::fieldSize()
{
    QFETCH(QSize, screen);
    QFETCH(QSize, expected);
    QCOMPARE(IPLineEdit::fieldSize(screen), expected);
}

void TestIplineedit::resizeFollowsPrimaryScreen()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    QVERIFY(screen);
    const QSize expected = IPLineEdit::fieldSize(screen->size());
    IPLineEdit edit;
    for (int i = 0; i < 4; ++i) {
        QCOMPARE(field(&edit, i)->minimumSize(), expected);
        QCOMPARE(field(&edit, i)->maximumSize(), expected);
    }
    // Again after someone changed a field's size: the screen decides.
    field(&edit, 2)->setFixedSize(10, 10);
    edit.resizeUIWgt();
    QCOMPARE(field(&edit, 2)->maximumSize(), expected);
}

void TestIplineedit::setIPVal_data()
{
    QTest::addColumn<QString>("ip");
    QTest::addColumn<QStringList>("expected");
    const QStringList before = {"10", "20", "30", "40"};
    QTest::newRow("four octets") << "192.168.1.10" << QStringList {"192", "168", "1", "10"};
    QTest::newRow("three parts") << "192.168.1" << before;
    QTest::newRow("five parts") << "1.2.3.4.5" << before;
    QTest::newRow("empty part") << "1..2.3" << QStringList {"1", "", "2", "3"};
    QTest::newRow("only dots") << "..." << QStringList {"", "", "", ""};
    QTest::newRow("empty text") << "" << before;
    QTest::newRow("no dots") << "19216811" << before;
    QTest::newRow("trailing dot") << "1.2.3.4." << before;
    QTest::newRow("parts not validated") << "300.abc.01.-1" << QStringList {"300", "abc", "01", "-1"};
}

void TestIplineedit::setIPVal()
{
    QFETCH(QString, ip);
    QFETCH(QStringList, expected);
    IPLineEdit edit;
    setFieldTexts(&edit, {"10", "20", "30", "40"});
    QSignalSpy spy(&edit, SIGNAL(valueChanged()));
    edit.setIPVal(ip);
    QCOMPARE(fieldTexts(&edit), expected);
    QCOMPARE(spy.count(), 0);
}

void TestIplineedit::getIPVal_data()
{
    QTest::addColumn<QStringList>("fields");
    QTest::addColumn<QString>("expected");
    QTest::newRow("address") << QStringList {"192", "168", "1", "10"} << "192.168.1.10";
    QTest::newRow("empty third") << QStringList {"192", "168", "", "10"} << "192.168..10";
    QTest::newRow("all empty") << QStringList {"", "", "", ""} << "...";
    QTest::newRow("as they stand") << QStringList {" 1", "abc", "300", "01"} << " 1.abc.300.01";
}

void TestIplineedit::getIPVal()
{
    QFETCH(QStringList, fields);
    QFETCH(QString, expected);
    IPLineEdit edit;
    setFieldTexts(&edit, fields);
    QCOMPARE(edit.getIPVal(), expected);
}

void TestIplineedit::typingIsValidated_data()
{
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("expected");
    QTest::newRow("255") << "255" << "255";
    QTest::newRow("256 stops at 25") << "256" << "25";
    QTest::newRow("01 stops at 0") << "01" << "0";
    QTest::newRow("1000 stops at 100") << "1000" << "100";
    QTest::newRow("letters refused") << "1a2" << "12";
    QTest::newRow("minus refused") << "-7" << "7";
    QTest::newRow("dot refused") << "1.2" << "12";
}

void TestIplineedit::typingIsValidated()
{
    QFETCH(QString, keys);
    QFETCH(QString, expected);
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    IPLineEdit edit;
    QSignalSpy spy(&edit, SIGNAL(valueChanged()));
    QLineEdit *octet = field(&edit, 1);
    // Typed after the "0" a field starts with, nothing but "0" can stand.
    QTest::keyClicks(octet, keys);
    QCOMPARE(octet->text(), QStringLiteral("0"));

    octet->clear();
    QTest::keyClicks(octet, keys);
    QCOMPARE(octet->text(), expected);
    QCOMPARE(edit.getIPVal(), QStringLiteral("0.%1.0.0").arg(expected));
    QCOMPARE(spy.count(), 0);
}

void TestIplineedit::keypadEntersOctet_data()
{
    QTest::addColumn<int>("fieldIndex");
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<int>("emitted");
    QTest::newRow("7 into the first") << 0 << QStringList {"7", "ENTER"} << "7" << 1;
    QTest::newRow("255 into the second") << 1 << QStringList {"2", "5", "5", "ENTER"} << "255" << 1;
    QTest::newRow("0 into the third") << 2 << QStringList {"0", "ENTER"} << "0" << 1;
    QTest::newRow("CLR gives 0") << 3 << QStringList {"CLR", "ENTER"} << "0" << 1;
    QTest::newRow("0, 0, 7 gives 7") << 3 << QStringList {"0", "0", "7", "ENTER"} << "7" << 1;
    QTest::newRow("ENTER alone cancels") << 0 << QStringList {"ENTER"} << "12" << 0;
    QTest::newRow("close cancels") << 1 << QStringList {"3", "close"} << "12" << 0;
}

void TestIplineedit::keypadEntersOctet()
{
    QFETCH(int, fieldIndex);
    QFETCH(QStringList, keys);
    QFETCH(QString, expected);
    QFETCH(int, emitted);
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    WirelessWgtUI::m_isStaticIP = true;
    IPLineEdit edit;
    edit.show();
    QVERIFY(QTest::qWaitForWindowExposed(&edit));
    setFieldTexts(&edit, {"12", "12", "12", "12"});
    QLineEdit *octet = field(&edit, fieldIndex);
    octet->setCursorPosition(2);
    QSignalSpy spy(&edit, SIGNAL(valueChanged()));

    KeypadSeen seen;
    readKeypadThenType(&seen, keys);
    QTest::mousePress(octet, Qt::LeftButton, Qt::NoModifier, QPoint(2, octet->height() / 2));
    QCOMPARE(ModalDriver::pending(), 0);

    QVERIFY(seen.modal);
    QCOMPARE(seen.minText, QStringLiteral("Min:0"));
    QCOMPARE(seen.maxText, QStringLiteral("Max:255"));
    QCOMPARE(seen.number, QStringLiteral("12"));
    QCOMPARE(octet->text(), expected);
    QCOMPARE(spy.count(), emitted);
    // The press itself never reached the field.
    QCOMPARE(octet->cursorPosition(), expected == QLatin1String("12") ? 2 : expected.size());
    for (int i = 0; i < 4; ++i) {
        if (i != fieldIndex)
            QCOMPARE(field(&edit, i)->text(), QStringLiteral("12"));
    }
    if (emitted)
        QCOMPARE(edit.getIPVal().split(QLatin1Char('.')).at(fieldIndex), expected);
    QVERIFY(!keypadShown());
}

void TestIplineedit::keypadUsesPanelFontAndSettings_data()
{
    QTest::addColumn<QByteArray>("settingsFile");
    QTest::addColumn<bool>("clicks");
    QTest::newRow("buzzer on") << QByteArray("[%General]\nbuzzer=on\n") << true;
    QTest::newRow("buzzer off") << QByteArray("[%General]\nbuzzer=off\n") << false;
}

// The keypad gets the panel's font and configuration: its keys click only
// when the panel's configuration file says so.
void TestIplineedit::keypadUsesPanelFontAndSettings()
{
    QFETCH(QByteArray, settingsFile);
    QFETCH(bool, clicks);
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    QVERIFY(panel.writeFile(QStringLiteral("/hmi/Config/system_settings.ini"), settingsFile));
    panel.clearCalls();
    WirelessWgtUI::m_isStaticIP = true;
    IPLineEdit edit;
    edit.show();
    QVERIFY(QTest::qWaitForWindowExposed(&edit));
    QSignalSpy spy(&edit, SIGNAL(valueChanged()));

    KeypadSeen seen;
    readKeypadThenType(&seen, {"4", "2", "ENTER"});
    QTest::mouseClick(field(&edit, 3), Qt::LeftButton);
    QCOMPARE(field(&edit, 3)->text(), QStringLiteral("42"));
    QCOMPARE(spy.count(), 1);

    const QList<QStringList> beeps = panel.calls(QStringLiteral("setbeep"));
    if (clicks) {
        QCOMPARE(beeps.size(), 3);
        for (const QStringList &beep : beeps)
            QCOMPARE(beep, QStringList({"setbeep", "long"}));
    } else {
        QCOMPARE(beeps.size(), 0);
    }

    const int fontId = QFontDatabase::addApplicationFont(panel.path(QStringLiteral("/hmi/default.ttf")));
    if (fontId < 0)
        QSKIP("this machine has no font for the panel's /hmi/default.ttf");
    QCOMPARE(seen.family, PanelFont::family(fontId));
    QFontDatabase::removeApplicationFont(fontId);
}

void TestIplineedit::keypadRefusesOutOfRange()
{
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    WirelessWgtUI::m_isStaticIP = true;
    IPLineEdit edit;
    edit.show();
    QVERIFY(QTest::qWaitForWindowExposed(&edit));
    field(&edit, 2)->setText(QStringLiteral("9"));
    QSignalSpy spy(&edit, SIGNAL(valueChanged()));

    QStringList shown;
    QString title;
    QString text;
    ModalDriver::typeOnKeypad({"2", "5", "6", "ENTER"}, &shown);
    ModalDriver::acceptMessageBox(&title, &text);
    // Once the box is answered and the typing is over, the keypad is still
    // open, keeping "256".
    QString afterBox;
    ModalDriver::onNextModal([&title, &shown, &afterBox](QWidget *w) {
        if (title.isEmpty() || shown.size() < 4 || !qobject_cast<InputDialog *>(w))
            return false;
        afterBox = w->findChild<QLineEdit *>(QStringLiteral("numLineEdit"))->text();
        QTest::mouseClick(w->findChild<QPushButton *>(QStringLiteral("closePushButton")), Qt::LeftButton);
        return true;
    });
    QTest::mouseClick(field(&edit, 2), Qt::LeftButton);
    QCOMPARE(ModalDriver::pending(), 0);

    QCOMPARE(title, QStringLiteral("Tips"));
    QCOMPARE(text, QStringLiteral("Input number is out of range!"));
    QCOMPARE(shown, QStringList({"2", "25", "256", "256"}));
    QCOMPARE(afterBox, QStringLiteral("256"));
    QCOMPARE(field(&edit, 2)->text(), QStringLiteral("9"));
    QCOMPARE(spy.count(), 0);
    QVERIFY(!keypadShown());
}

void TestIplineedit::pressUnderDhcpDoesNothing()
{
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    WirelessWgtUI::m_isStaticIP = false;
    IPLineEdit edit;
    edit.show();
    QVERIFY(QTest::qWaitForWindowExposed(&edit));
    edit.setIPVal(QStringLiteral("192.168.1.10"));
    QSignalSpy spy(&edit, SIGNAL(valueChanged()));

    // Should a keypad come up after all, this closes it, so the test fails
    // instead of hanging.
    bool keypadCame = false;
    ModalDriver::onNextModal([&keypadCame](QWidget *w) {
        if (!qobject_cast<InputDialog *>(w))
            return false;
        keypadCame = true;
        QTest::mouseClick(w->findChild<QPushButton *>(QStringLiteral("closePushButton")), Qt::LeftButton);
        return true;
    }, 500);
    for (int i = 0; i < 4; ++i) {
        QLineEdit *octet = field(&edit, i);
        octet->setCursorPosition(octet->text().size());
        const int cursor = octet->cursorPosition();
        QTest::mouseClick(octet, Qt::LeftButton, Qt::NoModifier, QPoint(2, octet->height() / 2));
        QCOMPARE(ModalDriver::pending(), 1);
        QVERIFY(!keypadShown());
        // Swallowed: a press the field saw would have moved its cursor.
        QCOMPARE(octet->cursorPosition(), cursor);
    }
    QTest::qWait(100);
    QVERIFY(!keypadCame);
    QCOMPARE(edit.getIPVal(), QStringLiteral("192.168.1.10"));
    QCOMPARE(spy.count(), 0);
    QVERIFY(panel.calls(QStringLiteral("setbeep")).isEmpty());
}

// A watched object that is not one of the four fields gets its events.
void TestIplineedit::otherObjectsPassThrough()
{
    WirelessWgtUI::m_isStaticIP = false;
    IPLineEdit edit;
    QLineEdit other(QStringLiteral("123"));
    other.resize(100, 30);
    other.show();
    QVERIFY(QTest::qWaitForWindowExposed(&other));
    other.installEventFilter(&edit);
    other.setCursorPosition(3);
    QTest::mouseClick(&other, Qt::LeftButton, Qt::NoModifier, QPoint(1, 15));
    QCOMPARE(other.cursorPosition(), 0);
    QVERIFY(!keypadShown());
}

PANEL_GUI_TEST_MAIN(TestIplineedit)
#include "tst_iplineedit.moc"
