#include "gcode/JobSummary.h"

#include <QCoreApplication>

#include <algorithm>

namespace tarnwick::gcode {

void Extents::include(const Point3& point) {
    min = {std::min(min.x, point.x), std::min(min.y, point.y), std::min(min.z, point.z)};
    max = {std::max(max.x, point.x), std::max(max.y, point.y), std::max(max.z, point.z)};
}

void Extents::include(const Extents& other) {
    include(other.min);
    include(other.max);
}

void Range::include(double value) {
    min = std::min(min, value);
    max = std::max(max, value);
}

bool Warning::makesPartial() const {
    return kind == Kind::Unsupported || kind == Kind::Malformed || kind == Kind::InvalidArc;
}

QString Warning::description() const {
    const auto line_ = QString::number(line);
    switch (kind) {
    case Kind::NoUnits:
        return QCoreApplication::translate(
            "tarnwick::gcode::Warning",
            "The file sets no units (G20 or G21); millimetres are assumed.");
    case Kind::MixedUnits:
        return QCoreApplication::translate("tarnwick::gcode::Warning",
                                           "Line %1 switches between inches and millimetres.")
            .arg(line_);
    case Kind::FeedBeforeFeedRate:
        return QCoreApplication::translate("tarnwick::gcode::Warning",
                                           "Line %1 feeds before any feed rate (F) is set.")
            .arg(line_);
    case Kind::ZeroFeed:
        return QCoreApplication::translate("tarnwick::gcode::Warning",
                                           "Line %1 feeds at a feed rate of zero (F0).")
            .arg(line_);
    case Kind::NegativeFeed:
        return QCoreApplication::translate(
                   "tarnwick::gcode::Warning",
                   "Line %1 sets a negative feed rate (%2), which is left out of the feeds.")
            .arg(line_, word);
    case Kind::CutWithSpindleStopped:
        return QCoreApplication::translate(
                   "tarnwick::gcode::Warning",
                   "Line %1 cuts while the spindle is stopped (no M3 or M4 before it).")
            .arg(line_);
    case Kind::Unsupported:
        return QCoreApplication::translate(
                   "tarnwick::gcode::Warning",
                   "Line %1: %2 is not supported, so the analysis is partial.")
            .arg(line_, word);
    case Kind::Malformed:
        return QCoreApplication::translate(
                   "tarnwick::gcode::Warning",
                   "Line %1 is not understood near \"%2\", so the analysis is partial.")
            .arg(line_, word);
    case Kind::InvalidArc:
        return QCoreApplication::translate(
                   "tarnwick::gcode::Warning",
                   "Line %1 has an arc whose end point does not fit its radius or centre, so "
                   "the analysis is partial.")
            .arg(line_);
    case Kind::MachineCoordinates:
        return QCoreApplication::translate("tarnwick::gcode::Warning",
                                           "Line %1 moves in machine coordinates (%2); that "
                                           "move is not part of the extents.")
            .arg(line_, word);
    case Kind::AfterProgramEnd:
        return QCoreApplication::translate(
                   "tarnwick::gcode::Warning",
                   "Line %1 comes after the program's end (M2 or M30) and is not run.")
            .arg(line_);
    }
    return {};
}

std::optional<Extents> JobSummary::allExtents() const {
    if (!cutting)
        return rapid;
    Extents all = *cutting;
    if (rapid)
        all.include(*rapid);
    return all;
}

} // namespace tarnwick::gcode
