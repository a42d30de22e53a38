// System registers through the plug-in's calls against the bare system calls
// on the same file, offset and width: open, lock, pread/pwrite, unlock,
// close, and for a notification the FIFO's open, write and close.
#include "benchmain.h"
#include "fiforeader.h"
#include "localreg.h"
#include "panelroot.h"
#include "sysreg.h"
#include "testpanel.h"

#include <benchmark/benchmark.h>

#include <QtEndian>

#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace {

// A word register of the system words, one of the retained words (opened
// synchronous) and a bit register: the three kinds of access the pages make.
constexpr unsigned MeasuredRegisters[] = {SysRegIdx::Eth0Ip, SysRegIdx::Language, SysRegIdx::SettingsWindowOpen};

// The pipe holds 64 KiB: drained long before it fills, on both sides alike.
constexpr int DrainEvery = 1024;

// One register as the bare calls see it.
struct BareRegister
{
    QByteArray path;
    bool bits = false;
    bool sync = false;
    unsigned offset = 0;    // byte or bit, as in the table
    unsigned length = 0;    // bytes or bits

    off_t firstByte() const { return bits ? offset / 8 : offset; }
    unsigned byteCount() const { return bits ? (offset % 8 + length + 7) / 8 : length; }
};

BareRegister bareRegister(unsigned index)
{
    const SysReg::Row &row = SysReg::table()[index];
    BareRegister reg;
    reg.path = PanelRoot::path(LocalReg::areaPath(row.area));
    reg.bits = LocalReg::isBitArea(row.area);
    reg.sync = row.area == 3 || row.area == 4 || row.area == 7 || row.area == 8;
    reg.offset = row.offset;
    reg.length = row.length;
    return reg;
}

// lockf() takes its range from the file position and needs a writable
// descriptor; a read takes the same lock shared, through fcntl() as lockf()
// itself does.
bool lockForRead(int fd, const BareRegister &reg, bool take)
{
    struct flock range = {};
    range.l_type = take ? F_RDLCK : F_UNLCK;
    range.l_whence = SEEK_SET;
    range.l_start = reg.firstByte();
    range.l_len = reg.byteCount();
    return ::fcntl(fd, F_SETLKW, &range) == 0;
}

bool lockForWrite(int fd, const BareRegister &reg, bool take)
{
    return ::lseek(fd, reg.firstByte(), SEEK_SET) == reg.firstByte()
        && ::lockf(fd, take ? F_LOCK : F_ULOCK, reg.byteCount()) == 0;
}

bool bareRead(const BareRegister &reg, unsigned char *buf)
{
    const int fd = ::open(reg.path.constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return false;
    lockForRead(fd, reg, true);
    const ssize_t got = ::pread(fd, buf, reg.byteCount(), reg.firstByte());
    lockForRead(fd, reg, false);
    ::close(fd);
    if (reg.bits && reg.offset % 8)
        buf[0] = quint8(buf[0] >> (reg.offset % 8));
    return got == ssize_t(reg.byteCount());
}

bool bareWrite(const BareRegister &reg, const unsigned char *value)
{
    const int fd = ::open(reg.path.constData(), (reg.bits ? O_RDWR : O_WRONLY) | (reg.sync ? O_SYNC : 0) | O_CLOEXEC);
    if (fd < 0)
        return false;
    lockForWrite(fd, reg, true);
    bool done;
    if (reg.bits) {
        unsigned char bytes[8] = {};
        done = ::pread(fd, bytes, reg.byteCount(), reg.firstByte()) == ssize_t(reg.byteCount());
        const unsigned bit = reg.offset % 8;
        bytes[0] = quint8((bytes[0] & ~(1u << bit)) | ((value[0] & 1u) << bit));
        done = done && ::pwrite(fd, bytes, reg.byteCount(), reg.firstByte()) == ssize_t(reg.byteCount());
    } else {
        done = ::pwrite(fd, value, reg.byteCount(), reg.firstByte()) == ssize_t(reg.byteCount());
    }
    lockForWrite(fd, reg, false);
    ::close(fd);
    return done;
}

bool bareNotify(const QByteArray &fifo, unsigned index)
{
    unsigned char message[4];
    qToLittleEndian<quint32>(index, message);
    const int fd = ::open(fifo.constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        return false;
    const bool sent = ::write(fd, message, sizeof message) == ssize_t(sizeof message);
    ::close(fd);
    return sent;
}

enum class Access { Read, Write, WriteNotify };

void registerAccess(benchmark::State &state, unsigned index, Access access, bool bare)
{
    const BareRegister reg = bareRegister(index);
    FifoReader host(BenchMain::panel().path(QStringLiteral("/tmp/fifo_sysreg")));
    const QByteArray fifo = PanelRoot::path("/tmp/fifo_sysreg");
    unsigned char buf[256] = {};
    int count = 0;
    for (auto _ : state) {
        buf[0] = quint8(count & 1);
        bool done = false;
        switch (access) {
        case Access::Read:
            done = bare ? bareRead(reg, buf) : SysReg_Read(index, buf) == 0;
            break;
        case Access::Write:
            done = bare ? bareWrite(reg, buf) : SysReg_Write(index, buf, 1) == 0;
            break;
        case Access::WriteNotify:
            done = bare ? bareWrite(reg, buf) && bareNotify(fifo, index) : SysReg_WriteNotify(index, buf, 1) == 0;
            break;
        }
        if (!done) {
            state.SkipWithError("the register access failed");
            break;
        }
        if (++count % DrainEvery == 0)
            host.drain();
        benchmark::DoNotOptimize(buf);
    }
    host.drain();
}

const char *accessName(Access access)
{
    switch (access) {
    case Access::Read: return "read";
    case Access::Write: return "write";
    case Access::WriteNotify: return "write_notify";
    }
    return "";
}

std::string kindName(unsigned index)
{
    const SysReg::Row &row = SysReg::table()[index];
    const char *kind = LocalReg::isBitArea(row.area) ? "bit" : (row.area == 7 ? "syncword" : "word");
    return "reg" + std::to_string(index) + "_" + kind;
}

int registerAll()
{
    for (Access access : {Access::Read, Access::Write, Access::WriteNotify}) {
        for (unsigned index : MeasuredRegisters) {
            const std::string name = std::string("register_") + accessName(access) + "/" + kindName(index);
            for (bool bare : {false, true}) {
                benchmark::RegisterBenchmark((name + (bare ? "/baseline" : "/plugin")).c_str(),
                                             [=](benchmark::State &state) { registerAccess(state, index, access, bare); });
            }
        }
    }
    return 0;
}

[[maybe_unused]] const int registered = registerAll();

} // namespace

PANEL_BENCHMARK_MAIN(false)
