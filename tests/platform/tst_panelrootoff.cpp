#include "panelroot.h"
#include "processrunner.h"
#include "testharness.h"

#include <QtTest>

// The mapping as a panel build compiles it (SETTINGS_NO_PANEL_ROOT): a
// PANEL_ROOT in the host's environment changes no path and no command.
class TestPanelRootOff : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { qunsetenv("PANEL_ROOT"); }

    void rootIsAlwaysEmpty_data()
    {
        QTest::addColumn<QByteArray>("root");
        QTest::newRow("folder") << QByteArray("/p");
        QTest::newRow("with blanks") << QByteArray("/home/dev/my panel");
        QTest::newRow("relative") << QByteArray("p");
    }

    void rootIsAlwaysEmpty()
    {
        QFETCH(QByteArray, root);
        qputenv("PANEL_ROOT", root);
        QVERIFY(PanelRoot::root().isEmpty());
    }

    void pathIgnoresRoot_data()
    {
        QTest::addColumn<QString>("input");
        QTest::newRow("register file") << "/tmp/mw.dat";
        QTest::newRow("resolver file") << "/etc/resolv.conf";
        QTest::newRow("relative") << "ping.txt";
    }

    void pathIgnoresRoot()
    {
        QFETCH(QString, input);
        qputenv("PANEL_ROOT", "/p");
        QCOMPARE(PanelRoot::path(input), input);
        QCOMPARE(PanelRoot::path(input.toLocal8Bit().constData()), input.toLocal8Bit());
    }

    void commandIgnoresRoot_data()
    {
        QTest::addColumn<QByteArray>("root");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("copy") << QByteArray("/p") << QByteArray("cp /etc/resolv.conf /etc/resolvbak.conf");
        QTest::newRow("firmware tool") << QByteArray("/p") << QByteArray("/root/plat-intf/readee");
        QTest::newRow("root with blanks") << QByteArray("/my panel") << QByteArray("cat '/etc/a' \"/etc/b\"");
        QTest::newRow("root with a line break") << QByteArray("/a\nb") << QByteArray("cat /etc/a");
        QTest::newRow("open quote") << QByteArray("/p") << QByteArray("echo '/etc/a");
    }

    void commandIgnoresRoot()
    {
        QFETCH(QByteArray, root);
        QFETCH(QByteArray, text);
        qputenv("PANEL_ROOT", root);
        QCOMPARE(PanelRoot::command(text.constData()), text);
    }

    void nullInputs()
    {
        qputenv("PANEL_ROOT", "/p");
        QVERIFY(PanelRoot::command(nullptr).isNull());
        QVERIFY(PanelRoot::path(static_cast<const char *>(nullptr)).isNull());
    }

    // What a command of the platform layer reads is the machine's own file,
    // not the one below the folder PANEL_ROOT names.
    void commandReadsTheRealPath()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const char probe[] = "/etc/tavro-panel-root-probe";
        QVERIFY2(!QFile::exists(QString::fromLatin1(probe)), "the probe must not exist on this machine");
        QVERIFY(QDir().mkpath(dir.path() + QStringLiteral("/etc")));
        QFile mapped(dir.path() + QString::fromLatin1(probe));
        QVERIFY(mapped.open(QIODevice::WriteOnly));
        mapped.write("mapped");
        mapped.close();
        qputenv("PANEL_ROOT", QFile::encodeName(dir.path()));

        const QByteArray text = PanelRoot::command("cat /etc/tavro-panel-root-probe 2>&1 || echo unmapped");
        char out[256] = {};
        int count = 0;
        QCOMPARE(ProcessRunner::readFrom(text.constData(), out, int(sizeof out) - 1, WaitBound::ShellCommand,
                                         &count),
                 int(ProcessRunner::Done));
        const QByteArray answer(out, count);
        QVERIFY2(answer.contains("unmapped"), answer.constData());
        QVERIFY(!QFile::exists(PanelRoot::path(QString::fromLatin1(probe))));
    }
};

PANEL_TEST_MAIN(TestPanelRootOff)
#include "tst_panelrootoff.moc"
