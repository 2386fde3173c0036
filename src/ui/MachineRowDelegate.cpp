#include "ui/MachineRowDelegate.h"

#include "app/Machine.h"
#include "ui/MachineListModel.h"
#include "ui/Style.h"

#include <QCoreApplication>
#include <QPainter>

namespace tarnwick::ui {

namespace {

constexpr int horizontalPadding = 8;
constexpr int verticalPadding = 4;
constexpr int dotGap = 10;
constexpr int lineSpacing = 2;

QString busyWord() {
    return QCoreApplication::translate("tarnwick::ui::MachineRowDelegate", "Busy");
}

} // namespace

QSize MachineRowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    const QFontMetrics name(style::font(style::TextStyle::Body, option.widget));
    const QFontMetrics address(style::monospaced(style::TextStyle::Caption, option.widget));
    // Width is the view's to give: a row never asks for more.
    return {0, 2 * verticalPadding + name.height() + lineSpacing + address.height() + 8};
}

void MachineRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                               const QModelIndex& index) const {
    style::drawRowBackground(painter, option);
    const QWidget* widget = option.widget;

    const auto status = Machine::ConnectionStatus(index.data(MachineListModel::StatusRole).toInt());
    const QRect area = option.rect.adjusted(horizontalPadding, verticalPadding + 4,
                                            -horizontalPadding, -verticalPadding - 4);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);

    const QRect dot(area.left(), area.center().y() - dotSize / 2, dotSize, dotSize);
    painter->setPen(Qt::NoPen);
    painter->setBrush(style::statusColor(status));
    painter->drawEllipse(QRectF(dot));

    int right = area.right();
    if (index.data(MachineListModel::BusyRole).toBool()) {
        const QFont caption = style::font(style::TextStyle::Caption, widget);
        const int busyWidth = QFontMetrics(caption).horizontalAdvance(busyWord());
        painter->setFont(caption);
        painter->setPen(style::orange());
        painter->drawText(QRect(right - busyWidth, area.top(), busyWidth, area.height()),
                          Qt::AlignRight | Qt::AlignVCenter, busyWord());
        right -= busyWidth + dotGap;
    }

    const int textLeft = dot.right() + dotGap;
    const int textWidth = std::max(0, right - textLeft);
    const QFont nameFont = style::font(style::TextStyle::Body, widget);
    const QFont addressFont = style::monospaced(style::TextStyle::Caption, widget);
    const QFontMetrics nameMetrics(nameFont);
    const QFontMetrics addressMetrics(addressFont);
    const int top =
        area.center().y() - (nameMetrics.height() + lineSpacing + addressMetrics.height()) / 2;
    const QPalette& palette = option.palette;

    painter->setFont(nameFont);
    painter->setPen(palette.color(QPalette::WindowText));
    painter->drawText(
        QRect(textLeft, top, textWidth, nameMetrics.height()), Qt::AlignLeft | Qt::AlignVCenter,
        nameMetrics.elidedText(index.data(Qt::DisplayRole).toString(), Qt::ElideMiddle, textWidth));
    painter->setFont(addressFont);
    painter->setPen(style::secondaryText(widget));
    painter->drawText(
        QRect(textLeft, top + nameMetrics.height() + lineSpacing, textWidth,
              addressMetrics.height()),
        Qt::AlignLeft | Qt::AlignVCenter,
        addressMetrics.elidedText(index.data(MachineListModel::AddressRole).toString(),
                                  Qt::ElideRight, textWidth));
    painter->restore();
}

} // namespace tarnwick::ui
