#include "calllogwatcher.h"
#include "simulatedpanel.h"

#include <QFile>

CallLogWatcher::CallLogWatcher(const QString &path, QObject *parent)
    : QObject(parent)
    , m_path(path)
{
    connect(&m_timer, &QTimer::timeout, this, &CallLogWatcher::poll);
}

void CallLogWatcher::start(int intervalMs)
{
    m_timer.start(intervalMs);
}

void CallLogWatcher::poll()
{
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly))
        return;    // nothing has run yet
    if (file.size() < m_offset) {
        // Someone emptied the log: start over rather than skip new lines.
        m_offset = 0;
        m_partial.clear();
    }
    if (!file.seek(m_offset))
        return;
    const QByteArray chunk = file.readAll();
    m_offset += chunk.size();
    m_partial += chunk;
    const int lastNewline = m_partial.lastIndexOf('\n');
    if (lastNewline < 0)
        return;    // a writer is in the middle of a line
    const QByteArray complete = m_partial.left(lastNewline + 1);
    m_partial.remove(0, lastNewline + 1);
    const QList<QStringList> calls = SimulatedPanel::parseCallLog(complete);
    for (const QStringList &argv : calls)
        emit commandRan(argv);
}

QString CallLogWatcher::commandLine(const QStringList &argv)
{
    QStringList shown;
    for (const QString &argument : argv) {
        const bool plain = !argument.isEmpty()
            && !argument.contains(QLatin1Char(' ')) && !argument.contains(QLatin1Char('"'));
        shown << (plain ? argument : QLatin1Char('"') + argument + QLatin1Char('"'));
    }
    return shown.join(QLatin1Char(' '));
}
