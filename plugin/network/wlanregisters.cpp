#include "wlanregisters.h"

#include "sysreg.h"

#include <algorithm>

namespace WlanRegisters {

quint8 byte(unsigned index)
{
    // Wider than a byte on purpose: a bit register is read into its first.
    quint8 value[4] = {};
    SysReg_Read(index, value);
    return value[0];
}

void writeByte(unsigned index, quint8 value)
{
    SysReg_WriteNotify(index, &value, 1);
}

void writeText(unsigned index, const QByteArray &text, int length, int registerSize)
{
    QByteArray buffer(registerSize + 1, '\0');
    const QByteArray cut = text.left(qBound(0, length, registerSize));
    std::copy(cut.cbegin(), cut.cend(), buffer.begin());
    SysReg_WriteNotify(index, buffer.constData(), unsigned(registerSize));
}

QByteArray text(unsigned index, int registerSize)
{
    QByteArray buffer(registerSize + 1, '\0');
    SysReg_Read(index, buffer.data());
    return QByteArray(buffer.constData());
}

} // namespace WlanRegisters
