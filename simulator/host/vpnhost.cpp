#include "vpnhost.h"
#include "hostregisters.h"

namespace {

enum : unsigned { Region = 116, Switch = 117, Status = 118, Address = 119 };

} // namespace

VpnHost::VpnHost(HostRegisters *registers, QObject *parent)
    : HostLink(registers, parent)
{
    setAddress({QStringLiteral("10.147.17.23"), QStringLiteral("255.255.255.0"), QString(), {}});
}

QList<unsigned> VpnHost::requestRegisters() const
{
    return {Region, Switch};
}

QString VpnHost::regionName(quint64 region)
{
    // The page counts anything above 1 as the Chinese servers.
    return region == 1 ? QStringLiteral("European servers") : QStringLiteral("Chinese servers");
}

void VpnHost::onRequest(unsigned index)
{
    if (index == Region) {
        const quint64 region = m_registers->number(Region);
        report(QStringLiteral("server region now %1 (%2)").arg(regionName(region)).arg(region));
        const bool changed = regionName(region) != regionName(m_region);
        m_region = region;
        if (m_on && changed) {
            report(QStringLiteral("the region changed while the VPN is on: joining again"));
            join();
        }
        return;
    }
    if (index != Switch)
        return;
    const bool on = m_registers->flag(Switch);
    // After a drop the page's off and on may both be read as on.
    if (on && (!m_on || m_dropped)) {
        m_on = true;
        m_region = m_registers->number(Region);
        join();
    } else if (!on && m_on) {
        m_on = false;
        leave(QStringLiteral("VPN switched off"));
    }
}

void VpnHost::join()
{
    m_dropped = false;
    report(QStringLiteral("joining the %1; connected in %2 ms").arg(regionName(m_region)).arg(answerDelay()));
    store(Status, Preparing, QStringLiteral("prepare to connect"));
    answerLater();
}

void VpnHost::answer()
{
    if (!m_on)
        return;
    storeAddress(Address, address().address);
    store(Status, Joined, QStringLiteral("VPN connection ok"));
}

void VpnHost::leave(const QString &why)
{
    cancelAnswer();
    report(why);
    store(Status, NotConnected, QStringLiteral("internet not connected"));
    storeAddress(Address, QString());
}

void VpnHost::drop()
{
    if (!m_on) {
        report(QStringLiteral("nothing to drop: the VPN is off"));
        return;
    }
    leave(QStringLiteral("link dropped (the network went away); switch the VPN off and on to join again"));
    m_dropped = true;
}
