// The scan list is written by the host application after every scan, in
// GB2312; whatever it holds, the page lists at most one network per line,
// with a quality of two characters, and never reads more than its bound.
#include "fuzzsupport.h"
#include "scanlist.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <QDir>
#include <QStringList>

#include <algorithm>

namespace {

const QString ScanPath = QStringLiteral("/tmp/scan_parse");
const QString LineEnd = QStringLiteral("\r\n");
constexpr int QualityWidth = 2;

// The parts between "\r\n" separators, empty ones included.
QStringList partsOf(const QString &text)
{
    QStringList parts;
    int start = 0;
    for (int end; (end = text.indexOf(LineEnd, start)) >= 0; start = end + LineEnd.size())
        parts << text.mid(start, end - start);
    parts << text.mid(start);
    return parts;
}

bool isDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

void checkIcon(int quality)
{
    const QString icon = ScanList::iconFor(quality);
    const char *expected = quality >= 80 ? ":/Resources/wifi.svg"
        : quality >= 60                  ? ":/Resources/wifi3.svg"
        : quality >= 40                  ? ":/Resources/wifi2.svg"
                                         : ":/Resources/wifi1.svg";
    FUZZ_CHECK(icon == QLatin1String(expected), QByteArray::number(quality));
}

void checkParse(const QString &text, const QByteArray &detail)
{
    const QList<ScanList::Entry> entries = ScanList::parse(text);
    QStringList lines = partsOf(text);
    lines.removeAll(QString());
    FUZZ_CHECK(entries.size() == lines.size(), detail);
    // Each line needs a character and all but the last a separator.
    FUZZ_CHECK(entries.size() <= (text.size() + 2) / 3, detail);
    for (int i = 0; i < entries.size(); ++i) {
        const ScanList::Entry &entry = entries.at(i);
        const QString &line = lines.at(i);
        const int ssidSize = std::max(0, line.size() - QualityWidth);
        FUZZ_CHECK(entry.ssid == line.left(ssidSize), detail);
        FUZZ_CHECK(!entry.ssid.contains(LineEnd), detail);
        FUZZ_CHECK(entry.quality >= -9 && entry.quality <= 99, detail);
        const QString quality = line.right(QualityWidth);
        if (std::all_of(quality.begin(), quality.end(), isDigit))
            FUZZ_CHECK(entry.quality == quality.toInt(), detail);
        if (std::none_of(quality.begin(), quality.end(), isDigit))
            FUZZ_CHECK(entry.quality == 0, detail);
        checkIcon(entry.quality);
    }
}

// Whatever the writer left, the page reads no more than the bound; a
// folder in the file's place is refused, not read.
void checkReadFile(const QByteArray &content)
{
    FuzzSupport::writePanelFile(ScanPath, content);
    QByteArray read;
    QString error;
    FUZZ_CHECK(ScanList::readFile(ScanPath, &read, &error), error.toUtf8());
    FUZZ_CHECK(read == content.left(int(ScanList::MaxFileBytes)), content);

    static const bool folderRefused = [] {
        const QString folder = QStringLiteral("/tmp/scan_folder");
        QDir().mkpath(FuzzSupport::panelRoot() + folder);
        QByteArray untouched("kept");
        QString why;
        return !ScanList::readFile(folder, &untouched, &why) && untouched == "kept" && !why.isEmpty()
            && !ScanList::readFile(QStringLiteral("/tmp/no_such_list"), nullptr, &why) && !why.isEmpty();
    }();
    FUZZ_CHECK(folderRefused, QByteArray());
}

QByteArray oversized(const QByteArray &seed)
{
    QByteArray big = seed.isEmpty() ? QByteArray("net5\r\n") : seed;
    while (big.size() <= ScanList::MaxFileBytes)
        big += big;
    return big;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const int fileChoice = input.ConsumeIntegralInRange<int>(0, 63);
    checkIcon(input.ConsumeIntegral<int>());
    const std::string rest = input.ConsumeRemainingBytesAsString();
    const QByteArray bytes(rest.data(), int(rest.size()));

    const QString text = ScanList::decode(bytes);
    // A GB2312 character takes one or two bytes; a bad byte becomes one
    // replacement character at most.
    FUZZ_CHECK(text.size() <= bytes.size(), bytes);
    if (std::all_of(bytes.begin(), bytes.end(), [](char c) { return uchar(c) < 0x80; }))
        FUZZ_CHECK(text == QString::fromLatin1(bytes.constData(), bytes.size()), bytes);
    checkParse(text, bytes);

    if (fileChoice == 0)
        checkReadFile(oversized(bytes));
    else if (fileChoice < 8)
        checkReadFile(bytes);
    return 0;
}
