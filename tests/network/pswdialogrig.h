#ifndef PSWDIALOGRIG_H
#define PSWDIALOGRIG_H

#include "passwordkeyboard.h"
#include "wirelesspswdialog.h"

#include <QByteArray>
#include <QPointer>
#include <QSignalSpy>
#include <QString>

class QLineEdit;

// A WLAN password dialog as the WLAN page opens it, shown offscreen, with a
// spy on frame_close; keys are pressed on its keyboard by their table
// names. Create it after the test's TestPanel. Deletes the dialog, unless
// it deleted itself.
class PswDialogRig
{
public:
    static const QString Ssid;                     // "Office"

    explicit PswDialogRig(const QString &ssid = Ssid, QWidget *parent = nullptr);
    ~PswDialogRig();
    PswDialogRig(const PswDialogRig &) = delete;
    PswDialogRig &operator=(const PswDialogRig &) = delete;

    template <typename T>
    T *child(const char *name) const { return dialog->findChild<T *>(QLatin1String(name)); }
    QLineEdit *password() const;

    // A press on the password field; the keyboard it opened, once shown.
    PasswordKeyboard *pressPasswordField();
    // A click on the open keyboard's key; false without keyboard or key.
    bool press(const QString &key);
    QString line() const;                          // the keyboard's line
    void connectClicked();

    // Registers read back in their table length, and set.
    static QByteArray registerBytes(unsigned index);
    static quint8 registerByte(unsigned index);
    static void setRegisterByte(unsigned index, quint8 value);
    // text followed by zeros up to length.
    static QByteArray padded(const QByteArray &text, int length);

    QPointer<WirelessPswDialog> dialog;
    QSignalSpy closed;
};

#endif // PSWDIALOGRIG_H
