// The WLAN password dialog driven offscreen on a simulated panel: its
// on-screen keyboard pressed key by key, the length rule with the host
// language's message box answered from a timer, and the connection request
// read back from the registers and the host's notification FIFO.
#include "fiforeader.h"
#include "modaldriver.h"
#include "panelscreen.h"
#include "passwordkeyboard.h"
#include "passwordkeytable.h"
#include "sysreg.h"
#include "testharness.h"
#include "testpanel.h"
#include "wirelesspswdialog.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScopeGuard>
#include <QSettings>
#include <QSignalSpy>
#include <QTextCodec>
#include <QtTest>

namespace {

const QString Ssid = QStringLiteral("Office");
const QString SystemWords = QStringLiteral("/tmp/smw.dat");
constexpr int PassphraseOffset = 1910;     // register 104 in the system words
constexpr int PassphraseLength = 63;

QByteArray registerBytes(unsigned index)
{
    QByteArray value(256, '\0');
    if (SysReg_Read(index, value.data()) != 0)
        return QByteArray();
    const RegBase *reg = SysReg_LoadReg(index);
    return value.left(int(reg->length));
}

quint8 registerByte(unsigned index)
{
    quint8 value[4] = {};
    SysReg_Read(index, value);
    return value[0];
}

void setRegisterByte(unsigned index, quint8 value)
{
    SysReg_Write(index, &value, 1);
}

QByteArray padded(const QByteArray &text, int length)
{
    return QByteArray(text).append(length - text.size(), '\0');
}

// A dialog as the WLAN page opens it, shown, with a spy on its end.
struct Opened
{
    explicit Opened(const QString &ssid = Ssid, QWidget *parent = nullptr)
        : dialog(new WirelessPswDialog(ssid, parent)), closed(dialog.data(), SIGNAL(frame_close(int)))
    {
        dialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(dialog.data()));
    }
    ~Opened() { delete dialog.data(); }

    template <typename T>
    T *child(const char *name) const { return dialog->findChild<T *>(QLatin1String(name)); }
    QLineEdit *password() const { return child<QLineEdit>("lineEdit_psw"); }

    PasswordKeyboard *pressPasswordField()
    {
        QTest::mousePress(password(), Qt::LeftButton);
        PasswordKeyboard *keyboard = dialog->keyboard();
        if (keyboard && !QTest::qWaitForWindowExposed(keyboard))
            return nullptr;
        return keyboard;
    }
    void press(const QString &key)
    {
        PasswordKeyboard *keyboard = dialog->keyboard();
        QVERIFY2(keyboard, "no keyboard open");
        QPushButton *button = keyboard->key(key);
        QVERIFY2(button, qPrintable(key));
        QTest::mouseClick(button, Qt::LeftButton);
    }
    QString line() const { return dialog->keyboard() ? dialog->keyboard()->line()->text() : QString(); }
    void connectClicked() { QTest::mouseClick(child<QPushButton>("pushButton_connect"), Qt::LeftButton); }

    QPointer<WirelessPswDialog> dialog;
    QSignalSpy closed;
};

struct MessageSeen
{
    QString title;
    QString text;
    QStringList buttons;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
};

void answerNextMessage(MessageSeen *seen)
{
    ModalDriver::onNext<QMessageBox>([seen](QMessageBox *box) {
        seen->title = box->windowTitle();
        seen->text = box->text();
        seen->icon = box->icon();
        for (QAbstractButton *button : box->buttons())
            seen->buttons << button->text();
        box->buttons().first()->click();
    });
}

} // namespace

class TestWirelessPswDialog : public QObject
{
    Q_OBJECT

private slots:
    void form();
    void showPassword();
    void eightCharactersConnect();
    void shortPasswordRefused_data();
    void shortPasswordRefused();
    void eightBlanksFromTheSpaceKey();
    void capsTurnsDigitsIntoSymbols();
    void capsRelabelsEveryCharacterKey();
    void keysTypeTheirCharacters_data();
    void keysTypeTheirCharacters();
    void backAndClear();
    void enterCopiesIntoThePasswordField();
    void xClosesTheKeyboard();
    void everyPressBuildsAFreshKeyboard();
    void pressesDoNotPileUpKeyboards();
    void textsCutToTheirCharacterCount();
    void longPasswords_data();
    void longPasswords();
    void endsOnceOnEachPath_data();
    void endsOnceOnEachPath();
    void keyClick_data();
    void keyClick();
};

