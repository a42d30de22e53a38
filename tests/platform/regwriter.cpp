// Plays the host application against the register files of a test panel:
// rewrites the eth0 address register (8 bytes of the system word file) and
// a run of retained bits, many times, under the same record locks the host
// uses. Each value goes out in several write() calls while the lock is
// held, so a reader that did not honour the lock would see mixed bytes.
//
// usage: regwriter <panel root> <iterations>
//
// Contention mode, for one register of any width, until standard input
// ends (then it prints its counts and exits 0; 1 at the first wrong
// observation):
//   regwriter words <file> <offset> <length>
//     writes 0x33.. and 0x44.. over the whole register in pieces under the
//     lock and reads it back before unlocking: anything but its own value
//     means another writer got in. Every locked read must see one whole
//     value: 0x11.., 0x22.. (the other side's) or its own.
//   regwriter bits <file> <bit>
//     owns every bit of the bytes around <bit> but <bit> itself: flips them
//     all together under the lock, byte by byte, and checks before each
//     flip that they are still what it last wrote and, after it, that
//     <bit> did not change while it held the lock.

#include "regcontention.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <string>
#include <unistd.h>

namespace {

const off_t AddressOffset = 751;        // register 60 in /tmp/smw.dat
const int AddressLength = 8;
const off_t BitBytesOffset = 1;         // bits 8..31 of /hmi_data/sfb.dat
const int BitBytesLength = 3;

bool lockedAt(int fd, off_t offset, int length, int command)
{
    return lseek(fd, offset, SEEK_SET) == offset && lockf(fd, command, length) == 0;
}

bool writePieces(int fd, const unsigned char *bytes, int length, int piece)
{
    for (int done = 0; done < length; done += piece) {
        const int count = length - done < piece ? length - done : piece;
        if (write(fd, bytes + done, size_t(count)) != count)
            return false;
        sched_yield();  // widen the window a careless reader could hit
    }
    return true;
}

bool rewriteAddress(int fd, unsigned char pattern)
{
    unsigned char bytes[AddressLength];
    memset(bytes, pattern, sizeof(bytes));
    if (!lockedAt(fd, AddressOffset, AddressLength, F_LOCK))
        return false;
    const bool ok = writePieces(fd, bytes, AddressLength, 4);
    return lockedAt(fd, AddressOffset, AddressLength, F_ULOCK) && ok;
}

// Read-modify-write of whole bytes, like the host does for bit registers.
bool rewriteBits(int fd, bool on)
{
    unsigned char bytes[BitBytesLength];
    if (!lockedAt(fd, BitBytesOffset, BitBytesLength, F_LOCK))
        return false;
    bool ok = read(fd, bytes, sizeof(bytes)) == BitBytesLength;
    memset(bytes, on ? 0xff : 0x00, sizeof(bytes));
    ok = ok && lseek(fd, BitBytesOffset, SEEK_SET) == BitBytesOffset
        && writePieces(fd, bytes, BitBytesLength, 1);
    return lockedAt(fd, BitBytesOffset, BitBytesLength, F_ULOCK) && ok;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc >= 2 && (strcmp(argv[1], "words") == 0 || strcmp(argv[1], "bits") == 0))
        return contend(argc, argv);
    if (argc != 3) {
        fprintf(stderr, "usage: regwriter <panel root> <iterations>\n");
        return 2;
    }
    const std::string root = argv[1];
    const long iterations = strtol(argv[2], nullptr, 10);
    const int words = open((root + "/tmp/smw.dat").c_str(), O_WRONLY);
    const int bits = open((root + "/hmi_data/sfb.dat").c_str(), O_RDWR);
    if (words < 0 || bits < 0) {
        perror("regwriter open");
        return 1;
    }
    for (long i = 0; i < iterations; ++i) {
        const bool odd = i % 2 != 0;
        if (!rewriteAddress(words, odd ? 0x22 : 0x11) || !rewriteBits(bits, odd)) {
            perror("regwriter write");
            return 1;
        }
        sched_yield();
    }
    close(words);
    close(bits);
    return 0;
}
