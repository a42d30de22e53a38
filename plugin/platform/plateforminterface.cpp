#include "plateforminterface.h"

#include "sigpipeguard.h"

#include <QtGlobal>
#include <cstdio>

int PlateformInterface::readcmd(const char *command, char *buf, int size)
{
    if (!buf || size <= 0)
        return -1;
    buf[0] = 0;
    if (!command)
        return -1;
    FILE *fp = popen(command, "r");
    if (!fp) {
        perror("Fail to popen\n");
        return -1;
    }
    // One read only: the tools write their answer in one go, and a short
    // answer must leave the rest of the caller's buffer as it was.
    const size_t got = fread(buf, 1, size_t(size), fp);
    Q_UNUSED(got)
    pclose(fp);
    return 0;
}

int PlateformInterface::writecmd(const char *command, char *buf, int size)
{
    if (!command || !buf || size < 0)
        return -1;
    FILE *fp = popen(command, "w");
    if (!fp) {
        perror("Fail to popen\n");
        return -1;
    }
    // A tool that exits without reading its input must not take the host
    // down; the guard also covers the flush inside pclose.
    SigPipeGuard guard;
    const size_t put = fwrite(buf, 1, size_t(size), fp);
    Q_UNUSED(put)
    pclose(fp);
    return 0;
}
