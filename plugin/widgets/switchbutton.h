#ifndef SWITCHBUTTON_H
#define SWITCHBUTTON_H

#include <QColor>
#include <QString>
#include <QWidget>

class QTimer;

// The on/off switch of the network pages: a pill-shaped track with a round
// knob that slides to the other end when touched. Only a touch reports the
// new state; pages set the state they read from the device with setChecked,
// which stays silent so that it cannot echo back into the device.
class SwitchButton : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int space READ space WRITE setSpace)
    Q_PROPERTY(int radius READ radius WRITE setRadius)
    Q_PROPERTY(bool checked READ checked WRITE setChecked)
    Q_PROPERTY(bool showText READ showText WRITE setShowText)
    Q_PROPERTY(bool showCircle READ showCircle WRITE setShowCircle)
    Q_PROPERTY(bool animation READ animation WRITE setAnimation)
    Q_PROPERTY(QColor bgColorOn READ bgColorOn WRITE setBgColorOn)
    Q_PROPERTY(QColor bgColorOff READ bgColorOff WRITE setBgColorOff)
    Q_PROPERTY(QColor sliderColorOn READ sliderColorOn WRITE setSliderColorOn)
    Q_PROPERTY(QColor sliderColorOff READ sliderColorOff WRITE setSliderColorOff)
    Q_PROPERTY(QColor textColor READ textColor WRITE setTextColor)
    Q_PROPERTY(QString textOn READ textOn WRITE setTextOn)
    Q_PROPERTY(QString textOff READ textOff WRITE setTextOff)

public:
    explicit SwitchButton(QWidget *parent = nullptr);

    int space() const { return m_space; }
    int radius() const { return m_radius; }
    bool checked() const { return m_checked; }
    bool showText() const { return m_showText; }
    bool showCircle() const { return m_showCircle; }
    bool animation() const { return m_animation; }
    QColor bgColorOn() const { return m_bgColorOn; }
    QColor bgColorOff() const { return m_bgColorOff; }
    QColor sliderColorOn() const { return m_sliderColorOn; }
    QColor sliderColorOff() const { return m_sliderColorOff; }
    QColor textColor() const { return m_textColor; }
    QString textOn() const { return m_textOn; }
    QString textOff() const { return m_textOff; }
    int step() const { return m_step; }
    int startX() const { return m_startX; }
    int endX() const { return m_endX; }

signals:
    // Only a touch emits this, with the state the switch now has.
    void statusChanged(bool checked);

public slots:
    void setSpace(int space);
    void setRadius(int radius);
    void setChecked(bool checked);
    void setShowText(bool show);
    void setShowCircle(bool show);
    void setAnimation(bool on);
    void setBgColorOn(const QColor &color);
    void setBgColorOff(const QColor &color);
    void setSliderColorOn(const QColor &color);
    void setSliderColorOff(const QColor &color);
    void setTextColor(const QColor &color);
    void setTextOn(const QString &text);
    void setTextOff(const QString &text);

    // One animation tick: the knob moves one step towards its end, or is
    // put on it once it got there (or past it).
    void UpdateValue();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void aimKnob();
    void drawTrack(QPainter *painter);
    void drawKnob(QPainter *painter);

    int m_space;
    int m_radius;
    bool m_checked;
    bool m_showText;
    bool m_showCircle;
    bool m_animation;
    QColor m_bgColorOn;
    QColor m_bgColorOff;
    QColor m_sliderColorOn;
    QColor m_sliderColorOff;
    QColor m_textColor;
    QString m_textOn;
    QString m_textOff;
    QTimer *m_timer;
    int m_step;
    int m_startX;
    int m_endX;
};

#endif // SWITCHBUTTON_H
