#ifndef PLATEFORMINTERFACE_H
#define PLATEFORMINTERFACE_H

#include "processrunner.h"

// Starts the panel's firmware tools with a pipe to or from their standard
// streams. Command texts are passed to the shell as given: callers map any
// absolute path through PanelRoot first. A tool is waited for at most
// `boundMs`; past it, it is ended and the call fails.
class PlateformInterface
{
public:
    // Runs `command` and reads up to `size` bytes of its output into `buf`.
    // Only buf[0] is cleared first; the rest of the buffer past what came is
    // left as it was. `*count` (when not null) gets the bytes that came.
    // 0, or -1 when the command cannot be started or did not end in time.
    int readcmd(const char *command, char *buf, int size, int *count = nullptr,
                int boundMs = WaitBound::FirmwareTool);

    // Runs `command` and writes `size` bytes of `buf` to its input.
    // 0, or -1 when the command cannot be started or did not end in time.
    int writecmd(const char *command, char *buf, int size, int boundMs = WaitBound::FirmwareTool);
};

#endif // PLATEFORMINTERFACE_H
