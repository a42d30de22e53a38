// The settings window, opened through the built plug-in exactly as the host
// opens it, on a prepared panel root.
#include "fiforeader.h"
#include "flash_wr_1.h"
#include "settingsinterface.h"
#include "sysreg.h"
#include "testharness.h"
#include "testpanel.h"

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QPluginLoader>
#include <QPushButton>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QSettings>
#include <QtTest>

#include <sys/stat.h>

namespace {

const char PluginPath[] = SETTINGS_PLUGIN_PATH;
const char Selected[] = "border: 0px;background-color:rgb(96, 157, 191);";
const char NotSelected[] = "border: 0px;background-color:rgb(240, 240, 240);";

QDialog *openWindow()
{
    QPluginLoader loader(QString::fromLocal8Bit(PluginPath));
    auto *plugin = qobject_cast<SettingsInterface *>(loader.instance());
    if (!plugin)
        return nullptr;
    QDialog *window = plugin->createInstance();
    window->show();
    if (!QTest::qWaitForWindowExposed(window))
        qWarning("settings window never exposed");
    return window;
}

quint8 registerByte(unsigned index)
{
    quint8 value[8] = {};
    SysReg_Read(index, value);
    return value[0];
}

void setRegisterByte(unsigned index, quint8 value)
{
    SysReg_Write(index, &value, 1);
}

QString caption(QDialog *window, const char *button)
{
    const QList<QLabel *> labels = window->findChild<QPushButton *>(button)->findChildren<QLabel *>();
    for (QLabel *label : labels) {
        if (!label->text().isEmpty())
            return label->text();
    }
    return QString();
}

int countOf(const QList<quint32> &indices, quint32 index)
{
    return int(std::count(indices.begin(), indices.end(), index));
}

// Emits a page's record change the way a page does.
void emitRecordChange(QObject *page, EEInfoDetail::Flash_WR_1 &record, qint32 type)
{
    const bool ok = QMetaObject::invokeMethod(
        page, "updateEEData", Qt::DirectConnection,
        QGenericArgument("EEInfoDetail::Flash_WR_1&", &record), QGenericArgument("Settings::FlashWR1DataType", &type));
    QVERIFY(ok);
}

QByteArray languageFile(const QByteArray &entries)
{
    return "{\"defaultLange\":0,\"lange\":[" + entries + "]}";
}

const QByteArray ThreeLanguages = languageFile(R"J({"id":0,"name":"Chinese(Simplified Han)"},
    {"id":1,"name":"English(Latin)"},{"id":2,"name":"Deutsch"})J");

} // namespace

class TestSettingsWindow : public QObject
{
    Q_OBJECT

private slots:
    void windowIsMarkedOpen();
    void closeButtonOnlyTellsTheHost();
    void closeButtonHiddenByDevice_data();
    void closeButtonHiddenByDevice();
    void pageButtons();
    void clickingTheShownPageChangesNothing();
    void statusBarAndHiddenButtonsNeverAppear();
    void keyClickOnlyWhenBuzzerReadsOn_data();
    void keyClickOnlyWhenBuzzerReadsOn();
    void restartReboots();
    void languageChangeRetranslatesAndAnnounces();
    void recordWriteBack_data();
    void recordWriteBack();
    void languageRegisterEqualToListSizeIsReset();
    void languageRegisterBeyondListIsKept();
    void fillingTheListChangesNothing();
    void otherLanguagesShowEnglish();
    void missingLanguageFileGivesBuiltInList();
    void unreadableLanguageFile_data();
    void unreadableLanguageFile();
};

void TestSettingsWindow::windowIsMarkedOpen()
{
    TestPanel panel;
    QScopedPointer<QDialog> window(openWindow());
    QVERIFY(window);
    QCOMPARE(registerByte(SysRegIdx::SettingsWindowOpen) & 1, 1);
}

void TestSettingsWindow::closeButtonOnlyTellsTheHost()
{
    TestPanel panel;
    QScopedPointer<QDialog> window(openWindow());
    FifoReader host(panel.path("/tmp/fifo_sysreg"));
    host.drain();
    auto *close = window->findChild<QPushButton *>("closePushButton");
    QVERIFY(close && close->isVisible());
    QTest::mouseClick(close, Qt::LeftButton);
    QCOMPARE(registerByte(SysRegIdx::SettingsWindowOpen) & 1, 0);
    QCOMPARE(host.registerIndices(), QList<quint32>{SysRegIdx::SettingsWindowOpen});
    QTest::qWait(20);
    QVERIFY(window->isVisible());
}

