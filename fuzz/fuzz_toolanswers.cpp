// The firmware's query tools print a number (getbright) or a word
// (getusbslave); a broken or foreign tool may print anything. Whatever came,
// only the first AnswerSize - 1 bytes are looked at, the brightness is the
// leading number of them, the page's step follows the device-scale rule
// without ever going negative, and the USB answer is "plug-in" and one
// more character, nothing else.
#include "eeinfohandle.h"
#include "fuzzsupport.h"
#include "generalsettings.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <climits>
#include <cstring>
#include <memory>

namespace {

constexpr int Looked = EEInfoHandle::AnswerSize - 1;

int expectedBrightness(const char *bytes, int size)
{
    return FuzzSupport::leadingInt(bytes, qMin(size, Looked));
}

int expectedUsbSlave(const char *bytes, int size)
{
    const int n = qMin(size, Looked);
    const int length = int(strnlen(bytes, size_t(qMax(n, 0))));
    return length == 8 && std::memcmp(bytes, "plug-in", 7) == 0 ? 1 : 0;
}

void checkStep(int raw)
{
    const int step = GeneralSettings::convertBrightnessFromOriginalValue(raw);
    const QByteArray where = QByteArray::number(raw);
    FUZZ_CHECK(step == (raw <= 75 ? 0 : (raw >> 2) - 18), where);
    FUZZ_CHECK(step >= 0, where);
    if (raw >= 76 && raw <= 203)
        FUZZ_CHECK(step >= 1 && step <= 32, where);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // Exactly the bytes the tool printed, no terminator: the readers must
    // stop by themselves.
    const int count = int(size);
    const std::unique_ptr<char[]> answer = FuzzSupport::exactCopy(data, size);
    const QByteArray shown = FuzzSupport::bytes(data, size).left(64);

    const int raw = EEInfoHandle::brightnessFromAnswer(answer.get(), count);
    FUZZ_CHECK(raw == expectedBrightness(answer.get(), count), shown);
    FUZZ_CHECK(EEInfoHandle::usbSlaveFromAnswer(answer.get(), count) == expectedUsbSlave(answer.get(), count),
               shown);
    checkStep(raw);

    // Every step the page offers goes to the device and back unchanged.
    const int step = 1 + int(size % 32);
    FUZZ_CHECK(GeneralSettings::convertBrightnessFromOriginalValue(
                   GeneralSettings::convertBrightnessToOriginalValue(step)) == step,
               QByteArray::number(step));
    return 0;
}
