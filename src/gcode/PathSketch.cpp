#include "gcode/PathSketch.h"

#include <algorithm>
#include <cmath>

namespace tarnwick::gcode {

namespace {

double distanceSquared(const PathSketch::Vertex& from, const PathSketch::Vertex& to) {
    const double dx = double(to.x) - from.x;
    const double dy = double(to.y) - from.y;
    return dx * dx + dy * dy;
}

// The reduction starts at this fraction of the path's span: a preview is a few hundred pixels.
constexpr double firstStepDivisor = 4096;
constexpr double coarseStepDivisor = 256;

} // namespace

PathSketch::PathSketch(qsizetype budget)
    : m_budget(std::max<qsizetype>(budget, 16)) {
    m_vertices.reserve(size_t(m_budget) + 1);
}

void PathSketch::lineTo(double x, double y, double z, Stroke stroke) {
    add({float(x), float(y), float(z), stroke});
}

void PathSketch::add(const Vertex& vertex) {
    if (m_vertices.empty()) {
        m_vertices.push_back(vertex);
        return;
    }
    if (m_hasPending) {
        // A cut hidden by a point left out still shows as a cut.
        if (mayLeaveOut(m_vertices.back(), m_pending, vertex)) {
            m_pending = {vertex.x, vertex.y, std::min(m_pending.z, vertex.z),
                         std::max(m_pending.stroke, vertex.stroke)};
            return;
        }
        m_vertices.push_back(m_pending);
        if (qsizetype(m_vertices.size()) > m_budget)
            reduce();
    }
    m_pending = vertex;
    m_hasPending = true;
}

bool PathSketch::mayLeaveOut(const Vertex& kept, const Vertex& held, const Vertex& next) const {
    const double step = m_step * m_step;
    return distanceSquared(kept, held) <= step ||
           (m_step > m_coarseStep && distanceSquared(kept, next) <= step);
}

void PathSketch::finish() {
    if (!m_hasPending)
        return;
    m_vertices.push_back(m_pending);
    m_hasPending = false;
    if (qsizetype(m_vertices.size()) > m_budget)
        reduce();
}

void PathSketch::reduce() {
    while (qsizetype(m_vertices.size()) > m_budget / 2) {
        if (m_step > 0) {
            m_step *= 2;
        } else {
            const auto [minX, maxX] =
                std::minmax_element(m_vertices.begin(), m_vertices.end(),
                                    [](const Vertex& a, const Vertex& b) { return a.x < b.x; });
            const auto [minY, maxY] =
                std::minmax_element(m_vertices.begin(), m_vertices.end(),
                                    [](const Vertex& a, const Vertex& b) { return a.y < b.y; });
            const double span = std::max(double(maxX->x) - minX->x, double(maxY->y) - minY->y);
            m_step = span > 0 ? span / firstStepDivisor : 1e-6;
            m_coarseStep = m_step * firstStepDivisor / coarseStepDivisor;
        }
        if (!std::isfinite(m_step)) {
            // Nothing finite is left to merge by: keep where the path starts and ends.
            m_vertices = {m_vertices.front(), m_vertices.back()};
            return;
        }
        std::vector<Vertex> kept;
        kept.reserve(m_vertices.capacity());
        kept.push_back(m_vertices.front());
        Vertex held = m_vertices.front();
        bool holding = false;
        for (size_t index = 1; index < m_vertices.size(); ++index) {
            const Vertex& vertex = m_vertices[index];
            if (holding && mayLeaveOut(kept.back(), held, vertex)) {
                held = {vertex.x, vertex.y, std::min(held.z, vertex.z),
                        std::max(held.stroke, vertex.stroke)};
                continue;
            }
            if (holding)
                kept.push_back(held);
            held = vertex;
            holding = true;
        }
        if (holding)
            kept.push_back(held);
        m_vertices = std::move(kept);
    }
}

} // namespace tarnwick::gcode
