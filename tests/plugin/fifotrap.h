#ifndef FIFOTRAP_H
#define FIFOTRAP_H

#include <QByteArray>

// Makes the host's reader of a FIFO leave at the worst moment: once armed,
// the next write() of this process to that FIFO first closes the given
// reader descriptor, so the write meets a FIFO whose reader has just gone
// although the writer's open found one. A race that takes the real host
// microseconds to lose, played every time. Linking this into a test puts a
// write() of its own before the C library's for the whole process; unarmed
// it passes straight to the system call.
class FifoTrap
{
public:
    // False when the FIFO cannot be looked at; the trap then stays unarmed.
    static bool arm(int readerFd, const QByteArray &fifoPath);
    static void disarm();
    // How many times the trap closed a reader since the last arm().
    static int sprung();
};

#endif // FIFOTRAP_H
