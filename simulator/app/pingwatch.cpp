#include "pingwatch.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace PingWatch {

bool runningIn(const QString &dir)
{
    const QString wanted = QFileInfo(dir).canonicalFilePath();
    const QStringList entries = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &entry : entries) {
        bool numeric = false;
        entry.toInt(&numeric);
        if (!numeric)
            continue;
        QFile comm(QStringLiteral("/proc/%1/comm").arg(entry));
        if (!comm.open(QIODevice::ReadOnly) || comm.readAll().trimmed() != "ping")
            continue;
        // Another user's process cannot be read, and is not ours.
        if (QFileInfo(QStringLiteral("/proc/%1/cwd").arg(entry)).canonicalFilePath() == wanted)
            return true;
    }
    return false;
}

} // namespace PingWatch
