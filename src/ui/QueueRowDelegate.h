#pragma once

#include "ui/RowButtons.h"

namespace tarnwick::ui {

// One pair of the upload queue: the file and machine, a thin progress bar while it has a
// measure, and below it how far it got or how it ended; its own button on the right.
class QueueRowDelegate : public RowButtonDelegate {
    Q_OBJECT

public:
    explicit QueueRowDelegate(QObject* parent);

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};

} // namespace tarnwick::ui
