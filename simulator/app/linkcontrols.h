#ifndef LINKCONTROLS_H
#define LINKCONTROLS_H

#include <QGroupBox>
#include <QString>

class QLineEdit;
class QSpinBox;

// The control window's say in what the host's WLAN, 4G and VPN links do
// next: drop a link, fail the next WLAN password, hold the 4G signal at a
// level or let it drift, put a network in or out of range. Each choice
// goes out as the host command a script would give (HostLinks).
class LinkControls : public QGroupBox
{
    Q_OBJECT

public:
    explicit LinkControls(QWidget *parent = nullptr);

signals:
    void command(const QString &command);

private:
    QWidget *signalRow();
    QWidget *networkRow();

    QSpinBox *m_signal;
    QLineEdit *m_network;
};

#endif // LINKCONTROLS_H
