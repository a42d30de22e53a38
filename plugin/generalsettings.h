#ifndef GENERALSETTINGS_H
#define GENERALSETTINGS_H

#include "flash_wr_1.h"
#include "settings.h"

#include <QTableView>

class QSettings;
class QTranslator;

// The first page of the settings window: brightness, date and time, buzzer.
// A QTableView only as a plain container, like the version page.
class GeneralSettings : public QTableView
{
    Q_OBJECT

public:
    explicit GeneralSettings(QWidget *parent = nullptr);

    void init(int fontId, EEInfoDetail::Flash_WR_1 &record, QSettings *settings);
    void refresh();

signals:
    void updateEEData(EEInfoDetail::Flash_WR_1 &record, Settings::FlashWR1DataType type);

public slots:
    void onChangeLanguage(Settings::Language lang);
    void onBacklightOn();

private:
    void connectSlots();

    int m_fontId = -1;
    Settings::Language m_language = Settings::Chinese;
    EEInfoDetail::Flash_WR_1 m_record {};
    QSettings *m_settings = nullptr;
    QTranslator *m_translator;
};

#endif // GENERALSETTINGS_H
