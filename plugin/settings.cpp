#include "settings.h"
#include "ui_settings.h"

#include "eeinfohandle.h"
#include "inputdialog.h"
#include "keyclick.h"
#include "languagelist.h"
#include "panelfont.h"
#include "panelroot.h"
#include "panelscreen.h"
#include "sysreg.h"

#include <QEvent>
#include <QFile>
#include <QFileInfo>
#include <QGraphicsDropShadowEffect>
#include <QHBoxLayout>
#include <QLabel>
#include <QListView>
#include <QLoggingCategory>
#include <QPushButton>
#include <QSettings>
#include <QTimer>
#include <QTranslator>

Q_LOGGING_CATEGORY(lcSettings, "tavro.settings.window")

namespace {

const char SettingsFile[] = "/hmi/Config/system_settings.ini";
constexpr int WriteBackIntervalMs = 1000;
constexpr int RepaintPollMs = 10;
constexpr int CloseButtonSize = 40;
constexpr int CloseButtonRightInset = 55;
constexpr int CloseButtonTop = 15;
constexpr int WideScreenWidth = 1920;
constexpr int MinTitleBarHeight = 60;
constexpr int MinButtonBarWidth = 150;

const char ComboViewStyle[] =
    "QComboBox QAbstractItemView::item{height:35px; text-align: center;}\n"
    "                                    QComboBox QAbstractItemView::item:selected{background-color: "
    "#A8CDF1;color: white;height:35px;}";
const char SelectedButtonStyle[] = "border: 0px;background-color:rgb(96, 157, 191);";
const char UnselectedButtonStyle[] = "border: 0px;background-color:rgb(240, 240, 240);";

// Icons of the three page buttons: not selected, selected.
const char *const PageIcons[][2] = {
    {":/Resources/setting_blue.png", ":/Resources/setting_white.png"},
    {":/Resources/network.png", ":/Resources/network1.png"},
    {":/Resources/version.png", ":/Resources/version_white.png"},
};

} // namespace

Settings::Settings(QWidget *parent)
    : QDialog(parent),
      ui(new Ui::Settings),
      m_writeTimer(new QTimer(this)),
      m_translator(new QTranslator(this)),
      m_settings(new QSettings(PanelRoot::path(QString::fromLatin1(SettingsFile)), QSettings::IniFormat, this))
{
    qRegisterMetaType<Settings::Language>("Settings::Language");
    qRegisterMetaType<Settings::FlashWR1DataType>("Settings::FlashWR1DataType");
    ui->setupUi(this);
    // The title bar carries the window's own close button, which tells the
    // host through register 86; a frame's close button would bypass that.
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint);
    readDataFromEE();
    m_screenWidth = PanelScreen::size().width();
    adjustWgtSize();
    ui->retranslateUi(this);
    m_fontId = PanelFont::registerPanelFont();

    setTitleBar();
    setSettingsFrame();
    setGeneralSettingsList();
    setNetworkSettingsList();
    setVersionList();
    setButtonBar();
    setStatusBar();

    setAttribute(Qt::WA_AcceptTouchEvents);
    initSettingTab();
    connectSlots();

    ui->comboBox->setView(new QListView(ui->comboBox));
    ui->comboBox->setStyleSheet(QString::fromLatin1(ComboViewStyle));
    parseLangeinfo();
    m_writeTimer->start(WriteBackIntervalMs);
}

Settings::~Settings()
{
    delete ui;
}

void Settings::init()
{
    qint32 language = 0;
    if (SysReg_LoadReg(SysRegIdx::Language))
        SysReg_Read(SysRegIdx::Language, &language);
    m_repaintTimerId = startTimer(RepaintPollMs, Qt::CoarseTimer);
    updateLanguage(Language(language));
    const quint8 open = 1;
    SysReg_Write(SysRegIdx::SettingsWindowOpen, &open, sizeof open);
}

