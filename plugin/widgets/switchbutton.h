#ifndef SWITCHBUTTON_H
#define SWITCHBUTTON_H

#include <QWidget>

// Placeholder: being built.
class SwitchButton : public QWidget
{
    Q_OBJECT
public:
    explicit SwitchButton(QWidget *parent = nullptr) : QWidget(parent) {}
};

#endif