void TestSettingsWindow::closeButtonHiddenByDevice_data()
{
    QTest::addColumn<quint8>("byte157");
    QTest::addColumn<bool>("visible");
    QTest::newRow("0 shows it") << quint8(0) << true;
    QTest::newRow("1 hides it") << quint8(1) << false;
    QTest::newRow("0xff hides it") << quint8(0xff) << false;
}

void TestSettingsWindow::closeButtonHiddenByDevice()
{
    QFETCH(quint8, byte157);
    QFETCH(bool, visible);
    TestPanel panel;
    QByteArray image = panel.image();
    image[EEInfoDetail::Flash_WR_1::CloseButtonHiddenOffset] = char(byte157);
    panel.setImage(image);
    QScopedPointer<QDialog> window(openWindow());
    auto *close = window->findChild<QPushButton *>("closePushButton");
    QVERIFY(close);
    QCOMPARE(close->isVisible(), visible);
    // A language change rebuilds the title bar; the device switch still holds.
    window->findChild<QComboBox *>("comboBox")->setCurrentIndex(1);
    QCOMPARE(window->findChildren<QPushButton *>("closePushButton").size(), 1);
    QCOMPARE(close->isVisible(), visible);
}

void TestSettingsWindow::pageButtons()
{
    TestPanel panel;
    QScopedPointer<QDialog> window(openWindow());
    auto *stack = window->findChild<QStackedWidget *>("stackedWidget");
    auto *general = window->findChild<QPushButton *>("generalPushButton");
    auto *network = window->findChild<QPushButton *>("networkPushButton");
    auto *version = window->findChild<QPushButton *>("versionPushButton");
    QCOMPARE(stack->currentWidget()->objectName(), QStringLiteral("generalSettingsPage"));
    QCOMPARE(general->styleSheet(), QString(Selected));

    QTest::mouseClick(network, Qt::LeftButton);
    QCOMPARE(stack->currentWidget()->objectName(), QStringLiteral("networkPage"));
    QCOMPARE(network->styleSheet(), QString(Selected));
    QCOMPARE(general->styleSheet(), QString(NotSelected));

    QTest::mouseClick(version, Qt::LeftButton);
    QCOMPARE(stack->currentWidget()->objectName(), QStringLiteral("versionPage"));
    QCOMPARE(version->styleSheet(), QString(Selected));
    QCOMPARE(network->styleSheet(), QString(NotSelected));

    QTest::mouseClick(general, Qt::LeftButton);
    QCOMPARE(stack->currentWidget()->objectName(), QStringLiteral("generalSettingsPage"));
}

void TestSettingsWindow::clickingTheShownPageChangesNothing()
{
    TestPanel panel;
    QScopedPointer<QDialog> window(openWindow());
    auto *network = window->findChild<QPushButton *>("networkPushButton");
    QTest::mouseClick(network, Qt::LeftButton);
    auto styles = [&] {
        QStringList all;
        for (QPushButton *b : window->findChildren<QPushButton *>())
            all << b->objectName() + b->styleSheet();
        for (QLabel *l : window->findChildren<QLabel *>())
            all << l->styleSheet() + QString::number(l->pixmap(Qt::ReturnByValue).cacheKey());
        return all;
    };
    const QStringList before = styles();
    QTest::mouseClick(network, Qt::LeftButton);
    QCOMPARE(styles(), before);
    QCOMPARE(window->findChild<QStackedWidget *>("stackedWidget")->currentWidget()->objectName(),
             QStringLiteral("networkPage"));
}

void TestSettingsWindow::statusBarAndHiddenButtonsNeverAppear()
{
    TestPanel panel;
    QScopedPointer<QDialog> window(openWindow());
    auto check = [&] {
        QVERIFY(!window->findChild<QWidget *>("statusBarFrame")->isVisible());
        QVERIFY(!window->findChild<QWidget *>("wifiPushButton")->isVisible());
        QVERIFY(!window->findChild<QWidget *>("fileManagerPushButton")->isVisible());
    };
    check();
    for (const char *button : {"networkPushButton", "versionPushButton", "generalPushButton"}) {
        QTest::mouseClick(window->findChild<QPushButton *>(button), Qt::LeftButton);
        check();
    }
    window->findChild<QComboBox *>("comboBox")->setCurrentIndex(1);
    check();
    window->findChild<QComboBox *>("comboBox")->setCurrentIndex(0);
    check();
}

