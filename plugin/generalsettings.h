#ifndef GENERALSETTINGS_H
#define GENERALSETTINGS_H

#include "flash_wr_1.h"
#include "settings.h"

#include <QDateTime>
#include <QTableView>

class QFrame;
class QGridLayout;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QMouseEvent;
class QPushButton;
class QSettings;
class QSlider;
class QTimer;
class QTranslator;

// The first page of the settings window: brightness, date and time, buzzer.
// A QTableView only as a plain container, like the version page.
//
// Brightness has two scales: the step 1..32 of the slider and of
// brightnessLineEdit, and the device value that setbright/getbright and the
// record's brightness field use. The buzzer state lives in register 79; the
// "General/buzzer" configuration value follows it.
class GeneralSettings : public QTableView
{
    Q_OBJECT

public:
    explicit GeneralSettings(QWidget *parent = nullptr);
    ~GeneralSettings() override;

    void init(int fontId, EEInfoDetail::Flash_WR_1 &record, QSettings *settings);
    void refresh();
    void doModal(QLineEdit *edit);
    QString getDayText(int dayOfWeek) const;
    // The label text for a moment: "2023/03/05   Sun    09:07:03".
    QString dateTimeText(const QDateTime &dateTime) const;
    // First number of the first line "ps -ef | grep <name>" prints; 1 when
    // nothing matches, -1 when the command cannot run.
    static int detect_process(const char *name);

    // step -> device value: (step + 18) * 4, no clamping.
    static int convertBrightnessToOriginalValue(int step);
    // device value -> step: 0 up to 75, else (raw >> 2) - 18, no clamping.
    static int convertBrightnessFromOriginalValue(int raw);
    // Slider value under a press at x on a slider of the given width.
    static int sliderValueAt(int minimum, int maximum, int x, int width);

signals:
    void updateEEData(EEInfoDetail::Flash_WR_1 &record, Settings::FlashWR1DataType type);
    void updateCurrentDateTime(QDateTime &dateTime);

public slots:
    void onUpdateurrentDateTime();
    void onBrightenClicked();
    void onDarkenClicked();
    void onBrightnessChanged(int value);
    void onBrightnessPressed();
    void onDateTimeSettingClicked();
    void onBuzzerSwitched();
    void onBacklightSwitched();
    void onBacklightOn();
    void onBacklightOff();
    void onChangeLanguage(Settings::Language lang);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void connectSlots();
    void chooseSizes();
    void setSeparators();
    void setPageFont();
    void setStepButton(QPushButton *button, const char *style);
    void setBrightnessRow();
    void setDateTimeRow();
    void setBuzzerRow();
    void setBacklightRows();
    void setGrid();
    void setIcon(QLabel *label, const QString &path);
    void showStep();
    void applyBrightness(int deviceValue);
    void stepBrightness(int delta);
    void jumpSlider(QMouseEvent *event);
    void armBacklightOff(int minutes);

    // Brightness row.
    QLabel *m_brightnessIcon;
    QLabel *m_brightnessCaption;
    QLineEdit *m_brightnessLineEdit;
    QPushButton *m_darkenButton;
    QSlider *m_brightnessSlider;
    QPushButton *m_brightenButton;
    // Date and time row.
    QLabel *m_dateTimeIcon;
    QLabel *m_dateTimeCaption;
    QLabel *m_dateTimeLabel;
    QPushButton *m_settingButton;
    // Buzzer row.
    QLabel *m_buzzerIcon;
    QLabel *m_buzzerCaption;
    QPushButton *m_buzzerSwitch;
    // Backlight and initial-window rows: built, never placed on the page.
    QLabel *m_backlightIcon;
    QLabel *m_backlightCaption;
    QLineEdit *m_backlightLineEdit;
    QLabel *m_backlightUnit;
    QPushButton *m_backlightSwitch;
    QLabel *m_initialWindowIcon;
    QLabel *m_initialWindowCaption;
    QLineEdit *m_initialWindowLineEdit;
    QLabel *m_initialWindowLabel;

    QFrame *m_separators[4];
    QGridLayout *m_gridLayout;
    QHBoxLayout *m_brightnessBox;

    QDateTime m_currentDateTime;
    int m_fontId = -1;
    int m_step = 1;
    int m_buzzerState = 0;
    bool m_backlightOn = false;
    QTimer *m_clockTimer;
    QTimer *m_spareTimer;
    QTranslator *m_translator;
    Settings::Language m_language = Settings::Chinese;
    EEInfoDetail::Flash_WR_1 m_record {};
    QSettings *m_settings = nullptr;
    int m_sliderWidth = 250;
    int m_settingButtonWidth = 100;
};

#endif // GENERALSETTINGS_H
