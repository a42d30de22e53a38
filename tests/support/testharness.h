#ifndef TESTHARNESS_H
#define TESTHARNESS_H

#include <QCoreApplication>
#include <QFile>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>
#ifdef QT_WIDGETS_LIB
#include <QApplication>
#endif

// Keeps a test from reaching the machine's clock, its network or a restart.
//
// StandIns (every test but the network lab's): puts recording stand-ins of
// reboot, date, hwclock, ifconfig, route, ip, udhcpc, killall and ping
// first in PATH for the whole test process, and checks that each of those
// names now resolves to a stand-in, both for QStandardPaths and for
// /bin/sh. ready() is false otherwise and the test must not run.
//
// RealNetwork (the network lab's tests only, PANEL_NETLAB_TEST_MAIN): the
// real ifconfig, route, ip, udhcpc, killall and ping are allowed, and only
// when the process verifiably runs inside a lab of its own:
//   - its network namespace and its mount namespace both differ from those
//     of /proc/1 (compared by device and inode of /proc/<pid>/ns/net and
//     /proc/<pid>/ns/mnt); /proc/1 unreadable means no proof, and refusal;
//   - it runs in a PID namespace other than the machine's first one, and
//     /proc/1 belongs to that same namespace, so /proc shows the lab's
//     processes only: "killall ping" cannot reach a ping outside the lab.
// tests/support/netlab/run-in-netlab builds such a lab, whose init (/proc/1)
// stays in the machine's network namespace. reboot, date and hwclock are
// recording stand-ins in this mode too, always. Each real tool must be
// found outside the stand-ins' folder. ready() is false otherwise.
class TestHarness
{
public:
    enum Mode { StandIns, RealNetwork };

    explicit TestHarness(Mode mode = StandIns);
    bool ready() const { return m_ready; }
    QString errorString() const { return m_error; }
    QString fakeDir() const { return m_dir.path(); }
    Mode mode() const { return m_mode; }

    // Empty when every guarded tool resolves into fakeDir under the current
    // PATH, for Qt and for /bin/sh alike; otherwise what would escape.
    static QString escapingTool(const QString &fakeDir);
    static QString escapingTool(const QString &fakeDir, const QStringList &tools);

    // The tools that stay stand-ins in the network lab.
    static QStringList alwaysFakedTools();      // reboot, date, hwclock
    // The network tools the lab runs for real.
    static QStringList realNetworkTools();      // ifconfig, route, ip, udhcpc, killall, ping

    // Empty when this process runs in a lab as described above; otherwise
    // why it does not count as one.
    static QString notInPrivateLab();

private:
    bool setUpRealNetwork();

    QTemporaryDir m_dir;
    Mode m_mode;
    bool m_ready = false;
    QString m_error;
};

// main() for a test object: builds the harness, refuses to run without it.
#define PANEL_TEST_MAIN_IMPL(AppClass, TestObject, HarnessMode)            \
    int main(int argc, char *argv[])                                       \
    {                                                                       \
        AppClass app(argc, argv);                                           \
        TestHarness harness(HarnessMode);                                   \
        if (!harness.ready()) {                                             \
            qCritical("refusing to run: %s", qPrintable(harness.errorString())); \
            return 2;                                                       \
        }                                                                   \
        TestObject tc;                                                      \
        QTEST_SET_MAIN_SOURCE_PATH                                          \
        return QTest::qExec(&tc, argc, argv);                               \
    }

#define PANEL_TEST_MAIN(TestObject) \
    PANEL_TEST_MAIN_IMPL(QCoreApplication, TestObject, TestHarness::StandIns)
// GUI tests: run them with QT_QPA_PLATFORM=offscreen (CTest sets it).
#define PANEL_GUI_TEST_MAIN(TestObject) \
    PANEL_TEST_MAIN_IMPL(QApplication, TestObject, TestHarness::StandIns)
// The network lab's tests: real network tools inside the lab only.
#define PANEL_NETLAB_TEST_MAIN(TestObject) \
    PANEL_TEST_MAIN_IMPL(QCoreApplication, TestObject, TestHarness::RealNetwork)
#ifdef QT_WIDGETS_LIB
#define PANEL_NETLAB_GUI_TEST_MAIN(TestObject) \
    PANEL_TEST_MAIN_IMPL(QApplication, TestObject, TestHarness::RealNetwork)
#endif

#endif // TESTHARNESS_H