void TestSettingsWindow::keyClickOnlyWhenBuzzerReadsOn_data()
{
    QTest::addColumn<bool>("registerOn");
    QTest::addColumn<QByteArray>("ini");
    QTest::addColumn<int>("beeps");
    // Register 79 is the master: the general page brings "General/buzzer"
    // into line with it when the window opens, whatever the file said.
    QTest::newRow("register on, file on") << true << QByteArray("[%General]\nbuzzer=on\n") << 1;
    QTest::newRow("register on, file off") << true << QByteArray("[%General]\nbuzzer=off\n") << 1;
    QTest::newRow("register on, no file") << true << QByteArray() << 1;
    QTest::newRow("register off, file on") << false << QByteArray("[%General]\nbuzzer=on\n") << 0;
    QTest::newRow("register off, file off") << false << QByteArray("[%General]\nbuzzer=off\n") << 0;
}

void TestSettingsWindow::keyClickOnlyWhenBuzzerReadsOn()
{
    QFETCH(bool, registerOn);
    QFETCH(QByteArray, ini);
    QFETCH(int, beeps);
    SimulatedPanel::Options options;
    options.buzzerOn = registerOn;
    TestPanel panel(options);
    if (ini.isNull())
        panel.removeFile("/hmi/Config/system_settings.ini");
    else
        panel.writeFile("/hmi/Config/system_settings.ini", ini);
    QScopedPointer<QDialog> window(openWindow());
    panel.clearCalls();
    QTest::mouseClick(window->findChild<QPushButton *>("versionPushButton"), Qt::LeftButton);
    QCOMPARE(panel.calls("setbeep").size(), beeps);
    if (beeps)
        QCOMPARE(panel.calls("setbeep").first(), QStringList({"setbeep", "long"}));
    // Only presses on buttons click; a press elsewhere is silent.
    QTest::mouseClick(window->findChild<QWidget *>("stackedWidget"), Qt::LeftButton);
    QCOMPARE(panel.calls("setbeep").size(), beeps);
    window.reset();
    QSettings file(panel.path("/hmi/Config/system_settings.ini"), QSettings::IniFormat);
    QCOMPARE(file.value("General/buzzer").toString(), QString::fromLatin1(registerOn ? "on" : "off"));
}

void TestSettingsWindow::restartReboots()
{
    TestPanel panel;
    QScopedPointer<QDialog> window(openWindow());
    panel.clearCalls();
    QTest::mouseClick(window->findChild<QPushButton *>("restartPushButton"), Qt::LeftButton);
    QCOMPARE(panel.calls("reboot"), QList<QStringList>{QStringList{"reboot"}});
}

void TestSettingsWindow::languageChangeRetranslatesAndAnnounces()
{
    TestPanel panel;
    QScopedPointer<QDialog> window(openWindow());
    QCOMPARE(caption(window.data(), "generalPushButton"), QStringLiteral("通用"));
    QCOMPARE(caption(window.data(), "restartPushButton"), QStringLiteral("重启"));
    FifoReader host(panel.path("/tmp/fifo_sysreg"));
    host.drain();
    QSignalSpy spy(window.data(), SIGNAL(changeLanguage(Settings::Language)));

    window->findChild<QComboBox *>("comboBox")->setCurrentIndex(1);
    QCOMPARE(registerByte(SysRegIdx::Language), quint8(1));
    QCOMPARE(host.registerIndices(), QList<quint32>{SysRegIdx::Language});
    QCOMPARE(caption(window.data(), "generalPushButton"), QStringLiteral("General"));
    QCOMPARE(caption(window.data(), "networkPushButton"), QStringLiteral("Network"));
    QCOMPARE(caption(window.data(), "versionPushButton"), QStringLiteral("Version"));
    QCOMPARE(caption(window.data(), "restartPushButton"), QStringLiteral("Restart"));
    QCOMPARE(window->windowTitle(), QStringLiteral("Settings"));
    QCOMPARE(spy.size(), 1);

    window->findChild<QComboBox *>("comboBox")->setCurrentIndex(0);
    QCOMPARE(registerByte(SysRegIdx::Language), quint8(0));
    QCOMPARE(host.registerIndices(), QList<quint32>{SysRegIdx::Language});
    QCOMPARE(caption(window.data(), "networkPushButton"), QStringLiteral("网络"));
    QCOMPARE(window->windowTitle(), QStringLiteral("设置"));
    QCOMPARE(window->findChild<QComboBox *>("comboBox")->itemText(0), QStringLiteral("中文"));
}

