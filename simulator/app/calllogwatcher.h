#ifndef CALLLOGWATCHER_H
#define CALLLOGWATCHER_H

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

// Follows the simulated panel's tool-call log, one line per command the
// plug-in ran, and reports each new complete line. A 200 ms poll is used
// rather than QFileSystemWatcher because the log is created late (on the
// first call) and appended to by short-lived processes, which the watcher
// reports unreliably.
class CallLogWatcher : public QObject
{
    Q_OBJECT

public:
    explicit CallLogWatcher(const QString &path, QObject *parent = nullptr);

    void start(int intervalMs = 200);
    // Reads whatever arrived since the last poll; call once more before
    // exiting so the last commands are not lost.
    void poll();

    // "ifconfig eth0 192.168.1.10": arguments with blanks are quoted.
    static QString commandLine(const QStringList &argv);

signals:
    void commandRan(const QStringList &argv);

private:
    QString m_path;
    qint64 m_offset = 0;
    QByteArray m_partial;
    QTimer m_timer;
};

#endif // CALLLOGWATCHER_H
