#include "pidfile.h"

#include "panelroot.h"

#include <QFile>

namespace {
// Room for any process id and a line end; a longer first line is no pid.
constexpr qint64 MaxLine = 32;
}

namespace PidFile {

bool exists(const QString &panelPath)
{
    return QFile::exists(PanelRoot::path(panelPath));
}

qint64 read(const QString &panelPath)
{
    QFile file(PanelRoot::path(panelPath));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return 0;
    const QByteArray line = file.readLine(MaxLine + 1).trimmed();
    bool ok = false;
    const qint64 pid = line.toLongLong(&ok);
    return ok ? pid : 0;
}

} // namespace PidFile
