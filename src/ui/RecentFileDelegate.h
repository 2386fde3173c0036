#pragma once

#include <QStyledItemDelegate>

namespace tarnwick::ui {

// Draws one recent file: a clock, the name (elided in the middle, so that the extension shows)
// and the size, with a divider below every row but the last.
class RecentFileDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace tarnwick::ui
