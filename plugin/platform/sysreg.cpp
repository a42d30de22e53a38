#include "sysreg.h"

#include "dfifo.h"
#include "localreg.h"

#include <QtEndian>

namespace {

const char SysRegFifoPath[] = "/tmp/fifo_sysreg";

// index, area, offset, length: offsets and lengths are bytes in word areas
// (5, 7) and bits in bit areas (6, 8).
const SysReg::Row Rows[SysReg::RegCount] = {
    {  0, 5,    0,   2}, {  1, 5,    2,   2}, {  2, 5,    4,   2}, {  3, 5,    6,   2},
    {  4, 5,    8,   2}, {  5, 5,   10,   2}, {  6, 5,   12,   2}, {  7, 5,   14,   1},
    {  8, 5,   15,   4}, {  9, 5,   19,   1}, { 10, 5,  900,  21}, { 11, 5,  922,  21},
    { 12, 7,  164,   1}, { 13, 5,   76,   1}, { 14, 5,   77,   2}, { 15, 8,   16,   1},
    { 16, 5,   79,  31}, { 17, 5,  267,   1}, { 18, 5,  268,  15}, { 19, 7,  165,   4},
    { 20, 7,  169,   1}, { 21, 5,  129,  31}, { 22, 5,  113,  15}, { 23, 5,  284,  31},
    { 24, 5,  348,  31}, { 25, 5,  161,  31}, { 26, 5,  193,   2}, { 27, 5,  195,  31},
    { 28, 5,  380,  31}, { 29, 5,  316,  31}, { 30, 5,  227,  15}, { 31, 5,  243,  15},
    { 32, 5,  259,   2}, { 33, 5,  261,   2}, { 34, 6,    2,   1}, { 35, 5,  263,   2},
    { 36, 5,  265,   2}, { 37, 6,    3,   1}, { 38, 7,  170,   4}, { 39, 6,   12,   1},
    { 40, 5,  412,  31}, { 41, 5,  444,  31}, { 42, 5,  476,  31}, { 43, 5,  508,   1},
    { 44, 5,  509,  31}, { 45, 5,  541,  15}, { 46, 5,  557,  31}, { 47, 5,  589,  15},
    { 48, 5,  605,  63}, { 49, 5,  669,  63}, { 50, 5,  733,   1}, { 51, 5,  734,   1},
    { 52, 5,  735,   2}, { 53, 5,  737,   2}, { 54, 5,  739,   2}, { 55, 5,  741,   2},
    { 56, 5,  743,   2}, { 57, 5,  745,   2}, { 58, 5,  747,   2}, { 59, 5,  749,   2},
    { 60, 5,  751,   8}, { 61, 5,  759,  12}, { 62, 5,  771,   8}, { 63, 5,  779,   8},
    { 64, 5,  787,   8}, { 65, 5,  795,   8}, { 66, 8,   13,   1}, { 67, 8,   20,   1},
    { 68, 6,   18,   1}, { 69, 5,  803,   8}, { 70, 5,  811,  12}, { 71, 5,  823,   8},
    { 72, 5,  831,   8}, { 73, 5,  839,   8}, { 74, 5,  847,   8}, { 75, 8,   14,   1},
    { 76, 8,   21,   1}, { 77, 6,   19,   1}, { 78, 7,  180,   1}, { 79, 8,   17,   1},
    { 80, 8,    1,   1}, { 81, 6,   13,   1}, { 82, 5,  950,  31}, { 83, 6,   14,   1},
    { 84, 5,  990,  31}, { 85, 6,   15,   1}, { 86, 6,   16,   1}, { 87, 6,   17,   1},
    { 88, 5, 1030,  63}, { 89, 5, 1100,   2}, { 90, 5, 1104,   4}, { 91, 5, 1108,   4},
    { 92, 7,  190,  31}, { 93, 5, 1120,  31}, { 94, 5, 1164,   1}, { 95, 5, 1160,   4},
    { 96, 6,   20,   1}, { 97, 5, 1170, 255}, { 98, 8,   18,   1}, { 99, 6,   23,   1},
    {100, 5, 1550,   1}, {101, 6,   21,   1}, {102, 8,   19,   1}, {103, 5, 1450,  32},
    {104, 5, 1910,  63}, {105, 5, 1902,   1}, {106, 5, 1514,   8}, {107, 5, 1522,  12},
    {108, 5, 1534,   8}, {109, 5, 1542,   8}, {110, 5, 1552, 255}, {111, 5, 1900,   1},
    {112, 5, 1901,   1}, {113, 5, 1551,   1}, {114, 6,   22,   1}, {115, 5,   20,  31},
    {116, 7,  240,   1}, {117, 8,   22,   1}, {118, 5, 1903,   1}, {119, 5, 1980,   8},
    {120, 6,   24,   1}, {121, 8,   23,   1}, {122, 8,   24,   1}, {123, 6,   25,   1},
    {124, 5, 2000,   1}, {125, 5, 2001,   1}, {126, 5, 2002,   2}, {127, 5, 2004,   1},
    {128, 5, 2005,   4}, {129, 5, 2009,   2}, {130, 5, 2011,  20}, {131, 5, 2031,  22},
    {132, 5, 2055,  66}, {133, 5, 2125,   1}, {134, 7,  241,   1}, {135, 7,  242,   1},
};

} // namespace

