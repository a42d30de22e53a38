#ifndef LOCALREG_H
#define LOCALREG_H

// Access to the host application's nine register files ("areas"). Odd areas
// are word files addressed in bytes, even areas bit files addressed in bits.
// Every access locks exactly the bytes it touches, with locks that exclude
// the host's lockf() locks, from another process or from the one the
// plug-in is loaded into. The files stay open between accesses: closing one
// would drop the host's locks on it (see RegisterFiles).

// Areas, the first argument of ReadLocal and WriteLocal.
namespace LocalArea {
enum : unsigned {
    Mw = 1,     // "/tmp/mw.dat", words
    Mb = 2,     // "/tmp/mb.dat", bits
    Fw = 3,     // "/hmi_data/fw.dat", words, synchronous
    Fb = 4,     // "/hmi_data/fb.dat", bits, synchronous
    Smw = 5,    // "/tmp/smw.dat", system words
    Smb = 6,    // "/tmp/smb.dat", system bits
    Sfw = 7,    // "/hmi_data/sfw.dat", retained system words, synchronous
    Sfb = 8,    // "/hmi_data/sfb.dat", retained system bits, synchronous
    Rw = 9,     // "/hmi_data/rw.dat", words, deliberately not synchronous
    First = Mw,
    Last = Rw,
};
}

namespace LocalReg {
constexpr int Ok = 0;
constexpr int Failed = 15;          // bad argument, missing file, short I/O
constexpr int NotifyFailed = 3;     // stored, but the host was not told
// Largest access in bytes (words) or bits (bits); the files are a few KiB.
constexpr unsigned MaxLength = 1u << 20;

// Panel path of an area's file, or null for an unknown area.
const char *areaPath(unsigned area);
bool isBitArea(unsigned area);
}

// Reads `length` bytes (word area) or bits (bit area) at `offset`. A bit
// read lands shifted so that the first bit asked for is bit 0 of buf[0];
// buf must hold (length + 7) / 8 bytes, and bits past `length` in the last
// byte are the file's following bits, not zeros. 0 or 15.
int ReadLocal(unsigned area, unsigned offset, unsigned length,
              unsigned char *buf, const char *unused = nullptr);

// Writes `length` bytes or bits from buf; bit writes keep the neighbouring
// bits of the file. 0 or 15.
int WriteLocal(unsigned area, unsigned offset, unsigned length,
               const unsigned char *buf, const char *unused = nullptr);

// WriteLocal, then tells the host through "/tmp/fifo_localreg". WriteLocal's
// error, 3 when the FIFO message failed, 0 otherwise.
int WriteLocal_Notify(unsigned area, unsigned offset, unsigned length,
                      const unsigned char *buf, const char *unused = nullptr);

#endif // LOCALREG_H
