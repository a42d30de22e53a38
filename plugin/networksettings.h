#ifndef NETWORKSETTINGS_H
#define NETWORKSETTINGS_H

#include "flash_ronly.h"
#include "flash_wr_1.h"
#include "settings.h"

#include <QTabWidget>

class QSettings;
class QTranslator;

// The network page: one tab per wired port, then WLAN, 4G and VPN as fitted.
class NetworkSettings : public QTabWidget
{
    Q_OBJECT

public:
    enum networkIndexType { eth0 = 0, eth1 = 1 };
    enum dnsType { firstDns = 0, backupDns = 1 };

    explicit NetworkSettings(QWidget *parent = nullptr);

    void init(int fontId, EEInfoDetail::Flash_WR_1 &record, EEInfoDetail::Flash_ROnly &readOnly,
              QSettings *settings);
    void refresh();

signals:
    void updateEEData(EEInfoDetail::Flash_WR_1 &record, Settings::FlashWR1DataType type);

public slots:
    void onChangeLanguage(Settings::Language lang);

private:
    void connectSlots();

    int m_fontId = -1;
    EEInfoDetail::Flash_WR_1 m_record {};
    EEInfoDetail::Flash_ROnly m_readOnly {};
    QSettings *m_settings = nullptr;
    QTranslator *m_translator;
};

#endif // NETWORKSETTINGS_H
