#include "svgpushbutton.h"

#include <QFileInfo>
#include <QPainter>
#include <QSvgRenderer>

SvgPushButton::SvgPushButton(QWidget *parent)
    : QPushButton(parent)
{
}

void SvgPushButton::setSvgFilepath(QString path)
{
    m_svgFilepath = path;
    update();
}

void SvgPushButton::paintEvent(QPaintEvent *)
{
    // The button's own look is left out on purpose: pages swap the picture
    // to show state, and a frame or pressed shade would show around it.
    // A missing picture would otherwise be reported again on every repaint.
    if (m_svgFilepath.isEmpty() || !QFileInfo::exists(m_svgFilepath))
        return;
    QSvgRenderer renderer(m_svgFilepath);
    if (!renderer.isValid())
        return;
    QPainter painter(this);
    renderer.render(&painter, QRectF(rect()));
}
