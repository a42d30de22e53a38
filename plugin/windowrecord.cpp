#include "windowrecord.h"

#include "eeinfohandle.h"
#include "platformlog.h"

void WindowRecord::load()
{
    EEInfoHandle *device = EEInfoHandle::instance();
    device->read_flash_wr1_info(&m_record);
    m_stale = !device->lastReadComplete();
    m_changedWhileStale = 0;
    m_changedSinceSync = 0;
    m_deviceWrites = device->writeCount();
}

void WindowRecord::copyPart(const EEInfoDetail::Flash_WR_1 &from, EEInfoDetail::Flash_WR_1 &to,
                            int part)
{
    switch (part) {
    case WholeRecord:
        to = from;
        break;
    case Brightness:
        to.brightness = from.brightness;
        break;
    case IpAddress:
        to.eth0Ip = from.eth0Ip;
        to.eth1Ip = from.eth1Ip;
        break;
    case SubnetMask:
        to.eth0Mask = from.eth0Mask;
        to.eth1Mask = from.eth1Mask;
        break;
    case Gateway:
        to.eth0Gateway = from.eth0Gateway;
        to.eth1Gateway = from.eth1Gateway;
        break;
    default:
        break;
    }
}

bool WindowRecord::merge(const EEInfoDetail::Flash_WR_1 &page, int part)
{
    if (part < WholeRecord || part > Gateway)
        return false;
    copyPart(page, m_record, part);
    m_changedSinceSync |= 1u << part;
    if (m_stale)
        m_changedWhileStale |= 1u << part;
    return true;
}

bool WindowRecord::refresh()
{
    EEInfoDetail::Flash_WR_1 fresh {};
    EEInfoHandle *device = EEInfoHandle::instance();
    device->read_flash_wr1_info(&fresh);
    if (!device->lastReadComplete())
        return false;
    for (int part = WholeRecord; part <= Gateway; ++part) {
        if (m_changedWhileStale & (1u << part))
            copyPart(m_record, fresh, part);
    }
    m_record = fresh;
    m_stale = false;
    m_changedWhileStale = 0;
    return true;
}

void WindowRecord::noteDeviceWrites()
{
    if (EEInfoHandle::instance()->writeCount() == m_deviceWrites)
        return;
    // Someone wrote the record past this copy: only what the pages changed
    // since the copy was last in step is ours to put over a fresh read.
    if (!m_stale)
        m_changedWhileStale = m_changedSinceSync;
    m_stale = true;
}

void WindowRecord::write()
{
    noteDeviceWrites();
    if (m_stale && !refresh()) {
        qCWarning(lcPlatform, "device record not written: no whole read of the device image");
        return;
    }
    EEInfoHandle *device = EEInfoHandle::instance();
    device->write_flash_wr1_info(&m_record);
    m_changedSinceSync = 0;
    m_deviceWrites = device->writeCount();
}
