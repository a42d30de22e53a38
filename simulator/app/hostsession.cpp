#include "hostsession.h"
#include "calllogwatcher.h"
#include "fifowatcher.h"
#include "panelactivity.h"
#include "simulatedpanel.h"

#include <QDialog>
#include <QtEndian>

namespace {

quint32 wordAt(const QByteArray &message, int index)
{
    return qFromLittleEndian<quint32>(message.constData() + 4 * index);
}

} // namespace

HostSession::HostSession(const QString &root, QObject *parent)
    : QObject(parent)
    , m_registers(root)
    , m_sysreg(new FifoWatcher(root + QStringLiteral("/tmp/fifo_sysreg"), 4, this))
    , m_localreg(new FifoWatcher(root + QStringLiteral("/tmp/fifo_localreg"), 12, this))
    , m_calls(new CallLogWatcher(SimulatedPanel::callLogPath(root), this))
{
    connect(m_sysreg, &FifoWatcher::messageReceived, this, &HostSession::onRegisterMessage);
    connect(m_localreg, &FifoWatcher::messageReceived, this, &HostSession::onLocalMessage);
    connect(m_calls, &CallLogWatcher::commandRan, this, &HostSession::onCommandRan);
}

bool HostSession::start(QString *error)
{
    if (!m_sysreg->open(error) || !m_localreg->open(error))
        return false;
    m_calls->start();
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
}

void HostSession::onRegisterMessage(const QByteArray &message)
{
    // Commands run before the notification are reported first, so the log
    // keeps the order in which things happened.
    flush();
    const quint32 index = wordAt(message, 0);
    emit logLine(m_registers.describeRegister(index));
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
