#ifndef MOBILESTATUS_H
#define MOBILESTATUS_H

#include <QString>

// What the 4G page shows for the host application's link registers: the
// signal picture by register 124 and the status text by register 125.
namespace MobileStatus {

enum Link : unsigned { NotConnected = 0, Connecting = 1, Connected = 2 };

// The picture of no signal, also shown whenever the link is not up.
extern const char NoSignalPicture[];    // ":/Resources/connect_6.svg"
constexpr unsigned MaxSignal = 100;

// The picture for `value` (0..100); the numbering runs against the strength.
// Above 100 the reading is not a signal value, and `previous` stays.
QString signalPicture(unsigned value, const QString &previous);

// The untranslated status text of `state` (context "MobileNetworkUI"), or
// null for a state the page does not show, which leaves the label as it is.
const char *statusText(unsigned state);

} // namespace MobileStatus

#endif // MOBILESTATUS_H
