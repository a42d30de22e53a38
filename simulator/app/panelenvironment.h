#ifndef PANELENVIRONMENT_H
#define PANELENVIRONMENT_H

#include "simulatoroptions.h"

#include <QSize>
#include <QString>
#include <QTemporaryDir>

// A throw-away simulated panel for this process: builds it in a temporary
// folder, makes it PANEL_ROOT and puts its recording tool stand-ins first
// in PATH, so that every system() the plug-in does lands on a fake and
// every file it writes stays inside the folder. The folder is removed with
// the object unless it is kept. The simulator works in the folder, as the
// runtime works in its own: files the plug-in names relatively (the outer-
// network test's "ping.txt") stay in it too.
class PanelEnvironment
{
public:
    PanelEnvironment();

    // Must succeed before the plug-in is loaded.
    bool create(const SimulatorOptions &options, const QSize &panelSize, QString *error);
    QString root() const { return m_dir.path(); }
    QString path(const QString &absolutePath) const { return root() + absolutePath; }

private:
    bool exportEnvironment(QString *error);
    bool checkToolsAreFakes(QString *error) const;

    QTemporaryDir m_dir;
};

#endif // PANELENVIRONMENT_H
