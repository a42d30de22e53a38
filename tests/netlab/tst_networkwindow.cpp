// The real settings window on a real network: inside the lab, the network
// page runs the real ifconfig, route, udhcpc, kill and ping, and what they
// did is read back from the kernel. The far side answers DHCP and DNS.
#include "modaldriver.h"
#include "netlab.h"
#include "networkaddress.h"
#include "networksettings.h"
#include "rowhidingcombobox.h"
#include "settings.h"
#include "sysreg.h"
#include "testharness.h"
#include "testpanel.h"
#include "wiredportpage.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QMessageBox>
#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedPointer>
#include <QTimer>
#include <QtEndian>
#include <QtTest>

#include <algorithm>
#include <csignal>

namespace {

constexpr int LeaseTimeoutMs = 15000;
constexpr int PingTimeoutMs = 10000;

// The lab's subnets: eth0 faces 10.77.0.1, eth1 10.78.0.1.
void putAddress(QByteArray &image, int offset, const QString &dotted)
{
    const quint32 stored = qToLittleEndian<quint32>(NetworkAddress::fromDotted(dotted));
    image.replace(offset, int(sizeof stored), reinterpret_cast<const char *>(&stored), int(sizeof stored));
}

QByteArray labImage(const QByteArray &sample)
{
    QByteArray image = sample;
    putAddress(image, 41, QStringLiteral("10.77.0.20"));
    putAddress(image, 45, QStringLiteral("10.77.0.1"));
    putAddress(image, 49, QStringLiteral("255.255.255.0"));
    putAddress(image, 174, QStringLiteral("10.78.0.20"));
    putAddress(image, 178, QStringLiteral("10.78.0.1"));
    putAddress(image, 182, QStringLiteral("255.255.255.0"));
    return image;
}

quint32 registerValue(unsigned index)
{
    // The address registers are 8 bytes wide; the address is the first 4.
    return SysReg_ReadValue(index);
}

QStringList defaultRoutesOf(const QStringList &routes)
{
    QStringList wired;
    for (const QString &route : routes) {
        if (route.contains(QLatin1String("dev eth")))
            wired << route.simplified();
    }
    return wired;
}

bool wiredDefaultRoutesAre(const QStringList &expected)
{
    const QStringList table = defaultRoutesOf(NetLab::defaultRoutes());
    return std::is_permutation(table.begin(), table.end(), expected.begin(), expected.end());
}

// Answers the next result box, which comes only when the ping's result is
// read, 6 s after the test starts.
void answerResultBox(QString *text)
{
    ModalDriver::onNext<QMessageBox>([text](QMessageBox *box) {
        *text = box->text();
        box->buttons().value(0)->click();
    }, 20000);
}

} // namespace

class TestNetworkWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void cleanup() { QTRY_COMPARE_WITH_TIMEOUT(ModalDriver::pending(), 0, 20000); }
    void staticAddressReachesTheKernel();
    void defaultRoutesForEverySelection_data();
    void defaultRoutesForEverySelection();
    void dhcpLeaseLandsInRecordRegistersAndFields();
    void outerNetworkTestGreenThenRed();

private:
    NetworkSettings *page() const { return m_window->findChild<NetworkSettings *>(); }
    WiredPortPage *port(int index) const
    {
        return m_window->findChild<WiredPortPage *>(QStringLiteral("eth%1Tab").arg(index));
    }

    QScopedPointer<TestPanel> m_panel;
    QScopedPointer<Settings> m_window;
};

