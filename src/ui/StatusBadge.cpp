#include "ui/StatusBadge.h"

#include "ui/Formatting.h"
#include "ui/Retranslation.h"
#include "ui/Style.h"

#include <QPainter>
#include <QPainterPath>

namespace tarnwick::ui {

StatusBadge::StatusBadge(Machine::ConnectionStatus status, QWidget* parent)
    : QLabel(parent)
    , m_status(status) {
    QFont badgeFont = style::font(style::TextStyle::Caption, this);
    badgeFont.setWeight(QFont::DemiBold);
    setFont(badgeFont);
    setContentsMargins(9, 5, 9, 5);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    keepTranslated(this, [this] { setStatus(m_status); });
}

void StatusBadge::setStatus(Machine::ConnectionStatus status) {
    m_status = status;
    setText(statusWord(status));
    style::setTextColor(this, style::statusColor(status));
    update();
}

void StatusBadge::paintEvent(QPaintEvent* event) {
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        QPainterPath capsule;
        const qreal radius = height() / 2.0;
        capsule.addRoundedRect(QRectF(rect()), radius, radius);
        painter.fillPath(capsule, style::withAlpha(style::statusColor(m_status), 0.12));
    }
    QLabel::paintEvent(event);
}

StatusDot::StatusDot(Machine::ConnectionStatus status, QWidget* parent)
    : QWidget(parent)
    , m_status(status) {
    setFixedSize(9, 9);
}

QColor StatusDot::color() const {
    return style::statusColor(m_status);
}

void StatusDot::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color());
    painter.drawEllipse(QRectF(rect()));
}

} // namespace tarnwick::ui