void TestWirelessPswDialog::form()
{
    TestPanel panel;
    Opened o;
    QCOMPARE(o.dialog->ssid(), Ssid);
    QCOMPARE(o.dialog->windowTitle(), QStringLiteral("Dialog"));
    QVERIFY(o.dialog->windowFlags() & Qt::FramelessWindowHint);
    QCOMPARE(o.child<QLabel>("label_title")->text(), QStringLiteral("Input the password of Office"));
    QCOMPARE(o.child<QPushButton>("pushButton_close")->styleSheet(),
             QStringLiteral("border-image: url(:/Resources/close1.png);"));
    QVERIFY(o.child<QWidget>("frame_title"));
    QVERIFY(o.child<QLabel>("label"));
    QCOMPARE(o.child<QCheckBox>("checkBox_showPsw")->text(), QStringLiteral("Show password"));
    QCOMPARE(o.child<QPushButton>("pushButton_cancel")->text(), QStringLiteral("Cancel"));
    QCOMPARE(o.child<QPushButton>("pushButton_connect")->text(), QStringLiteral("Connect"));
    QCOMPARE(o.password()->echoMode(), QLineEdit::Password);
    QVERIFY(!o.dialog->keyboard());

    PasswordKeyboard *keyboard = o.pressPasswordField();
    QVERIFY(keyboard);
    QCOMPARE(keyboard->parent(), o.dialog.data());
    QVERIFY(!keyboard->isModal());
    QCOMPARE(keyboard->windowTitle(), QStringLiteral("Always on Top Dialog"));
    QCOMPARE(keyboard->styleSheet(), QStringLiteral("QDialog {  border: 2px solid blue;  border-radius: 5px;}"));
    QCOMPARE(keyboard->size(), PasswordDialogLayout::forScreen(PanelScreen::size()).keyboard);
    auto *title = keyboard->findChild<QLabel *>("label_keyboardTitle");
    QCOMPARE(title->text(), QStringLiteral("Keyboard"));
    QCOMPARE(title->styleSheet(), QStringLiteral("background: blue;"));
    QCOMPARE(keyboard->closeButton()->text(), QStringLiteral("X"));
    QCOMPARE(keyboard->closeButton()->styleSheet(), QStringLiteral("QPushButton { background-color: red; }"));
    QCOMPARE(keyboard->line()->text(), QString());
    QCOMPARE(keyboard->findChildren<QPushButton *>().size(), PasswordKeyTable::KeyCount + 1);
    for (int i = 0; i < PasswordKeyTable::KeyCount; ++i) {
        const PasswordKeyTable::Key &key = PasswordKeyTable::keys()[i];
        QPushButton *button = keyboard->findChild<QPushButton *>(PasswordKeyTable::objectName(key));
        QVERIFY2(button, key.name);
        QCOMPARE(button->styleSheet(), QStringLiteral("QPushButton { background-color: blue; }"));
        QCOMPARE(button->palette().color(QPalette::ButtonText), QColor(Qt::white));
    }
    QVERIFY(keyboard->key(QStringLiteral("button_clear"))->width() >= 60);
}

void TestWirelessPswDialog::showPassword()
{
    TestPanel panel;
    Opened o;
    auto *box = o.child<QCheckBox>("checkBox_showPsw");
    // On the box itself: the row is wider than the box and its text.
    const QPoint onBox(4, box->height() / 2);
    QTest::mouseClick(box, Qt::LeftButton, {}, onBox);
    QCOMPARE(o.password()->echoMode(), QLineEdit::Normal);
    QTest::mouseClick(box, Qt::LeftButton, {}, onBox);
    QCOMPARE(o.password()->echoMode(), QLineEdit::Password);
}

