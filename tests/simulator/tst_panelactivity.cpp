// The simulator's reading of the commands the plug-in runs at the panel.
#include "panelactivity.h"
#include "testharness.h"

#include <QtTest>

class TestPanelActivity : public QObject
{
    Q_OBJECT

private slots:
    void describe_data();
    void describe();
};

void TestPanelActivity::describe_data()
{
    QTest::addColumn<QStringList>("argv");
    QTest::addColumn<QString>("meaning");
    QTest::newRow("key click") << QStringList{"setbeep", "long"} << "beep (long)";
    QTest::newRow("brightness") << QStringList{"setbright", "152"} << "backlight set to 152";
    QTest::newRow("backlight off") << QStringList{"setbright", "0"} << "backlight off";
    QTest::newRow("garbled level") << QStringList{"setbright", "x"} << "backlight: unreadable level \"x\" ignored";
    QTest::newRow("no level") << QStringList{"setbright"} << "backlight: unreadable level \"\" ignored";
    QTest::newRow("date") << QStringList{"date", "-s", "2024-2-10"}
                          << "clock: the panel sets 2024-2-10 (recorded only; the host clock is untouched)";
    QTest::newRow("time") << QStringList{"date", "-s", "8:5:30"}
                          << "clock: the panel sets 8:5:30 (recorded only; the host clock is untouched)";
    QTest::newRow("date query") << QStringList{"date"} << "";
    QTest::newRow("date -s without value") << QStringList{"date", "-s"} << "";
    QTest::newRow("hardware clock") << QStringList{"hwclock", "--systohc", "--utc"}
                                    << "clock: the panel copies it to the hardware clock (recorded only)";
    QTest::newRow("image") << QStringList{"writeee", "count=16"} << "device image written";
    QTest::newRow("reboot") << QStringList{"reboot"} << "the panel would reboot now (recorded only)";
    QTest::newRow("read") << QStringList{"readee"} << "";
    QTest::newRow("nothing") << QStringList{} << "";
}

void TestPanelActivity::describe()
{
    QFETCH(QStringList, argv);
    QFETCH(QString, meaning);
    QCOMPARE(PanelActivity::describe(argv), meaning);
}

PANEL_TEST_MAIN(TestPanelActivity)
#include "tst_panelactivity.moc"
