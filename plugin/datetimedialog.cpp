#include "datetimedialog.h"
#include "ui_datetimedialog.h"

// Placeholder until the dialog is built: only what the general page links to.
DateTimeDialog *DateTimeDialog::m_instance = nullptr;

DateTimeDialog *DateTimeDialog::Instance(int fontId, QSettings *settings, QWidget *parent)
{
    if (!m_instance)
        m_instance = new DateTimeDialog(fontId, settings, parent);
    return m_instance;
}

DateTimeDialog::DateTimeDialog(int fontId, QSettings *settings, QWidget *parent)
    : QDialog(parent), ui(new Ui::DateTimeDialog), m_fontId(fontId), m_settings(settings)
{
    ui->setupUi(this);
}

DateTimeDialog::~DateTimeDialog()
{
    if (m_instance == this)
        m_instance = nullptr;
    delete ui;
}

void DateTimeDialog::setSystemTime(int, int, int, int, int, int) {}
void DateTimeDialog::onUpdateCurrentDateTime(QDateTime &) {}
void DateTimeDialog::onClose() {}
bool DateTimeDialog::eventFilter(QObject *watched, QEvent *event) { return QDialog::eventFilter(watched, event); }
void DateTimeDialog::mousePressEvent(QMouseEvent *event) { QDialog::mousePressEvent(event); }
void DateTimeDialog::mouseMoveEvent(QMouseEvent *event) { QDialog::mouseMoveEvent(event); }
bool DateTimeDialog::inRange(QPoint *, QFrame *) { return false; }
void DateTimeDialog::init(int) {}
void DateTimeDialog::connectSlots() {}
