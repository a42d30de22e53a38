#include "generalsettings.h"

#include "datetimedialog.h"
#include "eeinfohandle.h"
#include "flash_ronly.h"
#include "inputdialog.h"
#include "keyclick.h"
#include "languagelist.h"
#include "panelfont.h"
#include "processlookup.h"
#include "sysreg.h"

#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QLoggingCategory>
#include <QMouseEvent>
#include <QPushButton>
#include <QSettings>
#include <QSlider>
#include <QTimer>
#include <QTranslator>

#include <climits>
#include <cstdio>
#include <cstdlib>

Q_LOGGING_CATEGORY(lcGeneral, "tavro.settings.general")

namespace {

constexpr int ClockIntervalMs = 1000;
constexpr int MinStep = 1;
constexpr int MaxStep = 32;
constexpr int StepOffset = 18;          // device value = (step + 18) * 4
constexpr int StepShift = 2;
constexpr int DarkestVisible = 75;      // device values up to this are "off"
constexpr int BacklightMaxMinutes = 65535;
constexpr qint64 MsPerMinute = 60000;
constexpr int AutoRepeatDelayMs = 400;
constexpr int AutoRepeatIntervalMs = 50;
constexpr int PageFontPointSize = 13;
constexpr int IconMargin = 10;
constexpr int StepButtonSize = 40;
constexpr int StepButtonMargin = 40;
constexpr int SliderHeight = 32;
constexpr int SettingButtonHeight = 40;
constexpr int SwitchWidth = 70;
constexpr int SwitchHeight = 30;
constexpr int GridColumns = 7;
// On the 800-pixel panel the page is 650 px wide and the brightness row needs
// nearly all of it: the default spacing would push the slider under the
// brighten button.
constexpr int ColumnSpacing = 2;
constexpr int StepBoxSpacing = 4;
constexpr int DateTimeIndent = 10;      // keeps the clock clear of its caption


// Slider minimum width and "setting" button width by panel width; any
// other panel gets the smallest layout.
struct PanelSizes
{
    int panelWidth;
    int sliderWidth;
    int settingButtonWidth;
};
const PanelSizes LargePanelSizes[] = {{1280, 350, 100}, {1920, 600, 120}};
const PanelSizes SmallPanelSizes = {0, 250, 100};

const QSize StepEditSize(70, 40);
const QColor SeparatorColour(226, 226, 226);

const char BrightnessEditName[] = "brightnessLineEdit";
const char BacklightEditName[] = "backlightOff";
const char BuzzerKey[] = "General/buzzer";

const char StepEditStyle[] =
    "QLineEdit{border-radius:10px;border: 2px solid #008cba;background-color: rgba(163, 198, 218, 100);}";
const char DarkenStyle[] = "border-image:url(:/Resources/minus.png)";
const char BrightenStyle[] = "border-image:url(:/Resources/plus.png);";
const char SettingButtonStyle[] = "border-image:url(:/Resources/setting_button.png);color:white";
const char SwitchOnStyle[] = "border-image:url(:/Resources/switch_on.png);";
const char SwitchOffStyle[] = "border-image:url(:/Resources/switch_off.png);";
const char SliderStyle[] =
    "QSlider::groove:horizontal{border:none;}"
    "QSlider::sub-page:horizontal{background:#009efa;border-radius:2px;margin-top:8px;margin-bottom:9px;}"
    "QSlider::add-page:horizontal{background:#989898;border-radius:2px;margin-top:8px;margin-bottom:9px;}"
    "QSlider::handle:horizontal{width:20px;border-radius:4px;background:rgb(193,204,208);}";

const char BrightnessIcon[] = ":/Resources/brightness.png";
const char TimeIcon[] = ":/Resources/time.png";
const char BuzzerIcon[] = ":/Resources/buzzer.png";
const char BacklightIcon[] = ":/Resources/auto_backlight_off.png";
const char InitialWindowIcon[] = ":/Resources/inital_window.png";

// Monday first, as QDate::dayOfWeek counts.
constexpr int DaysPerWeek = 7;
const char *const DayNames[DaysPerWeek] = {
    QT_TRANSLATE_NOOP("GeneralSettings", "Mon"), QT_TRANSLATE_NOOP("GeneralSettings", "Tue"),
    QT_TRANSLATE_NOOP("GeneralSettings", "Wed"), QT_TRANSLATE_NOOP("GeneralSettings", "Thu"),
    QT_TRANSLATE_NOOP("GeneralSettings", "Fri"), QT_TRANSLATE_NOOP("GeneralSettings", "Sat"),
    QT_TRANSLATE_NOOP("GeneralSettings", "Sun"),
};

QString twoDigits(int value)
{
    return QStringLiteral("%1").arg(value, 2, 10, QLatin1Char('0'));
}

} // namespace

