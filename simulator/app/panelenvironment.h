#ifndef PANELENVIRONMENT_H
#define PANELENVIRONMENT_H

#include <QSize>
#include <QString>
#include <QTemporaryDir>

// A throw-away simulated panel for this process: builds it in a temporary
// folder, makes it PANEL_ROOT and puts its recording tool stand-ins first
// in PATH, so that every system() the plug-in does lands on a fake and
// every file it writes stays inside the folder. The folder is removed with
// the object unless it is kept.
class PanelEnvironment
{
public:
    PanelEnvironment();

    // Must succeed before the plug-in is loaded.
    bool create(const QSize &panelSize, bool keep, QString *error);
    QString root() const { return m_dir.path(); }
    QString path(const QString &absolutePath) const { return root() + absolutePath; }

private:
    bool exportEnvironment(QString *error);
    bool checkToolsAreFakes(QString *error) const;

    QTemporaryDir m_dir;
};

#endif // PANELENVIRONMENT_H
