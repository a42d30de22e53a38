#include "mobilehost.h"
#include "hostregisters.h"
#include "resolverlines.h"

namespace {

enum : unsigned { Switch = 122, Signal = 124, Status = 125 };
enum : quint64 { NotConnected = 0, Connecting = 1, Connected = 2 };

const int DriftMs = 2000;
const int DriftStep = 6;
const int DriftFloor = 25;

} // namespace

MobileHost::MobileHost(HostRegisters *registers, QObject *parent)
    : HostLink(registers, parent)
    , m_random(20240611u)
{
    setAddress({QStringLiteral("10.64.23.7"), QStringLiteral("255.255.255.255"), QString(),
                {QStringLiteral("211.136.17.107"), QStringLiteral("211.136.20.203")}});
    m_drift.setInterval(DriftMs);
    connect(&m_drift, &QTimer::timeout, this, &MobileHost::driftSignal);
}

QList<unsigned> MobileHost::requestRegisters() const
{
    return {Switch};
}

void MobileHost::onRequest(unsigned index)
{
    if (index != Switch)
        return;
    const bool on = m_registers->flag(Switch);
    if (on && (m_state == State::Off || m_state == State::Dropped))
        dial();
    else if (!on && m_state != State::Off)
        hangUp(QStringLiteral("switched off"), State::Off);
}

void MobileHost::dial()
{
    m_state = State::Dialling;
    report(QStringLiteral("modem on, dialling; connected in %1 ms").arg(answerDelay()));
    store(Status, Connecting, QStringLiteral("connecting"));
    writeSignal(m_signal);
    m_drift.start();
    answerLater();
}

void MobileHost::answer()
{
    if (m_state != State::Dialling)
        return;
    m_state = State::Connected;
    editResolver(serverLines(), {});
    store(Status, Connected, QStringLiteral("connected"));
    announceInterface(true);
}

void MobileHost::hangUp(const QString &why, State next)
{
    cancelAnswer();
    const bool wasUp = m_state == State::Connected;
    m_state = next;
    report(why);
    store(Status, NotConnected, QStringLiteral("not connected"));
    const QString path = m_registers->root() + QStringLiteral("/etc/resolv.conf");
    const QByteArray before = ResolverLines::read(path);
    const QByteArray after = ResolverLines::withoutInterface(before, interfaceName());
    if (after != before && ResolverLines::rewrite(path, after))
        report(QStringLiteral("/etc/resolv.conf: the # ppp0 name servers removed"));
    if (next == State::Off) {
        m_drift.stop();
        writeSignal(0);
    }
    if (wasUp)
        announceInterface(false);
}

void MobileHost::drop()
{
    if (m_state == State::Off || m_state == State::Dropped) {
        report(QStringLiteral("nothing to drop: the modem is not connected"));
        return;
    }
    hangUp(QStringLiteral("link dropped (no network); switch 4G off and on to dial again"), State::Dropped);
}

QStringList MobileHost::serverLines() const
{
    QStringList lines;
    for (const QString &server : address().nameServers)
        lines << ResolverLines::line(server, interfaceName());
    return lines;
}

void MobileHost::holdSignal(int level)
{
    m_held = true;
    m_signal = qBound(0, level, 100);
    report(QStringLiteral("signal held at %1").arg(m_signal));
    if (m_state != State::Off)
        writeSignal(m_signal);
}

void MobileHost::letSignalDrift()
{
    m_held = false;
    report(QStringLiteral("signal drifts again"));
}

void MobileHost::driftSignal()
{
    if (m_held || m_state == State::Off)
        return;
    const int step = int(m_random.bounded(2 * DriftStep + 1)) - DriftStep;
    m_signal = qBound(DriftFloor, m_signal + step, 100);
    writeSignal(m_signal);
}

void MobileHost::writeSignal(int level)
{
    // Drifting every few seconds: stored quietly, not reported each time.
    if (!m_registers->writeNumber(Signal, quint64(level)))
        report(m_registers->lastError());
}
