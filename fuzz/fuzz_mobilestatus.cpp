// Registers 124 (signal) and 125 (link state) are the host application's
// 32-bit values: every value gives the picture of its 20-wide band or
// keeps the last one, and only the three known states have a text.
#include "fuzzsupport.h"
#include "mobilestatus.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstring>

namespace {

using namespace MobileStatus;

const char *const BandPictures[] = {
    ":/Resources/connect_5.svg", ":/Resources/connect_4.svg", ":/Resources/connect_3.svg",
    ":/Resources/connect_2.svg", ":/Resources/connect_1.svg",
};
constexpr unsigned BandWidth = 20;
const char *const States[] = {"Not connected", "Connecting in progress", "Connection successful"};

QString expectedPicture(unsigned value, const QString &previous)
{
    if (value == 0)
        return QLatin1String(NoSignalPicture);
    if (value > MaxSignal)
        return previous;
    return QLatin1String(BandPictures[(value - 1) / BandWidth]);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider input(data, size);
    QString previous = QLatin1String(NoSignalPicture);
    while (input.remaining_bytes() > 0) {
        const unsigned signal = input.ConsumeBool() ? input.ConsumeIntegral<unsigned>()
                                                    : input.ConsumeIntegralInRange<unsigned>(0, MaxSignal + 2);
        const unsigned state = input.ConsumeIntegral<unsigned>();
        const QByteArray detail = QByteArray::number(signal) + ' ' + QByteArray::number(state);

        const QString picture = signalPicture(signal, previous);
        FUZZ_CHECK(picture == expectedPicture(signal, previous), detail);
        FUZZ_CHECK(!picture.isEmpty(), detail);
        previous = picture;

        const char *text = statusText(state);
        FUZZ_CHECK((text != nullptr) == (state <= unsigned(Connected)), detail);
        if (text)
            FUZZ_CHECK(std::strcmp(text, States[state]) == 0, detail);
    }
    return 0;
}
