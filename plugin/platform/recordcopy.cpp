#include "recordcopy.h"

#include <cstring>

namespace EEInfoDetail {

void copyUnits(const CopyUnit *units, int count,
               const unsigned char *from, unsigned char *to)
{
    if (!units || !from || !to)
        return;
    for (int i = 0; i < count; ++i)
        std::memcpy(to + units[i].offset, from + units[i].offset, units[i].width);
}

int tiledSize(const CopyUnit *units, int count)
{
    if (!units)
        return -1;
    int next = 0;
    for (int i = 0; i < count; ++i) {
        if (units[i].offset != next || units[i].width == 0)
            return -1;
        next += units[i].width;
    }
    return next;
}

} // namespace EEInfoDetail
