#include "gcode/MachineFit.h"

#include <QCoreApplication>
#include <QJsonArray>

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarnwick::gcode {

namespace {

// Finer than any machine moves, so a span equal to the travel as printed is no failure.
constexpr double lengthTolerance = 1e-3;

constexpr QLatin1StringView travelField{"travel"};
constexpr QLatin1StringView spindleField{"highestSpindleRpm"};
constexpr QLatin1StringView toolsField{"toolPositions"};
constexpr QLatin1StringView feedField{"highestFeed"};

bool isPositive(const QJsonValue& value) {
    return value.isDouble() && value.toDouble() > 0 && std::isfinite(value.toDouble());
}

std::optional<double> positive(const QJsonValue& value) {
    return isPositive(value) ? std::optional(value.toDouble()) : std::nullopt;
}

} // namespace

QJsonObject toJson(const MachineLimits& limits) {
    QJsonObject json{{travelField, QJsonArray{limits.travel.x, limits.travel.y, limits.travel.z}}};
    if (limits.highestSpindleRpm)
        json.insert(spindleField, *limits.highestSpindleRpm);
    if (limits.toolPositions)
        json.insert(toolsField, *limits.toolPositions);
    if (limits.highestFeed)
        json.insert(feedField, *limits.highestFeed);
    return json;
}

std::optional<MachineLimits> limitsFromJson(const QJsonObject& json) {
    const QJsonArray travel = json.value(travelField).toArray();
    if (travel.size() != 3 || !std::all_of(travel.begin(), travel.end(), isPositive))
        return std::nullopt;
    MachineLimits limits{{travel[0].toDouble(), travel[1].toDouble(), travel[2].toDouble()},
                         positive(json.value(spindleField)),
                         {},
                         positive(json.value(feedField))};
    // Whole positions only, and no more than an int holds.
    const std::optional<double> tools = positive(json.value(toolsField));
    if (tools && *tools == std::floor(*tools) && *tools <= std::numeric_limits<int>::max())
        limits.toolPositions = int(*tools);
    return limits;
}

std::optional<QStringList> fitProblems(const JobSummary& summary,
                                       const std::optional<MachineLimits>& known,
                                       const QLocale& locale) {
    if (!known)
        return std::nullopt;
    const MachineLimits& limits = *known;
    QStringList problems;
    const auto number = [&locale](double value, int decimals) {
        return locale.toString(value, 'f', decimals);
    };
    if (summary.cutting) {
        const Point3 span = summary.cutting->size();
        const struct {
            double span;
            double travel;
            QChar axis;
        } axes[] = {{span.x, limits.travel.x, u'X'},
                    {span.y, limits.travel.y, u'Y'},
                    {span.z, limits.travel.z, u'Z'}};
        for (const auto& axis : axes) {
            if (axis.span > axis.travel + lengthTolerance)
                //: The axis is a letter: X, Y or Z.
                problems << QCoreApplication::translate(
                                "tarnwick::gcode::MachineFit",
                                "The cuts span %1 mm in %2; this machine travels %3 mm.")
                                .arg(number(axis.span, 1), axis.axis, number(axis.travel, 1));
        }
    }
    if (limits.toolPositions && !summary.tools.isEmpty()) {
        const int highest = *std::max_element(summary.tools.begin(), summary.tools.end());
        if (highest > *limits.toolPositions)
            problems << QCoreApplication::translate(
                            "tarnwick::gcode::MachineFit",
                            "The job uses tool T%1; this machine's tool changer goes up to T%2.")
                            .arg(highest)
                            .arg(*limits.toolPositions);
    }
    if (limits.highestSpindleRpm && summary.spindle &&
        summary.spindle->max > *limits.highestSpindleRpm)
        problems << QCoreApplication::translate(
                        "tarnwick::gcode::MachineFit",
                        "The job turns the spindle at %1 rpm; this machine reaches %2 rpm.")
                        .arg(number(summary.spindle->max, 0), number(*limits.highestSpindleRpm, 0));
    if (limits.highestFeed && summary.feed && summary.feed->max > *limits.highestFeed)
        problems << QCoreApplication::translate(
                        "tarnwick::gcode::MachineFit",
                        "The job feeds at %1 mm/min; this machine feeds at most %2 mm/min.")
                        .arg(number(summary.feed->max, 0), number(*limits.highestFeed, 0));
    return problems;
}

} // namespace tarnwick::gcode
