#include "wirelesswgtui.h"

bool WirelessWgtUI::m_isStaticIP = false;

WirelessWgtUI::WirelessWgtUI(QWidget *parent)
    : QWidget(parent)
{
}
