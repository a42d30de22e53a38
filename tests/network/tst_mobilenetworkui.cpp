// The 4G page on a simulated panel, driven through its real widgets
// offscreen; the host application's side is played by writing registers and
// the resolver file.
#include "fiforeader.h"
#include "iplineedit.h"
#include "mobilenetworkui.h"
#include "mobilerig.h"
#include "rowhidingcombobox.h"
#include "switchbutton.h"
#include "sysreg.h"
#include "testharness.h"
#include "testpanel.h"

#include <QAbstractItemView>
#include <QDir>
#include <QElapsedTimer>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTranslator>
#include <QtTest>

#include <sys/stat.h>

namespace {

const char *const Resolver = MobileRig::ResolverPath;
const char *const Backup = MobileRig::BackupPath;
const QString NoAddress = QStringLiteral("0.0.0.0");

QString picture(int n)
{
    return QStringLiteral(":/Resources/connect_%1.svg").arg(n);
}

void setValue(unsigned index, quint32 value)
{
    MobileRig::setValue(index, value);
}

quint32 value(unsigned index)
{
    return MobileRig::value(index);
}

} // namespace

class TestMobileNetworkUI : public QObject
{
    Q_OBJECT

private slots:
    void formHasItsWidgets();
    void signalPicture_data();
    void signalPicture();
    void statusByRegister_data();
    void statusByRegister();
    void tickRunsEverySecond();
    void serverOfTheLastLinkLine();
    void resolverReadOnlyUntilLinkDrops();
    void unreadableResolverFile_data();
    void unreadableResolverFile();
    void refreshListsAdapters_data();
    void refreshListsAdapters();
    void switchOnWritesInOrder();
    void switchOffWritesInOrder();
    void autoLeavesResolverUntouched();
    void adapterWithoutLinesNotRewritten();
    void chosenAdapterServersFirst();
    void mobileIndexFollowsPorts();
    void enableNetworkRows();
    void updateDefaultNetworkSelects();
    void testButtonStyles();
    void testButtonKeyClick();
    void chineseListStillChooses();
    void fontReachesChildrenWithoutPopups();
};

void TestMobileNetworkUI::formHasItsWidgets()
{
    MobileRig rig;
    QVERIFY(rig.switch4g());
    QVERIFY(rig.status());
    QVERIFY(rig.signal());
    QVERIFY(rig.list());
    QVERIFY(rig.testButton());
    QCOMPARE(rig.testButton()->text(), QStringLiteral("test"));
    QStringList texts;
    for (QLabel *label : rig.page->findChildren<QLabel *>())
        texts << label->text();
    for (const char *text : {"4G Switch:", "Network Status:", "Signal Strength:", "4G DNS Server Infor：", "DNS1:",
                             "DNS2:", "Default gateway info", "Network:", "OuterNet Ping test:"})
        QVERIFY2(texts.contains(QString::fromUtf8(text)), text);
    QCOMPARE(rig.dns(1), NoAddress);
    QCOMPARE(rig.dns(2), NoAddress);
}

void TestMobileNetworkUI::signalPicture_data()
{
    QTest::addColumn<quint32>("before");
    QTest::addColumn<quint32>("signal");
    QTest::addColumn<QString>("expected");
    QTest::newRow("20") << 50u << 20u << picture(5);
    QTest::newRow("21") << 50u << 21u << picture(4);
    QTest::newRow("100") << 50u << 100u << picture(1);
    QTest::newRow("0") << 50u << 0u << picture(6);
    QTest::newRow("1") << 0u << 1u << picture(5);
    QTest::newRow("101 keeps") << 50u << 101u << picture(3);
    QTest::newRow("255 keeps") << 90u << 255u << picture(1);
}

void TestMobileNetworkUI::signalPicture()
{
    QFETCH(quint32, before);
    QFETCH(quint32, signal);
    QFETCH(QString, expected);
    MobileRig rig;
    rig.setLink(2, before);
    rig.setLink(2, signal);
    QCOMPARE(rig.page->signalPicture(), expected);
    QCOMPARE(rig.page->property("signalPicture").toString(), expected);
    QVERIFY(!rig.signal()->pixmap(Qt::ReturnByValue).isNull());
}

