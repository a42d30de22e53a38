// The VPN registers (state, region) and the language register are the host
// application's 32-bit values: only the three known states have a text, an
// unknown region shows the Chinese servers, and only the low byte of the
// language register counts.
#include "fuzzsupport.h"
#include "vpnstatus.h"

#include <fuzzer/FuzzedDataProvider.h>

namespace {

using namespace VpnStatus;

QString expectedText(unsigned state, bool chinese)
{
    switch (state) {
    case NotConnected:
        return chinese ? QStringLiteral("网络还没通") : QStringLiteral("internet not connected");
    case Preparing:
        return chinese ? QStringLiteral("准备连接") : QStringLiteral("Prepare to connect");
    case Connected:
        return chinese ? QStringLiteral("VPN连接成功") : QStringLiteral("VPN connection ok");
    default:
        return QString();
    }
}

unsigned consumeRegister(FuzzedDataProvider &input)
{
    return input.ConsumeBool() ? input.ConsumeIntegral<unsigned>() : input.ConsumeIntegralInRange<unsigned>(0, 6);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider input(data, size);
    while (input.remaining_bytes() > 0) {
        const unsigned language = consumeRegister(input);
        const unsigned state = consumeRegister(input);
        const unsigned region = consumeRegister(input);
        const QByteArray detail = QByteArray::number(language) + ' ' + QByteArray::number(state) + ' '
            + QByteArray::number(region);

        const bool chinese = chineseLanguage(language);
        FUZZ_CHECK(chinese == ((language & 0xffu) == 0), detail);
        FUZZ_CHECK(statusText(state, chinese) == expectedText(state, chinese), detail);

        const int row = regionIndex(region);
        FUZZ_CHECK(row == (region == unsigned(EuropeanServers) ? 1 : 0), detail);
        const QStringList servers = serverNames(chinese);
        FUZZ_CHECK(servers.size() == 2 && row < servers.size(), detail);
    }
    return 0;
}
