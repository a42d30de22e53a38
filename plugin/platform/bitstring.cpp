#include "bitstring.h"

namespace BitString {

unsigned coveringBytes(unsigned offset, unsigned length)
{
    return (length + 7 + offset % 8) / 8;
}

void shiftRight(unsigned char *bytes, unsigned count, unsigned shift)
{
    if (!bytes || shift == 0 || shift > 7)
        return;
    unsigned char carry = 0;
    for (unsigned i = count; i-- > 0;) {
        const unsigned char old = bytes[i];
        bytes[i] = static_cast<unsigned char>(carry | (old >> shift));
        carry = static_cast<unsigned char>(old << (8 - shift));
    }
}

void placeBits(unsigned char *dest, unsigned destBit,
               const unsigned char *source, unsigned length)
{
    if (!dest || !source)
        return;
    for (unsigned i = 0; i < length; ++i) {
        const bool on = (source[i / 8] >> (i % 8)) & 1;
        const unsigned bit = destBit + i;
        const unsigned char mask = static_cast<unsigned char>(1u << (bit % 8));
        if (on)
            dest[bit / 8] |= mask;
        else
            dest[bit / 8] &= static_cast<unsigned char>(~mask);
    }
}

} // namespace BitString
