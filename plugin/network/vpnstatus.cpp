#include "vpnstatus.h"

namespace VpnStatus {

namespace {

struct Text
{
    unsigned state;
    const char *english;
    const char *chinese;
};

const Text Texts[] = {
    {NotConnected, "internet not connected", "网络还没通"},
    {Preparing, "Prepare to connect", "准备连接"},
    {Connected, "VPN connection ok", "VPN连接成功"},
};

} // namespace

bool chineseLanguage(unsigned languageByte)
{
    return (languageByte & 0xffu) == 0;
}

QString statusText(unsigned state, bool chinese)
{
    for (const Text &text : Texts) {
        if (text.state == state)
            return chinese ? QString::fromUtf8(text.chinese) : QString::fromLatin1(text.english);
    }
    return QString();
}

QStringList serverNames(bool chinese)
{
    if (chinese)
        return {QStringLiteral("中国服务器"), QStringLiteral("欧洲服务器")};
    return {QStringLiteral("Chinese servers"), QStringLiteral("European servers")};
}

int regionIndex(unsigned value)
{
    return value > unsigned(EuropeanServers) ? int(ChineseServers) : int(value);
}

} // namespace VpnStatus
