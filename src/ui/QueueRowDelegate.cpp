#include "ui/QueueRowDelegate.h"

#include "ui/QueueListModel.h"
#include "ui/Style.h"

#include <QPainter>

namespace tarnwick::ui {

namespace {

constexpr int padding = 8;
constexpr int barHeight = 4;
constexpr int gap = 4;

} // namespace

QueueRowDelegate::QueueRowDelegate(QObject* parent)
    : RowButtonDelegate(QueueListModel::ActionRole, parent) {}

QSize QueueRowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    const QFontMetrics title(style::font(style::TextStyle::Headline, option.widget));
    const QFontMetrics detail(style::font(style::TextStyle::Callout, option.widget));
    return {0, std::max(2 * padding + title.height() + 2 * gap + barHeight + detail.height(),
                        buttonHeight(option) + 2 * buttonMargin)};
}

void QueueRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const {
    style::drawRowBackground(painter, option);
    const QWidget* widget = option.widget;

    painter->save();
    QRect area = contentRect(option, index).adjusted(padding, padding, -padding, -padding);
    const QFont titleFont = style::font(style::TextStyle::Headline, widget);
    const QFontMetrics titleMetrics(titleFont);
    painter->setFont(titleFont);
    painter->setPen(option.palette.color(QPalette::WindowText));
    painter->drawText(QRect(area.left(), area.top(), area.width(), titleMetrics.height()),
                      Qt::AlignLeft | Qt::AlignVCenter,
                      titleMetrics.elidedText(index.data(QueueListModel::TitleRole).toString(),
                                              Qt::ElideMiddle, area.width()));
    area.setTop(area.top() + titleMetrics.height() + gap);

    const double fraction = index.data(QueueListModel::FractionRole).toDouble();
    if (fraction >= 0) {
        const QRect track(area.left(), area.top(), area.width(), barHeight);
        painter->setPen(Qt::NoPen);
        painter->setBrush(style::withAlpha(option.palette.color(QPalette::WindowText), 0.12));
        painter->drawRoundedRect(track, 2, 2);
        painter->setBrush(fraction >= 1 ? style::green() : style::accent(widget));
        painter->drawRoundedRect(QRect(track.left(), track.top(),
                                       int(track.width() * std::min(fraction, 1.0)), barHeight),
                                 2, 2);
    }
    area.setTop(area.top() + barHeight + gap);

    const QFont detailFont = style::font(style::TextStyle::Callout, widget);
    painter->setFont(detailFont);
    painter->setPen(index.data(QueueListModel::FailedRole).toBool()
                        ? style::statusColor(Machine::ConnectionStatus::Unavailable)
                        : style::secondaryText(widget));
    painter->drawText(area, Qt::AlignLeft | Qt::AlignTop,
                      QFontMetrics(detailFont)
                          .elidedText(index.data(QueueListModel::DetailRole).toString(),
                                      Qt::ElideRight, area.width()));
    painter->restore();
}

} // namespace tarnwick::ui