GeneralSettings::GeneralSettings(QWidget *parent)
    : QTableView(parent),
      m_brightnessIcon(new QLabel), m_brightnessCaption(new QLabel), m_brightnessLineEdit(new QLineEdit),
      m_darkenButton(new QPushButton), m_brightnessSlider(new QSlider(Qt::Horizontal)),
      m_brightenButton(new QPushButton),
      m_dateTimeIcon(new QLabel), m_dateTimeCaption(new QLabel), m_dateTimeLabel(new QLabel),
      m_settingButton(new QPushButton),
      m_buzzerIcon(new QLabel), m_buzzerCaption(new QLabel), m_buzzerSwitch(new QPushButton),
      m_backlightIcon(new QLabel), m_backlightCaption(new QLabel), m_backlightLineEdit(new QLineEdit),
      m_backlightUnit(new QLabel), m_backlightSwitch(new QPushButton),
      m_initialWindowIcon(new QLabel), m_initialWindowCaption(new QLabel), m_initialWindowLineEdit(new QLineEdit),
      m_initialWindowLabel(new QLabel),
      m_separators{new QFrame, new QFrame, new QFrame, new QFrame},
      m_gridLayout(new QGridLayout), m_brightnessBox(new QHBoxLayout),
      m_clockTimer(new QTimer(this)), m_spareTimer(new QTimer(this)), m_translator(new QTranslator(this))
{
    // Only a container: no table, headers or scroll bars of its own.
    setFrameShape(QFrame::NoFrame);
    horizontalHeader()->hide();
    verticalHeader()->hide();
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

    m_brightnessLineEdit->setObjectName(QLatin1String(BrightnessEditName));
    m_darkenButton->setObjectName(QStringLiteral("darkenButton"));
    m_brightnessSlider->setObjectName(QStringLiteral("brightnessSlider"));
    m_brightenButton->setObjectName(QStringLiteral("brightenButton"));
    m_dateTimeLabel->setObjectName(QStringLiteral("dateTimeLabel"));
    m_settingButton->setObjectName(QStringLiteral("settingButton"));
    m_buzzerSwitch->setObjectName(QStringLiteral("buzzerSwitch"));
    m_backlightLineEdit->setObjectName(QLatin1String(BacklightEditName));
    m_backlightSwitch->setObjectName(QStringLiteral("backlightSwitch"));
    m_initialWindowLineEdit->setObjectName(QStringLiteral("initialWindow"));

    const QList<QWidget *> watched = {m_darkenButton, m_brightenButton, m_settingButton, m_brightnessLineEdit,
                                      m_buzzerSwitch, m_backlightLineEdit, m_backlightSwitch,
                                      m_initialWindowLineEdit, m_brightnessSlider};
    for (QWidget *widget : watched)
        widget->installEventFilter(this);
    m_buzzerSwitch->setFocusPolicy(Qt::NoFocus);

    onUpdateurrentDateTime();
    SysReg_LoadReg(SysRegIdx::KeyBuzzer);
    m_clockTimer->start(ClockIntervalMs);
}

GeneralSettings::~GeneralSettings()
{
    // Rows that never reach the layout, and every row of a page whose init()
    // never ran, have no parent to delete them.
    const QList<QWidget *> rows = {m_brightnessIcon, m_brightnessCaption, m_brightnessLineEdit, m_darkenButton,
                                   m_brightnessSlider, m_brightenButton, m_dateTimeIcon, m_dateTimeCaption,
                                   m_dateTimeLabel, m_settingButton, m_buzzerIcon, m_buzzerCaption,
                                   m_buzzerSwitch, m_backlightIcon, m_backlightCaption, m_backlightLineEdit,
                                   m_backlightUnit, m_backlightSwitch, m_initialWindowIcon, m_initialWindowCaption,
                                   m_initialWindowLineEdit, m_initialWindowLabel, m_separators[0], m_separators[1],
                                   m_separators[2], m_separators[3]};
    for (QWidget *widget : rows) {
        if (!widget->parent())
            delete widget;
    }
    if (!m_brightnessBox->parent())
        delete m_brightnessBox;
    if (!m_gridLayout->parent())
        delete m_gridLayout;
}

