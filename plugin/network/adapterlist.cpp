#include "adapterlist.h"

namespace {

struct Entry
{
    const char *english;
    const char *chinese;
    int index;                  // -1: the link row
    const char *interfaceName;
};

const Entry WiredEntries[] = {
    {"wired network0", "有线网络0", AdapterList::Wired0Row, "eth0"},
    {"wired network1", "有线网络1", AdapterList::Wired1Row, "eth1"},
    {"Auto", "自动", AdapterList::AutoRow, ""},
};

const Entry WlanEntry = {"wireless network", "无线网络", -1, "wlan0"};
const Entry MobileEntry = {"4G network", "4G网络", -1, "ppp0"};

bool names(const Entry &entry, const QString &text)
{
    return text == QLatin1String(entry.english) || text == QString::fromUtf8(entry.chinese);
}

} // namespace

int AdapterList::linkRow(bool secondPort)
{
    return secondPort ? 3 : 2;
}

AdapterList::Choice AdapterList::choice(const QString &text, Link link, bool secondPort)
{
    Choice result;
    const Entry &own = link == Wlan ? WlanEntry : MobileEntry;
    if (names(own, text)) {
        result.index = linkRow(secondPort);
        result.interfaceName = QLatin1String(own.interfaceName);
        return result;
    }
    for (const Entry &entry : WiredEntries) {
        if (names(entry, text)) {
            result.index = entry.index;
            result.interfaceName = QLatin1String(entry.interfaceName);
            break;
        }
    }
    return result;
}