void TestWirelessPswDialog::eightCharactersConnect()
{
    TestPanel panel;
    FifoReader host(panel.path(QStringLiteral("/tmp/fifo_sysreg")));
    QVERIFY(host.isOpen());
    setRegisterByte(SysRegIdx::WlanState, 4);
    setRegisterByte(SysRegIdx::WlanConnectRequest, 0);
    Opened o;
    o.password()->setText(QStringLiteral("pa55word"));
    QTest::ignoreMessage(QtDebugMsg, "connect_wifiName: Office");
    QTest::ignoreMessage(QtDebugMsg, "connect_wifipass: pa55word");
    QTest::ignoreMessage(QtDebugMsg, "wifiPsw.length(): 8");
    o.connectClicked();

    QCOMPARE(o.closed.size(), 1);
    QCOMPARE(o.closed.at(0).at(0).toInt(), 1);
    QCOMPARE(registerBytes(SysRegIdx::WlanSsid), padded("Office", 32));
    QCOMPARE(registerBytes(SysRegIdx::WlanPassphrase), padded("pa55word", PassphraseLength));
    QCOMPARE(registerByte(SysRegIdx::WlanConnectRequest) & 1, 1);
    QCOMPARE(registerByte(SysRegIdx::WlanState), quint8(0));
    QCOMPARE(host.registerIndices(), (QList<quint32>{103, 104, 101, 100}));
    QCOMPARE(o.dialog->result(), int(QDialog::Accepted));
    QTRY_VERIFY(o.dialog.isNull());
}

void TestWirelessPswDialog::shortPasswordRefused_data()
{
    QTest::addColumn<quint8>("language");
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("icon");
    const QString chinese = QStringLiteral("密码长度不少于8位");
    const QString english = QStringLiteral("Password length less 8!");
    QTest::newRow("7, Chinese") << quint8(0) << "1234567" << "" << chinese << "确定" << int(QMessageBox::Warning);
    QTest::newRow("7, English") << quint8(1) << "1234567" << "Waring" << english << "OK"
                                << int(QMessageBox::Information);
    QTest::newRow("empty, English") << quint8(1) << "" << "Waring" << english << "OK" << int(QMessageBox::Information);
    QTest::newRow("7 blanks, other language") << quint8(7) << "       " << "Waring" << english << "OK"
                                              << int(QMessageBox::Information);
}

void TestWirelessPswDialog::shortPasswordRefused()
{
    QFETCH(quint8, language);
    QFETCH(QString, password);
    QFETCH(QString, title);
    QFETCH(QString, text);
    QFETCH(QString, button);
    QFETCH(int, icon);
    TestPanel panel;
    FifoReader host(panel.path(QStringLiteral("/tmp/fifo_sysreg")));
    setRegisterByte(SysRegIdx::Language, language);
    setRegisterByte(SysRegIdx::WlanState, 4);
    const QByteArray words = panel.readFile(SystemWords);
    const quint8 request = registerByte(SysRegIdx::WlanConnectRequest);
    Opened o;
    o.password()->setText(password);
    MessageSeen seen;
    answerNextMessage(&seen);
    o.connectClicked();

    QCOMPARE(seen.title, title);
    QCOMPARE(seen.text, text);
    QCOMPARE(seen.buttons, QStringList{button});
    QCOMPARE(int(seen.icon), icon);
    QCOMPARE(ModalDriver::pending(), 0);
    QVERIFY(o.dialog && o.dialog->isVisible());
    QCOMPARE(o.closed.size(), 0);
    QCOMPARE(panel.readFile(SystemWords), words);
    QCOMPARE(registerByte(SysRegIdx::WlanConnectRequest), request);
    QVERIFY(host.registerIndices().isEmpty());
}

