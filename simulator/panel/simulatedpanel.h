#ifndef SIMULATEDPANEL_H
#define SIMULATEDPANEL_H

#include <QByteArray>
#include <QString>
#include <QStringList>

// Lays out a simulated panel below a folder that then serves as PANEL_ROOT:
// the host's register files and FIFOs, the configuration files, the font,
// firmware tools under /root/plat-intf/ that keep the device image and the
// brightness in files, and recording stand-ins for the system tools the
// plug-in runs. Every tool call is appended to one log, a line per call:
// the tool's name and its arguments separated by tabs.
class SimulatedPanel
{
public:
    struct Options {
        int screenWidth = 800;
        QByteArray qrCodeText = "TAVRO-HMI-7A3F19C2-0001";
        int brightness = 148;           // device scale
        bool withLanguageFile = true;   // /hmi/Config/lange.json
        bool buzzerOn = false;          // register 79, the key click
        QString fontSource;             // empty: a CJK font from the system
        int wiredPorts = 2;             // 1: eth0 only (capability bit of eth1 clear)
        // Whether the ping stand-in's host answers; Unknown: the stand-in
        // says nothing, as a bare recorder.
        enum class OuterNetwork { Unknown, Up, Down } outerNetwork = OuterNetwork::Unknown;
        // The network tools run for real after being recorded: only for a
        // simulator inside a private network namespace.
        bool realNetwork = false;
    };

    // Builds the panel below root (created if missing). False when a part
    // could not be made; errorString() says which.
    bool build(const QString &root, const Options &options);
    bool build(const QString &root) { return build(root, Options()); }
    QString errorString() const { return m_error; }

    // Writes the recording stand-ins of the host tools into dir. They log to
    // $PANEL_ROOT/sim/calls.log when PANEL_ROOT is set, else to dir/calls.log.
    static bool writeHostToolFakes(const QString &dir, QString *error = nullptr);
    // The same with the network tools passing on to the real ones (found
    // outside dir) once recorded.
    static bool writeHostToolPassThroughs(const QString &dir, QString *error = nullptr);
    static QStringList hostToolNames();
    static QStringList firmwareToolNames();

    static QString stateDir(const QString &root);      // root/sim
    static QString callLogPath(const QString &root);   // root/sim/calls.log
    static QString imagePath(const QString &root);     // root/sim/eeprom.bin
    static QString brightnessPath(const QString &root);// root/sim/brightness
    static QString beepLogPath(const QString &root);   // root/sim/beeps.log
    static QString hostToolDir(const QString &root);   // root/sim/bin
    static QString routeTablePath(const QString &root);    // root/sim/routes
    static QString interfacesPath(const QString &root);    // root/sim/interfaces
    static QString outerNetworkPath(const QString &root);  // root/sim/outer-net

    // Makes the simulated world beyond the panel answer the ping or not.
    static bool setOuterNetwork(const QString &root, bool up);
    // The host brought a link's interface (wlan0, ppp0) up with this
    // address, or took it away (empty): the stand-ins' network follows.
    static bool setLinkInterface(const QString &root, const QString &port, const QString &address,
                                 const QString &mask);

    // Parses a call log into argument vectors (element 0 is the tool name).
    static QList<QStringList> parseCallLog(const QByteArray &log);

    // The 1024-byte device image the panel starts with.
    static QByteArray sampleImage(const Options &options);

    // Size of every register file: covers every register of the table.
    static constexpr int RegisterFileSize = 4096;

private:
    static bool writeHostTools(const QString &dir, bool passThrough, QString *error);
    bool writeNetworkState(const QString &root, const Options &options);

    QString m_error;
};

#endif // SIMULATEDPANEL_H
