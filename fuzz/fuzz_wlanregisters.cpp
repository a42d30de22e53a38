// The register files belong to the host application, which may leave any
// bytes in them, or leave them short. A text register reads back at most
// its stored length and stops at its NUL; a byte register of a cut file
// reads 0; writing a text register changes no byte outside it.
#include "fuzzsupport.h"
#include "localreg.h"
#include "sysreg.h"
#include "wlanregisters.h"
#include "wlanstatus.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <QFile>

namespace {

// The registers the WLAN page reads and writes.
const unsigned WlanIndexes[] = {
    SysRegIdx::WlanState, SysRegIdx::WlanSsid, SysRegIdx::WlanMac, 104, 106, 108, 109, 110, 111, 98, 114,
};
constexpr int WlanIndexCount = int(sizeof WlanIndexes / sizeof WlanIndexes[0]);
constexpr int LongestText = 255;
constexpr int MaxMacText = 17;
constexpr size_t MaxPayloadBytes = 300;

QByteArray upToNul(const QByteArray &bytes)
{
    const int end = bytes.indexOf('\0');
    return end < 0 ? bytes : bytes.left(end);
}

QByteArray panelFile(const QString &panelPath)
{
    QFile file(FuzzSupport::panelRoot() + panelPath);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    return file.readAll();
}

void checkWrite(unsigned index, const RegBase &reg, const QString &path, const QByteArray &before,
                const QByteArray &payload)
{
    const int length = WlanRegisters::storedLength(index);
    WlanRegisters::writeText(index, payload);
    const QByteArray after = panelFile(path);
    const int offset = int(reg.offset);
    QByteArray expected = payload.left(length);
    expected.append(QByteArray(length - expected.size(), '\0'));
    QByteArray head = before.left(offset);
    head.append(QByteArray(offset - head.size(), '\0'));
    FUZZ_CHECK(after.left(offset) == head, payload);
    FUZZ_CHECK(after.mid(offset, length) == expected, payload);
    FUZZ_CHECK(after.mid(offset + length) == before.mid(offset + length), payload);
    FUZZ_CHECK(WlanRegisters::text(index) == upToNul(expected), payload);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const int choice = input.ConsumeIntegralInRange<int>(0, WlanIndexCount);
    const unsigned index = choice < WlanIndexCount ? WlanIndexes[choice]
                                                   : input.ConsumeIntegralInRange<unsigned>(0, SysReg::RegCount + 2);
    const bool write = input.ConsumeIntegralInRange<int>(0, 3) == 0;
    const std::string payload = input.ConsumeRandomLengthString(MaxPayloadBytes);
    const std::string rest = input.ConsumeRemainingBytesAsString();

    const RegBase *reg = SysReg_LoadReg(index);
    const bool words = reg && !LocalReg::isBitArea(reg->area);
    FUZZ_CHECK(WlanRegisters::storedLength(index) == (words ? int(qMin<quint32>(reg->length, LongestText)) : 0),
               QByteArray::number(index));
    if (!words) {
        FUZZ_CHECK(WlanRegisters::text(index).isEmpty(), QByteArray::number(index));
        return 0;
    }

    // The register's bytes are the input, at its place in its area's file;
    // a short input leaves the file cut inside the register.
    const QString path = QString::fromLatin1(LocalReg::areaPath(reg->area));
    const QByteArray file = QByteArray(int(reg->offset), '\0') + QByteArray(rest.data(), int(rest.size()));
    FuzzSupport::writePanelFile(path, file);
    const QByteArray stored = file.mid(int(reg->offset), int(reg->length));

    const QByteArray text = WlanRegisters::text(index);
    FUZZ_CHECK(text == upToNul(stored), file.mid(int(reg->offset)));
    FUZZ_CHECK(text.size() <= WlanRegisters::storedLength(index), text);
    const bool whole = stored.size() == int(reg->length);
    FUZZ_CHECK(WlanRegisters::byte(index) == (whole ? quint8(stored.at(0)) : 0), stored);
    if (index == SysRegIdx::WlanMac)
        FUZZ_CHECK(WlanStatus::macText(text, QString()).size() <= MaxMacText, text);

    if (write)
        checkWrite(index, *reg, path, file, QByteArray(payload.data(), int(payload.size())));
    return 0;
}
