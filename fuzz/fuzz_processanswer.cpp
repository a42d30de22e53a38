// The process lookup reads the first bytes "ps -ef | grep" prints, and any
// program may be running under any name. Whatever the pipe gave, the answer
// is 1 for nothing, else the leading decimal number of the bytes looked at
// (blanks skipped, 0 when there is none, held to the int range), and
// nothing past those bytes is ever read.
#include "fuzzsupport.h"
#include "processlookup.h"

#include <climits>
#include <cstring>
#include <memory>

namespace {

// 1 for nothing, else the number as read by hand.
int expectedPid(const char *bytes, int size)
{
    const int n = qMin(size, ProcessLookup::AnswerSize);
    if (n == 0 || bytes[0] == '\0')
        return 1;
    return FuzzSupport::leadingInt(bytes, n);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // The pipe's bytes in a buffer of exactly their size: the reader must
    // neither need a terminator nor look past them.
    const int count = int(size);
    const std::unique_ptr<char[]> answer = FuzzSupport::exactCopy(data, size);
    const int pid = ProcessLookup::pidFromAnswer(answer.get(), count);
    const QByteArray input = FuzzSupport::bytes(data, size);
    FUZZ_CHECK(pid == expectedPid(answer.get(), count), input.left(ProcessLookup::AnswerSize));
    return 0;
}
