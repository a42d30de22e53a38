#ifndef PROCESSRUNNER_H
#define PROCESSRUNNER_H

#include <QByteArray>

class CommandText;

// How long the plug-in waits for each kind of program, in milliseconds. The
// window runs on the host's GUI thread, so a program that never ends must
// not freeze the operator's screen: past its bound it is ended.
namespace WaitBound {
// "readee"/"writeee": 1 KiB through the EEPROM driver takes well under a
// second; the margin covers a slow flash write.
constexpr int ImageTool = 5000;
// getbright, setbright, setbeep and the other small firmware tools.
constexpr int FirmwareTool = 3000;
// ifconfig, route, date, hwclock, cp, sync, ps and the like. hwclock can
// wait for the next RTC second and sync for the flash.
constexpr int ShellCommand = 5000;
// "readlogo"/"writelogo" move up to 6 MiB of boot logo through flash.
constexpr int LogoTool = 20000;
} // namespace WaitBound

// Runs command texts with /bin/sh, as system() and popen() would, but each
// in a process group of its own and waited for at most a bound. A program
// still running at its bound is ended with everything it started (its
// group), a warning goes to the platform log, and the call fails.
// Commands ending in "&" return as soon as the shell has started them.
// Command texts are used as given: map panel paths before calling.
namespace ProcessRunner {

// Results of readFrom and writeTo.
enum Result { Done = 0, NotStarted = -1, TimedOut = -2 };

// Like system(): the wait status of the shell, or -1 when it could not be
// started or did not end within boundMs.
int system(const QByteArray &command, int boundMs);

// Like popen(command, "r") and one fread: reads up to `size` bytes of the
// command's output into `buf` until it ends its output. `*count` (when not
// null) gets the number of bytes read, also when the command is ended at
// its bound. Done, NotStarted (errno tells why) or TimedOut.
int readFrom(const char *command, char *buf, int size, int boundMs, int *count = nullptr);

// Like popen(command, "w") and one fwrite of `size` bytes; a tool that
// closes its input early ends the writing. Done, NotStarted or TimedOut.
int writeTo(const char *command, const char *buf, int size, int boundMs);

} // namespace ProcessRunner

// Runs a checked command text with the panel root applied to the absolute
// paths in it: the one way a command reaches the shell. An invalid text is
// not run; a warning names why. The system() status, or -1.
int runCommand(const CommandText &command, int boundMs = WaitBound::ShellCommand);

#endif // PROCESSRUNNER_H
