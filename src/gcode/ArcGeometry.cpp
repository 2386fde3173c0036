#include "gcode/ArcGeometry.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tarnwick::gcode {

namespace {

constexpr double twoPi = 2 * std::numbers::pi;
// Below this a swept angle is no sweep at all, which makes an arc back to its start a circle.
constexpr double angularEpsilon = 5e-7;

bool radiiDiffer(double first, double second) {
    const double difference = std::abs(first - second);
    return difference > arcToleranceMm && difference > 0.001 * std::max(first, second);
}

Arc sweepAround(double startA, double startB, double endA, double endB, double centreA,
                double centreB, bool clockwise) {
    const double fromA = startA - centreA;
    const double fromB = startB - centreB;
    const double toA = endA - centreA;
    const double toB = endB - centreB;
    double sweep = std::atan2(fromA * toB - fromB * toA, fromA * toA + fromB * toB);
    if (clockwise && sweep >= -angularEpsilon)
        sweep -= twoPi;
    else if (!clockwise && sweep <= angularEpsilon)
        sweep += twoPi;
    return {centreA, centreB, std::hypot(fromA, fromB), std::atan2(fromB, fromA), sweep};
}

// How far past `from` the angle lies when going round in the arc's direction, in [0, 2pi).
double travelTo(double from, double angle, bool clockwise) {
    double travel = std::fmod(clockwise ? from - angle : angle - from, twoPi);
    return travel < 0 ? travel + twoPi : travel;
}

} // namespace

std::optional<Arc> arcFromCentre(double startA, double startB, double endA, double endB,
                                 double centreA, double centreB, bool clockwise) {
    const double startRadius = std::hypot(startA - centreA, startB - centreB);
    const double endRadius = std::hypot(endA - centreA, endB - centreB);
    if (radiiDiffer(startRadius, endRadius) || !std::isfinite(startRadius + endRadius))
        return std::nullopt;
    return sweepAround(startA, startB, endA, endB, centreA, centreB, clockwise);
}

std::optional<Arc> arcFromRadius(double startA, double startB, double endA, double endB,
                                 double radius, bool clockwise) {
    const double chordA = endA - startA;
    const double chordB = endB - startB;
    const double chord = std::hypot(chordA, chordB);
    const double size = std::abs(radius);
    if (!(chord > 0) || !std::isfinite(chord + radius) ||
        radiiDiffer(size, std::max(size, chord / 2)))
        return std::nullopt;
    // Distance from the chord's middle to the centre, to the chord's left for a short
    // counter-clockwise arc and to its right for a short clockwise one.
    double offset = std::sqrt(std::max(0.0, size * size - chord * chord / 4)) / chord;
    if (clockwise)
        offset = -offset;
    if (radius < 0)
        offset = -offset;
    const double centreA = (startA + endA) / 2 - chordB * offset;
    const double centreB = (startB + endB) / 2 + chordA * offset;
    return sweepAround(startA, startB, endA, endB, centreA, centreB, clockwise);
}

PlaneBounds arcBounds(const Arc& arc, double startA, double startB, double endA, double endB) {
    PlaneBounds bounds{std::min(startA, endA), std::max(startA, endA), std::min(startB, endB),
                       std::max(startB, endB)};
    const bool clockwise = arc.sweep < 0;
    const double sweep = std::abs(arc.sweep);
    for (int quadrant = 0; quadrant < 4; ++quadrant) {
        const double angle = quadrant * std::numbers::pi / 2;
        if (travelTo(arc.startAngle, angle, clockwise) > sweep)
            continue;
        switch (quadrant) {
        case 0:
            bounds.maxA = std::max(bounds.maxA, arc.centreA + arc.radius);
            break;
        case 1:
            bounds.maxB = std::max(bounds.maxB, arc.centreB + arc.radius);
            break;
        case 2:
            bounds.minA = std::min(bounds.minA, arc.centreA - arc.radius);
            break;
        default:
            bounds.minB = std::min(bounds.minB, arc.centreB - arc.radius);
            break;
        }
    }
    return bounds;
}

} // namespace tarnwick::gcode
