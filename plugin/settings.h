#ifndef SETTINGS_H
#define SETTINGS_H

#include "flash_ronly.h"
#include "flash_wr_1.h"
#include "flash_wr_2.h"
#include "windowrecord.h"

#include <QDialog>
#include <QHash>
#include <QList>

class QLabel;
class QPushButton;
class QSettings;
class QTimer;
class QTranslator;

namespace Ui {
class Settings;
}

// The settings window the plug-in hands to the host. It owns the one copy of
// the device records the pages share, writes the pages' record changes back
// to the device, and tells the host through register 86 when the user wants
// it closed; the host then deletes it.
class Settings : public QDialog
{
    Q_OBJECT

public:
    enum Language : qint32 { Chinese = 0, English = 1 };
    Q_ENUM(Language)

    // Which part of the read-write record a page changed.
    enum FlashWR1DataType : qint32 {
        WholeRecord = WindowRecord::WholeRecord,
        Brightness = WindowRecord::Brightness,
        IpAddress = WindowRecord::IpAddress,
        SubnetMask = WindowRecord::SubnetMask,
        Gateway = WindowRecord::Gateway,
    };
    Q_ENUM(FlashWR1DataType)

    explicit Settings(QWidget *parent = nullptr);
    ~Settings() override;

    void init();
    void refresh();

    // The language box follows the panel: 160x25 at 800x480, 280x56 at 1920x1080.
    static QSize languageBoxSize(const QSize &screen);
    void updateLanguage(Settings::Language language);

signals:
    void changeLanguage(Settings::Language language);
    void backLightOn();

public slots:
    void onCloseClicked();
    void onGeneralSettingsClicked();
    void onNetworkSettingsClicked();
    void onWifiSettingsClicked();
    void onFileManagerSettingsClicked();
    void onVersionSettingsClicked();
    void onRestartClicked();
    void onUpdateEEData(EEInfoDetail::Flash_WR_1 &record, Settings::FlashWR1DataType type);
    void onWriteEEData();
    void on_comboBox_currentIndexChanged(int row);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    enum Page { GeneralPage = 0, NetworkPage = 1, VersionPage = 2 };

    void readDataFromEE();
    void adjustWgtSize();
    void setTitleBar();
    void setTitleBarButtons();
    void setSettingsFrame();
    void setGeneralSettingsList();
    void setNetworkSettingsList();
    void setVersionList();
    void setButton(QPushButton *button, int index, const QString &icon, const QString &text);
    void setButtonBar();
    void setButtonClicked(QPushButton *button, bool selected);
    void setStatusBar();
    void initSettingTab();
    void connectSlots();
    void parseLangeinfo();
    void fillBuiltInLanguages();
    void switchToPage(Page target);
    QFont applicationFont(int weight, int pointSize) const;

    Ui::Settings *ui;
    int m_fontId = -1;
    Language m_language = Chinese;
    QTimer *m_writeTimer;
    QTranslator *m_translator;
    QSettings *m_settings;
    QList<QPushButton *> m_buttons;
    QHash<int, QLabel *> m_buttonIcons;
    QHash<int, QLabel *> m_buttonCaptions;
    QPushButton *m_closeButton = nullptr;
    Page m_currentPage = GeneralPage;
    WindowRecord m_flashWR1;
    EEInfoDetail::Flash_WR_2 m_flashWR2 {};
    EEInfoDetail::Flash_ROnly m_flashROnly {};
    int m_screenWidth = 0;
    bool m_recordDirty = false;
    int m_repaintTimerId = 0;
    int m_chineseRow = -1;
    bool m_fillingLanguages = false;
    QHash<int, int> m_rowById;
    QHash<int, int> m_idByRow;
};

#endif // SETTINGS_H
