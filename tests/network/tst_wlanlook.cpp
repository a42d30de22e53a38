// The WLAN tab inside the settings window at the smallest and the largest
// panel, in both languages: nothing of the form may leave the page width or
// be cut. With WLAN_SHOT_DIR set, the pages are also saved as pictures.
#include "flash_wr_1.h"
#include "networksettings.h"
#include "settings.h"
#include "switchbutton.h"
#include "sysreg.h"
#include "testharness.h"
#include "testpanel.h"
#include "wirelesswgtui.h"

#include <QAbstractButton>
#include <QDir>
#include <QLabel>
#include <QListWidget>
#include <QScrollArea>
#include <QStackedWidget>
#include <QtTest>

namespace {

void setRegister(unsigned index, const QByteArray &bytes, int length)
{
    QByteArray buffer = bytes.leftJustified(256, '\0');
    SysReg_Write(index, buffer.constData(), unsigned(length));
}

void setAddress(unsigned index, quint16 a, quint16 b, quint16 c, quint16 d)
{
    const quint16 values[4] = {a, b, c, d};
    SysReg_Write(index, values, sizeof values);
}

// Every visible label, button and field of the scroll area's contents lies
// inside its viewport's width, and no label is narrower than its text.
void checkFits(QScrollArea *area, const QString &where)
{
    QWidget *contents = area->widget();
    const int width = area->viewport()->width();
    QVERIFY2(contents->width() <= width, qPrintable(where + QStringLiteral(": contents wider than the page")));
    for (QWidget *widget : contents->findChildren<QWidget *>()) {
        if (!widget->isVisibleTo(area) || widget->parentWidget() != contents)
            continue;
        const QRect box(widget->mapTo(contents, QPoint(0, 0)), widget->size());
        const QString name = where + QLatin1Char(' ') + widget->objectName();
        QVERIFY2(box.right() < width, qPrintable(name + QStringLiteral(" leaves the page")));
        if (auto *label = qobject_cast<QLabel *>(widget); label && label->pixmap(Qt::ReturnByValue).isNull())
            QVERIFY2(label->width() >= label->minimumSizeHint().width(), qPrintable(name + QStringLiteral(" is cut")));
    }
}

} // namespace

class TestWlanLook : public QObject
{
    Q_OBJECT

private slots:
    void pagesFit_data();
    void pagesFit();
};

void TestWlanLook::pagesFit_data()
{
    QTest::addColumn<QSize>("screen");
    QTest::addColumn<Settings::Language>("language");
    QTest::newRow("800x480 Chinese") << QSize(800, 480) << Settings::Chinese;
    QTest::newRow("800x480 English") << QSize(800, 480) << Settings::English;
    QTest::newRow("1920x1080 Chinese") << QSize(1920, 1080) << Settings::Chinese;
    QTest::newRow("1920x1080 English") << QSize(1920, 1080) << Settings::English;
}

void TestWlanLook::pagesFit()
{
    QFETCH(QSize, screen);
    QFETCH(Settings::Language, language);
    SimulatedPanel::Options options;
    options.screenWidth = screen.width();
    TestPanel panel(options);
    panel.writeFile("/tmp/scan_parse", QByteArray("Office-5G85\r\nGuest72\r\nWarehouse-AP55\r\nLab31\r\n"
                                                  "Tavro-Home90\r\n"));
    panel.writeFile("/etc/resolv.conf", "nameserver 192.168.1.1 # wlan0\nnameserver 8.8.8.8 # wlan0\n");
    setRegister(SysRegIdx::WlanScanCount, QByteArray(1, 5), 1);
    Settings window;
    window.init();
    window.setFixedSize(screen);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.updateLanguage(language);
    auto *network = window.findChild<NetworkSettings *>();
    auto *wlan = window.findChild<WirelessWgtUI *>();
    QVERIFY(network && wlan);
    auto *networkButton = window.findChild<QAbstractButton *>(QStringLiteral("networkPushButton"));
    QVERIFY(networkButton);
    networkButton->click();
    network->setCurrentWidget(wlan);
    QTRY_VERIFY(wlan->isVisible());
    const QString dir = qEnvironmentVariable("WLAN_SHOT_DIR");
    const QString stem = QStringLiteral("%1x%2-%3").arg(screen.width()).arg(screen.height())
                             .arg(language == Settings::Chinese ? QStringLiteral("cn") : QStringLiteral("en"));
    auto shoot = [&](const QString &name) {
        QTest::qWait(50);
        if (!dir.isEmpty())
            QVERIFY(window.grab().save(QDir(dir).filePath(stem + QLatin1Char('-') + name + QStringLiteral(".png"))));
    };

    auto *mainArea = wlan->findChild<QScrollArea *>(QStringLiteral("scrollArea_wirlessMainPage"));
    auto *searchArea = wlan->findChild<QScrollArea *>(QStringLiteral("scrollArea_wifiSearchPage"));
    // As a touch on the switch would: it moves, then reports.
    auto *disableSwitch = wlan->findChild<SwitchButton *>(QStringLiteral("switchbox_disableNet"));
    disableSwitch->setChecked(true);
    wlan->slot_switchBox_disableNet_toggled(true);
    shoot(QStringLiteral("disabled"));
    checkFits(mainArea, stem + QStringLiteral(" disabled"));

    disableSwitch->setChecked(false);
    wlan->slot_switchBox_disableNet_toggled(false);
    setRegister(SysRegIdx::WlanState, QByteArray(1, 2), 1);
    setRegister(SysRegIdx::WlanSsid, "Tavro-Home", 32);
    setRegister(SysRegIdx::WlanMac, "a4c1380e52f7", 12);
    setAddress(SysRegIdx::WlanIp, 192, 168, 1, 57);
    setAddress(SysRegIdx::WlanMask, 255, 255, 255, 0);
    setAddress(SysRegIdx::WlanGateway, 192, 168, 1, 1);
    wlan->KscanWifiList_Timer();
    shoot(QStringLiteral("online"));
    checkFits(mainArea, stem + QStringLiteral(" online"));

    wlan->findChild<QStackedWidget *>(QStringLiteral("stackedWidget"))->setCurrentIndex(1);
    wlan->KscanWifiList_Timer();
    QTRY_VERIFY(searchArea->isVisible());
    shoot(QStringLiteral("search"));
    checkFits(searchArea, stem + QStringLiteral(" search"));
    QCOMPARE(wlan->findChild<QListWidget *>(QStringLiteral("listWidget_wifi"))->count(), 4);
}

PANEL_GUI_TEST_MAIN(TestWlanLook)
#include "tst_wlanlook.moc"
