// The pure rules behind the WLAN password dialog: the keyboard's key table,
// the sizes taken from the panel's screen, and how a text fills its
// register.
#include "passworddialoglayout.h"
#include "passwordkeytable.h"
#include "testharness.h"
#include "wirelesspswdialog.h"
#include "wlanconnectrequest.h"

#include <QScopeGuard>
#include <QSet>
#include <QTextCodec>
#include <QtTest>

class TestPasswordKeyTable : public QObject
{
    Q_OBJECT

private slots:
    void rowsAsLaidOut();
    void everyKeyHasItsSlot();
    void characters_data();
    void characters();
    void otherKeys_data();
    void otherKeys();
    void layout_data();
    void layout();
    void registerText_data();
    void registerText();
};

void TestPasswordKeyTable::rowsAsLaidOut()
{
    const QStringList expected[PasswordKeyTable::RowCount] = {
        {"1", "2", "3", "4", "5", "6", "7", "8", "9", "0", "BACK"},
        {"Clear", "q", "w", "e", "r", "t", "y", "u", "i", "o", "p", "="},
        {"Caps", "a", "s", "d", "f", "g", "h", "j", "k", "l", "\\", "/"},
        {"z", "x", "c", "v", "b", "n", "m", "[", "]", "-", ":", ".", ","},
        {"", "ENTER"},
    };
    QStringList rows[PasswordKeyTable::RowCount];
    int characterKeys = 0;
    for (int i = 0; i < PasswordKeyTable::KeyCount; ++i) {
        const PasswordKeyTable::Key &key = PasswordKeyTable::keys()[i];
        QVERIFY(key.row >= 0 && key.row < PasswordKeyTable::RowCount);
        // Rows follow each other: the table is in layout order.
        QVERIFY(i == 0 || key.row >= PasswordKeyTable::keys()[i - 1].row);
        rows[key.row] << PasswordKeyTable::caption(key, false);
        characterKeys += key.action == PasswordKeyTable::Character;
    }
    for (int r = 0; r < PasswordKeyTable::RowCount; ++r)
        QCOMPARE(rows[r], expected[r]);
    QCOMPARE(characterKeys, PasswordKeyTable::CharacterKeyCount);
    QCOMPARE(PasswordKeyTable::CharacterKeyCount, 45);
}

void TestPasswordKeyTable::everyKeyHasItsSlot()
{
    QSet<QString> names;
    for (int i = 0; i < PasswordKeyTable::KeyCount; ++i) {
        const PasswordKeyTable::Key &key = PasswordKeyTable::keys()[i];
        names.insert(QLatin1String(key.name));
        QCOMPARE(PasswordKeyTable::find(QLatin1String(key.name)), &key);
        QCOMPARE(PasswordKeyTable::objectName(key), QStringLiteral("pushButton_%1_keyboard").arg(key.name));
        const QByteArray slot = PasswordKeyTable::slotSignature(key);
        QCOMPARE(slot, QByteArray("on_pushButton_") + key.name + "_keyboard_clicked()");
        QVERIFY2(WirelessPswDialog::staticMetaObject.indexOfSlot(slot.constData()) >= 0, slot.constData());
    }
    QCOMPARE(names.size(), PasswordKeyTable::KeyCount);
    QVERIFY(!PasswordKeyTable::find(QStringLiteral("button_nonesuch")));
    QVERIFY(!PasswordKeyTable::find(QString()));
}

