#include "wirelesspswdialog.h"

WirelessPswDialog::WirelessPswDialog(QString ssid, QWidget *parent)
    : QDialog(parent)
    , m_ssid(ssid)
{
    setObjectName(QStringLiteral("WirelessPswDialog"));
}
