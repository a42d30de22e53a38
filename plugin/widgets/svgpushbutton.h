#ifndef SVGPUSHBUTTON_H
#define SVGPUSHBUTTON_H

#include <QPushButton>
#include <QString>

// A push button that is nothing but its SVG picture, scaled to the whole
// button: no frame, no text, no pressed look. Without a picture it is
// invisible but still takes touches.
class SvgPushButton : public QPushButton
{
    Q_OBJECT

public:
    explicit SvgPushButton(QWidget *parent = nullptr);

    void setSvgFilepath(QString path);
    QString svgFilepath() const { return m_svgFilepath; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_svgFilepath;
};

#endif // SVGPUSHBUTTON_H
