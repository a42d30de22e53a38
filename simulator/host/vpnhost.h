#ifndef VPNHOST_H
#define VPNHOST_H

#include "hostlink.h"

// The host's VPN service (ZeroTier One): register 117 bit 0 switches it
// on; the host reports "prepare to connect" (118 = 1) and, once joined, "VPN
// connection ok" (118 = 5) with the VPN address in 119 (four u16). A change
// of server region (116) is noted and, while on, joins again. Off, 118 goes
// to 0 and the address is cleared.
class VpnHost : public HostLink
{
    Q_OBJECT

public:
    enum : quint64 { NotConnected = 0, Preparing = 1, Joined = 5 };

    explicit VpnHost(HostRegisters *registers, QObject *parent = nullptr);

    QString name() const override { return QStringLiteral("VPN"); }
    QList<unsigned> requestRegisters() const override;
    void onRequest(unsigned index) override;
    void drop() override;

    bool isOn() const { return m_on; }
    static QString regionName(quint64 region);

protected:
    void answer() override;

private:
    void join();
    void leave(const QString &why);

    bool m_on = false;
    bool m_dropped = false;
    quint64 m_region = 0;
};

#endif // VPNHOST_H
