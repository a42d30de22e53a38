#include "panelroot.h"
#include "testharness.h"
#include "testpanel.h"

#include <QtTest>

#include <cstdlib>

// Null root = variable unset.
class TestPanelRoot : public QObject
{
    Q_OBJECT

private:
    void applyRoot(const QByteArray &root)
    {
        if (root.isNull())
            qunsetenv("PANEL_ROOT");
        else
            qputenv("PANEL_ROOT", root);
    }

private slots:
    void cleanup() { qunsetenv("PANEL_ROOT"); }

    void command_data()
    {
        QTest::addColumn<QByteArray>("root");
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("expected");

        const QByteArray unset;
        QTest::newRow("unset root leaves text")
            << unset << QByteArray("cp /etc/resolv.conf /etc/resolvbak.conf")
            << QByteArray("cp /etc/resolv.conf /etc/resolvbak.conf");
        QTest::newRow("empty root leaves text")
            << QByteArray("") << QByteArray("/root/plat-intf/readee")
            << QByteArray("/root/plat-intf/readee");
        QTest::newRow("slash root leaves text")
            << QByteArray("/") << QByteArray("/root/plat-intf/readee")
            << QByteArray("/root/plat-intf/readee");
        QTest::newRow("both paths of a copy")
            << QByteArray("/p") << QByteArray("cp /etc/resolv.conf /etc/resolvbak.conf")
            << QByteArray("cp /p/etc/resolv.conf /p/etc/resolvbak.conf");
        QTest::newRow("network prefix untouched")
            << QByteArray("/p") << QByteArray("route add -net 10.0.0.0/8 gw 10.0.0.1")
            << QByteArray("route add -net 10.0.0.0/8 gw 10.0.0.1");
        QTest::newRow("trailing slash on root")
            << QByteArray("/p/") << QByteArray("/root/plat-intf/setbeep short")
            << QByteArray("/p/root/plat-intf/setbeep short");
        QTest::newRow("several trailing slashes")
            << QByteArray("/p//") << QByteArray("/root/plat-intf/getbright")
            << QByteArray("/p/root/plat-intf/getbright");
        QTest::newRow("redirection to /dev/null")
            << QByteArray("/p") << QByteArray("kill 12 >> /dev/null")
            << QByteArray("kill 12 >> /p/dev/null");
        QTest::newRow("no path at all")
            << QByteArray("/p") << QByteArray("ifconfig eth1 10.0.0.5")
            << QByteArray("ifconfig eth1 10.0.0.5");
        QTest::newRow("option with equals")
            << QByteArray("/p") << QByteArray("writeee count=16 of=/dev/x")
            << QByteArray("writeee count=16 of=/p/dev/x");
    }

    void command()
    {
        QFETCH(QByteArray, root);
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, expected);
        applyRoot(root);
        QCOMPARE(PanelRoot::command(text.constData()), expected);
    }

    void path_data()
    {
        QTest::addColumn<QByteArray>("root");
        QTest::addColumn<QString>("input");
        QTest::addColumn<QString>("expected");

        QTest::newRow("unset") << QByteArray() << "/tmp/mw.dat" << "/tmp/mw.dat";
        QTest::newRow("mapped") << QByteArray("/p") << "/tmp/mw.dat" << "/p/tmp/mw.dat";
        QTest::newRow("trailing slash") << QByteArray("/p/") << "/etc/resolv.conf"
                                        << "/p/etc/resolv.conf";
        QTest::newRow("relative untouched") << QByteArray("/p") << "ping.txt" << "ping.txt";
    }

    void path()
    {
        QFETCH(QByteArray, root);
        QFETCH(QString, input);
        QFETCH(QString, expected);
        applyRoot(root);
        QCOMPARE(PanelRoot::path(input), expected);
        QCOMPARE(PanelRoot::path(input.toLocal8Bit().constData()), expected.toLocal8Bit());
    }

    void nullInputs()
    {
        QVERIFY(PanelRoot::command(nullptr).isEmpty());
        QVERIFY(PanelRoot::path(static_cast<const char *>(nullptr)).isEmpty());
    }

    // The mapped /dev/null of a panel is a link to the real one, so a mapped
    // redirection still runs.
    void devNullRedirectionRuns()
    {
        TestPanel panel;
        QVERIFY2(panel.isValid(), qPrintable(panel.errorString()));
        const QByteArray mapped = PanelRoot::command("echo panel >> /dev/null");
        QVERIFY(mapped.contains(QFile::encodeName(panel.root())));
        QCOMPARE(system(mapped.constData()), 0);
    }
};

PANEL_TEST_MAIN(TestPanelRoot)
#include "tst_panelroot.moc"
