#include "flash_wr_1.h"

namespace EEInfoDetail {

// The MAC addresses straddle firmware pieces (u16, u32, u16 from offset 31
// and 164); the pieces, not the named fields, decide how bytes move.
const CopyUnit Flash_WR_1::units[] = {
    {0, 4},   {4, 2},   {6, 2},   {8, 2},   {10, 16}, {26, 2},  {28, 1},
    {29, 2},  {31, 2},  {33, 4},  {37, 2},  {39, 2},  {41, 4},  {45, 4},
    {49, 4},  {53, 2},  {55, 2},  {57, 4},  {61, 16}, {77, 40}, {117, 4},
    {121, 4}, {125, 2}, {127, 2}, {129, 4}, {133, 4}, {137, 4}, {141, 16},
    {157, 1}, {158, 6}, {164, 2}, {166, 4}, {170, 2}, {172, 2}, {174, 4},
    {178, 4}, {182, 4}, {186, 1},
};
const int Flash_WR_1::unitCount = sizeof(units) / sizeof(units[0]);

} // namespace EEInfoDetail
