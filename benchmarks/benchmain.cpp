#include "benchmain.h"

#include "testharness.h"
#include "testpanel.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QScopedPointer>

#include <benchmark/benchmark.h>

#include <cstdio>

namespace {

TestPanel *thePanel = nullptr;
QString theStandIns;

// The panel root must be the temporary panel's, or a benchmark would read
// and write the machine's own /tmp and /hmi_data.
bool onTemporaryPanel(const TestPanel &panel, QString *why)
{
    const QString root = QString::fromLocal8Bit(qgetenv("PANEL_ROOT"));
    if (root.isEmpty() || QDir(root).canonicalPath() != QDir(panel.root()).canonicalPath()
        || QDir(root).canonicalPath() == QDir::rootPath()) {
        *why = QStringLiteral("PANEL_ROOT is not the temporary panel");
        return false;
    }
    return true;
}

int refuse(const QString &why)
{
    std::fprintf(stderr, "refusing to run: %s\n", qPrintable(why));
    return 2;
}

} // namespace

namespace BenchMain {

TestPanel &panel() { return *thePanel; }

QString standInDir() { return theStandIns; }

int run(int argc, char **argv, bool gui)
{
    // The window never reaches a real display.
    if (gui && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QScopedPointer<QCoreApplication> app(gui ? new QApplication(argc, argv) : new QCoreApplication(argc, argv));
    TestHarness harness;
    if (!harness.ready())
        return refuse(harness.errorString());
    TestPanel panel;
    if (!panel.isValid())
        return refuse(panel.errorString());
    QString why;
    if (!onTemporaryPanel(panel, &why))
        return refuse(why);
    thePanel = &panel;
    theStandIns = harness.fakeDir();

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::AddCustomContext("panel_root", panel.root().toStdString());
    benchmark::AddCustomContext("qt_platform", qgetenv("QT_QPA_PLATFORM").toStdString());
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    thePanel = nullptr;
    return 0;
}

} // namespace BenchMain
