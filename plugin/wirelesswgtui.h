#ifndef WIRELESSWGTUI_H
#define WIRELESSWGTUI_H

#include <QWidget>

// The WLAN page. The page itself (scan list, connection, addressing) is
// still to come; for now it holds only its static-address choice, which the
// IP address editors of every page read.
class WirelessWgtUI : public QWidget
{
    Q_OBJECT

public:
    explicit WirelessWgtUI(QWidget *parent = nullptr);

    // True while the WLAN page is set to a static address. Address fields
    // may only be edited then: under DHCP the server owns the address.
    static bool m_isStaticIP;
};

#endif // WIRELESSWGTUI_H
