#ifndef MOBILENETWORKUI_H
#define MOBILENETWORKUI_H

#include <QWidget>

// The 4G page. Its contents (switch, status, signal, DNS) are still to
// come; what is here is what the network page wires: the default-network
// choice both ways, the 4G on/off signal, the wired ports' enable state and
// the outer-network test.
class MobileNetworkUI : public QWidget
{
    Q_OBJECT

public:
    MobileNetworkUI(int fontId, QWidget *parent = nullptr);

    void refresh();
    // Puts the page's test button back to its idle look after a test.
    void setPintTestBtnStyle();

signals:
    void Eanble_4G_Signal(int state);       // 1: 4G switched off, 0: on
    void updateDefaultNetworkSignal(int index);
    void pingTestSignal();

public slots:
    void on_updateDefaultNetwork(int index);
    void on_enableNetwork(int port, int enabled);

private:
    int m_fontId;
    int m_defaultNetwork = 0;
    bool m_portEnabled[2] = {true, true};
};

#endif // MOBILENETWORKUI_H
