#ifndef SIMULATOROPTIONS_H
#define SIMULATOROPTIONS_H

#include <QList>
#include <QSize>
#include <QString>
#include <QStringList>

// The simulator's command line, checked as a whole before anything runs so
// that the rest of the program never sees a malformed size or script.
class SimulatorOptions
{
public:
    enum class Parse { Run, Help, Error };
    // How this process runs; see mode().
    enum class Mode {
        Interactive,     // windows on the user's display, log in a side window
        Script,          // --script: play steps, log on stdout
        Screenshots,     // orchestrate screenshot passes under private X servers
        ScreenshotPass,  // internal: one pass for one size in this process
        NestedHost,      // internal: the settings window on a nested panel screen,
                         // driven over stdin by the parent's log window
    };

    Parse parse(const QStringList &arguments);
    QString errorString() const { return m_error; }
    // Needs the application object (it names the program).
    static QString helpText();
    Mode mode() const;
    // Whether this run should give the plug-in a nested screen of the
    // panel's size on the user's X display (Xephyr permitting).
    bool wantsNestedScreen() const;

    static QList<QSize> panelSizes();
    static QString sizeName(const QSize &size);     // "800x480"
    static bool hasDisplay();                        // DISPLAY or WAYLAND_DISPLAY

    QString pluginPath;
    QList<QSize> sizes;           // one size, or all four with "--size all"
    bool keepRoot = false;
    bool stay = false;
    bool screenshotsGiven = false;
    QString screenshotDir = QStringLiteral("screenshots");
    bool screenshotPass = false;
    bool noNested = false;
    bool nestedChild = false;     // this process runs on the nested screen
    QStringList script;
    int wiredPorts = 2;           // the panel's wired ports: 1 or 2
    bool outerNetworkUp = true;   // whether the simulated world answers the ping
    bool realNetwork = false;     // --real-network: run in a private network lab
    bool inNetworkLab = false;    // this process runs inside that lab
    QString networkNote;          // why --real-network fell back, for the log

    static constexpr const char *PassOption = "screenshot-pass";
    static constexpr const char *NestedChildOption = "nested-child";
    static constexpr const char *InLabOption = "in-network-lab";

private:
    bool parseSize(const QString &text);
    bool parseNetwork(const QString &ports, const QString &outer);
    bool check();

    QString m_error;
};

#endif // SIMULATOROPTIONS_H