void TestMobileNetworkUI::statusByRegister_data()
{
    QTest::addColumn<quint32>("state");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("picture");
    QTest::addColumn<QString>("dns");
    // Before each row the link is up with full signal and a server shown.
    QTest::newRow("0") << 0u << "Not connected" << picture(6) << NoAddress;
    QTest::newRow("1") << 1u << "Connecting in progress" << picture(6) << NoAddress;
    QTest::newRow("2") << 2u << "Connection successful" << picture(1) << "10.64.64.64";
    QTest::newRow("3 keeps") << 3u << "Connection successful" << picture(1) << "10.64.64.64";
    QTest::newRow("7 keeps") << 7u << "Connection successful" << picture(1) << "10.64.64.64";
    QTest::newRow("255 keeps") << 255u << "Connection successful" << picture(1) << "10.64.64.64";
}

void TestMobileNetworkUI::statusByRegister()
{
    QFETCH(quint32, state);
    QFETCH(QString, text);
    QFETCH(QString, picture);
    QFETCH(QString, dns);
    MobileRig::Options options;
    options.resolver = "nameserver 10.64.64.64 # ppp0\n";
    MobileRig rig(options);
    rig.setLink(2, 90);
    QCOMPARE(rig.dns(1), QStringLiteral("10.64.64.64"));
    rig.setLink(state, 90);
    QCOMPARE(rig.status()->text(), text);
    QCOMPARE(rig.page->signalPicture(), picture);
    QCOMPARE(rig.dns(1), dns);
    QCOMPARE(rig.dns(2), dns);
}

void TestMobileNetworkUI::tickRunsEverySecond()
{
    MobileRig rig;
    QCOMPARE(rig.status()->text(), QStringLiteral("Not connected"));
    setValue(SysRegIdx::Mobile4GState, 2);
    setValue(SysRegIdx::Mobile4GSignal, 30);
    QTRY_COMPARE_WITH_TIMEOUT(rig.status()->text(), QStringLiteral("Connection successful"), 2500);
    QCOMPARE(rig.page->signalPicture(), picture(4));
}

void TestMobileNetworkUI::serverOfTheLastLinkLine()
{
    MobileRig::Options options;
    options.resolver = "nameserver 114.114.114.114 # eth0\n"
                       "nameserver 10.1.1.1 # ppp0\n"
                       "nameserver 8.8.8.8 # wlan0\n"
                       "nameserver 10.2.2.2 # ppp0\n";
    MobileRig rig(options);
    rig.setLink(2, 50);
    QCOMPARE(rig.dns(1), QStringLiteral("10.2.2.2"));
    QCOMPARE(rig.dns(2), QStringLiteral("10.2.2.2"));
}

void TestMobileNetworkUI::resolverReadOnlyUntilLinkDrops()
{
    MobileRig::Options options;
    options.resolver = "nameserver 10.1.1.1 # ppp0\n";
    MobileRig rig(options);
    rig.setLink(2, 50);
    QCOMPARE(rig.dns(1), QStringLiteral("10.1.1.1"));
    rig.panel.writeFile(QString::fromLatin1(Resolver), "nameserver 10.9.9.9 # ppp0\n");
    rig.setLink(2, 50);
    QCOMPARE(rig.dns(1), QStringLiteral("10.1.1.1"));
    QCOMPARE(rig.dns(2), QStringLiteral("10.1.1.1"));
    rig.setLink(1);
    QCOMPARE(rig.dns(1), NoAddress);
    rig.setLink(2, 50);
    QCOMPARE(rig.dns(1), QStringLiteral("10.9.9.9"));
    rig.panel.writeFile(QString::fromLatin1(Resolver), "nameserver 10.8.8.8 # ppp0\n");
    rig.setLink(0);
    QCOMPARE(rig.dns(2), NoAddress);
    rig.setLink(2, 50);
    QCOMPARE(rig.dns(2), QStringLiteral("10.8.8.8"));
}

void TestMobileNetworkUI::unreadableResolverFile_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("missing") << "missing";
    QTest::newRow("folder") << "folder";
    QTest::newRow("fifo") << "fifo";
    QTest::newRow("no ppp0 line") << "nolink";
    QTest::newRow("ppp0 at line start") << "start";
    QTest::newRow("ppp0 line of one word") << "oneword";
}

