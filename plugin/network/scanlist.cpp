#include "scanlist.h"

#include "panelroot.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QTextCodec>

namespace {
const char LineEnd[] = "\r\n";
constexpr int QualityWidth = 2;
} // namespace

namespace ScanList {

QString decode(const QByteArray &bytes)
{
    QTextCodec *codec = QTextCodec::codecForName("GB2312");
    return codec ? codec->toUnicode(bytes) : QString::fromLocal8Bit(bytes);
}

QList<Entry> parse(const QString &text)
{
    QList<Entry> entries;
    const QStringList lines = text.split(QLatin1String(LineEnd), Qt::KeepEmptyParts);
    for (const QString &line : lines) {
        if (line.isEmpty())
            continue;
        Entry entry;
        bool ok = false;
        const int quality = line.right(QualityWidth).toInt(&ok);
        entry.quality = ok ? quality : 0;
        // left() with a negative count would return the whole line.
        entry.ssid = line.size() > QualityWidth ? line.left(line.size() - QualityWidth) : QString();
        entries << entry;
    }
    return entries;
}

QString iconFor(int quality)
{
    if (quality >= 80)
        return QStringLiteral(":/Resources/wifi.svg");
    if (quality >= 60)
        return QStringLiteral(":/Resources/wifi3.svg");
    if (quality >= 40)
        return QStringLiteral(":/Resources/wifi2.svg");
    return QStringLiteral(":/Resources/wifi1.svg");
}

bool readFile(const QString &panelPath, QByteArray *bytes, QString *error)
{
    QFile file(PanelRoot::path(panelPath));
    // A folder or a FIFO in the file's place: reading would fail or block.
    if (QFileInfo(file).exists() && !QFileInfo(file).isFile()) {
        if (error)
            *error = QStringLiteral("not a plain file");
        return false;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        if (error)
            *error = file.errorString();
        return false;
    }
    if (bytes)
        *bytes = file.read(MaxFileBytes);
    return true;
}

} // namespace ScanList
