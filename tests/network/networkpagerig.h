#ifndef NETWORKPAGERIG_H
#define NETWORKPAGERIG_H

#include "flash_ronly.h"
#include "flash_wr_1.h"
#include "networksettings.h"
#include "testpanel.h"

#include <QByteArray>
#include <QHash>
#include <QSettings>
#include <QStringList>

#include <memory>

// A network page on a fresh simulated panel, with the capabilities, the
// registers and the live interface addresses a test chooses. The page's
// working directory (where the ping writes its result) is the panel root.
class NetworkPageRig
{
public:
    struct Options
    {
        bool secondPort = true;
        bool wlan = true;
        bool mobile = true;
        QHash<unsigned, quint8> registers;      // written before the page starts
        QHash<QString, bool> enableKeys;        // "Network0/enable" ...
        QByteArray resolver = "nameserver 114.114.114.114 # eth0\nnameserver 8.8.8.8 # eth0\n";
    };

    explicit NetworkPageRig(const Options &options);
    NetworkPageRig() : NetworkPageRig(Options()) {}
    ~NetworkPageRig();

    NetworkSettings &page() { return *m_page; }
    TestPanel &panel() { return m_panel; }
    QSettings &settings() { return *m_settings; }
    EEInfoDetail::Flash_WR_1 &record() { return m_record; }

    // Live addresses the page will see: name -> address, mask.
    QHash<QString, QStringList> interfaces;

    // Every program started so far, as "tool arg arg".
    QStringList calls() const;
    QStringList callsOf(const QString &tool) const;
    void clearCalls() { m_panel.clearCalls(); }

    static quint8 registerByte(unsigned index);
    static QByteArray registerBytes(unsigned index, int length);
    static void setRegister(unsigned index, quint8 value);

private:
    TestPanel m_panel;
    QByteArray m_previousDir;
    std::unique_ptr<QSettings> m_settings;
    EEInfoDetail::Flash_WR_1 m_record {};
    EEInfoDetail::Flash_ROnly m_readOnly {};
    std::unique_ptr<NetworkSettings> m_page;
};

#endif // NETWORKPAGERIG_H
