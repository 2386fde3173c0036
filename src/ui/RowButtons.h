#pragma once

#include <QListView>
#include <QStyledItemDelegate>

namespace tarnwick::ui {

// A button inside each row of a list, acting on that row alone with one click, or with the
// keyboard: Tab reaches the buttons in the order of the rows. The model says what each row's
// button does in words (`textRole`, empty for a row without one) and, for screen readers, in a
// whole sentence (`accessibleNameRole`).
class RowButtons : public QObject {
    Q_OBJECT

public:
    RowButtons(QListView* list, int textRole, int accessibleNameRole);

Q_SIGNALS:
    void clicked(int row);

private:
    void placeButtons();
    void showButtons(int first, int last);

    QListView* m_list;
    const int m_textRole;
    const int m_accessibleNameRole;
};

// A list whose rows have buttons: the arrow keys move through the rows and stay in the list,
// where a plain list would hand the focus to the button of each row it reaches.
class RowButtonListView : public QListView {
    Q_OBJECT

public:
    using QListView::QListView;

protected:
    bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
};

// Draws a row as the base delegate does in the room left of its button, and puts the button at
// the right end of the row, centred in its height. Rows are never lower than a button.
class RowButtonDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    RowButtonDelegate(int textRole, QObject* parent);

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;

protected:
    // The part of the row that the button leaves to the row's own content.
    QRect contentRect(const QStyleOptionViewItem& option, const QModelIndex& index) const;
    // The height of a button in the row's font, and the margin kept around it.
    static int buttonHeight(const QStyleOptionViewItem& option);
    static constexpr int buttonMargin = 6;

private:
    const int m_textRole;
};

} // namespace tarnwick::ui