void TestMobileNetworkUI::unreadableResolverFile()
{
    QFETCH(QString, kind);
    MobileRig rig;
    const QString path = rig.panel.path(QString::fromLatin1(Resolver));
    QFile::remove(path);
    if (kind == QLatin1String("folder"))
        QVERIFY(QDir().mkpath(path));
    else if (kind == QLatin1String("fifo"))
        QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    else if (kind == QLatin1String("nolink"))
        rig.panel.writeFile(QString::fromLatin1(Resolver), "nameserver 8.8.8.8 # eth0\nsearch lan\n");
    else if (kind == QLatin1String("start"))
        rig.panel.writeFile(QString::fromLatin1(Resolver), "ppp0 10.1.1.1\n");
    else if (kind == QLatin1String("oneword"))
        rig.panel.writeFile(QString::fromLatin1(Resolver), "#ppp0\n");
    QElapsedTimer clock;
    clock.start();
    rig.setLink(2, 50);
    rig.setLink(2, 50);
    QVERIFY2(clock.elapsed() < 1000, "the tick waited on the resolver file");
    QCOMPARE(rig.status()->text(), QStringLiteral("Connection successful"));
    QCOMPARE(rig.dns(1), NoAddress);
    QCOMPARE(rig.dns(2), NoAddress);
}

void TestMobileNetworkUI::refreshListsAdapters_data()
{
    QTest::addColumn<int>("ports");
    QTest::addColumn<quint32>("eth0Off");
    QTest::addColumn<quint32>("eth1Off");
    QTest::addColumn<quint32>("switch4g");
    QTest::addColumn<quint32>("stored");
    QTest::addColumn<QStringList>("items");
    QTest::addColumn<QList<int>>("hidden");
    QTest::addColumn<int>("current");
    const QStringList two4g = {"", "wired network0", "wired network1", "4G network"};
    const QStringList two = {"", "wired network0", "wired network1"};
    const QStringList one4g = {"", "wired network0", "4G network"};
    QTest::newRow("all on, 4G chosen") << 2 << 0u << 0u << 1u << 3u << two4g << QList<int>{} << 3;
    QTest::newRow("4G off, index 3 missing") << 2 << 0u << 0u << 0u << 3u << two << QList<int>{} << 0;
    QTest::newRow("4G bit clear 0xFE") << 2 << 0u << 0u << 0xFEu << 3u << two << QList<int>{} << 0;
    QTest::newRow("eth0 off, chosen") << 2 << 1u << 0u << 1u << 1u << two4g << QList<int>{1} << 0;
    QTest::newRow("eth1 off, chosen") << 2 << 0u << 1u << 1u << 2u << two4g << QList<int>{2} << 0;
    QTest::newRow("eth1 on, chosen") << 2 << 0u << 0xFEu << 1u << 2u << two4g << QList<int>{} << 2;
    QTest::newRow("both off") << 2 << 0xFFu << 3u << 1u << 1u << two4g << QList<int>{1, 2} << 0;
    QTest::newRow("index 255") << 2 << 0u << 0u << 1u << 255u << two4g << QList<int>{} << 0;
    QTest::newRow("one port, 4G at 2") << 1 << 0u << 1u << 1u << 2u << one4g << QList<int>{} << 2;
    QTest::newRow("one port, index 3") << 1 << 0u << 0u << 1u << 3u << one4g << QList<int>{} << 0;
}

void TestMobileNetworkUI::refreshListsAdapters()
{
    QFETCH(int, ports);
    QFETCH(quint32, eth0Off);
    QFETCH(quint32, eth1Off);
    QFETCH(quint32, switch4g);
    QFETCH(quint32, stored);
    QFETCH(QStringList, items);
    QFETCH(QList<int>, hidden);
    QFETCH(int, current);
    MobileRig::Options options;
    options.wiredPorts = ports;
    options.registers = {{SysRegIdx::Eth0Disabled, eth0Off}, {SysRegIdx::Eth1Disabled, eth1Off},
                         {SysRegIdx::Mobile4GSwitch, switch4g}, {SysRegIdx::DefaultAdapter, stored}};
    MobileRig rig(options);
    QSignalSpy chosen(rig.page.get(), &MobileNetworkUI::updateDefaultNetworkSignal);
    rig.page->refresh();
    QCOMPARE(rig.items(), items);
    for (int row = 0; row < items.size(); ++row)
        QCOMPARE(rig.list()->isRowHidden(row), hidden.contains(row));
    QCOMPARE(rig.list()->currentIndex(), current);
    QCOMPARE(rig.switch4g()->checked(), bool(switch4g & 1));
    QCOMPARE(chosen.count(), 0);
}

