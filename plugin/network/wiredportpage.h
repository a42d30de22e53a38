#ifndef WIREDPORTPAGE_H
#define WIREDPORTPAGE_H

#include <QStringList>
#include <QWidget>

namespace Ui {
class WiredPortPage;
}
class QComboBox;
class RowHidingComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

// The tab of one wired port: its twenty octet fields (address, mask,
// gateway, first and backup DNS server), MAC address, addressing mode,
// default-network selector, "Disable Network" switch and outer-network test.
// It only shows things; the network page decides what they mean.
class WiredPortPage : public QWidget
{
    Q_OBJECT

public:
    enum Group { Address = 0, Mask, Gateway, FirstDns, BackupDns, GroupCount };
    enum ModeRow { StaticRow = 0, DynamicRow = 1 };
    enum Lamp { LampIdle, LampRunning, LampSucceeded };

    WiredPortPage(int port, const QFont &font, QWidget *parent = nullptr);
    ~WiredPortPage() override;

    int port() const { return m_port; }

    // octet 0 is the first dotted octet.
    QLineEdit *field(Group group, int octet) const;
    QList<QLineEdit *> fields() const;
    // The group a field belongs to, or GroupCount for a field of no group.
    Group groupOf(const QObject *field) const;

    QStringList octets(Group group) const;
    void setOctets(Group group, const QStringList &octets);
    void setFieldsEnabled(bool enabled);
    // Every field "0": what a switched-off port or an awaited lease shows.
    void clearFields();

    RowHidingComboBox *modeComboBox() const;
    RowHidingComboBox *defaultNetworkComboBox() const;
    QPushButton *disableSwitch() const;
    QPushButton *testButton() const;
    QPushButton *setDefaultGatewayButton() const;

    // Six MAC bytes as hexadecimal texts, shown joined with ':'.
    void setMac(const QStringList &bytes);
    QString macText() const;
    // The switch is labelled "Disable Network": it shows "on" while the port
    // is switched off.
    void setSwitchShowsDisabled(bool disabled);
    void setLamp(Lamp lamp);
    Lamp lamp() const { return m_lamp; }
    void setTestRunning(bool running);
    void setNetworkLabel(const QString &text);
    void setGatewayLabel(const QString &text);

    void retranslate();
    void adjustToScreen(int screenWidth);

private:
    Ui::WiredPortPage *ui;
    int m_port;
    Lamp m_lamp = LampIdle;
    QLineEdit *m_fields[GroupCount][4] = {};
};

#endif // WIREDPORTPAGE_H
