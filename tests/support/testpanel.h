#ifndef TESTPANEL_H
#define TESTPANEL_H

#include "simulatedpanel.h"

#include <QList>
#include <QStringList>
#include <QTemporaryDir>

// A fresh simulated panel in a temporary folder, made PANEL_ROOT for the
// lifetime of the object. Create one per test function.
class TestPanel
{
public:
    explicit TestPanel(const SimulatedPanel::Options &options = SimulatedPanel::Options());
    ~TestPanel();
    TestPanel(const TestPanel &) = delete;
    TestPanel &operator=(const TestPanel &) = delete;

    bool isValid() const { return m_valid; }
    QString errorString() const { return m_error; }
    QString root() const;
    QString path(const QString &absolutePath) const;    // root + absolutePath

    QByteArray readFile(const QString &absolutePath) const;
    bool writeFile(const QString &absolutePath, const QByteArray &data) const;
    bool removeFile(const QString &absolutePath) const;

    QByteArray image() const;                 // the firmware's device image
    void setImage(const QByteArray &image) const;

    // Puts a shell script of the given body in place of a firmware tool
    // under /root/plat-intf.
    bool replaceTool(const QString &tool, const QByteArray &body) const;

    // A reproducible image of random bytes (a device image by default).
    static QByteArray randomImage(quint32 seed, int size = 1024);

    QList<QStringList> calls() const;         // every tool call so far
    QList<QStringList> calls(const QString &tool) const;
    void clearCalls() const;

private:
    QTemporaryDir m_dir;
    QByteArray m_previousRoot;
    bool m_hadRoot = false;
    bool m_valid = false;
    QString m_error;
};

#endif // TESTPANEL_H
