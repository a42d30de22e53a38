#include "windowbench.h"

#include "benchmain.h"
#include "processcost.h"
#include "processsampler.h"
#include "settingsinterface.h"
#include "testpanel.h"

#include <QCoreApplication>
#include <QDialog>
#include <QEvent>
#include <QEventLoop>
#include <QPluginLoader>
#include <QFile>
#include <QTimer>

#include <algorithm>

#include <cstdio>

namespace {

// Ends an event loop at the first paint of the watched widget. The whole
// widget tree is painted in that same pass, before the loop sees the quit.
class FirstPaint : public QObject
{
public:
    FirstPaint(QWidget *widget, QEventLoop *loop) : m_loop(loop) { widget->installEventFilter(this); }
    bool painted = false;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && !painted) {
            painted = true;
            m_loop->quit();
        }
        return false;
    }

private:
    QEventLoop *m_loop;
};

} // namespace

namespace WindowBench {

SettingsInterface *plugin(QString *error)
{
    static QPluginLoader *loader = new QPluginLoader(QStringLiteral(SETTINGS_PLUGIN_PATH));
    auto *instance = qobject_cast<SettingsInterface *>(loader->instance());
    if (!instance && error)
        *error = loader->errorString();
    return instance;
}

bool waitForFirstPaint(QWidget *window, int timeoutMs)
{
    QEventLoop loop;
    FirstPaint watch(window, &loop);
    QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
    if (!window->isVisible())
        window->show();
    loop.exec();
    return watch.painted;
}

void dispose(QWidget *window)
{
    delete window;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

void idle(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

bool observeOpening(Opening *opening, QString *error)
{
    SettingsInterface *settings = plugin(error);
    if (!settings)
        return false;
    BenchMain::panel().clearCalls();
    QDialog *window = settings->createInstance();
    if (!window) {
        *error = QStringLiteral("createInstance() gave no window");
        return false;
    }
    const bool painted = waitForFirstPaint(window);
    opening->widgets = window->findChildren<QWidget *>().size();
    opening->programs = BenchMain::panel().calls();
    dispose(window);
    if (!painted)
        *error = QStringLiteral("the window was never painted");
    return painted;
}

bool runnablePrograms(const QList<QStringList> &recorded, QList<QStringList> *calls)
{
    calls->clear();
    for (const QStringList &call : recorded) {
        const QStringList runnable =
            ProcessCost::resolvedCall(call, BenchMain::panel().root(), BenchMain::standInDir());
        if (runnable.isEmpty())
            return false;
        calls->append(runnable);
    }
    return true;
}

Memory memoryNow()
{
    Memory memory;
    // /proc files tell no size, so they are read line by line.
    if (FILE *file = std::fopen("/proc/self/status", "re")) {
        char line[256];
        while (std::fgets(line, sizeof line, file)) {
            long long kib = 0;
            if (std::sscanf(line, "VmRSS: %lld", &kib) == 1)
                memory.residentKib = kib;
            else if (std::sscanf(line, "RssAnon: %lld", &kib) == 1)
                memory.anonKib = kib;
            else if (std::sscanf(line, "RssFile: %lld", &kib) == 1)
                memory.fileKib = kib;
        }
        std::fclose(file);
    }
    memory.heapBytes = ProcessSampler::heapInUse();
    return memory;
}

QMap<QString, qint64> residentByMapping()
{
    QMap<QString, qint64> resident;
    FILE *file = std::fopen("/proc/self/smaps", "re");
    if (!file)
        return resident;
    char line[4096];
    QString mapping;
    while (std::fgets(line, sizeof line, file)) {
        long long kib = 0;
        if (std::sscanf(line, "Rss: %lld", &kib) == 1) {
            resident[mapping] += kib;
            continue;
        }
        // A mapping's first line: address range, permissions, offset,
        // device, inode, then the path when there is one.
        unsigned long from = 0, to = 0;
        int pathAt = 0;
        if (std::sscanf(line, "%lx-%lx %*s %*s %*s %*s %n", &from, &to, &pathAt) >= 2 && pathAt > 0) {
            mapping = QString::fromLocal8Bit(line + pathAt).trimmed();
            if (mapping.isEmpty())
                mapping = QStringLiteral("[anonymous]");
        }
    }
    std::fclose(file);
    return resident;
}

void writeGrowth(const QString &path, const QMap<QString, qint64> &before, int lines)
{
    if (path.isEmpty())
        return;
    QList<QPair<qint64, QString>> growth;
    const QMap<QString, qint64> now = residentByMapping();
    for (auto it = now.begin(); it != now.end(); ++it) {
        const qint64 grown = it.value() - before.value(it.key());
        if (grown > 0)
            growth.append({grown, it.key()});
    }
    std::sort(growth.begin(), growth.end(), [](const auto &a, const auto &b) { return a.first > b.first; });
    FILE *out = std::fopen(QFile::encodeName(path).constData(), "we");
    if (!out)
        return;
    for (int i = 0; i < growth.size() && i < lines; ++i)
        std::fprintf(out, "%lld\t%s\n", static_cast<long long>(growth.at(i).first), qPrintable(growth.at(i).second));
    std::fclose(out);
}

} // namespace WindowBench
