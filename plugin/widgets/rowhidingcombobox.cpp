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
    // QComboBox answers a style or font change by building its popup to
    // pass the change on; without a popup there is nothing to pass it to
    // yet, and the popup takes the style and font in effect when it is built.
    const bool styleOrFont = event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange;
    if (styleOrFont && !m_popupBuilt) {
        QWidget::changeEvent(event);
        return;
    }
    QComboBox::changeEvent(event);
}

void RowHidingComboBox::showPopup()
{
    const bool building = !m_popupBuilt;
    m_popupBuilt = true;
    // The popup is a window of its own and inherits no font.
    if (building)
        view()->window()->setFont(font());
    if (auto *list = qobject_cast<QListView *>(view())) {
        for (int row = 0; row < count(); ++row)
            list->setRowHidden(row, m_hidden.contains(row));
    }
    QComboBox::showPopup();
}
