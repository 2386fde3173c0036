#include "ui/ToolpathRaster.h"

#include <algorithm>
#include <cmath>

namespace tarnwick::ui {

namespace {

// A pixel's value in the mask: empty, a rapid move, or a cut of a depth level from the
// shallowest on.
enum Pixel : quint8 {
    Empty,
    Rapid,
    FirstCut
};

// Steps one pixel at a time along the longer axis in 16.16 fixed point; both ends are inside
// the mask, so every point between them is too.
void drawSegment(std::vector<quint8>& mask, int width, QPoint from, QPoint to, quint8 value) {
    const int dx = to.x() - from.x();
    const int dy = to.y() - from.y();
    const int steps = std::max(std::abs(dx), std::abs(dy));
    const qint64 stepX = steps ? (qint64(dx) << 16) / steps : 0;
    const qint64 stepY = steps ? (qint64(dy) << 16) / steps : 0;
    qint64 x = (qint64(from.x()) << 16) + (1 << 15);
    qint64 y = (qint64(from.y()) << 16) + (1 << 15);
    quint8* const pixels = mask.data();
    for (int step = 0; step <= steps; ++step) {
        quint8& pixel = pixels[size_t(y >> 16) * size_t(width) + size_t(x >> 16)];
        pixel = std::max(pixel, value);
        x += stepX;
        y += stepY;
    }
}

// Cuts the segment to the rectangle [0, right] × [0, bottom] (Liang–Barsky); false when nothing
// of it is inside. A zoomed drawing shows only part of the path, and a segment cut by hand
// keeps its direction where clamping its ends would not.
bool clip(QPointF& from, QPointF& to, double right, double bottom) {
    if (!std::isfinite(from.x() + from.y() + to.x() + to.y()))
        return false;
    const double dx = to.x() - from.x();
    const double dy = to.y() - from.y();
    double enter = 0;
    double leave = 1;
    const double directions[] = {-dx, dx, -dy, dy};
    const double distances[] = {from.x(), right - from.x(), from.y(), bottom - from.y()};
    for (int side = 0; side < 4; ++side) {
        const double direction = directions[side];
        const double distance = distances[side];
        if (direction == 0) {
            if (distance < 0)
                return false;
            continue;
        }
        const double at = distance / direction;
        if (direction < 0)
            enter = std::max(enter, at);
        else
            leave = std::min(leave, at);
        if (enter > leave)
            return false;
    }
    const QPointF start = from;
    from = start + QPointF(dx, dy) * enter;
    to = start + QPointF(dx, dy) * leave;
    return true;
}

} // namespace

QImage rasteriseToolpath(const std::vector<gcode::PathSketch::Vertex>& vertices,
                         const QTransform& toPixels, QSize size, const PathColours& colours,
                         double top, double bottom) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    if (size.isEmpty() || vertices.size() < 2)
        return image;
    std::vector<quint8> mask(size_t(size.width()) * size_t(size.height()), Empty);
    const double lastColumn = size.width() - 1.0;
    const double lastRow = size.height() - 1.0;
    const auto pixel = [](QPointF point) {
        return QPoint(int(std::lround(point.x())), int(std::lround(point.y())));
    };
    constexpr int deepest = PathColours::depthLevels - 1;
    const double depthScale = top > bottom ? deepest / (top - bottom) : 0;
    const auto value = [&](const gcode::PathSketch::Vertex& vertex) {
        if (vertex.stroke != gcode::PathSketch::Stroke::Cut)
            return quint8(Rapid);
        const double level = std::clamp((top - vertex.z) * depthScale, 0.0, double(deepest));
        return quint8(FirstCut + (std::isfinite(level) ? std::lround(level) : 0));
    };
    QPointF previous = toPixels.map(QPointF(vertices.front().x, vertices.front().y));
    for (size_t index = 1; index < vertices.size(); ++index) {
        const QPointF point = toPixels.map(QPointF(vertices[index].x, vertices[index].y));
        QPointF from = previous;
        QPointF to = point;
        previous = point;
        if (!clip(from, to, lastColumn, lastRow))
            continue;
        drawSegment(mask, size.width(), pixel(from), pixel(to), value(vertices[index]));
    }
    QRgb palette[FirstCut + PathColours::depthLevels] = {0, colours.rapid().rgba()};
    for (int level = 0; level <= deepest; ++level)
        palette[FirstCut + level] = colours.depth(level / double(deepest)).rgba();
    for (int y = 0; y < size.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        const quint8* pixels = mask.data() + size_t(y) * size_t(size.width());
        for (int x = 0; x < size.width(); ++x) {
            if (pixels[x] != Empty)
                line[x] = palette[pixels[x]];
        }
    }
    return image;
}

} // namespace tarnwick::ui
