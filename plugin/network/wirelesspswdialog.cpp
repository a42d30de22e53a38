#include "wirelesspswdialog.h"
#include "ui_wirelesspswdialog.h"

#include "keyclick.h"
#include "languagemessage.h"
#include "panelfont.h"
#include "panelscreen.h"
#include "passwordkeyboard.h"
#include "passwordkeytable.h"
#include "wlanconnectrequest.h"

#include <QEvent>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QMetaMethod>
#include <QScreen>

namespace {

Q_LOGGING_CATEGORY(lcPswDialog, "tavro.settings.wlan.password")

// WPA pass phrases have at least 8 characters; the host checks nothing.
constexpr int MinPasswordLength = 8;

// Room around the title text: the title bar's margins and spacing and the
// dialog's border.
constexpr int TitleRoom = 12 + 6 + 6 + 2 * 3 + 8;

const char DialogStyle[] =
    "#WirelessPswDialog{background-color: rgb(240, 240, 240); border:3px solid rgb(0, 0, 0);}"
    "#frame_title{border-image:url(:/Resources/titleBar.png);}"
    "#label_title{color: white; background: transparent;}"
    "#label, #checkBox_showPsw{color: black;}"
    "#lineEdit_psw{background-color: white; color: black; border: 1px solid rgb(141, 180, 203);"
    " border-radius: 4px; padding: 2px 6px;}"
    "#checkBox_showPsw{spacing: 8px;}"
    "#checkBox_showPsw::indicator{width: %1px; height: %1px;}"
    "#pushButton_connect{background-color: rgb(96, 157, 191); color: white; border: 1px solid #2E6E92;"
    " border-radius: 6px; padding: 0px 14px;}"
    "#pushButton_connect:pressed{background-color: #2E6E92;}"
    "#pushButton_cancel{background-color: white; color: #2E6E92; border: 1px solid rgb(96, 157, 191);"
    " border-radius: 6px; padding: 0px 14px;}"
    "#pushButton_cancel:pressed{background-color: rgb(163, 198, 218);}";

} // namespace

WirelessPswDialog::WirelessPswDialog(QString ssid, QWidget *parent)
    : QDialog(parent)
    , ui(new Ui::WirelessPswDialog)
    , m_ssid(ssid)
{
    ui->setupUi(this);
    setObjectName(QStringLiteral("WirelessPswDialog"));
    // On every widget of the form: under the page's style sheet a child
    // takes the application's font, not its parent's.
    const QFont font = PanelFont::font(PanelFont::registerPanelFont(), QFont::Bold, PasswordDialogLayout::PointSize);
    setFont(font);
    for (QWidget *widget : findChildren<QWidget *>())
        widget->setFont(font);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    ui->label_title->setText(tr("Input the password of %1").arg(m_ssid));
    ui->lineEdit_psw->installEventFilter(this);
    resizeUIWgt();
    connectSlots();
}

WirelessPswDialog::~WirelessPswDialog()
{
    delete ui;
}

void WirelessPswDialog::resizeUIWgt()
{
    resizeUIWgt(PanelScreen::size());
}

void WirelessPswDialog::resizeUIWgt(const QSize &screen)
{
    m_layout = PasswordDialogLayout::forScreen(screen);

    ui->frame_title->setFixedHeight(m_layout.titleHeight);
    ui->pushButton_close->setFixedSize(m_layout.closeSide, m_layout.closeSide);
    ui->verticalLayout_body->setContentsMargins(m_layout.margin, m_layout.margin, m_layout.margin,
                                                m_layout.margin);
    ui->lineEdit_psw->setFixedHeight(m_layout.fieldHeight);
    for (QPushButton *button : {ui->pushButton_cancel, ui->pushButton_connect}) {
        button->setMinimumWidth(m_layout.actionButton.width());
        button->setFixedHeight(m_layout.actionButton.height());
    }
    addUIStyles();

    // A long network name widens the dialog rather than being cut off, up to
    // the width of the panel.
    const int titleWidth = ui->label_title->fontMetrics().horizontalAdvance(ui->label_title->text())
        + m_layout.closeSide + TitleRoom;
    const int screenWidth = screen.width() > 0 ? screen.width() : m_layout.dialog.width();
    setFixedSize(qBound(m_layout.dialog.width(), titleWidth, qMax(screenWidth, m_layout.dialog.width())),
                 m_layout.dialog.height());
}

