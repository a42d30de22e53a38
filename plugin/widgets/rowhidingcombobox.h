#ifndef ROWHIDINGCOMBOBOX_H
#define ROWHIDINGCOMBOBOX_H

#include <QComboBox>
#include <QSet>

// A combo box that builds its popup only when the operator opens it, and
// whose rows can be hidden meanwhile. A QComboBox builds its popup as soon
// as anyone asks for its view, and also when it is moved into a window
// with a style sheet; Qt's style sheet engine keeps rules for every popup
// it has styled even after it is gone, so a page built at every opening
// of the window would grow the host each time. The hidden rows are put on
// the view when the popup opens. Give it a fixed size: its size hint is not
// recomputed for a style or font change that comes before the popup exists.
class RowHidingComboBox : public QComboBox
{
    Q_OBJECT

public:
    explicit RowHidingComboBox(QWidget *parent = nullptr);

    void setRowHidden(int row, bool hidden);
    bool isRowHidden(int row) const { return m_hidden.contains(row); }

    void showPopup() override;

protected:
    void changeEvent(QEvent *event) override;

private:
    QSet<int> m_hidden;
    bool m_popupBuilt = false;
};

#endif // ROWHIDINGCOMBOBOX_H
