#ifndef SCRIPTRUNNER_H
#define SCRIPTRUNNER_H

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QStringList>

class HostLinks;
class LinkPageDriver;
class WindowDriver;

// Plays a short script against the settings window, one step every
// stepDelay ms so that each step sees the window settled after the last.
// Steps (given comma-separated on the command line):
//   general | network | version   click that page's button
//   zh | en                       select that language row
//   keypad | datetime | dismiss   open a general page dialog; close the top one
//   eth0 | eth1                   show that wired port's tab of the network page
//   static | dhcp                 pick the shown port's addressing mode
//   test                          press the shown port's outer-network test button
//   testresult                    once the ping has finished, let the page read
//                                 its answer now rather than after 6 s (the
//                                 result box stays open until "dismiss")
//   outer=up | outer=down         make the world beyond the panel answer or not
//   wait=MS                       pause
//   shot=FILE                     write a PNG of the window
//   wlan, 4g, vpn, wlan-search, wlan-scan, wlan-pick=NAME, psw-..., 4g-on,
//   vpn-on, vpn-region=N ...      the WLAN, 4G and VPN tabs (LinkPageDriver)
//   wlan-password-wrong, wlan-drop, 4g-drop, vpn-drop, signal=NN,
//   scan-add=NAME ...             what the host's links do next (HostLinks)
//   close                         press the window's close button
//   quit                          end the simulator (exit status 0)
class ScriptRunner : public QObject
{
    Q_OBJECT

public:
    ScriptRunner(const QStringList &steps, WindowDriver *driver, QObject *parent = nullptr);
    ~ScriptRunner() override;
    // The host whose links the host steps command; without it they fail.
    void setHostLinks(HostLinks *links) { m_links = links; }

    // Checks a script before anything starts; false with a message.
    static bool validate(const QStringList &steps, QString *error);
    static QString syntax();

    void start(int stepDelayMs = 300);

signals:
    void closePressed();
    void quitRequested();
    void screenshotSaved(const QString &path);
    void failed(const QString &error);
    void finished();

private slots:
    void runNextStep();
    void awaitPingAnswer();

private:
    bool runStep(const QString &step, int *pauseMs, QString *error);
    bool runNetworkStep(const QString &step, QString *error);

    QStringList m_steps;
    WindowDriver *m_driver;
    LinkPageDriver *m_pages;
    HostLinks *m_links = nullptr;
    int m_next = 0;
    int m_stepDelayMs = 300;
    QElapsedTimer m_pingClock;
};

#endif // SCRIPTRUNNER_H
