#include "inputdialog.h"
#include "ui_inputdialog.h"

#include "keyclick.h"
#include "panelfont.h"

#include <QMessageBox>
#include <QMouseEvent>
#include <QPushButton>

namespace {

constexpr int DialogWidth = 470;
constexpr int DialogHeight = 450;
constexpr int KeyWidth = 100;
constexpr int EnterKeyWidth = 210;
constexpr int KeyHeight = 60;
constexpr int NumberFieldWidth = 430;
constexpr int NumberFieldHeight = 50;
constexpr int KeyPointSize = 15;
constexpr int RangePointSize = 9;

const char DialogStyle[] = "#InputDialog{border:3px solid rgb(0, 0, 0);}";
const char KeyStyle[] =
    "QPushButton {border-image:url(:/Resources/button_up.png);color:white;}"
    "QPushButton:pressed {border-image:url(:/Resources/button_down.png);color:white;}";
const char RangeStyle[] = "background:transparent; color:white";

} // namespace

bool InputDialog::p_move = false;
InputDialog *InputDialog::m_instance = nullptr;

InputDialog *InputDialog::Instance(int fontId, int min, int max, int current, QSettings *settings,
                                   QWidget *parent)
{
    delete m_instance;
    m_instance = new InputDialog(fontId, min, max, current, settings, parent);
    return m_instance;
}

InputDialog::InputDialog(int fontId, int min, int max, int current, QSettings *settings, QWidget *parent)
    : QDialog(parent),
      ui(new Ui::InputDialog),
      m_fontId(fontId),
      m_initialText(QString::number(current)),
      m_min(min),
      m_max(max),
      m_settings(settings)
{
    ui->setupUi(this);
    init(fontId);
    connectSlots();
}

InputDialog::~InputDialog()
{
    if (m_instance == this)
        m_instance = nullptr;
    delete ui;
}

void InputDialog::init(int fontId)
{
    setFixedSize(DialogWidth, DialogHeight);
    setWindowFlags(Qt::FramelessWindowHint);
    setStyleSheet(QString::fromLatin1(DialogStyle));

    DialogDrag::decorate(ui->titleBarFrame, ui->closePushButton);
    ui->titleBarFrame->setFixedHeight(ui->closePushButton->height());

    const QFont keyFont = PanelFont::font(fontId, QFont::Bold, KeyPointSize);
    ui->numLineEdit->setFixedSize(NumberFieldWidth, NumberFieldHeight);
    ui->numLineEdit->setFont(keyFont);
    ui->numLineEdit->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    setKeys();

    setTitle(m_min, m_max);
    ui->numLineEdit->setText(m_initialText);
    m_typedText.clear();
}

void InputDialog::setKeys()
{
    const QFont keyFont = PanelFont::font(m_fontId, QFont::Bold, KeyPointSize);
    const struct {
        QPushButton *key;
        QString caption;
    } keys[] = {
        {ui->pushButton0, QStringLiteral("0")}, {ui->pushButton1, QStringLiteral("1")},
        {ui->pushButton2, QStringLiteral("2")}, {ui->pushButton3, QStringLiteral("3")},
        {ui->pushButton4, QStringLiteral("4")}, {ui->pushButton5, QStringLiteral("5")},
        {ui->pushButton6, QStringLiteral("6")}, {ui->pushButton7, QStringLiteral("7")},
        {ui->pushButton8, QStringLiteral("8")}, {ui->pushButton9, QStringLiteral("9")},
        {ui->pushButtonClear, tr("CLR")},      {ui->pushButtonBackspace, QStringLiteral("<-")},
        {ui->pushButtonNegative, QStringLiteral("-")}, {ui->pushButtonDot, QStringLiteral(".")},
        {ui->pushButtonEnter, tr("ENTER")},
    };
    for (const auto &k : keys) {
        k.key->setText(k.caption);
        k.key->setFixedSize(k.key == ui->pushButtonEnter ? EnterKeyWidth : KeyWidth, KeyHeight);
        k.key->setFont(keyFont);
        k.key->setStyleSheet(QString::fromLatin1(KeyStyle));
        k.key->setFocusPolicy(Qt::NoFocus);
        k.key->installEventFilter(this);
    }
}

