#include "hostsession.h"
#include "calllogwatcher.h"
#include "fifowatcher.h"
#include "hostlinks.h"
#include "networkactivity.h"
#include "panelactivity.h"
#include "routetablewatcher.h"
#include "simulatedpanel.h"

#include <QDialog>
#include <QTimer>
#include <QtEndian>

namespace {

// The stand-ins' table is a file read; the lab's costs a process.
const int StandInTablePollMs = 500;
const int LabTablePollMs = 1000;

quint32 wordAt(const QByteArray &message, int index)
{
    return qFromLittleEndian<quint32>(message.constData() + 4 * index);
}

} // namespace

HostSession::HostSession(const QString &root, const QString &realIp, QObject *parent)
    : QObject(parent)
    , m_registers(root)
    , m_sysreg(new FifoWatcher(root + QStringLiteral("/tmp/fifo_sysreg"), 4, this))
    , m_localreg(new FifoWatcher(root + QStringLiteral("/tmp/fifo_localreg"), 12, this))
    , m_calls(new CallLogWatcher(SimulatedPanel::callLogPath(root), this))
    , m_routes(new RouteTableWatcher(SimulatedPanel::routeTablePath(root), realIp, this))
    , m_links(new HostLinks(root, this))
    , m_tablePollMs(realIp.isEmpty() ? StandInTablePollMs : LabTablePollMs)
{
    connect(m_links, &HostLinks::logLine, this, &HostSession::logLine);
    connect(m_routes, &RouteTableWatcher::tableChanged, this, &HostSession::onRoutesChanged);
    connect(m_sysreg, &FifoWatcher::messageReceived, this, &HostSession::onRegisterMessage);
    connect(m_localreg, &FifoWatcher::messageReceived, this, &HostSession::onLocalMessage);
    connect(m_calls, &CallLogWatcher::commandRan, this, &HostSession::onCommandRan);
}

bool HostSession::start(QString *error)
{
    if (!m_sysreg->open(error) || !m_localreg->open(error))
        return false;
    m_calls->start();
    m_links->start();
    m_routes->check();
    m_routes->start(m_tablePollMs);
    return true;
}

void HostSession::adoptWindow(QDialog *window)
{
    m_window = window;
    connect(window, &QObject::destroyed, this, [this]() {
        emit logLine(QStringLiteral("settings window deleted"));
        emit windowDeleted();
    });
}

void HostSession::flush()
{
    m_calls->poll();
    m_routes->check();
}

void HostSession::onRegisterMessage(const QByteArray &message)
{
    // Commands run before the notification are reported first, so the log
    // keeps the order in which things happened.
    flush();
    const quint32 index = wordAt(message, 0);
    emit logLine(m_registers.describeRegister(index));
    m_links->notify(index);
    if (index == WindowOpenRegister)
        closeWindowIfReleased();
}

void HostSession::onLocalMessage(const QByteArray &message)
{
    flush();
    RegisterReader::Location where;
    where.area = wordAt(message, 0);
    where.offset = wordAt(message, 1);
    where.length = wordAt(message, 2);
    emit logLine(QStringLiteral("local ") + m_registers.describeLocal(where));
}

void HostSession::onCommandRan(const QStringList &argv)
{
    emit logLine(QStringLiteral("ran: ") + CallLogWatcher::commandLine(argv));
    const QString meaning = PanelActivity::describe(argv);
    if (!meaning.isEmpty())
        emit logLine(QStringLiteral("panel: ") + meaning);
    // Once the whole batch of commands is reported, not after each one.
    if (NetworkActivity::changesRoutes(argv) && !m_routeCheckDue) {
        m_routeCheckDue = true;
        QTimer::singleShot(0, this, [this]() {
            m_routeCheckDue = false;
            m_routes->check();
        });
    }
}

void HostSession::onRoutesChanged(const QStringList &routes)
{
    emit logLine(routes.isEmpty() ? QStringLiteral("panel: routing table now empty")
                                  : QStringLiteral("panel: routing table now:"));
    for (const QString &route : routes)
        emit logLine(QStringLiteral("    ") + route);
}

void HostSession::closeWindowIfReleased()
{
    quint64 open = 1;
    QString error;
    if (!m_registers.readNumber(WindowOpenRegister, &open, &error)) {
        emit logLine(QStringLiteral("cannot read register 86: ") + error);
        return;
    }
    if (open != 0 || !m_window)
        return;
    emit logLine(QStringLiteral("register 86 released: closing and deleting the settings window"));
    m_window->close();
    // Deleted from the event loop, as the runtime does, so that events
    // already queued for the window never reach a deleted object.
    m_window->deleteLater();
}
