#include "ui/PathColours.h"

#include <algorithm>
#include <cmath>

namespace tarnwick::ui {

namespace {

double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(QColor colour) {
    const QColor rgb = colour.toRgb();
    return 0.2126 * linear(rgb.redF()) + 0.7152 * linear(rgb.greenF()) +
           0.0722 * linear(rgb.blueF());
}

QColor mixed(QColor from, QColor to, double amount) {
    const QColor a = from.toRgb();
    const QColor b = to.toRgb();
    const auto channel = [amount](double x, double y) { return x + (y - x) * amount; };
    // Eight bits a channel, as the drawing holds it, so that what is checked is what is drawn.
    return QColor(QColor::fromRgbF(float(channel(a.redF(), b.redF())),
                                   float(channel(a.greenF(), b.greenF())),
                                   float(channel(a.blueF(), b.blueF())))
                      .rgb());
}

// The deep end of the scale: the accent's hue turned a third of the way round (a blue accent
// goes to magenta), so that depth reads as a change of colour rather than of brightness alone.
QColor deepOf(QColor accent, bool darkBackground) {
    const int hue = (std::max(accent.toHsl().hslHue(), 0) + 120) % 360;
    return QColor::fromHsl(hue, 210, darkBackground ? 165 : 105);
}

} // namespace

double contrastRatio(QColor first, QColor second) {
    // std::minmax of two temporaries would hand back references to values already gone.
    const double a = luminance(first);
    const double b = luminance(second);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QColor withContrast(QColor colour, QColor background, double ratio) {
    const QColor away = luminance(background) < 0.18 ? QColor(Qt::white) : QColor(Qt::black);
    colour.setAlphaF(1);
    for (int step = 0; step <= 20; ++step) {
        const QColor candidate = mixed(colour, away, step / 20.0);
        if (contrastRatio(candidate, background) >= ratio)
            return candidate;
    }
    return away;
}

PathColours::PathColours(QColor accent, QColor secondary, QColor background)
    : m_background(background) {
    const bool dark = luminance(background) < 0.18;
    const QColor shallow = withContrast(accent, background, minimumContrast);
    const QColor deep = withContrast(deepOf(accent, dark), background, minimumContrast);
    for (int level = 0; level < depthLevels; ++level)
        m_depths[size_t(level)] = withContrast(
            mixed(shallow, deep, level / double(depthLevels - 1)), background, minimumContrast);
    // Rapid moves are a mid-tone half-way into the background, as faint as the contrast allows.
    m_rapid = withContrast(mixed(secondary, background, 0.45), background, minimumContrast);
}

QColor PathColours::depth(double fraction) const {
    const double clamped = std::isfinite(fraction) ? std::clamp(fraction, 0.0, 1.0) : 0.0;
    return m_depths[size_t(std::lround(clamped * (depthLevels - 1)))];
}

} // namespace tarnwick::ui
