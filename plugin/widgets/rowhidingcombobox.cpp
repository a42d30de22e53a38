#include "rowhidingcombobox.h"

#include <QEvent>
#include <QListView>

RowHidingComboBox::RowHidingComboBox(QWidget *parent)
    : QComboBox(parent)
{
}

void RowHidingComboBox::setRowHidden(int row, bool hidden)
{
    if (hidden)
        m_hidden.insert(row);
    else
        m_hidden.remove(row);
}

void RowHidingComboBox::changeEvent(QEvent *event)
{
    // QComboBox answers a style change by building its popup to restyle
    // it; without a popup there is nothing to restyle yet, and the popup
    // takes the style in effect when it is built.
    if (event->type() == QEvent::StyleChange && !m_popupBuilt) {
        QWidget::changeEvent(event);
        return;
    }
    QComboBox::changeEvent(event);
}

void RowHidingComboBox::showPopup()
{
    m_popupBuilt = true;
    if (auto *list = qobject_cast<QListView *>(view())) {
        for (int row = 0; row < count(); ++row)
            list->setRowHidden(row, m_hidden.contains(row));
    }
    QComboBox::showPopup();
}
