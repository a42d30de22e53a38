#include "simulatoroptions.h"
#include "scriptrunner.h"

#include <QCommandLineParser>
#include <QDir>

#ifndef SIMULATOR_DEFAULT_PLUGIN
#define SIMULATOR_DEFAULT_PLUGIN "libsettingsplugin.so"
#endif

QList<QSize> SimulatorOptions::panelSizes()
{
    return {QSize(800, 480), QSize(1024, 600), QSize(1280, 800), QSize(1920, 1080)};
}

QString SimulatorOptions::sizeName(const QSize &size)
{
    return QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
}

bool SimulatorOptions::hasDisplay()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

SimulatorOptions::Mode SimulatorOptions::mode() const
{
    if (screenshotPass)
        return Mode::ScreenshotPass;
    if (screenshotsGiven)
        return Mode::Screenshots;
    if (!script.isEmpty())
        return Mode::Script;
    if (nestedChild)
        return Mode::NestedHost;
    return hasDisplay() ? Mode::Interactive : Mode::Screenshots;
}

bool SimulatorOptions::wantsNestedScreen() const
{
    const Mode running = mode();
    // Xephyr is an X client: a Wayland-only session cannot host it.
    return (running == Mode::Interactive || running == Mode::Script) && !noNested && !nestedChild
        && !qEnvironmentVariableIsEmpty("DISPLAY");
}

bool SimulatorOptions::parseSize(const QString &text)
{
    if (text == QLatin1String("all")) {
        sizes = panelSizes();
        return true;
    }
    for (const QSize &size : panelSizes()) {
        if (sizeName(size) == text) {
            sizes = {size};
            return true;
        }
    }
    QStringList names;
    for (const QSize &size : panelSizes())
        names << sizeName(size);
    m_error = QStringLiteral("unknown panel size \"%1\" (sizes: %2, all)").arg(text, names.join(QStringLiteral(", ")));
    return false;
}

bool SimulatorOptions::parseNetwork(const QString &ports, const QString &outer)
{
    if (ports != QLatin1String("1") && ports != QLatin1String("2")) {
        m_error = QStringLiteral("--ports takes 1 or 2, not \"%1\"").arg(ports);
        return false;
    }
    wiredPorts = ports.toInt();
    if (outer != QLatin1String("up") && outer != QLatin1String("down")) {
        m_error = QStringLiteral("--outer-net takes up or down, not \"%1\"").arg(outer);
        return false;
    }
    outerNetworkUp = outer == QLatin1String("up");
    return true;
}

