#ifndef VPNSETUI_H
#define VPNSETUI_H

#include <QWidget>

// The VPN page, present on every panel. Its contents (switch, status and
// server region) are still to come.
class VpnSetUI : public QWidget
{
    Q_OBJECT

public:
    VpnSetUI(int fontId, QWidget *parent = nullptr);

    void refresh();

private:
    int m_fontId;
};

#endif // VPNSETUI_H
