#ifndef WLANREGISTERS_H
#define WLANREGISTERS_H

#include <QByteArray>
#include <QtGlobal>

// The host application's WLAN registers as the page reads and writes them.
// The register layer always moves the table's length, so texts go through
// zeroed buffers of that length and are read back only up to their NUL.
namespace WlanRegisters {

// Bytes the register table stores for `index`; 0 past the table or for a
// bit register, which holds no text.
int storedLength(unsigned index);

quint8 byte(unsigned index);
void writeByte(unsigned index, quint8 value);

// `bytes` cut or padded with zeros to the stored length, written and
// announced. Nothing for a register that holds no text.
void writeText(unsigned index, const QByteArray &bytes);
// The register's text up to its first NUL.
QByteArray text(unsigned index);

} // namespace WlanRegisters

#endif // WLANREGISTERS_H
