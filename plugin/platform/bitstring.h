#ifndef BITSTRING_H
#define BITSTRING_H

// Bit registers live at arbitrary bit positions of the host's bit files.
// These helpers treat a run of bytes as one little-endian bit string: bit k
// is bit (k mod 8) of byte (k div 8).
namespace BitString {

// Bytes touched by `length` bits starting at bit `offset`, counted from the
// byte that holds bit `offset`: (length + 7 + offset mod 8) div 8.
unsigned coveringBytes(unsigned offset, unsigned length);

// Moves the string down by `shift` bits (0..7), working from the last byte
// to the first, so the bit that stood at `shift` ends in bit 0 of byte 0.
// The top `shift` bits of the last byte become 0.
void shiftRight(unsigned char *bytes, unsigned count, unsigned shift);

// Sets bits destBit .. destBit+length-1 of `dest` to bits 0 .. length-1 of
// `source`; every other bit of `dest` keeps its value.
void placeBits(unsigned char *dest, unsigned destBit,
               const unsigned char *source, unsigned length);

} // namespace BitString

#endif // BITSTRING_H
