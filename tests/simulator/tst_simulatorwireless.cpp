// End to end: the real plug-in, loaded as the runtime loads it, on a
// simulated panel whose host side runs the simulator's WLAN, 4G and VPN
// links. The pages are worked through their widgets as at the panel: scan,
// pick a protected network, type its password on the on-screen keyboard,
// connect; a wrong password prompts once; 4G dials and shows its name
// servers; the VPN connects and refuses a region change while on.
#include "fifowatcher.h"
#include "hostlinks.h"
#include "modaldriver.h"
#include "pluginhost.h"
#include "sysreg.h"
#include "testharness.h"
#include "testpanel.h"
#include "wlanhost.h"

#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QStackedWidget>
#include <QTabWidget>
#include <QtEndian>
#include <QtTest>

#include <memory>

namespace {

const int AnswerMs = 300;
// The pages poll once a second; the host answers after AnswerMs.
const int PageTimeoutMs = 6000;

// The host side and one settings window on a fresh panel.
class Rig
{
public:
    explicit Rig(quint8 language)
        : m_links(new HostLinks(m_panel.root()))
        , m_fifo(new FifoWatcher(m_panel.path(QStringLiteral("/tmp/fifo_sysreg")), 4))
        , m_plugin(QStringLiteral(SETTINGS_PLUGIN_PATH))
    {
        m_previousDir = QDir::currentPath();
        QDir::setCurrent(m_panel.root());
        m_links->setAnswerDelay(AnswerMs);
        QObject::connect(m_fifo.get(), &FifoWatcher::messageReceived, m_links.get(), [this](const QByteArray &message) {
            m_links->notify(qFromLittleEndian<quint32>(message.constData()));
        });
        QObject::connect(m_links.get(), &HostLinks::logLine, m_links.get(), [this](const QString &line) { log << line; });
        QString error;
        m_ready = m_fifo->open(&error);
        m_links->start();
        SysReg_Write(SysRegIdx::Language, &language, 1);
        m_ready = m_ready && m_plugin.load(&error);
        if (m_ready)
            m_window = m_plugin.createWindow(&error);
        m_ready = m_ready && m_window;
        if (!m_ready)
            qWarning().noquote() << error;
        if (m_window)
            m_window->show();
    }
    ~Rig()
    {
        delete m_window;
        m_fifo.reset();
        m_links.reset();
        QDir::setCurrent(m_previousDir);
    }

    bool ready() const { return m_ready && m_window; }
    HostLinks *links() const { return m_links.get(); }
    QDialog *window() const { return m_window; }

    QTabWidget *networkPage() const
    {
        for (QTabWidget *tabs : m_window->findChildren<QTabWidget *>()) {
            if (tabs->inherits("NetworkSettings"))
                return tabs;
        }
        return nullptr;
    }
    QWidget *showTab(const char *className) const
    {
        m_window->findChild<QPushButton *>(QStringLiteral("networkPushButton"))->click();
        QTabWidget *tabs = networkPage();
        if (!tabs)
            return nullptr;
        for (QWidget *page : tabs->findChildren<QWidget *>()) {
            if (page->inherits(className) && tabs->indexOf(page) >= 0) {
                tabs->setCurrentIndex(tabs->indexOf(page));
                return page;
            }
        }
        return nullptr;
    }
    QList<QDialog *> passwordDialogs() const
    {
        QList<QDialog *> open;
        for (QDialog *dialog : m_window->findChildren<QDialog *>()) {
            if (dialog->inherits("WirelessPswDialog") && dialog->isVisible())
                open << dialog;
        }
        return open;
    }
    static QString address(QWidget *field)
    {
        QStringList octets;
        for (int i = 1; i <= 4; ++i) {
            auto *octet = field ? field->findChild<QLineEdit *>(QStringLiteral("lineEdit_ip%1").arg(i)) : nullptr;
            octets << (octet ? octet->text() : QString());
        }
        return octets.join(QLatin1Char('.'));
    }

