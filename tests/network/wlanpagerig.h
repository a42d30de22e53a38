#ifndef WLANPAGERIG_H
#define WLANPAGERIG_H

#include "fiforeader.h"
#include "testpanel.h"
#include "wirelesswgtui.h"

#include <QByteArray>
#include <QHash>
#include <QStringList>

#include <memory>

// A WLAN page on a fresh simulated panel, with the registers and files a
// test chooses written before the page starts, and the host's end of the
// register FIFO to see what the page announced.
class WlanPageRig
{
public:
    struct Options
    {
        int screenWidth = 800;
        bool secondPort = false;
        QHash<unsigned, quint8> registers;      // one byte each, before the page starts
        QByteArray resolver = "nameserver 114.114.114.114 # eth0\nnameserver 8.8.4.4 # wlan0\n";
        bool staticAddress = false;             // "WirelessNetwork/static"
    };

    explicit WlanPageRig(const Options &options);
    WlanPageRig() : WlanPageRig(Options()) {}
    ~WlanPageRig();

    WirelessWgtUI &page() { return *m_page; }
    TestPanel &panel() { return m_panel; }
    FifoReader &fifo() { return *m_fifo; }

    // Live addresses the page will see: name -> address, mask.
    QHash<QString, QStringList> interfaces;

    QStringList calls() const;                  // "tool arg arg", in order
    QStringList callsOf(const QString &tool) const;

    static quint8 registerByte(unsigned index);
    static QByteArray registerBytes(unsigned index, int length);
    static void setRegister(unsigned index, quint8 value);
    static void setRegisterBytes(unsigned index, const QByteArray &bytes, int length);
    // Four 16-bit values of an address register, "a.b.c.d".
    static QString addressRegister(unsigned index);
    static void setAddressRegister(unsigned index, const QString &dotted);
    QString settingsValue(const QString &key) const;

    // A value of the device image's first record, at a byte offset.
    quint32 recordValue(int offset) const;

private:
    TestPanel m_panel;
    std::unique_ptr<FifoReader> m_fifo;
    std::unique_ptr<WirelessWgtUI> m_page;
};

#endif // WLANPAGERIG_H
