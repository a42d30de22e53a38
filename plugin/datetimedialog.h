#ifndef DATETIMEDIALOG_H
#define DATETIMEDIALOG_H

#include "dialogdrag.h"

#include <QByteArrayList>
#include <QDialog>
#include <QPointer>
#include <QSettings>

class QDateTime;
class QFrame;
class QLineEdit;
class QPoint;

namespace Ui {
class DateTimeDialog;
}

// Sets the panel's clock: six fields, each opening the numeric keypad; every
// accepted value sets the system clock and the hardware clock at once. The
// general page creates it once, feeds it the running time and reuses it.
class DateTimeDialog : public QDialog
{
    Q_OBJECT

public:
    // The one dialog, made on the first call; later arguments are ignored.
    static DateTimeDialog *Instance(int fontId, QSettings *settings, QWidget *parent);

    DateTimeDialog(int fontId, QSettings *settings, QWidget *parent);
    ~DateTimeDialog() override;

    void setSystemTime(int year, int month, int day, int hour, int minute, int second);

    // The three shell commands that set the system clock, date first, then
    // the time, then copy it into the hardware clock. Numbers are written
    // without padding, the way the date tool reads them.
    static QByteArrayList clockCommands(int year, int month, int day, int hour, int minute,
                                        int second);

public slots:
    void onUpdateCurrentDateTime(QDateTime &dateTime);
    void onClose();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    bool inRange(QPoint *p, QFrame *f);

private:
    void init(int fontId);
    void connectSlots();

    // The six fields by position: year, month, day, hour, minute, second.
    int fieldOf(const QObject *object) const;
    QLineEdit *fieldEdit(int field) const;
    int &fieldValue(int field);
    void showField(int field);
    // Runs the keypad for the field; true when a value was accepted and set.
    bool editField(int field);

    static DateTimeDialog *m_instance;

    Ui::DateTimeDialog *ui;
    int m_fontId;
    int m_year = 1970;
    int m_month = 1;
    int m_day = 1;
    int m_hour = 0;
    int m_minute = 0;
    int m_second = 0;
    int m_dialogWidth = 0;
    int m_yearWidth = 0;
    int m_fieldWidth = 0;
    // Belongs to the window that made the dialog, which the host deletes
    // while the dialog lives on for the next window.
    QPointer<QSettings> m_settings;
    DialogDrag m_drag;
};

#endif // DATETIMEDIALOG_H
