#ifndef SCANLIST_H
#define SCANLIST_H

#include <QByteArray>
#include <QList>
#include <QString>

// The scan list the host application writes after a scan request
// ("/tmp/scan_parse"): GB2312 text, one network per "\r\n"-separated line,
// each line the SSID followed directly by two characters of signal quality.
namespace ScanList {

// A scan list of a few dozen networks is a few KiB. The file is read on the
// GUI thread every second, so a runaway writer must not be able to stall the
// page: only this much of it is ever read, the rest is ignored.
constexpr qint64 MaxFileBytes = 64 * 1024;

struct Entry
{
    QString ssid;
    int quality = 0;

    bool operator==(const Entry &other) const { return ssid == other.ssid && quality == other.quality; }
};

// Text of the scan list; bytes that are no GB2312 become replacement
// characters. Falls back to the local 8-bit codec where Qt has no GB2312.
QString decode(const QByteArray &bytes);

// The lines of `text` that are not empty, in file order. The last two
// characters are always the quality, whatever they hold: text that is no
// number counts as 0. A line of two characters or fewer has an empty SSID.
QList<Entry> parse(const QString &text);

// Signal-strength picture for a quality.
QString iconFor(int quality);

// At most MaxFileBytes of the file below the panel root. False when it
// cannot be opened; `error` (when given) then says why.
bool readFile(const QString &panelPath, QByteArray *bytes, QString *error = nullptr);

} // namespace ScanList

#endif // SCANLIST_H
