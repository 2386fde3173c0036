#include "ui/ToolpathView.h"

#include "gcode/JobSummary.h"
#include "ui/Retranslation.h"
#include "ui/Style.h"
#include "ui/ToolpathRaster.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QLinearGradient>
#include <QLocale>
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

ToolpathView::ToolpathView(Projection projection, QWidget* parent)
    : QWidget(parent)
    , m_projection(projection) {
    setMinimumSize(160, projection == Projection::Top ? 120 : 60);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::OpenHandCursor);
    keepTranslated(this, [this] {
        setAccessibleName(m_projection == Projection::Top ? tr("Toolpath from above")
                                                          : tr("Toolpath from the front"));
        setToolTip(tr("Zoom with the wheel, +, − or a pinch; drag or use the arrows to move; "
                      "double-click or press 0 to see the whole job."));
    });
}

void ToolpathView::setPath(std::vector<gcode::PathSketch::Vertex> vertices,
                           const PathDepths& depths) {
    m_vertices = std::move(vertices);
    m_depths = depths;
    m_bounds = boundsWithOrigin(m_vertices);
    m_view = {};
    m_drawing = {};
    update();
}

QTransform ToolpathView::fitted() const {
    const QRectF area = QRectF(rect()).adjusted(margin, margin, -margin, -margin);
    // A path along one axis still gets a scale from the other.
    const qreal span = std::max({m_bounds.width(), m_bounds.height(), 1e-6});
    const qreal scaleX = area.width() / std::max(m_bounds.width(), span * 1e-3);
    const qreal scaleY = area.height() / std::max(m_bounds.height(), span * 1e-3);
    // A side view is mostly much wider than deep: its depth is stretched to be seen.
    const qreal scale = std::min(scaleX, scaleY);
    const bool stretched = m_projection == Projection::Side;
    // Centred, with y growing upwards as on the machine's table.
    QTransform toWidget;
    toWidget.translate(area.center().x(), area.center().y());
    toWidget.scale(stretched ? scaleX : scale, -(stretched ? scaleY : scale));
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
    // The drawing holds the legend's numbers and unit, which are written in the language.
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange ||
        event->type() == QEvent::LanguageChange) {
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
    const PathColours colours(style::accent(this), style::secondaryText(this),
                              style::panelFill(this));
    m_drawing = QPixmap::fromImage(
        rasteriseToolpath(m_vertices, toWidget * QTransform::fromScale(ratio, ratio),
                          size() * ratio, colours, m_depths.top, m_depths.bottom));
    m_drawing.setDevicePixelRatio(ratio);

    QPainter painter(&m_drawing);
    painter.setRenderHint(QPainter::Antialiasing, true);
    const QPointF origin = toWidget.map(QPointF(0, 0));
    painter.setPen(QPen(style::orange(), 1.5));
    painter.drawLine(origin - QPointF(originSize, 0), origin + QPointF(originSize, 0));
    painter.drawLine(origin - QPointF(0, originSize), origin + QPointF(0, originSize));
    painter.drawEllipse(origin, originSize / 2, originSize / 2);
    if (m_projection == Projection::Top && m_depths.top > m_depths.bottom)
        drawLegend(painter, colours);
}

// In the corner: the shallowest cut's height, the scale of colours, the deepest cut's.
void ToolpathView::drawLegend(QPainter& painter, const PathColours& colours) const {
    const QLocale locale;
    const auto level = [&](double mm) {
        return m_depths.inches ? locale.toString(mm / gcode::mmPerInch, 'f', 3)
                               : locale.toString(mm, 'f', 1);
    };
    const QString shallow = level(m_depths.top);
    //: A height and its unit, at the deep end of the depth legend.
    const QString deep =
        tr("%1 %2").arg(level(m_depths.bottom), m_depths.inches ? tr("in") : tr("mm"));
    painter.setFont(style::font(style::TextStyle::Caption, this));
    const QFontMetricsF metrics(painter.font());
    const qreal barWidth = 64;
    const qreal barHeight = 6;
    const qreal gap = 6;
    const qreal textHeight = metrics.height();
    const qreal total =
        metrics.horizontalAdvance(shallow) + gap + barWidth + gap + metrics.horizontalAdvance(deep);
    QPointF at(width() - 6 - total, height() - 6 - textHeight);
    painter.fillRect(QRectF(at - QPointF(4, 2), QSizeF(total + 8, textHeight + 4)),
                     style::withAlpha(colours.background(), 0.85));
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(QRectF(at, QSizeF(metrics.horizontalAdvance(shallow), textHeight)),
                     Qt::AlignVCenter, shallow);
    at.rx() += metrics.horizontalAdvance(shallow) + gap;
    QLinearGradient scale(at, at + QPointF(barWidth, 0));
    for (const double stop : {0.0, 0.5, 1.0})
        scale.setColorAt(stop, colours.depth(stop));
    painter.fillRect(
        QRectF(at + QPointF(0, (textHeight - barHeight) / 2), QSizeF(barWidth, barHeight)), scale);
    at.rx() += barWidth + gap;
    painter.drawText(QRectF(at, QSizeF(metrics.horizontalAdvance(deep) + 1, textHeight)),
                     Qt::AlignVCenter, deep);
}

} // namespace tarnwick::ui
