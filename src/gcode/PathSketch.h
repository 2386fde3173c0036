#pragma once

#include <QtGlobal>

#include <vector>

namespace tarnwick::gcode {

// The toolpath seen from one side (from above: x and y), reduced as it grows so that it never
// holds more than its budget of vertices: a point within the current step of the last one kept
// is left out, and the step doubles whenever the budget fills. What is lost is finer than a
// drawing of the whole path could show, turning points included. Each vertex also carries the
// height (z) it stands for, the lowest of the points merged into it, so that a drawing can
// show the deepest cut at each place.
class PathSketch {
public:
    enum class Stroke : quint8 {
        Rapid,
        Cut
    };
    // The stroke is that of the segment arriving at the vertex; the first vertex is where the
    // path begins.
    struct Vertex {
        float x;
        float y;
        float z;
        Stroke stroke;
    };

    static constexpr qsizetype defaultBudget = 32768;

    explicit PathSketch(qsizetype budget = defaultBudget);

    void lineTo(double x, double y, double z, Stroke stroke);
    // Adds the last point that was held back while it was close to its predecessor.
    void finish();

    const std::vector<Vertex>& vertices() const { return m_vertices; }

private:
    void add(const Vertex& vertex);
    // Whether `held`, between the last point kept and `next`, may be left out. A point within
    // the step of the last one kept may: the path then strays by less than the step, even where
    // it turns back on itself. Once the step is about a pixel of the drawing, so may a point
    // that the path comes back from, so that a path of more long moves than the budget holds is
    // drawn in part rather than reduced to its ends.
    bool mayLeaveOut(const Vertex& kept, const Vertex& held, const Vertex& next) const;
    void reduce();

    qsizetype m_budget;
    std::vector<Vertex> m_vertices;
    Vertex m_pending{};
    bool m_hasPending = false;
    double m_step = 0;
    double m_coarseStep = 0;
};

} // namespace tarnwick::gcode
