#include "ui/ToolpathView.h"

#include "ui/Style.h"

#include <QEvent>
#include <QPainter>

#include <algorithm>

namespace tarnwick::ui {

namespace {

using Stroke = gcode::PathSketch::Stroke;
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
    m_drawing = QPixmap(size() * devicePixelRatioF());
    m_drawing.setDevicePixelRatio(devicePixelRatioF());
    m_drawing.fill(Qt::transparent);
    QPainter painter(&m_drawing);
    painter.setRenderHint(QPainter::Antialiasing, false);

    const QRectF bounds = boundsWithOrigin(m_vertices);
    const QRectF area = QRectF(rect()).adjusted(margin, margin, -margin, -margin);
    const qreal span = std::max({bounds.width(), bounds.height(), 1e-9});
    const qreal scale = std::min(area.width() / std::max(bounds.width(), span * 1e-3),
                                 area.height() / std::max(bounds.height(), span * 1e-3));
    // Centred, with y growing upwards as on the machine's table.
    const QPointF offset(area.center().x() - bounds.center().x() * scale,
                         area.center().y() + bounds.center().y() * scale);
    const auto map = [&](qreal x, qreal y) {
        return QPointF(offset.x() + x * scale, offset.y() - y * scale);
    };

    const QColor cut = style::accent(this);
    const QColor rapid = style::withAlpha(style::secondaryText(this), 0.55);
    // Consecutive segments of one kind go out as one polyline.
    QPolygonF run;
    Stroke runStroke = Stroke::Rapid;
    const auto flush = [&] {
        if (run.size() > 1) {
            painter.setPen(QPen(runStroke == Stroke::Cut ? cut : rapid, 1));
            painter.drawPolyline(run);
        }
        run.clear();
    };
    for (size_t index = 0; index < m_vertices.size(); ++index) {
        const Vertex& vertex = m_vertices[index];
        const QPointF point = map(vertex.x, vertex.y);
        if (index > 0 && vertex.stroke != runStroke) {
            const QPointF last = run.isEmpty() ? point : run.back();
            flush();
            run << last;
            runStroke = vertex.stroke;
        }
        run << point;
    }
    flush();

    painter.setRenderHint(QPainter::Antialiasing, true);
    const QPointF origin = map(0, 0);
    painter.setPen(QPen(style::orange(), 1.5));
    painter.drawLine(origin - QPointF(originSize, 0), origin + QPointF(originSize, 0));
    painter.drawLine(origin - QPointF(0, originSize), origin + QPointF(0, originSize));
    painter.drawEllipse(origin, originSize / 2, originSize / 2);
}

} // namespace tarnwick::ui
