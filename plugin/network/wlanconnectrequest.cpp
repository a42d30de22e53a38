#include "wlanconnectrequest.h"

#include "localreg.h"
#include "sysreg.h"

#include <QtGlobal>

#include <cstring>

namespace {

// More than any text register of the table holds; an odd table row cannot
// make the buffer grow past it.
constexpr int LongestTextRegister = 255;

constexpr quint8 ConnectRequested = 1;
constexpr quint8 StateReset = 0;

// The register stores its table length from whatever buffer it is handed,
// so the buffer must have that length.
int storedLength(unsigned index)
{
    const RegBase *reg = SysReg_LoadReg(index);
    if (!reg || LocalReg::isBitArea(reg->area))
        return 0;
    return int(qMin<quint32>(reg->length, LongestTextRegister));
}

void writeText(unsigned index, const QString &text)
{
    const QByteArray bytes = WlanConnectRequest::registerText(text, storedLength(index));
    if (!bytes.isEmpty())
        SysReg_WriteNotify(index, bytes.constData(), unsigned(text.size()));
}

void writeByte(unsigned index, quint8 value)
{
    SysReg_WriteNotify(index, &value, sizeof value);
}

} // namespace

namespace WlanConnectRequest {

QByteArray registerText(const QString &text, int registerLength)
{
    QByteArray stored(qMax(registerLength, 0), '\0');
    const QByteArray local = text.toLocal8Bit().left(text.size());
    std::memcpy(stored.data(), local.constData(), size_t(qMin(local.size(), stored.size())));
    return stored;
}

void send(const QString &ssid, const QString &password)
{
    writeText(SysRegIdx::WlanSsid, ssid);
    writeText(SysRegIdx::WlanPassphrase, password);
    writeByte(SysRegIdx::WlanConnectRequest, ConnectRequested);
    writeByte(SysRegIdx::WlanState, StateReset);
}

} // namespace WlanConnectRequest