namespace {

void declareOptions(QCommandLineParser &parser)
{
    parser.setApplicationDescription(QStringLiteral(
        "Runs the settings plug-in on a simulated panel, playing the HMI runtime's side:\n"
        "register notifications, commands the plug-in runs, closing on register 86.\n"
        "With an X display the settings window gets a screen of the panel's size of its\n"
        "own (a Xephyr window, unless --no-nested) and the log opens beside it.\n"
        "Without a display (or with --screenshots) it writes a PNG of every page in\n"
        "both languages under <dir>/<W>x<H>/, and of the network page's states (one\n"
        "and two ports, static and DHCP, the test lamp idle, running, succeeded and\n"
        "failed), and prints each path.\n"
        "The log shows every command the plug-in ran, what it meant at the panel, and\n"
        "the panel's routing table after each change of its network."));
    QCommandLineOption pass(QLatin1String(SimulatorOptions::PassOption),
                            QStringLiteral("Internal: one screenshot pass in this process."));
    pass.setFlags(QCommandLineOption::HiddenFromHelp);
    QCommandLineOption nestedChild(QLatin1String(SimulatorOptions::NestedChildOption),
                                   QStringLiteral("Internal: run on the nested panel screen, driven over stdin."));
    nestedChild.setFlags(QCommandLineOption::HiddenFromHelp);
    QCommandLineOption inLab(QLatin1String(SimulatorOptions::InLabOption),
                             QStringLiteral("Internal: this process runs inside the private network lab."));
    inLab.setFlags(QCommandLineOption::HiddenFromHelp);
    parser.addOptions({
        {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help.")},
        {QStringLiteral("plugin"), QStringLiteral("The plug-in library to load (default: the build tree's)."),
         QStringLiteral("path"), QStringLiteral(SIMULATOR_DEFAULT_PLUGIN)},
        {QStringLiteral("size"),
         QStringLiteral("Panel size: 800x480 (default), 1024x600, 1280x800, 1920x1080, or all (screenshots only)."),
         QStringLiteral("WxH"), QStringLiteral("800x480")},
        {QStringLiteral("keep-root"), QStringLiteral("Keep the simulated panel folder and print its path.")},
        {QStringLiteral("stay"), QStringLiteral("Keep running after the window was closed through register 86.")},
        {QStringLiteral("screenshots"), QStringLiteral("Write the screenshots into dir (default ./screenshots)."),
         QStringLiteral("dir")},
        {QStringLiteral("script"), QStringLiteral("Play comma-separated steps: %1.").arg(ScriptRunner::syntax()),
         QStringLiteral("steps")},
        {QStringLiteral("no-nested"),
         QStringLiteral("With a display, open the settings window on the desktop's screen instead of a "
                        "nested screen of the panel's size (Xephyr); the plug-in then sizes itself for the desktop.")},
        {QStringLiteral("ports"), QStringLiteral("Wired ports of the simulated panel: 1 (eth0) or 2 (eth0, eth1; default)."),
         QStringLiteral("n"), QStringLiteral("2")},
        {QStringLiteral("outer-net"),
         QStringLiteral("Whether the world beyond the panel answers the outer-network test's ping: up (default) or "
                        "down. Script steps outer=up and outer=down change it while running."),
         QStringLiteral("up|down"), QStringLiteral("up")},
        {QStringLiteral("real-network"),
         QStringLiteral("Run inside a private network lab (root, network and mount namespaces): eth0 and eth1 are "
                        "veth links to a far side with a DHCP and DNS server, and udhcpc, route, ifconfig, ip and "
                        "ping run for real there. Where no lab can be made, says why and uses the stand-ins.")},
        pass,
        nestedChild,
        inLab,
    });
}

} // namespace

QString SimulatorOptions::helpText()
{
    QCommandLineParser parser;
    declareOptions(parser);
    return parser.helpText();
}

SimulatorOptions::Parse SimulatorOptions::parse(const QStringList &arguments)
{
    QCommandLineParser parser;
    declareOptions(parser);
    if (!parser.parse(arguments)) {
        m_error = parser.errorText();
        return Parse::Error;
    }
    if (parser.isSet(QStringLiteral("help")))
        return Parse::Help;
    if (!parser.positionalArguments().isEmpty()) {
        m_error = QStringLiteral("unexpected argument \"%1\"").arg(parser.positionalArguments().first());
        return Parse::Error;
    }
    pluginPath = parser.value(QStringLiteral("plugin"));
    keepRoot = parser.isSet(QStringLiteral("keep-root"));
    stay = parser.isSet(QStringLiteral("stay"));
    screenshotsGiven = parser.isSet(QStringLiteral("screenshots"));
    if (screenshotsGiven)
        screenshotDir = parser.value(QStringLiteral("screenshots"));
    screenshotPass = parser.isSet(QLatin1String(PassOption));
    noNested = parser.isSet(QStringLiteral("no-nested"));
    nestedChild = parser.isSet(QLatin1String(NestedChildOption));
    realNetwork = parser.isSet(QStringLiteral("real-network"));
    inNetworkLab = parser.isSet(QLatin1String(InLabOption));
    const bool scripted = parser.isSet(QStringLiteral("script"));
    if (scripted)
        script = parser.value(QStringLiteral("script")).split(QLatin1Char(','), Qt::SkipEmptyParts);
    // The simulator works in the panel's folder, so shots go where the
    // user meant them from where the simulator was started.
    for (QString &step : script) {
        if (step.startsWith(QLatin1String("shot=")) && step.size() > 5)
            step = QStringLiteral("shot=") + QDir::current().absoluteFilePath(step.mid(5));
    }
    if (!parseNetwork(parser.value(QStringLiteral("ports")), parser.value(QStringLiteral("outer-net"))))
        return Parse::Error;
    if (!parseSize(parser.value(QStringLiteral("size"))))
        return Parse::Error;
    if (scripted && !ScriptRunner::validate(script, &m_error))
        return Parse::Error;
    return check() ? Parse::Run : Parse::Error;
}

bool SimulatorOptions::check()
{
    if (!script.isEmpty() && screenshotsGiven) {
        m_error = QStringLiteral("--script and --screenshots do not go together (use shot=FILE steps)");
        return false;
    }
    const Mode running = mode();
    const bool oneWindow = running == Mode::Interactive || running == Mode::Script
        || running == Mode::ScreenshotPass || running == Mode::NestedHost;
    if (oneWindow && sizes.size() != 1) {
        m_error = QStringLiteral("--size all is only for screenshots");
        return false;
    }
    if (screenshotDir.isEmpty()) {
        m_error = QStringLiteral("--screenshots needs a folder");
        return false;
    }
    return true;
}