void TestWirelessPswDialog::eightBlanksFromTheSpaceKey()
{
    TestPanel panel;
    FifoReader host(panel.path(QStringLiteral("/tmp/fifo_sysreg")));
    Opened o;
    QVERIFY(o.pressPasswordField());
    for (int i = 0; i < 8; ++i)
        o.press(QStringLiteral("button_kongge"));
    QCOMPARE(o.line(), QString(8, ' '));
    o.press(QStringLiteral("button_enter"));
    QCOMPARE(o.password()->text(), QString(8, ' '));
    o.connectClicked();
    QCOMPARE(o.closed.size(), 1);
    QCOMPARE(o.closed.at(0).at(0).toInt(), 1);
    QCOMPARE(registerBytes(SysRegIdx::WlanPassphrase), padded(QByteArray(8, ' '), PassphraseLength));
    QCOMPARE(host.registerIndices(), (QList<quint32>{103, 104, 101, 100}));
}

void TestWirelessPswDialog::capsTurnsDigitsIntoSymbols()
{
    TestPanel panel;
    Opened o;
    QVERIFY(o.pressPasswordField());
    QVERIFY(!o.dialog->capsOn());
    o.press(QStringLiteral("button_caps"));
    QVERIFY(o.dialog->capsOn());
    o.press(QStringLiteral("button_1"));
    QCOMPARE(o.line(), QStringLiteral("!"));
    o.press(QStringLiteral("button_caps"));
    QVERIFY(!o.dialog->capsOn());
    o.press(QStringLiteral("button_1"));
    QCOMPARE(o.line(), QStringLiteral("!1"));
}

