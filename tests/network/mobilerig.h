#ifndef MOBILERIG_H
#define MOBILERIG_H

#include "mobilenetworkui.h"
#include "testpanel.h"

#include <QByteArray>
#include <QHash>
#include <QStringList>

#include <memory>

class QLabel;
class QPushButton;
class RowHidingComboBox;
class SwitchButton;

// A 4G page on a fresh panel. Registers and the resolver file are set
// before the page starts; the page is refreshed as the network page does.
class MobileRig
{
public:
    static const char ResolverPath[];       // "/etc/resolv.conf"
    static const char BackupPath[];         // "/etc/resolvbak.conf"

    struct Options
    {
        int wiredPorts = 2;
        QHash<unsigned, quint32> registers;     // stored as 4 bytes; the table keeps what it keeps
        QByteArray resolver = "nameserver 114.114.114.114 # eth0\n";
    };

    MobileRig() : MobileRig(Options()) {}
    explicit MobileRig(const Options &options);

    SwitchButton *switch4g() const;
    QLabel *status() const;
    QLabel *signal() const;
    RowHidingComboBox *list() const;
    QPushButton *testButton() const;
    QString dns(int n) const;               // "ipLineEdit_dns<n>"
    QStringList items() const;              // the adapter list's texts
    // The host's link state and signal, then one tick of the page.
    void setLink(quint32 state, quint32 signalValue = 0);

    static void setValue(unsigned index, quint32 value);
    static quint32 value(unsigned index);   // up to 4 stored bytes

    TestPanel panel;
    std::unique_ptr<MobileNetworkUI> page;

private:
    static SimulatedPanel::Options panelOptions(const Options &options);
};

#endif // MOBILERIG_H
