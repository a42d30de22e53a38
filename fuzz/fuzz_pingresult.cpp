// The ping's output file is whatever the ping (or anything else) left in
// the working folder. The test succeeds exactly when the file's first
// MaxSize bytes hold "ttl" in lower case; a missing file is no answer yet,
// and a file that is not a plain file is a failure.
#include "fuzzsupport.h"
#include "pingresult.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <QDir>
#include <QFile>

#include <string.h>

namespace {

const QString ResultPath = QStringLiteral("/work/ping.txt");

// libc's own search, untouched by the coverage instrumentation that would
// make a byte-by-byte loop over 64 KiB the slowest part of the target.
bool holdsMarker(const QByteArray &bytes)
{
    return memmem(bytes.constData(), size_t(bytes.size()), "ttl", 3) != nullptr;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const int shape = input.ConsumeIntegralInRange<int>(0, 7);
    // Output pushed towards or past the bound by a run of filler first.
    const int filler = shape == 0 ? input.ConsumeIntegralInRange<int>(int(PingResult::MaxSize) - 64,
                                                                      int(PingResult::MaxSize) + 64)
                                  : 0;
    const char fill = char(input.ConsumeIntegral<uint8_t>());
    const std::string rest = input.ConsumeRemainingBytesAsString();
    const QByteArray content = QByteArray(filler, fill) + QByteArray(rest.data(), int(rest.size()));

    const PingResult::State state = PingResult::evaluate(content);
    FUZZ_CHECK(state == (holdsMarker(content) ? PingResult::Succeeded : PingResult::Failed), content.right(256));

    const QString path = FuzzSupport::panelRoot() + ResultPath;
    if (shape == 1) {
        // Something that is not a file stands in its place.
        QFile::remove(path);
        QDir().mkpath(path);
        FUZZ_CHECK(PingResult::read(path) == PingResult::Failed, QByteArray());
        QDir().rmdir(path);
        FUZZ_CHECK(PingResult::read(path) == PingResult::Missing, QByteArray());
        return 0;
    }
    FuzzSupport::writePanelFile(ResultPath, content);
    const PingResult::State fromFile = PingResult::read(path);
    const bool seen = holdsMarker(content.left(int(PingResult::MaxSize)));
    FUZZ_CHECK(fromFile == (seen ? PingResult::Succeeded : PingResult::Failed), content.right(256));
    return 0;
}
