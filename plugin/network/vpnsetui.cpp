#include "vpnsetui.h"

VpnSetUI::VpnSetUI(int fontId, QWidget *parent)
    : QWidget(parent)
    , m_fontId(fontId)
{
    setObjectName(QStringLiteral("VpnSetUI"));
}

void VpnSetUI::refresh()
{
}