    QStringList log;

private:
    TestPanel m_panel;
    QString m_previousDir;
    std::unique_ptr<HostLinks> m_links;
    std::unique_ptr<FifoWatcher> m_fifo;
    PluginHost m_plugin;
    QPointer<QDialog> m_window;
    bool m_ready = false;
};

quint64 registerValue(unsigned index)
{
    quint8 bytes[8] = {};
    SysReg_Read(index, bytes);
    return bytes[0];
}

// Types on the newest on-screen keyboard of the dialog, Caps as needed.
bool typeOnKeyboard(QDialog *dialog, const QString &text)
{
    bool caps = false;
    for (const QChar character : text) {
        const bool upper = character.isUpper();
        if (upper != caps) {
            auto *capsKey = dialog->findChildren<QPushButton *>(QStringLiteral("pushButton_button_caps_keyboard")).value(0);
            if (!capsKey)
                return false;
            capsKey->click();
            caps = upper;
        }
        const QString name = QStringLiteral("pushButton_button_%1_keyboard").arg(character.toLower());
        const QList<QPushButton *> keys = dialog->findChildren<QPushButton *>(name);
        if (keys.isEmpty())
            return false;
        keys.last()->click();
    }
    return true;
}

QWidget *search(QWidget *wlan, QListWidget **list)
{
    QWidget *row = wlan->findChild<QWidget *>(QStringLiteral("groupBox_skip"));
    if (!row)
        return nullptr;
    QTest::mouseClick(row, Qt::LeftButton);
    *list = wlan->findChild<QListWidget *>(QStringLiteral("listWidget_wifi"));
    return row;
}

} // namespace

class TestSimulatorWireless : public QObject
{
    Q_OBJECT

private slots:
    void wlanScanPasswordOnKeyboardAndConnect();
    void wrongPasswordPromptsOnce_data();
    void wrongPasswordPromptsOnce();
    void mobileDialsAndShowsItsNameServers();
    void vpnConnectsAndRefusesARegionChange();

private:
    QDialog *pickAndOpenDialog(Rig &rig, const QString &ssid);
};

QDialog *TestSimulatorWireless::pickAndOpenDialog(Rig &rig, const QString &ssid)
{
    QWidget *wlan = rig.showTab("WirelessWgtUI");
    if (!wlan)
        return nullptr;
    QListWidget *list = nullptr;
    if (!search(wlan, &list) || !list)
        return nullptr;
    auto *stack = wlan->findChild<QStackedWidget *>(QStringLiteral("stackedWidget"));
    if (!QTest::qWaitFor([&]() { return stack && stack->currentIndex() == 1; }, PageTimeoutMs))
        return nullptr;
    wlan->findChild<QPushButton *>(QStringLiteral("pushButton_refreshWlan"))->click();
    if (!QTest::qWaitFor([&]() { return !list->findItems(ssid, Qt::MatchExactly).isEmpty(); }, PageTimeoutMs))
        return nullptr;
    QListWidgetItem *item = list->findItems(ssid, Qt::MatchExactly).first();
    list->scrollToItem(item);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(item).center());
    if (!QTest::qWaitFor([&]() { return rig.passwordDialogs().size() == 1; }, PageTimeoutMs))
        return nullptr;
    return rig.passwordDialogs().first();
}

void TestSimulatorWireless::wlanScanPasswordOnKeyboardAndConnect()
{
    Rig rig(1);
    QVERIFY(rig.ready());
    QDialog *dialog = pickAndOpenDialog(rig, QStringLiteral("TAVRO-Office"));
    QVERIFY2(dialog, "no password dialog for TAVRO-Office");
    // The Chinese names of the scan came through GB2312.
    auto *list = rig.window()->findChild<QListWidget *>(QStringLiteral("listWidget_wifi"));
    QVERIFY(!list->findItems(QString::fromUtf8("车间无线"), Qt::MatchExactly).isEmpty());
    QVERIFY(!list->findItems(QString::fromUtf8("访客网络"), Qt::MatchExactly).isEmpty());

    auto *field = dialog->findChild<QLineEdit *>(QStringLiteral("lineEdit_psw"));
    QVERIFY(field);
    QTest::mouseClick(field, Qt::LeftButton);
    QTRY_VERIFY(!dialog->findChildren<QPushButton *>(QStringLiteral("pushButton_button_q_keyboard")).isEmpty());
    QVERIFY(typeOnKeyboard(dialog, QStringLiteral("tavro2024")));
    dialog->findChildren<QPushButton *>(QStringLiteral("pushButton_button_enter_keyboard")).last()->click();
    QCOMPARE(field->text(), QStringLiteral("tavro2024"));
    dialog->findChild<QPushButton *>(QStringLiteral("pushButton_connect"))->click();

    QTRY_COMPARE_WITH_TIMEOUT(registerValue(SysRegIdx::WlanState), quint64(2), PageTimeoutMs);
    auto *status = rig.window()->findChild<QLabel *>(QStringLiteral("label_wifiStatus"));
    QVERIFY(status);
    QTRY_COMPARE_WITH_TIMEOUT(status->text(), QStringLiteral("Online"), PageTimeoutMs);
    auto *name = rig.window()->findChild<QLabel *>(QStringLiteral("label_connectedWlanNm"));
    QTRY_COMPARE_WITH_TIMEOUT(name->text(), QStringLiteral("TAVRO-Office"), PageTimeoutMs);
    QTRY_COMPARE_WITH_TIMEOUT(Rig::address(rig.window()->findChild<QWidget *>(QStringLiteral("ipLineEdit_ip"))),
                              QStringLiteral("192.168.8.23"), PageTimeoutMs);
    auto *mac = rig.window()->findChild<QLineEdit *>(QStringLiteral("lineEdit_macAddr"));
    QTRY_COMPARE_WITH_TIMEOUT(mac->text(), QStringLiteral("00:1A:2B:3C:4D:60"), PageTimeoutMs);
    // The connected network leaves the list.
    QTRY_VERIFY_WITH_TIMEOUT(list->findItems(QStringLiteral("TAVRO-Office"), Qt::MatchExactly).isEmpty(), PageTimeoutMs);
    QVERIFY(rig.log.filter(QStringLiteral("associated with \"TAVRO-Office\"")).size() == 1);
}

