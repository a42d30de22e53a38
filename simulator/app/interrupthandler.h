#ifndef INTERRUPTHANDLER_H
#define INTERRUPTHANDLER_H

#include <QObject>

class QSocketNotifier;

// Turns SIGINT and SIGTERM into a Qt signal (through a socket pair, the
// only async-signal-safe way into the event loop), so that Ctrl-C still
// removes the temporary panel folder and stops child processes. Code that
// blocks outside the event loop polls wasInterrupted() instead.
class InterruptHandler : public QObject
{
    Q_OBJECT

public:
    explicit InterruptHandler(QObject *parent = nullptr);
    ~InterruptHandler() override;

    static bool wasInterrupted();

signals:
    void interrupted();

private slots:
    void onSignalByte();

private:
    QSocketNotifier *m_notifier = nullptr;
};

#endif // INTERRUPTHANDLER_H
