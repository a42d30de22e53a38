#include "fiforeader.h"

#include <QFile>
#include <QtEndian>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

FifoReader::FifoReader(const QString &fifoPath)
{
    const QByteArray path = QFile::encodeName(fifoPath);
    if (::access(path.constData(), F_OK) != 0)
        ::mkfifo(path.constData(), 0666);
    m_fd = ::open(path.constData(), O_RDONLY | O_NONBLOCK);
}

FifoReader::~FifoReader()
{
    if (m_fd >= 0)
        ::close(m_fd);
}

QByteArray FifoReader::drain()
{
    QByteArray all;
    if (m_fd < 0)
        return all;
    char chunk[512];
    for (;;) {
        const ssize_t n = ::read(m_fd, chunk, sizeof chunk);
        if (n > 0)
            all.append(chunk, int(n));
        else if (n < 0 && errno == EINTR)
            continue;
        else
            break;
    }
    return all;
}

QList<quint32> FifoReader::registerIndices()
{
    const QByteArray data = drain();
    QList<quint32> indices;
    for (int i = 0; i + 4 <= data.size(); i += 4)
        indices << qFromLittleEndian<quint32>(data.constData() + i);
    return indices;
}

QList<std::array<quint32, 3>> FifoReader::localChanges()
{
    const QByteArray data = drain();
    QList<std::array<quint32, 3>> changes;
    for (int i = 0; i + 12 <= data.size(); i += 12) {
        changes << std::array<quint32, 3>{qFromLittleEndian<quint32>(data.constData() + i),
                                          qFromLittleEndian<quint32>(data.constData() + i + 4),
                                          qFromLittleEndian<quint32>(data.constData() + i + 8)};
    }
    return changes;
}
