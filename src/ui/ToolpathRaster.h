#pragma once

#include "gcode/PathSketch.h"
#include "ui/PathColours.h"

#include <QColor>
#include <QImage>
#include <QTransform>

#include <vector>

namespace tarnwick::ui {

// The path as the pixels show it: each segment sets the pixels it crosses in a mask, cuts
// over rapid moves and deeper cuts over shallower ones, and the mask becomes one image. A cut
// takes the colour of its depth between `top` and `bottom` (heights in mm). Its cost is the
// visible path's length in pixels plus one pass over the image, however many times the path
// goes over the same place, where a painter would blend every line.
QImage rasteriseToolpath(const std::vector<gcode::PathSketch::Vertex>& vertices,
                         const QTransform& toPixels, QSize size, const PathColours& colours,
                         double top, double bottom);

} // namespace tarnwick::ui
