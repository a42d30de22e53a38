#ifndef WLANHOST_H
#define WLANHOST_H

#include "hostlink.h"
#include "wlanfiles.h"

#include <QTimer>

// The host's WLAN radio: on a scan request (register 114) it writes the
// networks in range to "/tmp/scan_parse" and "/tmp/wifiEnc" and their
// number to register 111; on a connection request (101) it reads the SSID
// (103) and password (104) and, after the association time, reports
// connected (100 = 2, with the SSID, addresses and MAC) or a wrong password
// (100 = 4). It keeps the saved-password table "/hmi_data/WiFipassword",
// obeys the page's reset flag file and drops the link when the WLAN is
// switched off (98).
class WlanHost : public HostLink
{
    Q_OBJECT

public:
    static constexpr const char *Mac = "001A2B3C4D60";

    explicit WlanHost(HostRegisters *registers, QObject *parent = nullptr);

    QString name() const override { return QStringLiteral("WLAN"); }
    QList<unsigned> requestRegisters() const override;
    void onRequest(unsigned index) override;
    void drop() override;
    QString interfaceName() const override { return QStringLiteral("wlan0"); }

    // Writes the saved-password table and starts watching the reset flag.
    void start();

    static QList<SimNetwork> defaultNetworks();
    static QList<SavedPassword> defaultSavedPasswords();

    QList<SimNetwork> networks() const { return m_networks; }
    // A network of the same name is replaced. The lists already written
    // follow at once, as a host scanning in the background would.
    void addNetwork(const SimNetwork &network);
    bool removeNetwork(const QString &ssid);
    void failNextPassword();
    bool isConnected() const { return !m_connected.isEmpty(); }
    QString connectedSsid() const { return m_connected; }

protected:
    void answer() override;

private slots:
    void checkResetFlag();

private:
    void scan();
    void requestConnection();
    void connectTo(const SimNetwork &network);
    void refuse(const QString &why, quint64 state);
    void disconnect(const QString &why);
    bool writePanelFile(const QString &path, const QByteArray &contents);
    QList<SavedPassword> savedPasswords() const;
    QString wlanServerLine() const;

    QList<SimNetwork> m_networks;
    QTimer m_flagPoll;
    QString m_requestedSsid;
    QString m_requestedPassword;
    QString m_connected;
    bool m_failNext = false;
    bool m_scanned = false;
};

#endif // WLANHOST_H
