#include "xvfbserver.h"
#include "simulatorlog.h"

#include <QElapsedTimer>
#include <QStandardPaths>

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace {

const int StartTimeoutMs = 15000;

} // namespace

XvfbServer::~XvfbServer()
{
    stop();
}

bool XvfbServer::available()
{
    return !QStandardPaths::findExecutable(QStringLiteral("Xvfb")).isEmpty();
}

bool XvfbServer::start(const QSize &screenSize, QString *error)
{
    int fds[2];
    if (::pipe(fds) != 0) {
        *error = QStringLiteral("cannot create a pipe for Xvfb");
        return false;
    }
    // Only the write end may reach Xvfb: QProcess passes on descriptors
    // without close-on-exec, which is how -displayfd gets its pipe.
    ::fcntl(fds[0], F_SETFD, FD_CLOEXEC);
    const QString screen = QStringLiteral("%1x%2x24").arg(screenSize.width()).arg(screenSize.height());
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start(QStringLiteral("Xvfb"),
                    {QStringLiteral("-displayfd"), QString::number(fds[1]),
                     QStringLiteral("-screen"), QStringLiteral("0"), screen,
                     QStringLiteral("-nolisten"), QStringLiteral("tcp")});
    const bool started = m_process.waitForStarted(StartTimeoutMs);
    ::close(fds[1]);
    const bool ok = started && readDisplayNumber(fds[0], error);
    ::close(fds[0]);
    if (!started)
        *error = QStringLiteral("cannot start Xvfb: %1").arg(m_process.errorString());
    if (!ok) {
        stop();
        return false;
    }
    qCInfo(lcSimulator).noquote() << "Xvfb" << m_display << "screen" << screen;
    return true;
}

bool XvfbServer::readDisplayNumber(int fd, QString *error)
{
    QByteArray text;
    QElapsedTimer clock;
    clock.start();
    while (!text.contains('\n') && clock.elapsed() < StartTimeoutMs) {
        struct pollfd ready = {fd, POLLIN, 0};
        const int events = ::poll(&ready, 1, 200);
        if (events < 0 && errno != EINTR)
            break;
        if (events <= 0)
            continue;
        char buffer[32];
        const ssize_t got = ::read(fd, buffer, sizeof buffer);
        if (got <= 0)
            break;   // Xvfb closed the pipe without a number: it failed
        text.append(buffer, static_cast<int>(got));
    }
    bool ok = false;
    const int number = text.trimmed().toInt(&ok);
    if (!ok || !text.contains('\n')) {
        m_process.waitForFinished(1000);
        *error = QStringLiteral("Xvfb reported no display: %1")
                     .arg(QString::fromLocal8Bit(m_process.readAll()).trimmed());
        return false;
    }
    m_display = QStringLiteral(":%1").arg(number);
    return true;
}

void XvfbServer::stop()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(5000)) {
        m_process.kill();
        m_process.waitForFinished(2000);
    }
    m_display.clear();
}
