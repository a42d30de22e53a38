// The WLAN password dialog's on-screen keyboard driven offscreen: a fresh
// keyboard for every press on the password field, every key by its button,
// caps, BACK, Clear, ENTER and the "X".
#include "passworddialoglayout.h"
#include "passwordkeyboard.h"
#include "passwordkeytable.h"
#include "pswdialogrig.h"
#include "testharness.h"
#include "testpanel.h"

#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

namespace {
using Rig = PswDialogRig;
}

class TestPasswordKeyboard : public QObject
{
    Q_OBJECT

private slots:
    void capsTurnsDigitsIntoSymbols();
    void capsRelabelsEveryCharacterKey();
    void keysTypeTheirCharacters_data();
    void keysTypeTheirCharacters();
    void backAndClear();
    void enterCopiesIntoThePasswordField();
    void xClosesTheKeyboard();
    void everyPressBuildsAFreshKeyboard();
    void pressesDoNotPileUpKeyboards();
    void keysFitTheKeyboard_data();
    void keysFitTheKeyboard();
};

void TestPasswordKeyboard::capsTurnsDigitsIntoSymbols()
{
    TestPanel panel;
    PswDialogRig o;
    QVERIFY(o.pressPasswordField());
    QVERIFY(!o.dialog->capsOn());
    QVERIFY(o.press(QStringLiteral("button_caps")));
    QVERIFY(o.dialog->capsOn());
    QVERIFY(o.press(QStringLiteral("button_1")));
    QCOMPARE(o.line(), QStringLiteral("!"));
    QVERIFY(o.press(QStringLiteral("button_caps")));
    QVERIFY(!o.dialog->capsOn());
    QVERIFY(o.press(QStringLiteral("button_1")));
    QCOMPARE(o.line(), QStringLiteral("!1"));
}

void TestPasswordKeyboard::capsRelabelsEveryCharacterKey()
{
    TestPanel panel;
    PswDialogRig o;
    PasswordKeyboard *keyboard = o.pressPasswordField();
    QVERIFY(keyboard);
    for (bool caps : {true, false, true}) {
        QVERIFY(o.press(QStringLiteral("button_caps")));
        for (int i = 0; i < PasswordKeyTable::KeyCount; ++i) {
            const PasswordKeyTable::Key &key = PasswordKeyTable::keys()[i];
            QString shown = keyboard->key(i)->text();
            shown.replace(QStringLiteral("&&"), QStringLiteral("&"));
            QCOMPARE(shown, PasswordKeyTable::caption(key, caps));
        }
    }
    // The "7" key shows its "&" rather than taking it for a shortcut mark.
    QCOMPARE(keyboard->key(QStringLiteral("button_7"))->text(), QStringLiteral("&&"));
    QCOMPARE(keyboard->key(QStringLiteral("button_a"))->text(), QStringLiteral("A"));
    QCOMPARE(keyboard->key(QStringLiteral("button_caps"))->text(), QStringLiteral("Caps"));
}

void TestPasswordKeyboard::keysTypeTheirCharacters_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("caps");
    for (int i = 0; i < PasswordKeyTable::KeyCount; ++i) {
        const PasswordKeyTable::Key &key = PasswordKeyTable::keys()[i];
        if (key.action != PasswordKeyTable::Character)
            continue;
        QTest::addRow("%s off", key.name) << QString::fromLatin1(key.name) << false;
        QTest::addRow("%s on", key.name) << QString::fromLatin1(key.name) << true;
    }
}

void TestPasswordKeyboard::keysTypeTheirCharacters()
{
    QFETCH(QString, name);
    QFETCH(bool, caps);
    TestPanel panel;
    PswDialogRig o;
    QVERIFY(o.pressPasswordField());
    if (caps)
        QVERIFY(o.press(QStringLiteral("button_caps")));
    QVERIFY(o.press(name));
    QVERIFY(o.press(name));
    const QString character = PasswordKeyTable::caption(*PasswordKeyTable::find(name), caps);
    QCOMPARE(o.line(), character + character);
    QVERIFY(o.press(QStringLiteral("button_enter")));
    QCOMPARE(o.password()->text(), character + character);
}

void TestPasswordKeyboard::backAndClear()
{
    TestPanel panel;
    PswDialogRig o;
    QVERIFY(o.pressPasswordField());
    QVERIFY(o.press(QStringLiteral("button_back")));
    QCOMPARE(o.line(), QString());
    for (const char *key : {"button_a", "button_b", "button_c"})
        QVERIFY(o.press(QLatin1String(key)));
    QVERIFY(o.press(QStringLiteral("button_back")));
    QCOMPARE(o.line(), QStringLiteral("ab"));
    QVERIFY(o.press(QStringLiteral("button_clear")));
    QCOMPARE(o.line(), QString());
    QVERIFY(o.press(QStringLiteral("button_back")));
    QCOMPARE(o.line(), QString());
    QVERIFY(o.dialog->keyboard()->isVisible());
}

void TestPasswordKeyboard::enterCopiesIntoThePasswordField()
{
    TestPanel panel;
    PswDialogRig o;
    o.password()->setText(QStringLiteral("old text"));
    QPointer<PasswordKeyboard> keyboard = o.pressPasswordField();
    QVERIFY(keyboard);
    QVERIFY(o.press(QStringLiteral("button_x")));
    QVERIFY(o.press(QStringLiteral("button_y")));
    QTest::ignoreMessage(QtDebugMsg, "enter data: xy");
    QVERIFY(o.press(QStringLiteral("button_enter")));
    QCOMPARE(o.password()->text(), QStringLiteral("xy"));
    QVERIFY(!keyboard || !keyboard->isVisible());
    QTRY_VERIFY(keyboard.isNull());
    QVERIFY(!o.dialog->keyboard());
    QCOMPARE(o.closed.size(), 0);
}

