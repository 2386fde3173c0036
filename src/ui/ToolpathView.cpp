#include "ui/ToolpathView.h"

#include "ui/Style.h"
#include "ui/ToolpathRaster.h"

#include <QEvent>
#include <QPainter>

#include <algorithm>

namespace tarnwick::ui {

namespace {

using Vertex = gcode::PathSketch::Vertex;

constexpr qreal margin = 14;
constexpr qreal originSize = 7;

// The path's box together with the origin, so that where the origin lies shows at a glance.
QRectF boundsWithOrigin(const std::vector<Vertex>& vertices) {
    qreal left = 0, right = 0, top = 0, bottom = 0;
    for (const Vertex& vertex : vertices) {
        left = std::min<qreal>(left, vertex.x);
        right = std::max<qreal>(right, vertex.x);
        bottom = std::min<qreal>(bottom, vertex.y);
        top = std::max<qreal>(top, vertex.y);
    }
    return QRectF(QPointF(left, bottom), QPointF(right, top));
}

} // namespace

ToolpathView::ToolpathView(QWidget* parent)
    : QWidget(parent) {
    setMinimumSize(160, 120);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void ToolpathView::setPath(std::vector<gcode::PathSketch::Vertex> vertices) {
    m_vertices = std::move(vertices);
    m_drawing = {};
    update();
}

void ToolpathView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) {
        m_drawing = {};
        update();
    }
    QWidget::changeEvent(event);
}

void ToolpathView::paintEvent(QPaintEvent*) {
    if (m_drawing.deviceIndependentSize() != QSizeF(size()) ||
        m_drawing.devicePixelRatio() != devicePixelRatioF())
        render();
    QPainter(this).drawPixmap(0, 0, m_drawing);
}

void ToolpathView::render() {
    const qreal ratio = devicePixelRatioF();
    const QSize pixels = size() * ratio;
    const QRectF bounds = boundsWithOrigin(m_vertices);
    const QRectF area =
        QRectF(QPointF(0, 0), QSizeF(pixels))
            .adjusted(margin * ratio, margin * ratio, -margin * ratio, -margin * ratio);
    // A path along one axis still gets a scale from the other.
    const qreal span = std::max({bounds.width(), bounds.height(), 1e-6});
    const qreal scale = std::min(area.width() / std::max(bounds.width(), span * 1e-3),
                                 area.height() / std::max(bounds.height(), span * 1e-3));
    // Centred, with y growing upwards as on the machine's table.
    QTransform toPixels;
    toPixels.translate(area.center().x(), area.center().y());
    toPixels.scale(scale, -scale);
    toPixels.translate(-bounds.center().x(), -bounds.center().y());

    m_drawing =
        QPixmap::fromImage(rasteriseToolpath(m_vertices, toPixels, pixels, style::accent(this),
                                             style::withAlpha(style::secondaryText(this), 0.55)));
    m_drawing.setDevicePixelRatio(ratio);

    QPainter painter(&m_drawing);
    painter.setRenderHint(QPainter::Antialiasing, true);
    const QPointF origin = toPixels.map(QPointF(0, 0)) / ratio;
    painter.setPen(QPen(style::orange(), 1.5));
    painter.drawLine(origin - QPointF(originSize, 0), origin + QPointF(originSize, 0));
    painter.drawLine(origin - QPointF(0, originSize), origin + QPointF(0, originSize));
    painter.drawEllipse(origin, originSize / 2, originSize / 2);
}

} // namespace tarnwick::ui
