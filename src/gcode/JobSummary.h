#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace tarnwick::gcode {

enum class Units {
    Unset,
    Millimetres,
    Inches,
    Mixed
};

struct Point3 {
    double x = 0;
    double y = 0;
    double z = 0;

    friend bool operator==(const Point3&, const Point3&) = default;
};

// The smallest box around a set of points, in millimetres.
struct Extents {
    Point3 min;
    Point3 max;

    Point3 size() const { return {max.x - min.x, max.y - min.y, max.z - min.z}; }
    void include(const Point3& point);
    void include(const Extents& other);

    friend bool operator==(const Extents&, const Extents&) = default;
};

struct Range {
    double min = 0;
    double max = 0;

    void include(double value);

    friend bool operator==(const Range&, const Range&) = default;
};

// Something a machinist should know before sending the file. Kinds that make the analysis
// partial say so in their text.
struct Warning {
    enum class Kind {
        NoUnits,
        MixedUnits,
        FeedBeforeFeedRate,
        ZeroFeed,
        NegativeFeed,
        CutWithSpindleStopped,
        Unsupported,
        Malformed,
        InvalidArc,
        MachineCoordinates,
        AfterProgramEnd
    };

    Kind kind;
    qint64 line = 0;
    // The word or text the warning is about, as it stands in the file (upper case).
    QString word;
    qint64 occurrences = 1;

    bool makesPartial() const;
    QString description() const;

    friend bool operator==(const Warning&, const Warning&) = default;
};

struct JobSummary {
    qint64 lines = 0;
    qint64 motions = 0;
    Units units = Units::Unset;
    bool usesAbsolute = false;
    bool usesIncremental = false;
    std::optional<Extents> cutting;
    std::optional<Extents> rapid;
    QList<int> tools;
    // Spindle speeds in force while the spindle turns, and programmed feeds in mm/min.
    std::optional<Range> spindle;
    std::optional<Range> feed;
    double cuttingLength = 0;
    double rapidLength = 0;
    double estimatedSeconds = 0;
    QList<Warning> warnings;
    bool partial = false;

    friend bool operator==(const JobSummary&, const JobSummary&) = default;

    // Both kinds of move together, or nothing when there is no move.
    std::optional<Extents> allExtents() const;
};

// Rapid moves are timed at this rate: a typical hobby mill's, acceleration ignored.
inline constexpr double rapidRateMmPerMinute = 3000;
inline constexpr double mmPerInch = 25.4;

} // namespace tarnwick::gcode
