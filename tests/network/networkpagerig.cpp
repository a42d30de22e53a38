#include "networkpagerig.h"

#include "eeinfohandle.h"
#include "panelroot.h"
#include "sysreg.h"

#include <QDir>

namespace {
constexpr int WlanByte = 5;
constexpr quint8 WlanBit = 1 << 3;
}

NetworkPageRig::NetworkPageRig(const Options &options)
    : m_previousDir(QDir::currentPath().toLocal8Bit())
{
    QDir::setCurrent(m_panel.root());
    m_panel.writeFile(QStringLiteral("/etc/resolv.conf"), options.resolver);
    m_panel.writeFile(QStringLiteral("/etc/resolvbak.conf"), options.resolver);
    for (auto it = options.registers.constBegin(); it != options.registers.constEnd(); ++it)
        setRegister(it.key(), it.value());
    m_settings.reset(new QSettings(PanelRoot::path(QStringLiteral("/hmi/Config/system_settings.ini")),
                                   QSettings::IniFormat));
    // Key clicks would interleave "setbeep" with the commands under test.
    m_settings->setValue(QStringLiteral("General/buzzer"), QStringLiteral("off"));
    for (auto it = options.enableKeys.constBegin(); it != options.enableKeys.constEnd(); ++it)
        m_settings->setValue(it.key(), it.value());
    m_settings->sync();

    EEInfoHandle::instance()->read_flash_wr1_info(&m_record);
    EEInfoHandle::instance()->read_flash_r_info(&m_readOnly);
    m_readOnly.hwOptions = quint8((options.secondPort ? EEInfoDetail::Flash_ROnly::HwOptionEth1 : 0)
                                  | (options.mobile ? EEInfoDetail::Flash_ROnly::HwOption4G : 0));
    auto *bytes = reinterpret_cast<quint8 *>(&m_readOnly);
    bytes[WlanByte] = options.wlan ? quint8(bytes[WlanByte] | WlanBit) : quint8(bytes[WlanByte] & ~WlanBit);

    m_page.reset(new NetworkSettings);
    m_page->setInterfaceLookup([this](const QString &name) { return interfaces.value(name); });
    m_page->init(-1, m_record, m_readOnly, m_settings.get());
    m_page->resize(650, 420);
}

NetworkPageRig::~NetworkPageRig()
{
    m_page.reset();
    QDir::setCurrent(QString::fromLocal8Bit(m_previousDir));
}

QStringList NetworkPageRig::calls() const
{
    QStringList list;
    for (const QStringList &call : m_panel.calls())
        list << call.join(QLatin1Char(' '));
    return list;
}

QStringList NetworkPageRig::callsOf(const QString &tool) const
{
    QStringList list;
    for (const QString &call : calls()) {
        if (call == tool || call.startsWith(tool + QLatin1Char(' ')))
            list << call;
    }
    return list;
}

quint8 NetworkPageRig::registerByte(unsigned index)
{
    quint8 value = 0;
    SysReg_Read(index, &value);
    return value;
}

QByteArray NetworkPageRig::registerBytes(unsigned index, int length)
{
    QByteArray value(qMax(length, 64), '\0');
    SysReg_Read(index, value.data());
    return value.left(length);
}

void NetworkPageRig::setRegister(unsigned index, quint8 value)
{
    SysReg_Write(index, &value, 1);
}
