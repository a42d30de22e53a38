#ifndef FIFOREADER_H
#define FIFOREADER_H

#include <QByteArray>
#include <QList>
#include <QString>
#include <array>

// Plays the host's reading end of a notification FIFO: opened non-blocking
// for reading so that the plug-in's non-blocking writes succeed, and drained
// on demand.
class FifoReader
{
public:
    explicit FifoReader(const QString &fifoPath);   // creates the FIFO if missing
    ~FifoReader();
    FifoReader(const FifoReader &) = delete;
    FifoReader &operator=(const FifoReader &) = delete;

    bool isOpen() const { return m_fd >= 0; }
    QByteArray drain();                              // everything pending
    QList<quint32> registerIndices();                // "/tmp/fifo_sysreg" messages
    QList<std::array<quint32, 3>> localChanges();    // "/tmp/fifo_localreg" messages

private:
    int m_fd = -1;
};

#endif // FIFOREADER_H
