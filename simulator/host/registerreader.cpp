#include "registerreader.h"

#include <QFile>
#include <QTextCodec>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace {

// (area, offset, length) of registers 0..135; the layout is the contract
// between the host application and the plug-in.
const unsigned short kTable[RegisterReader::RegisterCount][3] = {
    {5, 0, 2}, {5, 2, 2}, {5, 4, 2}, {5, 6, 2}, {5, 8, 2}, {5, 10, 2},  // 0
    {5, 12, 2}, {5, 14, 1}, {5, 15, 4}, {5, 19, 1}, {5, 900, 21}, {5, 922, 21},  // 6
    {7, 164, 1}, {5, 76, 1}, {5, 77, 2}, {8, 16, 1}, {5, 79, 31}, {5, 267, 1},  // 12
    {5, 268, 15}, {7, 165, 4}, {7, 169, 1}, {5, 129, 31}, {5, 113, 15}, {5, 284, 31},  // 18
    {5, 348, 31}, {5, 161, 31}, {5, 193, 2}, {5, 195, 31}, {5, 380, 31}, {5, 316, 31},  // 24
    {5, 227, 15}, {5, 243, 15}, {5, 259, 2}, {5, 261, 2}, {6, 2, 1}, {5, 263, 2},  // 30
    {5, 265, 2}, {6, 3, 1}, {7, 170, 4}, {6, 12, 1}, {5, 412, 31}, {5, 444, 31},  // 36
    {5, 476, 31}, {5, 508, 1}, {5, 509, 31}, {5, 541, 15}, {5, 557, 31}, {5, 589, 15},  // 42
    {5, 605, 63}, {5, 669, 63}, {5, 733, 1}, {5, 734, 1}, {5, 735, 2}, {5, 737, 2},  // 48
    {5, 739, 2}, {5, 741, 2}, {5, 743, 2}, {5, 745, 2}, {5, 747, 2}, {5, 749, 2},  // 54
    {5, 751, 8}, {5, 759, 12}, {5, 771, 8}, {5, 779, 8}, {5, 787, 8}, {5, 795, 8},  // 60
    {8, 13, 1}, {8, 20, 1}, {6, 18, 1}, {5, 803, 8}, {5, 811, 12}, {5, 823, 8},  // 66
    {5, 831, 8}, {5, 839, 8}, {5, 847, 8}, {8, 14, 1}, {8, 21, 1}, {6, 19, 1},  // 72
    {7, 180, 1}, {8, 17, 1}, {8, 1, 1}, {6, 13, 1}, {5, 950, 31}, {6, 14, 1},  // 78
    {5, 990, 31}, {6, 15, 1}, {6, 16, 1}, {6, 17, 1}, {5, 1030, 63}, {5, 1100, 2},  // 84
    {5, 1104, 4}, {5, 1108, 4}, {7, 190, 31}, {5, 1120, 31}, {5, 1164, 1}, {5, 1160, 4},  // 90
    {6, 20, 1}, {5, 1170, 255}, {8, 18, 1}, {6, 23, 1}, {5, 1550, 1}, {6, 21, 1},  // 96
    {8, 19, 1}, {5, 1450, 32}, {5, 1910, 63}, {5, 1902, 1}, {5, 1514, 8}, {5, 1522, 12},  // 102
    {5, 1534, 8}, {5, 1542, 8}, {5, 1552, 255}, {5, 1900, 1}, {5, 1901, 1}, {5, 1551, 1},  // 108
    {6, 22, 1}, {5, 20, 31}, {7, 240, 1}, {8, 22, 1}, {5, 1903, 1}, {5, 1980, 8},  // 114
    {6, 24, 1}, {8, 23, 1}, {8, 24, 1}, {6, 25, 1}, {5, 2000, 1}, {5, 2001, 1},  // 120
    {5, 2002, 2}, {5, 2004, 1}, {5, 2005, 4}, {5, 2009, 2}, {5, 2011, 20}, {5, 2031, 22},  // 126
    {5, 2055, 66}, {5, 2125, 1}, {7, 241, 1}, {7, 242, 1},  // 132
};

const char *const kAreaFiles[] = {
    nullptr, "/tmp/mw.dat", "/tmp/mb.dat", "/hmi_data/fw.dat", "/hmi_data/fb.dat",
    "/tmp/smw.dat", "/tmp/smb.dat", "/hmi_data/sfw.dat", "/hmi_data/sfb.dat",
    "/hmi_data/rw.dat",
};

