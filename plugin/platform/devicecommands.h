#ifndef DEVICECOMMANDS_H
#define DEVICECOMMANDS_H

#include "commandtext.h"

#include <QtGlobal>

#include <string>

// The command texts behind EEInfoHandle's firmware and network operations,
// built but not run, so that what a value turns into can be examined
// without starting anything.
namespace DeviceCommands {

CommandText setBright(int level);
CommandText setBeep(bool longBeep);
CommandText address(int adapter, const std::string &address);
CommandText mask(int adapter, const std::string &mask);
CommandText gateway(const std::string &gateway);
CommandText up(int adapter);
// Sets the stored address (first dotted octet in the lowest byte) and
// brings the port up; the mask is left to the kernel's class default.
CommandText upWithAddress(int adapter, quint32 address);
CommandText down(int adapter);
CommandText reboot();
CommandText sync();

} // namespace DeviceCommands

#endif // DEVICECOMMANDS_H
