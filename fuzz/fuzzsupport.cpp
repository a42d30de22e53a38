#include "fuzzsupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace FuzzSupport {

namespace {

// On a disk, a rewritten file is flushed when it is closed, and the
// register files opened with O_SYNC wait for every write: a few hundred
// inputs a second instead of thousands. On the panel these files lie in
// RAM anyway, so the root goes to RAM when the machine offers some and the
// caller has not chosen a folder with TMPDIR.
QString rootBase()
{
    const QString shm = QStringLiteral("/dev/shm");
    if (qEnvironmentVariableIsEmpty("TMPDIR") && QFileInfo(shm).isDir() && QFileInfo(shm).isWritable())
        return shm;
    return QDir::tempPath();
}

} // namespace

QString panelRoot()
{
    // Never removed while the fuzzer runs; libFuzzer ends the process with
    // exit(), which does run this destructor.
    static QTemporaryDir root(rootBase() + QStringLiteral("/fuzzpanel-XXXXXX"));
    static const bool prepared = [] {
        if (!root.isValid())
            fail("root.isValid()", root.errorString().toLocal8Bit());
        const QByteArray path = QFile::encodeName(root.path());
        const QByteArray emptyBin = path + "/no-programs";
        QDir().mkpath(QString::fromLocal8Bit(emptyBin));
        setenv("PANEL_ROOT", path.constData(), 1);
        setenv("PATH", emptyBin.constData(), 1);
        return true;
    }();
    Q_UNUSED(prepared);
    return root.path();
}

void writePanelFile(const QString &panelPath, const QByteArray &bytes)
{
    const QString path = panelRoot() + panelPath;
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    // Overwritten, then cut to size: ext4 flushes a file that was truncated
    // to nothing and rewritten when it is closed, which took milliseconds
    // per input.
    if (!file.open(QIODevice::ReadWrite) || file.write(bytes) != bytes.size() || !file.resize(bytes.size()))
        fail("panel file written", path.toLocal8Bit());
}

QByteArray bytes(const uint8_t *data, size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), int(size));
}

int leadingInt(const char *bytes, int size)
{
    const auto blank = [](char c) {
        return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
    };
    int i = 0;
    while (i < size && blank(bytes[i]))
        ++i;
    bool negative = false;
    if (i < size && (bytes[i] == '+' || bytes[i] == '-')) {
        negative = bytes[i] == '-';
        ++i;
    }
    // Counted up to one past the int range, where the answer saturates.
    qint64 value = 0;
    for (; i < size && bytes[i] >= '0' && bytes[i] <= '9'; ++i)
        value = qMin<qint64>(value * 10 + (bytes[i] - '0'), qint64(INT_MAX) + 1);
    return negative ? int(qMax<qint64>(-value, INT_MIN)) : int(qMin<qint64>(value, INT_MAX));
}

std::unique_ptr<char[]> exactCopy(const uint8_t *data, size_t size)
{
    std::unique_ptr<char[]> copy(new char[size > 0 ? size : 1]);
    if (size > 0)
        std::memcpy(copy.get(), data, size);
    return copy;
}

void fail(const char *property, const QByteArray &detail)
{
    std::fprintf(stderr, "property broken: %s\n", property);
    if (!detail.isEmpty())
        std::fprintf(stderr, "  %s\n", detail.left(512).toHex(' ').constData());
    std::fflush(stderr);
    std::abort();
}

} // namespace FuzzSupport

// Every target gets its panel root before the first input, so that no path
// of the plug-in is ever resolved outside it. Weak: a target that needs more
// set-up (an application object) defines its own and calls panelRoot().
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int *, char ***)
{
    FuzzSupport::panelRoot();
    return 0;
}
