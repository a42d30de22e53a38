#include "interrupthandler.h"

#include <QSocketNotifier>

#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace {

int g_sockets[2] = {-1, -1};
volatile sig_atomic_t g_interrupted = 0;

extern "C" void onSignal(int)
{
    g_interrupted = 1;
    const char byte = 1;
    if (g_sockets[0] >= 0)
        (void)!::write(g_sockets[0], &byte, 1);
}

} // namespace

InterruptHandler::InterruptHandler(QObject *parent)
    : QObject(parent)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, g_sockets) == 0) {
        m_notifier = new QSocketNotifier(g_sockets[1], QSocketNotifier::Read, this);
        connect(m_notifier, &QSocketNotifier::activated, this, &InterruptHandler::onSignalByte);
    }
    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
}

InterruptHandler::~InterruptHandler()
{
    ::signal(SIGINT, SIG_DFL);
    ::signal(SIGTERM, SIG_DFL);
    delete m_notifier;
    for (int &fd : g_sockets) {
        if (fd >= 0)
            ::close(fd);
        fd = -1;
    }
}

bool InterruptHandler::wasInterrupted()
{
    return g_interrupted != 0;
}

void InterruptHandler::onSignalByte()
{
    char byte;
    (void)!::read(g_sockets[1], &byte, 1);
    emit interrupted();
}
