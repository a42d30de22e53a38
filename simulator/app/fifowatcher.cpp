#include "fifowatcher.h"
#include "simulatorlog.h"

#include <QFile>
#include <QFileInfo>
#include <QSocketNotifier>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

FifoWatcher::FifoWatcher(const QString &path, int messageSize, QObject *parent)
    : QObject(parent)
    , m_path(path)
    , m_messageSize(messageSize)
{
}

FifoWatcher::~FifoWatcher()
{
    closeFifo();
}

bool FifoWatcher::open(QString *error)
{
    const QByteArray name = QFile::encodeName(m_path);
    if (!QFileInfo::exists(m_path) && ::mkfifo(name.constData(), 0666) != 0) {
        *error = QStringLiteral("cannot create FIFO %1: %2").arg(m_path, QString::fromLocal8Bit(strerror(errno)));
        return false;
    }
    m_readFd = ::open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (m_readFd < 0) {
        *error = QStringLiteral("cannot open FIFO %1: %2").arg(m_path, QString::fromLocal8Bit(strerror(errno)));
        return false;
    }
    // The plug-in opens the FIFO per message and closes it again, so the
    // read end would see end-of-file after every message and, in the short
    // gap while it is reopened, a writer would find no reader and lose its
    // notification. Holding a write end of our own avoids both.
    m_keepAliveFd = ::open(name.constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (m_keepAliveFd < 0)
        qCDebug(lcSimulator) << "no keep-alive writer for" << m_path << strerror(errno);
    m_notifier = new QSocketNotifier(m_readFd, QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &FifoWatcher::onReadable);
    return true;
}

void FifoWatcher::closeFifo()
{
    if (m_notifier) {
        // May run inside the notifier's own signal: let the loop delete it.
        m_notifier->setEnabled(false);
        m_notifier->deleteLater();
        m_notifier = nullptr;
    }
    if (m_keepAliveFd >= 0)
        ::close(m_keepAliveFd);
    if (m_readFd >= 0)
        ::close(m_readFd);
    m_keepAliveFd = -1;
    m_readFd = -1;
}

void FifoWatcher::reopen()
{
    closeFifo();
    // Every writer sends whole messages; a remainder after end-of-file is
    // a broken message and must not prefix the next writer's one.
    if (!m_pending.isEmpty())
        qCWarning(lcSimulator) << "dropping" << m_pending.size() << "stray bytes from" << m_path;
    m_pending.clear();
    QString error;
    if (!open(&error))
        qCWarning(lcSimulator).noquote() << error;
}

void FifoWatcher::onReadable()
{
    bool endOfFile = false;
    char buffer[4096];
    for (;;) {
        const ssize_t got = ::read(m_readFd, buffer, sizeof buffer);
        if (got > 0) {
            m_pending.append(buffer, static_cast<int>(got));
            continue;
        }
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0 && errno != EAGAIN && errno != EWOULDBLOCK)
            qCWarning(lcSimulator) << "reading" << m_path << "failed:" << strerror(errno);
        endOfFile = got == 0 || (errno != EAGAIN && errno != EWOULDBLOCK);
        break;
    }
    while (m_pending.size() >= m_messageSize) {
        const QByteArray message = m_pending.left(m_messageSize);
        m_pending.remove(0, m_messageSize);
        emit messageReceived(message);
    }
    if (endOfFile) {
        qCDebug(lcSimulator) << "end of file on" << m_path << "- reopening";
        reopen();
    }
}
