// What the 4G and VPN pages show for the host's register values.
#include "mobilestatus.h"
#include "testharness.h"
#include "vpnstatus.h"

#include <QtTest>

#include <climits>

namespace {
const QString Previous = QStringLiteral(":/Resources/previous.svg");
QString picture(int n)
{
    return QStringLiteral(":/Resources/connect_%1.svg").arg(n);
}
} // namespace

class TestMobileVpnStatus : public QObject
{
    Q_OBJECT

private slots:
    void signalPicture_data();
    void signalPicture();
    void mobileStatusText_data();
    void mobileStatusText();
    void vpnStatusText_data();
    void vpnStatusText();
    void regionIndex_data();
    void regionIndex();
    void language_data();
    void language();
    void serverNames();
};

void TestMobileVpnStatus::signalPicture_data()
{
    QTest::addColumn<uint>("value");
    QTest::addColumn<QString>("expected");
    QTest::newRow("0 no signal") << 0u << picture(6);
    QTest::newRow("1") << 1u << picture(5);
    QTest::newRow("20") << 20u << picture(5);
    QTest::newRow("21") << 21u << picture(4);
    QTest::newRow("40") << 40u << picture(4);
    QTest::newRow("41") << 41u << picture(3);
    QTest::newRow("60") << 60u << picture(3);
    QTest::newRow("61") << 61u << picture(2);
    QTest::newRow("80") << 80u << picture(2);
    QTest::newRow("81") << 81u << picture(1);
    QTest::newRow("100") << 100u << picture(1);
    QTest::newRow("101 keeps") << 101u << Previous;
    QTest::newRow("255 keeps") << 255u << Previous;
    QTest::newRow("UINT_MAX keeps") << uint(UINT_MAX) << Previous;
}

void TestMobileVpnStatus::signalPicture()
{
    QFETCH(uint, value);
    QFETCH(QString, expected);
    QCOMPARE(MobileStatus::signalPicture(value, Previous), expected);
}

void TestMobileVpnStatus::mobileStatusText_data()
{
    QTest::addColumn<uint>("state");
    QTest::addColumn<QString>("expected");      // empty: no text, label kept
    QTest::newRow("0") << 0u << QStringLiteral("Not connected");
    QTest::newRow("1") << 1u << QStringLiteral("Connecting in progress");
    QTest::newRow("2") << 2u << QStringLiteral("Connection successful");
    QTest::newRow("3") << 3u << QString();
    QTest::newRow("7") << 7u << QString();
    QTest::newRow("255") << 255u << QString();
    QTest::newRow("UINT_MAX") << uint(UINT_MAX) << QString();
}

void TestMobileVpnStatus::mobileStatusText()
{
    QFETCH(uint, state);
    QFETCH(QString, expected);
    const char *text = MobileStatus::statusText(state);
    QCOMPARE(text ? QString::fromLatin1(text) : QString(), expected);
}

void TestMobileVpnStatus::vpnStatusText_data()
{
    QTest::addColumn<uint>("state");
    QTest::addColumn<bool>("chinese");
    QTest::addColumn<QString>("expected");
    QTest::newRow("0 en") << 0u << false << QStringLiteral("internet not connected");
    QTest::newRow("0 zh") << 0u << true << QStringLiteral("网络还没通");
    QTest::newRow("1 en") << 1u << false << QStringLiteral("Prepare to connect");
    QTest::newRow("1 zh") << 1u << true << QStringLiteral("准备连接");
    QTest::newRow("5 en") << 5u << false << QStringLiteral("VPN connection ok");
    QTest::newRow("5 zh") << 5u << true << QStringLiteral("VPN连接成功");
    QTest::newRow("2") << 2u << false << QString();
    QTest::newRow("3") << 3u << false << QString();
    QTest::newRow("4 zh") << 4u << true << QString();
    QTest::newRow("6") << 6u << false << QString();
    QTest::newRow("255") << 255u << true << QString();
    QTest::newRow("UINT_MAX") << uint(UINT_MAX) << false << QString();
}

void TestMobileVpnStatus::vpnStatusText()
{
    QFETCH(uint, state);
    QFETCH(bool, chinese);
    QFETCH(QString, expected);
    QCOMPARE(VpnStatus::statusText(state, chinese), expected);
}

void TestMobileVpnStatus::regionIndex_data()
{
    QTest::addColumn<uint>("value");
    QTest::addColumn<int>("expected");
    QTest::newRow("0 Chinese") << 0u << 0;
    QTest::newRow("1 European") << 1u << 1;
    QTest::newRow("2") << 2u << 0;
    QTest::newRow("7") << 7u << 0;
    QTest::newRow("255") << 255u << 0;
    QTest::newRow("UINT_MAX") << uint(UINT_MAX) << 0;
}

void TestMobileVpnStatus::regionIndex()
{
    QFETCH(uint, value);
    QFETCH(int, expected);
    QCOMPARE(VpnStatus::regionIndex(value), expected);
}

void TestMobileVpnStatus::language_data()
{
    QTest::addColumn<uint>("value");
    QTest::addColumn<bool>("chinese");
    QTest::newRow("0 Chinese") << 0u << true;
    QTest::newRow("1 English") << 1u << false;
    QTest::newRow("255") << 255u << false;
    QTest::newRow("low byte 0") << 0x100u << true;
}

void TestMobileVpnStatus::language()
{
    QFETCH(uint, value);
    QFETCH(bool, chinese);
    QCOMPARE(VpnStatus::chineseLanguage(value), chinese);
}

void TestMobileVpnStatus::serverNames()
{
    QCOMPARE(VpnStatus::serverNames(true), (QStringList{"中国服务器", "欧洲服务器"}));
    QCOMPARE(VpnStatus::serverNames(false), (QStringList{"Chinese servers", "European servers"}));
}

PANEL_TEST_MAIN(TestMobileVpnStatus)
#include "tst_mobilevpnstatus.moc"