void TestSettingsWindow::recordWriteBack_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QList<int>>("copiedOffsets");   // 4-byte fields unless brightness
    QTest::addColumn<int>("writes");
    using F = EEInfoDetail::Flash_WR_1;
    QTest::newRow("brightness") << 1 << QList<int>{F::BrightnessOffset} << 2;
    QTest::newRow("address") << 2 << QList<int>{F::Eth0IpOffset, F::Eth1IpOffset} << 1;
    QTest::newRow("mask") << 3 << QList<int>{F::Eth0MaskOffset, F::Eth1MaskOffset} << 1;
    QTest::newRow("gateway") << 4 << QList<int>{F::Eth0GatewayOffset, F::Eth1GatewayOffset} << 1;
    QTest::newRow("unknown type") << 9 << QList<int>{} << 0;
}

void TestSettingsWindow::recordWriteBack()
{
    QFETCH(int, type);
    QFETCH(QList<int>, copiedOffsets);
    QFETCH(int, writes);
    TestPanel panel;
    QScopedPointer<QDialog> window(openWindow());
    const QByteArray opened = panel.image();

    // Other programs change their own bytes meanwhile: a write must keep them.
    QByteArray foreign = opened;
    for (int i = EEInfoDetail::Flash_WR_1::Size; i < foreign.size(); ++i)
        foreign[i] = char(QRandomGenerator::global()->bounded(256));
    panel.setImage(foreign);
    panel.clearCalls();

    EEInfoDetail::Flash_WR_1 record;
    memset(&record, 0xA5, sizeof record);
    QObject *page = window->findChild<QObject *>(type == 1 ? "generalSettingsListWidget" : "networkSettingsListWidget");
    emitRecordChange(page, record, type);
    QCOMPARE(panel.calls("writeee").size(), qMin(writes, 1));
    QTest::qWait(1300);
    QCOMPARE(panel.calls("writeee").size(), writes);
    QTest::qWait(1100);   // the dirty flag was cleared: no further writes
    QCOMPARE(panel.calls("writeee").size(), writes);
    if (!writes)
        return;
    for (QStringList call : panel.calls("writeee"))
        QCOMPARE(call, QStringList({"writeee", "count=16"}));

    QByteArray expected = foreign;
    memcpy(expected.data(), opened.constData(), EEInfoDetail::Flash_WR_1::Size);
    for (int offset : copiedOffsets)
        memset(expected.data() + offset, 0xA5, offset == EEInfoDetail::Flash_WR_1::BrightnessOffset ? 2 : 4);
    const QByteArray written = panel.image();
    QCOMPARE(written.size(), 1024);
    for (int i = 0; i < written.size(); ++i) {
        if (written[i] != expected[i])
            QFAIL(qPrintable(QStringLiteral("image byte %1 is %2, expected %3").arg(i).arg(quint8(written[i])).arg(quint8(expected[i]))));
    }
}

void TestSettingsWindow::languageRegisterEqualToListSizeIsReset()
{
    TestPanel panel;
    panel.writeFile("/hmi/Config/lange.json", ThreeLanguages);
    setRegisterByte(SysRegIdx::Language, 3);
    FifoReader host(panel.path("/tmp/fifo_sysreg"));
    QScopedPointer<QDialog> window(openWindow());
    QCOMPARE(registerByte(SysRegIdx::Language), quint8(0));
    // Once for the correction, once more when the window takes the language.
    QCOMPARE(countOf(host.registerIndices(), SysRegIdx::Language), 2);
    QCOMPARE(window->findChild<QComboBox *>("comboBox")->currentIndex(), 0);
    QCOMPARE(window->findChild<QComboBox *>("comboBox")->count(), 3);
    QCOMPARE(window->findChild<QComboBox *>("comboBox")->itemText(2), QStringLiteral("Deutsch"));
}

void TestSettingsWindow::languageRegisterBeyondListIsKept()
{
    TestPanel panel;
    panel.writeFile("/hmi/Config/lange.json", ThreeLanguages);
    setRegisterByte(SysRegIdx::Language, 7);
    FifoReader host(panel.path("/tmp/fifo_sysreg"));
    QScopedPointer<QDialog> window(openWindow());
    QCOMPARE(registerByte(SysRegIdx::Language), quint8(7));
    QCOMPARE(countOf(host.registerIndices(), SysRegIdx::Language), 1);
    QCOMPARE(window->findChild<QComboBox *>("comboBox")->currentIndex(), 0);
    QCOMPARE(caption(window.data(), "generalPushButton"), QStringLiteral("General"));
}

