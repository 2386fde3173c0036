#pragma once

#include "gcode/MachineFit.h"

#include <QString>

#include <variant>

namespace tarnwick::cli {

// "X,Y,Z[,RPM[,TOOLS[,FEED]]]": the travel in mm, then the highest spindle speed, the tool
// changer's positions and the highest feed in mm/min, numbers written as in C; an optional
// field may be left empty. The limits, or the message saying what is wrong with the text.
std::variant<gcode::MachineLimits, QString> parseLimitsOption(const QString& text);

} // namespace tarnwick::cli