void Settings::readDataFromEE()
{
    EEInfoHandle *device = EEInfoHandle::instance();
    m_flashWR1.load();
    device->read_flash_wr2_info(&m_flashWR2);
    device->read_flash_r_info(&m_flashROnly);
}

QSize Settings::languageBoxSize(const QSize &screen)
{
    // 3W/28 + 520/7 by 31H/600 + 0.2, kept in integers so that the exact
    // sizes (160x25 at 800x480) do not truncate to one pixel less.
    return QSize((21 * screen.width() + 14560) / 196, (31 * screen.height() + 120) / 600);
}

void Settings::adjustWgtSize()
{
    const QSize screen = PanelScreen::size();
    ui->comboBox->setFixedSize(languageBoxSize(screen));
    // The window is the whole panel: the close button sits at the screen's
    // right edge, and the bars grow with the larger panels.
    resize(screen);
    ui->widget->setFixedHeight(qMax(MinTitleBarHeight, screen.height() * 2 / 25));
    ui->buttonBarFrame->setFixedWidth(qMax(MinButtonBarWidth, screen.width() / 8));
}

QFont Settings::applicationFont(int weight, int pointSize) const
{
    return PanelFont::font(m_fontId, weight, pointSize);
}

void Settings::setTitleBar()
{
    ui->titleText->setFont(applicationFont(QFont::Normal, 20));
    ui->titleText->setObjectName(QStringLiteral("titleobject"));
    ui->titleLayout->setAlignment(ui->frame, Qt::AlignCenter);
    // refresh() runs this on every language change: one shadow is enough.
    if (!ui->frame->graphicsEffect()) {
        auto *shadow = new QGraphicsDropShadowEffect(ui->frame);
        shadow->setOffset(0, 0);
        shadow->setColor(Qt::black);
        ui->frame->setGraphicsEffect(shadow);
    }
    setTitleBarButtons();
}

void Settings::setTitleBarButtons()
{
    // refresh() runs this again on every language change: one button only.
    if (!m_closeButton) {
        m_closeButton = new QPushButton(ui->settingsFrame);
        m_closeButton->setObjectName(QStringLiteral("closePushButton"));
        m_closeButton->setFocusPolicy(Qt::NoFocus);
        m_closeButton->installEventFilter(this);
    }
    m_closeButton->setFont(applicationFont(QFont::Normal, 12));
    m_closeButton->move(m_screenWidth - CloseButtonRightInset, CloseButtonTop);
    m_closeButton->setFixedSize(CloseButtonSize, CloseButtonSize);
    m_closeButton->setStyleSheet(QStringLiteral(
        "QPushButton{border-image: url(:/Resources/close.png); background-color: rgba(255, 255, 255, 0);color:white;}"));
    m_closeButton->raise();
    m_closeButton->setVisible(m_flashWR1.record().closeButtonHidden == 0);
}

void Settings::setSettingsFrame()
{
    ui->settingsFrame->setObjectName(QStringLiteral("settingsFrame"));
    ui->settingsFrame->setStyleSheet(QStringLiteral(
        "QFrame#settingsFrame{background-color: rgb(163, 198, 218);border: 0px solid rgb(163, 198, 218)}"));
}

void Settings::setGeneralSettingsList()
{
    ui->generalSettingsListWidget->init(m_fontId, m_flashWR1.record(), m_settings);
}

void Settings::setNetworkSettingsList()
{
    ui->networkSettingsListWidget->init(m_fontId, m_flashWR1.record(), m_flashROnly, m_settings);
}

void Settings::setVersionList()
{
    // The page draws its text and QR code on the first language change,
    // which init() brings about.
    ui->versionListWidget->init(m_fontId);
}

