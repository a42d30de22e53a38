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
    // takes the style in effect when it is built. The same holds for a font
    // change, which a form sends when a scroll area takes in its contents.
    const bool restyle = event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange;
    if (restyle && !m_popupBuilt) {
        QWidget::changeEvent(event);
        return;
    }
    QComboBox::changeEvent(event);
}

void RowHidingComboBox::showPopup()
{
    if (!m_popupBuilt) {
        m_popupBuilt = true;
        // Font changes were not passed on while there was no popup; the
        // popup is a window of its own and inherits nothing.
        QWidget *list = view();
        if (QWidget *container = list->parentWidget())
            container->setFont(font());
        list->setFont(font());
    }
    if (auto *list = qobject_cast<QListView *>(view())) {
        for (int row = 0; row < count(); ++row)
            list->setRowHidden(row, m_hidden.contains(row));
    }
    QComboBox::showPopup();
}
