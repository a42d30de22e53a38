#ifndef FIFOWATCHER_H
#define FIFOWATCHER_H

#include <QByteArray>
#include <QObject>
#include <QString>

class QSocketNotifier;

// Reads fixed-size notification messages from a named FIFO without ever
// blocking the GUI thread: the FIFO is opened non-blocking, watched with a
// QSocketNotifier, and reopened whenever the read end sees end-of-file or a
// hang-up. Partial messages are kept until the rest arrives.
class FifoWatcher : public QObject
{
    Q_OBJECT

public:
    FifoWatcher(const QString &path, int messageSize, QObject *parent = nullptr);
    ~FifoWatcher() override;

    // Creates the FIFO when it is missing, then opens it. False on failure.
    bool open(QString *error);
    bool isOpen() const { return m_readFd >= 0; }
    QString path() const { return m_path; }

signals:
    void messageReceived(const QByteArray &message);

private slots:
    void onReadable();

private:
    void closeFifo();
    void reopen();

    QString m_path;
    int m_messageSize;
    int m_readFd = -1;
    int m_keepAliveFd = -1;
    QSocketNotifier *m_notifier = nullptr;
    QByteArray m_pending;
};

#endif // FIFOWATCHER_H
