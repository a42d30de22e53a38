#ifndef WLANCONNECTREQUEST_H
#define WLANCONNECTREQUEST_H

#include <QByteArray>
#include <QString>

// Asks the host application to join a WLAN: the network's name and pass
// phrase go into their registers, then the request flag is raised and the
// state reset, each announced to the host, in that order.
namespace WlanConnectRequest {

// A text as its register stores it: the local 8-bit form, cut to as many
// bytes as the text has characters (the count the host has always been
// handed), then to the register's size, padded with zeros to that size.
QByteArray registerText(const QString &text, int registerLength);

// Registers 103 (name), 104 (pass phrase), 101 (1), 100 (0).
void send(const QString &ssid, const QString &password);

} // namespace WlanConnectRequest

#endif // WLANCONNECTREQUEST_H
