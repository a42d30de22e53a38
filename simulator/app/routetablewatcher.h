#ifndef ROUTETABLEWATCHER_H
#define ROUTETABLEWATCHER_H

#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

// Follows the routing table the simulated panel now has and reports it
// whenever it changed: with the recording stand-ins the table they keep in
// the panel's state folder, inside the private network lab the kernel's
// own ("ip -4 route show" of the lab's namespace). The DHCP client changes
// the table behind the plug-in's back, so besides the checks the host asks
// for after each command a slow poll catches those changes too.
class RouteTableWatcher : public QObject
{
    Q_OBJECT

public:
    // realIp: the real ip tool to ask; empty means the stand-ins' table file.
    RouteTableWatcher(const QString &tableFile, const QString &realIp, QObject *parent = nullptr);

    void start(int intervalMs);
    // Reads the table now and reports it if it differs from the last report.
    void check();
    QStringList table() const { return m_last; }

signals:
    void tableChanged(const QStringList &routes);

private:
    QStringList read(bool *ok) const;

    QString m_file;
    QString m_ip;
    QStringList m_last;
    bool m_reported = false;
    QTimer m_timer;
};

#endif // ROUTETABLEWATCHER_H
