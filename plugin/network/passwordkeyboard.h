#ifndef PASSWORDKEYBOARD_H
#define PASSWORDKEYBOARD_H

#include "passworddialoglayout.h"

#include <QDialog>
#include <QVector>

class QFont;
class QLineEdit;
class QPushButton;

// The on-screen keyboard of the WLAN password dialog: a title row with its
// "X", an input line of its own and the keys of PasswordKeyTable in five
// rows. It only lays the keys out; what they type is the password dialog's
// business, which connects every key to its slot. Deletes itself when
// closed.
class PasswordKeyboard : public QDialog
{
    Q_OBJECT

public:
    PasswordKeyboard(const PasswordDialogLayout &layout, const QFont &keyFont, QWidget *parent);

    QLineEdit *line() const { return m_line; }
    QPushButton *closeButton() const { return m_close; }
    // The key of the table's row `index`, or null past the table.
    QPushButton *key(int index) const;
    QPushButton *key(const QString &name) const;

    // Shows the character column of the caps state on the character keys.
    void relabel(bool caps);

    // A caption as a button shows it: "&" would otherwise be taken for a
    // shortcut mark and vanish from the "7" key.
    static QString buttonText(const QString &caption);

private:
    void addTitleRow(const PasswordDialogLayout &layout, const QFont &keyFont);
    void addKeyRows(const PasswordDialogLayout &layout, const QFont &keyFont);

    QLineEdit *m_line = nullptr;
    QPushButton *m_close = nullptr;
    QVector<QPushButton *> m_keys;
};

#endif // PASSWORDKEYBOARD_H