void TestSettingsWindow::fillingTheListChangesNothing()
{
    // Filling selects rows 0 and then 1; were those selections acted on, the
    // register would be rewritten and announced for each of them.
    TestPanel panel;
    setRegisterByte(SysRegIdx::Language, 1);
    FifoReader host(panel.path("/tmp/fifo_sysreg"));
    QScopedPointer<QDialog> window(openWindow());
    QCOMPARE(countOf(host.registerIndices(), SysRegIdx::Language), 1);
    QCOMPARE(registerByte(SysRegIdx::Language), quint8(1));
    QCOMPARE(window->findChild<QComboBox *>("comboBox")->currentIndex(), 1);
}

void TestSettingsWindow::otherLanguagesShowEnglish()
{
    TestPanel panel;
    panel.writeFile("/hmi/Config/lange.json", ThreeLanguages);
    setRegisterByte(SysRegIdx::Language, 2);
    QScopedPointer<QDialog> window(openWindow());
    QCOMPARE(caption(window.data(), "generalPushButton"), QStringLiteral("General"));
    QCOMPARE(registerByte(SysRegIdx::Language), quint8(2));
    auto *combo = window->findChild<QComboBox *>("comboBox");
    QCOMPARE(combo->currentIndex(), 2);

    QSignalSpy spy(window.data(), SIGNAL(changeLanguage(Settings::Language)));
    combo->setCurrentIndex(0);
    combo->setCurrentIndex(2);
    QCOMPARE(spy.size(), 2);
    QCOMPARE(*static_cast<const qint32 *>(spy.at(1).at(0).constData()), 1);
    QCOMPARE(registerByte(SysRegIdx::Language), quint8(2));
    QCOMPARE(caption(window.data(), "versionPushButton"), QStringLiteral("Version"));
}

void TestSettingsWindow::missingLanguageFileGivesBuiltInList()
{
    SimulatedPanel::Options options;
    options.withLanguageFile = false;
    TestPanel panel(options);
    setRegisterByte(SysRegIdx::Language, 1);
    QTest::ignoreMessage(QtDebugMsg, "cannot open lange.json");
    QScopedPointer<QDialog> window(openWindow());
    auto *combo = window->findChild<QComboBox *>("comboBox");
    QCOMPARE(combo->count(), 2);
    QCOMPARE(combo->currentIndex(), 1);
    QCOMPARE(combo->itemText(1), QStringLiteral("English"));
    QCOMPARE(caption(window.data(), "generalPushButton"), QStringLiteral("General"));
}

void TestSettingsWindow::unreadableLanguageFile_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("message");
    const QString file = QStringLiteral("file");
    QTest::newRow("a folder") << "folder" << QByteArray() << "cannot open lange.json";
    QTest::newRow("a FIFO") << "fifo" << QByteArray() << "cannot open lange.json";
    QTest::newRow("an array") << file << QByteArray("[1,2]") << "JSON document is not an object";
    QTest::newRow("cut short") << file << QByteArray("{\"lange\":[{\"id\":0,") << "JSON document is not an object";
    QTest::newRow("empty") << file << QByteArray() << "JSON document is not an object";
    // A whole list, but behind more than the reader takes.
    QTest::newRow("over 64 KiB") << file << QByteArray(64 * 1024, ' ') + ThreeLanguages
                                 << "JSON document is not an object";
}

void TestSettingsWindow::unreadableLanguageFile()
{
    QFETCH(QString, kind);
    QFETCH(QByteArray, content);
    QFETCH(QString, message);
    TestPanel panel;
    panel.removeFile("/hmi/Config/lange.json");
    const QByteArray path = QFile::encodeName(panel.path("/hmi/Config/lange.json"));
    if (kind == QLatin1String("folder"))
        QVERIFY(QDir().mkpath(QString::fromLocal8Bit(path)));
    else if (kind == QLatin1String("fifo"))
        QCOMPARE(mkfifo(path.constData(), 0600), 0);    // no writer ever comes
    else
        panel.writeFile("/hmi/Config/lange.json", content);
    QTest::ignoreMessage(QtDebugMsg, qPrintable(message));
    QScopedPointer<QDialog> window(openWindow());
    QVERIFY(window);
    // The list keeps what it had: nothing, on a fresh window.
    QCOMPARE(window->findChild<QComboBox *>("comboBox")->count(), 0);
    QCOMPARE(registerByte(SysRegIdx::SettingsWindowOpen) & 1, 1);
}

PANEL_GUI_TEST_MAIN(TestSettingsWindow)
#include "tst_settingswindow.moc"
