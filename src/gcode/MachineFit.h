#pragma once

#include "gcode/JobSummary.h"

#include <QJsonObject>
#include <QLocale>
#include <QStringList>

#include <optional>

namespace tarnwick::gcode {

// What the user says a machine can do. Only what was entered is checked.
struct MachineLimits {
    // How far each axis travels, in mm.
    Point3 travel;
    std::optional<double> highestSpindleRpm;
    // The positions of the tool changer; none when the machine has none to check against.
    std::optional<int> toolPositions;
    // In mm/min.
    std::optional<double> highestFeed;

    friend bool operator==(const MachineLimits&, const MachineLimits&) = default;
};

// The limits as they are kept: {"travel": [x, y, z], "highestSpindleRpm": …, "toolPositions": …,
// "highestFeed": …}, the optional ones only when set. What does not read as limits (a travel that
// is not three positive numbers) is nothing; an optional value that is not positive is left out.
QJsonObject toJson(const MachineLimits& limits);
std::optional<MachineLimits> limitsFromJson(const QJsonObject& json);

// Why the job cannot run on a machine with these limits, one sentence each, the numbers in
// `locale`'s form; empty when it can as far as the summary tells, and nothing at all when no
// limits are known, since nothing is assumed of a machine. Only the cuts' span is compared with
// the travel: where the work starts is set at the machine, so only a span larger than the
// travel is certain to fail.
std::optional<QStringList> fitProblems(const JobSummary& summary,
                                       const std::optional<MachineLimits>& limits,
                                       const QLocale& locale = {});

} // namespace tarnwick::gcode