void TestMobileNetworkUI::switchOnWritesInOrder()
{
    MobileRig rig;
    FifoReader host(rig.panel.path(QStringLiteral("/tmp/fifo_sysreg")));
    QVERIFY(host.isOpen());
    QSignalSpy enable(rig.page.get(), &MobileNetworkUI::Eanble_4G_Signal);
    QVERIFY(!rig.switch4g()->checked());
    QTest::mouseClick(rig.switch4g(), Qt::LeftButton);
    QCOMPARE(host.registerIndices(), (QList<quint32>{122, 125, 122}));
    QCOMPARE(value(SysRegIdx::Mobile4GSwitch), 1u);
    QCOMPARE(value(SysRegIdx::Mobile4GState), 1u);
    QCOMPARE(enable.count(), 1);
    QCOMPARE(enable.at(0).at(0).toInt(), 0);
    QCOMPARE(rig.status()->text(), QStringLiteral("Connecting in progress"));
    QCOMPARE(rig.items(), (QStringList{"", "wired network0", "wired network1", "4G network"}));
}

void TestMobileNetworkUI::switchOffWritesInOrder()
{
    MobileRig::Options options;
    options.wiredPorts = 1;
    options.resolver = "nameserver 10.1.1.1 # ppp0\n";
    options.registers = {{SysRegIdx::Mobile4GSwitch, 1}, {SysRegIdx::Mobile4GState, 2},
                         {SysRegIdx::Mobile4GSignal, 70}};
    MobileRig rig(options);
    QCOMPARE(rig.dns(1), QStringLiteral("10.1.1.1"));
    QCOMPARE(rig.page->signalPicture(), picture(2));
    FifoReader host(rig.panel.path(QStringLiteral("/tmp/fifo_sysreg")));
    QVERIFY(host.isOpen());
    QSignalSpy enable(rig.page.get(), &MobileNetworkUI::Eanble_4G_Signal);
    QVERIFY(rig.switch4g()->checked());
    QTest::mouseClick(rig.switch4g(), Qt::LeftButton);
    QCOMPARE(host.registerIndices(), (QList<quint32>{122, 125, 122}));
    QCOMPARE(value(SysRegIdx::Mobile4GSwitch), 0u);
    QCOMPARE(value(SysRegIdx::Mobile4GState), 0u);
    QCOMPARE(enable.count(), 1);
    QCOMPARE(enable.at(0).at(0).toInt(), 1);
    QCOMPARE(rig.status()->text(), QStringLiteral("Not connected"));
    QCOMPARE(rig.page->signalPicture(), picture(6));
    QCOMPARE(rig.dns(1), NoAddress);
    QCOMPARE(rig.dns(2), NoAddress);
    QCOMPARE(rig.items(), (QStringList{"", "wired network0"}));
}

void TestMobileNetworkUI::autoLeavesResolverUntouched()
{
    MobileRig::Options options;
    const QByteArray text = "nameserver 8.8.8.8 # wlan0\nnameserver 10.1.1.1 # ppp0\nnameserver 1.1.1.1 # eth0\n";
    options.resolver = text;
    MobileRig rig(options);
    QSignalSpy chosen(rig.page.get(), &MobileNetworkUI::updateDefaultNetworkSignal);
    rig.page->on_comboBox_network_currentIndexChanged(QStringLiteral("Auto"));
    rig.page->on_comboBox_network_currentIndexChanged(QStringLiteral("自动"));
    QCOMPARE(chosen.count(), 2);
    QCOMPARE(chosen.at(0).at(0).toInt(), 0);
    QCOMPARE(chosen.at(1).at(0).toInt(), 0);
    QCOMPARE(rig.panel.readFile(QString::fromLatin1(Resolver)), text);
    QVERIFY(!QFile::exists(rig.panel.path(QString::fromLatin1(Backup))));
    rig.page->on_comboBox_network_currentIndexChanged(QStringLiteral("wireless network"));
    rig.page->on_comboBox_network_currentIndexChanged(QString());
    QCOMPARE(chosen.count(), 2);
    QCOMPARE(rig.panel.readFile(QString::fromLatin1(Resolver)), text);
}

