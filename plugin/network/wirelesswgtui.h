#ifndef WIRELESSWGTUI_H
#define WIRELESSWGTUI_H

#include "flash_ronly.h"
#include "flash_wr_1.h"

#include <QPointer>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <functional>

class QListWidgetItem;
class QTimer;
class WirelessPswDialog;

namespace Ui {
class WirelessWgtUI;
}

// The WLAN tab. The host application owns the radio: this page asks it for
// scans and connections through the system registers, shows what it
// reports (scan list, state, addresses) once a second, and sets how wlan0
// gets its address (static values or a DHCP client), its DNS servers and
// the default adapter.
class WirelessWgtUI : public QWidget
{
    Q_OBJECT

public:
    explicit WirelessWgtUI(QWidget *parent = nullptr);
    ~WirelessWgtUI() override;

    // The network page's copies of the device records.
    void getEEDate(EEInfoDetail::Flash_WR_1 &record, EEInfoDetail::Flash_ROnly &readOnly);
    void initUI();
    void refresh();
    // Puts the page's test button back to its idle look after a test.
    void setPintTestBtnStyle();

    void updateWlanList();
    void setWifiWgtEnable(bool disabled);
    void updateSystemAndSaveToEE(int type, QString value);
    void setDNSToSys(int type, QString address);
    void changeResolvDnsFile(QString interfaceName);

    // Address and mask of a live interface, as NetworkSettings finds them.
    QStringList getipAddress(const QString &name) const;
    using InterfaceLookup = std::function<QStringList(const QString &name)>;
    // Where getipAddress looks; tests put a table of their own here.
    void setInterfaceLookup(const InterfaceLookup &lookup);
    QTimer *scanTimer() const { return m_scanTimer; }

    // True while the WLAN page is set to a static address. Address fields
    // may only be edited then: under DHCP the server owns the address.
    static bool m_isStaticIP;

signals:
    void updateDefaultNetworkSignal(int index);
    void wifiEanbleSignal(int state);       // 1: WLAN switched off, 0: on
    void pingTestSignal();

public slots:
    void on_updateDefaultNetwork(int index);
    void KscanWifiList_Timer();
    void recv_psw_slot(int result);
    void slot_switchBox_disableNet_toggled(bool checked);
    void slot_switchBox_staticIP_toggled(bool on);
    void recvIpChangeSlot();
    void recvsubMaskChangeSlot();
    void recvgateWayChangeSlot();
    void recvDns1ChangeSlot();
    void recvDns2ChangeSlot();

    void on_stackedWidget_currentChanged(int index);
    void on_pushButton_refreshWlan_clicked();
    void on_listWidget_wifi_itemClicked(QListWidgetItem *item);
    void on_pushButton_backToPage_clicked();
    void on_pushButton_resetWifi_clicked();
    void on_pushButton_test_clicked();
    void on_comboBox_network_currentIndexChanged(const QString &text);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void addUIStyles();
    void adjustWgtSize();
    void initIpData();
    void showOnline();
    void showOffline();
    void promptPasswordError();
    void openPasswordDialog(const QString &ssid);
    void playKeyClick();
    bool secondPort() const { return m_readOnly.hasEth1(); }

    Ui::WirelessWgtUI *ui;
    int m_wifiState = 0;
    int m_wifiDisabled = 0;
    QPointer<WirelessPswDialog> m_pswDialog;
    QString m_clickedSsid;
    QString m_pswErrorSsid;
    QString m_macAddress;
    EEInfoDetail::Flash_WR_1 m_record {};
    EEInfoDetail::Flash_ROnly m_readOnly {};
    bool m_initializing = false;
    QTimer *m_scanTimer = nullptr;
    InterfaceLookup m_lookup;
};

#endif // WIRELESSWGTUI_H
