#ifndef WLANADAPTERBOX_H
#define WLANADAPTERBOX_H

class QComboBox;

// The WLAN page's default-adapter list: an automatic row with no text,
// "wired network0", "wired network1" on a panel with the second port, and
// "wireless network" while the WLAN is switched on. Texts are translated
// in the page's context.
namespace WlanAdapterBox {

// Fills the list and selects `stored` (register 78), or row 0 when the
// list is shorter.
void fill(QComboBox *box, bool secondPort, bool wlanOn, int stored);

// Translates the texts again, keeping the rows and the selection.
void retranslate(QComboBox *box, bool wlanOn);

// Appends or removes the WLAN's row at the link position.
void setWlanShown(QComboBox *box, bool shown, bool secondPort);

} // namespace WlanAdapterBox

#endif // WLANADAPTERBOX_H
