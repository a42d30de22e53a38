// Parts of the settings window that the host cannot reach through the
// plug-in interface, driven in-process from the plug-in's own objects.
#include "datetimedialog.h"
#include "inputdialog.h"
#include "keyclick.h"
#include "settings.h"
#include "paintcounter.h"
#include "testharness.h"
#include "testpanel.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QtTest>

class TestSettingsInternal : public QObject
{
    Q_OBJECT

private slots:
    void languageBoxSize_data();
    void languageBoxSize();
    void languageBoxFollowsTheScreen();
    void windowCoversThePanel();
    void draggedDialogTriggersRepaint();
    void noRepaintWithoutDrag();
    void versionPageShowsTheDeviceTextOnOpening();
    void keyClickReadsTheConfiguration_data();
    void keyClickReadsTheConfiguration();
    void dateTimeDialogOutlivesItsFirstWindow();
};

void TestSettingsInternal::languageBoxSize_data()
{
    QTest::addColumn<QSize>("screen");
    QTest::addColumn<QSize>("box");
    QTest::newRow("800x480") << QSize(800, 480) << QSize(160, 25);
    QTest::newRow("1024x600") << QSize(1024, 600) << QSize(184, 31);
    QTest::newRow("1280x800") << QSize(1280, 800) << QSize(211, 41);
    QTest::newRow("1920x1080") << QSize(1920, 1080) << QSize(280, 56);
}

void TestSettingsInternal::languageBoxSize()
{
    QFETCH(QSize, screen);
    QFETCH(QSize, box);
    QCOMPARE(Settings::languageBoxSize(screen), box);
}

void TestSettingsInternal::languageBoxFollowsTheScreen()
{
    TestPanel panel;
    Settings window;
    window.init();
    const QSize expected = Settings::languageBoxSize(QGuiApplication::primaryScreen()->geometry().size());
    QWidget *box = window.findChild<QWidget *>("comboBox");
    QCOMPARE(box->minimumSize(), expected);
    QCOMPARE(box->maximumSize(), expected);
}

void TestSettingsInternal::windowCoversThePanel()
{
    TestPanel panel;
    Settings window;
    window.init();
    const QSize screen = QGuiApplication::primaryScreen()->geometry().size();
    QCOMPARE(window.size(), screen);
    QVERIFY(window.windowFlags() & Qt::FramelessWindowHint);
    // The close button sits at the panel's right edge, inside the title bar.
    QWidget *close = window.findChild<QWidget *>("closePushButton");
    QCOMPARE(close->pos(), QPoint(screen.width() - 55, 15));
    QCOMPARE(close->size(), QSize(40, 40));
}

void TestSettingsInternal::draggedDialogTriggersRepaint()
{
    TestPanel panel;
    Settings window;
    window.init();
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    PaintCounter counter(&window);
    InputDialog::p_move = true;
    QTRY_VERIFY_WITH_TIMEOUT(!InputDialog::p_move, 500);
    QVERIFY(counter.count > 0);
}

void TestSettingsInternal::noRepaintWithoutDrag()
{
    TestPanel panel;
    Settings window;
    window.init();
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTest::qWait(50);
    PaintCounter counter(&window);
    InputDialog::p_move = false;
    QTest::qWait(100);
    QCOMPARE(counter.count, 0);
    QVERIFY(!InputDialog::p_move);
}

void TestSettingsInternal::versionPageShowsTheDeviceTextOnOpening()
{
    SimulatedPanel::Options options;
    options.qrCodeText = "TAVRO-CLOUD-0042";
    TestPanel panel(options);
    Settings window;
    window.init();
    auto *text = window.findChild<QLabel *>("label_num");
    auto *picture = window.findChild<QLabel *>("label_barcode");
    auto *title = window.findChild<QLabel *>("label_title");
    QVERIFY(text && picture && title);
    QCOMPARE(text->text(), QStringLiteral("TAVRO-CLOUD-0042"));
    QVERIFY(!picture->pixmap(Qt::ReturnByValue).isNull());
    // The page writes its title in the panel's font, which the window loaded.
    const QStringList families = QFontDatabase::applicationFontFamilies(
        QFontDatabase::addApplicationFont(panel.path("/hmi/default.ttf")));
    QVERIFY(!families.isEmpty());
    QCOMPARE(title->font().family(), families.first());
    QCOMPARE(title->font().pointSize(), 13);
}

void TestSettingsInternal::keyClickReadsTheConfiguration_data()
{
    QTest::addColumn<QByteArray>("ini");
    QTest::addColumn<bool>("clicks");
    // QSettings keeps the "General" group as "[%General]".
    QTest::newRow("on") << QByteArray("[%General]\nbuzzer=on\n") << true;
    QTest::newRow("off") << QByteArray("[%General]\nbuzzer=off\n") << false;
    QTest::newRow("On") << QByteArray("[%General]\nbuzzer=On\n") << false;
    QTest::newRow("ON") << QByteArray("[%General]\nbuzzer=ON\n") << false;
    QTest::newRow("true") << QByteArray("[%General]\nbuzzer=true\n") << false;
    QTest::newRow("1") << QByteArray("[%General]\nbuzzer=1\n") << false;
    QTest::newRow("missing key") << QByteArray("[%General]\n") << false;
    QTest::newRow("top-level key") << QByteArray("[General]\nbuzzer=on\n") << false;
    QTest::newRow("no file") << QByteArray() << false;
    QTest::newRow("other group") << QByteArray("[Network0]\nbuzzer=on\n") << false;
    QTest::newRow("garbage") << QByteArray("\x01\xff[[[=\n") << false;
}

void TestSettingsInternal::keyClickReadsTheConfiguration()
{
    QFETCH(QByteArray, ini);
    QFETCH(bool, clicks);
    TestPanel panel;
    if (ini.isNull())
        panel.removeFile("/hmi/Config/system_settings.ini");
    else
        panel.writeFile("/hmi/Config/system_settings.ini", ini);
    QSettings settings(panel.path("/hmi/Config/system_settings.ini"), QSettings::IniFormat);
    QCOMPARE(KeyClick::enabled(&settings), clicks);
    panel.clearCalls();
    KeyClick::play(&settings);
    QCOMPARE(panel.calls("setbeep").size(), clicks ? 1 : 0);
    QVERIFY(!KeyClick::enabled(nullptr));
    KeyClick::play(nullptr);
}

void TestSettingsInternal::dateTimeDialogOutlivesItsFirstWindow()
{
    // The dialog is made once, by the first window's general page, and
    // lives on after the host deleted that window and opened the next one.
    SimulatedPanel::Options options;
    options.buzzerOn = true;
    TestPanel panel(options);
    auto *first = new Settings;
    first->init();
    delete first;
    Settings second;
    second.init();
    DateTimeDialog *dialog = DateTimeDialog::Instance(-1, nullptr, nullptr);
    auto *close = dialog->findChild<QPushButton *>(QStringLiteral("closePushButton"));
    QVERIFY(close);
    panel.clearCalls();
    QTest::mouseClick(close, Qt::LeftButton);
    // Its close button still reads the key click from the configuration.
    QCOMPARE(panel.calls(QStringLiteral("setbeep")).size(), 1);
}

PANEL_GUI_TEST_MAIN(TestSettingsInternal)
#include "tst_settingsinternal.moc"
