#include "app/Services.h"
#include "gcode/PathSketch.h"
#include "ui/FileJobAnalyser.h"
#include "ui/JobPreviewTexts.h"
#include "ui/ToolpathView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <vector>

// The desktop preview's timings, medians of five runs:
//   build-release/bin/bench_preview
// - draw: the toolpath drawn anew at 900 x 560 from a sketch at its full vertex budget, the
//   most a paint can ever cost (a paint without a size, palette or view change copies a
//   pixmap);
// - zoom: the raster program's own toolpath drawn anew at 900 x 560 after each step of a wheel
//   zoom about a point of it (1x to 1000x), and after each step of a drag at 64x;
// - ready: from choosing a 50 MB raster-finishing program to its analysis being shown, its
//   facts written and its toolpath drawn; the same for 10^6 tool changes, each to a new tool;
// - stall: the longest the main thread went without running a 1 ms timer meanwhile.

using namespace tarnwick;

namespace {

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

std::vector<gcode::PathSketch::Vertex> fullSketch() {
    std::vector<gcode::PathSketch::Vertex> vertices;
    for (int index = 0; index < gcode::PathSketch::defaultBudget; ++index) {
        const auto stroke =
            index % 7 ? gcode::PathSketch::Stroke::Cut : gcode::PathSketch::Stroke::Rapid;
        vertices.push_back({float(200 * std::sin(index * 0.37)), float(index % 1500 * 0.1),
                            float(-index % 50 * 0.1), stroke});
    }
    return vertices;
}

QByteArray rasterProgram(qsizetype size) {
    QByteArray program = "G21 G90 G17\nT1 M6\nS18000 M3\nG0 X0 Y0 Z5\nG1 Z-1 F1500\n";
    for (int row = 0; program.size() < size; ++row)
        for (int step = 0; step < 2000; ++step)
            program += QByteArray("X") +
                       QByteArray::number(row % 2 ? 200 - step * 0.1 : step * 0.1, 'f', 3) + " Y" +
                       QByteArray::number(row * 0.1, 'f', 3) + " Z" +
                       QByteArray::number(-1 + 0.5 * std::sin(step * 0.01), 'f', 3) + '\n';
    return program;
}

QByteArray toolChanges(int count) {
    QByteArray program = "G21 M3\n";
    for (int tool = 1; tool <= count; ++tool)
        program += "T" + QByteArray::number(tool) + " M6\n";
    return program;
}

double redrawMs(ui::ToolpathView& view) {
    QElapsedTimer timer;
    timer.start();
    view.grab();
    return timer.nsecsElapsed() / 1e6;
}

// Each zoom or pan invalidates the drawing, so each grab redraws it whole.
void measureZoom(ui::ToolpathView& view) {
    QTextStream out(stdout);
    const QPointF cursor(450, 280);
    view.fitWhole();
    for (const double zoom : {1.0, 4.0, 16.0, 64.0, 256.0, 1000.0}) {
        std::vector<double> draws;
        for (int run = 0; run < 5; ++run) {
            view.fitWhole();
            view.zoomAbout(cursor, zoom);
            draws.push_back(redrawMs(view));
        }
        out << "zoom-" << zoom << "x-draw-ms " << median(draws) << Qt::endl;
    }
    std::vector<double> pans;
    view.fitWhole();
    view.zoomAbout(cursor, 64);
    for (int step = 0; step < 25; ++step) {
        view.pan({17, -9});
        pans.push_back(redrawMs(view));
    }
    out << "pan-64x-draw-ms " << median(pans) << Qt::endl;
}

} // namespace

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QTextStream out(stdout);

    ui::ToolpathView view;
    view.resize(900, 560);
    const auto sketch = fullSketch();
    std::vector<double> draws;
    for (int run = 0; run < 5; ++run) {
        view.setPath(sketch);
        QElapsedTimer timer;
        timer.start();
        view.grab();
        draws.push_back(timer.nsecsElapsed() / 1e6);
    }
    out << "draw-ms " << median(draws) << Qt::endl;

    QTemporaryDir dir;
    ui::FileJobAnalyser analyser;
    const auto measure = [&](const char* name, const QByteArray& program) {
        const QString path = dir.filePath(QString::fromLatin1(name) + QStringLiteral(".nc"));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(program) < 0)
            return false;
        file.close();
        const JobFile job = JobFile::fromUrl(QUrl::fromLocalFile(path)).value();
        std::vector<double> readies;
        std::vector<double> stalls;
        for (int run = 0; run < 5; ++run) {
            QElapsedTimer sinceChoice;
            QElapsedTimer sinceTick;
            double longest = 0;
            QTimer ticker;
            ticker.setTimerType(Qt::PreciseTimer);
            ticker.setInterval(1);
            QObject::connect(&ticker, &QTimer::timeout, [&] {
                longest = std::max(longest, sinceTick.nsecsElapsed() / 1e6);
                sinceTick.start();
            });
            sinceChoice.start();
            sinceTick.start();
            ticker.start();
            JobAnalysis* analysis = analyser.analyse(job, &application);
            QEventLoop loop;
            QObject::connect(analysis, &Operation::finished, &loop, [&] {
                const auto result = analysis->result().value<ui::JobAnalysisResult>();
                ui::JobPreviewTexts::rows(result->summary);
                const auto& cutting = result->summary.cutting;
                view.setPath(result->sketch,
                             {cutting ? cutting->max.z : 0, cutting ? cutting->min.z : 0});
                view.grab();
                loop.quit();
            });
            QObject::connect(analysis, &Operation::failed, &loop, [&] { loop.exit(1); });
            if (loop.exec() != 0)
                return false;
            readies.push_back(sinceChoice.nsecsElapsed() / 1e6);
            stalls.push_back(longest);
        }
        out << name << " ready-ms " << median(readies) << " stall-ms " << median(stalls)
            << Qt::endl;
        if (qstrcmp(name, "raster") == 0)
            measureZoom(view);
        return true;
    };
    if (!measure("raster", rasterProgram(50'000'000)) ||
        !measure("tool-changes", toolChanges(1'000'000)))
        return 1;
    return 0;
}
