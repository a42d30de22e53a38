#ifndef WIRELESSWGTUI_H
#define WIRELESSWGTUI_H

#include <QWidget>

// Placeholder: being built.
class WirelessWgtUI : public QWidget
{
    Q_OBJECT
public:
    explicit WirelessWgtUI(QWidget *parent = nullptr) : QWidget(parent) {}
};

#endif