void TestPasswordKeyTable::characters_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("caps");
    QTest::addColumn<QString>("character");
    // The keyboard's characters as the panel has always typed them.
    const struct {
        const char *name;
        const char *off;
        const char *on;
    } keys[] = {
        {"button_1", "1", "!"}, {"button_2", "2", "@"}, {"button_3", "3", "#"}, {"button_4", "4", "$"},
        {"button_5", "5", "%"}, {"button_6", "6", "^"}, {"button_7", "7", "&"}, {"button_8", "8", "*"},
        {"button_9", "9", "("}, {"button_0", "0", ")"},
        {"button_q", "q", "Q"}, {"button_w", "w", "W"}, {"button_e", "e", "E"}, {"button_r", "r", "R"},
        {"button_t", "t", "T"}, {"button_y", "y", "Y"}, {"button_u", "u", "U"}, {"button_i", "i", "I"},
        {"button_o", "o", "O"}, {"button_p", "p", "P"}, {"button_denghao", "=", "+"},
        {"button_a", "a", "A"}, {"button_s", "s", "S"}, {"button_d", "d", "D"}, {"button_f", "f", "F"},
        {"button_g", "g", "G"}, {"button_h", "h", "H"}, {"button_j", "j", "J"}, {"button_k", "k", "K"},
        {"button_l", "l", "L"}, {"button_youxie", "\\", "|"}, {"button_zuoxie", "/", "?"},
        {"button_z", "z", "Z"}, {"button_x", "x", "X"}, {"button_c", "c", "C"}, {"button_v", "v", "V"},
        {"button_b", "b", "B"}, {"button_n", "n", "N"}, {"button_m", "m", "M"},
        {"button_zuoZhongKuohao", "[", "{"}, {"button_youZhongKuohao", "]", "}"},
        {"button_xiaHuaXian", "-", "_"}, {"button_maoHao", ":", ";"}, {"button_dian", ".", ">"},
        {"button_douhao", ",", "<"},
    };
    QCOMPARE(int(sizeof keys / sizeof keys[0]), PasswordKeyTable::CharacterKeyCount);
    for (const auto &k : keys) {
        QTest::addRow("%s off", k.name) << k.name << false << k.off;
        QTest::addRow("%s on", k.name) << k.name << true << k.on;
    }
}

void TestPasswordKeyTable::characters()
{
    QFETCH(QString, name);
    QFETCH(bool, caps);
    QFETCH(QString, character);
    const PasswordKeyTable::Key *key = PasswordKeyTable::find(name);
    QVERIFY(key);
    QCOMPARE(key->action, PasswordKeyTable::Character);
    QCOMPARE(PasswordKeyTable::caption(*key, caps), character);
    QCOMPARE(PasswordKeyTable::typed(QString(), *key, caps), character);
    QCOMPARE(PasswordKeyTable::typed(QStringLiteral("ab "), *key, caps), QStringLiteral("ab ") + character);
}

void TestPasswordKeyTable::otherKeys_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("caps");
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("typed");
    QTest::newRow("BACK on an empty line") << "button_back" << false << "" << "";
    QTest::newRow("BACK") << "button_back" << false << "abc" << "ab";
    QTest::newRow("BACK, one left") << "button_back" << true << "a" << "";
    QTest::newRow("Clear") << "button_clear" << false << "abc" << "";
    QTest::newRow("Clear on an empty line") << "button_clear" << true << "" << "";
    QTest::newRow("space") << "button_kongge" << false << "ab" << "ab ";
    QTest::newRow("space with caps") << "button_kongge" << true << "" << " ";
    QTest::newRow("Caps") << "button_caps" << false << "ab" << "ab";
    QTest::newRow("ENTER") << "button_enter" << true << "ab" << "ab";
}

void TestPasswordKeyTable::otherKeys()
{
    QFETCH(QString, name);
    QFETCH(bool, caps);
    QFETCH(QString, line);
    QFETCH(QString, typed);
    const PasswordKeyTable::Key *key = PasswordKeyTable::find(name);
    QVERIFY(key);
    QVERIFY(key->action != PasswordKeyTable::Character);
    QCOMPARE(PasswordKeyTable::typed(line, *key, caps), typed);
    // Their captions do not change with caps.
    QCOMPARE(PasswordKeyTable::caption(*key, true), PasswordKeyTable::caption(*key, false));
}

