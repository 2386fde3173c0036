#include "ui/ToolpathView.h"

#include "ui/Style.h"
#include "ui/ToolpathRaster.h"

#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace tarnwick::ui {

namespace {

using Vertex = gcode::PathSketch::Vertex;

constexpr qreal margin = 14;
constexpr qreal originSize = 7;
// From the whole path to a detail of a thousandth of it, and a little room around the whole.
constexpr qreal leastZoom = 0.5;
constexpr qreal mostZoom = 1000;
constexpr qreal keyZoom = 1.25;
constexpr qreal keyPanFraction = 0.1;
// One notch of a wheel (120 eighths of a degree) zooms by about a fifth.
constexpr qreal zoomPerEighthDegree = 1.0015;

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
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::OpenHandCursor);
    setAccessibleName(tr("Toolpath"));
    setToolTip(tr("Zoom with the wheel, +, − or a pinch; drag or use the arrows to move; "
                  "double-click or press 0 to see the whole job."));
}

void ToolpathView::setPath(std::vector<gcode::PathSketch::Vertex> vertices) {
    m_vertices = std::move(vertices);
    m_bounds = boundsWithOrigin(m_vertices);
    m_view = {};
    m_drawing = {};
    update();
}

QTransform ToolpathView::fitted() const {
    const QRectF area = QRectF(rect()).adjusted(margin, margin, -margin, -margin);
    // A path along one axis still gets a scale from the other.
    const qreal span = std::max({m_bounds.width(), m_bounds.height(), 1e-6});
    const qreal scale = std::min(area.width() / std::max(m_bounds.width(), span * 1e-3),
                                 area.height() / std::max(m_bounds.height(), span * 1e-3));
    // Centred, with y growing upwards as on the machine's table.
    QTransform toWidget;
    toWidget.translate(area.center().x(), area.center().y());
    toWidget.scale(scale, -scale);
    toWidget.translate(-m_bounds.center().x(), -m_bounds.center().y());
    return toWidget;
}

QPointF ToolpathView::mapFromPath(QPointF point) const {
    return (fitted() * m_view).map(point);
}

QPointF ToolpathView::mapToPath(QPointF position) const {
    return (fitted() * m_view).inverted().map(position);
}

void ToolpathView::zoomAbout(QPointF position, qreal factor) {
    const qreal zoom = std::clamp(m_view.m11() * factor, leastZoom, mostZoom);
    factor = zoom / m_view.m11();
    setView(m_view * QTransform::fromTranslate(-position.x(), -position.y()) *
            QTransform::fromScale(factor, factor) *
            QTransform::fromTranslate(position.x(), position.y()));
}

void ToolpathView::pan(QPointF offset) {
    setView(m_view * QTransform::fromTranslate(offset.x(), offset.y()));
}

void ToolpathView::fitWhole() {
    setView({});
}

void ToolpathView::setView(const QTransform& view) {
    if (view == m_view)
        return;
    m_view = view;
    m_drawing = {};
    update();
}

bool ToolpathView::event(QEvent* event) {
    if (event->type() == QEvent::NativeGesture) {
        const auto* gesture = static_cast<QNativeGestureEvent*>(event);
        if (gesture->gestureType() == Qt::ZoomNativeGesture) {
            zoomAbout(gesture->position(), 1 + gesture->value());
            return true;
        }
    }
    return QWidget::event(event);
}

void ToolpathView::wheelEvent(QWheelEvent* event) {
    zoomAbout(event->position(), std::pow(zoomPerEighthDegree, event->angleDelta().y()));
    event->accept();
}

void ToolpathView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return QWidget::mousePressEvent(event);
    m_dragFrom = event->position();
    setCursor(Qt::ClosedHandCursor);
}

void ToolpathView::mouseMoveEvent(QMouseEvent* event) {
    if (!m_dragFrom)
        return QWidget::mouseMoveEvent(event);
    pan(event->position() - *m_dragFrom);
    m_dragFrom = event->position();
}

void ToolpathView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return QWidget::mouseReleaseEvent(event);
    m_dragFrom.reset();
    setCursor(Qt::OpenHandCursor);
}

void ToolpathView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return QWidget::mouseDoubleClickEvent(event);
    fitWhole();
}

void ToolpathView::keyPressEvent(QKeyEvent* event) {
    const QPointF centre = QRectF(rect()).center();
    const qreal stepX = width() * keyPanFraction;
    const qreal stepY = height() * keyPanFraction;
    switch (event->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        zoomAbout(centre, keyZoom);
        break;
    case Qt::Key_Minus:
        zoomAbout(centre, 1 / keyZoom);
        break;
    case Qt::Key_0:
        fitWhole();
        break;
    // An arrow moves the view, so the drawing goes the other way.
    case Qt::Key_Left:
        pan({stepX, 0});
        break;
    case Qt::Key_Right:
        pan({-stepX, 0});
        break;
    case Qt::Key_Up:
        pan({0, stepY});
        break;
    case Qt::Key_Down:
        pan({0, -stepY});
        break;
    default:
        return QWidget::keyPressEvent(event);
    }
    event->accept();
}

void ToolpathView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) {
        m_drawing = {};
        update();
    }
    QWidget::changeEvent(event);
}

void ToolpathView::resizeEvent(QResizeEvent* event) {
    m_drawing = {};
    QWidget::resizeEvent(event);
}

void ToolpathView::paintEvent(QPaintEvent*) {
    if (m_drawing.isNull() || m_drawing.devicePixelRatio() != devicePixelRatioF())
        render();
    QPainter painter(this);
    painter.drawPixmap(0, 0, m_drawing);
    if (hasFocus()) {
        painter.setPen(QPen(style::accent(this), 2));
        painter.drawRect(QRectF(rect()).adjusted(1, 1, -1, -1));
    }
}

void ToolpathView::render() {
    const qreal ratio = devicePixelRatioF();
    const QTransform toWidget = fitted() * m_view;
    m_drawing = QPixmap::fromImage(rasteriseToolpath(
        m_vertices, toWidget * QTransform::fromScale(ratio, ratio), size() * ratio,
        style::accent(this), style::withAlpha(style::secondaryText(this), 0.55)));
    m_drawing.setDevicePixelRatio(ratio);

    QPainter painter(&m_drawing);
    painter.setRenderHint(QPainter::Antialiasing, true);
    const QPointF origin = toWidget.map(QPointF(0, 0));
    painter.setPen(QPen(style::orange(), 1.5));
    painter.drawLine(origin - QPointF(originSize, 0), origin + QPointF(originSize, 0));
    painter.drawLine(origin - QPointF(0, originSize), origin + QPointF(0, originSize));
    painter.drawEllipse(origin, originSize / 2, originSize / 2);
}

} // namespace tarnwick::ui