void TestPasswordKeyboard::xClosesTheKeyboard()
{
    TestPanel panel;
    PswDialogRig o;
    o.password()->setText(QStringLiteral("kept"));
    QPointer<PasswordKeyboard> keyboard = o.pressPasswordField();
    QVERIFY(keyboard);
    QVERIFY(o.press(QStringLiteral("button_q")));
    QTest::mouseClick(keyboard->closeButton(), Qt::LeftButton);
    QTRY_VERIFY(keyboard.isNull());
    QCOMPARE(o.password()->text(), QStringLiteral("kept"));
    QVERIFY(o.dialog->isVisible());
    QCOMPARE(o.closed.size(), 0);
}

void TestPasswordKeyboard::everyPressBuildsAFreshKeyboard()
{
    TestPanel panel;
    PswDialogRig o;
    QPointer<PasswordKeyboard> first = o.pressPasswordField();
    QVERIFY(first);
    QVERIFY(o.press(QStringLiteral("button_caps")));
    QVERIFY(o.press(QStringLiteral("button_a")));
    QCOMPARE(o.line(), QStringLiteral("A"));

    QPointer<PasswordKeyboard> second = o.pressPasswordField();
    QVERIFY(second && second != first);
    QVERIFY(first.isNull());
    QVERIFY(!o.dialog->capsOn());
    QCOMPARE(second->line()->text(), QString());
    QCOMPARE(second->key(QStringLiteral("button_a"))->text(), QStringLiteral("a"));
    QVERIFY(o.press(QStringLiteral("button_a")));
    QCOMPARE(o.line(), QStringLiteral("a"));

    // After ENTER closed it, a press opens yet another one.
    QVERIFY(o.press(QStringLiteral("button_enter")));
    QPointer<PasswordKeyboard> third = o.pressPasswordField();
    QVERIFY(third && third != second && third->isVisible());
    QCOMPARE(third->line()->text(), QString());
}

void TestPasswordKeyboard::pressesDoNotPileUpKeyboards()
{
    TestPanel panel;
    PswDialogRig o;
    for (int i = 0; i < 50; ++i) {
        QVERIFY(o.pressPasswordField());
        if (i % 2)
            QVERIFY(o.press(QStringLiteral("button_enter")));
        else if (i % 3 == 0)
            QTest::mouseClick(o.dialog->keyboard()->closeButton(), Qt::LeftButton);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(o.dialog->findChildren<PasswordKeyboard *>().size() <= 1);
    }
    QVERIFY(o.dialog->findChildren<QPushButton *>().size() <= 4 + PasswordKeyTable::KeyCount + 1);
}

void TestPasswordKeyboard::keysFitTheKeyboard_data()
{
    QTest::addColumn<QSize>("screen");
    QTest::newRow("800x480") << QSize(800, 480);
    QTest::newRow("1024x600") << QSize(1024, 600);
    QTest::newRow("1920x1080") << QSize(1920, 1080);
}

void TestPasswordKeyboard::keysFitTheKeyboard()
{
    QFETCH(QSize, screen);
    TestPanel panel;
    Rig o;
    o.dialog->resizeUIWgt(screen);
    PasswordKeyboard *keyboard = o.pressPasswordField();
    QVERIFY(keyboard);
    const PasswordDialogLayout layout = PasswordDialogLayout::forScreen(screen);
    QCOMPARE(keyboard->size(), layout.keyboard);
    QCOMPARE(keyboard->closeButton()->size(), QSize(layout.keyboardCloseSide, layout.keyboardCloseSide));
    QTRY_COMPARE(keyboard->layout()->geometry().size(), keyboard->size());
    QVERIFY(keyboard->key(QStringLiteral("button_clear"))->width() >= layout.clearMinWidth);
    const QRect line = keyboard->line()->geometry();
    QVERIFY(keyboard->rect().contains(line) && !line.intersects(keyboard->closeButton()->geometry()));
    for (bool caps : {false, true}) {
        if (caps)
            QVERIFY(o.press(QStringLiteral("button_caps")));
        for (int i = 0; i < PasswordKeyTable::KeyCount; ++i) {
            QPushButton *key = keyboard->key(i);
            const QRect r = key->geometry();
            const QString name = key->objectName();
            QVERIFY2(keyboard->rect().contains(r), qPrintable(name + QStringLiteral(" leaves the keyboard")));
            QVERIFY2(!r.intersects(line), qPrintable(name));
            const QFontMetrics metrics(key->font());
            QVERIFY2(metrics.horizontalAdvance(key->text()) < r.width() && metrics.height() < r.height(),
                     qPrintable(name + QStringLiteral(" clips its caption")));
            for (int j = i + 1; j < PasswordKeyTable::KeyCount; ++j)
                QVERIFY2(!r.intersects(keyboard->key(j)->geometry()),
                         qPrintable(name + QStringLiteral(" overlaps ") + keyboard->key(j)->objectName()));
        }
    }
}

PANEL_GUI_TEST_MAIN(TestPasswordKeyboard)
#include "tst_passwordkeyboard.moc"
