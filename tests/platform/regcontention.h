#ifndef REGCONTENTION_H
#define REGCONTENTION_H

// The host's side of a register shared with the plug-in (see regwriter.cpp),
// played on the descriptor `fd` of the register's file with lockf() record
// locks, as the host does. Each runs until stop(context) is true (looked at
// every few rounds) and returns 0, or 1 at the first wrong observation,
// after saying what it saw on standard error.
struct ContentionCounts
{
    long writes = 0;
    long checks = 0;
};
using ContentionStop = bool (*)(void *context);

// Whole values 0x33.. and 0x44.. over `length` bytes at `offset`, written
// in pieces and read back under the lock; locked reads must see a whole
// value of either side (the other side's are 0x11.. and 0x22..).
int contendWords(int fd, long offset, int length, ContentionStop stop, void *context,
                 ContentionCounts *counts);
// Every bit of the bytes around `bit` but `bit` itself, flipped together.
int contendBits(int fd, long bit, ContentionStop stop, void *context, ContentionCounts *counts);

// The register writer's contention mode: argv[1] is "words" or "bits", the
// rest names the register's file and place; runs until standard input ends.
// Returns the process's exit code.
int contend(int argc, char *argv[]);

#endif // REGCONTENTION_H
