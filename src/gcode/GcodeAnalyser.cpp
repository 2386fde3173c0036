#include "gcode/GcodeAnalyser.h"

#include "gcode/ArcGeometry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <numbers>
#include <optional>

namespace tarnwick::gcode {

namespace {

constexpr unsigned bit(char letter) {
    return 1u << (letter - 'A');
}

constexpr unsigned linearAxes = bit('X') | bit('Y') | bit('Z');
constexpr unsigned rotaryAxes = bit('A') | bit('B') | bit('C');
constexpr unsigned arcWords = bit('I') | bit('J') | bit('K') | bit('R');
constexpr int maximumCodesPerLine = 8;
// Coordinates beyond a kilometre are typing errors, and keeping them finite keeps every later
// sum finite.
constexpr double largestNumber = 1e9;
constexpr size_t maximumWarnings = 32;
// G and M numbers stop well below this (in tenths), which keeps them far inside an int.
constexpr double largestCodeInTenths = 1e5;
// Arcs reach the sketch as chords of at most this angle.
constexpr double sketchChordAngle = std::numbers::pi / 18;

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f';
}

// CR, LF and CR LF each end a line; nothing when the line runs on past `end`. Most files hold
// no CR at all, and then one search per line is enough.
const char* findLineEnd(const char* p, const char* end, bool carriageReturns) {
    const auto* lineFeed = static_cast<const char*>(std::memchr(p, '\n', size_t(end - p)));
    if (!carriageReturns)
        return lineFeed;
    const auto* carriageReturn =
        static_cast<const char*>(std::memchr(p, '\r', size_t((lineFeed ? lineFeed : end) - p)));
    return carriageReturn ? carriageReturn : lineFeed;
}

double powerOfTen(int exponent) {
    static constexpr std::array<double, 23> exact{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                  1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    return exponent < int(exact.size()) ? exact[size_t(exponent)] : std::pow(10.0, exponent);
}

// A decimal number without exponent; spaces may stand anywhere inside it.
bool readNumber(const char*& p, const char* end, double& value) {
    while (p < end && isSpace(*p))
        ++p;
    bool negative = false;
    if (p < end && (*p == '-' || *p == '+')) {
        negative = *p == '-';
        ++p;
    }
    quint64 mantissa = 0;
    int exponent = 0;
    bool dot = false;
    bool digits = false;
    for (; p < end; ++p) {
        const char c = *p;
        const unsigned digit = unsigned(c - '0');
        if (digit < 10) {
            digits = true;
            if (mantissa < 100'000'000'000'000'000ull) {
                mantissa = mantissa * 10 + digit;
                exponent -= dot;
            } else if (!dot) {
                ++exponent;
            }
        } else if (c == '.' && !dot) {
            dot = true;
        } else if (!isSpace(c)) {
            break;
        }
    }
    if (!digits)
        return false;
    const double magnitude = exponent < 0 ? double(mantissa) / powerOfTen(-exponent)
                                          : double(mantissa) * powerOfTen(exponent);
    value = negative ? -magnitude : magnitude;
    return magnitude <= largestNumber;
}

// G and M numbers in tenths (G38.2 is 382); -1 for a number with finer decimals, nothing for
// one that no controller knows.
std::optional<int> tenths(double value) {
    const double scaled = value * 10;
    if (!(scaled >= 0 && scaled < largestCodeInTenths))
        return std::nullopt;
    const double rounded = std::round(scaled);
    return std::abs(scaled - rounded) < 1e-6 ? int(rounded) : -1;
}

QString codeWord(char letter, int code) {
    QString word = QChar::fromLatin1(letter) + QString::number(code / 10);
    if (code % 10)
        word += u'.' + QString::number(code % 10);
    return word;
}

double& axis(Point3& point, int index) {
    return index == 0 ? point.x : index == 1 ? point.y : point.z;
}

double axis(const Point3& point, int index) {
    return index == 0 ? point.x : index == 1 ? point.y : point.z;
}

double distance(const Point3& from, const Point3& to) {
    return std::hypot(to.x - from.x, to.y - from.y, to.z - from.z);
}

} // namespace

enum class GcodeAnalyser::Motion : quint8 {
    Rapid,
    Linear,
    Clockwise,
    CounterClockwise,
    None,
    Unsupported
};

enum class GcodeAnalyser::Plane : quint8 {
    XY,
    ZX,
    YZ
};

struct GcodeAnalyser::Block {
    enum class AxisUse : quint8 {
        Motion,
        Reference,
        Setting
    };

