#ifndef SCREENSHOTPASS_H
#define SCREENSHOTPASS_H

#include <QList>
#include <QObject>
#include <QPair>
#include <QSize>
#include <QString>

class HostLinks;
class WindowDriver;

// Writes a PNG of the settings window for every page, and of the general
// page with each of its dialogs open, in both languages:
// <dir>/<W>x<H>/<page or dialog>_<lang>.png. Each shot selects the language
// row and clicks the page button (then touches the dialog open), waits for
// the window to settle (timers, style updates) and grabs it.
// Then the network page's states, played as a script:
// <dir>/<W>x<H>/network-<N>port(s)-<port>-<mode>-<lamp>_<lang>.png, static
// and DHCP, the test lamp idle, running, succeeded (outer network up) and
// failed (down), the result box still open over the last two. A panel with
// one port gets only these (the other pages are the same as with two).
// At 800x480 and 1920x1080 the panel with two ports also gets the WLAN, 4G
// and VPN tabs with the host's links answering:
// <dir>/<W>x<H>/link-<state>_<lang>.png (linkStates()).
class ScreenshotPass : public QObject
{
    Q_OBJECT

public:
    ScreenshotPass(WindowDriver *driver, const QString &dir, const QSize &panelSize, int wiredPorts,
                   QObject *parent = nullptr);

    static QString fileName(const QString &dir, const QSize &panelSize,
                            const QString &page, const QString &language);

    // The script that shows and shoots the network page's states in both
    // languages.
    static QStringList networkScript(const QString &dir, const QSize &panelSize, int wiredPorts);
    // The WLAN, 4G and VPN states shot, in order, and the script that shows them.
    static QStringList linkStates();
    static bool hasLinkShots(const QSize &panelSize, int wiredPorts);
    static QStringList linkScript(const QString &dir, const QSize &panelSize);
    void setHostLinks(HostLinks *links) { m_links = links; }

    void start(int settleMs = 500);

signals:
    void saved(const QString &path);
    void failed(const QString &error);
    void finished();

private slots:
    void prepareNext();
    void openDialog();
    void grabCurrent();
    void playNetworkScript();

private:
    WindowDriver *m_driver;
    QString m_dir;
    QSize m_size;
    int m_ports;
    QList<QPair<QString, QString>> m_shots;   // (language, page or dialog)
    int m_next = 0;
    int m_settleMs = 500;
    HostLinks *m_links = nullptr;
};

#endif // SCREENSHOTPASS_H