void TestNetworkWindow::initTestCase()
{
    QVERIFY2(!NetLab::farNamespace().isEmpty(), "run through tests/support/netlab/run-in-netlab");
    m_panel.reset(new TestPanel);
    QVERIFY2(m_panel->isValid(), qPrintable(m_panel->errorString()));
    m_panel->setImage(labImage(m_panel->image()));
    const QByteArray resolver = "nameserver 10.77.0.1 # eth0\n";
    QVERIFY(m_panel->writeFile(QStringLiteral("/etc/resolv.conf"), resolver));
    QVERIFY(m_panel->writeFile(QStringLiteral("/etc/resolvbak.conf"), resolver));
    QString error;
    QVERIFY2(NetLab::bindResolverFile(m_panel->path(QStringLiteral("/etc/resolv.conf")), &error), qPrintable(error));
    QVERIFY(QDir::setCurrent(m_panel->path(QStringLiteral("/hmi"))));

    // English texts, for the result boxes the test reads.
    const quint8 english = 1;
    SysReg_Write(SysRegIdx::Language, &english, 1);
    m_window.reset(new Settings);
    m_window->init();
    m_window->show();
    m_window->findChild<QPushButton *>(QStringLiteral("networkPushButton"))->click();
    QVERIFY(page() && port(0) && port(1));
    // Opening brought both static ports up with their stored addresses.
    QTRY_VERIFY(NetLab::kernelAddresses(QStringLiteral("eth0")).join(' ').contains(QLatin1String("10.77.0.20/")));
    QTRY_VERIFY(NetLab::kernelAddresses(QStringLiteral("eth1")).join(' ').contains(QLatin1String("10.78.0.20/")));
}

void TestNetworkWindow::cleanupTestCase()
{
    m_window.reset();
    for (pid_t pid : NetLab::processes(QStringLiteral("udhcpc"))) {
        if (pid > 1)
            ::kill(pid, SIGTERM);
    }
    NetLab::setFarLink(0, true);
}

// An octet typed on the keypad is on the kernel's interface at once.
void TestNetworkWindow::staticAddressReachesTheKernel()
{
    ModalDriver::typeOnKeypad({"3", "3", "ENTER"});
    QTest::mousePress(port(0)->field(WiredPortPage::Address, 3), Qt::LeftButton);
    QTRY_VERIFY(NetLab::kernelAddresses(QStringLiteral("eth0")).join(' ').contains(QLatin1String("10.77.0.33/")));
    qInfo("eth0 in the kernel: %s", qPrintable(NetLab::kernelAddresses(QStringLiteral("eth0")).join(' ')));
    QCOMPARE(registerValue(SysRegIdx::Eth0Ip), NetworkAddress::fromDotted(QStringLiteral("10.77.0.33")));
}

void TestNetworkWindow::defaultRoutesForEverySelection_data()
{
    QTest::addColumn<int>("selection");
    QTest::addColumn<bool>("stored");
    QTest::addColumn<QStringList>("routes");
    QTest::newRow("0") << 0 << false
                       << QStringList{"default via 10.77.0.1 dev eth0 metric 1", "default via 10.78.0.1 dev eth1 metric 11"};
    QTest::newRow("1 (eth0)") << 1 << false
                              << QStringList{"default via 10.77.0.1 dev eth0 metric 1", "default via 10.78.0.1 dev eth1 metric 2"};
    QTest::newRow("2 (eth1)") << 2 << false
                              << QStringList{"default via 10.78.0.1 dev eth1 metric 1", "default via 10.77.0.1 dev eth0 metric 2"};
    QTest::newRow("W from register 78") << 3 << true
                                        << QStringList{"default via 10.77.0.1 dev eth0 metric 2", "default via 10.78.0.1 dev eth1 metric 2"};
}

// The kernel's routing table after each choice of default network.
void TestNetworkWindow::defaultRoutesForEverySelection()
{
    QFETCH(int, selection);
    QFETCH(bool, stored);
    QFETCH(QStringList, routes);
    if (stored) {
        const quint8 value = quint8(selection);
        SysReg_Write(SysRegIdx::DefaultAdapter, &value, 1);
        page()->updateDefaultGatewayFromReg();
    } else {
        QComboBox *selector = port(0)->defaultNetworkComboBox();
        selector->setCurrentIndex(selection == 0 ? 1 : 0);
        selector->setCurrentIndex(selection);
    }
    QTRY_VERIFY_WITH_TIMEOUT(wiredDefaultRoutesAre(routes), 5000);
    qInfo("selection %s: ip route\n  %s", QTest::currentDataTag(), qPrintable(NetLab::routes().join(QLatin1String("\n  "))));
}

