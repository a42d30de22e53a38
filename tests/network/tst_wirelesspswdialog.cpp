// The WLAN password dialog driven offscreen on a simulated panel: its
// on-screen keyboard pressed key by key, the length rule with the host
// language's message box answered from a timer, and the connection request
// read back from the registers and the host's notification FIFO.
#include "fiforeader.h"
#include "modaldriver.h"
#include "panelscreen.h"
#include "passwordkeyboard.h"
#include "passwordkeytable.h"
#include "pswdialogrig.h"
#include "sysreg.h"
#include "testharness.h"
#include "testpanel.h"
#include "wirelesspswdialog.h"

#include <QCheckBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScopeGuard>
#include <QSettings>
#include <QSignalSpy>
#include <QTextCodec>
#include <QTranslator>
#include <QtTest>

namespace {

using Rig = PswDialogRig;

const QString SystemWords = QStringLiteral("/tmp/smw.dat");
constexpr int PassphraseOffset = 1910;     // register 104 in the system words
constexpr int PassphraseLength = 63;

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
    void textsCutToTheirCharacterCount();
    void longPasswords_data();
    void longPasswords();
    void endsOnceOnEachPath_data();
    void endsOnceOnEachPath();
    void pageMayDeleteTheDialogOnItsEnd_data();
    void pageMayDeleteTheDialogOnItsEnd();
    void dialogsDoNotPileUpUnderThePage();
    void keyClick_data();
    void keyClick();
    void fitsThePanel_data();
    void fitsThePanel();
};

void TestWirelessPswDialog::form()
{
    TestPanel panel;
    PswDialogRig o;
    QCOMPARE(o.dialog->ssid(), Rig::Ssid);
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
    PswDialogRig o;
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
    Rig::setRegisterByte(SysRegIdx::WlanState, 4);
    Rig::setRegisterByte(SysRegIdx::WlanConnectRequest, 0);
    PswDialogRig o;
    o.password()->setText(QStringLiteral("pa55word"));
    QTest::ignoreMessage(QtDebugMsg, "connect_wifiName: Office");
    QTest::ignoreMessage(QtDebugMsg, "connect_wifipass: pa55word");
    QTest::ignoreMessage(QtDebugMsg, "wifiPsw.length(): 8");
    o.connectClicked();

    QCOMPARE(o.closed.size(), 1);
    QCOMPARE(o.closed.at(0).at(0).toInt(), 1);
    QCOMPARE(Rig::registerBytes(SysRegIdx::WlanSsid), Rig::padded("Office", 32));
    QCOMPARE(Rig::registerBytes(SysRegIdx::WlanPassphrase), Rig::padded("pa55word", PassphraseLength));
    QCOMPARE(Rig::registerByte(SysRegIdx::WlanConnectRequest) & 1, 1);
    QCOMPARE(Rig::registerByte(SysRegIdx::WlanState), quint8(0));
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
    Rig::setRegisterByte(SysRegIdx::Language, language);
    Rig::setRegisterByte(SysRegIdx::WlanState, 4);
    const QByteArray words = panel.readFile(SystemWords);
    const quint8 request = Rig::registerByte(SysRegIdx::WlanConnectRequest);
    PswDialogRig o;
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
    QCOMPARE(Rig::registerByte(SysRegIdx::WlanConnectRequest), request);
    QVERIFY(host.registerIndices().isEmpty());
}

void TestWirelessPswDialog::eightBlanksFromTheSpaceKey()
{
    TestPanel panel;
    FifoReader host(panel.path(QStringLiteral("/tmp/fifo_sysreg")));
    PswDialogRig o;
    QVERIFY(o.pressPasswordField());
    for (int i = 0; i < 8; ++i)
        QVERIFY(o.press(QStringLiteral("button_kongge")));
    QCOMPARE(o.line(), QString(8, ' '));
    QVERIFY(o.press(QStringLiteral("button_enter")));
    QCOMPARE(o.password()->text(), QString(8, ' '));
    o.connectClicked();
    QCOMPARE(o.closed.size(), 1);
    QCOMPARE(o.closed.at(0).at(0).toInt(), 1);
    QCOMPARE(Rig::registerBytes(SysRegIdx::WlanPassphrase), Rig::padded(QByteArray(8, ' '), PassphraseLength));
    QCOMPARE(host.registerIndices(), (QList<quint32>{103, 104, 101, 100}));
}

void TestWirelessPswDialog::textsCutToTheirCharacterCount()
{
    TestPanel panel;
    QTextCodec *previous = QTextCodec::codecForLocale();
    auto restore = qScopeGuard([previous] { QTextCodec::setCodecForLocale(previous); });
    // As the WLAN page leaves it after reading the scan list.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("GB2312"));
    PswDialogRig o(QStringLiteral("无线网络"));
    o.password()->setText(QStringLiteral("密码密码1234"));
    o.connectClicked();
    QCOMPARE(o.closed.size(), 1);
    // Four characters, eight bytes: "无线" is what fits the count.
    QCOMPARE(Rig::registerBytes(SysRegIdx::WlanSsid), Rig::padded("\xce\xde\xcf\xdf", 32));
    QCOMPARE(Rig::registerBytes(SysRegIdx::WlanPassphrase),
             Rig::padded("\xc3\xdc\xc2\xeb\xc3\xdc\xc2\xeb", PassphraseLength));
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

    PswDialogRig o;
    QString password;
    for (int i = 0; i < length; ++i)
        password += QChar(QLatin1Char(char('a' + i % 26)));
    o.password()->setText(password);
    o.connectClicked();
    QCOMPARE(o.closed.size(), 1);
    QCOMPARE(Rig::registerBytes(SysRegIdx::WlanPassphrase), password.left(PassphraseLength).toLatin1());
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
    PswDialogRig o;
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

void TestWirelessPswDialog::pageMayDeleteTheDialogOnItsEnd_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("now");
    for (const char *path : {"pushButton_connect", "pushButton_cancel", "pushButton_close"}) {
        QTest::addRow("%s, delete", path) << path << true;
        QTest::addRow("%s, deleteLater", path) << path << false;
    }
}

