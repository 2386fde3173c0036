#pragma once

#include "gcode/PathSketch.h"
#include "ui/PathColours.h"

#include <QPixmap>
#include <QTransform>
#include <QWidget>

#include <optional>
#include <vector>

namespace tarnwick::ui {

// The heights of the shallowest and the deepest cut, in mm, and whether a legend gives them in
// inches.
struct PathDepths {
    double top = 0;
    double bottom = 0;
    bool inches = false;
};

// The toolpath from above, scaled to fit with its aspect ratio kept and the origin marked, or
// from the front (X–Z) stretched to fill the view: cuts coloured by depth from shallow to deep
// (from above with a legend), rapid moves faint. The wheel or a pinch zooms about the cursor,
// dragging pans, a double click fits the whole path again; so do +, −, 0 and the arrows. The
// drawing is made once per size, palette and view, so painting costs a copy whatever the
// file's size; making it costs the visible path's length in pixels.
class ToolpathView : public QWidget {
    Q_OBJECT

public:
    enum class Projection {
        Top,
        Side
    };
    explicit ToolpathView(Projection projection = Projection::Top, QWidget* parent = nullptr);

    void setPath(std::vector<gcode::PathSketch::Vertex> vertices, const PathDepths& depths = {});

    // Where a point of the path is drawn, in the widget's coordinates, and back.
    QPointF mapFromPath(QPointF point) const;
    QPointF mapToPath(QPointF position) const;

    // Zooms by `factor` keeping the point under `position` where it is.
    void zoomAbout(QPointF position, qreal factor);
    void pan(QPointF offset);
    void fitWhole();

    QSize sizeHint() const override { return {280, 200}; }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    // Path coordinates to the widget's, the whole path fitted, before any zoom or pan.
    QTransform fitted() const;
    void setView(const QTransform& view);
    void render();
    void drawLegend(QPainter& painter, const PathColours& colours) const;

    const Projection m_projection;
    std::vector<gcode::PathSketch::Vertex> m_vertices;
    PathDepths m_depths;
    QRectF m_bounds;
    // Zoom and pan, in the widget's coordinates, after the fit.
    QTransform m_view;
    std::optional<QPointF> m_dragFrom;
    QPixmap m_drawing;
};

} // namespace tarnwick::ui
