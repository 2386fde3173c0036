#include "FuzzCheck.h"
#include "gcode/GcodeAnalyser.h"

#include <cmath>
#include <cstddef>
#include <cstdint>

using namespace tarnwick::gcode;

namespace {

constexpr qsizetype sketchBudget = 64;

bool isOrdered(const std::optional<Extents>& extents) {
    if (!extents)
        return true;
    const Point3& low = extents->min;
    const Point3& high = extents->max;
    return low.x <= high.x && low.y <= high.y && low.z <= high.z && std::isfinite(low.x) &&
           std::isfinite(low.y) && std::isfinite(low.z) && std::isfinite(high.x) &&
           std::isfinite(high.y) && std::isfinite(high.z);
}

} // namespace

// The first byte is the piece size (1 to 256) in which the rest is fed. However the program
// is cut, the summary is the one of the program in one piece; extents are finite boxes, the
// sketch keeps to its budget, and the analysis is partial exactly when a warning says so.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1)
        return 0;
    const qsizetype piece = qsizetype(data[0]) + 1;
    const char* program = reinterpret_cast<const char*>(data + 1);
    const qsizetype length = qsizetype(size - 1);

    GcodeAnalyser whole(sketchBudget);
    whole.feed(program, length);
    const JobSummary expected = whole.finish();

    GcodeAnalyser pieces(sketchBudget);
    for (qsizetype at = 0; at < length; at += piece)
        pieces.feed(program + at, std::min(piece, length - at));
    const JobSummary summary = pieces.finish();

    FUZZ_CHECK(summary == expected);
    FUZZ_CHECK(summary.motions <= summary.lines);
    FUZZ_CHECK(isOrdered(summary.cutting) && isOrdered(summary.rapid));
    FUZZ_CHECK(std::isfinite(summary.estimatedSeconds) && summary.estimatedSeconds >= 0);
    FUZZ_CHECK(qsizetype(pieces.sketch().vertices().size()) <= sketchBudget);
    bool partialWarning = false;
    for (const Warning& warning : summary.warnings)
        partialWarning = partialWarning || warning.makesPartial();
    FUZZ_CHECK(summary.partial == partialWarning || summary.warnings.size() == 32);
    return 0;
}