void TestPasswordKeyTable::layout_data()
{
    QTest::addColumn<QSize>("screen");
    QTest::addColumn<QSize>("keyboard");
    QTest::addColumn<int>("closeSide");
    QTest::addColumn<int>("clearWidth");
    QTest::addColumn<QSize>("dialog");
    QTest::newRow("800x480") << QSize(800, 480) << QSize(800, 280) << 35 << 60 << QSize(500, 246);
    QTest::newRow("1024x600") << QSize(1024, 600) << QSize(940, 314) << 38 << 72 << QSize(556, 270);
    QTest::newRow("1280x800") << QSize(1280, 800) << QSize(1100, 371) << 43 << 86 << QSize(620, 310);
    QTest::newRow("1920x1080") << QSize(1920, 1080) << QSize(1500, 450) << 50 << 120 << QSize(780, 366);
    QTest::newRow("no screen") << QSize() << QSize(800, 280) << 35 << 60 << QSize(500, 246);
    QTest::newRow("negative") << QSize(-5, 480) << QSize(800, 280) << 35 << 60 << QSize(500, 246);
    // A screen smaller than the smallest panel still holds the keyboard.
    QTest::newRow("640x360") << QSize(640, 360) << QSize(640, 246) << 32 << 51 << QSize(460, 222);
}

void TestPasswordKeyTable::layout()
{
    QFETCH(QSize, screen);
    QFETCH(QSize, keyboard);
    QFETCH(int, closeSide);
    QFETCH(int, clearWidth);
    QFETCH(QSize, dialog);
    const PasswordDialogLayout l = PasswordDialogLayout::forScreen(screen);
    QCOMPARE(l.keyboard, keyboard);
    QCOMPARE(l.keyboardCloseSide, closeSide);
    QCOMPARE(l.clearMinWidth, clearWidth);
    QCOMPARE(l.dialog, dialog);
    QVERIFY(l.closeSide > 0 && l.closeSide < l.titleHeight);
    QVERIFY(l.fieldHeight > 0 && l.actionButton.isValid() && l.keyPointSize > 0);
}

void TestPasswordKeyTable::registerText_data()
{
    QTest::addColumn<bool>("gb2312");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("length");
    QTest::addColumn<QByteArray>("stored");
    const QByteArray zeros32(32, '\0');
    QTest::newRow("empty") << false << QString() << 32 << zeros32;
    QTest::newRow("name") << false << "Office" << 32 << QByteArray("Office").append(26, '\0');
    QTest::newRow("32 characters fill 32 bytes") << false << QString(32, 'n') << 32 << QByteArray(32, 'n');
    QTest::newRow("63 characters") << false << QString(63, 'p') << 63 << QByteArray(63, 'p');
    QTest::newRow("200 characters keep the register's 63")
        << false << QString(200, 'p') << 63 << QByteArray(63, 'p');
    QTest::newRow("no register") << false << "abc" << 0 << QByteArray();
    QTest::newRow("odd length") << false << "abc" << -3 << QByteArray();
    // Two characters, four bytes in GB2312: the first two bytes are stored.
    QTest::newRow("GB2312 cut to the character count")
        << true << QStringLiteral("网络") << 8 << QByteArray("\xcd\xf8", 2).append(6, '\0');
    QTest::newRow("GB2312 mixed")
        << true << QStringLiteral("ab密码") << 8 << QByteArray("ab\xc3\xdc", 4).append(4, '\0');
    // UTF-8 is cut just the same, in the middle of a character.
    QTest::newRow("UTF-8 cut") << false << QStringLiteral("网络") << 4 << QByteArray("\xe7\xbd", 2).append(2, '\0');
}

void TestPasswordKeyTable::registerText()
{
    QFETCH(bool, gb2312);
    QFETCH(QString, text);
    QFETCH(int, length);
    QFETCH(QByteArray, stored);
    QTextCodec *previous = QTextCodec::codecForLocale();
    auto restore = qScopeGuard([previous] { QTextCodec::setCodecForLocale(previous); });
    QTextCodec::setCodecForLocale(QTextCodec::codecForName(gb2312 ? "GB2312" : "UTF-8"));
    QCOMPARE(WlanConnectRequest::registerText(text, length), stored);
}

PANEL_TEST_MAIN(TestPasswordKeyTable)
#include "tst_passwordkeytable.moc"