void WirelessPswDialog::addUIStyles()
{
    setStyleSheet(QString::fromLatin1(DialogStyle).arg(m_layout.checkIndicator));
}

PasswordKeyboard *WirelessPswDialog::keyboard() const
{
    return m_keyboard.data();
}

void WirelessPswDialog::setSettings(QSettings *settings)
{
    m_settings = settings;
}

void WirelessPswDialog::connectSlots()
{
    // Wired here rather than by name: the key slots have no buttons until a
    // keyboard exists, and wiring by name would complain about each of them.
    connect(ui->pushButton_connect, SIGNAL(clicked()), this, SLOT(on_pushButton_connect_clicked()));
    connect(ui->pushButton_cancel, SIGNAL(clicked()), this, SLOT(on_pushButton_cancel_clicked()));
    connect(ui->pushButton_close, SIGNAL(clicked()), this, SLOT(on_pushButton_close_clicked()));
    connect(ui->checkBox_showPsw, SIGNAL(toggled(bool)), this, SLOT(on_checkBox_showPsw_toggled(bool)));
}

QSettings *WirelessPswDialog::settings() const
{
    if (m_settings)
        return m_settings;
    // The settings window keeps its configuration as a direct child.
    for (QWidget *w = parentWidget(); w; w = w->parentWidget()) {
        if (auto *s = w->findChild<QSettings *>(QString(), Qt::FindDirectChildrenOnly))
            return s;
    }
    return nullptr;
}

void WirelessPswDialog::keyClick()
{
    KeyClick::play(settings());
}

void WirelessPswDialog::announce(int result)
{
    if (m_announced)
        return;
    m_announced = true;
    if (m_keyboard)
        m_keyboard->close();
    emit frame_close(result);
}

void WirelessPswDialog::reject()
{
    // The page may delete the dialog when it hears of the end.
    QPointer<WirelessPswDialog> self(this);
    announce(0);
    if (self)
        QDialog::reject();
}

void WirelessPswDialog::on_pushButton_connect_clicked()
{
    keyClick();
    const QString password = ui->lineEdit_psw->text();
    qCDebug(lcPswDialog).noquote() << QStringLiteral("connect_wifiName: ") + m_ssid;
    qCDebug(lcPswDialog).noquote() << QStringLiteral("connect_wifipass: ") + password;
    qCDebug(lcPswDialog).noquote() << QStringLiteral("wifiPsw.length(): ") + QString::number(password.size());
    if (password.size() < MinPasswordLength) {
        LanguageMessage::warn(this, QStringLiteral("Password length less 8!"), QStringLiteral("密码长度不少于8位"));
        return;
    }
    WlanConnectRequest::send(m_ssid, password);
    QPointer<WirelessPswDialog> self(this);
    announce(1);
    if (self)
        accept();
}

void WirelessPswDialog::on_pushButton_cancel_clicked()
{
    keyClick();
    reject();
}

void WirelessPswDialog::on_pushButton_close_clicked()
{
    keyClick();
    reject();
}

void WirelessPswDialog::on_checkBox_showPsw_toggled(bool checked)
{
    ui->lineEdit_psw->setEchoMode(checked ? QLineEdit::Normal : QLineEdit::Password);
}

