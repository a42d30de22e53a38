#ifndef WLANADDRESSING_H
#define WLANADDRESSING_H

#include "commandtext.h"

#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <initializer_list>
#include <utility>
#include <vector>

// How "wlan0" gets its address: the user's static values applied with
// ifconfig/route and kept in the device record and the host's registers,
// or a DHCP client whose lease is copied there.
namespace WlanAddressing {

enum ValueType { Address = 0, Mask = 1, Gateway = 2, FirstDns = 3, BackupDns = 4 };

// Route metric of the WLAN's default route: 0 while the WLAN is the chosen
// default adapter (register 78), 100 otherwise.
constexpr int PreferredMetric = 0;
constexpr int OtherMetric = 100;
bool isDefaultAdapter(int defaultAdapter, bool secondPort);

// First three numbers of a dotted IPv4 address, for the gateway at host 1
// of its /24. False for anything that is no dotted IPv4 address.
bool networkPrefix(const QString &address, int prefix[3]);

// "%d.%d.%d.%d" of a record value, lowest byte first.
QString recordText(quint32 value);

// Applies an edited IP, mask or gateway to wlan0 and stores it in register
// and device record. A value that is no dotted IPv4 address reaches no
// command, but is still stored as its numbers.
void apply(ValueType type, const QString &value);

// The commands apply() runs for a value, in order; those whose value is
// no dotted IPv4 address are invalid and are not run.
std::vector<CommandText> applyCommands(ValueType type, const QString &value);

// The route commands of a lease of `address`; none when it is no dotted
// IPv4 address.
std::vector<CommandText> leaseCommands(const QString &address, int defaultAdapter, bool secondPort);

// Stores a value at a byte offset of the device's Flash_WR_1 record.
void storeInRecord(int offset, quint32 value);
// Several fields in one read-modify-write of the record.
void storeInRecord(std::initializer_list<std::pair<int, quint32>> fields);

// Stops the WLAN's DHCP client named by "/var/run/udhcpc2.pid".
void stopDhcpClient();
// Starts it in the background.
void startDhcpClient();

// Copies a lease (address, mask) to registers and record and points the
// default route at host 1 of the address's /24. False (nothing done) when
// the address is no dotted IPv4 address.
bool applyLease(const QStringList &lease, int defaultAdapter, bool secondPort);

// Registers 106, 109 and 108: eight zero bytes each.
void clearRegisters();
// Registers 106, 108 and 109 from dotted texts, announced.
void storeRegisters(const QString &address, const QString &mask, const QString &gateway);

// Creates "/tmp/ResetWifiFlag" for the host application, then clears the
// address registers and the SSID and password. False, with nothing
// cleared, when the flag cannot be created.
bool requestReset();

// The WLAN's first and backup name servers from the resolver file
// ("0.0.0.0" for a missing line). False when the file cannot be read.
bool readDnsServers(QString servers[2]);

} // namespace WlanAddressing

#endif // WLANADDRESSING_H