const SysReg::Row *SysReg::table()
{
    return Rows;
}

SysReg::SysReg()
{
    for (unsigned i = 0; i < RegCount; ++i) {
        m_regs[i].reserved = 0;
        m_regs[i].marker = RegBase::ValidMarker;
        m_regs[i].index = Rows[i].index;
        m_regs[i].area = Rows[i].area;
        m_regs[i].offset = Rows[i].offset;
        m_regs[i].length = Rows[i].length;
    }
}

SysReg &SysReg::instance()
{
    static SysReg table;
    return table;
}

RegBase *SysReg::loadReg(unsigned index)
{
    return index < RegCount ? &m_regs[index] : nullptr;
}

int SysReg::read(unsigned index, void *buf)
{
    const RegBase *reg = loadReg(index);
    if (!reg)
        return -1;
    const int result = ReadLocal(reg->area, reg->offset, reg->length,
                                 static_cast<unsigned char *>(buf));
    return result == LocalReg::Ok ? 0 : -1;
}

int SysReg::write(unsigned index, const void *buf, unsigned len)
{
    Q_UNUSED(len)
    const RegBase *reg = loadReg(index);
    if (!reg)
        return -1;
    const int result = WriteLocal(reg->area, reg->offset, reg->length,
                                  static_cast<const unsigned char *>(buf));
    return result == LocalReg::Ok ? 0 : -1;
}

int SysReg::writeNotify(unsigned index, const void *buf, unsigned len)
{
    if (write(index, buf, len) != 0)
        return -1;
    unsigned char message[4];
    qToLittleEndian<quint32>(index, message);
    return DFifo::post(SysRegFifoPath, message, sizeof(message)) ? 0 : -1;
}

bool SysReg::isRegIdx(unsigned index, const RegBase *reg) const
{
    if (!reg || index >= RegCount)
        return false;
    const Row &row = Rows[index];
    return reg->marker == RegBase::ValidMarker && reg->area == row.area
        && reg->offset == row.offset && reg->length == row.length;
}

RegBase *SysReg_LoadReg(unsigned index)
{
    return SysReg::instance().loadReg(index);
}

int SysReg_Read(unsigned index, void *buf)
{
    return SysReg::instance().read(index, buf);
}

int SysReg_Write(unsigned index, const void *buf, unsigned len)
{
    return SysReg::instance().write(index, buf, len);
}

int SysReg_WriteNotify(unsigned index, const void *buf, unsigned len)
{
    return SysReg::instance().writeNotify(index, buf, len);
}

bool SysReg_IsRegIdx(unsigned index, RegBase *reg)
{
    return SysReg::instance().isRegIdx(index, reg);
}

quint32 SysReg_ReadValue(unsigned index)
{
    // Room for the longest register of the table, whatever its length.
    quint8 bytes[256] = {};
    const RegBase *reg = SysReg_LoadReg(index);
    if (!reg || reg->length > sizeof bytes || SysReg_Read(index, bytes) != 0)
        return 0;
    return quint32(bytes[0]) | quint32(bytes[1]) << 8 | quint32(bytes[2]) << 16 | quint32(bytes[3]) << 24;
}
