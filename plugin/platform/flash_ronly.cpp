#include "flash_ronly.h"

namespace EEInfoDetail {

const CopyUnit Flash_ROnly::units[] = {
    {0, 2},   {2, 2},   {4, 2},    {6, 1},   {7, 2},   {9, 1},    {10, 2},
    {12, 2},  {14, 2},  {16, 1},   {17, 1},  {18, 1},  {19, 2},   {21, 1},
    {22, 3},  {25, 2},  {27, 2},   {29, 4},  {33, 4},  {37, 4},   {41, 4},
    {45, 4},  {49, 4},  {53, 1},   {54, 16}, {70, 8},  {78, 1},   {79, 1},
    {80, 45}, {125, 123}, {248, 4}, {252, 4},
};
const int Flash_ROnly::unitCount = sizeof(units) / sizeof(units[0]);

static const quint8 *bytesOf(const Flash_ROnly *record)
{
    return reinterpret_cast<const quint8 *>(record);
}

int Flash_ROnly::widthFromBytes(quint8 low, quint8 high)
{
    return int(low) | (int(high >> 4) << 8);
}

int Flash_ROnly::screenWidth() const
{
    const quint8 *b = bytesOf(this);
    return widthFromBytes(b[WidthLowByteOffset], b[WidthHighByteOffset]);
}

void Flash_ROnly::setScreenWidth(int width)
{
    quint8 *b = reinterpret_cast<quint8 *>(this);
    b[WidthLowByteOffset] = quint8(width & 0xff);
    b[WidthHighByteOffset] = quint8((b[WidthHighByteOffset] & 0x0f)
                                    | (((width >> 8) & 0x0f) << 4));
}

bool Flash_ROnly::hasWlan() const
{
    return bytesOf(this)[WlanFittedByteOffset] & WlanFittedBit;
}

} // namespace EEInfoDetail
