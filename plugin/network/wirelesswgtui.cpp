#include "wirelesswgtui.h"

bool WirelessWgtUI::m_isStaticIP = false;

WirelessWgtUI::WirelessWgtUI(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("WirelessWgtUI"));
}

void WirelessWgtUI::getEEDate(EEInfoDetail::Flash_WR_1 &record, EEInfoDetail::Flash_ROnly &readOnly)
{
    m_record = record;
    m_readOnly = readOnly;
}

void WirelessWgtUI::refresh()
{
}

void WirelessWgtUI::setPintTestBtnStyle()
{
}

void WirelessWgtUI::on_updateDefaultNetwork(int index)
{
    m_defaultNetwork = index;
}
