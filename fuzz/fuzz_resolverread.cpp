// The resolver file is written by DHCP clients, the host application and by
// hand; whatever it holds, the name servers read from it are the second
// words of the owner's lines, and reading it loses no byte.
#include "fuzzsupport.h"
#include "resolverfile.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <QBuffer>
#include <QList>

#include <algorithm>

namespace {

const char *const RealTags[] = {"eth0", "eth1", "wlan0", "ppp0"};
constexpr size_t MaxTagBytes = 8;
// A resolver file holds a few lines; longer texts only slow the search
// down. The size bound itself is checked now and then with a text of its own.
constexpr size_t MaxTextBytes = 1024;
const QByteArray NoServer = QByteArrayLiteral("0.0.0.0");

QByteArray pickTag(FuzzedDataProvider &input)
{
    const size_t choice = input.ConsumeIntegralInRange<size_t>(0, 5);
    if (choice < 4)
        return QByteArray(RealTags[choice]);
    const std::string own = input.ConsumeRandomLengthString(MaxTagBytes);
    return QByteArray(own.data(), int(own.size()));
}

// The lines as the bytes stand, cut at every line feed.
QList<QByteArray> linesOf(const QByteArray &bytes)
{
    QList<QByteArray> lines;
    int start = 0;
    for (;;) {
        const int end = bytes.indexOf('\n', start);
        if (end < 0)
            break;
        lines << bytes.mid(start, end - start);
        start = end + 1;
    }
    lines << bytes.mid(start);
    return lines;
}

bool owns(const QByteArray &line, const QByteArray &tag)
{
    return line.indexOf(tag) > 0;
}

QByteArray secondWord(const QByteArray &line)
{
    const int first = line.indexOf(' ');
    if (first < 0)
        return QByteArray();
    const int second = line.indexOf(' ', first + 1);
    return second < 0 ? line.mid(first + 1) : line.mid(first + 1, second - first - 1);
}

QByteArray expectedServer(const QList<QByteArray> &lines, const QByteArray &tag, int role)
{
    int k = 0;
    for (const QByteArray &line : lines) {
        if (!owns(line, tag))
            continue;
        if (k == role)
            return line.contains(' ') ? secondWord(line) : QByteArray();
        ++k;
    }
    return NoServer;
}

QByteArray expectedLastServer(const QList<QByteArray> &lines, const QByteArray &tag)
{
    QByteArray found = NoServer;
    for (const QByteArray &line : lines) {
        if (owns(line, tag) && line.contains(' '))
            found = secondWord(line);
    }
    return found;
}

// Every byte, NULs included (the QByteArray overload stops at the first).
QString latin1(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.constData(), bytes.size());
}

QString readThrough(const QByteArray &bytes, QIODevice::OpenMode mode = QIODevice::ReadOnly)
{
    QBuffer buffer;
    buffer.setData(bytes);
    if (!buffer.open(mode))
        FuzzSupport::fail("buffer opened");
    return ResolverFile::readText(buffer);
}

// A file of exactly the bound still reads whole; one byte more reads as
// nothing at all rather than as a cut list of servers.
void checkSizeBound(const QByteArray &seed)
{
    QByteArray big = seed.isEmpty() ? QByteArray(1, 'x') : seed;
    while (big.size() < ResolverFile::MaxFileSize)
        big += big;
    big.truncate(int(ResolverFile::MaxFileSize));
    FUZZ_CHECK(ResolverFile::bytes(readThrough(big)) == big, seed);
    FUZZ_CHECK(readThrough(big + 'x').isEmpty(), seed);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const QByteArray tagBytes = pickTag(input);
    const int role = input.ConsumeIntegralInRange<int>(-1, 3);
    const bool oversize = input.ConsumeIntegralInRange<int>(0, 255) == 0;
    const std::string rest = input.ConsumeBytesAsString(std::min(input.remaining_bytes(), MaxTextBytes));
    const QByteArray bytes(rest.data(), int(rest.size()));

    const QString text = readThrough(bytes);
    FUZZ_CHECK(ResolverFile::bytes(text) == bytes, bytes);
    FUZZ_CHECK(text.size() == bytes.size(), bytes);
    // The page opens the file as text, as it always did: Qt then drops every
    // carriage return, so CRLF line ends read as LF.
    QByteArray unixEnds = bytes;
    unixEnds.replace("\r", "");
    FUZZ_CHECK(ResolverFile::bytes(readThrough(bytes, QIODevice::ReadOnly | QIODevice::Text)) == unixEnds, bytes);
    if (oversize)
        checkSizeBound(bytes);

    const QString tag = latin1(tagBytes);
    const QList<QByteArray> lines = linesOf(bytes);
    for (const QByteArray &line : lines)
        FUZZ_CHECK(ResolverFile::belongsTo(latin1(line), tag) == owns(line, tagBytes), line);

    const QString server = ResolverFile::server(text, tag, role);
    FUZZ_CHECK(ResolverFile::bytes(server) == expectedServer(lines, tagBytes, role), bytes);
    FUZZ_CHECK(!server.contains(QLatin1Char('\n')) && !server.contains(QLatin1Char(' ')), server.toLatin1());

    const QString last = ResolverFile::lastServer(text, tag);
    FUZZ_CHECK(ResolverFile::bytes(last) == expectedLastServer(lines, tagBytes), bytes);
    return 0;
}