void Settings::setButton(QPushButton *button, int index, const QString &icon, const QString &text)
{
    auto *iconLabel = new QLabel(button);
    iconLabel->setFixedSize(27, 27);
    iconLabel->setScaledContents(true);
    iconLabel->setPixmap(QPixmap(icon));
    iconLabel->setAlignment(Qt::AlignCenter);
    auto *caption = new QLabel(text, button);
    caption->setAlignment(Qt::AlignCenter);
    caption->setFont(applicationFont(QFont::Bold, 9));
    auto *layout = new QHBoxLayout(button);
    layout->setContentsMargins(0, 10, 0, 10);
    layout->addStretch();
    layout->addWidget(iconLabel, 0, Qt::AlignCenter);
    layout->addWidget(caption, 0, Qt::AlignCenter);
    layout->addStretch();
    if (m_screenWidth == WideScreenWidth)
        button->setFixedHeight(90);
    m_buttonIcons.insert(index, iconLabel);
    m_buttonCaptions.insert(index, caption);
}

void Settings::setButtonBar()
{
    setButton(ui->generalPushButton, GeneralPage, QString::fromLatin1(PageIcons[GeneralPage][0]), tr("General11"));
    setButton(ui->networkPushButton, NetworkPage, QString::fromLatin1(PageIcons[NetworkPage][0]), tr("Network22"));
    setButton(ui->versionPushButton, VersionPage, QString::fromLatin1(PageIcons[VersionPage][0]), tr("Version"));
    setButton(ui->restartPushButton, 3, QStringLiteral(":/Resources/restart.png"), tr("Restart"));

    setButtonClicked(ui->generalPushButton, true);
    setButtonClicked(ui->networkPushButton, false);
    setButtonClicked(ui->versionPushButton, false);
    setButtonClicked(ui->restartPushButton, false);
    m_buttonCaptions.value(GeneralPage)->setStyleSheet(QStringLiteral("color:white;"));
    m_buttonIcons.value(GeneralPage)->setPixmap(QPixmap(QString::fromLatin1(PageIcons[GeneralPage][1])));

    m_buttons = {ui->generalPushButton, ui->networkPushButton, ui->versionPushButton, ui->restartPushButton};
    ui->buttonBarFrame->setObjectName(QStringLiteral("buttonBarFrame"));
    ui->buttonBarFrame->setStyleSheet(QStringLiteral(
        "QFrame#buttonBarFrame{background-color: rgb(163, 198, 218);border: 0px solid rgb(163, 198, 218);}"));
    for (QPushButton *button : {ui->generalPushButton, ui->networkPushButton, ui->wifiPushButton,
                                ui->fileManagerPushButton, ui->versionPushButton, ui->restartPushButton})
        button->installEventFilter(this);
    // Kept in the tree for the host's style sheets, but never offered.
    ui->wifiPushButton->hide();
    ui->fileManagerPushButton->hide();
}

void Settings::setButtonClicked(QPushButton *button, bool selected)
{
    button->setStyleSheet(QString::fromLatin1(selected ? SelectedButtonStyle : UnselectedButtonStyle));
}

void Settings::setStatusBar()
{
    ui->udisk1Image->setPixmap(QPixmap(QStringLiteral(":/Resources/udisk.png")));
    ui->udisk2Image->setPixmap(QPixmap(QStringLiteral(":/Resources/udisk.png")));
    ui->SDImage->setPixmap(QPixmap(QStringLiteral(":/Resources/sd.png")));
    ui->statusBarFrame->setObjectName(QStringLiteral("statusBarFrame"));
    ui->statusBarFrame->setStyleSheet(
        QStringLiteral("QFrame#statusBarFrame{border-image:url(:/Resources/background.png);}"));
    const QFont font = applicationFont(QFont::Bold, 10);
    for (QLabel *text : {ui->statusText, ui->uDisk1Text, ui->uDisk2Text, ui->SDText})
        text->setFont(font);
    // Nothing reports USB or SD state yet: the bar stays hidden on purpose.
    ui->statusBarFrame->hide();
}

void Settings::initSettingTab()
{
    m_currentPage = GeneralPage;
    ui->stackedWidget->setCurrentWidget(ui->generalSettingsPage);
}

