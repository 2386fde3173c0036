#include "gcode/GcodeAnalyser.h"

#include "gcode/FileAnalysis.h"

#include <QTemporaryFile>
#include <QTest>

using namespace tarnwick::gcode;
using namespace Qt::StringLiterals;

namespace {

JobSummary analyse(const QByteArray& program, qsizetype piece = 0) {
    GcodeAnalyser analyser;
    for (qsizetype at = 0; at < program.size(); at += piece ? piece : program.size())
        analyser.feed(program.constData() + at,
                      std::min(program.size() - at, piece ? piece : program.size()));
    return analyser.finish();
}

QString box(const std::optional<Extents>& extents) {
    if (!extents)
        return u"none"_s;
    const auto n = [](double v) { return QString::number(std::round(v * 1e4) / 1e4 + 0.0); };
    const Extents& e = *extents;
    return u"%1 %2 %3 / %4 %5 %6"_s.arg(n(e.min.x), n(e.min.y), n(e.min.z), n(e.max.x), n(e.max.y),
                                        n(e.max.z));
}

// Motions, then the cutting and the rapid box (min / max), in mm.
QString geometry(const JobSummary& summary) {
    return u"%1; cut %2; rapid %3"_s.arg(summary.motions)
        .arg(box(summary.cutting), box(summary.rapid));
}

QString warnings(const JobSummary& summary) {
    QStringList texts;
    for (const Warning& warning : summary.warnings)
        texts << warning.description() + u" x%1"_s.arg(warning.occurrences);
    return texts.join(u'\n');
}

} // namespace

class GcodeAnalyserTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The start of the first move on an axis is unknown, so it is never part of a box.
    void measuresMovesAndArcs_data() {
        QTest::addColumn<QByteArray>("program");
        QTest::addColumn<QString>("expected");
        const QByteArray head = "G21 G90 G17 F100 M3 S1000\n";
        QTest::newRow("plunge and line") << head + "G0 X0 Y0 Z5\nG1 Z-1\nG1 X10 Y5\n"
                                         << u"3; cut 0 0 -1 / 10 5 5; rapid 0 0 5 / 0 0 5"_s;
        QTest::newRow("modal motion") << head + "G1 X1\nX2 Y2\nY3\n"
                                      << u"3; cut 1 0 0 / 2 3 0; rapid none"_s;
        QTest::newRow("no axis, no move") << head + "G0\nG1 F5\nG2\n"
                                          << u"0; cut none; rapid none"_s;
        QTest::newRow("incremental") << head + "G91 G1 X10\nX10 Y-5\nG90 G0 X0 Y0\n"
                                     << u"3; cut 10 -5 0 / 20 0 0; rapid 0 -5 0 / 20 0 0"_s;
        QTest::newRow("inches")
            << "G20 M3 F10\nG0 X1 Y1 Z0\nG1 X2 Z-0.1\n"_ba
            << u"2; cut 25.4 25.4 -2.54 / 50.8 25.4 0; rapid 25.4 25.4 0 / 25.4 25.4 0"_s;
        QTest::newRow("G17 IJ clockwise") << head + "G0 X10 Y0 Z0\nG2 X0 Y10 I-10 J0\n"
                                          << u"2; cut -10 -10 0 / 10 10 0; rapid 10 0 0 / 10 0 0"_s;
        QTest::newRow("G17 IJ counter") << head + "G0 X10 Y0 Z0\nG3 X0 Y10 I-10\n"
                                        << u"2; cut 0 0 0 / 10 10 0; rapid 10 0 0 / 10 0 0"_s;
        QTest::newRow("G17 R short") << head + "G0 X10 Y0 Z0\nG2 X0 Y10 R10\n"
                                     << u"2; cut 0 0 0 / 10 10 0; rapid 10 0 0 / 10 0 0"_s;
        QTest::newRow("G17 R long") << head + "G0 X10 Y0 Z0\nG2 X0 Y10 R-10\n"
                                    << u"2; cut -10 -10 0 / 10 10 0; rapid 10 0 0 / 10 0 0"_s;
        QTest::newRow("full circle") << head + "G0 X10 Y0 Z0\nG2 I-10\n"
                                     << u"2; cut -10 -10 0 / 10 10 0; rapid 10 0 0 / 10 0 0"_s;
        QTest::newRow("helix") << head + "G0 X10 Y0 Z0\nG3 X10 Y0 Z-2 I-10 J0\n"
                               << u"2; cut -10 -10 -2 / 10 10 0; rapid 10 0 0 / 10 0 0"_s;
        QTest::newRow("G18 IK") << head + "G18 G0 X0 Y0 Z0\nG2 X10 I5 K0\n"
                                << u"2; cut 0 0 -5 / 10 0 0; rapid 0 0 0 / 0 0 0"_s;
        QTest::newRow("G18 R") << head + "G18 G0 X0 Y0 Z0\nG3 X10 R5\n"
                               << u"2; cut 0 0 0 / 10 0 5; rapid 0 0 0 / 0 0 0"_s;
        QTest::newRow("G19 JK") << head + "G19 G0 X0 Y0 Z0\nG2 Y10 J5\n"
                                << u"2; cut 0 0 0 / 0 10 5; rapid 0 0 0 / 0 0 0"_s;
        QTest::newRow("G19 R") << head + "G19 G0 X0 Y0 Z0\nG3 Y10 R5\n"
                               << u"2; cut 0 0 -5 / 0 10 0; rapid 0 0 0 / 0 0 0"_s;
        QTest::newRow("absolute centre") << head + "G90.1 G0 X10 Y10 Z0\nG2 I5 J10\n"
                                         << u"2; cut 0 5 0 / 10 15 0; rapid 10 10 0 / 10 10 0"_s;
        QTest::newRow("incremental arc") << head + "G0 X0 Y0 Z0\nG91 G3 X-10 Y10 I-10\n"
                                         << u"2; cut -10 0 0 / 0 10 0; rapid 0 0 0 / 0 0 0"_s;
        QTest::newRow("inch arc")
            << "G20 M3 F1\nG0 X1 Y0 Z0\nG2 I-1\n"_ba
            << u"2; cut -25.4 -25.4 0 / 25.4 25.4 0; rapid 25.4 0 0 / 25.4 0 0"_s;
        QTest::newRow("numbers") << head + "G0 X-.5 Y+1. Z0\nG0 X0001.2500 Y2\n"
                                 << u"2; cut none; rapid -0.5 1 0 / 1.25 2 0"_s;
        QTest::newRow("rotary only, offset move")
            << head + "G0 G43 Z15 H1\nG1 A90\n"
            << u"2; cut 0 0 15 / 0 0 15; rapid 0 0 15 / 0 0 15"_s;
        QTest::newRow("arc end within tolerance")
            << head + "G0 X10 Y0 Z0\nG3 X-10.004 I-10\n"
            << u"2; cut -10.004 0 0 / 10 10 0; rapid 10 0 0 / 10 0 0"_s;
        QTest::newRow("syntax")
            << "%\nN10 g21 g0 x 1 0 . 5 y-2 z0 (move) ; X99\r\n/G0 X3*57\n%\n"_ba
            << u"2; cut none; rapid 3 -2 0 / 10.5 -2 0"_s;
        QTest::newRow("machine coordinates") << head + "G0 X1 Y1 Z1\nG53 G0 Z40\nG28\nG1 X2\n"
                                             << u"3; cut 1 1 1 / 2 1 1; rapid 1 1 1 / 1 1 1"_s;
        QTest::newRow("after program end") << head + "G0 X1 Y1 Z1\nM30\nG0 X50\n"
                                           << u"1; cut none; rapid 1 1 1 / 1 1 1"_s;
        QTest::newRow("canned cycle skipped")
            << head + "G0 X1 Y1 Z1\nG81 X5 Z-3 R1\nX6\nG80 G0 X0\n"
            << u"2; cut none; rapid 0 1 1 / 1 1 1"_s;
    }
    void measuresMovesAndArcs() {
        QFETCH(QByteArray, program);
        QFETCH(QString, expected);
        QCOMPARE(geometry(analyse(program)), expected);
        // Lines may arrive split anywhere.
        QCOMPARE(geometry(analyse(program, 3)), expected);
    }

    void warnsBeforeSending_data() {
        QTest::addColumn<QByteArray>("program");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<bool>("partial");
        const QByteArray head = "G21 F100 M3 S1000\n";
        QTest::newRow("clean") << head + "G1 X1\n" << QString() << false;
        QTest::newRow("no units")
            << "G0 X1\n"_ba << u"The file sets no units (G20 or G21); millimetres are assumed. x1"_s
            << false;
        QTest::newRow("mixed units")
            << "G21\nG20\nG21\n"_ba << u"Line 2 switches between inches and millimetres. x1"_s
            << false;
        QTest::newRow("no spindle, no feed")
            << "G21\nG1 X1\nG2 X3 I1\n"_ba
            << u"Line 2 cuts while the spindle is stopped (no M3 or M4 before it). x2\n"
               u"Line 2 feeds before any feed rate (F) is set. x2"_s
            << false;
        QTest::newRow("spindle stopped")
            << head + "M5\nG1 X1\n"
            << u"Line 3 cuts while the spindle is stopped (no M3 or M4 before it). x1"_s << false;
        QTest::newRow("subroutine")
            << head + "O100 SUB\nM98 P100\n"
            << u"Line 2: O is not supported, so the analysis is partial. x1\n"
               u"Line 3: M98 is not supported, so the analysis is partial. x1"_s
            << true;
        QTest::newRow("parameters")
            << head + "#1=5\nG0 X#1\nG0 X[1+2]\n"
            << u"Line 2: # is not supported, so the analysis is partial. x1\n"
               u"Line 3: X# is not supported, so the analysis is partial. x1\n"
               u"Line 4: X[ is not supported, so the analysis is partial. x1"_s
            << true;
        QTest::newRow("canned cycle")
            << head + "G83 X1 Z-1 R1 Q1\nG41 D1\nG81 X2\n"
            << u"Line 2: G83 is not supported, so the analysis is partial. x1\n"
               u"Line 3: G41 is not supported, so the analysis is partial. x1\n"
               u"Line 4: G81 is not supported, so the analysis is partial. x1"_s
            << true;
        QTest::newRow("unknown words")
            << head + "G0 E5\nU1\nG7\nM7 M123\n"
            << u"Line 2: E is not supported, so the analysis is partial. x1\n"
               u"Line 3: U is not supported, so the analysis is partial. x1\n"
               u"Line 4: G7 is not supported, so the analysis is partial. x1\n"
               u"Line 5: M123 is not supported, so the analysis is partial. x1"_s
            << true;
        QTest::newRow("malformed")
            << head + "G1 X\nG1 X1 X2\nG1 (open\n$H\nG1.55\nG80 X1\n"
            << u"Line 2 is not understood near \"X\", so the analysis is partial. x2\n"
               u"Line 4 is not understood near \"(\", so the analysis is partial. x1\n"
               u"Line 5 is not understood near \"$\", so the analysis is partial. x1\n"
               u"Line 6: G1.55 is not supported, so the analysis is partial. x1\n"
               u"Line 7 is not understood near \"G80\", so the analysis is partial. x1"_s
            << true;
        QTest::newRow("bad arcs")
            << head + "G2 X10 R2\nG3 X0 I1 J1\nG2 X5\nG2 X5 R1\n"
            << u"Line 2 has an arc whose end point does not fit its radius or centre, so "
               u"the analysis is partial. x4"_s
            << true;
        QTest::newRow("machine moves")
            << head + "G28 G91 Z0\nG53 G0 Z0\nG30\n"
            << u"Line 2 moves in machine coordinates (G28); that move is not part of the extents. "
               u"x1\n"
               u"Line 3 moves in machine coordinates (G53); that move is not part of the extents. "
               u"x1\n"
               u"Line 4 moves in machine coordinates (G30); that move is not part of the extents. x1"_s
            << false;
        QTest::newRow("after end")
            << head + "M2\nG0 X1\n\n(note)\nM5\n"
            << u"Line 3 comes after the program's end (M2 or M30) and is not run. x2"_s << false;
        QTest::newRow("line too long")
            << head + QByteArray(GcodeAnalyser::maximumLineLength + 1, 'G') + "\nG1 X1\n"
            << u"Line 2 is not understood near \"GGGGGGGG\", so the analysis is partial. x1"_s
            << true;
    }
    void warnsBeforeSending() {
        QFETCH(QByteArray, program);
        QFETCH(QString, expected);
        QFETCH(bool, partial);
        const JobSummary summary = analyse(program, 7);
        QCOMPARE(warnings(summary), expected);
        QCOMPARE(summary.partial, partial);
    }

    void reportsToolsSpeedsFeedsAndTime() {
        const JobSummary summary =
            analyse("G21\nT1 M6\nS1000 M3\nG0 X0 Y0 Z0\nG0 X30\nG1 X90 F600\n"
                    "T2\nM6\nS12000\nG20 F10 X4\nM5\nS50\nT1 M6\nT3\n"_ba);
        QCOMPARE(summary.lines, 14);
        QCOMPARE(summary.tools, (QList<int>{1, 2}));
        QVERIFY(summary.spindle && summary.feed);
        QCOMPARE(*summary.spindle, (Range{1000, 12000}));
        QCOMPARE(*summary.feed, (Range{254, 600}));
        QCOMPARE(summary.units, Units::Mixed);
        QVERIFY(summary.usesAbsolute && !summary.usesIncremental);
        // 30 mm rapid at 3000 mm/min, 60 mm at 600 mm/min, 11.6 mm at 254 mm/min.
        QCOMPARE(summary.cuttingLength, 60 + 11.6);
        QCOMPARE(summary.estimatedSeconds, 0.6 + 6 + 11.6 / 254 * 60);
    }

    void countsLinesOfAnyEnding_data() {
        QTest::addColumn<QByteArray>("program");
        QTest::addColumn<qint64>("lines");
        QTest::newRow("empty") << QByteArray() << qint64(0);
        QTest::newRow("unterminated") << "G0 X1\nG0 X2"_ba << qint64(2);
        QTest::newRow("crlf, blank") << "G0 X1\r\n\r\nG0 X2\r\n"_ba << qint64(3);
    }
    void countsLinesOfAnyEnding() {
        QFETCH(QByteArray, program);
        QFETCH(qint64, lines);
        QCOMPARE(analyse(program, 1).lines, lines);
    }

    void keepsTheSketchWithinItsBudget() {
        GcodeAnalyser analyser(64);
        QByteArray program = "G21 F100 M3\nG0 X0 Y0\n";
        // A raster whose every other move is a rapid, and a last move far away.
        for (int row = 0; row < 5000; ++row)
            program +=
                u"G%1 X%2 Y%3\n"_s.arg(row % 2).arg(row % 2 ? 0 : 100).arg(row * 0.1).toLatin1();
        program += "G1 X-500 Y-500\n";
        analyser.feed(program.constData(), program.size());
        analyser.finish();
        const auto& vertices = analyser.sketch().vertices();
        QVERIFY2(vertices.size() <= 64, QByteArray::number(qulonglong(vertices.size())));
        QCOMPARE(vertices.front().x, 0.f);
        QCOMPARE(vertices.back().x, -500.f);
        QCOMPARE(vertices.back().stroke, PathSketch::Stroke::Cut);
    }

    void readsFilesAndStopsWhenCancelled() {
        QTemporaryFile file;
        QVERIFY(file.open());
        file.write("G21 G0 X1 Y2 Z3\n");
        file.close();
        std::atomic_bool cancelled{false};
        qint64 reported = 0;
        const auto outcome =
            analyseFile(file.fileName(), cancelled,
                        [&](qint64 done, qint64 total) { reported = done == total ? done : -1; });
        QVERIFY(outcome.analysis);
        QCOMPARE(box(outcome.analysis->summary.rapid), u"1 2 3 / 1 2 3"_s);
        QCOMPARE(reported, 16);
        cancelled = true;
        QVERIFY(!analyseFile(file.fileName(), cancelled).analysis);
        QVERIFY(!analyseFile(file.fileName() + u".gone"_s, cancelled).readError.isEmpty());
    }
};

QTEST_GUILESS_MAIN(GcodeAnalyserTest)
#include "GcodeAnalyserTest.moc"