void TestWirelessPswDialog::capsRelabelsEveryCharacterKey()
{
    TestPanel panel;
    Opened o;
    PasswordKeyboard *keyboard = o.pressPasswordField();
    QVERIFY(keyboard);
    for (bool caps : {true, false, true}) {
        o.press(QStringLiteral("button_caps"));
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

void TestWirelessPswDialog::keysTypeTheirCharacters_data()
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

void TestWirelessPswDialog::keysTypeTheirCharacters()
{
    QFETCH(QString, name);
    QFETCH(bool, caps);
    TestPanel panel;
    Opened o;
    QVERIFY(o.pressPasswordField());
    if (caps)
        o.press(QStringLiteral("button_caps"));
    o.press(name);
    o.press(name);
    const QString character = PasswordKeyTable::caption(*PasswordKeyTable::find(name), caps);
    QCOMPARE(o.line(), character + character);
    o.press(QStringLiteral("button_enter"));
    QCOMPARE(o.password()->text(), character + character);
}

void TestWirelessPswDialog::backAndClear()
{
    TestPanel panel;
    Opened o;
    QVERIFY(o.pressPasswordField());
    o.press(QStringLiteral("button_back"));
    QCOMPARE(o.line(), QString());
    for (const char *key : {"button_a", "button_b", "button_c"})
        o.press(QLatin1String(key));
    o.press(QStringLiteral("button_back"));
    QCOMPARE(o.line(), QStringLiteral("ab"));
    o.press(QStringLiteral("button_clear"));
    QCOMPARE(o.line(), QString());
    o.press(QStringLiteral("button_back"));
    QCOMPARE(o.line(), QString());
    QVERIFY(o.dialog->keyboard()->isVisible());
}

void TestWirelessPswDialog::enterCopiesIntoThePasswordField()
{
    TestPanel panel;
    Opened o;
    o.password()->setText(QStringLiteral("old text"));
    QPointer<PasswordKeyboard> keyboard = o.pressPasswordField();
    QVERIFY(keyboard);
    o.press(QStringLiteral("button_x"));
    o.press(QStringLiteral("button_y"));
    QTest::ignoreMessage(QtDebugMsg, "enter data: xy");
    o.press(QStringLiteral("button_enter"));
    QCOMPARE(o.password()->text(), QStringLiteral("xy"));
    QVERIFY(!keyboard || !keyboard->isVisible());
    QTRY_VERIFY(keyboard.isNull());
    QVERIFY(!o.dialog->keyboard());
    QCOMPARE(o.closed.size(), 0);
}

void TestWirelessPswDialog::xClosesTheKeyboard()
{
    TestPanel panel;
    Opened o;
    o.password()->setText(QStringLiteral("kept"));
    QPointer<PasswordKeyboard> keyboard = o.pressPasswordField();
    QVERIFY(keyboard);
    o.press(QStringLiteral("button_q"));
    QTest::mouseClick(keyboard->closeButton(), Qt::LeftButton);
    QTRY_VERIFY(keyboard.isNull());
    QCOMPARE(o.password()->text(), QStringLiteral("kept"));
    QVERIFY(o.dialog->isVisible());
    QCOMPARE(o.closed.size(), 0);
}

void TestWirelessPswDialog::everyPressBuildsAFreshKeyboard()
{
    TestPanel panel;
    Opened o;
    QPointer<PasswordKeyboard> first = o.pressPasswordField();
    QVERIFY(first);
    o.press(QStringLiteral("button_caps"));
    o.press(QStringLiteral("button_a"));
    QCOMPARE(o.line(), QStringLiteral("A"));

    QPointer<PasswordKeyboard> second = o.pressPasswordField();
    QVERIFY(second && second != first);
    QVERIFY(first.isNull());
    QVERIFY(!o.dialog->capsOn());
    QCOMPARE(second->line()->text(), QString());
    QCOMPARE(second->key(QStringLiteral("button_a"))->text(), QStringLiteral("a"));
    o.press(QStringLiteral("button_a"));
    QCOMPARE(o.line(), QStringLiteral("a"));

    // After ENTER closed it, a press opens yet another one.
    o.press(QStringLiteral("button_enter"));
    QPointer<PasswordKeyboard> third = o.pressPasswordField();
    QVERIFY(third && third != second && third->isVisible());
    QCOMPARE(third->line()->text(), QString());
}

void TestWirelessPswDialog::pressesDoNotPileUpKeyboards()
{
    TestPanel panel;
    Opened o;
    for (int i = 0; i < 50; ++i) {
        QVERIFY(o.pressPasswordField());
        if (i % 2)
            o.press(QStringLiteral("button_enter"));
        else if (i % 3 == 0)
            QTest::mouseClick(o.dialog->keyboard()->closeButton(), Qt::LeftButton);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(o.dialog->findChildren<PasswordKeyboard *>().size() <= 1);
    }
    QVERIFY(o.dialog->findChildren<QPushButton *>().size() <= 4 + PasswordKeyTable::KeyCount + 1);
}

void TestWirelessPswDialog::textsCutToTheirCharacterCount()
{
    TestPanel panel;
    QTextCodec *previous = QTextCodec::codecForLocale();
    auto restore = qScopeGuard([previous] { QTextCodec::setCodecForLocale(previous); });
    // As the WLAN page leaves it after reading the scan list.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("GB2312"));
    Opened o(QStringLiteral("无线网络"));
    o.password()->setText(QStringLiteral("密码密码1234"));
    o.connectClicked();
    QCOMPARE(o.closed.size(), 1);
    // Four characters, eight bytes: "无线" is what fits the count.
    QCOMPARE(registerBytes(SysRegIdx::WlanSsid), padded("\xce\xde\xcf\xdf", 32));
    QCOMPARE(registerBytes(SysRegIdx::WlanPassphrase),
             padded("\xc3\xdc\xc2\xeb\xc3\xdc\xc2\xeb", PassphraseLength));
}

void TestWirelessPswDialog::longPasswords_data()
{
    QTest::addColumn<int>("length");
    QTest::newRow("63") << 63;
    QTest::newRow("64") << 64;
    QTest::newRow("200") << 200;
}

void TestWirelessPswDialog::longPasswords()
{
    QFETCH(int, length);
    TestPanel panel;
    // Marks around register 104 that must survive the write.
    QByteArray words = panel.readFile(SystemWords);
    QVERIFY(words.size() > PassphraseOffset + PassphraseLength + 8);
    for (int i = 1; i <= 8; ++i)
        words[PassphraseOffset + PassphraseLength - 1 + i] = char(0xa5);
    QVERIFY(panel.writeFile(SystemWords, words));

    Opened o;
    QString password;
    for (int i = 0; i < length; ++i)
        password += QChar(QLatin1Char(char('a' + i % 26)));
    o.password()->setText(password);
    o.connectClicked();
    QCOMPARE(o.closed.size(), 1);
    QCOMPARE(registerBytes(SysRegIdx::WlanPassphrase), password.left(PassphraseLength).toLatin1());
    const QByteArray after = panel.readFile(SystemWords);
    QCOMPARE(after.size(), words.size());
    QCOMPARE(after.mid(PassphraseOffset + PassphraseLength, 8), QByteArray(8, char(0xa5)));
}

void TestWirelessPswDialog::endsOnceOnEachPath_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("result");
    QTest::newRow("connect") << "pushButton_connect" << 1;
    QTest::newRow("cancel") << "pushButton_cancel" << 0;
    QTest::newRow("close") << "pushButton_close" << 0;
    QTest::newRow("Esc") << "escape" << 0;
}

void TestWirelessPswDialog::endsOnceOnEachPath()
{
    QFETCH(QString, path);
    QFETCH(int, result);
    TestPanel panel;
    FifoReader host(panel.path(QStringLiteral("/tmp/fifo_sysreg")));
    Opened o;
    o.password()->setText(QStringLiteral("12345678"));
    QPointer<PasswordKeyboard> keyboard = o.pressPasswordField();
    if (path == QLatin1String("escape"))
        QTest::keyClick(o.dialog.data(), Qt::Key_Escape);
    else
        QTest::mouseClick(o.child<QPushButton>(path.toLatin1().constData()), Qt::LeftButton);
    QCOMPARE(o.closed.size(), 1);
    QCOMPARE(o.closed.at(0).at(0).toInt(), result);
    // Done: the dialog and its keyboard go, and nothing more is announced.
    QTRY_VERIFY(o.dialog.isNull());
    QVERIFY(keyboard.isNull());
    QCOMPARE(o.closed.size(), 1);
    QCOMPARE(host.registerIndices().size(), result ? 4 : 0);
}

void TestWirelessPswDialog::keyClick_data()
{
    QTest::addColumn<QString>("buzzer");
    QTest::addColumn<bool>("given");
    QTest::addColumn<int>("beeps");
    QTest::newRow("on, given") << "on" << true << 4;
    QTest::newRow("off, given") << "off" << true << 0;
    QTest::newRow("on, from the window") << "on" << false << 4;
    QTest::newRow("none reachable") << "" << false << 0;
}

void TestWirelessPswDialog::keyClick()
{
    QFETCH(QString, buzzer);
    QFETCH(bool, given);
    QFETCH(int, beeps);
    TestPanel panel;
    QWidget window;
    QSettings *settings = nullptr;
    if (!buzzer.isEmpty()) {
        settings = new QSettings(panel.path(QStringLiteral("/hmi/Config/system_settings.ini")), QSettings::IniFormat,
                                 given ? nullptr : &window);
        settings->setValue(QStringLiteral("General/buzzer"), buzzer);
    }
    Opened o(Ssid, &window);
    if (given)
        o.dialog->setSettings(settings);
    panel.clearCalls();
    o.pressPasswordField();
    o.press(QStringLiteral("button_a"));                 // 1
    o.press(QStringLiteral("button_caps"));              // 2
    o.press(QStringLiteral("button_enter"));             // 3
    MessageSeen seen;
    answerNextMessage(&seen);
    o.connectClicked();                                  // 4: refused, one letter
    QCOMPARE(seen.text.isEmpty(), false);
    QCOMPARE(panel.calls(QStringLiteral("setbeep")).size(), beeps);
    if (given)
        delete settings;
}

PANEL_GUI_TEST_MAIN(TestWirelessPswDialog)
#include "tst_wirelesspswdialog.moc"
