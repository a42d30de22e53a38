#ifndef PLATEFORMINTERFACE_H
#define PLATEFORMINTERFACE_H

// Starts the panel's firmware tools with a pipe to or from their standard
// streams. Command texts are passed to the shell as given: callers map any
// absolute path through PanelRoot first.
class PlateformInterface
{
public:
    // Runs `command` and reads up to `size` bytes of its output into `buf`
    // with a single read. Only buf[0] is cleared; the byte count is not
    // reported. 0, or -1 when the command cannot be started.
    int readcmd(const char *command, char *buf, int size);

    // Runs `command` and writes `size` bytes of `buf` to its input.
    // 0, or -1 when the command cannot be started.
    int writecmd(const char *command, char *buf, int size);
};

#endif // PLATEFORMINTERFACE_H