void TestMobileNetworkUI::adapterWithoutLinesNotRewritten()
{
    MobileRig::Options options;
    const QByteArray text = "nameserver 8.8.8.8 # wlan0\nnameserver 1.1.1.1 # eth0\n";
    options.resolver = text;
    options.registers = {{SysRegIdx::Mobile4GSwitch, 1}};
    MobileRig rig(options);
    QSignalSpy chosen(rig.page.get(), &MobileNetworkUI::updateDefaultNetworkSignal);
    rig.list()->setCurrentIndex(2);         // wired network1: no eth1 line
    rig.list()->setCurrentIndex(3);         // 4G network: no ppp0 line
    QCOMPARE(chosen.count(), 2);
    QCOMPARE(chosen.at(0).at(0).toInt(), 2);
    QCOMPARE(chosen.at(1).at(0).toInt(), 3);
    QCOMPARE(rig.panel.readFile(QString::fromLatin1(Resolver)), text);
    QVERIFY(!QFile::exists(rig.panel.path(QString::fromLatin1(Backup))));
}

void TestMobileNetworkUI::chosenAdapterServersFirst()
{
    MobileRig::Options options;
    options.resolver = "nameserver 8.8.8.8 # wlan0\nnameserver 10.1.1.1 # ppp0\nnameserver 1.1.1.1 # eth0\n";
    options.registers = {{SysRegIdx::Mobile4GSwitch, 1}};
    MobileRig rig(options);
    QSignalSpy chosen(rig.page.get(), &MobileNetworkUI::updateDefaultNetworkSignal);
    rig.list()->setCurrentIndex(1);
    QCOMPARE(chosen.takeFirst().at(0).toInt(), 1);
    const QByteArray eth0First = "nameserver 1.1.1.1 # eth0\nnameserver 8.8.8.8 # wlan0\nnameserver 10.1.1.1 # ppp0\n";
    QCOMPARE(rig.panel.readFile(QString::fromLatin1(Resolver)), eth0First);
    QCOMPARE(rig.panel.readFile(QString::fromLatin1(Backup)), eth0First);
    rig.list()->setCurrentIndex(3);
    QCOMPARE(chosen.takeFirst().at(0).toInt(), 3);
    QCOMPARE(rig.panel.readFile(QString::fromLatin1(Resolver)),
             QByteArray("nameserver 10.1.1.1 # ppp0\nnameserver 1.1.1.1 # eth0\nnameserver 8.8.8.8 # wlan0\n"));
}

void TestMobileNetworkUI::mobileIndexFollowsPorts()
{
    MobileRig::Options options;
    options.wiredPorts = 1;
    options.registers = {{SysRegIdx::Mobile4GSwitch, 1}};
    MobileRig rig(options);
    QSignalSpy chosen(rig.page.get(), &MobileNetworkUI::updateDefaultNetworkSignal);
    rig.list()->setCurrentIndex(2);
    QCOMPARE(chosen.count(), 1);
    QCOMPARE(chosen.at(0).at(0).toInt(), 2);
    rig.page->on_comboBox_network_currentIndexChanged(QStringLiteral("4G网络"));
    QCOMPARE(chosen.at(1).at(0).toInt(), 2);
    rig.page->on_comboBox_network_currentIndexChanged(QStringLiteral("有线网络1"));
    QCOMPARE(chosen.at(2).at(0).toInt(), 2);
}

void TestMobileNetworkUI::enableNetworkRows()
{
    MobileRig rig;
    rig.page->on_enableNetwork(1, 0);
    QVERIFY(rig.list()->isRowHidden(2));
    QVERIFY(!rig.list()->isRowHidden(1));
    rig.page->on_enableNetwork(1, 1);
    QVERIFY(!rig.list()->isRowHidden(2));
    rig.page->on_enableNetwork(0, 0);
    QVERIFY(rig.list()->isRowHidden(1));
    rig.page->on_enableNetwork(0, 1);
    QVERIFY(!rig.list()->isRowHidden(1));
    rig.page->on_enableNetwork(7, 5);
    QVERIFY(rig.list()->isRowHidden(1));
    QVERIFY(!rig.list()->isRowHidden(2));
}

void TestMobileNetworkUI::updateDefaultNetworkSelects()
{
    MobileRig rig;
    rig.page->on_updateDefaultNetwork(2);
    QCOMPARE(rig.list()->currentIndex(), 2);
    rig.page->on_updateDefaultNetwork(0);
    QCOMPARE(rig.list()->currentIndex(), 0);
}

