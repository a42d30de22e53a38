#include "commandtext.h"
#include "panelroot.h"
#include "processrunner.h"
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
        QTest::newRow("plain root in double quotes stays bare")
            << QByteArray("/p") << QByteArray("cp \"/etc/a\" '/etc/b'")
            << QByteArray("cp \"/p/etc/a\" '/p/etc/b'");

        // Roots that need quoting, in each quoting state.
        const QByteArray blanks("/home/dev/my panel");
        QTest::newRow("blanks outside quotes")
            << blanks << QByteArray("cp /etc/resolv.conf /etc/resolvbak.conf")
            << QByteArray("cp '/home/dev/my panel'/etc/resolv.conf '/home/dev/my panel'/etc/resolvbak.conf");
        QTest::newRow("blanks at the start of the text")
            << blanks << QByteArray("/root/plat-intf/setbeep short")
            << QByteArray("'/home/dev/my panel'/root/plat-intf/setbeep short");
        QTest::newRow("blanks after a redirection")
            << blanks << QByteArray("kill 12 >>/dev/null")
            << QByteArray("kill 12 >>'/home/dev/my panel'/dev/null");
        QTest::newRow("blanks after an equals sign")
            << blanks << QByteArray("writeee of=/dev/x")
            << QByteArray("writeee of='/home/dev/my panel'/dev/x");
        QTest::newRow("blanks inside double quotes")
            << blanks << QByteArray("cat \"/etc/a\"")
            << QByteArray("cat \"/home/dev/my panel/etc/a\"");
        QTest::newRow("blanks inside single quotes")
            << blanks << QByteArray("cat '/etc/a'")
            << QByteArray("cat '/home/dev/my panel/etc/a'");
        QTest::newRow("quote outside quotes")
            << QByteArray("/x/it's") << QByteArray("cat /etc/a")
            << QByteArray("cat '/x/it'\\''s'/etc/a");
        QTest::newRow("quote inside single quotes")
            << QByteArray("/x/it's") << QByteArray("cat '/etc/a'")
            << QByteArray("cat '/x/it'\\''s/etc/a'");
        QTest::newRow("quote inside double quotes")
            << QByteArray("/x/it's") << QByteArray("cat \"/etc/a\"")
            << QByteArray("cat \"/x/it's/etc/a\"");
        QTest::newRow("dollar, backtick, backslash, double quote in double quotes")
            << QByteArray("/x/$a`b\\c\"d") << QByteArray("cat \"/etc/a\"")
            << QByteArray("cat \"/x/\\$a\\`b\\\\c\\\"d/etc/a\"");
        QTest::newRow("dollar and backtick outside quotes")
            << QByteArray("/x/$(reboot)`b`") << QByteArray("cat /etc/a")
            << QByteArray("cat '/x/$(reboot)`b`'/etc/a");
        QTest::newRow("escaped quote opens nothing")
            << blanks << QByteArray("echo \\' /etc/a")
            << QByteArray("echo \\' '/home/dev/my panel'/etc/a");
        QTest::newRow("escaped double quote inside double quotes")
            << blanks << QByteArray("echo \"a\\\" /etc/a\"")
            << QByteArray("echo \"a\\\" /home/dev/my panel/etc/a\"");
        QTest::newRow("quotes closed again")
            << blanks << QByteArray("echo 'a' /etc/a")
            << QByteArray("echo 'a' '/home/dev/my panel'/etc/a");
        QTest::newRow("network prefix untouched with blanks")
            << blanks << QByteArray("route add -net 10.0.0.0/8 gw 10.0.0.1")
            << QByteArray("route add -net 10.0.0.0/8 gw 10.0.0.1");

        // Refused: nothing is run.
        QTest::newRow("line break in the root")
            << QByteArray("/x\nreboot") << QByteArray("cat /etc/a") << QByteArray("false");
        QTest::newRow("tab in the root")
            << QByteArray("/x\ty") << QByteArray("cat /etc/a") << QByteArray("false");
        QTest::newRow("single quote left open")
            << blanks << QByteArray("echo 'a /etc/a") << QByteArray("false");
        QTest::newRow("double quote left open")
            << QByteArray("/p") << QByteArray("echo \"/etc/a") << QByteArray("false");
        QTest::newRow("trailing escape")
            << QByteArray("/p") << QByteArray("echo /etc/a\\") << QByteArray("false");
    }

    void command()
    {
        QFETCH(QByteArray, root);
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, expected);
        applyRoot(root);
        if (expected == "false")
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^command not run: ")));
        QCOMPARE(PanelRoot::command(text.constData()), expected);
    }

    // The texts above as the shell reads them: every mapped path arrives as
    // one argument, whatever the root holds.
    void commandArguments_data()
    {
        QTest::addColumn<QByteArray>("rootName");
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QStringList>("expected");      // below the root

        const QByteArray mixed("printf '%s\\n' /etc/a \"/etc/b\" '/etc/c' x=/etc/d");
        for (const QByteArray &name : {QByteArray("plain"), QByteArray("my panel"), QByteArray("it's a panel"),
                                       QByteArray("a \"b\" $c `d` \\e &;|*?")}) {
            QTest::newRow(("mixed quoting, root " + name).constData())
                << name << mixed << QStringList{"/etc/a", "/etc/b", "/etc/c", "x=/etc/d"};
        }
    }

    void commandArguments()
    {
        QFETCH(QByteArray, rootName);
        QFETCH(QByteArray, text);
        QFETCH(QStringList, expected);
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QByteArray root = QFile::encodeName(dir.path()) + '/' + rootName;
        applyRoot(root);
        const QByteArray mapped = PanelRoot::command(text.constData());
        char out[512] = {};
        int count = 0;
        QCOMPARE(ProcessRunner::readFrom(mapped.constData(), out, int(sizeof out) - 1, WaitBound::ShellCommand,
                                         &count),
                 int(ProcessRunner::Done));
        QStringList arguments = QString::fromLocal8Bit(out, count).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        const QString prefix = QString::fromLocal8Bit(root);
        for (QString &argument : arguments)
            argument.replace(prefix, QString());
        QCOMPARE(arguments, expected);
    }

    // A real copy through the one command runner, below a root whose name
    // has blanks and a quote: both files are found below it, and nothing
    // lands beside it where a split name would point.
    void copyBelowRootWithBlanks_data()
    {
        QTest::addColumn<QByteArray>("rootName");
        QTest::newRow("blanks") << QByteArray("panel root with blanks");
        QTest::newRow("blanks and a quote") << QByteArray("the panel's root");
        QTest::newRow("shell characters") << QByteArray("root $HOME `x` ; & | \"q\"");
    }

    void copyBelowRootWithBlanks()
    {
        QFETCH(QByteArray, rootName);
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QString root = dir.path() + QLatin1Char('/') + QString::fromLocal8Bit(rootName);
        QVERIFY(QDir().mkpath(root + QStringLiteral("/etc")));
        QFile resolver(root + QStringLiteral("/etc/resolv.conf"));
        QVERIFY(resolver.open(QIODevice::WriteOnly));
        resolver.write("nameserver 10.1.2.3 # eth0\n");
        resolver.close();
        applyRoot(QFile::encodeName(root));

        QCOMPARE(runCommand(CommandText("cp /etc/resolv.conf /etc/resolvbak.conf")), 0);

        QFile backup(root + QStringLiteral("/etc/resolvbak.conf"));
        QVERIFY(backup.open(QIODevice::ReadOnly));
        QCOMPARE(backup.readAll(), QByteArray("nameserver 10.1.2.3 # eth0\n"));
        QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
                 QStringList{QString::fromLocal8Bit(rootName)});
    }

    // A refused text runs nothing at all.
    void refusedCommandRunsNothing()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QString marker = dir.path() + QStringLiteral("/ran");
        applyRoot(QFile::encodeName(dir.path()) + "/a\nb");
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^command not run: ")));
        const QByteArray text = "touch " + QFile::encodeName(marker) + " /etc/a";
        QVERIFY(ProcessRunner::system(PanelRoot::command(text.constData()), WaitBound::ShellCommand) != 0);
        QVERIFY(!QFile::exists(marker));
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
