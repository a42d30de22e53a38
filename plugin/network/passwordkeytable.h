#ifndef PASSWORDKEYTABLE_H
#define PASSWORDKEYTABLE_H

#include <QByteArray>
#include <QString>

// The 50 keys of the password dialog's on-screen keyboard (45 that type a
// character, BACK, Clear, Caps, the space bar and ENTER), row by row in the
// order they are laid out. A key is known everywhere by its name
// ("button_q"): its button is "pushButton_button_q_keyboard" and its slot on
// the password dialog "on_pushButton_button_q_keyboard_clicked()", so the
// table is all that ties a button to what it types.
class PasswordKeyTable
{
public:
    enum Action { Character, Back, Clear, Caps, Space, Enter };

    struct Key
    {
        const char *name;
        Action action;
        char off;               // a character key's character with caps off
        char on;                // ... and with caps on
        const char *caption;    // the fixed caption of the other keys
        int row;                // 0..RowCount-1, top row first
    };

    static constexpr int KeyCount = 50;
    static constexpr int CharacterKeyCount = 45;
    static constexpr int RowCount = 5;

    static const Key *keys();                       // KeyCount keys, row by row
    static const Key *find(const QString &name);    // null for an unknown name

    static QString objectName(const Key &key);
    // The slot's signature as the meta-object system spells it.
    static QByteArray slotSignature(const Key &key);

    // What a key shows: the character of the caps state, or its caption.
    static QString caption(const Key &key, bool caps);
    // The keyboard line after the key was pressed. Caps and ENTER leave it
    // as it is: they act on the keyboard, not on the line.
    static QString typed(const QString &line, const Key &key, bool caps);
};

#endif // PASSWORDKEYTABLE_H
