#include "wlanaddressing.h"

#include "adapterlist.h"
#include "addressregister.h"
#include "commandtext.h"
#include "eeinfohandle.h"
#include "flash_wr_1.h"
#include "networkaddress.h"
#include "pidfile.h"
#include "processrunner.h"
#include "panelroot.h"
#include "resolverfile.h"
#include "sysreg.h"
#include "wlanregisters.h"

#include <QFile>
#include <QFileInfo>

#include <QtEndian>

namespace {

const char ResetFlagPath[] = "/tmp/ResetWifiFlag";
const char PidFilePath[] = "/var/run/udhcpc2.pid";
// Up to 100 discovery packets 1 s apart, and 1 s of rest after a failed try.
const char ClientCommand[] = "udhcpc -i wlan0 -t 100 -T 1 -A 1 -p /var/run/udhcpc2.pid &";
const char GatewayDeleteCommand[] = "ip route del default via %d.%d.%d.1";
const char GatewayAddCommand[] = "route add default gw %d.%d.%d.1 dev wlan0 metric %d";

using Record = EEInfoDetail::Flash_WR_1;

void sync()
{
    runCommand(CommandText("sync"));
}

} // namespace

namespace WlanAddressing {

bool isDefaultAdapter(int defaultAdapter, bool secondPort)
{
    return defaultAdapter == AdapterList::linkRow(secondPort);
}

bool networkPrefix(const QString &address, int prefix[3])
{
    if (!CommandText::isIpv4(address))
        return false;
    const QStringList parts = address.split(QLatin1Char('.'));
    for (int i = 0; i < 3; ++i)
        prefix[i] = parts.at(i).toInt();
    return true;
}

QString recordText(quint32 value)
{
    return NetworkAddress::dotted(NetworkAddress::toOctets(value));
}

void storeInRecord(int offset, quint32 value)
{
    storeInRecord({{offset, value}});
}

void storeInRecord(std::initializer_list<std::pair<int, quint32>> fields)
{
    Record record {};
    EEInfoHandle *handle = EEInfoHandle::instance();
    handle->read_flash_wr1_info(&record);
    // A short read leaves stale bytes: better no write than a wrong image.
    if (!handle->lastReadComplete())
        return;
    // By offset: the fields lie at odd offsets of the packed record.
    for (const auto &field : fields)
        qToLittleEndian<quint32>(field.second, reinterpret_cast<unsigned char *>(&record) + field.first);
    handle->write_flash_wr1_info(&record);
}

std::vector<CommandText> applyCommands(ValueType type, const QString &value)
{
    switch (type) {
    case Address:
        return {CommandText("ifconfig wlan0 %s").ipv4(value)};
    case Mask:
        return {CommandText("ifconfig wlan0 netmask %s").ipv4(value)};
    case Gateway:
        return {CommandText("route del default dev wlan0"),
                CommandText("route add default gw %s dev wlan0 metric 100").ipv4(value)};
    default:
        return {};
    }
}

void apply(ValueType type, const QString &value)
{
    const quint32 stored = NetworkAddress::fromDotted(value);
    for (const CommandText &command : applyCommands(type, value))
        runCommand(command);
    switch (type) {
    case Address:
        sync();
        AddressRegister::write(SysRegIdx::WlanIp, value);
        storeInRecord(Record::WlanIpOffset, stored);
        break;
    case Mask:
        sync();
        AddressRegister::write(SysRegIdx::WlanMask, value);
        storeInRecord(Record::WlanMaskOffset, stored);
        break;
    case Gateway:
        sync();
        AddressRegister::write(SysRegIdx::WlanGateway, value);
        storeInRecord(Record::WlanGatewayOffset, stored);
        break;
    default:
        break;
    }
}

void stopDhcpClient()
{
    if (!PidFile::exists(QString::fromLatin1(PidFilePath)))
        return;
    runCommand(CommandText("kill %d").processId(PidFile::read(QString::fromLatin1(PidFilePath))));
}

void startDhcpClient()
{
    runCommand(CommandText(ClientCommand));
}

std::vector<CommandText> leaseCommands(const QString &address, int defaultAdapter, bool secondPort)
{
    int prefix[3] = {};
    if (!networkPrefix(address, prefix))
        return {};
    const int metric = isDefaultAdapter(defaultAdapter, secondPort) ? PreferredMetric : OtherMetric;
    return {CommandText(GatewayDeleteCommand).number(prefix[0]).number(prefix[1]).number(prefix[2]),
            CommandText(GatewayAddCommand).number(prefix[0]).number(prefix[1]).number(prefix[2]).number(metric)};
}

bool applyLease(const QStringList &lease, int defaultAdapter, bool secondPort)
{
    int prefix[3] = {};
    const QString address = lease.value(0);
    if (!networkPrefix(address, prefix))
        return false;
    const QString gateway = QStringLiteral("%1.%2.%3.1").arg(prefix[0]).arg(prefix[1]).arg(prefix[2]);
    AddressRegister::write(SysRegIdx::WlanIp, address);
    AddressRegister::write(SysRegIdx::WlanGateway, gateway);
    for (const CommandText &command : leaseCommands(address, defaultAdapter, secondPort))
        runCommand(command);
    AddressRegister::write(SysRegIdx::WlanMask, lease.value(1));
    storeInRecord({{Record::WlanGatewayOffset, NetworkAddress::fromDotted(gateway)},
                   {Record::WlanMaskOffset, NetworkAddress::fromDotted(lease.value(1))}});
    return true;
}

void clearRegisters()
{
    AddressRegister::clear(SysRegIdx::WlanIp);
    AddressRegister::clear(SysRegIdx::WlanGateway);
    AddressRegister::clear(SysRegIdx::WlanMask);
}

void storeRegisters(const QString &address, const QString &mask, const QString &gateway)
{
    AddressRegister::write(SysRegIdx::WlanIp, address);
    AddressRegister::write(SysRegIdx::WlanMask, mask);
    AddressRegister::write(SysRegIdx::WlanGateway, gateway);
}

bool requestReset()
{
    QFile flag(PanelRoot::path(QString::fromLatin1(ResetFlagPath)));
    // Anything but a plain file in its place (a folder, a FIFO that would
    // block the open) counts as a failed creation.
    const QFileInfo info(flag);
    if ((info.exists() && !info.isFile()) || !flag.open(QIODevice::WriteOnly))
        return false;
    flag.close();
    clearRegisters();
    WlanRegisters::writeText(SysRegIdx::WlanSsid, QByteArray());
    WlanRegisters::writeText(SysRegIdx::WlanPassphrase, QByteArray());
    return true;
}

bool readDnsServers(QString servers[2])
{
    QFile file(PanelRoot::path(QString::fromLatin1(ResolverFile::Path)));
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    const QString text = ResolverFile::readText(file);
    for (int role = ResolverFile::First; role <= ResolverFile::Backup; ++role)
        servers[role] = ResolverFile::server(text, ResolverFile::wlanTag(), role);
    return true;
}

} // namespace WlanAddressing
