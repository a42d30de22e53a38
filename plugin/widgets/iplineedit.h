#ifndef IPLINEEDIT_H
#define IPLINEEDIT_H

#include <QSize>
#include <QString>
#include <QWidget>

class QLineEdit;
class OctetValidator;

namespace Ui {
class IPLineEdit;
}

// One IPv4 address as four octet fields between dots. An octet is entered on
// the numeric keypad by touching its field, and only while the WLAN page is
// set to a static address; pages read and write the whole address as dotted
// text and hear of keypad entries through valueChanged().
class IPLineEdit : public QWidget
{
    Q_OBJECT

public:
    explicit IPLineEdit(QWidget *parent = nullptr);
    ~IPLineEdit() override;

    // The four field texts joined with dots, exactly as they stand.
    QString getIPVal();
    // Takes exactly four dot-separated parts (empty ones too), else nothing.
    void setIPVal(QString ip);

    // Sizes the four fields after the primary screen.
    void resizeUIWgt();

    // Size of one octet field on a screen of the given size.
    static QSize fieldSize(const QSize &screen);

signals:
    // An octet was entered on the keypad; read the address with getIPVal().
    void valueChanged();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QLineEdit *octetField(QObject *object) const;
    void editOnKeypad(QLineEdit *field);

    Ui::IPLineEdit *ui;
    OctetValidator *m_validator;
};

#endif // IPLINEEDIT_H