bool WirelessPswDialog::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == ui->lineEdit_psw && event->type() == QEvent::MouseButtonPress) {
        passwordKeyboard();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void WirelessPswDialog::passwordKeyboard()
{
    // A press while a keyboard is still open replaces it: removed at once,
    // so that any number of presses leaves one keyboard at most. A closed
    // keyboard deletes itself.
    delete m_keyboard.data();
    m_caps = false;
    const QFont keyFont = PanelFont::font(PanelFont::registerPanelFont(), QFont::Bold, m_layout.keyPointSize);
    m_keyboard = new PasswordKeyboard(m_layout, keyFont, this);
    connectKeys();

    // At the foot of the panel, where it hides the least of the dialog.
    const QScreen *screen = this->screen() ? this->screen() : QGuiApplication::primaryScreen();
    const QRect area = screen ? screen->availableGeometry() : QRect(QPoint(0, 0), PanelScreen::size());
    m_keyboard->move(area.left() + (area.width() - m_keyboard->width()) / 2,
                     area.bottom() + 1 - m_keyboard->height());
    m_keyboard->show();
}

void WirelessPswDialog::connectKeys()
{
    const QMetaMethod clicked = QMetaMethod::fromSignal(&QPushButton::clicked);
    for (int i = 0; i < PasswordKeyTable::KeyCount; ++i) {
        const PasswordKeyTable::Key &key = PasswordKeyTable::keys()[i];
        const int slot = metaObject()->indexOfSlot(PasswordKeyTable::slotSignature(key).constData());
        if (slot < 0) {
            qCWarning(lcPswDialog) << "no slot for key" << key.name;
            continue;
        }
        connect(m_keyboard->key(i), clicked, this, metaObject()->method(slot));
    }
}

void WirelessPswDialog::pressKey(const char *name)
{
    keyClick();
    const PasswordKeyTable::Key *key = PasswordKeyTable::find(QLatin1String(name));
    if (!key || !m_keyboard)
        return;
    QLineEdit *line = m_keyboard->line();
    line->setText(PasswordKeyTable::typed(line->text(), *key, m_caps));
}

void WirelessPswDialog::on_pushButton_button_caps_keyboard_clicked()
{
    keyClick();
    m_caps = !m_caps;
    if (m_keyboard)
        m_keyboard->relabel(m_caps);
}

void WirelessPswDialog::on_pushButton_button_enter_keyboard_clicked()
{
    keyClick();
    if (!m_keyboard)
        return;
    const QString text = m_keyboard->line()->text();
    qCDebug(lcPswDialog).noquote() << QStringLiteral("enter data: ") + text;
    ui->lineEdit_psw->setText(text);
    m_keyboard->close();
}

// The keys that edit the keyboard line all go through the table.
#define PASSWORD_KEY_SLOT(key) \
    void WirelessPswDialog::on_pushButton_##key##_keyboard_clicked() { pressKey(#key); }

PASSWORD_KEY_SLOT(button_1)
PASSWORD_KEY_SLOT(button_2)
PASSWORD_KEY_SLOT(button_3)
PASSWORD_KEY_SLOT(button_4)
PASSWORD_KEY_SLOT(button_5)
PASSWORD_KEY_SLOT(button_6)
PASSWORD_KEY_SLOT(button_7)
PASSWORD_KEY_SLOT(button_8)
PASSWORD_KEY_SLOT(button_9)
PASSWORD_KEY_SLOT(button_0)
PASSWORD_KEY_SLOT(button_q)
PASSWORD_KEY_SLOT(button_w)
PASSWORD_KEY_SLOT(button_e)
PASSWORD_KEY_SLOT(button_r)
PASSWORD_KEY_SLOT(button_t)
PASSWORD_KEY_SLOT(button_y)
PASSWORD_KEY_SLOT(button_u)
PASSWORD_KEY_SLOT(button_i)
PASSWORD_KEY_SLOT(button_o)
PASSWORD_KEY_SLOT(button_p)
PASSWORD_KEY_SLOT(button_denghao)
PASSWORD_KEY_SLOT(button_a)
PASSWORD_KEY_SLOT(button_s)
PASSWORD_KEY_SLOT(button_d)
PASSWORD_KEY_SLOT(button_f)
PASSWORD_KEY_SLOT(button_g)
PASSWORD_KEY_SLOT(button_h)
PASSWORD_KEY_SLOT(button_j)
PASSWORD_KEY_SLOT(button_k)
PASSWORD_KEY_SLOT(button_l)
PASSWORD_KEY_SLOT(button_youxie)
PASSWORD_KEY_SLOT(button_zuoxie)
PASSWORD_KEY_SLOT(button_z)
PASSWORD_KEY_SLOT(button_x)
PASSWORD_KEY_SLOT(button_c)
PASSWORD_KEY_SLOT(button_v)
PASSWORD_KEY_SLOT(button_b)
PASSWORD_KEY_SLOT(button_n)
PASSWORD_KEY_SLOT(button_m)
PASSWORD_KEY_SLOT(button_zuoZhongKuohao)
PASSWORD_KEY_SLOT(button_youZhongKuohao)
PASSWORD_KEY_SLOT(button_xiaHuaXian)
PASSWORD_KEY_SLOT(button_maoHao)
PASSWORD_KEY_SLOT(button_dian)
PASSWORD_KEY_SLOT(button_douhao)
PASSWORD_KEY_SLOT(button_back)
PASSWORD_KEY_SLOT(button_clear)
PASSWORD_KEY_SLOT(button_kongge)

#undef PASSWORD_KEY_SLOT
