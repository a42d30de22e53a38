#include "plateforminterface.h"

#include <cstdio>

int PlateformInterface::readcmd(const char *command, char *buf, int size, int *count, int boundMs)
{
    if (count)
        *count = 0;
    if (!buf || size <= 0)
        return -1;
    buf[0] = 0;
    if (!command)
        return -1;
    // A short answer leaves the rest of the caller's buffer as it was.
    const int result = ProcessRunner::readFrom(command, buf, size, boundMs, count);
    if (result == ProcessRunner::NotStarted) {
        perror("Fail to popen\n");
        return -1;
    }
    return result == ProcessRunner::Done ? 0 : -1;
}

int PlateformInterface::writecmd(const char *command, char *buf, int size, int boundMs)
{
    if (!command || !buf || size < 0)
        return -1;
    const int result = ProcessRunner::writeTo(command, buf, size, boundMs);
    if (result == ProcessRunner::NotStarted) {
        perror("Fail to popen\n");
        return -1;
    }
    return result == ProcessRunner::Done ? 0 : -1;
}
