#ifndef IPLINEEDIT_H
#define IPLINEEDIT_H

#include <QWidget>

// Placeholder: being built.
class IPLineEdit : public QWidget
{
    Q_OBJECT
public:
    explicit IPLineEdit(QWidget *parent = nullptr) : QWidget(parent) {}
};

#endif
