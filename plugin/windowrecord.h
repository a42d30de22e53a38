#ifndef WINDOWRECORD_H
#define WINDOWRECORD_H

#include "flash_wr_1.h"

// The settings window's copy of the read-write device record, into which
// the pages' changes are merged before the record goes back to the device.
//
// A copy that came from a failed or short read of the device image holds
// stale bytes, so it is never written as it is: before the next write it is
// refreshed from a whole read, and only the fields a page changed meanwhile
// are put over the fresh record. The same happens when the record was
// written past the window since the copy was taken (the WLAN page keeps its
// addresses in the record itself): the window's copy of those fields is
// old, and writing it whole would put them back. Otherwise nothing extra is
// read.
class WindowRecord
{
public:
    // Which fields a page's change concerns; the values of the window's
    // record-change types.
    enum Part { WholeRecord = 0, Brightness = 1, IpAddress = 2, SubnetMask = 3, Gateway = 4 };

    // Reads the record from the device.
    void load();

    // Copies the fields of `part` from a page's record into the copy. False
    // (and nothing copied) for an unknown part.
    bool merge(const EEInfoDetail::Flash_WR_1 &page, int part);

    // Writes the copy to the device, first refreshing it when it is stale.
    // Nothing is written while no whole read can be had.
    void write();

    EEInfoDetail::Flash_WR_1 &record() { return m_record; }
    bool isStale() const { return m_stale; }

private:
    static void copyPart(const EEInfoDetail::Flash_WR_1 &from, EEInfoDetail::Flash_WR_1 &to, int part);
    bool refresh();
    void noteDeviceWrites();

    EEInfoDetail::Flash_WR_1 m_record {};
    bool m_stale = false;
    // Parts merged while the copy was stale, one bit per part.
    unsigned m_changedWhileStale = 0;
    // Parts merged since the copy was last loaded or written.
    unsigned m_changedSinceSync = 0;
    // The device's write count when the copy was last loaded or written.
    quint64 m_deviceWrites = 0;
};

#endif // WINDOWRECORD_H
