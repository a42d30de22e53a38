#ifndef NETWORKADDRESS_H
#define NETWORKADDRESS_H

#include <QString>
#include <QStringList>
#include <QtGlobal>

// IPv4 values as the device record and the registers hold them: 32 bits
// with the first dotted octet in the lowest byte (a.b.c.d is
// a | b<<8 | c<<16 | d<<24).
namespace NetworkAddress {

// Four decimal octet texts, first dotted octet first, to the stored value.
// Missing or unreadable octets count as 0; each is kept to its low byte.
quint32 fromOctets(const QStringList &octets);
// "a.b.c.d" to the stored value, as fromOctets of its four parts.
quint32 fromDotted(const QString &dotted);

// The stored value to its four decimal octet texts, first octet first.
QStringList toOctets(quint32 value);

// "%1.%2.%3.%4" of four octet texts as they stand (not validated).
QString dotted(const QStringList &octets);

// What a DHCP lease puts into the record: the leased address and mask, and
// as gateway host 1 of the address's /24, whatever the mask says.
struct Lease
{
    quint32 address = 0;
    quint32 mask = 0;
    quint32 gateway = 0;
};
Lease leaseValues(const QString &address, const QString &mask);

// Two addresses given as octet texts conflict when all four octets are the
// same text; masks and subnets are not compared.
bool isConflictIp(const QString &a1, const QString &a2, const QString &a3, const QString &a4,
                  const QString &b1, const QString &b2, const QString &b3, const QString &b4);

} // namespace NetworkAddress

#endif // NETWORKADDRESS_H
