#ifndef REGBASE_H
#define REGBASE_H

#include <QtGlobal>

// One system register: which slice of which host file holds it. The layout
// matches the host application's own table entry.
struct RegBase
{
    static constexpr quint32 ValidMarker = 0xEA60EA60u;

    quint32 reserved;   // always 0
    quint32 marker;     // ValidMarker in every built entry
    quint16 index;
    quint16 area;       // LocalArea
    quint32 offset;     // bytes in a word file, bits in a bit file
    quint32 length;     // bytes in a word file, bits in a bit file
};

#endif // REGBASE_H
