#include "routerules.h"
#include "testharness.h"

#include <QtTest>

Q_DECLARE_METATYPE(RouteSituation)

namespace {

QStringList texts(const std::vector<CommandText> &commands)
{
    QStringList list;
    for (const CommandText &command : commands)
        list << (command.isValid() ? QString::fromLatin1(command.text()) : QStringLiteral("<not run>"));
    return list;
}

RouteSituation situation(int selection, bool secondPort, bool wlan, bool mobile)
{
    RouteSituation s;
    s.selection = selection;
    s.secondPort = secondPort;
    s.wlanPage = wlan;
    s.mobilePage = mobile;
    s.gateway[0] = QStringLiteral("192.168.1.1");
    s.gateway[1] = QStringLiteral("192.168.2.1");
    return s;
}

const QString DelWlan = QStringLiteral("route del default dev wlan0");
const QString AddWlan100 = QStringLiteral("route add default gw 192.168.236.1 dev wlan0 metric 100");
const QString DelPpp = QStringLiteral("route del default dev ppp0");
const QString AddPpp100 = QStringLiteral("route add default dev ppp0 metric 100");
const QString DelEth0 = QStringLiteral("route del default dev eth0");
const QString DelEth1 = QStringLiteral("route del default dev eth1");

QString addEth(int port, int metric)
{
    return QStringLiteral("route add default gw 192.168.%1.1 dev eth%2 metric %3").arg(port + 1).arg(port).arg(metric);
}

} // namespace

// The whole metric table of the default routes, one row per situation.
class TestRouteRules : public QObject
{
    Q_OBJECT

private slots:
    void sharedRow()
    {
        QCOMPARE(RouteRules::sharedRow(true), 3);
        QCOMPARE(RouteRules::sharedRow(false), 2);
    }

    void commands_data()
    {
        QTest::addColumn<RouteSituation>("situation");
        QTest::addColumn<QStringList>("commands");
        const QStringList wired0 {DelEth0, DelEth1, addEth(0, 1), addEth(1, 11)};
        QTest::newRow("0, two ports, WLAN and 4G")
            << situation(0, true, true, true) << (QStringList{DelWlan, AddWlan100, DelPpp, AddPpp100} + wired0);
        QTest::newRow("0, two ports, nothing else") << situation(0, true, false, false) << wired0;
        QTest::newRow("0, WLAN only") << situation(0, true, true, false) << (QStringList{DelWlan, AddWlan100} + wired0);
        QTest::newRow("0, 4G only") << situation(0, true, false, true) << (QStringList{DelPpp, AddPpp100} + wired0);
        QTest::newRow("1 (eth0)") << situation(1, true, true, true)
                                  << (QStringList{DelWlan, AddWlan100, DelPpp, AddPpp100, DelEth0, DelEth1, addEth(0, 1), addEth(1, 2)});
        QTest::newRow("2 (eth1)") << situation(2, true, false, false)
                                  << QStringList{DelEth0, DelEth1, addEth(0, 2), addEth(1, 1)};
        QTest::newRow("1 with one port") << situation(1, false, false, false)
                                         << QStringList{DelEth0, DelEth1, addEth(0, 1), addEth(1, 2)};

        RouteSituation wireless = situation(3, true, true, true);
        wireless.wlanAddress = QStringLiteral("10.1.2.77");
        QTest::newRow("W, wlan0 addressed, ppp0 not")
            << wireless << QStringList{DelWlan, QStringLiteral("route add default gw 10.1.2.1 dev wlan0 metric 0")};
        wireless.pppHasAddress = true;
        QTest::newRow("W, both addressed")
            << wireless << QStringList{DelWlan, QStringLiteral("route add default gw 10.1.2.1 dev wlan0 metric 0"),
                                       DelPpp, QStringLiteral("route add default dev ppp0 metric 0")};
        RouteSituation mobileOnly = situation(2, false, false, true);
        mobileOnly.pppHasAddress = true;
        QTest::newRow("W on one port, ppp0 only")
            << mobileOnly << QStringList{DelPpp, QStringLiteral("route add default dev ppp0 metric 0")};
        QTest::newRow("W, nothing addressed") << situation(3, true, true, true) << QStringList();

        RouteSituation stored = situation(-1, true, true, true);
        stored.storedSelection = 3;
        QTest::newRow("W from register 78")
            << stored << (QStringList{DelWlan, AddWlan100, DelPpp, AddPpp100, DelEth0, DelEth1, addEth(0, 2), addEth(1, 2)});
        stored.storedSelection = 0;
        QTest::newRow("0 from register 78") << stored << (QStringList{DelWlan, AddWlan100, DelPpp, AddPpp100} + wired0);
        stored.storedSelection = 2;
        QTest::newRow("2 from register 78") << stored << (QStringList{DelWlan, AddWlan100, DelPpp, AddPpp100, DelEth0, DelEth1, addEth(0, 2), addEth(1, 1)});
        stored.storedSelection = 255;
        QTest::newRow("255 from register 78") << stored << (QStringList{DelWlan, AddWlan100, DelPpp, AddPpp100, DelEth0, DelEth1, addEth(0, 2), addEth(1, 2)});

        RouteSituation emptyEditor = situation(0, true, false, false);
        emptyEditor.gateway[1] = QStringLiteral("...");
        QTest::newRow("empty gateway editor") << emptyEditor << QStringList{DelEth0, DelEth1, addEth(0, 1), QStringLiteral("<not run>")};
        RouteSituation hostile = situation(1, true, false, false);
        hostile.gateway[0] = QStringLiteral("1.2.3.4; reboot");
        QTest::newRow("hostile gateway text") << hostile << QStringList{DelEth0, DelEth1, QStringLiteral("<not run>"), addEth(1, 2)};
    }

    // Register 78 may hold any byte: the wired metrics follow the stored
    // value for 0..2 and are 2 and 2 for everything else.
    void everyStoredByte()
    {
        for (int stored = 0; stored <= 255; ++stored) {
            RouteSituation s = situation(-1, true, false, false);
            s.storedSelection = stored;
            const int eth0 = stored == 0 ? 1 : stored == 2 ? 2 : stored == 1 ? 1 : 2;
            const int eth1 = stored == 0 ? 11 : stored == 2 ? 1 : 2;
            QCOMPARE(texts(RouteRules::commands(s)), (QStringList{DelEth0, DelEth1, addEth(0, eth0), addEth(1, eth1)}));
        }
    }

    void commands()
    {
        QFETCH(RouteSituation, situation);
        QFETCH(QStringList, commands);
        QCOMPARE(texts(RouteRules::commands(situation)), commands);
    }
};

PANEL_TEST_MAIN(TestRouteRules)
#include "tst_routerules.moc"
