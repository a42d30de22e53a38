#ifndef COMMANDREADER_H
#define COMMANDREADER_H

#include <QByteArray>
#include <QObject>
#include <QString>

class QSocketNotifier;

// Reads commands, one per line, from this process's standard input without
// blocking the event loop. This is how the log window of the parent
// process drives a settings window that runs in a child on the nested
// panel screen. End of input means the parent is gone.
class CommandReader : public QObject
{
    Q_OBJECT

public:
    static constexpr const char *ShowCommand = "show";   // show or recreate the window
    static constexpr const char *QuitCommand = "quit";   // end the simulator
    static constexpr const char *OuterUpCommand = "outer=up";       // the outer network answers
    static constexpr const char *OuterDownCommand = "outer=down";   // it does not

    explicit CommandReader(QObject *parent = nullptr);

signals:
    void commandReceived(const QString &command);
    void inputEnded();

private slots:
    void onReadable();

private:
    QSocketNotifier *m_notifier;
    QByteArray m_pending;
};

#endif // COMMANDREADER_H
