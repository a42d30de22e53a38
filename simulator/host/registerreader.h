#ifndef REGISTERREADER_H
#define REGISTERREADER_H

#include <QByteArray>
#include <QString>

// The host application's view of the system-register memory files below a
// panel root. It carries its own copy of the register table on purpose: the
// simulator plays the host, and an independent reader catches a plug-in
// that stores a register at the wrong place instead of sharing its bug.
class RegisterReader
{
public:
    struct Location {
        unsigned area = 0;
        unsigned offset = 0;   // byte in a word area, bit in a bit area
        unsigned length = 0;   // bytes in a word area, bits in a bit area
    };

    explicit RegisterReader(const QString &root);

    static constexpr unsigned RegisterCount = 136;
    static bool locate(unsigned index, Location *where);
    static bool isBitArea(unsigned area) { return area % 2 == 0; }

    // The memory file of an area (1..9) below the root; empty if unknown.
    QString areaFile(unsigned area) const;

    // Reads a slice. Bit areas come back shifted down to bit 0 of the first
    // byte with the bits above `length` cleared.
    bool readLocal(const Location &where, QByteArray *value, QString *error) const;

    // Register value as an integer (registers of at most 8 bytes).
    bool readNumber(unsigned index, quint64 *value, QString *error) const;

    // "register 20 = 1", "register 103 = \"Office\"" or the error.
    QString describeRegister(unsigned index) const;
    // "area 6 offset 16 length 1 = 0".
    QString describeLocal(const Location &where) const;

    static QString formatValue(const Location &where, const QByteArray &value);

private:
    bool readBytes(const QString &file, qint64 start, int count,
                   QByteArray *bytes, QString *error) const;

    QString m_root;
};

#endif // REGISTERREADER_H
