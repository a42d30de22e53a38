// The VPN page on a simulated panel, driven through its real widgets
// offscreen; the host application's side is played by writing registers,
// and the ZeroTier One state folders lie under the panel root.
#include "fiforeader.h"
#include "modaldriver.h"
#include "rowhidingcombobox.h"
#include "switchbutton.h"
#include "sysreg.h"
#include "testharness.h"
#include "testpanel.h"
#include "vpnsetui.h"

#include <QAbstractButton>
#include <QDir>
#include <QLabel>
#include <QMessageBox>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace {

const QString ZeroTier = QStringLiteral("/var/lib/zerotier-one/");
const QStringList Folders = {"moons.d", "networks.d", "peers.d"};
constexpr unsigned English = 1;
constexpr unsigned Chinese = 0;

void setValue(unsigned index, quint32 value)
{
    SysReg_Write(index, &value, sizeof value);
}

quint32 value(unsigned index)
{
    quint8 bytes[8] = {};
    SysReg_Read(index, bytes);
    return quint32(bytes[0]) | quint32(bytes[1]) << 8 | quint32(bytes[2]) << 16 | quint32(bytes[3]) << 24;
}

// A VPN page on a fresh panel with every ZeroTier One folder in place (each
// with a file in it) and `rm` recorded on its way to the real one.
class VpnRig
{
public:
    explicit VpnRig(const QHash<unsigned, quint32> &registers = {})
        : m_path(qgetenv("PATH"))
    {
        for (const QString &folder : Folders) {
            QDir().mkpath(panel.path(ZeroTier + folder));
            panel.writeFile(ZeroTier + folder + QStringLiteral("/state"), "x");
        }
        const QString bin = panel.path(QStringLiteral("/test-bin"));
        QDir().mkpath(bin);
        QFile rm(bin + QStringLiteral("/rm"));
        rm.open(QIODevice::WriteOnly);
        rm.write("#!/bin/sh\necho \"rm $*\" >> \"" + QFile::encodeName(log()) + "\"\nexec /bin/rm \"$@\"\n");
        rm.close();
        rm.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("PATH", QFile::encodeName(bin) + ':' + m_path);
        for (auto it = registers.constBegin(); it != registers.constEnd(); ++it)
            setValue(it.key(), it.value());
        page.reset(new VpnSetUI(-1));
    }
    ~VpnRig()
    {
        page.reset();
        qputenv("PATH", m_path);
    }

    SwitchButton *vpnSwitch() const { return page->findChild<SwitchButton *>(QStringLiteral("switch_vpn")); }
    QLabel *status() const { return page->findChild<QLabel *>(QStringLiteral("label_connectStatue")); }
    RowHidingComboBox *servers() const
    {
        return page->findChild<RowHidingComboBox *>(QStringLiteral("comboBox_server"));
    }
    QStringList items() const
    {
        QStringList texts;
        for (int i = 0; i < servers()->count(); ++i)
            texts << servers()->itemText(i);
        return texts;
    }
    QString log() const { return panel.path(QStringLiteral("/tmp/rm.log")); }
    // "rm -R /var/lib/..." as the page asked for it, before the root mapping.
    QStringList removals() const
    {
        QString text = QString::fromLocal8Bit(panel.readFile(QStringLiteral("/tmp/rm.log")));
        text.replace(panel.root(), QString());
        return text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }
    bool exists(const QString &folder) const { return QFileInfo::exists(panel.path(ZeroTier + folder)); }
    QStringList remaining() const
    {
        QStringList list;
        for (const QString &folder : Folders) {
            if (exists(folder))
                list << folder;
        }
        return list;
    }

    TestPanel panel;
    std::unique_ptr<VpnSetUI> page;

private:
    QByteArray m_path;
};

} // namespace

class TestVpnSetUI : public QObject
{
    Q_OBJECT

private slots:
    void formHasItsWidgets();
    void regionAtStart_data();
    void regionAtStart();
    void switchAtStart_data();
    void switchAtStart();
    void switchWritesRegister();
    void offShowsPrepareWithinASecond_data();
    void offShowsPrepareWithinASecond();
    void switchingOffShowsPrepare();
    void statusWhileOn_data();
    void statusWhileOn();
    void serverNamesFollowLanguage();
    void sameRegionChangesNothing();
    void changeRefusedWhileOn_data();
    void changeRefusedWhileOn();
    void changeWhileOffForgetsNetworks();
    void withoutMoonsNothingDeleted_data();
    void withoutMoonsNothingDeleted();
    void refreshLogsAndRetranslates();
    void fontReachesChildrenWithoutPopups();
};

