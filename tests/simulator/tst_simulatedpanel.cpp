// The simulated panel every test and the simulator stand on: its files, its
// firmware tools and the recording stand-ins of the system tools.
#include "fiforeader.h"
#include "sysreg.h"
#include "testharness.h"
#include "testpanel.h"

#include <QFileInfo>
#include <QProcess>
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
    void routingTableAsTheKernelWouldKeepIt_data();
    void routingTableAsTheKernelWouldKeepIt();
    void pingAnswersAsTheOuterNetworkIs_data();
    void pingAnswersAsTheOuterNetworkIs();
    void onePortPanelHasNoSecondPort();
    void linkInterfacesJoinTheStandInNetwork();
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


namespace {

const QString Eth0Link = QStringLiteral("192.168.1.0/24 dev eth0 proto kernel scope link src 192.168.1.100");
const QString Eth1Link = QStringLiteral("192.168.2.0/24 dev eth1 proto kernel scope link src 192.168.2.100");
const QString Eth0Default = QStringLiteral("route add default gw 192.168.1.1 dev eth0 metric 1");
const QString Eth1Default = QStringLiteral("route add default gw 192.168.2.1 dev eth1 metric 11");

} // namespace

void TestSimulatedPanel::routingTableAsTheKernelWouldKeepIt_data()
{
    QTest::addColumn<int>("ports");
    QTest::addColumn<QStringList>("commands");
    QTest::addColumn<QStringList>("table");
    QTest::newRow("as booted") << 2 << QStringList{} << QStringList{Eth0Link, Eth1Link};
    QTest::newRow("lowest metric first") << 2 << QStringList{Eth1Default, Eth0Default}
        << QStringList{"default via 192.168.1.1 dev eth0 metric 1", "default via 192.168.2.1 dev eth1 metric 11",
                       Eth0Link, Eth1Link};
    QTest::newRow("no metric") << 2 << QStringList{"route add default gw 192.168.1.1 dev eth0"}
        << QStringList{"default via 192.168.1.1 dev eth0", Eth0Link, Eth1Link};
    QTest::newRow("port found from the gateway") << 2 << QStringList{"route add default gw 192.168.2.1"}
        << QStringList{"default via 192.168.2.1 dev eth1", Eth0Link, Eth1Link};
    QTest::newRow("gateway off the port's subnet") << 2 << QStringList{"route add default gw 10.0.0.1 dev eth0 metric 1"}
        << QStringList{Eth0Link, Eth1Link};
    QTest::newRow("no wlan0, no ppp0")
        << 2 << QStringList{"route add default gw 192.168.236.1 dev wlan0 metric 100", "route add default dev ppp0 metric 100"}
        << QStringList{Eth0Link, Eth1Link};
    QTest::newRow("twice the same") << 2 << QStringList{Eth0Default, Eth0Default}
        << QStringList{"default via 192.168.1.1 dev eth0 metric 1", Eth0Link, Eth1Link};
    QTest::newRow("removed") << 2 << QStringList{Eth0Default, Eth1Default, "route del default dev eth0"}
        << QStringList{"default via 192.168.2.1 dev eth1 metric 11", Eth0Link, Eth1Link};
    QTest::newRow("nothing to remove") << 2 << QStringList{"route del default dev eth1"} << QStringList{Eth0Link, Eth1Link};
    QTest::newRow("new address: class mask, route gone") << 2 << QStringList{Eth0Default, "ifconfig eth0 10.1.2.3 up"}
        << QStringList{"10.0.0.0/8 dev eth0 proto kernel scope link src 10.1.2.3", Eth1Link};
    QTest::newRow("then its netmask") << 2 << QStringList{"ifconfig eth0 10.1.2.3 up", "ifconfig eth0 netmask 255.255.255.0"}
        << QStringList{"10.1.2.0/24 dev eth0 proto kernel scope link src 10.1.2.3", Eth1Link};
    QTest::newRow("port down takes its routes") << 2 << QStringList{Eth0Default, Eth1Default, "ifconfig eth1 down"}
        << QStringList{"default via 192.168.1.1 dev eth0 metric 1", Eth0Link};
    QTest::newRow("down and up again") << 2 << QStringList{Eth1Default, "ifconfig eth1 down", "ifconfig eth1 up"}
        << QStringList{Eth0Link, Eth1Link};
    QTest::newRow("one port: eth1 is not there")
        << 1 << QStringList{"ifconfig eth1 192.168.2.100 up", Eth1Default, Eth0Default}
        << QStringList{"default via 192.168.1.1 dev eth0 metric 1", Eth0Link};
    QTest::newRow("not understood") << 2 << QStringList{"route add default gw 999.1.1.1 dev eth0", "ifconfig eth0 x y",
                                                        "route add default gw", "ifconfig"}
        << QStringList{Eth0Link, Eth1Link};
}

// Every stand-in call still exits 0, as the plug-in's checks of the real
// tools' results are not what the simulator shows.
void TestSimulatedPanel::routingTableAsTheKernelWouldKeepIt()
{
    QFETCH(int, ports);
    QFETCH(QStringList, commands);
    QFETCH(QStringList, table);
    SimulatedPanel::Options options;
    options.wiredPorts = ports;
    TestPanel panel(options);
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    for (const QString &command : commands)
        QCOMPARE(std::system(command.toLatin1().constData()), 0);
    const QString routes = QString::fromLatin1(panel.readFile(QStringLiteral("/sim/routes")));
    QCOMPARE(routes.split(QLatin1Char('\n'), Qt::SkipEmptyParts), table);
    QCOMPARE(panel.calls().size(), commands.size());
}

