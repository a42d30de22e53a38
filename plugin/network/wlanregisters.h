#ifndef WLANREGISTERS_H
#define WLANREGISTERS_H

#include <QByteArray>
#include <QString>
#include <QtGlobal>

// The host application's WLAN registers as the page reads and writes them.
// The register layer always moves the table's length, so texts go through
// zeroed buffers of that size and are read back only up to their NUL.
namespace WlanRegisters {

constexpr int SsidSize = 32;        // register 103
constexpr int PasswordSize = 63;    // register 104
constexpr int MacSize = 12;         // register 107

quint8 byte(unsigned index);
void writeByte(unsigned index, quint8 value);

// `text` cut at `length` bytes (and at the register's size), written and
// announced.
void writeText(unsigned index, const QByteArray &text, int length, int registerSize);
// The register's text up to its first NUL; never more than registerSize.
QByteArray text(unsigned index, int registerSize);

} // namespace WlanRegisters

#endif // WLANREGISTERS_H
