#pragma once

#include <QStyledItemDelegate>

namespace tarnwick::ui {

// One pair of the upload queue: the file and machine, a thin progress bar while it has a
// measure, and below it how far it got or how it ended.
class QueueRowDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};

} // namespace tarnwick::ui