int GeneralSettings::convertBrightnessToOriginalValue(int step)
{
    return (step + StepOffset) * 4;
}

int GeneralSettings::convertBrightnessFromOriginalValue(int raw)
{
    if (raw <= DarkestVisible)
        return 0;
    return (raw >> StepShift) - StepOffset;
}

int GeneralSettings::sliderValueAt(int minimum, int maximum, int x, int width)
{
    if (width <= 0)
        return minimum;
    // Truncated toward zero, as the slider's own arithmetic would.
    return minimum + int(double(maximum - minimum + 1) * x / width);
}

void GeneralSettings::init(int fontId, EEInfoDetail::Flash_WR_1 &record, QSettings *settings)
{
    chooseSizes();
    m_fontId = fontId;
    m_record = record;
    m_settings = settings;
    setSeparators();
    setPageFont();
    setBrightnessRow();
    setDateTimeRow();
    setBuzzerRow();
    setBacklightRows();
    refresh();
    setGrid();
    connectSlots();
}

void GeneralSettings::chooseSizes()
{
    EEInfoDetail::Flash_ROnly info {};
    EEInfoHandle::instance()->read_flash_r_info(&info);
    PanelSizes sizes = SmallPanelSizes;
    for (const PanelSizes &known : LargePanelSizes) {
        if (known.panelWidth == info.screenWidth())
            sizes = known;
    }
    m_sliderWidth = sizes.sliderWidth;
    m_settingButtonWidth = sizes.settingButtonWidth;
}

void GeneralSettings::setSeparators()
{
    for (QFrame *line : m_separators) {
        line->setFrameShape(QFrame::HLine);
        line->setLineWidth(2);
        line->setMidLineWidth(1);
        line->setFrameShadow(QFrame::Plain);
        // A plain line is drawn in the foreground colour.
        QPalette palette = line->palette();
        palette.setColor(QPalette::WindowText, SeparatorColour);
        line->setPalette(palette);
    }
}

void GeneralSettings::setIcon(QLabel *label, const QString &path)
{
    label->setPixmap(QPixmap(path));
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    label->setMargin(IconMargin);
}

// Held down, the step buttons repeat: the first repeat after 400 ms, then
// every 50 ms.
void GeneralSettings::setStepButton(QPushButton *button, const char *style)
{
    button->setStyleSheet(QLatin1String(style));
    button->setFixedSize(StepButtonSize, StepButtonSize);
    button->setAutoRepeat(true);
    button->setAutoRepeatDelay(AutoRepeatDelayMs);
    button->setAutoRepeatInterval(AutoRepeatIntervalMs);
}

void GeneralSettings::setPageFont()
{
    const QFont font = PanelFont::font(m_fontId, QFont::Bold, PageFontPointSize);
    const QList<QWidget *> texts = {m_brightnessCaption, m_brightnessLineEdit, m_dateTimeCaption, m_dateTimeLabel,
                                    m_settingButton, m_buzzerCaption, m_backlightCaption, m_backlightLineEdit,
                                    m_backlightUnit, m_initialWindowCaption, m_initialWindowLineEdit,
                                    m_initialWindowLabel};
    for (QWidget *widget : texts)
        widget->setFont(font);
}

