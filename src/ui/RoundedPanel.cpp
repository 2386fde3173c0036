#include "ui/RoundedPanel.h"

#include <QPainter>
#include <QPainterPath>

namespace tarnwick::ui {

RoundedPanel::RoundedPanel(qreal radius, ColorSource fill, ColorSource outline, QWidget* parent)
    : QWidget(parent)
    , m_radius(radius)
    , m_fill(std::move(fill))
    , m_outline(std::move(outline)) {}

void RoundedPanel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF area = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QPainterPath path;
    path.addRoundedRect(area, m_radius, m_radius);
    if (m_fill)
        painter.fillPath(path, m_fill(this));
    if (m_outline) {
        painter.setPen(QPen(m_outline(this), 1));
        painter.drawPath(path);
    }
}

} // namespace tarnwick::ui
