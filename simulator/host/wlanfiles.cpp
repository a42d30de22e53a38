#include "wlanfiles.h"

#include <QTextCodec>

namespace WlanFiles {

namespace {

QTextCodec *panelCodec()
{
    static QTextCodec *const codec = QTextCodec::codecForName("GB2312");
    return codec;
}

// A slot keeps its last byte for the NUL; a cut never splits a GB2312
// character in two.
QByteArray slotText(const QString &text, int slotSize)
{
    QString kept = text;
    QByteArray bytes = encode(kept);
    while (bytes.size() > slotSize - 1) {
        kept.chop(1);
        bytes = encode(kept);
    }
    return bytes;
}

} // namespace

QByteArray encode(const QString &text)
{
    QTextCodec *codec = panelCodec();
    return codec ? codec->fromUnicode(text) : text.toLocal8Bit();
}

QString decode(const QByteArray &bytes)
{
    const int end = bytes.indexOf('\0');
    const QByteArray text = end < 0 ? bytes : bytes.left(end);
    QTextCodec *codec = panelCodec();
    return codec ? codec->toUnicode(text) : QString::fromLocal8Bit(text);
}

QByteArray scanList(const QList<SimNetwork> &networks)
{
    QByteArray text;
    for (const SimNetwork &network : networks) {
        const int quality = qBound(0, network.quality, 99);
        text += encode(network.ssid) + QByteArray::number(quality).rightJustified(2, '0') + "\r\n";
    }
    return text;
}

QByteArray encryptionList(const QList<SimNetwork> &networks)
{
    QByteArray text;
    for (const SimNetwork &network : networks)
        text += encode(network.ssid) + (network.isOpen() ? "+0\n" : "+1\n");
    return text;
}

QByteArray passwordTable(const QList<SavedPassword> &saved)
{
    QByteArray table(TableSize, '\0');
    for (int i = 0; i < qMin(Slots, saved.size()); ++i) {
        const QByteArray ssid = slotText(saved.at(i).ssid, SsidSlotSize);
        const QByteArray password = slotText(saved.at(i).password, PasswordSlotSize);
        table.replace(i * SsidSlotSize, ssid.size(), ssid);
        table.replace(Slots * SsidSlotSize + i * PasswordSlotSize, password.size(), password);
    }
    return table;
}

QList<SavedPassword> parsePasswordTable(const QByteArray &table)
{
    QList<SavedPassword> saved;
    if (table.size() < TableSize)
        return saved;
    for (int i = 0; i < Slots; ++i) {
        const QString ssid = decode(table.mid(i * SsidSlotSize, SsidSlotSize));
        if (ssid.isEmpty())
            continue;
        saved << SavedPassword{ssid, decode(table.mid(Slots * SsidSlotSize + i * PasswordSlotSize, PasswordSlotSize))};
    }
    return saved;
}

QList<SavedPassword> remember(QList<SavedPassword> saved, const QString &ssid, const QString &password)
{
    for (SavedPassword &entry : saved) {
        if (entry.ssid == ssid) {
            entry.password = password;
            return saved;
        }
    }
    while (saved.size() >= Slots)
        saved.removeFirst();
    saved << SavedPassword{ssid, password};
    return saved;
}

QList<SavedPassword> forget(QList<SavedPassword> saved, const QString &ssid)
{
    for (int i = saved.size() - 1; i >= 0; --i) {
        if (saved.at(i).ssid == ssid)
            saved.removeAt(i);
    }
    return saved;
}

} // namespace WlanFiles