void TestVpnSetUI::formHasItsWidgets()
{
    VpnRig rig;
    QVERIFY(rig.vpnSwitch());
    QVERIFY(rig.status());
    QVERIFY(rig.servers());
    auto *title = rig.page->findChild<QLabel *>(QStringLiteral("label_title"));
    QVERIFY(title);
    QCOMPARE(title->text(), QStringLiteral("VPN Service Information"));
    QVERIFY(title->font().bold());
    QCOMPARE(title->font().pointSize(), 13);
    QCOMPARE(rig.status()->text(), QStringLiteral("connected"));
    QStringList texts;
    for (QLabel *label : rig.page->findChildren<QLabel *>())
        texts << label->text();
    for (const char *text : {"VPN Switch:", "Server:", "Connection status:"})
        QVERIFY2(texts.contains(QLatin1String(text)), text);
}

void TestVpnSetUI::regionAtStart_data()
{
    QTest::addColumn<quint32>("region");
    QTest::addColumn<int>("index");
    QTest::newRow("0") << 0u << 0;
    QTest::newRow("1") << 1u << 1;
    QTest::newRow("7") << 7u << 0;
    QTest::newRow("255") << 255u << 0;
}

void TestVpnSetUI::regionAtStart()
{
    QFETCH(quint32, region);
    QFETCH(int, index);
    VpnRig rig({{SysRegIdx::VpnRegion, region}, {SysRegIdx::VpnSwitch, 1}});
    QCOMPARE(rig.servers()->currentIndex(), index);
    QCOMPARE(rig.items(), (QStringList{"中国服务器", "欧洲服务器"}));
    QCOMPARE(value(SysRegIdx::VpnRegion), region);
    QCOMPARE(rig.remaining(), Folders);
    QVERIFY(rig.removals().isEmpty());
}

void TestVpnSetUI::switchAtStart_data()
{
    QTest::addColumn<quint32>("stored");
    QTest::addColumn<bool>("on");
    QTest::newRow("0") << 0u << false;
    QTest::newRow("1") << 1u << true;
    QTest::newRow("0xFE bit 0 clear") << 0xFEu << false;
    QTest::newRow("0xFF") << 0xFFu << true;
}

void TestVpnSetUI::switchAtStart()
{
    QFETCH(quint32, stored);
    QFETCH(bool, on);
    VpnRig rig({{SysRegIdx::VpnSwitch, stored}});
    QCOMPARE(rig.vpnSwitch()->checked(), on);
}

void TestVpnSetUI::switchWritesRegister()
{
    VpnRig rig;
    FifoReader host(rig.panel.path(QStringLiteral("/tmp/fifo_sysreg")));
    QVERIFY(host.isOpen());
    QTest::ignoreMessage(QtInfoMsg, "slot_switchBox_vpn_toggled: true");
    QTest::mouseClick(rig.vpnSwitch(), Qt::LeftButton);
    QCOMPARE(value(SysRegIdx::VpnSwitch), 1u);
    QCOMPARE(host.registerIndices(), (QList<quint32>{SysRegIdx::VpnSwitch}));
    QTest::ignoreMessage(QtInfoMsg, "slot_switchBox_vpn_toggled: false");
    QTest::mouseClick(rig.vpnSwitch(), Qt::LeftButton);
    QCOMPARE(value(SysRegIdx::VpnSwitch), 0u);
    QCOMPARE(host.registerIndices(), (QList<quint32>{SysRegIdx::VpnSwitch}));
}

void TestVpnSetUI::offShowsPrepareWithinASecond_data()
{
    QTest::addColumn<quint32>("language");
    QTest::addColumn<quint32>("state");
    QTest::addColumn<QString>("text");
    QTest::newRow("en, 5") << English << 5u << "Prepare to connect";
    QTest::newRow("en, 0") << English << 0u << "Prepare to connect";
    QTest::newRow("en, 255") << English << 255u << "Prepare to connect";
    QTest::newRow("zh, 5") << Chinese << 5u << "准备连接";
    QTest::newRow("language 255, 3") << 255u << 3u << "Prepare to connect";
}

void TestVpnSetUI::offShowsPrepareWithinASecond()
{
    QFETCH(quint32, language);
    QFETCH(quint32, state);
    QFETCH(QString, text);
    VpnRig rig({{SysRegIdx::Language, language}, {SysRegIdx::VpnSwitch, 0xFE}, {SysRegIdx::VpnState, state}});
    const quint8 address[8] = {10, 0, 1, 0, 2, 0, 3, 0};
    SysReg_Write(SysRegIdx::VpnAddress, address, sizeof address);
    QTRY_COMPARE_WITH_TIMEOUT(rig.status()->text(), text, 1500);
    QCOMPARE(value(SysRegIdx::VpnState), 1u);
    quint8 cleared[8];
    memset(cleared, 0x55, sizeof cleared);
    SysReg_Read(SysRegIdx::VpnAddress, cleared);
    QCOMPARE(QByteArray(reinterpret_cast<char *>(cleared), 8), QByteArray(8, '\0'));
}

