#ifndef NETWORKSETTINGS_H
#define NETWORKSETTINGS_H

#include "flash_ronly.h"
#include "flash_wr_1.h"
#include "settings.h"

#include <QFont>
#include <QNetworkAddressEntry>
#include <QNetworkInterface>
#include <QStringList>
#include <QTabWidget>

#include <functional>

class MobileNetworkUI;
class QComboBox;
class QFile;
class QLineEdit;
class QSettings;
class QTimer;
class QTranslator;
class VpnSetUI;
class WiredPortPage;
class WirelessWgtUI;

// The network page: one tab per wired port, then WLAN and 4G where fitted,
// then VPN. It applies what the operator sets on a wired port to the running
// system at once and stores it in the device record (through the window),
// the host's registers and the resolver file; it runs the DHCP clients,
// keeps the default routes in line with the chosen default network, and
// runs the outer-network test for every tab.
class NetworkSettings : public QTabWidget
{
    Q_OBJECT

public:
    enum networkIndexType { eth0 = 0, eth1 = 1 };
    enum dnsType { firstDns = 0, backupDns = 1 };

    explicit NetworkSettings(QWidget *parent = nullptr);
    ~NetworkSettings() override;

    void init(int fontId, EEInfoDetail::Flash_WR_1 &record, EEInfoDetail::Flash_ROnly &readOnly,
              QSettings *settings);
    void refresh();

    bool supportEth2() const;
    bool supportWifi() const;
    bool support4G() const;

    QStringList getIPFromEE(networkIndexType port) const;
    QStringList getMaskFromEE(networkIndexType port) const;
    QStringList getGatewayFromEE(networkIndexType port) const;
    QStringList getMacFromEE(networkIndexType port) const;

    // Address and mask texts (address, mask, address, mask...) of a system
    // interface that is up and running; empty otherwise.
    QStringList getipAddress(const QString &name) const;
    // Address and mask the system gives interface `name` now (addressList).
    static QStringList liveAddresses(const QString &name);
    static QStringList addressList(QNetworkInterface::InterfaceFlags flags,
                                   const QList<QNetworkAddressEntry> &entries);
    // Where getipAddress looks; tests put a table of their own here.
    using InterfaceLookup = std::function<QStringList(const QString &name)>;
    void setInterfaceLookup(const InterfaceLookup &lookup);

    WiredPortPage *portPage(int port) const;
    QTimer *leaseTimer(int port) const;
    QTimer *pingTimer() const { return m_pingTimer; }
    bool isPortDisabled(int port) const;

    Q_INVOKABLE void doModal(QLineEdit *field);
    Q_INVOKABLE void updateSystemAndSaveToEE(int port, QLineEdit *field);
    Q_INVOKABLE int checkConflictIp(QLineEdit *field, int value);
    static bool isConflictIp(const QString &a1, const QString &a2, const QString &a3,
                             const QString &a4, const QString &b1, const QString &b2,
                             const QString &b3, const QString &b4);

    bool isConfigIp(int port, const QLineEdit *field) const;
    bool isConfigMask(int port, const QLineEdit *field) const;
    bool isConfigGateway(int port, const QLineEdit *field) const;
    bool isConfigFirstDns(int port, const QLineEdit *field) const;
    bool isConfigBackupDns(int port, const QLineEdit *field) const;

    void getDns(QFile &file, networkIndexType port, dnsType type, QString &out) const;
    QStringList getDNSFromSys(networkIndexType port, dnsType type);
    void replaceDns(QFile &file, networkIndexType port, dnsType type, QString dns);

    static int detect_process(const char *name);

    // The port's "Gateway:" label with the shown default gateway, and its
    // "Network:" label.
    void updateDefaultGateway(networkIndexType port);
    void updateDefaultNetwork(networkIndexType port);

signals:
    void updateEEData(EEInfoDetail::Flash_WR_1 &record, Settings::FlashWR1DataType type);
    void updateDefaultNetwork(int index);
    void enableNetworkSignal(int port, int enabled);

public slots:
    void onChangeLanguage(Settings::Language lang);
    void onTabBarSwitched(int index);

    void setIP(int port, const QString &address);
    void setMask(int port, const QString &mask);
    void setIPToEE(int port, unsigned int value);
    void setMaskToEE(int port, unsigned int value);
    void setGatewayToEE(int port, unsigned int value);
    void updateIPData(int port);
    void updateMaskData(int port);
    void updateGatewayData(int port);
    void enableNetwork(int port);
    void disableNetwork(int port);
    void enableNetworkConfig(int port);
    void disableNetworkConfig(int port, int platform);
    void onDisableNetworkSwitched();

    void updateDNSData(int port, int type);
    void setDNSToSys(int port, int type, const QString &dns);

    void udhcpc(int port);
    void killudhcpc(int port);
    void updateDHCPConfig(int port, bool dhcp);
    void onSetCombobox(int index);
    void slotdhcp();
    void slotdhcp1();

    void setGateway(int which);
    void updateDefaultGatewayFromReg();
    void onSetAdapterCombobox(int index);
    void on_updateDefaultNetworkSlot(int index);
    void onSetDefaultGateway();
    void on_wifiEanableSlot(int state);

    void onSetTest();
    void ping_test();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

public:
    // A stored address value: its record field, record-change type and
    // register, for eth0 and eth1.
    struct StoredField
    {
        int offset[2];
        Settings::FlashWR1DataType type;
        unsigned registerIndex[2];
    };

private:
    static const StoredField AddressField;
    static const StoredField MaskField;
    static const StoredField GatewayField;
    void storeField(const StoredField &stored, int port, quint32 value);

    // The page's record copies lie back to back: a register write of a field
    // near the end of the first record takes its 8 bytes across the seam.
    struct Records
    {
        EEInfoDetail::Flash_WR_1 wr1;
        EEInfoDetail::Flash_ROnly readOnly;
    };

    void connectSlots();
    int wiredCount() const;
    int sharedRow() const;
    void buildPorts(int screenWidth);
    void addTabPages();
    void fillSelectors();
    void setSelectorRowHidden(int row, bool hidden);
    void setSelectors(int row);
    void leaseArrived(int port);
    bool sharedRowShown() const;
    int portOfSender() const;
    QList<WiredPortPage *> wiredPages() const;

    int m_fontId = -1;
    QFont m_font;
    Records m_records {};
    QSettings *m_settings = nullptr;
    QTranslator *m_translator;
    WiredPortPage *m_ports[2] = {};
    bool m_disabled[2] = {};
    QTimer *m_leaseTimers[2] = {};
    QTimer *m_pingTimer;
    WirelessWgtUI *m_wifi = nullptr;
    MobileNetworkUI *m_mobile = nullptr;
    VpnSetUI *m_vpn = nullptr;
    QStringList m_dns[2][2];
    QStringList m_defaultGateway;
    InterfaceLookup m_lookup;
};

#endif // NETWORKSETTINGS_H