void TestWirelessPswDialog::pageMayDeleteTheDialogOnItsEnd()
{
    QFETCH(QString, path);
    QFETCH(bool, now);
    TestPanel panel;
    Rig o;
    o.password()->setText(QStringLiteral("12345678"));
    QVERIFY(o.pressPasswordField());
    WirelessPswDialog *dialog = o.dialog.data();
    int heard = 0;
    connect(dialog, &WirelessPswDialog::frame_close, this, [dialog, now, &heard](int) {
        ++heard;
        if (now)
            delete dialog;
        else
            dialog->deleteLater();
    });
    QTest::mouseClick(o.child<QPushButton>(path.toLatin1().constData()), Qt::LeftButton);
    QTRY_VERIFY(o.dialog.isNull());
    QCOMPARE(heard, 1);
}

void TestWirelessPswDialog::dialogsDoNotPileUpUnderThePage()
{
    TestPanel panel;
    QWidget page;
    const int children = page.children().size();
    for (int i = 0; i < 100; ++i) {
        Rig o(Rig::Ssid, &page);
        o.pressPasswordField();
        QTest::mouseClick(o.child<QPushButton>(i % 2 ? "pushButton_cancel" : "pushButton_close"), Qt::LeftButton);
        QTRY_VERIFY(o.dialog.isNull());
    }
    QCOMPARE(page.children().size(), children);
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
    PswDialogRig o(Rig::Ssid, &window);
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

void TestWirelessPswDialog::fitsThePanel_data()
{
    QTest::addColumn<QSize>("screen");
    QTest::addColumn<bool>("chinese");
    QTest::addColumn<QString>("ssid");
    const QString longest(32, QLatin1Char('W'));
    for (const QSize &screen : {QSize(800, 480), QSize(1920, 1080)}) {
        for (bool chinese : {false, true}) {
            for (const QString &ssid : {Rig::Ssid, longest}) {
                QTest::addRow("%dx%d %s %d", screen.width(), screen.height(), chinese ? "Chinese" : "English",
                              ssid.size())
                    << screen << chinese << ssid;
            }
        }
    }
}

void TestWirelessPswDialog::fitsThePanel()
{
    QFETCH(QSize, screen);
    QFETCH(bool, chinese);
    QFETCH(QString, ssid);
    TestPanel panel;
    QTranslator translator;
    if (chinese) {
        QVERIFY(translator.load(QStringLiteral(":/Languages/Translate_CN.qm")));
        QCoreApplication::installTranslator(&translator);
    }
    auto untranslate = qScopeGuard([&translator] { QCoreApplication::removeTranslator(&translator); });
    Rig o(ssid);
    o.dialog->resizeUIWgt(screen);
    QTRY_VERIFY(o.dialog->layout()->geometry().size() == o.dialog->size());
    QVERIFY(o.dialog->width() <= screen.width() && o.dialog->height() <= screen.height());
    if (chinese)
        QCOMPARE(o.child<QPushButton>("pushButton_connect")->text(), QStringLiteral("连接"));

    QList<QWidget *> shown;
    for (const char *name : {"label_title", "pushButton_close", "label", "lineEdit_psw", "checkBox_showPsw",
                             "pushButton_cancel", "pushButton_connect"})
        shown << o.child<QWidget>(name);
    for (QWidget *widget : shown) {
        QVERIFY(widget && widget->isVisible());
        const QRect r(widget->mapTo(o.dialog.data(), QPoint(0, 0)), widget->size());
        QVERIFY2(o.dialog->rect().contains(r), qPrintable(widget->objectName() + QStringLiteral(" leaves the dialog")));
        // Narrower than it asks for would clip its text; the close button is
        // a picture of the size the title bar gives it.
        if (!qobject_cast<QLineEdit *>(widget) && widget->objectName() != QLatin1String("pushButton_close"))
            QVERIFY2(widget->width() >= widget->sizeHint().width(),
                     qPrintable(QStringLiteral("%1: %2 < %3").arg(widget->objectName()).arg(widget->width())
                                .arg(widget->sizeHint().width())));
        for (QWidget *other : shown) {
            const QRect o2(other->mapTo(o.dialog.data(), QPoint(0, 0)), other->size());
            QVERIFY2(other == widget || !r.intersects(o2),
                     qPrintable(widget->objectName() + QStringLiteral(" overlaps ") + other->objectName()));
        }
    }
}

PANEL_GUI_TEST_MAIN(TestWirelessPswDialog)
#include "tst_wirelesspswdialog.moc"