void TestVpnSetUI::switchingOffShowsPrepare()
{
    VpnRig rig({{SysRegIdx::Language, English}, {SysRegIdx::VpnSwitch, 1}, {SysRegIdx::VpnState, 5}});
    rig.page->Kvpn_Timer();
    QCOMPARE(rig.status()->text(), QStringLiteral("VPN connection ok"));
    FifoReader host(rig.panel.path(QStringLiteral("/tmp/fifo_sysreg")));
    QVERIFY(host.isOpen());
    QTest::mouseClick(rig.vpnSwitch(), Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(rig.status()->text(), QStringLiteral("Prepare to connect"), 1500);
    QCOMPARE(value(SysRegIdx::VpnState), 1u);
    const QList<quint32> written = host.registerIndices();
    QCOMPARE(written.mid(0, 3), (QList<quint32>{SysRegIdx::VpnSwitch, SysRegIdx::VpnAddress, SysRegIdx::VpnState}));
}

void TestVpnSetUI::statusWhileOn_data()
{
    QTest::addColumn<quint32>("language");
    QTest::addColumn<quint32>("state");
    QTest::addColumn<QString>("text");
    // Before each row the page shows status 0 in the same language.
    QTest::newRow("en 1") << English << 1u << "Prepare to connect";
    QTest::newRow("en 5") << English << 5u << "VPN connection ok";
    QTest::newRow("zh 5") << Chinese << 5u << "VPN连接成功";
    QTest::newRow("zh 1") << Chinese << 1u << "准备连接";
    QTest::newRow("en 3 keeps") << English << 3u << "internet not connected";
    QTest::newRow("en 4 keeps") << English << 4u << "internet not connected";
    QTest::newRow("zh 3 keeps") << Chinese << 3u << "网络还没通";
    QTest::newRow("en 255 keeps") << English << 255u << "internet not connected";
}

void TestVpnSetUI::statusWhileOn()
{
    QFETCH(quint32, language);
    QFETCH(quint32, state);
    QFETCH(QString, text);
    VpnRig rig({{SysRegIdx::Language, language}, {SysRegIdx::VpnSwitch, 1}, {SysRegIdx::VpnState, 0}});
    rig.page->Kvpn_Timer();
    setValue(SysRegIdx::VpnState, state);
    rig.page->Kvpn_Timer();
    QCOMPARE(rig.status()->text(), text);
    QCOMPARE(value(SysRegIdx::VpnState), state);
}

void TestVpnSetUI::serverNamesFollowLanguage()
{
    VpnRig rig({{SysRegIdx::Language, English}, {SysRegIdx::VpnRegion, 1}});
    rig.page->Kvpn_Timer();
    QCOMPARE(rig.items(), (QStringList{"Chinese servers", "European servers"}));
    QCOMPARE(rig.servers()->currentIndex(), 1);
    setValue(SysRegIdx::Language, Chinese);
    rig.page->Kvpn_Timer();
    QCOMPARE(rig.items(), (QStringList{"中国服务器", "欧洲服务器"}));
}

void TestVpnSetUI::sameRegionChangesNothing()
{
    VpnRig rig({{SysRegIdx::VpnRegion, 1}});
    FifoReader host(rig.panel.path(QStringLiteral("/tmp/fifo_sysreg")));
    QVERIFY(host.isOpen());
    QSignalSpy changed(rig.servers(), QOverload<int>::of(&QComboBox::currentIndexChanged));
    rig.servers()->setCurrentIndex(1);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(rig.remaining(), Folders);
    QVERIFY(rig.removals().isEmpty());
    QVERIFY(!host.registerIndices().contains(SysRegIdx::VpnRegion));
}

void TestVpnSetUI::changeRefusedWhileOn_data()
{
    QTest::addColumn<quint32>("language");
    QTest::addColumn<quint32>("stored");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("button");
    QTest::newRow("en") << English << 0u << "Waring" << "Please turn off VPN first!" << "OK";
    QTest::newRow("zh") << Chinese << 0u << "" << "请先关闭VPN!" << "确定";
    QTest::newRow("en, stored 7") << English << 7u << "Waring" << "Please turn off VPN first!" << "OK";
}

void TestVpnSetUI::changeRefusedWhileOn()
{
    QFETCH(quint32, language);
    QFETCH(quint32, stored);
    QFETCH(QString, title);
    QFETCH(QString, text);
    QFETCH(QString, button);
    VpnRig rig({{SysRegIdx::Language, language}, {SysRegIdx::VpnSwitch, 1}, {SysRegIdx::VpnRegion, stored}});
    FifoReader host(rig.panel.path(QStringLiteral("/tmp/fifo_sysreg")));
    QVERIFY(host.isOpen());
    QString shownTitle, shownText, shownButton;
    ModalDriver::onNext<QMessageBox>([&](QMessageBox *box) {
        shownTitle = box->windowTitle();
        shownText = box->text();
        QAbstractButton *first = box->buttons().value(0);
        shownButton = first ? first->text() : QString();
        if (first)
            first->click();
    });
    rig.servers()->setCurrentIndex(1);
    QCOMPARE(ModalDriver::pending(), 0);
    QCOMPARE(shownTitle, title);
    QCOMPARE(shownText, text);
    QCOMPARE(shownButton.remove(QLatin1Char('&')), button);
    QCOMPARE(rig.servers()->currentIndex(), 0);
    QCOMPARE(value(SysRegIdx::VpnRegion), stored);
    QVERIFY(!host.registerIndices().contains(SysRegIdx::VpnRegion));
    QCOMPARE(rig.remaining(), Folders);
    QVERIFY(rig.removals().isEmpty());
}

void TestVpnSetUI::changeWhileOffForgetsNetworks()
{
    VpnRig rig({{SysRegIdx::VpnSwitch, 0xFE}});
    FifoReader host(rig.panel.path(QStringLiteral("/tmp/fifo_sysreg")));
    QVERIFY(host.isOpen());
    rig.servers()->setCurrentIndex(1);
    QCOMPARE(value(SysRegIdx::VpnRegion), 1u);
    QCOMPARE(host.registerIndices(), (QList<quint32>{SysRegIdx::VpnRegion}));
    QCOMPARE(rig.removals(), (QStringList{"rm -R /var/lib/zerotier-one/moons.d",
                                          "rm -R /var/lib/zerotier-one/networks.d",
                                          "rm -R /var/lib/zerotier-one/peers.d"}));
    QVERIFY(rig.remaining().isEmpty());
    // Back again: the folders are gone now, and nothing more is deleted.
    rig.servers()->setCurrentIndex(0);
    QCOMPARE(value(SysRegIdx::VpnRegion), 0u);
    QCOMPARE(rig.removals().size(), 3);
}

void TestVpnSetUI::withoutMoonsNothingDeleted_data()
{
    QTest::addColumn<QString>("moons");
    QTest::newRow("moons.d missing") << "missing";
    QTest::newRow("moons.d a plain file") << "file";
    QTest::newRow("no folder at all") << "none";
}

void TestVpnSetUI::withoutMoonsNothingDeleted()
{
    QFETCH(QString, moons);
    VpnRig rig;
    const QString path = rig.panel.path(ZeroTier + QStringLiteral("moons.d"));
    QVERIFY(QDir(path).removeRecursively());
    if (moons == QLatin1String("file"))
        QVERIFY(rig.panel.writeFile(ZeroTier + QStringLiteral("moons.d"), "not a folder"));
    if (moons == QLatin1String("none"))
        QVERIFY(QDir(rig.panel.path(ZeroTier)).removeRecursively());
    rig.servers()->setCurrentIndex(1);
    QCOMPARE(value(SysRegIdx::VpnRegion), 1u);
    QVERIFY(rig.removals().isEmpty());
    if (moons != QLatin1String("none"))
        QCOMPARE(rig.remaining(), (moons == QLatin1String("file") ? Folders : QStringList(Folders.mid(1))));
}

void TestVpnSetUI::refreshLogsAndRetranslates()
{
    VpnRig rig({{SysRegIdx::Language, English}});
    rig.page->Kvpn_Timer();
    QCOMPARE(rig.status()->text(), QStringLiteral("Prepare to connect"));
    QTest::ignoreMessage(QtInfoMsg, "VpnSetUI::refresh() ");
    rig.page->refresh();
    QCOMPARE(rig.status()->text(), QStringLiteral("connected"));
}

// In the settings window a style sheet sits above the page, which keeps the
// page's font from its children; the server list must still not build its
// popup before the operator opens it.
void TestVpnSetUI::fontReachesChildrenWithoutPopups()
{
    TestPanel panel;
    QWidget host;
    host.setStyleSheet(QStringLiteral("QComboBox{border:1px solid #008cba;}"));
    auto *page = new VpnSetUI(-1, &host);
    host.show();
    host.grab();
    page->Kvpn_Timer();
    host.grab();
    int popups = 0;
    for (QObject *child : page->findChildren<QObject *>())
        popups += qstrcmp(child->metaObject()->className(), "QComboBoxPrivateContainer") == 0;
    QCOMPARE(popups, 0);
    for (const char *name : {"label_title", "label_switch", "label_connectStatue"}) {
        auto *label = page->findChild<QLabel *>(QLatin1String(name));
        QVERIFY2(label, name);
        QVERIFY2(label->font().bold(), name);
        QCOMPARE(label->font().pointSize(), 13);
    }
}

PANEL_GUI_TEST_MAIN(TestVpnSetUI)
#include "tst_vpnsetui.moc"