void GeneralSettings::setBrightnessRow()
{
    setIcon(m_brightnessIcon, QLatin1String(BrightnessIcon));
    m_step = convertBrightnessFromOriginalValue(EEInfoHandle::instance()->getbright());
    m_brightnessLineEdit->setAlignment(Qt::AlignCenter);
    m_brightnessLineEdit->setFixedSize(StepEditSize);
    m_brightnessLineEdit->setStyleSheet(QLatin1String(StepEditStyle));
    showStep();

    setStepButton(m_darkenButton, DarkenStyle);
    m_darkenButton->setContentsMargins(0, 0, StepButtonMargin, 0);

    // A device value of 0 (backlight off) gives step 0: the slider, whose
    // range starts at 1, shows 1 while the edit still says "00".
    m_brightnessSlider->setValue(m_step);
    m_brightnessSlider->setRange(MinStep, MaxStep);
    m_brightnessSlider->setMinimumSize(m_sliderWidth, SliderHeight);
    m_brightnessSlider->setTracking(false);
    m_brightnessSlider->setPageStep(0);
    m_brightnessSlider->setStyleSheet(QLatin1String(SliderStyle));

    setStepButton(m_brightenButton, BrightenStyle);
    m_brightenButton->setContentsMargins(StepButtonMargin, 0, 0, 0);
    m_brightnessBox->setSpacing(StepBoxSpacing);
    m_brightnessBox->addWidget(m_brightenButton);
    m_brightnessBox->addWidget(m_brightnessLineEdit);
}

void GeneralSettings::setDateTimeRow()
{
    setIcon(m_dateTimeIcon, QLatin1String(TimeIcon));
    m_dateTimeLabel->setIndent(DateTimeIndent);
    m_settingButton->setStyleSheet(QLatin1String(SettingButtonStyle));
    m_settingButton->setFixedSize(m_settingButtonWidth, SettingButtonHeight);
}

void GeneralSettings::setBuzzerRow()
{
    setIcon(m_buzzerIcon, QLatin1String(BuzzerIcon));
    // The register is the master; the configuration value the key clicks
    // read is brought into line with it at every start. Bit 0 is ours: the
    // bytes read may carry neighbouring registers' bits above it.
    m_buzzerState = 0;
    SysReg_Read(SysRegIdx::KeyBuzzer, &m_buzzerState);
    const bool on = m_buzzerState & 1;
    m_buzzerSwitch->setStyleSheet(QLatin1String(on ? SwitchOnStyle : SwitchOffStyle));
    if (m_settings)
        m_settings->setValue(QLatin1String(BuzzerKey), on ? QStringLiteral("on") : QStringLiteral("off"));
    m_buzzerSwitch->setFixedSize(SwitchWidth, SwitchHeight);
}

void GeneralSettings::setBacklightRows()
{
    setIcon(m_backlightIcon, QLatin1String(BacklightIcon));
    m_backlightSwitch->setStyleSheet(QLatin1String(m_backlightOn ? SwitchOnStyle : SwitchOffStyle));
    m_backlightSwitch->setFixedSize(SwitchWidth, SwitchHeight);
    setIcon(m_initialWindowIcon, QLatin1String(InitialWindowIcon));
}

void GeneralSettings::setGrid()
{
    QGridLayout *grid = m_gridLayout;
    grid->addWidget(m_brightnessIcon, 0, 0);
    grid->addWidget(m_brightnessCaption, 0, 1);
    grid->addWidget(m_darkenButton, 0, 2);
    grid->addWidget(m_brightnessSlider, 0, 3, 1, 2);
    grid->addLayout(m_brightnessBox, 0, 5);
    grid->addWidget(m_separators[0], 1, 0, 1, GridColumns);
    grid->addWidget(m_dateTimeIcon, 2, 0);
    grid->addWidget(m_dateTimeCaption, 2, 1);
    grid->addWidget(m_dateTimeLabel, 2, 2, 1, 3);
    grid->addWidget(m_settingButton, 2, 5);
    grid->addWidget(m_separators[1], 3, 0, 1, GridColumns);
    grid->addWidget(m_buzzerIcon, 4, 0);
    grid->addWidget(m_buzzerCaption, 4, 1);
    grid->addWidget(m_buzzerSwitch, 4, 5);
    const int stretches[GridColumns] = {1, 1, 1, 2, 2, 1, 1};
    for (int column = 0; column < GridColumns; ++column)
        grid->setColumnStretch(column, stretches[column]);
    grid->setHorizontalSpacing(ColumnSpacing);
    grid->setContentsMargins(50, 0, 30, 0);
    setLayout(grid);
}

