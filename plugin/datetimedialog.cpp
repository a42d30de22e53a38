#include "datetimedialog.h"
#include "ui_datetimedialog.h"

#include "eeinfohandle.h"
#include "inputdialog.h"
#include "keyclick.h"
#include "commandtext.h"
#include "localreg.h"
#include "panelfont.h"
#include "processrunner.h"
#include "sysreg.h"

#include <QDateTime>
#include <QLoggingCategory>
#include <QMouseEvent>

#include <cstdio>
#include <cstdlib>

namespace {

Q_LOGGING_CATEGORY(lcDateTime, "tavro.settings.datetime")

enum Field : int { Year, Month, Day, Hour, Minute, Second, FieldCount };

struct FieldRange
{
    int min;
    int max;
};

// What the keypad accepts for each field; the year ends where a 32-bit
// time_t does. Day and month are not checked against each other: the date
// tool decides what it accepts.
constexpr FieldRange FieldRanges[FieldCount] = {
    {1970, 2038}, {1, 12}, {1, 31}, {0, 23}, {0, 59}, {0, 59},
};

constexpr int YearDigits = 4;
constexpr int FieldDigits = 2;

constexpr int WideScreenWidth = 1920;
constexpr int WideDialogWidth = 700;
constexpr int WideYearWidth = 100;
constexpr int WideFieldWidth = 60;
constexpr int DialogWidth = 500;
constexpr int YearWidth = 80;
constexpr int FieldWidth = 40;

constexpr int InitialWidth = 450;
constexpr int InitialHeight = 420;
constexpr int DialogHeight = 120;
constexpr int FieldHeight = 40;
constexpr int TitleBarHeight = 50;
constexpr int BorderWidth = 3;
constexpr int PointSize = 13;

// Register 80 is a single bit; a few bytes leave room should it grow.
constexpr size_t LockRegisterSize = 8;

const char DialogStyle[] = "#DateTimeDialog{border:3px solid rgb(0, 0, 0);}";

const char DateCommand[] = "date -s %d-%d-%d >> /dev/null";
const char TimeCommand[] = "date -s %d:%d:%d >> /dev/null";
const char HwClockCommand[] = "hwclock --systohc --utc";

QVector<CommandText> clockCommandTexts(int year, int month, int day, int hour, int minute,
                                       int second)
{
    return {CommandText(DateCommand).number(year).number(month).number(day),
            CommandText(TimeCommand).number(hour).number(minute).number(second),
            CommandText(HwClockCommand)};
}

// The host application locks the clock with register 80; any bit set in its
// first byte means locked. An unreadable register leaves the clock open.
bool clockLocked()
{
    const RegBase *reg = SysReg_LoadReg(SysRegIdx::DateTimeLocked);
    if (!reg)
        return false;
    const size_t bytes = LocalReg::isBitArea(reg->area) ? (reg->length + 7) / 8 : reg->length;
    unsigned char value[LockRegisterSize] = {};
    if (bytes == 0 || bytes > sizeof value || SysReg_Read(SysRegIdx::DateTimeLocked, value) != 0)
        return false;
    return value[0] != 0;
}

} // namespace

DateTimeDialog *DateTimeDialog::m_instance = nullptr;

DateTimeDialog *DateTimeDialog::Instance(int fontId, QSettings *settings, QWidget *parent)
{
    if (!m_instance)
        m_instance = new DateTimeDialog(fontId, settings, parent);
    else if (!m_instance->m_settings)
        // The window whose configuration object the dialog was given is
        // gone: the next window's object reads the same file.
        m_instance->m_settings = settings;
    return m_instance;
}

DateTimeDialog::DateTimeDialog(int fontId, QSettings *settings, QWidget *parent)
    : QDialog(parent), ui(new Ui::DateTimeDialog), m_fontId(fontId), m_settings(settings)
{
    ui->setupUi(this);
    setFixedSize(InitialWidth, InitialHeight);
    init(fontId);
    setStyleSheet(QString::fromLatin1(DialogStyle));
    for (int field = 0; field < FieldCount; ++field)
        fieldEdit(field)->installEventFilter(this);
}

DateTimeDialog::~DateTimeDialog()
{
    if (m_instance == this)
        m_instance = nullptr;
    delete ui;
}

void DateTimeDialog::init(int fontId)
{
    EEInfoDetail::Flash_ROnly record = {};
    EEInfoHandle::instance()->read_flash_r_info(&record);
    const bool wide = record.screenWidth() == WideScreenWidth;
    m_dialogWidth = wide ? WideDialogWidth : DialogWidth;
    m_yearWidth = wide ? WideYearWidth : YearWidth;
    m_fieldWidth = wide ? WideFieldWidth : FieldWidth;

    setFixedSize(m_dialogWidth, DialogHeight);
    setWindowFlags(Qt::FramelessWindowHint);
    setFont(PanelFont::font(fontId, QFont::Bold, PointSize));

    DialogDrag::decorate(ui->titleBarFrame, ui->closePushButton);
    ui->titleBarFrame->setFixedSize(m_dialogWidth - 2 * BorderWidth, TitleBarHeight);

    for (int field = 0; field < FieldCount; ++field)
        fieldEdit(field)->setFixedSize(field == Year ? m_yearWidth : m_fieldWidth, FieldHeight);
    connectSlots();
}

