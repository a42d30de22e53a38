#ifndef QUIETSTDOUT_H
#define QUIETSTDOUT_H

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

// Sends standard output to /dev/null while it lives: the flash copy's
// progress lines must not drown the test log, which keeps its own lines.
class QuietStdout
{
public:
    QuietStdout()
    {
        std::fflush(stdout);
        m_saved = ::dup(STDOUT_FILENO);
        const int null = ::open("/dev/null", O_WRONLY);
        if (null >= 0) {
            ::dup2(null, STDOUT_FILENO);
            ::close(null);
        }
    }
    ~QuietStdout()
    {
        std::fflush(stdout);
        if (m_saved >= 0) {
            ::dup2(m_saved, STDOUT_FILENO);
            ::close(m_saved);
        }
    }
    QuietStdout(const QuietStdout &) = delete;
    QuietStdout &operator=(const QuietStdout &) = delete;

private:
    int m_saved = -1;
};

#endif // QUIETSTDOUT_H
