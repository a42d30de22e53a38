#ifndef TESTHARNESS_H
#define TESTHARNESS_H

#include <QCoreApplication>
#include <QFile>
#include <QString>
#include <QTemporaryDir>
#include <QTest>
#ifdef QT_WIDGETS_LIB
#include <QApplication>
#endif

// Puts recording stand-ins of reboot, date, hwclock, ifconfig, route, ip,
// udhcpc, killall and ping first in PATH for the whole test process, and
// checks that each of those names now resolves to a stand-in, both for
// QStandardPaths and for /bin/sh. ready() is false otherwise and the test
// must not run.
class TestHarness
{
public:
    TestHarness();
    bool ready() const { return m_ready; }
    QString errorString() const { return m_error; }
    QString fakeDir() const { return m_dir.path(); }

    // Empty when every guarded tool resolves into fakeDir under the current
    // PATH, for Qt and for /bin/sh alike; otherwise what would escape.
    static QString escapingTool(const QString &fakeDir);

private:
    QTemporaryDir m_dir;
    bool m_ready = false;
    QString m_error;
};

// main() for a test object: builds the harness, refuses to run without it.
#define PANEL_TEST_MAIN_IMPL(AppClass, TestObject)                          \
    int main(int argc, char *argv[])                                       \
    {                                                                       \
        AppClass app(argc, argv);                                           \
        TestHarness harness;                                                \
        if (!harness.ready()) {                                             \
            qCritical("refusing to run: %s", qPrintable(harness.errorString())); \
            return 2;                                                       \
        }                                                                   \
        TestObject tc;                                                      \
        QTEST_SET_MAIN_SOURCE_PATH                                          \
        return QTest::qExec(&tc, argc, argv);                               \
    }

#define PANEL_TEST_MAIN(TestObject) PANEL_TEST_MAIN_IMPL(QCoreApplication, TestObject)
// GUI tests: run them with QT_QPA_PLATFORM=offscreen (CTest sets it).
#define PANEL_GUI_TEST_MAIN(TestObject) PANEL_TEST_MAIN_IMPL(QApplication, TestObject)

#endif // TESTHARNESS_H
