#ifndef HOSTLINKS_H
#define HOSTLINKS_H

#include "hostregisters.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

class HostLink;
class MobileHost;
class VpnHost;
class WlanHost;

// The host application's WLAN, 4G and VPN links for one simulated panel.
// Each register announcement the pages send is handed to the links that
// act on it; commands (script steps, the control window) change what the
// host does next:
//   wlan-password-wrong     the next WLAN connection fails on its password
//   wlan-drop | 4g-drop | vpn-drop   the link is lost
//   signal=NN | signal=drift         4G signal held at NN (0..100), or drifting
//   scan-add=NAME[:PASSWORD]         a network comes in range (open without a password)
//   scan-remove=NAME                 a network goes out of range
class HostLinks : public QObject
{
    Q_OBJECT

public:
    explicit HostLinks(const QString &root, QObject *parent = nullptr);

    // Writes the files the host keeps from the start (saved passwords).
    void start();
    void notify(unsigned index);
    // Every link answers after ms instead of its usual time.
    void setAnswerDelay(int ms);
    // Addresses of the network lab's far side for wlan0 and ppp0.
    void useLabAddresses();

    static bool isCommand(const QString &command);
    static QStringList commandNames();
    bool command(const QString &command, QString *error);

    WlanHost *wlan() const { return m_wlan; }
    MobileHost *mobile() const { return m_mobile; }
    VpnHost *vpn() const { return m_vpn; }
    QList<HostLink *> links() const;

signals:
    void logLine(const QString &line);
    void interfaceChanged(const QString &interfaceName, const QString &address, const QString &mask);

private:
    bool scanCommand(const QString &command, QString *error);

    HostRegisters m_registers;
    WlanHost *m_wlan;
    MobileHost *m_mobile;
    VpnHost *m_vpn;
};

#endif // HOSTLINKS_H
