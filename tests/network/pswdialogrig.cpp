#include "pswdialogrig.h"

#include "sysreg.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>

const QString PswDialogRig::Ssid = QStringLiteral("Office");

PswDialogRig::PswDialogRig(const QString &ssid, QWidget *parent)
    : dialog(new WirelessPswDialog(ssid, parent)), closed(dialog.data(), SIGNAL(frame_close(int)))
{
    dialog->show();
    if (!QTest::qWaitForWindowExposed(dialog.data()))
        qWarning("PswDialogRig: the dialog was not shown");
}

PswDialogRig::~PswDialogRig()
{
    delete dialog.data();
}

QLineEdit *PswDialogRig::password() const
{
    return child<QLineEdit>("lineEdit_psw");
}

PasswordKeyboard *PswDialogRig::pressPasswordField()
{
    QTest::mousePress(password(), Qt::LeftButton);
    PasswordKeyboard *keyboard = dialog->keyboard();
    if (keyboard && !QTest::qWaitForWindowExposed(keyboard))
        return nullptr;
    return keyboard;
}

bool PswDialogRig::press(const QString &key)
{
    PasswordKeyboard *keyboard = dialog ? dialog->keyboard() : nullptr;
    QPushButton *button = keyboard ? keyboard->key(key) : nullptr;
    if (!button) {
        qWarning("PswDialogRig: no key %s", qPrintable(key));
        return false;
    }
    QTest::mouseClick(button, Qt::LeftButton);
    return true;
}

QString PswDialogRig::line() const
{
    return dialog && dialog->keyboard() ? dialog->keyboard()->line()->text() : QString();
}

void PswDialogRig::connectClicked()
{
    QTest::mouseClick(child<QPushButton>("pushButton_connect"), Qt::LeftButton);
}

QByteArray PswDialogRig::registerBytes(unsigned index)
{
    const RegBase *reg = SysReg_LoadReg(index);
    QByteArray value(256, '\0');
    if (!reg || reg->length > unsigned(value.size()) || SysReg_Read(index, value.data()) != 0)
        return QByteArray();
    return value.left(int(reg->length));
}

quint8 PswDialogRig::registerByte(unsigned index)
{
    quint8 value[4] = {};
    SysReg_Read(index, value);
    return value[0];
}

void PswDialogRig::setRegisterByte(unsigned index, quint8 value)
{
    SysReg_Write(index, &value, 1);
}

QByteArray PswDialogRig::padded(const QByteArray &text, int length)
{
    return QByteArray(text).append(length - text.size(), '\0');
}
