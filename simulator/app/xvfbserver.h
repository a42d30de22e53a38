#ifndef XVFBSERVER_H
#define XVFBSERVER_H

#include <QProcess>
#include <QSize>
#include <QString>

// A private X server (Xvfb) whose one screen has exactly the panel's size,
// because the plug-in lays itself out from the primary screen and Qt's
// offscreen platform always reports 800x600. Xvfb picks a free display
// itself and reports it through -displayfd; TCP is off.
class XvfbServer
{
public:
    XvfbServer() = default;
    ~XvfbServer();
    XvfbServer(const XvfbServer &) = delete;
    XvfbServer &operator=(const XvfbServer &) = delete;

    static bool available();   // Xvfb in PATH

    bool start(const QSize &screenSize, QString *error);
    void stop();
    QString display() const { return m_display; }   // ":99"

private:
    bool readDisplayNumber(int fd, QString *error);

    QProcess m_process;
    QString m_display;
};

#endif // XVFBSERVER_H
