// The host application keeps the WLAN's leased addresses in 8-byte
// registers of four 16-bit values; whatever values it leaves, the page
// shows four decimal numbers, and storing that text gives the same bytes.
#include "addressregister.h"
#include "fuzzsupport.h"
#include "localreg.h"
#include "sysreg.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <QStringList>

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace {

using AddressRegister::Size;

const unsigned AddressIndexes[] = {SysRegIdx::WlanIp, SysRegIdx::WlanMask, SysRegIdx::WlanGateway};
constexpr int MaxDottedSize = 4 * 5 + 3;
constexpr size_t MaxTextBytes = 40;

QString expectedDotted(const unsigned char bytes[Size])
{
    char text[MaxDottedSize + 1];
    std::snprintf(text, sizeof text, "%u.%u.%u.%u", bytes[0] | bytes[1] << 8, bytes[2] | bytes[3] << 8,
                  bytes[4] | bytes[5] << 8, bytes[6] | bytes[7] << 8);
    return QString::fromLatin1(text);
}

bool isDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

// Text the user or a lease gave: a part of plain digits that fits 16 bits
// is stored as it reads, a part without any digit as 0.
void checkPack(const QString &text)
{
    unsigned char bytes[Size];
    std::memset(bytes, 0xa5, sizeof bytes);
    AddressRegister::pack(text, bytes);
    const QStringList parts = text.split(QLatin1Char('.'));
    for (int i = 0; i < int(Size / 2); ++i) {
        const QString part = parts.value(i);
        const unsigned stored = bytes[2 * i] | bytes[2 * i + 1] << 8;
        const bool digits = !part.isEmpty() && std::all_of(part.begin(), part.end(), isDigit);
        if (digits && part.size() <= 5 && part.toUInt() <= 0xffffu)
            FUZZ_CHECK(stored == part.toUInt(), text.toUtf8());
        if (std::none_of(part.begin(), part.end(), isDigit))
            FUZZ_CHECK(stored == 0, text.toUtf8());
    }
}

// The register as the host left it in its file, read the way the page does.
void checkRead(unsigned index, const QByteArray &value)
{
    const RegBase *reg = SysReg_LoadReg(index);
    if (!reg || reg->length != Size)
        FuzzSupport::fail("an 8-byte address register", QByteArray::number(index));
    const QString path = QString::fromLatin1(LocalReg::areaPath(reg->area));
    FuzzSupport::writePanelFile(path, QByteArray(int(reg->offset), '\0') + value);
    unsigned char expected[Size] = {};
    std::memcpy(expected, value.constData(), size_t(qMin<int>(value.size(), Size)));
    FUZZ_CHECK(AddressRegister::read(index) == expectedDotted(expected), value);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const int readChoice = input.ConsumeIntegralInRange<int>(0, 11);
    unsigned char bytes[Size] = {};
    const size_t got = input.ConsumeData(bytes, Size);
    const QByteArray value(reinterpret_cast<const char *>(bytes), int(got));

    const QString shown = AddressRegister::dotted(bytes);
    FUZZ_CHECK(shown == expectedDotted(bytes), value);
    FUZZ_CHECK(shown.size() <= MaxDottedSize, value);
    unsigned char again[Size];
    AddressRegister::pack(shown, again);
    FUZZ_CHECK(std::memcmp(again, bytes, Size) == 0, value);

    const std::string text = input.ConsumeRandomLengthString(MaxTextBytes);
    checkPack(QString::fromLatin1(text.data(), int(text.size())));

    if (readChoice < 3)
        checkRead(AddressIndexes[readChoice], value);
    return 0;
}