void Settings::connectSlots()
{
    connect(m_closeButton, SIGNAL(clicked()), this, SLOT(onCloseClicked()));
    connect(ui->generalPushButton, SIGNAL(clicked()), this, SLOT(onGeneralSettingsClicked()));
    connect(ui->networkPushButton, SIGNAL(clicked()), this, SLOT(onNetworkSettingsClicked()));
    connect(ui->wifiPushButton, SIGNAL(clicked()), this, SLOT(onWifiSettingsClicked()));
    connect(ui->fileManagerPushButton, SIGNAL(clicked()), this, SLOT(onFileManagerSettingsClicked()));
    connect(ui->versionPushButton, SIGNAL(clicked()), this, SLOT(onVersionSettingsClicked()));
    connect(ui->restartPushButton, SIGNAL(clicked()), this, SLOT(onRestartClicked()));
    for (QObject *page : {static_cast<QObject *>(ui->generalSettingsListWidget),
                          static_cast<QObject *>(ui->networkSettingsListWidget),
                          static_cast<QObject *>(ui->versionListWidget)})
        connect(this, SIGNAL(changeLanguage(Settings::Language)), page, SLOT(onChangeLanguage(Settings::Language)));
    connect(this, SIGNAL(backLightOn()), ui->generalSettingsListWidget, SLOT(onBacklightOn()));
    connect(ui->generalSettingsListWidget, SIGNAL(updateEEData(EEInfoDetail::Flash_WR_1 &, Settings::FlashWR1DataType)),
            this, SLOT(onUpdateEEData(EEInfoDetail::Flash_WR_1 &, Settings::FlashWR1DataType)));
    connect(ui->networkSettingsListWidget, SIGNAL(updateEEData(EEInfoDetail::Flash_WR_1 &, Settings::FlashWR1DataType)),
            this, SLOT(onUpdateEEData(EEInfoDetail::Flash_WR_1 &, Settings::FlashWR1DataType)));
    connect(m_writeTimer, SIGNAL(timeout()), this, SLOT(onWriteEEData()));
}

void Settings::switchToPage(Page target)
{
    if (m_currentPage == target)
        return;
    setButtonClicked(m_buttons.at(m_currentPage), false);
    m_buttonCaptions.value(m_currentPage)->setStyleSheet(QStringLiteral("color:black;"));
    m_buttonIcons.value(m_currentPage)->setPixmap(QPixmap(QString::fromLatin1(PageIcons[m_currentPage][0])));

    m_buttonCaptions.value(target)->setStyleSheet(QStringLiteral("color:white;"));
    m_buttonIcons.value(target)->setPixmap(QPixmap(QString::fromLatin1(PageIcons[target][1])));
    setButtonClicked(m_buttons.at(target), true);

    QWidget *const pages[] = {ui->generalSettingsPage, ui->networkPage, ui->versionPage};
    ui->stackedWidget->setCurrentWidget(pages[target]);
    m_currentPage = target;
}

void Settings::onGeneralSettingsClicked() { switchToPage(GeneralPage); }
void Settings::onNetworkSettingsClicked() { switchToPage(NetworkPage); }
void Settings::onVersionSettingsClicked() { switchToPage(VersionPage); }

// The WLAN and file manager buttons stay hidden; their pages live elsewhere.
void Settings::onWifiSettingsClicked() {}
void Settings::onFileManagerSettingsClicked() {}

void Settings::onRestartClicked()
{
    EEInfoHandle::instance()->reboot();
}

void Settings::onCloseClicked()
{
    // The host owns the window: it closes and deletes it when it sees 0.
    const quint8 closed = 0;
    SysReg_WriteNotify(SysRegIdx::SettingsWindowOpen, &closed, sizeof closed);
}

void Settings::onUpdateEEData(EEInfoDetail::Flash_WR_1 &record, Settings::FlashWR1DataType type)
{
    if (!m_flashWR1.merge(record, type))
        return;
    if (type == Brightness)
        m_recordDirty = true;
    m_flashWR1.write();
}

void Settings::onWriteEEData()
{
    // Brightness arrives in bursts while the slider moves: one more write a
    // second later makes sure the device ends up with the last value.
    if (!m_recordDirty)
        return;
    m_flashWR1.write();
    m_recordDirty = false;
}

