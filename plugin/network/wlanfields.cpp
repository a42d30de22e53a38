#include "wlanfields.h"
#include "ui_wirelesswgtui.h"

#include "addressregister.h"
#include "resolverfile.h"
#include "sysreg.h"
#include "wlanaddressing.h"

#include <initializer_list>

namespace {

const char NoAddress[] = "0.0.0.0";

void show(IPLineEdit *field, const QString &text)
{
    if (field->getIPVal() != text)
        field->setIPVal(text);
}

} // namespace

namespace WlanFields {

void clear(Ui::WirelessWgtUI *ui, bool withDns)
{
    for (IPLineEdit *field : {ui->ipLineEdit_ip, ui->ipLineEdit_mask, ui->ipLineEdit_gateway})
        field->setIPVal(QLatin1String(NoAddress));
    if (!withDns)
        return;
    ui->ipLineEdit_dns1->setIPVal(QLatin1String(NoAddress));
    ui->ipLineEdit_dns2->setIPVal(QLatin1String(NoAddress));
}

void showRecord(Ui::WirelessWgtUI *ui, const EEInfoDetail::Flash_WR_1 &record)
{
    // Copies: the packed record's fields cannot bind to references.
    const quint32 address = record.wlanIp;
    const quint32 mask = record.wlanMask;
    const quint32 gateway = record.wlanGateway;
    ui->ipLineEdit_ip->setIPVal(WlanAddressing::recordText(address));
    ui->ipLineEdit_mask->setIPVal(WlanAddressing::recordText(mask));
    ui->ipLineEdit_gateway->setIPVal(WlanAddressing::recordText(gateway));
}

void showRegisters(Ui::WirelessWgtUI *ui)
{
    show(ui->ipLineEdit_ip, AddressRegister::read(SysRegIdx::WlanIp));
    show(ui->ipLineEdit_gateway, AddressRegister::read(SysRegIdx::WlanGateway));
    show(ui->ipLineEdit_mask, AddressRegister::read(SysRegIdx::WlanMask));
}

void showDns(Ui::WirelessWgtUI *ui)
{
    QString servers[2];
    if (!WlanAddressing::readDnsServers(servers))
        return;
    IPLineEdit *const fields[] = {ui->ipLineEdit_dns1, ui->ipLineEdit_dns2};
    for (int role = ResolverFile::First; role <= ResolverFile::Backup; ++role) {
        // Both start from nothing, as if the file had no line of the WLAN.
        fields[role]->setIPVal(QLatin1String(NoAddress));
        show(fields[role], servers[role]);
    }
}

void setAddressBlockEnabled(Ui::WirelessWgtUI *ui, bool enabled)
{
    for (QWidget *widget : std::initializer_list<QWidget *> {ui->label_ip, ui->ipLineEdit_ip, ui->label_mask,
                                                             ui->ipLineEdit_mask, ui->label_gateway,
                                                             ui->ipLineEdit_gateway})
        widget->setEnabled(enabled);
}

} // namespace WlanFields
