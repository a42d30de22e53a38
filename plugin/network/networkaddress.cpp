#include "networkaddress.h"

namespace NetworkAddress {

quint32 fromOctets(const QStringList &octets)
{
    quint32 value = 0;
    for (int i = 0; i < 4 && i < octets.size(); ++i)
        value |= (octets.at(i).toUInt() & 0xffu) << (8 * i);
    return value;
}

quint32 fromDotted(const QString &dotted)
{
    return fromOctets(dotted.split(QLatin1Char('.')));
}

QStringList toOctets(quint32 value)
{
    QStringList octets;
    for (int i = 0; i < 4; ++i)
        octets << QString::number((value >> (8 * i)) & 0xffu);
    return octets;
}

QString dotted(const QStringList &octets)
{
    return QStringLiteral("%1.%2.%3.%4")
        .arg(octets.value(0), octets.value(1), octets.value(2), octets.value(3));
}

Lease leaseValues(const QString &address, const QString &mask)
{
    Lease lease;
    lease.address = fromDotted(address);
    lease.mask = fromDotted(mask);
    // The DHCP server's router option is not used: the panel's networks put
    // their gateway at host 1 of the /24.
    lease.gateway = (lease.address & 0x00ffffffu) | (1u << 24);
    return lease;
}

bool isConflictIp(const QString &a1, const QString &a2, const QString &a3, const QString &a4,
                  const QString &b1, const QString &b2, const QString &b3, const QString &b4)
{
    return a1 == b1 && a2 == b2 && a3 == b3 && a4 == b4;
}

} // namespace NetworkAddress
