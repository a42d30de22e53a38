#include "switchbutton.h"

#include <QPainter>
#include <QPainterPath>
#include <QTimer>

#include <algorithm>

namespace {

constexpr int TickMs = 30;
// The knob travels the track in about ten ticks whatever the width.
constexpr int StepsPerWidth = 10;
constexpr int EnabledTrackAlpha = 140;
const QColor DisabledTrackColor(224, 224, 224);

} // namespace

SwitchButton::SwitchButton(QWidget *parent)
    : QWidget(parent),
      m_space(2),
      m_radius(5),
      m_checked(false),
      m_showText(false),
      m_showCircle(false),
      m_animation(true),
      m_bgColorOn(50, 105, 206),
      m_bgColorOff(111, 122, 126),
      m_sliderColorOn(255, 255, 255),
      m_sliderColorOff(255, 255, 255),
      m_textColor(255, 255, 255),
      m_timer(new QTimer(this)),
      m_step(0),
      m_startX(0),
      m_endX(0)
{
    m_timer->setInterval(TickMs);
    connect(m_timer, SIGNAL(timeout()), this, SLOT(UpdateValue()));
}

void SwitchButton::setSpace(int space)
{
    if (m_space != space)
        m_space = space;
}

void SwitchButton::setRadius(int radius)
{
    if (m_radius != radius)
        m_radius = radius;
}

void SwitchButton::setChecked(bool checked)
{
    if (m_checked == checked)
        return;
    m_checked = checked;
    aimKnob();
    // Without animation the knob is only placed: the page that sets the
    // state repaints when it shows itself.
    if (m_animation)
        m_timer->start();
    else
        m_startX = m_endX;
}

void SwitchButton::setShowText(bool show)
{
    if (m_showText != show)
        m_showText = show;
}

void SwitchButton::setShowCircle(bool show)
{
    if (m_showCircle != show)
        m_showCircle = show;
}

void SwitchButton::setAnimation(bool on)
{
    if (m_animation != on)
        m_animation = on;
}

void SwitchButton::setBgColorOn(const QColor &color)
{
    m_bgColorOn = color;
}

void SwitchButton::setBgColorOff(const QColor &color)
{
    m_bgColorOff = color;
}

void SwitchButton::setSliderColorOn(const QColor &color)
{
    m_sliderColorOn = color;
}

void SwitchButton::setSliderColorOff(const QColor &color)
{
    m_sliderColorOff = color;
}

void SwitchButton::setTextColor(const QColor &color)
{
    m_textColor = color;
}

void SwitchButton::setTextOn(const QString &text)
{
    m_textOn = text;
}

void SwitchButton::setTextOff(const QString &text)
{
    m_textOff = text;
}

void SwitchButton::aimKnob()
{
    m_step = width() / StepsPerWidth;
    m_endX = m_checked ? width() - height() : 0;
}

void SwitchButton::UpdateValue()
{
    // The last step may carry the knob past its end; it is put back there on
    // the following tick, which also ends the animation.
    if (m_checked && m_startX < m_endX) {
        m_startX += m_step;
    } else if (!m_checked && m_startX > m_endX) {
        m_startX -= m_step;
    } else {
        m_startX = m_endX;
        m_timer->stop();
    }
    update();
}

void SwitchButton::mousePressEvent(QMouseEvent *)
{
    m_checked = !m_checked;
    emit statusChanged(m_checked);
    aimKnob();
    if (m_animation) {
        m_timer->start();
    } else {
        m_startX = m_endX;
        update();
    }
}

void SwitchButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    drawTrack(&painter);
    drawKnob(&painter);
}

void SwitchButton::drawTrack(QPainter *painter)
{
    painter->save();
    painter->setPen(Qt::NoPen);
    QColor color = m_checked ? m_bgColorOn : m_bgColorOff;
    if (isEnabled())
        color.setAlpha(EnabledTrackAlpha);
    else
        color = DisabledTrackColor;
    painter->setBrush(color);

    const int w = width();
    const int h = height();
    const int side = std::min(w, h);
    QPainterPath left;
    left.addEllipse(0, 0, side, side);
    QPainterPath right;
    right.addEllipse(w - side, 0, side, side);
    QPainterPath middle;
    middle.addRect(side / 2, 0, w - side, h);
    painter->drawPath(left.united(right).united(middle));
    painter->restore();
}

void SwitchButton::drawKnob(QPainter *painter)
{
    painter->save();
    painter->setPen(Qt::NoPen);
    painter->setBrush(m_checked ? m_sliderColorOn : m_sliderColorOff);
    const int side = std::min(width(), height()) - 2 * m_space;
    painter->drawEllipse(QRect(m_space + m_startX, m_space, side, side));
    painter->restore();
}
