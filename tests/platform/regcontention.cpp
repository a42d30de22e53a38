// The host's side of a register shared with the plug-in, hammered until the
// test says stop. Plain system calls only: this plays the
// host application and must not share a line with the register code it
// checks.
#include "regcontention.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <initializer_list>
#include <poll.h>
#include <sched.h>
#include <unistd.h>

namespace {

constexpr unsigned char OtherFirst = 0x11;     // the test's whole values
constexpr unsigned char OtherSecond = 0x22;
constexpr unsigned char OwnFirst = 0x33;       // ours
constexpr unsigned char OwnSecond = 0x44;
constexpr int MaxBytes = 4096;
// How often standard input is looked at.
constexpr long PollEvery = 64;

bool inputEnded(void *)
{
    pollfd input = {STDIN_FILENO, POLLIN, 0};
    if (poll(&input, 1, 0) <= 0)
        return false;
    char byte;
    return read(STDIN_FILENO, &byte, 1) <= 0;
}

bool locked(int fd, off_t offset, int length, int command)
{
    return lseek(fd, offset, SEEK_SET) == offset && lockf(fd, command, length) == 0;
}

bool readAt(int fd, off_t offset, unsigned char *bytes, int length)
{
    return lseek(fd, offset, SEEK_SET) == offset && read(fd, bytes, size_t(length)) == length;
}

// Several write() calls with a yield between them, so that a reader or
// writer that ignored the lock would land in the middle.
bool writeInPieces(int fd, off_t offset, const unsigned char *bytes, int length, int piece)
{
    if (lseek(fd, offset, SEEK_SET) != offset)
        return false;
    for (int done = 0; done < length; done += piece) {
        const int count = length - done < piece ? length - done : piece;
        if (write(fd, bytes + done, size_t(count)) != count)
            return false;
        sched_yield();
    }
    return true;
}

bool uniform(const unsigned char *bytes, int length, unsigned char value)
{
    for (int i = 0; i < length; ++i) {
        if (bytes[i] != value)
            return false;
    }
    return true;
}

bool whole(const unsigned char *bytes, int length)
{
    for (unsigned char value : {OtherFirst, OtherSecond, OwnFirst, OwnSecond}) {
        if (uniform(bytes, length, value))
            return true;
    }
    return false;
}

void dump(const char *what, const unsigned char *bytes, int length)
{
    fprintf(stderr, "regwriter: %s:", what);
    for (int i = 0; i < length && i < 32; ++i)
        fprintf(stderr, " %02x", bytes[i]);
    fprintf(stderr, "%s\n", length > 32 ? " ..." : "");
}

} // namespace

int contendWords(int fd, long offset, int length, ContentionStop stop, void *context,
                 ContentionCounts *counts)
{
    unsigned char bytes[MaxBytes];
    unsigned char mine[MaxBytes];
    const int piece = length > 3 ? (length + 2) / 3 : 1;
    for (long i = 0;; ++i) {
        if (i % PollEvery == 0 && stop(context))
            return 0;
        const unsigned char own = i % 2 ? OwnSecond : OwnFirst;
        memset(mine, own, size_t(length));
        if (!locked(fd, offset, length, F_LOCK))
            return 1;
        bool ok = writeInPieces(fd, offset, mine, length, piece) && readAt(fd, offset, bytes, length);
        const bool kept = ok && uniform(bytes, length, own);
        ok = locked(fd, offset, length, F_ULOCK) && ok;
        if (!ok)
            return 1;
        if (!kept) {
            dump("another write got into ours", bytes, length);
            return 1;
        }
        ++counts->writes;

        if (!locked(fd, offset, length, F_LOCK))
            return 1;
        ok = readAt(fd, offset, bytes, length);
        ok = locked(fd, offset, length, F_ULOCK) && ok;
        if (!ok)
            return 1;
        if (!whole(bytes, length)) {
            dump("torn value", bytes, length);
            return 1;
        }
        ++counts->checks;
    }
}

namespace {

// Our bits of the bytes [first, first + count): all but `bit`.
bool neighboursAre(const unsigned char *bytes, int first, int count, long bit, bool on)
{
    for (int i = 0; i < count; ++i) {
        unsigned char mask = 0xff;
        if ((first + i) == bit / 8)
            mask = static_cast<unsigned char>(~(1u << (bit % 8)));
        if ((bytes[i] & mask) != (on ? mask : 0))
            return false;
    }
    return true;
}

void setNeighbours(unsigned char *bytes, int first, int count, long bit, bool on)
{
    for (int i = 0; i < count; ++i) {
        const unsigned char keep = (first + i) == bit / 8 ? static_cast<unsigned char>(1u << (bit % 8)) : 0;
        bytes[i] = static_cast<unsigned char>((bytes[i] & keep) | (on ? ~keep & 0xff : 0));
    }
}

} // namespace

int contendBits(int fd, long bit, ContentionStop stop, void *context, ContentionCounts *counts)
{
    const int first = bit / 8 > 0 ? int(bit / 8) - 1 : 0;
    const int count = int(bit / 8) + 2 - first;
    const unsigned char theirs = static_cast<unsigned char>(1u << (bit % 8));
    const int at = int(bit / 8) - first;
    bool on = false;
    for (long i = 0;; ++i) {
        if (i % PollEvery == 0 && stop(context))
            return 0;
        unsigned char bytes[3];
        if (!locked(fd, first, count, F_LOCK) || !readAt(fd, first, bytes, count))
            return 1;
        const unsigned char before = bytes[at] & theirs;
        if (i > 0 && !neighboursAre(bytes, first, count, bit, on)) {
            dump("bits of ours changed under us", bytes, count);
            return 1;
        }
        on = !on;
        setNeighbours(bytes, first, count, bit, on);
        bool ok = writeInPieces(fd, first, bytes, count, 1) && readAt(fd, first, bytes, count);
        const bool kept = ok && neighboursAre(bytes, first, count, bit, on) && (bytes[at] & theirs) == before;
        ok = locked(fd, first, count, F_ULOCK) && ok;
        if (!ok)
            return 1;
        if (!kept) {
            dump("another write got into ours", bytes, count);
            return 1;
        }
        ++counts->writes;
        ++counts->checks;
    }
}

int contend(int argc, char *argv[])
{
    const bool words = strcmp(argv[1], "words") == 0;
    if ((words && argc != 5) || (!words && argc != 4)) {
        fprintf(stderr, "usage: regwriter words <file> <offset> <length> | bits <file> <bit>\n");
        return 2;
    }
    const long place = strtol(argv[3], nullptr, 10);
    const long length = words ? strtol(argv[4], nullptr, 10) : 1;
    if (place < 0 || length < 1 || length > MaxBytes) {
        fprintf(stderr, "regwriter: bad register place\n");
        return 2;
    }
    const int fd = open(argv[2], O_RDWR);
    if (fd < 0) {
        perror("regwriter open");
        return 1;
    }
    // Tells the test the file is open and the contention starts.
    printf("ready\n");
    fflush(stdout);
    ContentionCounts counts;
    errno = 0;
    const int result = words ? contendWords(fd, place, int(length), inputEnded, nullptr, &counts)
                             : contendBits(fd, place, inputEnded, nullptr, &counts);
    if (result != 0 && errno != 0)
        perror("regwriter");
    printf("writes %ld checks %ld\n", counts.writes, counts.checks);
    fflush(stdout);
    close(fd);
    return result;
}
