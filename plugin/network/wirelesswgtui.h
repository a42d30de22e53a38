#ifndef WIRELESSWGTUI_H
#define WIRELESSWGTUI_H

#include "flash_ronly.h"
#include "flash_wr_1.h"

#include <QWidget>

// The WLAN page. Its contents (scan list, connection, addressing) are still
// to come; what is here is what the network page wires: the default-network
// choice both ways, the WLAN on/off signal and the outer-network test, and
// the static-address choice that the IP address editors of every page read.
class WirelessWgtUI : public QWidget
{
    Q_OBJECT

public:
    explicit WirelessWgtUI(QWidget *parent = nullptr);

    // The network page's copies of the device records.
    void getEEDate(EEInfoDetail::Flash_WR_1 &record, EEInfoDetail::Flash_ROnly &readOnly);
    void refresh();
    // Puts the page's test button back to its idle look after a test.
    void setPintTestBtnStyle();

    // True while the WLAN page is set to a static address. Address fields
    // may only be edited then: under DHCP the server owns the address.
    static bool m_isStaticIP;

signals:
    void updateDefaultNetworkSignal(int index);
    void wifiEanbleSignal(int state);       // 1: WLAN switched off, 0: on
    void pingTestSignal();

public slots:
    void on_updateDefaultNetwork(int index);

private:
    EEInfoDetail::Flash_WR_1 m_record {};
    EEInfoDetail::Flash_ROnly m_readOnly {};
    int m_defaultNetwork = 0;
};

#endif // WIRELESSWGTUI_H
