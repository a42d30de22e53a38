// Rewriting the resolver file must leave everything that is not the
// changed server exactly as others wrote it. Only the text rules are fuzzed:
// the file-level rewrite() and putFirst() refresh the backup copy with cp,
// and a fuzz target never starts a program.
#include "fuzzsupport.h"
#include "resolverfile.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <QList>

#include <algorithm>

namespace {

const char *const RealTags[] = {"eth0", "eth1", "wlan0", "ppp0"};
constexpr size_t MaxTagBytes = 8;
constexpr size_t MaxServerBytes = 24;
// A resolver file holds a few lines; longer texts only slow the search down.
constexpr size_t MaxTextBytes = 1024;

using Lines = QList<QByteArray>;

QByteArray consumeBytes(FuzzedDataProvider &input, size_t most)
{
    const std::string text = input.ConsumeRandomLengthString(most);
    return QByteArray(text.data(), int(text.size()));
}

Lines linesOf(const QByteArray &bytes)
{
    Lines lines;
    int start = 0;
    for (int end; (end = bytes.indexOf('\n', start)) >= 0; start = end + 1)
        lines << bytes.mid(start, end - start);
    lines << bytes.mid(start);
    return lines;
}

bool owns(const QByteArray &line, const QByteArray &tag)
{
    return line.indexOf(tag) > 0;
}

int ownedCount(const Lines &lines, const QByteArray &tag)
{
    return int(std::count_if(lines.begin(), lines.end(), [&](const QByteArray &l) { return owns(l, tag); }));
}

int roleLine(const Lines &lines, const QByteArray &tag, int role)
{
    int k = 0;
    for (int i = 0; i < lines.size(); ++i) {
        if (owns(lines.at(i), tag) && k++ == role)
            return i;
    }
    return -1;
}

// Every byte, NULs included (the QByteArray overload stops at the first).
QString latin1(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.constData(), bytes.size());
}

void checkReplaced(const QByteArray &bytes, const QByteArray &tag, int role, const QByteArray &newLine)
{
    const Lines lines = linesOf(bytes);
    const int at = roleLine(lines, tag, role);
    const QByteArray out = ResolverFile::bytes(ResolverFile::replaced(latin1(bytes), latin1(tag), role, latin1(newLine)));

    // Every other non-blank line, whoever owns it, stays byte for byte and
    // in its order; the new line takes the role line's place or goes last.
    Lines kept;
    int place = -1;
    for (int i = 0; i < lines.size(); ++i) {
        if (i == at)
            place = kept.size();
        else if (!lines.at(i).isEmpty())
            kept << lines.at(i);
    }
    if (place < 0)
        place = kept.size();
    Lines outLines = linesOf(out);
    FUZZ_CHECK(place < outLines.size() && outLines.at(place) == newLine, bytes);
    outLines.removeAt(place);
    FUZZ_CHECK(outLines == kept, bytes);
    FUZZ_CHECK(!out.endsWith('\n') && !out.contains("\n\n"), out);

    // Once the role has its line, writing the same line again changes
    // nothing, and the role reads back the new server.
    if (owns(newLine, tag) && (at >= 0 || ownedCount(lines, tag) == role)) {
        const QString again = ResolverFile::replaced(latin1(out), latin1(tag), role, latin1(newLine));
        FUZZ_CHECK(ResolverFile::bytes(again) == out, bytes);
        const QString server = ResolverFile::server(latin1(out), latin1(tag), role);
        FUZZ_CHECK(server == ResolverFile::server(latin1(newLine), latin1(tag), 0), bytes);
    }
}

void checkOwnerFirst(const QByteArray &bytes, const QByteArray &tag)
{
    const Lines lines = linesOf(bytes);
    const QString text = latin1(bytes);
    const QString first = ResolverFile::ownerFirst(text, latin1(tag));
    if (ownedCount(lines, tag) == 0) {
        FUZZ_CHECK(first.isEmpty(), bytes);
        return;
    }
    Lines owned;
    Lines others;
    for (const QByteArray &line : lines)
        (owns(line, tag) ? owned : others) << line;
    const Lines outLines = linesOf(ResolverFile::bytes(first));
    FUZZ_CHECK(outLines == owned + others, bytes);

    Lines sortedIn = lines;
    Lines sortedOut = outLines;
    std::sort(sortedIn.begin(), sortedIn.end());
    std::sort(sortedOut.begin(), sortedOut.end());
    FUZZ_CHECK(sortedIn == sortedOut, bytes);

    FUZZ_CHECK(ResolverFile::ownerFirst(first, latin1(tag)) == first, bytes);
    for (int role = 0; role < 2; ++role)
        FUZZ_CHECK(ResolverFile::server(first, latin1(tag), role) == ResolverFile::server(text, latin1(tag), role), bytes);
    FUZZ_CHECK(ResolverFile::lastServer(first, latin1(tag)) == ResolverFile::lastServer(text, latin1(tag)), bytes);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const size_t tagChoice = input.ConsumeIntegralInRange<size_t>(0, 5);
    QByteArray tag = tagChoice < 4 ? QByteArray(RealTags[tagChoice]) : consumeBytes(input, MaxTagBytes);
    // The page writes one line per server: neither part holds a line feed.
    tag.replace('\n', ' ');
    const int role = input.ConsumeIntegralInRange<int>(-1, 2);
    const bool ownLine = input.ConsumeBool();
    QByteArray server = consumeBytes(input, MaxServerBytes);
    server.replace('\n', ' ');
    const QByteArray bytes = consumeBytes(input, MaxTextBytes);

    // The page's line is "nameserver <server> # <tag>"; the server text is
    // kept as it is, even a "%2" in it.
    const QByteArray pageLine = ResolverFile::bytes(ResolverFile::nameserverLine(latin1(server), latin1(tag)));
    FUZZ_CHECK(pageLine == "nameserver " + server + " # " + tag, pageLine);

    const QByteArray newLine = ownLine || server.isEmpty() ? pageLine : server;
    checkReplaced(bytes, tag, role, newLine);
    checkOwnerFirst(bytes, tag);
    return 0;
}
