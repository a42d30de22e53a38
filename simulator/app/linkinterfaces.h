#ifndef LINKINTERFACES_H
#define LINKINTERFACES_H

#include <QObject>
#include <QString>
#include <QStringList>

// Inside the private network lab, gives the WLAN and 4G links' interfaces
// (wlan0 and ppp0, veth links to the lab's far side that the lab runner
// makes, down and without an address) the address the host reports when a
// link comes up, and takes it away again when the link goes, so that the
// pages' routes and the ping test run over them for real. Only those two
// names, only IPv4 addresses, only through the lab's own ip tool.
class LinkInterfaces : public QObject
{
    Q_OBJECT

public:
    LinkInterfaces(const QString &ipTool, QObject *parent = nullptr);

    static bool isLinkInterface(const QString &name);
    static int prefixLength(const QString &mask);   // -1 for no mask

public slots:
    void apply(const QString &interfaceName, const QString &address, const QString &mask);

signals:
    void logLine(const QString &line);

private:
    bool ip(const QStringList &arguments);

    QString m_ip;
};

#endif // LINKINTERFACES_H
