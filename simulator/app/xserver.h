#ifndef XSERVER_H
#define XSERVER_H

#include "serverprocess.h"

#include <QObject>
#include <QSize>
#include <QString>
#include <QStringList>

// A private X server whose one screen has exactly the panel's size,
// because the plug-in lays itself out from the primary screen:
//  - Virtual: Xvfb, invisible, for screenshots (Qt's offscreen platform
//    always reports 800x600);
//  - Nested: Xephyr, a window of the panel's size on the user's display,
//    for interactive and scripted runs on a desktop whose screen is larger.
// The server picks a free display itself and reports it through
// -displayfd, so no display number is ever guessed; TCP is off.
class XServer : public QObject
{
    Q_OBJECT

public:
    enum class Kind { Virtual, Nested };

    explicit XServer(Kind kind, QObject *parent = nullptr);
    ~XServer() override;

    static QString program(Kind kind);   // "Xvfb", "Xephyr"
    static bool available(Kind kind);    // the program is in PATH

    bool start(const QSize &screenSize, QString *error);
    void stop();
    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }
    QString display() const { return m_display; }   // ":99"

signals:
    // The server went away without stop(): for Xephyr, usually the user
    // closed its window.
    void ended();

private:
    QStringList arguments(const QSize &screenSize, int displayFd) const;
    bool readDisplayNumber(int fd, QString *error);

    Kind m_kind;
    ServerProcess m_process;
    QString m_display;
    bool m_stopping = false;
};

#endif // XSERVER_H
