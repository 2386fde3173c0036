#pragma once

#include "gcode/JobSummary.h"
#include "gcode/PathSketch.h"

#include <QSet>

#include <string>

namespace tarnwick::gcode {

// Reads a G-code program in pieces of any size, one pass, in memory bounded by the longest
// line it keeps (at most maximumLineLength) and the sketch's budget.
//
// What it assumes where controllers differ: the tool starts at an unknown place that counts
// as the origin for axes not yet named; motion starts as G0, plane G17, distance G90, arc
// centres incremental (G91.1); block delete (/) is off, so such lines run; lines after M2 or
// M30 do not run. Canned cycles, probing, cutter compensation, coordinate offsets (G92),
// O-words, expressions and parameters are not modelled: they make the analysis partial.
class GcodeAnalyser {
public:
    static constexpr qsizetype maximumLineLength = 64 * 1024;

    explicit GcodeAnalyser(qsizetype sketchBudget = PathSketch::defaultBudget);

    void feed(const char* data, qsizetype size);
    // Reads the last line when it has no line break, and ends the analysis.
    JobSummary finish();
    // The toolpath from above (x, y) and from the front (x, z).
    const PathSketch& sketch() const { return m_sketch; }
    const PathSketch& sideSketch() const { return m_side; }

private:
    struct Block;
    enum class Motion : quint8;
    enum class Plane : quint8;

    void readLine(const char* begin, const char* end);
    bool parse(const char* begin, const char* end, Block& block);
    void run(Block& block);
    void applyGcode(int code, Block& block);
    void applyMcode(int code);
    void move(Block& block);
    void moveArc(const Block& block, const Point3& start, const Point3& end);
    // Widens the extents of the move's kind by the box of two corners, and adds up its time.
    void account(const Point3& corner, const Point3& opposite, double length, bool cutting);
    void warn(Warning::Kind kind, QString word = {});
    void sketchTo(const Point3& point, PathSketch::Stroke stroke);

    JobSummary m_summary;
    PathSketch m_sketch;
    PathSketch m_side;
    std::string m_pendingLine;
    bool m_lineTooLong = false;
    bool m_afterCarriageReturn = false;
    qint64 m_line = 0;

    Point3 m_position;
    unsigned m_knownAxes = 0;
    Motion m_motion;
    Plane m_plane;
    double m_scale = 1;
    bool m_incremental = false;
    bool m_absoluteCentres = false;
    bool m_unitsSet = false;
    bool m_inches = false;
    double m_feed = 0;
    bool m_feedSet = false;
    double m_speed = 0;
    bool m_speedSet = false;
    bool m_spindleOn = false;
    int m_selectedTool = -1;
    // The tools already listed, so that a file of many tool changes is read in linear time.
    QSet<int> m_listedTools;
    bool m_ended = false;
};

} // namespace tarnwick::gcode