bool Settings::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress && qobject_cast<QPushButton *>(watched))
        KeyClick::play(m_settings);
    return QDialog::eventFilter(watched, event);
}

void Settings::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_repaintTimerId || !InputDialog::p_move)
        return;
    InputDialog::p_move = false;
    repaint();
}

void Settings::refresh()
{
    setTitleBar();
    ui->retranslateUi(this);
    if (m_chineseRow >= 0 && m_chineseRow < ui->comboBox->count())
        ui->comboBox->setItemText(m_chineseRow, tr("Chinese"));
    const QString captions[] = {tr("General"), tr("Network"), tr("Version"), tr("Restart")};
    for (int i = 0; i < 4; ++i) {
        if (QLabel *caption = m_buttonCaptions.value(i))
            caption->setText(captions[i]);
    }
}

void Settings::fillBuiltInLanguages()
{
    ui->comboBox->clear();
    ui->comboBox->insertItem(Chinese, tr("Chinese"));
    ui->comboBox->insertItem(English, tr("English"));
    m_chineseRow = Chinese;
    qint32 language = 0;
    SysReg_Read(SysRegIdx::Language, &language);
    ui->comboBox->setCurrentIndex(language);
}

void Settings::parseLangeinfo()
{
    m_fillingLanguages = true;
    const QString path = PanelRoot::path(QStringLiteral("/hmi/Config/lange.json"));
    if (!QFile::exists(path)) {
        fillBuiltInLanguages();
        m_fillingLanguages = false;
    }
    QFile file(path);
    // A plain file only: opening a FIFO put in its place would wait for a
    // writer, and the window with it.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        qCDebug(lcSettings) << "cannot open lange.json";
        return;
    }
    const QByteArray json = file.read(LanguageList::MaxFileSize + 1);
    LanguageList list;
    if (json.size() > LanguageList::MaxFileSize || list.parse(json) != LanguageList::Status::Ok) {
        qCDebug(lcSettings) << "JSON document is not an object";
        return;
    }
    ui->comboBox->clear();
    m_rowById.clear();
    m_idByRow.clear();
    int row = 0;
    for (const LanguageList::Entry &entry : list.entries()) {
        m_rowById.insert(entry.id, row);
        m_idByRow.insert(row, entry.id);
        QString text = entry.name;
        if (entry.name == QLatin1String(LanguageList::ChineseName)) {
            text = tr("Chinese");
            m_chineseRow = row;
        } else if (entry.name == QLatin1String(LanguageList::EnglishName)) {
            text = tr("English");
        }
        ui->comboBox->insertItem(row++, text);
    }
    qint32 language = 0;
    SysReg_Read(SysRegIdx::Language, &language);
    const qint32 corrected = LanguageList::correctedLanguage(language, m_rowById.size());
    if (corrected != language) {
        language = corrected;
        SysReg_WriteNotify(SysRegIdx::Language, &language, sizeof language);
    }
    ui->comboBox->setCurrentIndex(m_rowById.value(language, 0));
    m_fillingLanguages = false;
}

void Settings::on_comboBox_currentIndexChanged(int row)
{
    if (m_fillingLanguages)
        return;
    int language = m_idByRow.value(row, Chinese);
    if (row == 0 && ui->comboBox->itemText(row) == QStringLiteral("中文"))
        language = Chinese;
    else if (row == 1)
        language = English;
    updateLanguage(Language(language));
}

void Settings::updateLanguage(Settings::Language language)
{
    m_language = language;
    // Every language but Chinese shows the English catalogue, and the pages
    // only know those two; the register keeps the real id for the host.
    const Language shown = language == Chinese ? Chinese : English;
    m_translator->load(LanguageList::catalogueFor(shown));
    qint32 value = language;
    SysReg_WriteNotify(SysRegIdx::Language, &value, sizeof value);
    emit changeLanguage(shown);
    LanguageList::installFirst(m_translator);
    refresh();
}
