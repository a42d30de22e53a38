#include "dialogdrag.h"

#include "inputdialog.h"

#include <QFrame>
#include <QMouseEvent>
#include <QPushButton>

namespace {

constexpr int CloseButtonSide = 45;
const char TitleBarStyle[] = "QFrame#titleBarFrame{border-image:url(:/Resources/titleBar.png)}";
const char CloseButtonStyle[] =
    "QPushButton{border-image: url(:/Resources/close.png); background-color: rgba(255, 255, 255, 0);color:white;}";

} // namespace

void DialogDrag::decorate(QFrame *titleBar, QPushButton *closeButton)
{
    titleBar->setStyleSheet(QString::fromLatin1(TitleBarStyle));
    closeButton->setFixedSize(CloseButtonSide, CloseButtonSide);
    closeButton->setStyleSheet(QString::fromLatin1(CloseButtonStyle));
}

void DialogDrag::press(const QMouseEvent *event, const QFrame *titleBar, const QPoint &margin)
{
    if (event->button() != Qt::LeftButton)
        return;
    const QPoint position = event->localPos().toPoint();
    m_pressed = titleBar && inRange(position, titleBar);
    if (m_pressed) {
        const QPoint offset = position - titleBar->geometry().topLeft() + margin;
        m_x = offset.x();
        m_y = offset.y();
    }
}

bool DialogDrag::move(const QMouseEvent *event, QWidget *dialog) const
{
    if (event->buttons() != Qt::LeftButton || !m_pressed)
        return false;
    dialog->move(event->globalPos() - QPoint(m_x, m_y));
    InputDialog::p_move = true;
    return true;
}

bool DialogDrag::inRange(const QPoint &p, const QFrame *frame)
{
    const QRect g = frame->geometry();
    return p.x() >= g.left() && p.x() <= g.right() + 1 && p.y() >= g.top() && p.y() <= g.bottom() + 1;
}
