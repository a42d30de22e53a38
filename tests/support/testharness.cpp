#include "testharness.h"

#include "simulatedpanel.h"

#include <QProcess>
#include <QStandardPaths>
#include <QStringList>

namespace {

bool insideFakes(const QString &resolved, const QString &dir)
{
    return resolved.startsWith(dir + QLatin1Char('/'));
}

// What /bin/sh (and so system() and popen()) finds for each tool name.
QStringList shellResolution(const QStringList &tools)
{
    QProcess shell;
    shell.start(QStringLiteral("/bin/sh"),
                {QStringLiteral("-c"), QStringLiteral("for t in %1; do command -v \"$t\" || echo missing; done")
                                           .arg(tools.join(QLatin1Char(' ')))});
    if (!shell.waitForFinished(10000))
        return {};
    return QString::fromLocal8Bit(shell.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace

TestHarness::TestHarness()
{
    if (!m_dir.isValid()) {
        m_error = QStringLiteral("no temporary folder for the tool stand-ins");
        return;
    }
    if (!SimulatedPanel::writeHostToolFakes(m_dir.path(), &m_error))
        return;
    qputenv("PATH", QFile::encodeName(m_dir.path()) + ':' + qgetenv("PATH"));
    qunsetenv("PANEL_ROOT");

    m_error = escapingTool(m_dir.path());
    if (!m_error.isEmpty())
        return;
    m_ready = true;
}

QString TestHarness::escapingTool(const QString &fakeDir)
{
    const QStringList tools = SimulatedPanel::hostToolNames();
    const QStringList fromShell = shellResolution(tools);
    if (fromShell.size() != tools.size())
        return QStringLiteral("could not ask /bin/sh where the system tools are");
    for (int i = 0; i < tools.size(); ++i) {
        const QString fromQt = QStandardPaths::findExecutable(tools.at(i));
        if (!insideFakes(fromQt, fakeDir) || !insideFakes(fromShell.at(i), fakeDir))
            return QStringLiteral("'%1' would reach the real tool (%2)").arg(tools.at(i), fromShell.at(i));
    }
    return QString();
}
