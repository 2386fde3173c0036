#include "ui/ToolpathRaster.h"

#include <algorithm>
#include <cmath>

namespace tarnwick::ui {

namespace {

enum Pixel : quint8 {
    Empty,
    Rapid,
    Cut
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

} // namespace

QImage rasteriseToolpath(const std::vector<gcode::PathSketch::Vertex>& vertices,
                         const QTransform& toPixels, QSize size, QColor cut, QColor rapid) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    if (size.isEmpty() || vertices.size() < 2)
        return image;
    std::vector<quint8> mask(size_t(size.width()) * size_t(size.height()), Empty);
    const auto pixel = [&](const gcode::PathSketch::Vertex& vertex) {
        const QPointF point = toPixels.map(QPointF(vertex.x, vertex.y));
        // Clamped before rounding, so that a far point is a defined pixel at the edge.
        return QPoint(int(std::lround(std::clamp(point.x(), 0.0, size.width() - 1.0))),
                      int(std::lround(std::clamp(point.y(), 0.0, size.height() - 1.0))));
    };
    QPoint previous = pixel(vertices.front());
    for (size_t index = 1; index < vertices.size(); ++index) {
        const QPoint point = pixel(vertices[index]);
        drawSegment(mask, size.width(), previous, point,
                    vertices[index].stroke == gcode::PathSketch::Stroke::Cut ? Cut : Rapid);
        previous = point;
    }
    const QRgb cutColour = cut.rgba64().premultiplied().toArgb32();
    const QRgb rapidColour = rapid.rgba64().premultiplied().toArgb32();
    for (int y = 0; y < size.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        const quint8* pixels = mask.data() + size_t(y) * size_t(size.width());
        for (int x = 0; x < size.width(); ++x) {
            if (pixels[x] != Empty)
                line[x] = pixels[x] == Cut ? cutColour : rapidColour;
        }
    }
    return image;
}

} // namespace tarnwick::ui
