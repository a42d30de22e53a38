#include "commandreader.h"

#include <QSocketNotifier>

#include <cerrno>
#include <unistd.h>

CommandReader::CommandReader(QObject *parent)
    : QObject(parent)
    , m_notifier(new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, this))
{
    connect(m_notifier, &QSocketNotifier::activated, this, &CommandReader::onReadable);
}

void CommandReader::onReadable()
{
    char buffer[512];
    // One read per wake-up: the notifier said there is data (or an end),
    // so this does not block.
    const ssize_t got = ::read(STDIN_FILENO, buffer, sizeof buffer);
    if (got < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    if (got <= 0) {
        m_notifier->setEnabled(false);
        emit inputEnded();
        return;
    }
    m_pending.append(buffer, static_cast<int>(got));
    int newline;
    while ((newline = m_pending.indexOf('\n')) >= 0) {
        const QString command = QString::fromLocal8Bit(m_pending.left(newline)).trimmed();
        m_pending.remove(0, newline + 1);
        if (!command.isEmpty())
            emit commandReceived(command);
    }
}
