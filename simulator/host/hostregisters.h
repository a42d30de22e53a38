#ifndef HOSTREGISTERS_H
#define HOSTREGISTERS_H

#include "registerreader.h"

#include <QByteArray>
#include <QString>

// The host application's hand on the state registers it keeps for the
// pages (WLAN, 4G and VPN state, leased addresses): values are stored at the
// register's place in its memory file under the same byte-range lock the
// plug-in takes, and never announced, since the pages poll them. Only word
// registers are written: every register the host keeps is one.
class HostRegisters
{
public:
    explicit HostRegisters(const QString &root);

    QString root() const { return m_root; }
    const RegisterReader &reader() const { return m_reader; }

    // The stored bytes (the table's length); empty when unreadable.
    QByteArray bytes(unsigned index) const;
    // Little-endian value of a register of at most 8 bytes; 0 when unreadable.
    quint64 number(unsigned index) const;
    // Bit 0 of the register.
    bool flag(unsigned index) const { return number(index) & 1; }

    // Pads with NULs or cuts to the table's length. False (with the reason
    // in lastError()) when the register is unknown, a bit register, or the
    // file cannot be written.
    bool write(unsigned index, const QByteArray &value);
    bool writeNumber(unsigned index, quint64 value);
    // "a.b.c.d" as four little-endian u16, first octet first; anything
    // that is no address clears the register.
    bool writeAddress(unsigned index, const QString &dotted);
    QString lastError() const { return m_error; }

    static QByteArray addressWords(const QString &dotted);
    static QString addressFromWords(const QByteArray &words);

private:
    QString m_root;
    RegisterReader m_reader;
    QString m_error;
};

#endif // HOSTREGISTERS_H
