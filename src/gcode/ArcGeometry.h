#pragma once

#include <optional>

namespace tarnwick::gcode {

// A circular arc in its plane's own coordinates (a, b), the plane's normal pointing at the
// viewer: the sweep is positive counter-clockwise, negative clockwise, at most one full turn.
struct Arc {
    double centreA = 0;
    double centreB = 0;
    double radius = 0;
    double startAngle = 0;
    double sweep = 0;

    double angleAt(double fraction) const { return startAngle + sweep * fraction; }
};

struct PlaneBounds {
    double minA, maxA, minB, maxB;
};

// End points closer than this (or a radius mismatch below it) count as equal, in mm; a
// controller tolerates the same before it refuses an arc.
inline constexpr double arcToleranceMm = 0.005;

// An arc from its start and end and its centre. An end equal to the start is a full circle.
// Nothing when the end is not on the start's circle.
std::optional<Arc> arcFromCentre(double startA, double startB, double endA, double endB,
                                 double centreA, double centreB, bool clockwise);

// An arc from its start and end and a radius; a negative radius asks for the arc longer than
// half a turn. Nothing when the end points are equal or further apart than the diameter.
std::optional<Arc> arcFromRadius(double startA, double startB, double endA, double endB,
                                 double radius, bool clockwise);

// The exact box around the arc: its start and end and each quadrant point that it passes.
PlaneBounds arcBounds(const Arc& arc, double startA, double startB, double endA, double endB);

} // namespace tarnwick::gcode
