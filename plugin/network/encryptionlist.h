#ifndef ENCRYPTIONLIST_H
#define ENCRYPTIONLIST_H

#include <QString>

// The encryption list the host application writes with each scan
// ("/tmp/wifiEnc"): a line per network, the SSID, a "+" and a flag that is
// "1" for a network that needs a password.
namespace EncryptionList {

enum Kind { NotListed, Protected, Open };

// The kind given by the first line whose text before its first "+" equals
// `ssid`. An SSID that itself holds a "+" therefore never matches.
Kind lookup(const QString &text, const QString &ssid);

} // namespace EncryptionList

#endif // ENCRYPTIONLIST_H
