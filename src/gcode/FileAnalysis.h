#pragma once

#include "gcode/JobSummary.h"
#include "gcode/PathSketch.h"

#include <QString>

#include <atomic>
#include <functional>
#include <optional>
#include <vector>

namespace tarnwick::gcode {

struct Analysis {
    JobSummary summary;
    std::vector<PathSketch::Vertex> sketch;
    std::vector<PathSketch::Vertex> side;
};

struct FileAnalysisOutcome {
    std::optional<Analysis> analysis;
    // The file system's message when the file could not be read; empty when cancelled.
    QString readError;
};

// Called after each piece read, with the bytes read so far and the file's size.
using AnalysisProgress = std::function<void(qint64 done, qint64 total)>;

// Reads the whole file once in pieces; meant for a worker thread. Stops soon after
// `cancelled` turns true, without an analysis.
FileAnalysisOutcome analyseFile(const QString& path, const std::atomic_bool& cancelled,
                                const AnalysisProgress& progress = {});

} // namespace tarnwick::gcode
