#ifndef ADDRESSREGISTER_H
#define ADDRESSREGISTER_H

#include <QString>

// The host application keeps the addresses of its own links (WLAN, VPN) in
// 8-byte registers: four unsigned 16-bit values, first octet first. A
// register of any other size is left alone and reads as "0.0.0.0".
namespace AddressRegister {

constexpr unsigned Size = 8;

// "a.b.c.d" from the register's four values, each as stored.
QString read(unsigned index);
// The four dot-separated numbers of `dotted`; a part that is missing or no
// 16-bit number is stored as 0. Written and announced to the host.
void write(unsigned index, const QString &dotted);
// Eight zero bytes, announced.
void clear(unsigned index);

// The pure halves of read() and write().
QString dotted(const unsigned char bytes[Size]);
void pack(const QString &dotted, unsigned char bytes[Size]);

} // namespace AddressRegister

#endif // ADDRESSREGISTER_H
