#ifndef INPUTDIALOG_H
#define INPUTDIALOG_H

#include "dialogdrag.h"

#include <QDialog>
#include <QString>

class QFrame;
class QPoint;
class QSettings;

namespace Ui {
class InputDialog;
}

// The on-screen numeric keypad. A page opens it modally with a range and the
// field's current value and reads the typed number from the result code:
// value + 1 when the user confirmed a number in range, 0 when the keypad was
// closed or ENTER was pressed before any key. At most one keypad exists.
class InputDialog : public QDialog
{
    Q_OBJECT

public:
    // Deletes the previous keypad, if any, and makes a new one.
    static InputDialog *Instance(int fontId, int min, int max, int current, QSettings *settings,
                                 QWidget *parent);

    InputDialog(int fontId, int min, int max, int current, QSettings *settings, QWidget *parent);
    ~InputDialog() override;

    void setTitle(int min, int max);
    void setMinValue(int min);
    void setMaxValue(int max);
    void setCurrentValue(int value);
    void setFontId(int fontId);

    // "0" is replaced by the digit rather than followed by it.
    static QString &append(QString &text, int digit);

    // Set whenever a draggable dialog of the plug-in is dragged; the settings
    // window clears it and repaints so the dialog leaves no trail behind.
    static bool p_move;

public slots:
    void onUpdateNumber();
    void onEnter();
    void onClose();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    bool inRange(QPoint *p, QFrame *f);

private:
    void init(int fontId);
    void setKeys();
    void connectSlots();

    static InputDialog *m_instance;

    Ui::InputDialog *ui;
    int m_fontId;
    QString m_initialText;
    QString m_typedText;
    int m_min;
    int m_max;
    QSettings *m_settings;
    DialogDrag m_drag;
};

#endif // INPUTDIALOG_H