    unsigned words = 0;
    std::array<double, 26> values;
    std::array<int, maximumCodesPerLine> gcodes;
    int gcodeCount = 0;
    std::array<int, maximumCodesPerLine> mcodes;
    int mcodeCount = 0;
    AxisUse axisUse = AxisUse::Motion;
    QString referenceWord;
    bool machineCoordinates = false;
    bool endsProgram = false;

    bool has(char letter) const { return words & bit(letter); }
    double value(char letter) const { return values[size_t(letter - 'A')]; }
};

GcodeAnalyser::GcodeAnalyser(qsizetype sketchBudget)
    : m_sketch(sketchBudget)
    , m_side(sketchBudget)
    , m_motion(Motion::Rapid)
    , m_plane(Plane::XY) {}

void GcodeAnalyser::feed(const char* data, qsizetype size) {
    const char* p = data;
    const char* const end = data + size;
    const bool carriageReturns = size > 0 && std::memchr(data, '\r', size_t(size)) != nullptr;
    while (p < end) {
        // The line feed of a CR LF pair that the last piece ended in the middle of.
        if (m_afterCarriageReturn) {
            m_afterCarriageReturn = false;
            if (*p == '\n') {
                ++p;
                continue;
            }
        }
        const char* const lineEnd = findLineEnd(p, end, carriageReturns);
        const char* const stop = lineEnd ? lineEnd : end;
        if (!m_pendingLine.empty() || m_lineTooLong || !lineEnd) {
            const size_t room = size_t(maximumLineLength) - m_pendingLine.size();
            if (size_t(stop - p) > room)
                m_lineTooLong = true;
            m_pendingLine.append(p, std::min(size_t(stop - p), room));
            if (lineEnd)
                readLine(m_pendingLine.data(), m_pendingLine.data() + m_pendingLine.size());
        } else {
            readLine(p, lineEnd);
        }
        if (!lineEnd)
            break;
        m_afterCarriageReturn = *lineEnd == '\r';
        p = lineEnd + 1;
    }
}

JobSummary GcodeAnalyser::finish() {
    if (!m_pendingLine.empty() || m_lineTooLong)
        readLine(m_pendingLine.data(), m_pendingLine.data() + m_pendingLine.size());
    m_sketch.finish();
    m_side.finish();
    m_summary.lines = m_line;
    if (m_summary.units == Units::Unset && m_summary.motions > 0)
        m_summary.warnings.prepend(Warning{Warning::Kind::NoUnits, 0, {}, 1});
    return m_summary;
}

void GcodeAnalyser::readLine(const char* begin, const char* end) {
    ++m_line;
    Block block;
    if (m_lineTooLong)
        warn(Warning::Kind::Malformed,
             QString::fromLatin1(begin, std::min<qsizetype>(end - begin, 8)));
    else if (parse(begin, end, block))
        run(block);
    // The line may be this buffer, so it is emptied only once read.
    m_pendingLine.clear();
    m_lineTooLong = false;
}

bool GcodeAnalyser::parse(const char* p, const char* end, Block& block) {
    bool first = true;
    for (;;) {
        while (p < end && isSpace(*p))
            ++p;
        if (p == end)
            return true;
        const char c = *p;
        if (c == '(') {
            const auto* close = static_cast<const char*>(std::memchr(p, ')', size_t(end - p)));
            if (!close) {
                warn(Warning::Kind::Malformed, QStringLiteral("("));
                return false;
            }
            p = close + 1;
            continue;
        }
        // A checksum closes the line; a comment runs to its end.
        if (c == ';' || c == '*' || (first && c == '%'))
            return true;
        if (first && c == '/') {
            first = false;
            ++p;
            continue;
        }
        first = false;
        const unsigned index = unsigned((c | 0x20) - 'a');
        if (index >= 26) {
            if (c == '#' || c == '[')
                warn(Warning::Kind::Unsupported, QChar::fromLatin1(c));
            else
                warn(Warning::Kind::Malformed, QString::fromLatin1(&c, 1));
            return false;
        }
        const char letter = char('A' + index);
        ++p;
        double value = 0;
        if (!readNumber(p, end, value)) {
            if (p < end && (*p == '#' || *p == '['))
                warn(Warning::Kind::Unsupported, QChar::fromLatin1(letter) + QChar::fromLatin1(*p));
            else
                warn(Warning::Kind::Malformed, QChar::fromLatin1(letter));
            return false;
        }
        switch (letter) {
        case 'G':
        case 'M': {
            const std::optional<int> tenthsOfCode = tenths(value);
            if (!tenthsOfCode) {
                warn(Warning::Kind::Malformed, QChar::fromLatin1(letter));
                return false;
            }
            const int code = *tenthsOfCode;
            auto& codes = letter == 'G' ? block.gcodes : block.mcodes;
            int& count = letter == 'G' ? block.gcodeCount : block.mcodeCount;
            if (code < 0) {
                warn(Warning::Kind::Unsupported,
                     QChar::fromLatin1(letter) + QString::number(value));
                return false;
            }
            if (count == maximumCodesPerLine) {
                warn(Warning::Kind::Malformed, QChar::fromLatin1(letter));
                return false;
            }
            codes[size_t(count++)] = code;
            break;
        }
        case 'N':
            break;
        case 'O':
        case 'E':
        case 'U':
        case 'V':
        case 'W':
            warn(Warning::Kind::Unsupported, QChar::fromLatin1(letter));
            return false;
        default:
            if (block.has(letter)) {
                warn(Warning::Kind::Malformed, QChar::fromLatin1(letter));
                return false;
            }
            block.words |= bit(letter);
            block.values[index] = value;
        }
    }
}

void GcodeAnalyser::run(Block& block) {
    if (m_ended) {
        if (block.words || block.gcodeCount || block.mcodeCount)
            warn(Warning::Kind::AfterProgramEnd);
        return;
    }
    for (int index = 0; index < block.gcodeCount; ++index)
        applyGcode(block.gcodes[size_t(index)], block);
    if (block.has('F') && block.value('F') < 0) {
        // A controller refuses such a line; the feed in force stays.
        warn(Warning::Kind::NegativeFeed, u'F' + QString::number(block.value('F')));
    } else if (block.has('F')) {
        m_feed = block.value('F') * m_scale;
        m_feedSet = true;
        if (!m_summary.feed)
            m_summary.feed = Range{m_feed, m_feed};
        m_summary.feed->include(m_feed);
    }
    if (block.has('S')) {
        m_speed = block.value('S');
        m_speedSet = true;
    }
    if (block.has('T'))
        m_selectedTool = int(block.value('T'));
    const bool spindleWasOn = m_spindleOn;
    for (int index = 0; index < block.mcodeCount; ++index) {
        const int code = block.mcodes[size_t(index)];
        if (code == 20 || code == 300)
            block.endsProgram = true;
        else
            applyMcode(code);
    }
    if (m_spindleOn && m_speedSet && (block.has('S') || !spindleWasOn)) {
        if (!m_summary.spindle)
            m_summary.spindle = Range{m_speed, m_speed};
        m_summary.spindle->include(m_speed);
    }
    move(block);
    if (block.endsProgram) {
        m_ended = true;
        m_spindleOn = false;
    }
}

void GcodeAnalyser::applyGcode(int code, Block& block) {
    switch (code) {
    case 0:
        m_motion = Motion::Rapid;
        return;
    case 10:
        m_motion = Motion::Linear;
        return;
    case 20:
        m_motion = Motion::Clockwise;
        return;
    case 30:
        m_motion = Motion::CounterClockwise;
        return;
    case 170:
        m_plane = Plane::XY;
        return;
    case 180:
        m_plane = Plane::ZX;
        return;
    case 190:
        m_plane = Plane::YZ;
        return;
    case 200:
    case 210: {
        const bool inches = code == 200;
        const Units units = inches ? Units::Inches : Units::Millimetres;
        if (m_summary.units == Units::Unset) {
            m_summary.units = units;
        } else if (m_summary.units != Units::Mixed && m_summary.units != units) {
            m_summary.units = Units::Mixed;
            warn(Warning::Kind::MixedUnits);
        }
        m_scale = inches ? mmPerInch : 1;
        return;
    }
    case 280:
    case 300:
        block.axisUse = Block::AxisUse::Reference;
        block.referenceWord = codeWord('G', code);
        return;
    case 281:
    case 301:
    case 100:
        block.axisUse = Block::AxisUse::Setting;
        return;
    case 530:
        block.machineCoordinates = true;
        return;
    case 800:
        m_motion = Motion::None;
        return;
    case 900:
    case 910:
        m_incremental = code == 910;
        return;
    case 901:
    case 911:
        m_absoluteCentres = code == 901;
        return;
    case 40:
    case 400:
    case 430:
    case 431:
    case 490:
    case 540:
    case 550:
    case 560:
    case 570:
    case 580:
    case 590:
    case 591:
    case 592:
    case 593:
    case 610:
    case 611:
    case 640:
    case 940:
    case 970:
    case 980:
    case 990:
        return;
    case 382:
    case 383:
    case 384:
    case 385:
    case 730:
    case 760:
    case 810:
    case 820:
    case 830:
    case 840:
    case 850:
    case 860:
    case 870:
    case 880:
    case 890:
        m_motion = Motion::Unsupported;
        break;
    case 920:
    case 921:
    case 922:
    case 923:
        block.axisUse = Block::AxisUse::Setting;
        break;
    default:
        break;
    }
    warn(Warning::Kind::Unsupported, codeWord('G', code));
}

void GcodeAnalyser::applyMcode(int code) {
    switch (code) {
    case 0:
    case 10:
    case 70:
    case 80:
    case 90:
    case 480:
    case 490:
        return;
    case 30:
    case 40:
        m_spindleOn = true;
        return;
    case 50:
        m_spindleOn = false;
        return;
    case 60:
        if (m_selectedTool >= 0 && !m_listedTools.contains(m_selectedTool)) {
            m_listedTools.insert(m_selectedTool);
            m_summary.tools.append(m_selectedTool);
        }
        return;
    default:
        warn(Warning::Kind::Unsupported, codeWord('M', code));
    }
}

void GcodeAnalyser::move(Block& block) {
    if (block.axisUse == Block::AxisUse::Reference) {
        warn(Warning::Kind::MachineCoordinates, block.referenceWord);
        return;
    }
    const bool arc = m_motion == Motion::Clockwise || m_motion == Motion::CounterClockwise;
    if (block.axisUse == Block::AxisUse::Setting ||
        !(block.words & (linearAxes | rotaryAxes | (arc ? arcWords : 0))))
        return;
    if (m_motion == Motion::None) {
        warn(Warning::Kind::Malformed, QStringLiteral("G80"));
        return;
    }
    if (m_motion == Motion::Unsupported)
        return;
    ++m_summary.motions;
    if (block.machineCoordinates) {
        warn(Warning::Kind::MachineCoordinates, QStringLiteral("G53"));
        return;
    }
    const Point3 start = m_position;
    Point3 end = start;
    for (int index = 0; index < 3; ++index) {
        const char letter = char('X' + index);
        if (!block.has(letter))
            continue;
        const double value = block.value(letter) * m_scale;
        axis(end, index) = m_incremental ? axis(start, index) + value : value;
    }
    (m_incremental ? m_summary.usesIncremental : m_summary.usesAbsolute) = true;

    const bool cutting = m_motion != Motion::Rapid;
    if (cutting) {
        if (!m_spindleOn)
            warn(Warning::Kind::CutWithSpindleStopped);
        if (!m_feedSet)
            warn(Warning::Kind::FeedBeforeFeedRate);
        else if (!(m_feed > 0))
            warn(Warning::Kind::ZeroFeed);
    }
    if (arc) {
        moveArc(block, start, end);
    } else {
        // Where the tool stood before its first move on an axis is not known.
        Point3 from = start;
        for (int index = 0; index < 3; ++index) {
            if (!(m_knownAxes & (1u << index)))
                axis(from, index) = axis(end, index);
        }
        account(from, end, distance(from, end), cutting);
        sketchTo(end, cutting ? PathSketch::Stroke::Cut : PathSketch::Stroke::Rapid);
    }
    m_knownAxes |= (block.words & linearAxes) >> ('X' - 'A');
    m_position = end;
}

void GcodeAnalyser::moveArc(const Block& block, const Point3& start, const Point3& end) {
    // The plane's two axes in the order that makes its normal point at the viewer, and the
    // centre offset word of each.
    static constexpr int axes[3][3] = {{0, 1, 2}, {2, 0, 1}, {1, 2, 0}};
    static constexpr char offsetWords[3][2] = {{'I', 'J'}, {'K', 'I'}, {'J', 'K'}};
    const int* const plane = axes[int(m_plane)];
    const char* const offsets = offsetWords[int(m_plane)];
    const double startA = axis(start, plane[0]);
    const double startB = axis(start, plane[1]);
    const double endA = axis(end, plane[0]);
    const double endB = axis(end, plane[1]);
    const bool clockwise = m_motion == Motion::Clockwise;

    std::optional<Arc> arc;
    if (block.has('R')) {
        arc = arcFromRadius(startA, startB, endA, endB, block.value('R') * m_scale, clockwise);
    } else if (block.has(offsets[0]) || block.has(offsets[1])) {
        const auto centre = [&](char word, double startValue) {
            if (!block.has(word))
                return startValue;
            const double value = block.value(word) * m_scale;
            return m_absoluteCentres ? value : startValue + value;
        };
        arc = arcFromCentre(startA, startB, endA, endB, centre(offsets[0], startA),
                            centre(offsets[1], startB), clockwise);
    }
    if (!arc) {
        warn(Warning::Kind::InvalidArc);
        account(start, end, distance(start, end), true);
        sketchTo(end, PathSketch::Stroke::Cut);
        return;
    }

    // P asks for that many turns in all, each one before the last a full circle.
    double extraTurns = 0;
    if (block.has('P')) {
        const double turns = block.value('P');
        if (turns >= 1 && turns == std::floor(turns))
            extraTurns = turns - 1;
        else
            warn(Warning::Kind::Malformed, QStringLiteral("P"));
    }
    const double sweep = std::abs(arc->sweep) + extraTurns * 2 * std::numbers::pi;
    if (extraTurns > 0)
        arc->sweep += std::copysign(2 * std::numbers::pi, arc->sweep);

    const double startN = axis(start, plane[2]);
    const double endN = axis(end, plane[2]);
    const PlaneBounds bounds = arcBounds(*arc, startA, startB, endA, endB);
    Point3 low;
    Point3 high;
    axis(low, plane[0]) = bounds.minA;
    axis(high, plane[0]) = bounds.maxA;
    axis(low, plane[1]) = bounds.minB;
    axis(high, plane[1]) = bounds.maxB;
    axis(low, plane[2]) = std::min(startN, endN);
    axis(high, plane[2]) = std::max(startN, endN);
    account(low, high, std::hypot(arc->radius * sweep, endN - startN), true);

    // Further turns go over the same circle, so the sketch draws it once at most.
    const int chords = std::clamp(int(std::ceil(std::abs(arc->sweep) / sketchChordAngle)), 1, 72);
    for (int chord = 1; chord < chords; ++chord) {
        const double fraction = double(chord) / chords;
        const double angle = arc->angleAt(fraction);
        Point3 point;
        axis(point, plane[0]) = arc->centreA + arc->radius * std::cos(angle);
        axis(point, plane[1]) = arc->centreB + arc->radius * std::sin(angle);
        axis(point, plane[2]) = startN + (endN - startN) * fraction;
        sketchTo(point, PathSketch::Stroke::Cut);
    }
    sketchTo(end, PathSketch::Stroke::Cut);
}

void GcodeAnalyser::sketchTo(const Point3& point, PathSketch::Stroke stroke) {
    m_sketch.lineTo(point.x, point.y, point.z, stroke);
    m_side.lineTo(point.x, point.z, point.z, stroke);
}

void GcodeAnalyser::account(const Point3& corner, const Point3& opposite, double length,
                            bool cutting) {
    std::optional<Extents>& extents = cutting ? m_summary.cutting : m_summary.rapid;
    if (!extents)
        extents = Extents{corner, corner};
    extents->include(corner);
    extents->include(opposite);
    if (cutting) {
        m_summary.cuttingLength += length;
        if (m_feed > 0)
            m_summary.estimatedSeconds += length / m_feed * 60;
    } else {
        m_summary.rapidLength += length;
        m_summary.estimatedSeconds += length / rapidRateMmPerMinute * 60;
    }
}

void GcodeAnalyser::warn(Warning::Kind kind, QString word) {
    Warning warning{kind, m_line, std::move(word), 1};
    m_summary.partial = m_summary.partial || warning.makesPartial();
    for (Warning& known : m_summary.warnings) {
        if (known.kind == kind && known.word == warning.word) {
            ++known.occurrences;
            return;
        }
    }
    if (size_t(m_summary.warnings.size()) < maximumWarnings)
        m_summary.warnings.append(std::move(warning));
}

} // namespace tarnwick::gcode