void GeneralSettings::connectSlots()
{
    connect(m_clockTimer, SIGNAL(timeout()), this, SLOT(onUpdateurrentDateTime()));
    connect(m_brightenButton, SIGNAL(clicked()), this, SLOT(onBrightenClicked()));
    connect(m_darkenButton, SIGNAL(clicked()), this, SLOT(onDarkenClicked()));
    connect(m_brightnessSlider, SIGNAL(valueChanged(int)), this, SLOT(onBrightnessChanged(int)));
    connect(m_brightnessSlider, SIGNAL(sliderPressed()), this, SLOT(onBrightnessPressed()));
    connect(m_settingButton, SIGNAL(clicked()), this, SLOT(onDateTimeSettingClicked()));
    connect(m_buzzerSwitch, SIGNAL(clicked()), this, SLOT(onBuzzerSwitched()));
    connect(m_backlightSwitch, SIGNAL(clicked()), this, SLOT(onBacklightSwitched()));
    connect(this, SIGNAL(updateCurrentDateTime(QDateTime &)),
            DateTimeDialog::Instance(m_fontId, m_settings, nullptr), SLOT(onUpdateCurrentDateTime(QDateTime &)));
}

void GeneralSettings::refresh()
{
    m_brightnessCaption->setText(tr("Brightness:"));
    m_dateTimeCaption->setText(tr("Date&Time:"));
    m_dateTimeLabel->setText(dateTimeText(m_currentDateTime));
    m_settingButton->setText(tr("setting"));
    m_buzzerCaption->setText(tr("Buzzer:"));
    m_backlightCaption->setText(tr("Auto Backlight Off:"));
    m_backlightUnit->setText(tr("min"));
    m_initialWindowCaption->setText(tr("Initial Window:"));
}

void GeneralSettings::onChangeLanguage(Settings::Language lang)
{
    m_language = lang;
    LanguageList::install(m_translator, lang);
    refresh();
}

QString GeneralSettings::getDayText(int dayOfWeek) const
{
    if (dayOfWeek < 1 || dayOfWeek > DaysPerWeek)
        return tr("Invalid Day");
    return tr(DayNames[dayOfWeek - 1]);
}

QString GeneralSettings::dateTimeText(const QDateTime &dateTime) const
{
    const QDate date = dateTime.date();
    const QTime time = dateTime.time();
    return QStringLiteral("%1/%2/%3   %4    %5:%6:%7")
        .arg(QStringLiteral("%1").arg(date.year(), 4, 10, QLatin1Char(' ')), twoDigits(date.month()),
             twoDigits(date.day()), getDayText(date.dayOfWeek()), twoDigits(time.hour()),
             twoDigits(time.minute()), twoDigits(time.second()));
}

void GeneralSettings::onUpdateurrentDateTime()
{
    m_currentDateTime = QDateTime::currentDateTime();
    m_dateTimeLabel->setText(dateTimeText(m_currentDateTime));
    emit updateCurrentDateTime(m_currentDateTime);
}

void GeneralSettings::showStep() { m_brightnessLineEdit->setText(twoDigits(m_step)); }

void GeneralSettings::applyBrightness(int deviceValue)
{
    EEInfoHandle::instance()->setBright(deviceValue);
    m_record.brightness = static_cast<quint16>(deviceValue);
}

void GeneralSettings::stepBrightness(int delta)
{
    const bool atEnd = delta > 0 ? m_step >= m_brightnessSlider->maximum() : m_step <= m_brightnessSlider->minimum();
    if (atEnd)
        return;
    m_step += delta;
    // Runs onBrightnessChanged too whenever the slider really moves.
    m_brightnessSlider->setValue(m_step);
    showStep();
    applyBrightness(convertBrightnessToOriginalValue(m_step));
    KeyClick::play(m_settings);
    emit updateEEData(m_record, Settings::Brightness);
}

void GeneralSettings::onBrightenClicked() { stepBrightness(+1); }
void GeneralSettings::onDarkenClicked() { stepBrightness(-1); }

void GeneralSettings::onBrightnessChanged(int value)
{
    m_step = value;
    showStep();
    applyBrightness(convertBrightnessToOriginalValue(m_step));
    emit updateEEData(m_record, Settings::Brightness);
}

void GeneralSettings::onBrightnessPressed() { KeyClick::play(m_settings); }

