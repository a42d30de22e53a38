// The simulated panel every test and the simulator stand on: its files, its
// firmware tools and the recording stand-ins of the system tools.
#include "fiforeader.h"
#include "sysreg.h"
#include "testharness.h"
#include "testpanel.h"

#include <QFileInfo>
#include <QStandardPaths>
#include <QtTest>

#include <cstdlib>
#include <sys/stat.h>

class TestSimulatedPanel : public QObject
{
    Q_OBJECT

private slots:
    void registerFilesCoverEveryArea_data();
    void registerFilesCoverEveryArea();
    void fifosAreFifos();
    void buzzerRegisterFollowsTheOption_data();
    void buzzerRegisterFollowsTheOption();
    void hostToolsAreRecordedNotRun_data();
    void hostToolsAreRecordedNotRun();
    void firmwareKeepsImageAndBrightness();
    void fifoReaderCollectsMessages();
    void rootIsRestoredAfterwards();
    void guardNoticesEscapingTools();
};

void TestSimulatedPanel::registerFilesCoverEveryArea_data()
{
    QTest::addColumn<QString>("file");
    for (const char *f : {"/tmp/mw.dat", "/tmp/mb.dat", "/hmi_data/fw.dat", "/hmi_data/fb.dat", "/tmp/smw.dat",
                          "/tmp/smb.dat", "/hmi_data/sfw.dat", "/hmi_data/sfb.dat", "/hmi_data/rw.dat"})
        QTest::newRow(f) << QString::fromLatin1(f);
}

void TestSimulatedPanel::registerFilesCoverEveryArea()
{
    QFETCH(QString, file);
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    // The furthest register of the table ends at byte 2121 of the system words.
    QCOMPARE(QFileInfo(panel.path(file)).size(), qint64(SimulatedPanel::RegisterFileSize));
    QVERIFY(SimulatedPanel::RegisterFileSize >= 2055 + 66);
}

void TestSimulatedPanel::buzzerRegisterFollowsTheOption_data()
{
    QTest::addColumn<bool>("on");
    QTest::newRow("quiet panel") << false;
    QTest::newRow("clicking panel") << true;
}

void TestSimulatedPanel::buzzerRegisterFollowsTheOption()
{
    QFETCH(bool, on);
    SimulatedPanel::Options options;
    options.buzzerOn = on;
    TestPanel panel(options);
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    quint32 value = 0xffffffff;
    QCOMPARE(SysReg_Read(SysRegIdx::KeyBuzzer, &value), 0);
    QCOMPARE(value & 0xff, on ? 1u : 0u);
    // Only that one bit: its neighbours stay clear.
    QByteArray bits = panel.readFile(QStringLiteral("/hmi_data/sfb.dat"));
    bits[2] = char(bits[2] & ~0x02);
    QCOMPARE(bits.count('\0'), bits.size());
}

void TestSimulatedPanel::fifosAreFifos()
{
    TestPanel panel;
    for (const char *f : {"/tmp/fifo_sysreg", "/tmp/fifo_localreg"}) {
        struct stat st {};
        QCOMPARE(::stat(QFile::encodeName(panel.path(QLatin1String(f))).constData(), &st), 0);
        QVERIFY(S_ISFIFO(st.st_mode));
    }
    QVERIFY(QFileInfo::exists(panel.path("/hmi/Config/lange.json")));
    QVERIFY(QFileInfo::exists(panel.path("/hmi/Config/system_settings.ini")));
}

void TestSimulatedPanel::hostToolsAreRecordedNotRun_data()
{
    QTest::addColumn<QString>("tool");
    for (const QString &tool : SimulatedPanel::hostToolNames())
        QTest::newRow(qPrintable(tool)) << tool;
}

void TestSimulatedPanel::hostToolsAreRecordedNotRun()
{
    QFETCH(QString, tool);
    TestPanel panel;
    const QByteArray command = tool.toLatin1() + " -x 'two words' last";
    QCOMPARE(std::system(command.constData()), 0);
    const QList<QStringList> calls = panel.calls();
    QCOMPARE(calls.size(), 1);
    QCOMPARE(calls.first(), QStringList({tool, "-x", "two words", "last"}));
}

void TestSimulatedPanel::firmwareKeepsImageAndBrightness()
{
    SimulatedPanel::Options options;
    options.brightness = 120;
    options.screenWidth = 1920;
    TestPanel panel(options);
    const QByteArray image = panel.image();
    QCOMPARE(image.size(), 1024);
    QCOMPARE(quint8(image[256 + 30]) | ((quint8(image[256 + 31]) >> 4) << 8), 1920);

    const QByteArray tools = QFile::encodeName(panel.path("/root/plat-intf"));
    QCOMPARE(std::system((tools + "/getbright > " + QFile::encodeName(panel.path("/tmp/b.txt"))).constData()), 0);
    QCOMPARE(panel.readFile("/tmp/b.txt").trimmed(), QByteArray("120"));
    QCOMPARE(std::system((tools + "/setbright 90").constData()), 0);
    QCOMPARE(QFile(SimulatedPanel::brightnessPath(panel.root())).size(), qint64(3));

    QByteArray changed = image;
    changed[700] = 'Z';
    panel.writeFile("/tmp/new.bin", changed);
    QCOMPARE(std::system((tools + "/writeee count=16 < " + QFile::encodeName(panel.path("/tmp/new.bin"))).constData()), 0);
    QCOMPARE(panel.image(), changed);
    QCOMPARE(panel.calls().last(), QStringList({"writeee", "count=16"}));
    QCOMPARE(panel.calls("setbright").first(), QStringList({"setbright", "90"}));
}

void TestSimulatedPanel::fifoReaderCollectsMessages()
{
    TestPanel panel;
    FifoReader reader(panel.path("/tmp/fifo_sysreg"));
    QVERIFY(reader.isOpen());
    QFile fifo(panel.path("/tmp/fifo_sysreg"));
    QVERIFY(fifo.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    fifo.write(QByteArray("\x56\x00\x00\x00\x14\x00\x00\x00", 8));
    fifo.close();
    QCOMPARE(reader.registerIndices(), QList<quint32>({86, 20}));
    QVERIFY(reader.registerIndices().isEmpty());
}

void TestSimulatedPanel::rootIsRestoredAfterwards()
{
    QVERIFY(!qEnvironmentVariableIsSet("PANEL_ROOT") || qgetenv("PANEL_ROOT").isEmpty());
    {
        TestPanel panel;
        QCOMPARE(qgetenv("PANEL_ROOT"), QFile::encodeName(panel.root()));
    }
    QVERIFY(qgetenv("PANEL_ROOT").isEmpty());
}

void TestSimulatedPanel::guardNoticesEscapingTools()
{
    const QByteArray path = qgetenv("PATH");
    const QString fakes = QFileInfo(QStandardPaths::findExecutable("reboot")).absolutePath();
    QCOMPARE(TestHarness::escapingTool(fakes), QString());

    // Without the stand-ins in front, the guard must refuse.
    QByteArray bare = path;
    bare.replace(QFile::encodeName(fakes) + ':', QByteArray());
    qputenv("PATH", bare);
    const QString escaped = TestHarness::escapingTool(fakes);
    qputenv("PATH", path);
    QVERIFY(!escaped.isEmpty());
    QVERIFY2(escaped.contains("would reach the real tool") || escaped.contains("/bin/sh"), qPrintable(escaped));
    QCOMPARE(TestHarness::escapingTool(fakes), QString());
}

PANEL_TEST_MAIN(TestSimulatedPanel)
#include "tst_simulatedpanel.moc"