void TestSimulatedPanel::pingAnswersAsTheOuterNetworkIs_data()
{
    using Outer = SimulatedPanel::Options::OuterNetwork;
    QTest::addColumn<int>("outer");
    QTest::addColumn<bool>("ttl");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<bool>("silent");
    QTest::newRow("up") << int(Outer::Up) << true << 0 << false;
    QTest::newRow("down") << int(Outer::Down) << false << 1 << false;
    QTest::newRow("not simulated") << int(Outer::Unknown) << false << 0 << true;
}

void TestSimulatedPanel::pingAnswersAsTheOuterNetworkIs()
{
    QFETCH(int, outer);
    QFETCH(bool, ttl);
    QFETCH(int, exitCode);
    QFETCH(bool, silent);
    SimulatedPanel::Options options;
    options.outerNetwork = SimulatedPanel::Options::OuterNetwork(outer);
    TestPanel panel(options);
    QProcess ping;
    ping.start(QStringLiteral("ping"), {QStringLiteral("www.baidu.com"), QStringLiteral("-W"), QStringLiteral("3"),
                                        QStringLiteral("-c"), QStringLiteral("1")});
    QVERIFY(ping.waitForFinished(10000));
    const QByteArray said = ping.readAllStandardOutput();
    QCOMPARE(ping.exitCode(), exitCode);
    QCOMPARE(said.contains("ttl"), ttl);
    QCOMPARE(said.isEmpty(), silent);
    QVERIFY(silent || said.contains("www.baidu.com"));
    // The state is the panel's own: switching it changes the next answer.
    QVERIFY(SimulatedPanel::setOuterNetwork(panel.root(), !ttl));
    ping.start(QStringLiteral("ping"), {QStringLiteral("www.baidu.com")});
    QVERIFY(ping.waitForFinished(10000));
    QCOMPARE(ping.readAllStandardOutput().contains("ttl"), !ttl);
}

void TestSimulatedPanel::onePortPanelHasNoSecondPort()
{
    SimulatedPanel::Options options;
    options.wiredPorts = 1;
    const QByteArray one = SimulatedPanel::sampleImage(options);
    options.wiredPorts = 2;
    const QByteArray two = SimulatedPanel::sampleImage(options);
    QCOMPARE(quint8(one.at(256 + 6)) & 1, 0);
    QCOMPARE(quint8(two.at(256 + 6)) & 1, 1);
    // 4G and WLAN stay as they are.
    QCOMPARE(quint8(one.at(256 + 6)) & 0x20, 0x20);
    QCOMPARE(one.at(256 + 5), two.at(256 + 5));
}

// The host's WLAN and 4G links: while up, routes through them are taken
// like those through a wired port; gone, every route through them goes.
void TestSimulatedPanel::linkInterfacesJoinTheStandInNetwork()
{
    TestPanel panel;
    QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
    QCOMPARE(std::system("route add default gw 192.168.8.1 dev wlan0 metric 0"), 0);
    QVERIFY(!panel.readFile(QStringLiteral("/sim/routes")).contains("wlan0"));
    QVERIFY(SimulatedPanel::setLinkInterface(panel.root(), QStringLiteral("wlan0"), QStringLiteral("192.168.8.23"),
                                             QStringLiteral("255.255.255.0")));
    QVERIFY(SimulatedPanel::setLinkInterface(panel.root(), QStringLiteral("ppp0"), QStringLiteral("10.64.23.7"),
                                             QStringLiteral("255.255.255.255")));
    QCOMPARE(std::system("route add default gw 192.168.8.1 dev wlan0 metric 0"), 0);
    QCOMPARE(QString::fromLatin1(panel.readFile(QStringLiteral("/sim/routes"))).split(QLatin1Char('\n'), Qt::SkipEmptyParts),
             (QStringList{QStringLiteral("default via 192.168.8.1 dev wlan0"),
                          QStringLiteral("10.64.23.7/32 dev ppp0 proto kernel scope link src 10.64.23.7"),
                          QStringLiteral("192.168.1.0/24 dev eth0 proto kernel scope link src 192.168.1.100"),
                          QStringLiteral("192.168.2.0/24 dev eth1 proto kernel scope link src 192.168.2.100"),
                          QStringLiteral("192.168.8.0/24 dev wlan0 proto kernel scope link src 192.168.8.23")}));
    QCOMPARE(panel.readFile(QStringLiteral("/sim/ports")), QByteArray("eth0\neth1\nwlan0\nppp0\n"));
    QVERIFY(SimulatedPanel::setLinkInterface(panel.root(), QStringLiteral("wlan0"), QString(), QString()));
    const QByteArray routes = panel.readFile(QStringLiteral("/sim/routes"));
    QVERIFY2(!routes.contains("wlan0") && routes.contains("dev ppp0"), routes.constData());
    QVERIFY(!panel.readFile(QStringLiteral("/sim/interfaces")).contains("wlan0"));
    QCOMPARE(panel.readFile(QStringLiteral("/sim/ports")), QByteArray("eth0\neth1\nppp0\n"));
}

PANEL_TEST_MAIN(TestSimulatedPanel)
#include "tst_simulatedpanel.moc"
