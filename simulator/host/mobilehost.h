#ifndef MOBILEHOST_H
#define MOBILEHOST_H

#include "hostlink.h"

#include <QRandomGenerator>
#include <QTimer>

// The host's 4G modem: register 122 bit 0 switches it on; the host then
// reports connecting (125 = 1) and, once dialled, connected (125 = 2) with
// the operator's name servers as "nameserver A # ppp0" lines in the
// resolver file. The signal (124, 0..100) drifts while the modem is on,
// unless it is held at a level. Switched off, the state goes to 0 and the
// lines go.
class MobileHost : public HostLink
{
    Q_OBJECT

public:
    enum class State { Off, Dialling, Connected, Dropped };

    explicit MobileHost(HostRegisters *registers, QObject *parent = nullptr);

    QString name() const override { return QStringLiteral("4G"); }
    QList<unsigned> requestRegisters() const override;
    void onRequest(unsigned index) override;
    void drop() override;
    QString interfaceName() const override { return QStringLiteral("ppp0"); }

    State state() const { return m_state; }
    int signal() const { return m_signal; }
    // Holds the signal at this level (0..100); it no longer drifts.
    void holdSignal(int level);
    void letSignalDrift();
    void setDriftInterval(int ms) { m_drift.setInterval(ms); }

protected:
    void answer() override;

private slots:
    void driftSignal();

private:
    void dial();
    void hangUp(const QString &why, State next);
    QStringList serverLines() const;
    void writeSignal(int level);

    State m_state = State::Off;
    int m_signal = 68;
    bool m_held = false;
    QTimer m_drift;
    QRandomGenerator m_random;
};

#endif // MOBILEHOST_H
