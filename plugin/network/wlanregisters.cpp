#include "wlanregisters.h"

#include "localreg.h"
#include "sysreg.h"

namespace {

// More than any text register of the table holds; an odd table row cannot
// make a buffer grow past it.
constexpr quint32 LongestTextRegister = 255;

} // namespace

namespace WlanRegisters {

int storedLength(unsigned index)
{
    const RegBase *reg = SysReg_LoadReg(index);
    if (!reg || LocalReg::isBitArea(reg->area))
        return 0;
    return int(qMin(reg->length, LongestTextRegister));
}

quint8 byte(unsigned index)
{
    return quint8(SysReg_ReadValue(index) & 0xffu);
}

void writeByte(unsigned index, quint8 value)
{
    SysReg_WriteNotify(index, &value, 1);
}

void writeText(unsigned index, const QByteArray &bytes)
{
    const int length = storedLength(index);
    if (length == 0)
        return;
    QByteArray buffer = bytes.left(length);
    buffer.append(QByteArray(length - buffer.size(), '\0'));
    SysReg_WriteNotify(index, buffer.constData(), unsigned(length));
}

QByteArray text(unsigned index)
{
    const int length = storedLength(index);
    if (length == 0)
        return QByteArray();
    QByteArray buffer(length + 1, '\0');
    SysReg_Read(index, buffer.data());
    return QByteArray(buffer.constData());
}

} // namespace WlanRegisters
