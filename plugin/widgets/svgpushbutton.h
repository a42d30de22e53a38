#ifndef SVGPUSHBUTTON_H
#define SVGPUSHBUTTON_H

#include <QPushButton>

// Placeholder: being built.
class SvgPushButton : public QPushButton
{
    Q_OBJECT
public:
    explicit SvgPushButton(QWidget *parent = nullptr) : QPushButton(parent) {}
};

#endif
