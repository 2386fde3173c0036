#include "gcode/FileAnalysis.h"
#include "gcode/GcodeAnalyser.h"

#include <QTemporaryFile>

#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdio>

#if defined(Q_OS_LINUX) || defined(Q_OS_MACOS)
#include <sys/resource.h>
#endif

// Throughput and memory of the analyser on a raster-finishing program:
//   cmake --preset release -DTARNWICK_BUILD_BENCHMARKS=ON
//   cmake --build build-release --target bench_gcode
//   build-release/bin/bench_gcode --benchmark_repetitions=5
//   --benchmark_report_aggregates_only=true

using namespace tarnwick::gcode;

namespace {

constexpr qsizetype megabyte = 1000 * 1000;
constexpr qsizetype pieceSize = 1 << 20;

// A finishing pass over a 200 x 150 mm surface in 0.1 mm rows: modal G1 moves of three axes,
// as CAM programs write them, an arc at each row's end, and a rapid now and then.
class RasterProgram {
public:
    // Appends about `size` more bytes, always whole lines.
    void append(QByteArray& out, qsizetype size) {
        const qsizetype target = out.size() + size;
        char line[96];
        while (out.size() < target) {
            int length;
            if (m_step == 0) {
                length = std::snprintf(line, sizeof line, "G1 X%.3f Y%.3f Z%.3f F1500\n", x(),
                                       m_row * 0.1, z());
            } else if (m_step == stepsPerRow) {
                length = std::snprintf(line, sizeof line, "G%d X%.3f Y%.3f I0 J0.05\n",
                                       m_row % 2 ? 2 : 3, x(), m_row * 0.1 + 0.1);
                m_step = -1;
                m_row = (m_row + 1) % 1500;
                if (m_row % 100 == 0)
                    length += std::snprintf(line + length, sizeof line - size_t(length), "G0 Z5\n");
            } else {
                length =
                    std::snprintf(line, sizeof line, "X%.3f Y%.3f Z%.3f\n", x(), m_row * 0.1, z());
            }
            out.append(line, length);
            ++m_step;
        }
    }

private:
    static constexpr int stepsPerRow = 2000;

    double x() const { return m_row % 2 ? 200 - m_step * 0.1 : m_step * 0.1; }
    double z() const { return -1 + 0.5 * std::sin(m_step * 0.01) * std::cos(m_row * 0.02); }

    int m_row = 0;
    int m_step = 0;
};

const QByteArray& program50MB() {
    static const QByteArray bytes = [] {
        QByteArray program = "G21 G90 G17\nT1 M6\nS18000 M3\n";
        RasterProgram().append(program, 50 * megabyte);
        return program;
    }();
    return bytes;
}

void analyseInMemory(benchmark::State& state) {
    const QByteArray& program = program50MB();
    for (auto _ : state) {
        GcodeAnalyser analyser;
        for (qsizetype at = 0; at < program.size(); at += pieceSize)
            analyser.feed(program.constData() + at, std::min(pieceSize, program.size() - at));
        benchmark::DoNotOptimize(analyser.finish());
    }
    state.SetBytesProcessed(state.iterations() * program.size());
}

void analyseFromFile(benchmark::State& state) {
    QTemporaryFile file;
    if (!file.open() || file.write(program50MB()) != program50MB().size()) {
        state.SkipWithError("cannot write the program");
        return;
    }
    file.close();
    const std::atomic_bool never{false};
    for (auto _ : state)
        benchmark::DoNotOptimize(analyseFile(file.fileName(), never));
    state.SetBytesProcessed(state.iterations() * program50MB().size());
}

// 10^6 tool changes, each to a new tool, and 10^6 spindle speed changes: the time must grow
// with the file's size alone, as for any other program.
void analyseToolAndSpindleChanges(benchmark::State& state) {
    static const QByteArray program = [] {
        QByteArray bytes = "G21 G90 M3\n";
        for (int change = 1; change <= 1'000'000; ++change)
            bytes += "T" + QByteArray::number(change) + " M6\nS" +
                     QByteArray::number(1000 + change % 20000) + "\n";
        return bytes;
    }();
    for (auto _ : state) {
        GcodeAnalyser analyser;
        analyser.feed(program.constData(), program.size());
        benchmark::DoNotOptimize(analyser.finish());
    }
    state.SetBytesProcessed(state.iterations() * program.size());
}

double residentMiB() {
#if defined(Q_OS_LINUX) || defined(Q_OS_MACOS)
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
#if defined(Q_OS_MACOS)
    return double(usage.ru_maxrss) / (1 << 20);
#else
    return double(usage.ru_maxrss) / 1024;
#endif
#else
    return 0;
#endif
}

// 500 MB made piece by piece as it is read, so that only the analyser's own memory can grow;
// the counter is the growth of the peak resident size while it runs.
void analyseStreamed500MB(benchmark::State& state) {
    double growth = 0;
    for (auto _ : state) {
        const double before = residentMiB();
        RasterProgram generator;
        GcodeAnalyser analyser;
        QByteArray piece;
        piece.reserve(2 * pieceSize);
        for (qsizetype made = 0; made < 500 * megabyte; made += piece.size()) {
            piece.clear();
            generator.append(piece, pieceSize);
            analyser.feed(piece.constData(), piece.size());
        }
        benchmark::DoNotOptimize(analyser.finish());
        growth = std::max(growth, residentMiB() - before);
    }
    state.counters["peakGrowthMiB"] = growth;
}

} // namespace

BENCHMARK(analyseInMemory)->Unit(benchmark::kMillisecond)->MinTime(2);
BENCHMARK(analyseFromFile)->Unit(benchmark::kMillisecond)->MinTime(2);
BENCHMARK(analyseToolAndSpindleChanges)->Unit(benchmark::kMillisecond);
BENCHMARK(analyseStreamed500MB)->Unit(benchmark::kMillisecond)->Iterations(1);

BENCHMARK_MAIN();
