#include "wlanconnectrequest.h"

#include "sysreg.h"
#include "wlanregisters.h"

#include <QtGlobal>

#include <cstring>

namespace {

constexpr quint8 ConnectRequested = 1;
constexpr quint8 StateReset = 0;

void writeText(unsigned index, const QString &text)
{
    WlanRegisters::writeText(index, WlanConnectRequest::registerText(text, WlanRegisters::storedLength(index)));
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
    WlanRegisters::writeByte(SysRegIdx::WlanConnectRequest, ConnectRequested);
    WlanRegisters::writeByte(SysRegIdx::WlanState, StateReset);
}

} // namespace WlanConnectRequest
