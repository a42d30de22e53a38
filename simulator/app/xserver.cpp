#include "xserver.h"
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

XServer::XServer(Kind kind, QObject *parent)
    : QObject(parent)
    , m_kind(kind)
{
    connect(&m_process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this, [this]() {
        m_display.clear();
        if (!m_stopping)
            emit ended();
    });
    // Once running, the server's chatter is of no use and must not pile
    // up in memory over a long session.
    connect(&m_process, &QProcess::readyRead, this, [this]() {
        if (!m_display.isEmpty())
            m_process.readAll();
    });
}

XServer::~XServer()
{
    stop();
}

QString XServer::program(Kind kind)
{
    return kind == Kind::Virtual ? QStringLiteral("Xvfb") : QStringLiteral("Xephyr");
}

bool XServer::available(Kind kind)
{
    return !QStandardPaths::findExecutable(program(kind)).isEmpty();
}

QStringList XServer::arguments(const QSize &screenSize, int displayFd) const
{
    const QString size = QStringLiteral("%1x%2").arg(screenSize.width()).arg(screenSize.height());
    QStringList arguments{QStringLiteral("-displayfd"), QString::number(displayFd),
                          QStringLiteral("-nolisten"), QStringLiteral("tcp")};
    if (m_kind == Kind::Virtual)
        return arguments << QStringLiteral("-screen") << QStringLiteral("0") << size + QStringLiteral("x24");
    // No host grab: Ctrl+Shift would otherwise lock the user's keyboard and
    // mouse into the panel window.
    return arguments << QStringLiteral("-screen") << size
                     << QStringLiteral("-title") << QStringLiteral("Panel %1 (panel-simulator)").arg(size)
                     << QStringLiteral("-no-host-grab");
}

bool XServer::start(const QSize &screenSize, QString *error)
{
    int fds[2];
    if (::pipe(fds) != 0) {
        *error = QStringLiteral("cannot create a pipe for %1").arg(program(m_kind));
        return false;
    }
    // Only the write end may reach the server: QProcess passes on
    // descriptors without close-on-exec, which is how -displayfd gets its pipe.
    ::fcntl(fds[0], F_SETFD, FD_CLOEXEC);
    m_stopping = false;
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start(program(m_kind), arguments(screenSize, fds[1]));
    const bool started = m_process.waitForStarted(StartTimeoutMs);
    ::close(fds[1]);
    const bool ok = started && readDisplayNumber(fds[0], error);
    ::close(fds[0]);
    if (!started)
        *error = QStringLiteral("cannot start %1: %2").arg(program(m_kind), m_process.errorString());
    if (!ok) {
        stop();
        return false;
    }
    qCInfo(lcSimulator).noquote() << program(m_kind) << m_display << "screen" << screenSize;
    return true;
}

bool XServer::readDisplayNumber(int fd, QString *error)
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
            break;   // the server closed the pipe without a number: it failed
        text.append(buffer, static_cast<int>(got));
    }
    bool ok = false;
    const int number = text.trimmed().toInt(&ok);
    if (!ok || !text.contains('\n')) {
        m_process.waitForFinished(1000);
        *error = QStringLiteral("%1 reported no display: %2")
                     .arg(program(m_kind), QString::fromLocal8Bit(m_process.readAll()).trimmed());
        return false;
    }
    m_display = QStringLiteral(":%1").arg(number);
    return true;
}

void XServer::stop()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_stopping = true;
    m_process.terminate();
    if (!m_process.waitForFinished(5000)) {
        m_process.kill();
        m_process.waitForFinished(2000);
    }
    m_display.clear();
}