void TestMobileNetworkUI::testButtonStyles()
{
    MobileRig rig;
    QSignalSpy ping(rig.page.get(), &MobileNetworkUI::pingTestSignal);
    QVERIFY(rig.testButton()->styleSheet().contains(QStringLiteral("rgba(163, 198, 218, 200)")));
    QTest::mouseClick(rig.testButton(), Qt::LeftButton);
    QCOMPARE(ping.count(), 1);
    const QString busy = rig.testButton()->styleSheet();
    QVERIFY(busy.contains(QStringLiteral("QPushButton#pushButton_test")));
    QVERIFY(busy.contains(QStringLiteral("background-color:rgba(255,170,0,150)")));
    QVERIFY(busy.contains(QStringLiteral("border:2px solid rgba(255,170,0,255)")));
    rig.page->setPintTestBtnStyle();
    QVERIFY(rig.testButton()->styleSheet().contains(QStringLiteral("border:2px solid #008cba")));
}

void TestMobileNetworkUI::testButtonKeyClick()
{
    MobileRig rig;
    QSettings settings(rig.panel.path(QStringLiteral("/hmi/Config/system_settings.ini")), QSettings::IniFormat);
    settings.setValue(QStringLiteral("General/buzzer"), QStringLiteral("off"));
    settings.sync();
    rig.panel.clearCalls();
    QTest::mouseClick(rig.testButton(), Qt::LeftButton);
    QCOMPARE(rig.panel.calls(QStringLiteral("setbeep")).size(), 0);
    settings.setValue(QStringLiteral("General/buzzer"), QStringLiteral("on"));
    settings.sync();
    QTest::mouseClick(rig.testButton(), Qt::LeftButton);
    QCOMPARE(rig.panel.calls(QStringLiteral("setbeep")).size(), 1);
}

void TestMobileNetworkUI::chineseListStillChooses()
{
    QTranslator chinese;
    QVERIFY(chinese.load(QStringLiteral(":/Languages/Translate_CN.qm")));
    QCoreApplication::installTranslator(&chinese);
    auto restore = qScopeGuard([&] { QCoreApplication::removeTranslator(&chinese); });
    MobileRig::Options options;
    options.resolver = "nameserver 1.1.1.1 # eth0\nnameserver 10.1.1.1 # ppp0\n";
    options.registers = {{SysRegIdx::Mobile4GSwitch, 1}, {SysRegIdx::Mobile4GState, 1}};
    MobileRig rig(options);
    QCOMPARE(rig.items(), (QStringList{"", "有线网络0", "有线网络1", "4G网络"}));
    QCOMPARE(rig.status()->text(), QStringLiteral("正在连接"));
    QSignalSpy chosen(rig.page.get(), &MobileNetworkUI::updateDefaultNetworkSignal);
    rig.list()->setCurrentIndex(3);
    QCOMPARE(chosen.count(), 1);
    QCOMPARE(chosen.at(0).at(0).toInt(), 3);
    QCOMPARE(rig.panel.readFile(QString::fromLatin1(Resolver)),
             QByteArray("nameserver 10.1.1.1 # ppp0\nnameserver 1.1.1.1 # eth0\n"));
}

// In the settings window a style sheet sits above the page, which keeps the
// page's font from its children; the adapter list must still not build its
// popup before the operator opens it (every popup styled stays in memory).
void TestMobileNetworkUI::fontReachesChildrenWithoutPopups()
{
    MobileRig rig;
    QWidget host;
    host.setStyleSheet(QStringLiteral("QComboBox{border:1px solid #008cba;}"));
    auto *page = new MobileNetworkUI(-1, &host);
    host.show();
    host.grab();
    page->refresh();
    host.grab();
    int popups = 0;
    for (QObject *child : page->findChildren<QObject *>())
        popups += qstrcmp(child->metaObject()->className(), "QComboBoxPrivateContainer") == 0;
    QCOMPARE(popups, 0);
    for (const char *name : {"label_4gSwitch", "label_networkStatus", "label_dnsInfo"}) {
        auto *label = page->findChild<QLabel *>(QLatin1String(name));
        QVERIFY2(label, name);
        QVERIFY2(label->font().bold(), name);
        QCOMPARE(label->font().pointSize(), 13);
    }
    auto *list = page->findChild<RowHidingComboBox *>(QStringLiteral("comboBox_network"));
    QVERIFY(list->font().bold());
    list->showPopup();
    QVERIFY(list->view()->window()->font().bold());
    QCOMPARE(list->view()->window()->font().pointSize(), 13);
    list->hidePopup();
}

PANEL_GUI_TEST_MAIN(TestMobileNetworkUI)
#include "tst_mobilenetworkui.moc"