void TestSimulatorWireless::wrongPasswordPromptsOnce_data()
{
    QTest::addColumn<quint8>("language");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("text");
    QTest::newRow("english") << quint8(1) << "Waring" << "Password error, please re-enter";
    QTest::newRow("chinese") << quint8(0) << "" << QString::fromUtf8("密码错误，请重新输入");
}

void TestSimulatorWireless::wrongPasswordPromptsOnce()
{
    QFETCH(quint8, language);
    QFETCH(QString, title);
    QFETCH(QString, text);
    Rig rig(language);
    QVERIFY(rig.ready());
    QDialog *dialog = pickAndOpenDialog(rig, QStringLiteral("Lab_5G"));
    QVERIFY(dialog);
    // The first dialog goes away; a new one may come to lie at its address.
    const QPointer<QDialog> first(dialog);
    auto *field = dialog->findChild<QLineEdit *>(QStringLiteral("lineEdit_psw"));
    QTest::mouseClick(field, Qt::LeftButton);
    QTRY_VERIFY(!dialog->findChildren<QPushButton *>(QStringLiteral("pushButton_button_l_keyboard")).isEmpty());
    QVERIFY(typeOnKeyboard(dialog, QStringLiteral("wrongpass")));
    dialog->findChildren<QPushButton *>(QStringLiteral("pushButton_button_enter_keyboard")).last()->click();
    QString shownTitle;
    QString shownText;
    ModalDriver::acceptMessageBox(&shownTitle, &shownText);
    dialog->findChild<QPushButton *>(QStringLiteral("pushButton_connect"))->click();
    QTRY_COMPARE_WITH_TIMEOUT(registerValue(SysRegIdx::WlanState), quint64(4), PageTimeoutMs);
    QTRY_COMPARE_WITH_TIMEOUT(ModalDriver::pending(), 0, PageTimeoutMs);
    QCOMPARE(shownText, text);
    QCOMPARE(shownTitle, title);
    // A new dialog for the same network, and one only.
    QTRY_COMPARE_WITH_TIMEOUT(rig.passwordDialogs().size(), 1, PageTimeoutMs);
    QDialog *again = rig.passwordDialogs().first();
    QVERIFY(first.isNull() || again != first.data());
    QVERIFY(again->findChild<QLabel *>(QStringLiteral("label_title"))->text().contains(QStringLiteral("Lab_5G")));
    // The state stays 4 for several ticks: no second prompt.
    QTest::qWait(2500);
    QCOMPARE(rig.passwordDialogs().size(), 1);
    QVERIFY(!qobject_cast<QMessageBox *>(QApplication::activeModalWidget()));
    // The right password from the new dialog connects.
    auto *newField = again->findChild<QLineEdit *>(QStringLiteral("lineEdit_psw"));
    QTest::mouseClick(newField, Qt::LeftButton);
    QTRY_VERIFY(!again->findChildren<QPushButton *>(QStringLiteral("pushButton_button_l_keyboard")).isEmpty());
    QVERIFY(typeOnKeyboard(again, QStringLiteral("lab5g")));
    again->findChildren<QPushButton *>(QStringLiteral("pushButton_button_xiaHuaXian_keyboard")).last()->click();
    QVERIFY(typeOnKeyboard(again, QStringLiteral("test")));
    again->findChildren<QPushButton *>(QStringLiteral("pushButton_button_enter_keyboard")).last()->click();
    QCOMPARE(newField->text(), QStringLiteral("lab5g-test"));
    again->findChild<QPushButton *>(QStringLiteral("pushButton_connect"))->click();
    QTRY_COMPARE_WITH_TIMEOUT(registerValue(SysRegIdx::WlanState), quint64(2), PageTimeoutMs);
}

