#ifndef FUZZSUPPORT_H
#define FUZZSUPPORT_H

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <memory>

// What every fuzz target shares: a throw-away panel root that all absolute
// paths resolve under, a PATH in which no program can be found (a reader
// that ended up starting a command would fail harmlessly, and the check
// below would catch it), and a way to stop at a broken property with the
// input kept by libFuzzer.
namespace FuzzSupport {

// Creates the panel root on first use (a fresh folder under $TMPDIR, or in
// RAM under /dev/shm when TMPDIR is not set) and points PANEL_ROOT and PATH
// at it. Returns the root. Every target's start-up calls it, unless the
// target defines LLVMFuzzerInitialize itself, which must then call it.
QString panelRoot();

// Writes bytes to the panel path (e.g. "/var/run/udhcpc.eth0.pid") below
// the root, creating its folders. Aborts when the file cannot be written:
// a target that silently fuzzed nothing would be no test.
void writePanelFile(const QString &panelPath, const QByteArray &bytes);

QByteArray bytes(const uint8_t *data, size_t size);

// The input in a heap block of exactly its size (one byte for an empty
// one) with no terminator after it, as a pipe's bytes arrive: a reader
// that looks past them is stopped by AddressSanitizer.
std::unique_ptr<char[]> exactCopy(const uint8_t *data, size_t size);

// The leading decimal number of the first `size` bytes, read by hand as
// strtol reads it (blanks and one sign first, 0 without digits), held to
// the int range: the reference for readers of the tools' answers.
int leadingInt(const char *bytes, int size);

// Prints why and aborts, so that libFuzzer saves the input as a finding.
[[noreturn]] void fail(const char *property, const QByteArray &detail = QByteArray());

} // namespace FuzzSupport

#define FUZZ_CHECK(condition, detail) \
    do { \
        if (!(condition)) \
            FuzzSupport::fail(#condition, (detail)); \
    } while (false)

#endif // FUZZSUPPORT_H