void InputDialog::connectSlots()
{
    QPushButton *const numberKeys[] = {
        ui->pushButton0, ui->pushButton1, ui->pushButton2, ui->pushButton3, ui->pushButton4,
        ui->pushButton5, ui->pushButton6, ui->pushButton7, ui->pushButton8, ui->pushButton9,
        ui->pushButtonClear, ui->pushButtonBackspace,
    };
    for (QPushButton *key : numberKeys)
        connect(key, SIGNAL(clicked()), this, SLOT(onUpdateNumber()));
    connect(ui->pushButtonEnter, SIGNAL(clicked()), this, SLOT(onEnter()));
    connect(ui->closePushButton, SIGNAL(clicked()), this, SLOT(onClose()));
    // "-" and "." are shown but inert: the keypad takes whole numbers >= 0.
}

void InputDialog::setTitle(int min, int max)
{
    const QFont font = PanelFont::font(m_fontId, QFont::Bold, RangePointSize);
    for (QLabel *label : {ui->maxText, ui->minText}) {
        label->setFont(font);
        label->setStyleSheet(QString::fromLatin1(RangeStyle));
    }
    setMaxValue(max);
    setMinValue(min);
}

void InputDialog::setMinValue(int min)
{
    m_min = min;
    ui->minText->setText(tr("Min:") + QString::number(min));
}

void InputDialog::setMaxValue(int max)
{
    m_max = max;
    ui->maxText->setText(tr("Max:") + QString::number(max));
}

void InputDialog::setCurrentValue(int value)
{
    m_typedText.clear();
    ui->numLineEdit->setText(QString::number(value));
}

void InputDialog::setFontId(int fontId)
{
    m_fontId = fontId;
    QFont f = font();
    const QString family = PanelFont::family(fontId);
    if (!family.isEmpty())
        f.setFamily(family);
    setFont(f);
}

QString &InputDialog::append(QString &text, int digit)
{
    if (text == QLatin1String("0"))
        text = QString::number(digit);
    else
        text += QString::number(digit);
    return text;
}

void InputDialog::onUpdateNumber()
{
    QObject *key = sender();
    if (key == ui->pushButtonClear) {
        m_typedText = QStringLiteral("0");
    } else if (key == ui->pushButtonBackspace) {
        m_typedText.chop(1);
        if (m_typedText.isEmpty())
            m_typedText = QStringLiteral("0");
    } else {
        QPushButton *const digits[] = {
            ui->pushButton0, ui->pushButton1, ui->pushButton2, ui->pushButton3, ui->pushButton4,
            ui->pushButton5, ui->pushButton6, ui->pushButton7, ui->pushButton8, ui->pushButton9,
        };
        for (int digit = 0; digit < 10; ++digit) {
            if (key == digits[digit])
                append(m_typedText, digit);
        }
    }
    ui->numLineEdit->setText(m_typedText);
}

void InputDialog::onEnter()
{
    if (m_typedText.isEmpty()) {
        close();
        m_typedText.clear();
        return;
    }
    // Only digits can be typed, so a text that does not convert is a number
    // too long for any range: it is out of range, not 0.
    bool ok = false;
    const qlonglong value = m_typedText.toLongLong(&ok, 10);
    if (ok && value >= m_min && value <= m_max) {
        done(int(value) + 1);
        close();
        m_typedText.clear();
        return;
    }
    QMessageBox box(QMessageBox::Information, tr("Tips"), tr("Input number is out of range!"));
    box.addButton(tr("OK"), QMessageBox::AcceptRole);
    box.exec();
}

void InputDialog::onClose()
{
    m_typedText.clear();
    ui->numLineEdit->clear();
    KeyClick::play(m_settings);
    close();
}

bool InputDialog::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress && qobject_cast<QPushButton *>(watched))
        KeyClick::play(m_settings);
    return QDialog::eventFilter(watched, event);
}

void InputDialog::mousePressEvent(QMouseEvent *event)
{
    const QMargins m = layout()->contentsMargins();
    m_drag.press(event, ui->titleBarFrame, QPoint(m.left(), m.top()));
    QDialog::mousePressEvent(event);
}

void InputDialog::mouseMoveEvent(QMouseEvent *event)
{
    m_drag.move(event, this);
    QDialog::mouseMoveEvent(event);
}

bool InputDialog::inRange(QPoint *p, QFrame *f)
{
    return p && f && DialogDrag::inRange(*p, f);
}