void TestSimulatorWireless::mobileDialsAndShowsItsNameServers()
{
    Rig rig(1);
    QVERIFY(rig.ready());
    QWidget *mobile = rig.showTab("MobileNetworkUI");
    QVERIFY(mobile);
    auto *status = mobile->findChild<QLabel *>(QStringLiteral("label_networkStatus"));
    QWidget *toggle = mobile->findChild<QWidget *>(QStringLiteral("switch_4g"));
    QVERIFY(status && toggle);
    QTRY_COMPARE_WITH_TIMEOUT(status->text(), QStringLiteral("Not connected"), PageTimeoutMs);
    QTest::mouseClick(toggle, Qt::LeftButton);
    QCOMPARE(status->text(), QStringLiteral("Connecting in progress"));
    QTRY_COMPARE(registerValue(SysRegIdx::Mobile4GState), quint64(1));
    QTRY_COMPARE_WITH_TIMEOUT(status->text(), QStringLiteral("Connection successful"), PageTimeoutMs);
    // Both fields show the server of the last "# ppp0" line.
    QWidget *dns1 = mobile->findChild<QWidget *>(QStringLiteral("ipLineEdit_dns1"));
    QTRY_COMPARE_WITH_TIMEOUT(Rig::address(dns1), QStringLiteral("211.136.20.203"), PageTimeoutMs);
    // The host drops the link: the page follows.
    QString error;
    QVERIFY(rig.links()->command(QStringLiteral("4g-drop"), &error));
    QTRY_COMPARE_WITH_TIMEOUT(status->text(), QStringLiteral("Not connected"), PageTimeoutMs);
    QTRY_COMPARE_WITH_TIMEOUT(Rig::address(dns1), QStringLiteral("0.0.0.0"), PageTimeoutMs);
    // Off and on: connected again.
    QTest::mouseClick(toggle, Qt::LeftButton);
    QTest::mouseClick(toggle, Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(status->text(), QStringLiteral("Connection successful"), PageTimeoutMs);
}

void TestSimulatorWireless::vpnConnectsAndRefusesARegionChange()
{
    Rig rig(1);
    QVERIFY(rig.ready());
    QWidget *vpn = rig.showTab("VpnSetUI");
    QVERIFY(vpn);
    auto *status = vpn->findChild<QLabel *>(QStringLiteral("label_connectStatue"));
    QWidget *toggle = vpn->findChild<QWidget *>(QStringLiteral("switch_vpn"));
    auto *region = vpn->findChild<QComboBox *>(QStringLiteral("comboBox_server"));
    QVERIFY(status && toggle && region);
    QTRY_COMPARE_WITH_TIMEOUT(status->text(), QStringLiteral("Prepare to connect"), PageTimeoutMs);
    QTest::mouseClick(toggle, Qt::LeftButton);
    QTRY_COMPARE(registerValue(SysRegIdx::VpnState), quint64(1));
    QTRY_COMPARE_WITH_TIMEOUT(status->text(), QStringLiteral("VPN connection ok"), PageTimeoutMs);
    QCOMPARE(registerValue(SysRegIdx::VpnState), quint64(5));

    QString title;
    QString text;
    ModalDriver::acceptMessageBox(&title, &text);
    region->setCurrentIndex(1);
    QTRY_COMPARE_WITH_TIMEOUT(ModalDriver::pending(), 0, PageTimeoutMs);
    QCOMPARE(title, QStringLiteral("Waring"));
    QCOMPARE(text, QStringLiteral("Please turn off VPN first!"));
    QCOMPARE(region->currentIndex(), 0);
    QCOMPARE(registerValue(SysRegIdx::VpnRegion), quint64(0));
    QVERIFY(rig.log.filter(QStringLiteral("server region now")).isEmpty());
    QCOMPARE(status->text(), QStringLiteral("VPN connection ok"));

    // Off: the region may change, and the host sees it.
    QTest::mouseClick(toggle, Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(status->text(), QStringLiteral("Prepare to connect"), PageTimeoutMs);
    region->setCurrentIndex(1);
    QTRY_COMPARE(registerValue(SysRegIdx::VpnRegion), quint64(1));
    QTRY_COMPARE(rig.log.filter(QStringLiteral("server region now European servers (1)")).size(), 1);
}

PANEL_GUI_TEST_MAIN(TestSimulatorWireless)
#include "tst_simulatorwireless.moc"
