#include "mobilenetworkui.h"

MobileNetworkUI::MobileNetworkUI(int fontId, QWidget *parent)
    : QWidget(parent)
    , m_fontId(fontId)
{
    setObjectName(QStringLiteral("MobileNetworkUI"));
}

void MobileNetworkUI::refresh()
{
}

void MobileNetworkUI::setPintTestBtnStyle()
{
}

void MobileNetworkUI::on_updateDefaultNetwork(int index)
{
    m_defaultNetwork = index;
}

void MobileNetworkUI::on_enableNetwork(int port, int enabled)
{
    if (port == 0 || port == 1)
        m_portEnabled[port] = enabled != 0;
}
