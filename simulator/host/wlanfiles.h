#ifndef WLANFILES_H
#define WLANFILES_H

#include <QByteArray>
#include <QList>
#include <QString>

// A network the simulated WLAN radio finds. An empty password makes it an
// open network.
struct SimNetwork
{
    QString ssid;
    int quality = 0;       // 0..99
    QString password;
    bool isOpen() const { return password.isEmpty(); }
};

struct SavedPassword
{
    QString ssid;
    QString password;
    bool operator==(const SavedPassword &other) const
    {
        return ssid == other.ssid && password == other.password;
    }
};

// The files the host application writes for the WLAN page, as bytes:
// "/tmp/scan_parse" (GB2312, "\r\n" lines, the SSID followed at once by a
// two-digit quality), "/tmp/wifiEnc" ("ssid+1" for a network that needs
// a password, "ssid+0" for an open one) and the saved-password table
// "/hmi_data/WiFipassword" (480 bytes: five 32-byte SSID slots, then five
// 64-byte password slots, each NUL-terminated).
namespace WlanFiles {

constexpr int TableSize = 480;
constexpr int Slots = 5;
constexpr int SsidSlotSize = 32;
constexpr int PasswordSlotSize = 64;

// The panel's 8-bit text: GB2312, as the page decodes it.
QByteArray encode(const QString &text);
// Up to the first NUL.
QString decode(const QByteArray &bytes);

QByteArray scanList(const QList<SimNetwork> &networks);
QByteArray encryptionList(const QList<SimNetwork> &networks);

QByteArray passwordTable(const QList<SavedPassword> &saved);
QList<SavedPassword> parsePasswordTable(const QByteArray &table);
// The table after a good connection: the network's slot is updated, or it
// takes a free one, or the oldest entry (slot 1) gives way.
QList<SavedPassword> remember(QList<SavedPassword> saved, const QString &ssid, const QString &password);
QList<SavedPassword> forget(QList<SavedPassword> saved, const QString &ssid);

} // namespace WlanFiles

#endif // WLANFILES_H
