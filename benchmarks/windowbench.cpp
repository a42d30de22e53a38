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
#include <QFile>
#include <QPluginLoader>
#include <QTimer>

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

qint64 statusKib(const QByteArray &status, const char *key)
{
    const int at = status.indexOf(key);
    if (at < 0)
        return -1;
    int end = status.indexOf('\n', at);
    if (end < 0)
        end = status.size();
    const QByteArray field = status.mid(at + int(qstrlen(key)), end - at - int(qstrlen(key)));
    return field.trimmed().split(' ').value(0).toLongLong();
}

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
    QFile file(QStringLiteral("/proc/self/status"));
    if (file.open(QIODevice::ReadOnly)) {
        const QByteArray status = file.readAll();
        memory.residentKib = statusKib(status, "VmRSS:");
        memory.anonKib = statusKib(status, "RssAnon:");
        memory.fileKib = statusKib(status, "RssFile:");
    }
    memory.heapBytes = ProcessSampler::heapInUse();
    return memory;
}

} // namespace WindowBench
