#include "wlanpagerig.h"

#include "addressregister.h"
#include "flash_ronly.h"
#include "panelroot.h"
#include "sysreg.h"

#include <QDir>
#include <QSettings>
#include <QtEndian>

namespace {

SimulatedPanel::Options panelOptions(const WlanPageRig::Options &options)
{
    SimulatedPanel::Options panel;
    panel.screenWidth = options.screenWidth;
    panel.wiredPorts = options.secondPort ? 2 : 1;
    return panel;
}

} // namespace

WlanPageRig::WlanPageRig(const Options &options)
    : m_panel(panelOptions(options))
{
    QDir().mkpath(m_panel.path("/var/run"));
    m_panel.writeFile("/etc/resolv.conf", options.resolver);
    m_panel.writeFile("/etc/resolvbak.conf", options.resolver);
    m_fifo.reset(new FifoReader(m_panel.path("/tmp/fifo_sysreg")));
    for (auto it = options.registers.constBegin(); it != options.registers.constEnd(); ++it)
        setRegister(it.key(), it.value());
    {
        QSettings settings(PanelRoot::path(QStringLiteral("/hmi/Config/system_settings.ini")), QSettings::IniFormat);
        settings.setValue(QStringLiteral("General/buzzer"), QStringLiteral("off"));
        settings.setValue(QStringLiteral("WirelessNetwork/static"),
                          options.staticAddress ? QStringLiteral("true") : QStringLiteral("false"));
    }
    m_page.reset(new WirelessWgtUI);
    m_page->setInterfaceLookup([this](const QString &name) { return interfaces.value(name); });
    m_page->resize(650, 420);
    m_panel.clearCalls();
    m_fifo->drain();
}

WlanPageRig::~WlanPageRig()
{
    m_page.reset();
}

QStringList WlanPageRig::calls() const
{
    QStringList list;
    for (const QStringList &call : m_panel.calls())
        list << call.join(QLatin1Char(' '));
    return list;
}

QStringList WlanPageRig::callsOf(const QString &tool) const
{
    QStringList list;
    for (const QString &call : calls()) {
        if (call == tool || call.startsWith(tool + QLatin1Char(' ')))
            list << call;
    }
    return list;
}

quint8 WlanPageRig::registerByte(unsigned index)
{
    quint8 value[4] = {};
    SysReg_Read(index, value);
    return value[0];
}

QByteArray WlanPageRig::registerBytes(unsigned index, int length)
{
    QByteArray value(256, '\0');
    SysReg_Read(index, value.data());
    return value.left(length);
}

void WlanPageRig::setRegister(unsigned index, quint8 value)
{
    quint8 bytes[4] = {value, 0, 0, 0};
    SysReg_Write(index, bytes, 1);
}

void WlanPageRig::setRegisterBytes(unsigned index, const QByteArray &bytes, int length)
{
    QByteArray buffer = bytes.left(length);
    buffer.append(QByteArray(256 - buffer.size(), '\0'));
    SysReg_Write(index, buffer.constData(), unsigned(length));
}

QString WlanPageRig::addressRegister(unsigned index)
{
    return AddressRegister::read(index);
}

void WlanPageRig::setAddressRegister(unsigned index, const QString &dotted)
{
    unsigned char bytes[AddressRegister::Size] = {};
    AddressRegister::pack(dotted, bytes);
    SysReg_Write(index, bytes, AddressRegister::Size);
}

QString WlanPageRig::settingsValue(const QString &key) const
{
    QSettings settings(PanelRoot::path(QStringLiteral("/hmi/Config/system_settings.ini")), QSettings::IniFormat);
    return settings.value(key).toString();
}

quint32 WlanPageRig::recordValue(int offset) const
{
    const QByteArray image = m_panel.image();
    if (image.size() < offset + 4)
        return 0;
    return qFromLittleEndian<quint32>(image.constData() + offset);
}
