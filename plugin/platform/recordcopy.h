#ifndef RECORDCOPY_H
#define RECORDCOPY_H

#include <QtGlobal>

// The device image is written by firmware on a little-endian ARM board and
// the records below overlay it byte for byte; a big-endian build would read
// every multi-byte field swapped.
static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN,
              "device records assume a little-endian host");

namespace EEInfoDetail {

// Size of the whole device-information image the firmware tools exchange.
constexpr int ImageSize = 1024;

// One piece of a record as the firmware defines it: a u8, u16, u32 or a byte
// run at a record offset. Records are moved between image and structure
// piece by piece, in table order, so that the structure never depends on
// compiler padding and the bytes other programs own travel unchanged.
struct CopyUnit
{
    quint16 offset;
    quint16 width;
};

// Copies the listed units from `from` to `to` (both indexed by record offset).
void copyUnits(const CopyUnit *units, int count,
               const unsigned char *from, unsigned char *to);

// Total bytes the units cover when they tile the record without gaps or
// overlaps; -1 when they do not. Lets tests guard the tables.
int tiledSize(const CopyUnit *units, int count);

// Record <-> image at the record's base offset. `Record` provides ImageBase,
// Size, and the static unit table `units` with `unitCount` entries.
template<class Record>
void recordFromImage(Record &record, const unsigned char *image)
{
    copyUnits(Record::units, Record::unitCount, image + Record::ImageBase,
              reinterpret_cast<unsigned char *>(&record));
}

template<class Record>
void recordToImage(const Record &record, unsigned char *image)
{
    copyUnits(Record::units, Record::unitCount,
              reinterpret_cast<const unsigned char *>(&record),
              image + Record::ImageBase);
}

} // namespace EEInfoDetail

#endif // RECORDCOPY_H
