#include "testpanel.h"

#include <QFile>
#include <QRandomGenerator>

TestPanel::TestPanel(const SimulatedPanel::Options &options)
    : m_previousRoot(qgetenv("PANEL_ROOT")), m_hadRoot(qEnvironmentVariableIsSet("PANEL_ROOT"))
{
    if (!m_dir.isValid()) {
        m_error = QStringLiteral("no temporary folder");
        return;
    }
    SimulatedPanel panel;
    if (!panel.build(m_dir.path(), options)) {
        m_error = panel.errorString();
        return;
    }
    qputenv("PANEL_ROOT", QFile::encodeName(m_dir.path()));
    m_valid = true;
}

TestPanel::~TestPanel()
{
    if (m_hadRoot)
        qputenv("PANEL_ROOT", m_previousRoot);
    else
        qunsetenv("PANEL_ROOT");
}

QString TestPanel::root() const { return m_dir.path(); }

QString TestPanel::path(const QString &absolutePath) const { return m_dir.path() + absolutePath; }

QByteArray TestPanel::readFile(const QString &absolutePath) const
{
    QFile file(path(absolutePath));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool TestPanel::writeFile(const QString &absolutePath, const QByteArray &data) const
{
    QFile file(path(absolutePath));
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(data) == data.size();
}

bool TestPanel::removeFile(const QString &absolutePath) const { return QFile::remove(path(absolutePath)); }

QByteArray TestPanel::image() const
{
    QFile file(SimulatedPanel::imagePath(root()));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void TestPanel::setImage(const QByteArray &image) const
{
    QFile file(SimulatedPanel::imagePath(root()));
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(image);
}

QList<QStringList> TestPanel::calls() const
{
    QFile file(SimulatedPanel::callLogPath(root()));
    return SimulatedPanel::parseCallLog(file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray());
}

QList<QStringList> TestPanel::calls(const QString &tool) const
{
    QList<QStringList> matching;
    for (const QStringList &call : calls()) {
        if (call.value(0) == tool)
            matching << call;
    }
    return matching;
}

void TestPanel::clearCalls() const
{
    QFile file(SimulatedPanel::callLogPath(root()));
    file.open(QIODevice::WriteOnly | QIODevice::Truncate);
}

bool TestPanel::replaceTool(const QString &tool, const QByteArray &body) const
{
    const QString toolPath = path(QStringLiteral("/root/plat-intf/") + tool);
    QFile script(toolPath);
    if (!script.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    script.write("#!/bin/sh\n" + body);
    script.close();
    return script.setPermissions(script.permissions() | QFileDevice::ExeOwner);
}

QByteArray TestPanel::randomImage(quint32 seed, int size)
{
    QRandomGenerator generator(seed);
    QByteArray image(size, '\0');
    for (int i = 0; i < image.size(); ++i)
        image[i] = char(generator.bounded(256));
    return image;
}
