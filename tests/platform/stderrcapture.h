#ifndef STDERRCAPTURE_H
#define STDERRCAPTURE_H

#include <QByteArray>
#include <QString>

// Sends the process's standard error into a file until text() or the
// destructor, so tests can check what perror() printed.
class StderrCapture
{
public:
    explicit StderrCapture(const QString &file);
    ~StderrCapture();
    StderrCapture(const StderrCapture &) = delete;
    StderrCapture &operator=(const StderrCapture &) = delete;

    bool isActive() const { return m_saved >= 0; }
    QByteArray text();      // restores stderr and returns what was written

private:
    void restore();

    QString m_file;
    int m_saved = -1;
};

#endif // STDERRCAPTURE_H
