#pragma once

#include <QStyledItemDelegate>

namespace tarnwick::ui {

// Draws one machine of the sidebar: status dot, name, address, and "Busy" when it is busy.
// Names longer than the row give way in the middle; the row never widens the sidebar.
class MachineRowDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    static constexpr int dotSize = 9;
};

} // namespace tarnwick::ui