void GeneralSettings::onDateTimeSettingClicked()
{
    // The dialog starts from the time shown now, not from the last tick.
    m_currentDateTime = QDateTime::currentDateTime();
    emit updateCurrentDateTime(m_currentDateTime);
    DateTimeDialog::Instance(m_fontId, m_settings, nullptr)->exec();
}

void GeneralSettings::onBuzzerSwitched()
{
    m_buzzerState = !m_buzzerState;
    const bool on = m_buzzerState != 0;
    m_buzzerSwitch->setStyleSheet(QLatin1String(on ? SwitchOnStyle : SwitchOffStyle));
    if (m_settings)
        m_settings->setValue(QLatin1String(BuzzerKey), on ? QStringLiteral("on") : QStringLiteral("off"));
    // Switching on confirms itself with a beep.
    if (on)
        KeyClick::play(m_settings);
    SysReg_WriteNotify(SysRegIdx::KeyBuzzer, &m_buzzerState, sizeof m_buzzerState);
}

void GeneralSettings::armBacklightOff(int minutes)
{
    // Qt timers count in int milliseconds: longer delays get the longest one.
    const qint64 ms = qBound<qint64>(0, MsPerMinute * minutes, INT_MAX);
    QTimer::singleShot(int(ms), this, SLOT(onBacklightOff()));
}

void GeneralSettings::onBacklightSwitched()
{
    m_backlightOn = !m_backlightOn;
    m_backlightSwitch->setStyleSheet(QLatin1String(m_backlightOn ? SwitchOnStyle : SwitchOffStyle));
    m_backlightLineEdit->setEnabled(m_backlightOn);
    if (m_backlightOn && !m_backlightLineEdit->text().isEmpty())
        armBacklightOff(m_backlightLineEdit->text().toInt());
}

void GeneralSettings::onBacklightOff()
{
    applyBrightness(0);
    emit updateEEData(m_record, Settings::Brightness);
}

void GeneralSettings::onBacklightOn()
{
    applyBrightness(convertBrightnessToOriginalValue(m_step));
    showStep();
    emit updateEEData(m_record, Settings::Brightness);
}

void GeneralSettings::doModal(QLineEdit *edit)
{
    KeyClick::play(m_settings);
    if (!edit)
        return;
    const int current = edit->text().toInt();   // empty or not a number: 0
    const QString name = edit->objectName();
    int maximum = 0;
    int minimum = 0;
    if (name == QLatin1String(BrightnessEditName)) {
        minimum = MinStep;
        maximum = MaxStep;
    } else if (name == QLatin1String(BacklightEditName)) {
        maximum = BacklightMaxMinutes;
    } else {
        return;
    }
    // The keypad's result is the value + 1; 0 means cancelled.
    const int result = InputDialog::Instance(m_fontId, minimum, maximum, current, m_settings, nullptr)->exec();
    if (result <= 0)
        return;
    const int value = result - 1;
    edit->setText(QString::number(value));
    if (edit == m_brightnessLineEdit) {
        m_step = value;
        m_brightnessSlider->setValue(m_step);
        onBacklightOn();
    } else {
        armBacklightOff(value);
    }
}

void GeneralSettings::jumpSlider(QMouseEvent *event)
{
    QSlider *slider = m_brightnessSlider;
    const int value = sliderValueAt(slider->minimum(), slider->maximum(), qRound(event->localPos().x()),
                                    slider->width());
    if (value != slider->sliderPosition())
        slider->setValue(value);
}

bool GeneralSettings::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress) {
        auto *mouse = static_cast<QMouseEvent *>(event);
        if (watched == m_brightnessSlider) {
            if (mouse->button() == Qt::LeftButton)
                jumpSlider(mouse);
        } else if (auto *button = qobject_cast<QPushButton *>(watched)) {
            // These three sound from their own slots.
            if (button != m_buzzerSwitch && button != m_brightenButton && button != m_darkenButton)
                KeyClick::play(m_settings);
        } else if (auto *edit = qobject_cast<QLineEdit *>(watched)) {
            if (edit->isEnabled())
                doModal(edit);
        }
    }
    return QTableView::eventFilter(watched, event);
}

int GeneralSettings::detect_process(const char *name)
{
    return ProcessLookup::detectProcess(name);
}
