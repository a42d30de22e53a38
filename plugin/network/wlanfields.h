#ifndef WLANFIELDS_H
#define WLANFIELDS_H

#include "flash_wr_1.h"

namespace Ui {
class WirelessWgtUI;
}

// The WLAN page's address block: IP, mask and gateway with their labels,
// and the two DNS fields, filled from the record, the host's registers or
// the resolver file. Fields are written only when their text changes.
namespace WlanFields {

// IP, mask and gateway show "0.0.0.0"; with `withDns` the DNS fields too.
void clear(Ui::WirelessWgtUI *ui, bool withDns = false);

// The WLAN values of the device record, "%d.%d.%d.%d" lowest byte first.
void showRecord(Ui::WirelessWgtUI *ui, const EEInfoDetail::Flash_WR_1 &record);

// The addresses the host keeps in registers 106, 109 and 108.
void showRegisters(Ui::WirelessWgtUI *ui);

// The WLAN's name servers from the resolver file; a file that cannot be
// read leaves the fields as they are.
void showDns(Ui::WirelessWgtUI *ui);

// The three address rows, labels included: editable only while static.
void setAddressBlockEnabled(Ui::WirelessWgtUI *ui, bool enabled);

} // namespace WlanFields

#endif // WLANFIELDS_H
