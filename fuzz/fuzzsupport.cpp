#include "fuzzsupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

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
