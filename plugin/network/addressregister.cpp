#include "addressregister.h"

#include "sysreg.h"

#include <QStringList>

QString AddressRegister::dotted(const unsigned char bytes[Size])
{
    QStringList parts;
    for (unsigned i = 0; i < Size; i += 2)
        parts << QString::number(unsigned(bytes[i]) | unsigned(bytes[i + 1]) << 8);
    return parts.join(QLatin1Char('.'));
}

void AddressRegister::pack(const QString &text, unsigned char bytes[Size])
{
    const QStringList parts = text.split(QLatin1Char('.'));
    for (unsigned i = 0; i < Size / 2; ++i) {
        bool ok = false;
        const ushort value = parts.value(int(i)).toUShort(&ok);
        bytes[2 * i] = ok ? value & 0xffu : 0;
        bytes[2 * i + 1] = ok ? value >> 8 : 0;
    }
}

namespace {

// The register moves as many bytes as its table row says, whatever buffer
// it is given: only a register of exactly an address's size may be used.
bool holdsAnAddress(unsigned index)
{
    return index < SysReg::RegCount && SysReg::table()[index].length == AddressRegister::Size;
}

} // namespace

QString AddressRegister::read(unsigned index)
{
    unsigned char bytes[Size] = {};
    if (holdsAnAddress(index))
        SysReg_Read(index, bytes);
    return dotted(bytes);
}

void AddressRegister::write(unsigned index, const QString &text)
{
    if (!holdsAnAddress(index))
        return;
    unsigned char bytes[Size] = {};
    pack(text, bytes);
    SysReg_WriteNotify(index, bytes, Size);
}

void AddressRegister::clear(unsigned index)
{
    if (!holdsAnAddress(index))
        return;
    const unsigned char bytes[Size] = {};
    SysReg_WriteNotify(index, bytes, Size);
}
