#ifndef HOSTSESSION_H
#define HOSTSESSION_H

#include "registerreader.h"

#include <QObject>
#include <QDialog>
#include <QPointer>
#include <QString>
#include <QStringList>

class CallLogWatcher;
class FifoWatcher;
class HostLinks;
class RouteTableWatcher;

// The host application's side of a running settings window: it reads the
// register and local-area notifications the plug-in sends through the two
// FIFOs, reports each with the value now stored, reports every command the
// plug-in ran with what it meant at the panel, the panel's routing table
// whenever it changed, and closes and deletes the window when register 86 (window
// open) goes to 0, as the HMI runtime does. Its WLAN, 4G and VPN links
// answer the pages' requests.
class HostSession : public QObject
{
    Q_OBJECT

public:
    static constexpr unsigned WindowOpenRegister = 86;

    // realIp: the ip tool that shows the lab's real routing table; empty
    // for the table the recording stand-ins keep.
    HostSession(const QString &root, const QString &realIp, QObject *parent = nullptr);

    // Opens both FIFOs and starts following the call log.
    bool start(QString *error);
    void adoptWindow(QDialog *window);
    QDialog *window() const { return m_window; }
    HostLinks *links() const { return m_links; }
    // Reports commands logged since the last poll.
    void flush();

signals:
    void logLine(const QString &line);
    void windowDeleted();

private slots:
    void onRegisterMessage(const QByteArray &message);
    void onLocalMessage(const QByteArray &message);
    void onCommandRan(const QStringList &argv);
    void onRoutesChanged(const QStringList &routes);

private:
    void closeWindowIfReleased();

    RegisterReader m_registers;
    FifoWatcher *m_sysreg = nullptr;
    FifoWatcher *m_localreg = nullptr;
    CallLogWatcher *m_calls = nullptr;
    RouteTableWatcher *m_routes = nullptr;
    HostLinks *m_links = nullptr;
    int m_tablePollMs;
    bool m_routeCheckDue = false;
    QPointer<QDialog> m_window;
};

#endif // HOSTSESSION_H
