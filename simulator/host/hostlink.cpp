#include "hostlink.h"
#include "hostregisters.h"
#include "resolverlines.h"

HostLink::HostLink(HostRegisters *registers, QObject *parent)
    : QObject(parent)
    , m_registers(registers)
{
    m_answerTimer.setSingleShot(true);
    connect(&m_answerTimer, &QTimer::timeout, this, [this]() { answer(); });
}

void HostLink::report(const QString &what)
{
    emit logLine(QStringLiteral("host %1: %2").arg(name(), what));
}

bool HostLink::store(unsigned index, quint64 value, const QString &meaning)
{
    if (!m_registers->writeNumber(index, value)) {
        report(m_registers->lastError());
        return false;
    }
    report(QStringLiteral("register %1 = %2%3")
               .arg(index)
               .arg(value)
               .arg(meaning.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(meaning)));
    return true;
}

bool HostLink::storeText(unsigned index, const QByteArray &bytes, const QString &shown)
{
    if (!m_registers->write(index, bytes)) {
        report(m_registers->lastError());
        return false;
    }
    report(QStringLiteral("register %1 = \"%2\"").arg(index).arg(shown));
    return true;
}

bool HostLink::storeAddress(unsigned index, const QString &dotted)
{
    if (!m_registers->writeAddress(index, dotted)) {
        report(m_registers->lastError());
        return false;
    }
    report(QStringLiteral("register %1 = %2").arg(index).arg(HostRegisters::addressFromWords(m_registers->bytes(index))));
    return true;
}

void HostLink::answerLater()
{
    m_answerTimer.start(m_answerDelayMs);
}

void HostLink::announceInterface(bool up)
{
    if (interfaceName().isEmpty())
        return;
    if (up)
        emit interfaceChanged(interfaceName(), m_address.address, m_address.mask);
    else
        emit interfaceChanged(interfaceName(), QString(), QString());
}

bool HostLink::editResolver(const QStringList &add, const QStringList &remove)
{
    const QString path = m_registers->root() + QStringLiteral("/etc/resolv.conf");
    const QByteArray before = ResolverLines::read(path);
    const QByteArray after = ResolverLines::withLines(ResolverLines::withoutLines(before, remove), add);
    if (after == before)
        return true;
    if (!ResolverLines::rewrite(path, after)) {
        report(QStringLiteral("cannot rewrite /etc/resolv.conf"));
        return false;
    }
    for (const QString &line : remove) {
        if (before.split('\n').contains(line.toLatin1()))
            report(QStringLiteral("/etc/resolv.conf: removed \"%1\"").arg(line));
    }
    for (const QString &line : add) {
        if (!before.split('\n').contains(line.toLatin1()))
            report(QStringLiteral("/etc/resolv.conf: added \"%1\"").arg(line));
    }
    return true;
}
