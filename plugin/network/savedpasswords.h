#ifndef SAVEDPASSWORDS_H
#define SAVEDPASSWORDS_H

#include <QByteArray>
#include <QString>

// The passwords the host application keeps for networks joined before
// ("/hmi_data/WiFipassword"): 480 bytes, five 32-byte SSID slots, then five
// 64-byte password slots; SSID slot i goes with password slot i. A slot is
// NUL-terminated text; an empty slot is all zero.
namespace SavedPasswords {

constexpr int SlotCount = 5;
constexpr int SsidSlotSize = 32;
constexpr int PasswordSlotSize = 64;
constexpr int TableSize = SlotCount * (SsidSlotSize + PasswordSlotSize);   // 480

struct Result
{
    bool found = false;
    QByteArray password;        // the slot's bytes up to its NUL
};

// The password of the first SSID slot equal to `ssid`. A table shorter than
// TableSize counts as padded with zeros, bytes after it are never looked
// at; a slot without NUL ends at the slot's end. Empty slots name no
// network, so they never match.
Result lookup(const QByteArray &table, const QString &ssid);

// The first TableSize bytes of the file below the panel root. False when it
// cannot be opened (or is no plain file).
bool readFile(const QString &panelPath, QByteArray *table);

} // namespace SavedPasswords

#endif // SAVEDPASSWORDS_H
