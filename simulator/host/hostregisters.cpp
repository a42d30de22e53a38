#include "hostregisters.h"

#include <QFile>
#include <QStringList>
#include <QtEndian>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

HostRegisters::HostRegisters(const QString &root)
    : m_root(root)
    , m_reader(root)
{
}

QByteArray HostRegisters::bytes(unsigned index) const
{
    RegisterReader::Location where;
    QByteArray value;
    QString error;
    if (!RegisterReader::locate(index, &where) || !m_reader.readLocal(where, &value, &error))
        return QByteArray();
    return value;
}

quint64 HostRegisters::number(unsigned index) const
{
    quint64 value = 0;
    QString error;
    return m_reader.readNumber(index, &value, &error) ? value : 0;
}

bool HostRegisters::write(unsigned index, const QByteArray &value)
{
    RegisterReader::Location where;
    if (!RegisterReader::locate(index, &where) || RegisterReader::isBitArea(where.area)) {
        m_error = QStringLiteral("register %1 is no word register the host keeps").arg(index);
        return false;
    }
    QByteArray stored = value.left(int(where.length));
    stored.append(QByteArray(int(where.length) - stored.size(), '\0'));
    const QString file = m_reader.areaFile(where.area);
    const QByteArray name = QFile::encodeName(file);
    const int fd = ::open(name.constData(), O_WRONLY | O_CLOEXEC);
    if (fd < 0) {
        m_error = QStringLiteral("cannot open %1: %2").arg(file, QString::fromLocal8Bit(std::strerror(errno)));
        return false;
    }
    // The same lock the plug-in's reader takes: it never sees half a value.
    bool written = ::lseek(fd, where.offset, SEEK_SET) >= 0 && ::lockf(fd, F_LOCK, where.length) == 0;
    written = written && ::write(fd, stored.constData(), size_t(stored.size())) == stored.size();
    ::lseek(fd, where.offset, SEEK_SET);
    ::lockf(fd, F_ULOCK, where.length);
    ::close(fd);
    if (!written)
        m_error = QStringLiteral("cannot write register %1 in %2").arg(index).arg(file);
    return written;
}

bool HostRegisters::writeNumber(unsigned index, quint64 value)
{
    QByteArray bytes(8, '\0');
    qToLittleEndian(value, bytes.data());
    return write(index, bytes);
}

bool HostRegisters::writeAddress(unsigned index, const QString &dotted)
{
    return write(index, addressWords(dotted));
}

QByteArray HostRegisters::addressWords(const QString &dotted)
{
    QByteArray words(8, '\0');
    const QStringList parts = dotted.split(QLatin1Char('.'));
    if (parts.size() != 4)
        return words;
    for (int i = 0; i < 4; ++i) {
        bool ok = false;
        const uint octet = parts.at(i).toUInt(&ok);
        if (!ok || octet > 255)
            return QByteArray(8, '\0');
        qToLittleEndian(quint16(octet), words.data() + 2 * i);
    }
    return words;
}

QString HostRegisters::addressFromWords(const QByteArray &words)
{
    if (words.size() < 8)
        return QString();
    QStringList parts;
    for (int i = 0; i < 4; ++i)
        parts << QString::number(qFromLittleEndian<quint16>(words.constData() + 2 * i));
    return parts.join(QLatin1Char('.'));
}