// "Dynamic IP" on eth0: the real client's lease is stored as if typed.
void TestNetworkWindow::dhcpLeaseLandsInRecordRegistersAndFields()
{
    port(0)->modeComboBox()->setCurrentIndex(WiredPortPage::DynamicRow);
    QVERIFY(page()->leaseTimer(0)->isActive());
    QTRY_VERIFY_WITH_TIMEOUT(!page()->leaseTimer(0)->isActive(), LeaseTimeoutMs);
    QString leased;
    QVERIFY(NetLab::waitForAddress(QStringLiteral("eth0"), 1000, &leased));
    qInfo("eth0 leased %s; ip route:\n  %s", qPrintable(leased), qPrintable(NetLab::routes().join(QLatin1String("\n  "))));
    QVERIFY(leased.startsWith(QLatin1String("10.77.0.")));
    const QStringList octets = leased.split(QLatin1Char('.'));
    QCOMPARE(port(0)->octets(WiredPortPage::Address), octets);
    QCOMPARE(registerValue(SysRegIdx::Eth0Ip), NetworkAddress::fromDotted(leased));
    QCOMPARE(registerValue(SysRegIdx::Eth0Mask), NetworkAddress::fromDotted(QStringLiteral("255.255.255.0")));
    QCOMPARE(registerValue(SysRegIdx::Eth0Gateway), NetworkAddress::fromDotted(QStringLiteral("10.77.0.1")));
    const QByteArray image = m_panel->image();
    QCOMPARE(qFromLittleEndian<quint32>(image.constData() + 41), NetworkAddress::fromDotted(leased));

    // Back to a static address: the client is stopped through its pid file.
    const pid_t client = NetLab::readPidFile(m_panel->path(NetLab::pidFile(0)));
    QVERIFY(client > 1);
    QVERIFY(NetLab::isAlive(client));
    port(0)->modeComboBox()->setCurrentIndex(WiredPortPage::StaticRow);
    QTRY_VERIFY(!NetLab::isAlive(client));
    QVERIFY(NetLab::processes(QStringLiteral("udhcpc"), QStringLiteral("eth0")).isEmpty());
}

// The test lamp goes green against the far side, red with its link down.
void TestNetworkWindow::outerNetworkTestGreenThenRed()
{
    page()->setGateway(1);
    QString text;
    QTest::mouseClick(port(0)->testButton(), Qt::LeftButton);
    QCOMPARE(port(0)->lamp(), WiredPortPage::LampRunning);
    answerResultBox(&text);
    QTRY_VERIFY_WITH_TIMEOUT(port(0)->lamp() != WiredPortPage::LampRunning, PingTimeoutMs);
    QCOMPARE(text, QStringLiteral("test successful"));
    QCOMPARE(port(0)->lamp(), WiredPortPage::LampSucceeded);

    QVERIFY(NetLab::setFarLink(0, false));
    QVERIFY(NetLab::setFarLink(1, false));
    QTest::mouseClick(port(0)->testButton(), Qt::LeftButton);
    answerResultBox(&text);
    QTRY_VERIFY_WITH_TIMEOUT(port(0)->lamp() != WiredPortPage::LampRunning, PingTimeoutMs);
    QCOMPARE(text, QStringLiteral("test failed"));
    QCOMPARE(port(0)->lamp(), WiredPortPage::LampIdle);
    QVERIFY(NetLab::setFarLink(0, true));
    QVERIFY(NetLab::setFarLink(1, true));
}

PANEL_NETLAB_GUI_TEST_MAIN(TestNetworkWindow)
#include "tst_networkwindow.moc"
