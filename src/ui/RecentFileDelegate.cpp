#include "ui/RecentFileDelegate.h"

#include "ui/Icons.h"
#include "ui/RecentFilesModel.h"
#include "ui/Style.h"

#include <QPainter>

#include <algorithm>

namespace tarnwick::ui {

namespace {

constexpr int horizontalPadding = 6;
constexpr int verticalPadding = 8;
constexpr int iconSize = 14;
constexpr int gap = 10;

} // namespace

QSize RecentFileDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    const QFontMetrics metrics(style::font(style::TextStyle::Body, option.widget));
    // Width is the view's to give: a row never asks for more.
    return {0, 2 * verticalPadding + std::max(metrics.height(), iconSize) + 1};
}

void RecentFileDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                               const QModelIndex& index) const {
    style::drawRowBackground(painter, option);
    const QWidget* widget = option.widget;

    const QRect area = option.rect.adjusted(horizontalPadding, 0, -horizontalPadding, -1);
    const QColor secondary = style::secondaryText(widget);
    painter->save();
    const qreal ratio = widget ? widget->devicePixelRatioF() : 1.0;
    painter->drawPixmap(QRect(area.left(), area.center().y() - iconSize / 2, iconSize, iconSize),
                        icons::tintedPixmap(QStringLiteral("clock"), secondary, iconSize, ratio));

    const QFont font = style::font(style::TextStyle::Body, widget);
    const QFontMetrics metrics(font);
    painter->setFont(font);
    const QString size = index.data(RecentFilesModel::SizeRole).toString();
    const int sizeWidth = metrics.horizontalAdvance(size);
    painter->setPen(secondary);
    painter->drawText(QRect(area.right() - sizeWidth, area.top(), sizeWidth, area.height()),
                      Qt::AlignRight | Qt::AlignVCenter, size);
    const int nameLeft = area.left() + iconSize + gap;
    const int nameWidth = std::max(0, area.right() - sizeWidth - gap - nameLeft);
    painter->setPen(option.palette.color(QPalette::WindowText));
    painter->drawText(QRect(nameLeft, area.top(), nameWidth, area.height()),
                      Qt::AlignLeft | Qt::AlignVCenter,
                      metrics.elidedText(index.data().toString(), Qt::ElideMiddle, nameWidth));

    if (index.row() + 1 < index.model()->rowCount())
        painter->fillRect(QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1),
                          style::withAlpha(option.palette.color(QPalette::WindowText), 0.12));
    painter->restore();
}

} // namespace tarnwick::ui
