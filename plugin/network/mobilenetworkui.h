#ifndef MOBILENETWORKUI_H
#define MOBILENETWORKUI_H

#include "flash_ronly.h"

#include <QSize>
#include <QString>
#include <QWidget>

namespace Ui {
class MobileNetworkUI;
}
class QTimer;

// The 4G tab. The host application dials the modem and keeps the link's
// state in its registers; this page switches 4G on and off, shows the
// state, the signal and the link's name servers each second, and offers
// the default adapter and the outer-network test.
class MobileNetworkUI : public QWidget
{
    Q_OBJECT
    // The signal picture shown, as its resource path.
    Q_PROPERTY(QString signalPicture READ signalPicture)

public:
    MobileNetworkUI(int fontId, QWidget *parent = nullptr);
    ~MobileNetworkUI() override;

    void refresh();
    // Puts the page's test button back to its idle look after a test.
    void setPintTestBtnStyle();

    QString signalPicture() const { return m_picture; }

signals:
    void Eanble_4G_Signal(int state);       // 1: 4G switched off, 0: on
    void updateDefaultNetworkSignal(int index);
    void pingTestSignal();

public slots:
    void K4G_Timer();
    void slot_switchBox_4g_toggled(bool on);
    void on_comboBox_network_currentIndexChanged(const QString &text);
    void changeResolvDnsFile(QString interfaceName);
    void on_updateDefaultNetwork(int index);
    void on_enableNetwork(int port, int state);
    void on_pushButton_test_clicked();
    void on_pushButton_test_pressed();
    void recvDns1ChangeSlot();
    void recvDns2ChangeSlot();

private:
    void addUIStyles();
    void adjustWgtSize();
    void fillAdapterList();
    void selectDefaultAdapter();
    void showLinkState(unsigned state);
    void showStatus(unsigned state);
    void showPicture(const QString &picture);
    void drawPicture();
    void showDns(const QString &server);
    void readLinkServer();
    bool secondPort() const { return m_readOnly.hasEth1(); }

    Ui::MobileNetworkUI *ui;
    QTimer *m_timer;
    EEInfoDetail::Flash_ROnly m_readOnly {};
    QSize m_pictureSize;
    QString m_picture;
    bool m_initialising = false;
};

#endif // MOBILENETWORKUI_H