void DateTimeDialog::connectSlots()
{
    connect(ui->closePushButton, SIGNAL(clicked()), this, SLOT(onClose()));
}

QByteArrayList DateTimeDialog::clockCommands(int year, int month, int day, int hour, int minute,
                                             int second)
{
    QByteArrayList texts;
    for (const CommandText &command : clockCommandTexts(year, month, day, hour, minute, second))
        texts << command.text();
    return texts;
}

void DateTimeDialog::setSystemTime(int year, int month, int day, int hour, int minute, int second)
{
    for (const CommandText &command : clockCommandTexts(year, month, day, hour, minute, second)) {
        // The exit status is only logged: the next second's update of the
        // fields shows what the clock really holds.
        const int status = runCommand(command);
        qCDebug(lcDateTime) << command.text() << "exit status" << status;
    }
}

void DateTimeDialog::onUpdateCurrentDateTime(QDateTime &dateTime)
{
    const QDate date = dateTime.date();
    const QTime time = dateTime.time();
    m_year = date.year();
    m_month = date.month();
    m_day = date.day();
    m_hour = time.hour();
    m_minute = time.minute();
    m_second = time.second();
    for (int field = 0; field < FieldCount; ++field)
        showField(field);
}

void DateTimeDialog::onClose()
{
    KeyClick::play(m_settings);
    close();
}

int DateTimeDialog::fieldOf(const QObject *object) const
{
    for (int field = 0; field < FieldCount; ++field) {
        if (object && object == fieldEdit(field))
            return field;
    }
    return -1;
}

QLineEdit *DateTimeDialog::fieldEdit(int field) const
{
    QLineEdit *const edits[FieldCount] = {
        ui->yearLineEdit, ui->monthLineEdit,  ui->dateLineEdit,
        ui->hourLineEdit, ui->minuteLineEdit, ui->secondLineEdit,
    };
    return edits[field];
}

int &DateTimeDialog::fieldValue(int field)
{
    int *const values[FieldCount] = {&m_year, &m_month, &m_day, &m_hour, &m_minute, &m_second};
    return *values[field];
}

void DateTimeDialog::showField(int field)
{
    const int digits = field == Year ? YearDigits : FieldDigits;
    fieldEdit(field)->setText(QStringLiteral("%1").arg(fieldValue(field), digits, 10, QLatin1Char('0')));
}

bool DateTimeDialog::editField(int field)
{
    QLineEdit *edit = fieldEdit(field);
    const FieldRange &range = FieldRanges[field];
    InputDialog *keypad = InputDialog::Instance(m_fontId, range.min, range.max,
                                                edit->text().toInt(), m_settings, nullptr);
    const int result = keypad->exec();
    if (result < 1)
        return false;
    fieldValue(field) = result - 1;
    showField(field);
    edit->clearFocus();
    setSystemTime(m_year, m_month, m_day, m_hour, m_minute, m_second);
    return true;
}

bool DateTimeDialog::eventFilter(QObject *watched, QEvent *event)
{
    const int field = fieldOf(watched);
    if (field < 0)
        return true;
    // Only a press can open the keypad, so the lock register is read for
    // presses alone rather than for every paint and focus event.
    if (event->type() != QEvent::MouseButtonPress)
        return QDialog::eventFilter(watched, event);
    // The click sounds even when the clock is locked: the touch was taken.
    KeyClick::play(m_settings);
    if (clockLocked() || fieldEdit(field)->text().isEmpty())
        return QDialog::eventFilter(watched, event);
    // The keypad has answered the press; handing it on to the field after
    // the modal run would only move a cursor nobody sees.
    if (editField(field))
        return true;
    return QDialog::eventFilter(watched, event);
}

void DateTimeDialog::mousePressEvent(QMouseEvent *event)
{
    const QMargins m = layout()->contentsMargins();
    m_drag.press(event, ui->titleBarFrame, QPoint(m.left(), m.top()));
    QDialog::mousePressEvent(event);
}

void DateTimeDialog::mouseMoveEvent(QMouseEvent *event)
{
    m_drag.move(event, this);
    QDialog::mouseMoveEvent(event);
}

bool DateTimeDialog::inRange(QPoint *p, QFrame *f)
{
    return p && f && DialogDrag::inRange(*p, f);
}
