#pragma once

#include "gcode/PathSketch.h"

#include <QPixmap>
#include <QWidget>

#include <vector>

namespace tarnwick::ui {

// The toolpath from above, scaled to fit with its aspect ratio kept and the origin marked:
// cuts in the accent colour, rapid moves faint. The drawing is made once per size and palette,
// so painting costs a copy whatever the file's size; making it costs the path's length in
// pixels.
class ToolpathView : public QWidget {
    Q_OBJECT

public:
    explicit ToolpathView(QWidget* parent = nullptr);

    void setPath(std::vector<gcode::PathSketch::Vertex> vertices);

    QSize sizeHint() const override { return {280, 200}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void render();

    std::vector<gcode::PathSketch::Vertex> m_vertices;
    QPixmap m_drawing;
};

} // namespace tarnwick::ui
