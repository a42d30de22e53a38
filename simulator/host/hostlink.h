#ifndef HOSTLINK_H
#define HOSTLINK_H

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

class HostRegisters;

// The addresses a link gets when it comes up.
struct LinkAddress
{
    QString address;
    QString mask;
    QString gateway;
    QStringList nameServers;
};

// One link the host application runs for the pages (WLAN, 4G, VPN): it
// reacts to the request registers the pages announce through the FIFO and
// answers in the state registers the pages poll. Answers that take the
// real host a while (association, dialling) come after answerDelay().
// Every value it stores is reported, as is what it decided and why.
class HostLink : public QObject
{
    Q_OBJECT

public:
    HostLink(HostRegisters *registers, QObject *parent = nullptr);

    virtual QString name() const = 0;
    // The registers whose announcement this link acts on.
    virtual QList<unsigned> requestRegisters() const = 0;
    virtual void onRequest(unsigned index) = 0;
    // The link is lost (out of range, no carrier): the pages see it down.
    virtual void drop() = 0;
    // The kernel interface the link brings; empty for none.
    virtual QString interfaceName() const { return QString(); }

    void setAnswerDelay(int ms) { m_answerDelayMs = ms; }
    int answerDelay() const { return m_answerDelayMs; }
    void setAddress(const LinkAddress &address) { m_address = address; }
    LinkAddress address() const { return m_address; }

signals:
    void logLine(const QString &line);
    // The interface came up with this address and mask, or went (empty).
    void interfaceChanged(const QString &interfaceName, const QString &address, const QString &mask);

protected:
    void report(const QString &what);
    bool store(unsigned index, quint64 value, const QString &meaning = QString());
    bool storeText(unsigned index, const QByteArray &bytes, const QString &shown);
    bool storeAddress(unsigned index, const QString &dotted);
    // Runs `answer` once after answerDelay(); a new call replaces it.
    void answerLater();
    virtual void answer() {}
    void cancelAnswer() { m_answerTimer.stop(); }
    bool answerPending() const { return m_answerTimer.isActive(); }
    void announceInterface(bool up);
    bool editResolver(const QStringList &add, const QStringList &remove);

    HostRegisters *m_registers;

private:
    QTimer m_answerTimer;
    int m_answerDelayMs = 1500;
    LinkAddress m_address;
};

#endif // HOSTLINK_H
