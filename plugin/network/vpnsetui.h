#ifndef VPNSETUI_H
#define VPNSETUI_H

#include <QWidget>

namespace Ui {
class VpnSetUI;
}
class QTimer;

// The VPN tab, present on every panel. The host application runs the VPN
// (ZeroTier One) for the chosen server region; this page switches it on and
// off, chooses the region and shows the host's status each second.
class VpnSetUI : public QWidget
{
    Q_OBJECT

public:
    VpnSetUI(int fontId, QWidget *parent = nullptr);
    ~VpnSetUI() override;

    void refresh();

public slots:
    void slot_switchBox_vpn_toggled(bool on);
    void on_comboBox_server_currentIndexChanged(int index);
    void Kvpn_Timer();

private:
    void adjustWgtSize();
    void forgetNetworks();

    Ui::VpnSetUI *ui;
    QTimer *m_timer;
    bool m_initialising = false;
    bool m_reverting = false;
};

#endif // VPNSETUI_H
