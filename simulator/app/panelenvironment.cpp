#include "panelenvironment.h"
#include "simulatedpanel.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

PanelEnvironment::PanelEnvironment()
    : m_dir(QDir::tempPath() + QStringLiteral("/panel-sim-XXXXXX"))
{
}

bool PanelEnvironment::create(const SimulatorOptions &simulator, const QSize &panelSize, QString *error)
{
    if (!m_dir.isValid()) {
        *error = QStringLiteral("cannot create a temporary panel folder: %1").arg(m_dir.errorString());
        return false;
    }
    m_dir.setAutoRemove(!simulator.keepRoot);
    SimulatedPanel::Options options;
    // A panel as delivered: key clicks on, so that every touch shows a beep.
    options.buzzerOn = true;
    options.screenWidth = panelSize.width();
    options.wiredPorts = simulator.wiredPorts;
    options.outerNetwork = simulator.outerNetworkUp ? SimulatedPanel::Options::OuterNetwork::Up
                                                    : SimulatedPanel::Options::OuterNetwork::Down;
    options.realNetwork = simulator.inNetworkLab;
    SimulatedPanel panel;
    if (!panel.build(m_dir.path(), options)) {
        *error = QStringLiteral("cannot build the simulated panel: %1").arg(panel.errorString());
        return false;
    }
    if (!QDir::setCurrent(m_dir.path())) {
        *error = QStringLiteral("cannot work in the panel folder %1").arg(m_dir.path());
        return false;
    }
    return exportEnvironment(error) && checkToolsAreFakes(error);
}

bool PanelEnvironment::exportEnvironment(QString *error)
{
    const QString toolDir = SimulatedPanel::hostToolDir(root());
    if (!QFileInfo(toolDir).isDir()) {
        *error = QStringLiteral("the simulated panel has no tool folder %1").arg(toolDir);
        return false;
    }
    const QByteArray oldPath = qgetenv("PATH");
    QByteArray newPath = QFile::encodeName(toolDir);
    if (!oldPath.isEmpty())
        newPath += ':' + oldPath;
    qputenv("PATH", newPath);
    qputenv("PANEL_ROOT", QFile::encodeName(root()));
    return true;
}

// The fakes must win for every tool, or a click in the window could reboot
// or reconfigure this machine: refuse to go on otherwise.
bool PanelEnvironment::checkToolsAreFakes(QString *error) const
{
    const QString toolDir = QFileInfo(SimulatedPanel::hostToolDir(root())).canonicalFilePath();
    // The tools that could change this machine are checked even if the
    // panel kit stops listing one of them.
    QStringList tools = SimulatedPanel::hostToolNames();
    tools << QStringLiteral("reboot") << QStringLiteral("date") << QStringLiteral("hwclock")
          << QStringLiteral("ifconfig") << QStringLiteral("route") << QStringLiteral("ip")
          << QStringLiteral("udhcpc") << QStringLiteral("killall") << QStringLiteral("ping");
    tools.removeDuplicates();
    for (const QString &tool : qAsConst(tools)) {
        const QString found = QStandardPaths::findExecutable(tool);
        if (QFileInfo(found).canonicalPath() != toolDir) {
            *error = QStringLiteral("\"%1\" resolves to \"%2\", not to the stand-in in %3")
                         .arg(tool, found, toolDir);
            return false;
        }
    }
    return true;
}
