#ifndef WIRELESSPSWDIALOG_H
#define WIRELESSPSWDIALOG_H

#include <QDialog>
#include <QString>

// Asks for the password of a protected WLAN and hands the connection
// request to the host application. frame_close tells the WLAN page how it
// ended: 1 after a request, 0 after cancel or close.
class WirelessPswDialog : public QDialog
{
    Q_OBJECT

public:
    WirelessPswDialog(QString ssid, QWidget *parent);

    QString ssid() const { return m_ssid; }

signals:
    void frame_close(int result);

private:
    QString m_ssid;
};

#endif // WIRELESSPSWDIALOG_H