// Text registers (network names, pass phrases) are shown as text when
// everything up to the first NUL decodes cleanly, as UTF-8 or as the
// panel's GB2312, and only NULs follow; the rest as hex bytes.
QString registerText(const QByteArray &bytes, bool *isText)
{
    *isText = false;
    const int end = bytes.indexOf('\0') < 0 ? bytes.size() : bytes.indexOf('\0');
    for (int i = 0; i < end; ++i) {
        const unsigned char c = static_cast<unsigned char>(bytes.at(i));
        if (c < 0x20 || c == 0x7f)
            return QString();
    }
    for (int i = end; i < bytes.size(); ++i) {
        if (bytes.at(i) != '\0')
            return QString();
    }
    const QByteArray text = bytes.left(end);
    for (const char *name : {"UTF-8", "GB2312"}) {
        QTextCodec *codec = QTextCodec::codecForName(name);
        QTextCodec::ConverterState state;
        const QString decoded = codec ? codec->toUnicode(text.constData(), text.size(), &state) : QString();
        // A cut-off character leaves no trace in the state: the bytes must come back.
        if (codec && state.invalidChars == 0 && codec->fromUnicode(decoded) == text) {
            *isText = true;
            return decoded;
        }
    }
    return QString();
}

quint64 littleEndian(const QByteArray &bytes)
{
    quint64 value = 0;
    for (int i = qMin(bytes.size(), 8) - 1; i >= 0; --i)
        value = (value << 8) | static_cast<unsigned char>(bytes.at(i));
    return value;
}

} // namespace

RegisterReader::RegisterReader(const QString &root)
    : m_root(root)
{
}

bool RegisterReader::locate(unsigned index, Location *where)
{
    if (index >= RegisterCount || !where)
        return false;
    where->area = kTable[index][0];
    where->offset = kTable[index][1];
    where->length = kTable[index][2];
    return true;
}

QString RegisterReader::areaFile(unsigned area) const
{
    if (area < 1 || area > 9)
        return QString();
    return m_root + QLatin1String(kAreaFiles[area]);
}

bool RegisterReader::readBytes(const QString &file, qint64 start, int count,
                               QByteArray *bytes, QString *error) const
{
    const QByteArray name = QFile::encodeName(file);
    const int fd = ::open(name.constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        *error = QStringLiteral("cannot open %1: %2").arg(file, QString::fromLocal8Bit(strerror(errno)));
        return false;
    }
    // A shared lock waits for a writer's lockf() on the same bytes, so a
    // half-written register is never shown.
    struct flock lock = {};
    lock.l_type = F_RDLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = start;
    lock.l_len = count;
    ::fcntl(fd, F_SETLKW, &lock);
    bytes->resize(count);
    const ssize_t got = ::pread(fd, bytes->data(), static_cast<size_t>(count), start);
    lock.l_type = F_UNLCK;
    ::fcntl(fd, F_SETLK, &lock);
    ::close(fd);
    if (got != count) {
        *error = QStringLiteral("short read from %1").arg(file);
        return false;
    }
    return true;
}

bool RegisterReader::readLocal(const Location &where, QByteArray *value, QString *error) const
{
    const QString file = areaFile(where.area);
    if (file.isEmpty() || where.length == 0) {
        *error = QStringLiteral("no area %1").arg(where.area);
        return false;
    }
    if (!isBitArea(where.area))
        return readBytes(file, where.offset, static_cast<int>(where.length), value, error);

    const unsigned shift = where.offset % 8;
    const int covering = static_cast<int>((where.length + 7 + shift) / 8);
    QByteArray raw;
    if (!readBytes(file, where.offset / 8, covering, &raw, error))
        return false;
    value->fill('\0', static_cast<int>((where.length + 7) / 8));
    for (unsigned i = 0; i < where.length; ++i) {
        const unsigned source = shift + i;
        if (raw.at(static_cast<int>(source / 8)) & (1 << (source % 8)))
            value->data()[i / 8] = static_cast<char>(value->at(static_cast<int>(i / 8)) | (1 << (i % 8)));
    }
    return true;
}

bool RegisterReader::readNumber(unsigned index, quint64 *value, QString *error) const
{
    Location where;
    if (!locate(index, &where)) {
        *error = QStringLiteral("no register %1").arg(index);
        return false;
    }
    QByteArray bytes;
    if (!readLocal(where, &bytes, error))
        return false;
    *value = littleEndian(bytes);
    return true;
}

QString RegisterReader::formatValue(const Location &where, const QByteArray &value)
{
    const bool small = isBitArea(where.area) ? where.length <= 64 : where.length <= 4;
    if (small)
        return QString::number(littleEndian(value));
    bool isText = false;
    const QString text = registerText(value, &isText);
    if (isText)
        return QLatin1Char('"') + text + QLatin1Char('"');
    return QString::fromLatin1(value.toHex(' '));
}

QString RegisterReader::describeRegister(unsigned index) const
{
    Location where;
    if (!locate(index, &where))
        return QStringLiteral("register %1 (not in the table)").arg(index);
    QByteArray value;
    QString error;
    if (!readLocal(where, &value, &error))
        return QStringLiteral("register %1 unreadable: %2").arg(index).arg(error);
    return QStringLiteral("register %1 = %2").arg(index).arg(formatValue(where, value));
}

QString RegisterReader::describeLocal(const Location &where) const
{
    const QString head = QStringLiteral("area %1 offset %2 length %3")
                             .arg(where.area).arg(where.offset).arg(where.length);
    QByteArray value;
    QString error;
    if (!readLocal(where, &value, &error))
        return head + QStringLiteral(" unreadable: ") + error;
    return head + QStringLiteral(" = ") + formatValue(where, value);
}
