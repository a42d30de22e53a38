// The harness's rule for the real network tools: inside the lab they are
// real, the clock and restart tools stay stand-ins; a process that shares
// the network or mount namespace of /proc/1, or whose /proc shows more than
// its own PID namespace, is refused. The test functions here never run a
// network tool, so a refusal that failed to come would harm nothing.

#include "commandtext.h"
#include "processrunner.h"
#include "testharness.h"
#include "testpanel.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>

class TestNetLabGuard : public QObject
{
    Q_OBJECT

private slots:
    void insidePrivateLab();
    void networkToolsAreReal();
    void clockAndRestartStayStandIns();
    void refusedInInitsNamespaces();
    void refusedWithAnotherPidNamespacesProc();

private:
    // Runs this test binary's insidePrivateLab through a launcher; its exit
    // code and output.
    int runSelf(const QStringList &launcher, QByteArray *output);
};

void TestNetLabGuard::insidePrivateLab()
{
    QCOMPARE(TestHarness::notInPrivateLab(), QString());
}

void TestNetLabGuard::networkToolsAreReal()
{
    for (const QString &tool : TestHarness::realNetworkTools()) {
        const QString found = QStandardPaths::findExecutable(tool);
        QVERIFY2(found.startsWith(QLatin1String("/usr/")) || found.startsWith(QLatin1String("/bin/"))
                     || found.startsWith(QLatin1String("/sbin/")),
                 qPrintable(tool + QLatin1String(": ") + found));
    }
}

void TestNetLabGuard::clockAndRestartStayStandIns()
{
    // Only invocations that would change nothing even on a real tool: the
    // call log shows the stand-ins received them.
    TestPanel panel;
    QVERIFY(panel.isValid());
    QCOMPARE(runCommand(CommandText("hwclock")), 0);
    QCOMPARE(runCommand(CommandText("date")), 0);
    const QList<QStringList> expected = {{QStringLiteral("hwclock")}, {QStringLiteral("date")}};
    QCOMPARE(panel.calls(), expected);

    // reboot is never run here, not even a stand-in: where it resolves.
    const QString fakes = QFileInfo(QStandardPaths::findExecutable(QStringLiteral("reboot"))).path();
    for (const char *system : {"/usr/", "/bin/", "/sbin/"})
        QVERIFY2(!(fakes + QLatin1Char('/')).startsWith(QLatin1String(system)), qPrintable(fakes));
    QCOMPARE(TestHarness::escapingTool(fakes, TestHarness::alwaysFakedTools()), QString());
}

int TestNetLabGuard::runSelf(const QStringList &launcher, QByteArray *output)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(launcher.first(), launcher.mid(1) + QStringList{QCoreApplication::applicationFilePath(),
                                                                  QStringLiteral("insidePrivateLab")});
    if (!process.waitForFinished(10000)) {
        process.kill();
        process.waitForFinished(1000);
        return -1;
    }
    *output = process.readAll();
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

void TestNetLabGuard::refusedInInitsNamespaces()
{
    // /proc/1 is the lab's init, which stays in the machine's network
    // namespace: joining its namespaces is what a run outside the lab is.
    QByteArray output;
    const int code = runSelf({QStringLiteral("nsenter"), QStringLiteral("--net=/proc/1/ns/net"),
                              QStringLiteral("--mount=/proc/1/ns/mnt"), QStringLiteral("--")},
                             &output);
    QCOMPARE(code, 2);
    QVERIFY2(output.contains("refusing to run: the real network tools run only inside a private network lab")
                 && output.contains("network namespace of /proc/1"),
             output.constData());
}

void TestNetLabGuard::refusedWithAnotherPidNamespacesProc()
{
    // Fresh network and mount namespaces, but a /proc that shows processes
    // beyond its own PID namespace: "killall" could reach them.
    QByteArray output;
    const int code = runSelf({QStringLiteral("unshare"), QStringLiteral("--net"), QStringLiteral("--mount"),
                              QStringLiteral("--pid"), QStringLiteral("--fork"), QStringLiteral("--")},
                             &output);
    QCOMPARE(code, 2);
    QVERIFY2(output.contains("/proc/1 lies outside this PID namespace"), output.constData());
}

PANEL_NETLAB_TEST_MAIN(TestNetLabGuard)
#include "tst_netlabguard.moc"
