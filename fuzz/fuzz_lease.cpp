// A DHCP lease reaches the record as texts from the interface table. For a
// well-formed address and mask the stored values are what QHostAddress
// makes of them with the first octet in the lowest byte, the gateway is
// host 1 of the address's /24 whatever the mask, and any text, however
// broken, gives zero for each octet that is missing or not a number.
#include "fuzzsupport.h"
#include "networkaddress.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <QHostAddress>
#include <QtEndian>

namespace {

QByteArray show(const QString &a, const QString &b)
{
    return a.toLatin1() + " | " + b.toLatin1();
}

// The record's byte order from QHostAddress's host order, or nothing when
// the text is not the canonical dotted form QHostAddress itself prints.
bool canonical(const QString &text, quint32 *value)
{
    const QHostAddress address(text);
    if (address.protocol() != QAbstractSocket::IPv4Protocol || address.toString() != text)
        return false;
    *value = qbswap(address.toIPv4Address());
    return true;
}

enum class Octet { Number, Zero, Unsure };

// What an octet text must give when read on its own: plain ASCII digits
// are a number, anything with a character no decimal reader could take is
// zero, and blanks or signs are left to the reader.
Octet classify(const QString &part, quint32 *value)
{
    if (part.isEmpty())
        return Octet::Zero;
    bool digits = true;
    bool odd = false;
    for (const QChar c : part) {
        if (c >= QLatin1Char('0') && c <= QLatin1Char('9'))
            continue;
        digits = false;
        if (c.isSpace() || c == QLatin1Char('+') || c == QLatin1Char('-'))
            odd = true;
        else
            return Octet::Zero;
    }
    if (odd || !digits || part.size() > 9)
        return Octet::Unsure;
    quint32 number = 0;
    for (const QChar c : part)
        number = number * 10 + quint32(c.unicode() - '0');
    *value = number & 0xffu;
    return Octet::Number;
}

void checkLoose(const QString &text, quint32 stored)
{
    const QStringList parts = text.split(QLatin1Char('.'));
    for (int i = 0; i < 4; ++i) {
        const quint32 byte = (stored >> (8 * i)) & 0xffu;
        if (i >= parts.size()) {
            FUZZ_CHECK(byte == 0, text.toLatin1());
            continue;
        }
        quint32 expected = 0;
        switch (classify(parts.at(i), &expected)) {
        case Octet::Number: FUZZ_CHECK(byte == expected, text.toLatin1()); break;
        case Octet::Zero: FUZZ_CHECK(byte == 0, text.toLatin1()); break;
        case Octet::Unsure: break;
        }
    }
    // Parts past the fourth are not read.
    if (parts.size() > 4)
        FUZZ_CHECK(NetworkAddress::fromDotted(QStringList(parts.mid(0, 4)).join(QLatin1Char('.'))) == stored,
                   text.toLatin1());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const std::string a = input.ConsumeRandomLengthString(48);
    const std::string m = input.ConsumeRandomLengthString(48);
    const QString address = QString::fromLatin1(a.data(), int(a.size()));
    const QString mask = QString::fromLatin1(m.data(), int(m.size()));

    const NetworkAddress::Lease lease = NetworkAddress::leaseValues(address, mask);
    FUZZ_CHECK(lease.address == NetworkAddress::fromDotted(address), show(address, mask));
    FUZZ_CHECK(lease.mask == NetworkAddress::fromDotted(mask), show(address, mask));
    FUZZ_CHECK((lease.gateway & 0x00ffffffu) == (lease.address & 0x00ffffffu)
                   && lease.gateway >> 24 == 1, show(address, mask));

    quint32 expected = 0;
    if (canonical(address, &expected)) {
        FUZZ_CHECK(lease.address == expected, show(address, mask));
        const QStringList octets = address.split(QLatin1Char('.'));
        const QHostAddress gateway(QStringList(octets.mid(0, 3)).join(QLatin1Char('.')) + QStringLiteral(".1"));
        FUZZ_CHECK(lease.gateway == qbswap(gateway.toIPv4Address()), show(address, mask));
    }
    if (canonical(mask, &expected))
        FUZZ_CHECK(lease.mask == expected, show(address, mask));
    checkLoose(address, lease.address);
    checkLoose(mask, lease.mask);

    // Stored values print back as the address QHostAddress reads from them.
    for (const quint32 value : {lease.address, lease.mask, lease.gateway}) {
        const QStringList octets = NetworkAddress::toOctets(value);
        FUZZ_CHECK(octets.size() == 4, show(address, mask));
        const QString text = NetworkAddress::dotted(octets);
        FUZZ_CHECK(text == QHostAddress(qbswap(value)).toString(), text.toLatin1());
        FUZZ_CHECK(NetworkAddress::fromOctets(octets) == value && NetworkAddress::fromDotted(text) == value,
                   text.toLatin1());
    }

    // The conflict rule is textual equality of all four octets.
    const QStringList x = address.split(QLatin1Char('.'));
    const QStringList y = mask.split(QLatin1Char('.'));
    const bool conflict = NetworkAddress::isConflictIp(x.value(0), x.value(1), x.value(2), x.value(3),
                                                       y.value(0), y.value(1), y.value(2), y.value(3));
    bool same = true;
    for (int i = 0; i < 4; ++i)
        same = same && x.value(i) == y.value(i);
    FUZZ_CHECK(conflict == same, show(address, mask));
    return 0;
}
