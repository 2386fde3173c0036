#include "gcode/FileAnalysis.h"

#include "gcode/GcodeAnalyser.h"

#include <QFile>

namespace tarnwick::gcode {

namespace {

// Large enough that reading costs little beside parsing, small enough to stay in cache.
constexpr qint64 pieceSize = 1 << 20;

} // namespace

FileAnalysisOutcome analyseFile(const QString& path, const std::atomic_bool& cancelled,
                                const AnalysisProgress& progress) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {std::nullopt, file.errorString()};
    const qint64 total = file.size();
    GcodeAnalyser analyser;
    QByteArray piece(pieceSize, Qt::Uninitialized);
    qint64 done = 0;
    for (;;) {
        if (cancelled.load(std::memory_order_relaxed))
            return {};
        const qint64 read = file.read(piece.data(), pieceSize);
        if (read < 0)
            return {std::nullopt, file.errorString()};
        if (read == 0)
            break;
        analyser.feed(piece.constData(), read);
        done += read;
        if (progress)
            progress(done, total);
    }
    Analysis analysis{analyser.finish(), analyser.sketch().vertices(),
                      analyser.sideSketch().vertices()};
    return {std::move(analysis), {}};
}

} // namespace tarnwick::gcode
