// Register 100 (the WLAN state) and register 107 (the MAC text) are the
// host application's; over any run of ticks the page goes online only on
// state 2, prompts for a password only on the edge into state 4, and shows
// a MAC text no longer than one address.
#include "fuzzsupport.h"
#include "wlanstatus.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstring>

namespace {

using namespace WlanStatus;

constexpr int MaxTicks = 64;
constexpr int MacDigits = 12;
constexpr int MacTextSize = 17;
constexpr size_t MaxRegisterBytes = 20;

QByteArray tickDetail(int state, bool disabled, int last, bool allowed)
{
    return QByteArray::number(state) + ' ' + QByteArray::number(disabled) + ' ' + QByteArray::number(last) + ' '
        + QByteArray::number(allowed);
}

void checkTick(const Tick &tick, int state, bool disabled, int last, bool allowed)
{
    const QByteArray detail = tickDetail(state, disabled, last, allowed);
    const bool online = state == Connected && !disabled;
    const bool errorEdge = state == PasswordError && !disabled && last != PasswordError;
    FUZZ_CHECK((tick.action == ShowOnline) == online, detail);
    FUZZ_CHECK((tick.action == PromptPassword) == (errorEdge && allowed), detail);
    FUZZ_CHECK((tick.action == PromptSuppressed) == (errorEdge && !allowed), detail);
    FUZZ_CHECK(tick.scrollToTop == (online && last != Connected), detail);
    FUZZ_CHECK(tick.lastState == (online ? Connected : errorEdge ? PasswordError : state), detail);
    const char *source = statusSource(tick.action);
    FUZZ_CHECK(source && std::strcmp(source, online ? "Online" : "Disabled") == 0, detail);
}

// A run of ticks with the edge memory carried along, as the page does: a
// lasting state 4 prompts once, and only entering state 2 scrolls.
void checkRun(FuzzedDataProvider &input)
{
    int last = input.ConsumeIntegral<int>();
    int previousState = last;
    bool previousDisabled = true;
    const int ticks = input.ConsumeIntegralInRange<int>(1, MaxTicks);
    for (int i = 0; i < ticks && input.remaining_bytes() > 0; ++i) {
        const int state = input.ConsumeBool() ? input.ConsumeIntegral<int>() : input.ConsumeIntegralInRange<int>(0, 5);
        const bool disabled = input.ConsumeIntegralInRange<int>(0, 7) == 0;
        const bool allowed = input.ConsumeBool();
        const Tick tick = decide(state, disabled, last, allowed);
        checkTick(tick, state, disabled, last, allowed);
        if (i > 0 && state == previousState && !previousDisabled && !disabled) {
            FUZZ_CHECK(tick.action != PromptPassword && tick.action != PromptSuppressed, tickDetail(state, disabled, last, allowed));
            FUZZ_CHECK(!tick.scrollToTop, tickDetail(state, disabled, last, allowed));
        }
        last = tick.lastState;
        previousState = state;
        previousDisabled = disabled;
    }
}

void checkMac(const QByteArray &raw, const QString &previous)
{
    const QString shown = macText(raw, previous);
    QByteArray digits = raw.left(MacDigits);
    if (digits.contains('\0'))
        digits.truncate(digits.indexOf('\0'));
    if (digits.isEmpty()) {
        FUZZ_CHECK(shown == (previous.isEmpty() ? QStringLiteral("00:00:00:00:00:00") : previous), raw);
        return;
    }
    // Pairs of the register's characters with a colon between pairs.
    const int n = digits.size();
    FUZZ_CHECK(shown.size() == n + (n + 1) / 2 - 1 && shown.size() <= MacTextSize, raw);
    int next = 0;
    for (int i = 0; i < shown.size(); ++i) {
        if (i % 3 == 2)
            FUZZ_CHECK(shown.at(i) == QLatin1Char(':'), raw);
        else
            FUZZ_CHECK(shown.at(i) == QChar(uchar(digits.at(next++))), raw);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const std::string raw = input.ConsumeRandomLengthString(MaxRegisterBytes);
    const std::string before = input.ConsumeRandomLengthString(MaxRegisterBytes);
    checkMac(QByteArray(raw.data(), int(raw.size())), QString::fromLatin1(before.data(), int(before.size())));
    checkRun(input);
    return 0;
}
