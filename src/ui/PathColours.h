#pragma once

#include <QColor>

#include <array>

namespace tarnwick::ui {

// The colours a toolpath is drawn in over one background: cuts from shallow to deep, and rapid
// moves fainter. Each keeps a contrast of at least minimumContrast with the background, in
// light and dark palettes alike.
class PathColours {
public:
    static constexpr double minimumContrast = 3.0;
    // Depths told apart; enough that neighbours differ by less than the eye sees.
    static constexpr int depthLevels = 64;

    PathColours(QColor accent, QColor secondary, QColor background);

    // 0 is the shallowest cut, 1 the deepest.
    QColor depth(double fraction) const;
    QColor rapid() const { return m_rapid; }
    QColor background() const { return m_background; }

private:
    QColor m_background;
    QColor m_rapid;
    std::array<QColor, depthLevels> m_depths;
};

// The ratio of the relative luminances of two opaque colours, lighter over darker, each plus
// 0.05: 1 for equal colours, 21 for black and white.
double contrastRatio(QColor first, QColor second);

// The colour, moved towards white over a dark background or black over a light one just far
// enough to reach the contrast wanted.
QColor withContrast(QColor colour, QColor background, double ratio);

} // namespace tarnwick::ui
