#ifndef OUTERNETWORK_H
#define OUTERNETWORK_H

#include <QString>

// The world beyond the simulated panel, which the outer-network test pings:
// with the recording stand-ins a choice kept in the panel's state folder,
// inside the private network lab the far side's links themselves.
namespace OuterNetwork {

bool set(bool up, QString *error);

} // namespace OuterNetwork

#endif // OUTERNETWORK_H
