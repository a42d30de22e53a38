// The register files belong to the host application: any length, any bytes.
// Whatever they hold, a register read fills exactly its own bytes of the
// caller's buffer with the file's bytes (or fails when the file is too
// short), and a register write changes no bit of the file outside that
// register and reads back as written. The bit-string helpers underneath
// are checked against a plain bit-by-bit reading.
#include "bitstring.h"
#include "fuzzsupport.h"
#include "localreg.h"
#include "sysreg.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <QFile>

#include <memory>
#include <vector>

namespace {

// The four files the register table uses; the other areas stay missing.
const unsigned UsedAreas[] = {LocalArea::Smw, LocalArea::Smb, LocalArea::Sfw, LocalArea::Sfb};

struct FileState
{
    bool present = false;
    QByteArray bytes;
};

QString realPath(unsigned area)
{
    return FuzzSupport::panelRoot() + QString::fromLatin1(LocalReg::areaPath(area));
}

FileState snapshot(unsigned area)
{
    FileState state;
    QFile file(realPath(area));
    state.present = file.open(QIODevice::ReadOnly);
    if (state.present)
        state.bytes = file.readAll();
    return state;
}

// Bytes the table's extent in an area needs: bytes for word areas, the
// covering bytes of the highest bit for bit areas.
int needed(unsigned area)
{
    unsigned most = 0;
    for (unsigned i = 0; i < SysReg::RegCount; ++i) {
        const SysReg::Row &row = SysReg::table()[i];
        if (row.area != area)
            continue;
        const unsigned end = LocalReg::isBitArea(area) ? (row.offset + row.length + 7) / 8
                                                       : row.offset + row.length;
        most = qMax(most, end);
    }
    return int(most);
}

void writeFiles(FuzzedDataProvider &input, FileState *states)
{
    for (int i = 0; i < 4; ++i) {
        const unsigned area = UsedAreas[i];
        const int need = needed(area);
        int size = need;
        switch (input.ConsumeIntegralInRange<int>(0, 7)) {
        case 0: size = input.ConsumeIntegralInRange<int>(0, need); break;     // short
        case 1: size = need + input.ConsumeIntegralInRange<int>(1, 64); break; // long
        case 2: size = -1; break;                                         // missing
        default: break;
        }
        FileState &state = states[i];
        state.present = size >= 0;
        if (!state.present) {
            QFile::remove(realPath(area));
            continue;
        }
        const uint8_t fill = input.ConsumeIntegral<uint8_t>();
        std::vector<uint8_t> given = input.ConsumeBytes<uint8_t>(size_t(qMin(size, 48)));
        state.bytes = QByteArray(size, char(fill));
        for (size_t k = 0; k < given.size(); ++k)
            state.bytes[int(k * 37 % size_t(size))] = char(given[k]);
        FuzzSupport::writePanelFile(QString::fromLatin1(LocalReg::areaPath(area)), state.bytes);
    }
}

const FileState &stateOf(const FileState *states, unsigned area)
{
    for (int i = 0; i < 4; ++i)
        if (UsedAreas[i] == area)
            return states[i];
    static const FileState missing;
    return missing;
}

bool fileBit(const QByteArray &bytes, unsigned bit)
{
    return (quint8(bytes.at(int(bit / 8))) >> (bit % 8)) & 1;
}

unsigned bufferBytes(unsigned area, unsigned length)
{
    return LocalReg::isBitArea(area) ? (length + 7) / 8 : length;
}

// A read either fails (the file lacks the bytes) or gives exactly them; for
// bits the caller's last byte carries the file's next bits, zeros past the
// bytes the read covered.
void checkRead(unsigned area, unsigned offset, unsigned length, const FileState &file,
               int result, const unsigned char *buf)
{
    const QByteArray where = QByteArray::number(area) + ':' + QByteArray::number(offset) + ':'
        + QByteArray::number(length);
    const bool bits = LocalReg::isBitArea(area);
    const quint64 first = bits ? offset / 8 : offset;
    const quint64 count = bits ? BitString::coveringBytes(offset, length) : length;
    const bool fits = file.present && first + count <= quint64(file.bytes.size());
    FUZZ_CHECK((result == 0) == fits, where);
    if (!fits)
        return;
    if (!bits) {
        FUZZ_CHECK(QByteArray(reinterpret_cast<const char *>(buf), int(length))
                       == file.bytes.mid(int(offset), int(length)), where);
        return;
    }
    const quint64 coveredEnd = (first + count) * 8;
    for (unsigned k = 0; k < bufferBytes(area, length) * 8; ++k) {
        const bool expected = offset + k < coveredEnd && fileBit(file.bytes, offset + k);
        FUZZ_CHECK(bool((buf[k / 8] >> (k % 8)) & 1) == expected, where + " bit " + QByteArray::number(k));
    }
}

void readRegister(unsigned index, const FileState *states)
{
    if (index >= SysReg::RegCount) {
        unsigned char byte = 0x77;
        FUZZ_CHECK(SysReg_Read(index, &byte) == -1 && byte == 0x77, QByteArray::number(index));
        FUZZ_CHECK(SysReg_LoadReg(index) == nullptr, QByteArray::number(index));
        return;
    }
    const SysReg::Row &row = SysReg::table()[index];
    FUZZ_CHECK(SysReg_IsRegIdx(index, SysReg_LoadReg(index)), QByteArray::number(index));
    const unsigned size = bufferBytes(row.area, row.length);
    // Exactly the register's width: a byte more written stops ASan.
    std::unique_ptr<unsigned char[]> buf(new unsigned char[size]);
    std::fill(buf.get(), buf.get() + size, 0xCC);
    const int result = SysReg_Read(index, buf.get());
    FUZZ_CHECK(result == 0 || result == -1, QByteArray::number(index));
    checkRead(row.area, row.offset, row.length, stateOf(states, row.area), result == 0 ? 0 : 1, buf.get());
}

void checkWrittenFile(const SysReg::Row &row, const FileState &before, const FileState &after,
                      const unsigned char *value, int result)
{
    const QByteArray where = QByteArray::number(row.index);
    FUZZ_CHECK(after.present == before.present, where);
    if (!before.present) {
        FUZZ_CHECK(result == -1, where);
        return;
    }
    if (LocalReg::isBitArea(row.area)) {
        const bool fits = row.offset / 8 + BitString::coveringBytes(row.offset, row.length)
            <= unsigned(before.bytes.size());
        FUZZ_CHECK((result == 0) == fits, where);
        FUZZ_CHECK(after.bytes.size() == before.bytes.size(), where);
        for (unsigned bit = 0; bit < unsigned(after.bytes.size()) * 8; ++bit) {
            const bool inside = fits && bit >= row.offset && bit < row.offset + row.length;
            const bool expected = inside ? (value[(bit - row.offset) / 8] >> ((bit - row.offset) % 8)) & 1
                                         : fileBit(before.bytes, bit);
            FUZZ_CHECK(fileBit(after.bytes, bit) == expected, where + " bit " + QByteArray::number(bit));
        }
        return;
    }
    // A word write past the end lengthens the file; the gap reads as zeros.
    FUZZ_CHECK(result == 0, where);
    const int end = int(row.offset + row.length);
    FUZZ_CHECK(after.bytes.size() == qMax(before.bytes.size(), end), where);
    for (int i = 0; i < after.bytes.size(); ++i) {
        char expected;
        if (i >= int(row.offset) && i < end)
            expected = char(value[i - int(row.offset)]);
        else
            expected = i < before.bytes.size() ? before.bytes.at(i) : '\0';
        FUZZ_CHECK(after.bytes.at(i) == expected, where + " byte " + QByteArray::number(i));
    }
}

void writeRegister(FuzzedDataProvider &input, FileState *states)
{
    const unsigned index = input.ConsumeIntegralInRange<unsigned>(0, SysReg::RegCount + 4);
    const unsigned len = input.ConsumeIntegral<unsigned>();     // ignored by the table
    if (index >= SysReg::RegCount) {
        const unsigned char byte = 1;
        FUZZ_CHECK(SysReg_Write(index, &byte, len) == -1, QByteArray::number(index));
        for (const unsigned area : UsedAreas) {
            const FileState now = snapshot(area);
            FUZZ_CHECK(now.present == stateOf(states, area).present
                           && now.bytes == stateOf(states, area).bytes, QByteArray::number(index));
        }
        return;
    }
    const SysReg::Row &row = SysReg::table()[index];
    const unsigned size = bufferBytes(row.area, row.length);
    std::unique_ptr<unsigned char[]> value(new unsigned char[size]);
    const std::vector<uint8_t> given = input.ConsumeBytes<uint8_t>(size);
    for (unsigned i = 0; i < size; ++i)
        value[i] = i < given.size() ? given[i] : static_cast<unsigned char>(i * 29 + index);

    FileState *state = nullptr;
    for (int i = 0; i < 4; ++i)
        if (UsedAreas[i] == row.area)
            state = &states[i];
    const FileState before = *state;
    const int result = SysReg_Write(index, value.get(), len);
    const FileState after = snapshot(row.area);
    checkWrittenFile(row, before, after, value.get(), result);
    *state = after;

    if (result != 0)
        return;
    std::unique_ptr<unsigned char[]> back(new unsigned char[size]);
    FUZZ_CHECK(SysReg_Read(index, back.get()) == 0, QByteArray::number(index));
    for (unsigned bit = 0; bit < row.length * (LocalReg::isBitArea(row.area) ? 1 : 8); ++bit)
        FUZZ_CHECK(((back[bit / 8] ^ value[bit / 8]) >> (bit % 8) & 1) == 0,
                   QByteArray::number(index) + " bit " + QByteArray::number(bit));
}

// Any area, offset and length straight through the local layer.
void readLocalAnywhere(FuzzedDataProvider &input, const FileState *states)
{
    const unsigned area = input.ConsumeIntegralInRange<unsigned>(0, 10);
    const unsigned offset = input.ConsumeIntegralInRange<unsigned>(0, 2400);
    const unsigned length = input.ConsumeIntegralInRange<unsigned>(1, 300);
    const bool known = area >= LocalArea::First && area <= LocalArea::Last;
    const unsigned size = known ? bufferBytes(area, length) : 1;
    std::unique_ptr<unsigned char[]> buf(new unsigned char[size]);
    const int result = ReadLocal(area, offset, length, buf.get());
    FUZZ_CHECK(result == LocalReg::Ok || result == LocalReg::Failed, QByteArray::number(area));
    if (!known) {
        FUZZ_CHECK(result == LocalReg::Failed, QByteArray::number(area));
        return;
    }
    checkRead(area, offset, length, stateOf(states, area), result, buf.get());
}

void checkBitString(FuzzedDataProvider &input)
{
    const std::vector<uint8_t> original = input.ConsumeBytes<uint8_t>(input.ConsumeIntegralInRange<size_t>(1, 12));
    if (original.empty())
        return;
    const unsigned count = unsigned(original.size());
    const unsigned shift = input.ConsumeIntegralInRange<unsigned>(0, 9);
    std::vector<uint8_t> shifted = original;
    BitString::shiftRight(shifted.data(), count, shift);
    for (unsigned k = 0; k < count * 8; ++k) {
        bool expected = (original[k / 8] >> (k % 8)) & 1;
        if (shift >= 1 && shift <= 7)
            expected = k + shift < count * 8 && ((original[(k + shift) / 8] >> ((k + shift) % 8)) & 1);
        FUZZ_CHECK(bool((shifted[k / 8] >> (k % 8)) & 1) == expected, QByteArray::number(shift));
    }

    const unsigned destBit = input.ConsumeIntegralInRange<unsigned>(0, count * 8 - 1);
    const unsigned length = input.ConsumeIntegralInRange<unsigned>(0, count * 8 - destBit);
    const std::vector<uint8_t> source = input.ConsumeBytes<uint8_t>((length + 7) / 8);
    std::vector<uint8_t> bits(source);
    bits.resize((length + 7) / 8 + 1, 0x96);
    std::vector<uint8_t> placed = original;
    BitString::placeBits(placed.data(), destBit, bits.data(), length);
    for (unsigned k = 0; k < count * 8; ++k) {
        const bool inside = k >= destBit && k < destBit + length;
        const bool expected = inside ? (bits[(k - destBit) / 8] >> ((k - destBit) % 8)) & 1
                                     : (original[k / 8] >> (k % 8)) & 1;
        FUZZ_CHECK(bool((placed[k / 8] >> (k % 8)) & 1) == expected, QByteArray::number(k));
    }
    if (length > 0)
        FUZZ_CHECK(BitString::coveringBytes(destBit, length) == (destBit + length - 1) / 8 - destBit / 8 + 1,
                   QByteArray::number(destBit) + ":" + QByteArray::number(length));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider input(data, size);
    FileState states[4];
    writeFiles(input, states);

    // A few registers the input names (past the table too). Reading the
    // whole table on every input would cost as much as a hundred inputs;
    // over a campaign every register is read many thousand times.
    const int reads = input.ConsumeIntegralInRange<int>(1, 6);
    for (int i = 0; i < reads; ++i)
        readRegister(input.ConsumeIntegralInRange<unsigned>(0, SysReg::RegCount + 4), states);
    writeRegister(input, states);
    readLocalAnywhere(input, states);
    checkBitString(input);
    return 0;
}
