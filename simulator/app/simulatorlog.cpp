#include "simulatorlog.h"

#include <cstdio>

Q_LOGGING_CATEGORY(lcSimulator, "tavro.settings.simulator", QtInfoMsg)

void printLogLine(const QString &line)
{
    std::fputs(line.toLocal8Bit().constData(), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}
