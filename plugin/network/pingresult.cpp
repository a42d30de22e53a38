#include "pingresult.h"

#include <QFile>
#include <QFileInfo>

namespace PingResult {

State evaluate(const QByteArray &content)
{
    return !content.isEmpty() && content.contains("ttl") ? Succeeded : Failed;
}

State read(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return Missing;
    // Anything but a plain file (a FIFO would block the reader) is no answer.
    QFile file(path);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly))
        return Failed;
    return evaluate(file.read(MaxSize));
}

} // namespace PingResult
