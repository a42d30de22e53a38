#include "mobilerig.h"

#include "iplineedit.h"
#include "rowhidingcombobox.h"
#include "switchbutton.h"
#include "sysreg.h"

#include <QLabel>
#include <QPushButton>

const char MobileRig::ResolverPath[] = "/etc/resolv.conf";
const char MobileRig::BackupPath[] = "/etc/resolvbak.conf";

MobileRig::MobileRig(const Options &options)
    : panel(panelOptions(options))
{
    panel.writeFile(QString::fromLatin1(ResolverPath), options.resolver);
    panel.removeFile(QString::fromLatin1(BackupPath));
    for (auto it = options.registers.constBegin(); it != options.registers.constEnd(); ++it)
        setValue(it.key(), it.value());
    page.reset(new MobileNetworkUI(-1));
    page->refresh();
}

SimulatedPanel::Options MobileRig::panelOptions(const Options &options)
{
    SimulatedPanel::Options panelOptions;
    panelOptions.wiredPorts = options.wiredPorts;
    return panelOptions;
}

SwitchButton *MobileRig::switch4g() const
{
    return page->findChild<SwitchButton *>(QStringLiteral("switch_4g"));
}

QLabel *MobileRig::status() const
{
    return page->findChild<QLabel *>(QStringLiteral("label_networkStatus"));
}

QLabel *MobileRig::signal() const
{
    return page->findChild<QLabel *>(QStringLiteral("label_signal"));
}

RowHidingComboBox *MobileRig::list() const
{
    return page->findChild<RowHidingComboBox *>(QStringLiteral("comboBox_network"));
}

QPushButton *MobileRig::testButton() const
{
    return page->findChild<QPushButton *>(QStringLiteral("pushButton_test"));
}

QString MobileRig::dns(int n) const
{
    auto *edit = page->findChild<IPLineEdit *>(QStringLiteral("ipLineEdit_dns%1").arg(n));
    return edit ? edit->getIPVal() : QString();
}

QStringList MobileRig::items() const
{
    QStringList texts;
    for (int i = 0; i < list()->count(); ++i)
        texts << list()->itemText(i);
    return texts;
}

void MobileRig::setLink(quint32 state, quint32 signalValue)
{
    setValue(SysRegIdx::Mobile4GState, state);
    setValue(SysRegIdx::Mobile4GSignal, signalValue);
    page->K4G_Timer();
}

void MobileRig::setValue(unsigned index, quint32 value)
{
    SysReg_Write(index, &value, sizeof value);
}

quint32 MobileRig::value(unsigned index)
{
    quint8 bytes[8] = {};
    SysReg_Read(index, bytes);
    return quint32(bytes[0]) | quint32(bytes[1]) << 8 | quint32(bytes[2]) << 16 | quint32(bytes[3]) << 24;
}
