#include "passwordkeyboard.h"

#include "passwordkeytable.h"

#include <QBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {

const char KeyboardStyle[] = "QDialog {  border: 2px solid blue;  border-radius: 5px;}";
const char TitleStyle[] = "background: blue;";
const char CloseStyle[] = "QPushButton { background-color: red; }";
const char KeyStyle[] = "QPushButton { background-color: blue; }";
const char WindowTitle[] = "Always on Top Dialog";

// Inside the 2-pixel border, with a little air.
constexpr int Margin = 4;
constexpr int TitleIndent = 8;
// The space bar takes the room of three ENTER keys.
constexpr int SpaceStretch = 3;

void whiteText(QWidget *widget, QPalette::ColorRole role)
{
    QPalette palette = widget->palette();
    palette.setColor(role, Qt::white);
    widget->setPalette(palette);
}

} // namespace

PasswordKeyboard::PasswordKeyboard(const PasswordDialogLayout &layout, const QFont &keyFont, QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("passwordKeyboard"));
    // A new keyboard is made for every press on the password field: a closed
    // one must not stay behind as a hidden child of the dialog.
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setWindowTitle(QString::fromLatin1(WindowTitle));
    setStyleSheet(QString::fromLatin1(KeyboardStyle));
    setFixedSize(layout.keyboard);

    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(Margin, Margin, Margin, Margin);
    rows->setSpacing(layout.keySpacing);
    addTitleRow(layout, keyFont);

    m_line = new QLineEdit(this);
    m_line->setObjectName(QStringLiteral("lineEdit_keyboard"));
    m_line->setFixedHeight(layout.keyboardLineHeight);
    m_line->setFont(keyFont);
    rows->addWidget(m_line);

    addKeyRows(layout, keyFont);
}

void PasswordKeyboard::addTitleRow(const PasswordDialogLayout &layout, const QFont &keyFont)
{
    auto *row = new QHBoxLayout;
    row->setSpacing(0);
    auto *title = new QLabel(QStringLiteral("Keyboard"), this);
    title->setObjectName(QStringLiteral("label_keyboardTitle"));
    title->setStyleSheet(QString::fromLatin1(TitleStyle));
    title->setFont(keyFont);
    title->setIndent(TitleIndent);
    title->setFixedHeight(layout.keyboardCloseSide);
    whiteText(title, QPalette::WindowText);
    row->addWidget(title, 1);

    m_close = new QPushButton(QStringLiteral("X"), this);
    m_close->setObjectName(QStringLiteral("pushButton_close_keyboard"));
    m_close->setStyleSheet(QString::fromLatin1(CloseStyle));
    m_close->setFont(keyFont);
    m_close->setFixedSize(layout.keyboardCloseSide, layout.keyboardCloseSide);
    m_close->setFocusPolicy(Qt::NoFocus);
    connect(m_close, SIGNAL(clicked()), this, SLOT(close()));
    row->addWidget(m_close);
    static_cast<QBoxLayout *>(this->layout())->addLayout(row);
}

void PasswordKeyboard::addKeyRows(const PasswordDialogLayout &layout, const QFont &keyFont)
{
    auto *rows = static_cast<QBoxLayout *>(this->layout());
    QHBoxLayout *row = nullptr;
    int rowIndex = -1;
    m_keys.reserve(PasswordKeyTable::KeyCount);
    for (int i = 0; i < PasswordKeyTable::KeyCount; ++i) {
        const PasswordKeyTable::Key &k = PasswordKeyTable::keys()[i];
        if (k.row != rowIndex) {
            row = new QHBoxLayout;
            row->setSpacing(layout.keySpacing);
            rows->addLayout(row, 1);
            rowIndex = k.row;
        }
        auto *key = new QPushButton(buttonText(PasswordKeyTable::caption(k, false)), this);
        key->setObjectName(PasswordKeyTable::objectName(k));
        key->setStyleSheet(QString::fromLatin1(KeyStyle));
        key->setFont(keyFont);
        whiteText(key, QPalette::ButtonText);
        // The input line keeps the focus and its cursor while keys are hit.
        key->setFocusPolicy(Qt::NoFocus);
        key->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        key->setMinimumSize(1, 1);
        if (k.action == PasswordKeyTable::Clear)
            key->setMinimumWidth(layout.clearMinWidth);
        row->addWidget(key, k.action == PasswordKeyTable::Space ? SpaceStretch : 1);
        m_keys.append(key);
    }
}

QPushButton *PasswordKeyboard::key(int index) const
{
    return index >= 0 && index < m_keys.size() ? m_keys.at(index) : nullptr;
}

QPushButton *PasswordKeyboard::key(const QString &name) const
{
    const PasswordKeyTable::Key *k = PasswordKeyTable::find(name);
    return k ? key(int(k - PasswordKeyTable::keys())) : nullptr;
}

QString PasswordKeyboard::buttonText(const QString &caption)
{
    QString text = caption;
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

void PasswordKeyboard::relabel(bool caps)
{
    for (int i = 0; i < m_keys.size(); ++i) {
        const PasswordKeyTable::Key &k = PasswordKeyTable::keys()[i];
        if (k.action == PasswordKeyTable::Character)
            m_keys.at(i)->setText(buttonText(PasswordKeyTable::caption(k, caps)));
    }
}
