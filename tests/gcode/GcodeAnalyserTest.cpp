#include "gcode/GcodeAnalyser.h"

#include "gcode/FileAnalysis.h"
#include "gcode/MachineFit.h"

#include <QTemporaryFile>
#include <QTest>

#include <numbers>
#include <numeric>

using namespace tarnwick::gcode;
using namespace Qt::StringLiterals;
using enum Warning::Kind;

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

} // namespace

namespace tarnwick::gcode {

// A failing comparison of warnings shows what the user would read.
char* toString(const Warning& warning) {
    return QTest::toString(warning.description() + u" x%1"_s.arg(warning.occurrences));
}

} // namespace tarnwick::gcode

class GcodeAnalyserTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The start of the first move on an axis is unknown, so it is never part of a box.
    void measuresMovesAndArcs_data() {
        QTest::addColumn<QByteArray>("program");
        QTest::addColumn<QString>("expected");
        const QByteArray head = "G21 G90 G17 F100 M3 S1000\n";
        // Arcs after a rapid to X10 Y0 Z0 or to the origin, the rapid box being that one point.
        const auto fromX10 = [&](const char* name, const char* arc, const char* cut) {
            QTest::newRow(name) << head + "G0 X10 Y0 Z0\n" + arc + '\n'
                                << u"2; cut %1; rapid 10 0 0 / 10 0 0"_s.arg(QLatin1String(cut));
        };
        const auto fromOrigin = [&](const char* name, const char* mode, const char* arc,
                                    const char* cut) {
            QTest::newRow(name) << head + mode + "G0 X0 Y0 Z0\n" + arc + '\n'
                                << u"2; cut %1; rapid 0 0 0 / 0 0 0"_s.arg(QLatin1String(cut));
        };
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
        fromX10("G17 IJ clockwise", "G2 X0 Y10 I-10 J0", "-10 -10 0 / 10 10 0");
        fromX10("G17 IJ counter", "G3 X0 Y10 I-10", "0 0 0 / 10 10 0");
        fromX10("G17 R short", "G2 X0 Y10 R10", "0 0 0 / 10 10 0");
        fromX10("G17 R long", "G2 X0 Y10 R-10", "-10 -10 0 / 10 10 0");
        fromX10("full circle", "G2 I-10", "-10 -10 0 / 10 10 0");
        fromX10("helix", "G3 X10 Y0 Z-2 I-10 J0", "-10 -10 -2 / 10 10 0");
        fromX10("second turn", "G3 X0 Y10 I-10 P2", "-10 -10 0 / 10 10 0");
        fromX10("arc end within tolerance", "G3 X-10.004 I-10", "-10.004 0 0 / 10 10 0");
        fromOrigin("G18 IK", "G18 ", "G2 X10 I5 K0", "0 0 -5 / 10 0 0");
        fromOrigin("G18 R", "G18 ", "G3 X10 R5", "0 0 0 / 10 0 5");
        fromOrigin("G19 JK", "G19 ", "G2 Y10 J5", "0 0 0 / 0 10 5");
        fromOrigin("G19 R", "G19 ", "G3 Y10 R5", "0 0 -5 / 0 10 0");
        fromOrigin("incremental arc", "", "G91 G3 X-10 Y10 I-10", "-10 0 0 / 0 10 0");
        QTest::newRow("absolute centre") << head + "G90.1 G0 X10 Y10 Z0\nG2 I5 J10\n"
                                         << u"2; cut 0 5 0 / 10 15 0; rapid 10 10 0 / 10 10 0"_s;
        QTest::newRow("inch arc")
            << "G20 M3 F1\nG0 X1 Y0 Z0\nG2 I-1\n"_ba
            << u"2; cut -25.4 -25.4 0 / 25.4 25.4 0; rapid 25.4 0 0 / 25.4 0 0"_s;
        QTest::newRow("numbers") << head + "G0 X-.5 Y+1. Z0\nG0 X0001.2500 Y2\n"
                                 << u"2; cut none; rapid -0.5 1 0 / 1.25 2 0"_s;
        QTest::newRow("rotary only, offset move")
            << head + "G0 G43 Z15 H1\nG1 A90\n"
            << u"2; cut 0 0 15 / 0 0 15; rapid 0 0 15 / 0 0 15"_s;
        QTest::newRow("syntax")
            << "%\nN10 g21 g0 x 1 0 . 5 y-2 z0 (move) ; X99\r\n/G0 X3*57\n%\n"_ba
            << u"2; cut none; rapid 3 -2 0 / 10.5 -2 0"_s;
        QTest::newRow("classic Mac line ends") << "G21 M3 F100\rG0 X1 Y1 Z0\rG1 X2\r"_ba
                                               << u"2; cut 1 1 0 / 2 1 0; rapid 1 1 0 / 1 1 0"_s;
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

    // The one place where the warnings' texts are spelled out; the kinds that leave the analysis
    // partial say so.
    void warningTexts() {
        const std::pair<Warning, const char*> rows[] = {
            {{NoUnits, 0, {}}, "The file sets no units (G20 or G21); millimetres are assumed."},
            {{MixedUnits, 2, {}}, "Line 2 switches between inches and millimetres."},
            {{FeedBeforeFeedRate, 3, {}}, "Line 3 feeds before any feed rate (F) is set."},
            {{ZeroFeed, 3, {}}, "Line 3 feeds at a feed rate of zero (F0)."},
            {{NegativeFeed, 3, u"F-5"_s},
             "Line 3 sets a negative feed rate (F-5), which is left out of the feeds."},
            {{CutWithSpindleStopped, 4, {}},
             "Line 4 cuts while the spindle is stopped (no M3 or M4 before it)."},
            {{Unsupported, 5, u"M98"_s},
             "Line 5: M98 is not supported, so the analysis is partial."},
            {{Malformed, 6, u"$"_s},
             "Line 6 is not understood near \"$\", so the analysis is partial."},
            {{InvalidArc, 7, {}},
             "Line 7 has an arc whose end point does not fit its radius or "
             "centre, so the analysis is partial."},
            {{MachineCoordinates, 8, u"G28"_s},
             "Line 8 moves in machine coordinates (G28); that move is not part of the extents."},
            {{AfterProgramEnd, 9, {}},
             "Line 9 comes after the program's end (M2 or M30) and is not run."},
        };
        for (const auto& [warning, text] : rows) {
            QCOMPARE(warning.description(), QString::fromUtf8(text));
            QCOMPARE(warning.makesPartial(), warning.description().endsWith(u"partial."));
        }
    }

    // Each warning once per kind and line, with the word it is about and how often it recurs.
    void warnsBeforeSending_data() {
        QTest::addColumn<QByteArray>("program");
        QTest::addColumn<QList<Warning>>("expected");
        const QByteArray head = "G21 F100 M3 S1000\n";
        const auto row = [](const char* name, const QByteArray& program,
                            const QList<Warning>& expected) {
            QTest::newRow(name) << program << expected;
        };
        row("clean", head + "G1 X1\n", {});
        row("no units", "G0 X1\n", {{NoUnits, 0, {}}});
        row("mixed units", "G21\nG20\nG21\n", {{MixedUnits, 2, {}}});
        row("no spindle, no feed", "G21\nG1 X1\nG2 X3 I1\n",
            {{CutWithSpindleStopped, 2, {}, 2}, {FeedBeforeFeedRate, 2, {}, 2}});
        row("zero and negative feed", "G21 M3\nG1 X1 F0\nG1 X2 F-5\n",
            {{ZeroFeed, 2, {}, 2}, {NegativeFeed, 3, u"F-5"_s}});
        row("spindle stopped", head + "M5\nG1 X1\n", {{CutWithSpindleStopped, 3, {}}});
        row("subroutine", head + "O100 SUB\nM98 P100\n",
            {{Unsupported, 2, u"O"_s}, {Unsupported, 3, u"M98"_s}});
        row("parameters", head + "#1=5\nG0 X#1\nG0 X[1+2]\n",
            {{Unsupported, 2, u"#"_s}, {Unsupported, 3, u"X#"_s}, {Unsupported, 4, u"X["_s}});
        row("canned cycle", head + "G83 X1 Z-1 R1 Q1\nG41 D1\nG81 X2\n",
            {{Unsupported, 2, u"G83"_s}, {Unsupported, 3, u"G41"_s}, {Unsupported, 4, u"G81"_s}});
        row("unknown words", head + "G0 E5\nU1\nG7\nM7 M123\n",
            {{Unsupported, 2, u"E"_s},
             {Unsupported, 3, u"U"_s},
             {Unsupported, 4, u"G7"_s},
             {Unsupported, 5, u"M123"_s}});
        row("malformed", head + "G1 X\nG1 X1 X2\nG1 (open\n$H\nG1.55\nG80 X1\nG2 I1 P1.5\n",
            {{Malformed, 2, u"X"_s, 2},
             {Malformed, 4, u"("_s},
             {Malformed, 5, u"$"_s},
             {Unsupported, 6, u"G1.55"_s},
             {Malformed, 7, u"G80"_s},
             {Malformed, 8, u"P"_s}});
        row("codes beyond any controller's", head + "G300000000 X1\nM999999999\nG-1\n",
            {{Malformed, 2, u"G"_s, 2}, {Malformed, 3, u"M"_s}});
        row("bad arcs", head + "G2 X10 R2\nG3 X0 I1 J1\nG2 X5\nG2 X5 R1\n",
            {{InvalidArc, 2, {}, 4}});
        row("machine moves", head + "G28 G91 Z0\nG53 G0 Z0\nG30\n",
            {{MachineCoordinates, 2, u"G28"_s},
             {MachineCoordinates, 3, u"G53"_s},
             {MachineCoordinates, 4, u"G30"_s}});
        row("after end", head + "M2\nG0 X1\n\n(note)\nM5\n", {{AfterProgramEnd, 3, {}, 2}});
        row("line too long",
            head + QByteArray(GcodeAnalyser::maximumLineLength + 1, 'G') + "\nG1 X1\n",
            {{Malformed, 2, u"GGGGGGGG"_s}});
    }
    void warnsBeforeSending() {
        QFETCH(QByteArray, program);
        QFETCH(QList<Warning>, expected);
        const JobSummary summary = analyse(program, 7);
        QCOMPARE(summary.warnings, expected);
        QCOMPARE(summary.partial, std::any_of(expected.begin(), expected.end(),
                                              [](const Warning& w) { return w.makesPartial(); }));
    }

    void reportsToolsSpeedsFeedsAndTime() {
        const JobSummary summary =
            analyse("G21\nT1 M6\nS1000 M3\nG0 X0 Y0 Z0\nG0 X30\nG1 X90 F600\n"
                    "T2\nM6\nS12000\nG20 F10 X4\nM5\nS50\nT1 M6\nT3\nF-5\n"_ba);
        QCOMPARE(summary.lines, 15);
        QCOMPARE(summary.tools, (QList<int>{1, 2}));
        QVERIFY(summary.spindle && summary.feed);
        QCOMPARE(*summary.spindle, (Range{1000, 12000}));
        QCOMPARE(*summary.feed, (Range{254, 600}));
        QCOMPARE(summary.units, Units::Mixed);
        QVERIFY(summary.usesAbsolute && !summary.usesIncremental);
        // 30 mm rapid at 3000 mm/min, 60 mm at 600 mm/min, 11.6 mm at 254 mm/min.
        QCOMPARE(summary.cuttingLength, 60 + 11.6);
        QCOMPARE(summary.estimatedSeconds, 0.6 + 6 + 11.6 / 254 * 60);
        // Extra turns are full circles; each of many tools is listed once, in order.
        QCOMPARE(analyse("G21 G0 X10 Y0\nG3 I-10 P3\n"_ba).cuttingLength, 60 * std::numbers::pi);
        QByteArray changes;
        for (int change = 0; change < 20'000; ++change)
            changes += "T" + QByteArray::number(2000 - change % 2000) + " M6\n";
        QList<int> descending(2000);
        std::iota(descending.rbegin(), descending.rend(), 1);
        QCOMPARE(analyse(changes).tools, descending);
    }

    void checksTheFit_data() {
        QTest::addColumn<QByteArray>("program");
        QTest::addColumn<std::optional<MachineLimits>>("limits");
        QTest::addColumn<std::optional<QStringList>>("expected");
        // Cuts 412 × 10 × 6 mm away from the origin, tool 7 at 24000 rpm and 5000 mm/min.
        const QByteArray job = "G21 T7 M6 S24000 M3\nG0 X1000 Y-50 Z5\nG1 Z-1 F5000\n"
                               "G1 X1412 Y-40\n";
        const MachineLimits roomy{{500, 500, 100}, 24000, 8, 5000};
        const auto with = [&](auto change) {
            MachineLimits limits = roomy;
            change(limits);
            return std::optional(limits);
        };
        const QString span = u"The cuts span 412.0 mm in X; this machine travels 360.0 mm."_s;
        const QString tool = u"The job uses tool T7; this machine's tool changer goes up to T6."_s;
        const QString rpm = u"The job turns the spindle at 24,000 rpm; this machine reaches "
                            u"18,000 rpm."_s;
        const QString feed =
            u"The job feeds at 5,000 mm/min; this machine feeds at most 4,000 mm/min."_s;
        QTest::newRow("no limits, no check")
            << job << std::optional<MachineLimits>() << std::optional<QStringList>();
        QTest::newRow("fits at the limits")
            << job << std::optional(roomy) << std::optional(QStringList());
        QTest::newRow("span") << job << with([](auto& l) { l.travel.x = 360; })
                              << std::optional(QStringList{span});
        QTest::newRow("tool") << job << with([](auto& l) { l.toolPositions = 6; })
                              << std::optional(QStringList{tool});
        QTest::newRow("spindle") << job << with([](auto& l) { l.highestSpindleRpm = 18000; })
                                 << std::optional(QStringList{rpm});
        QTest::newRow("feed") << job << with([](auto& l) { l.highestFeed = 4000; })
                              << std::optional(QStringList{feed});
        QTest::newRow("optional ones left out")
            << job << std::optional(MachineLimits{{500, 500, 100}, {}, {}, {}})
            << std::optional(QStringList());
        QTest::newRow("all") << job << std::optional(MachineLimits{{360, 5, 2}, 18000, 6, 4000})
                             << std::optional(QStringList{
                                    span,
                                    u"The cuts span 10.0 mm in Y; this machine travels "
                                    u"5.0 mm."_s,
                                    u"The cuts span 6.0 mm in Z; this machine travels 2.0 mm."_s,
                                    tool, rpm, feed});
        // 10 inches are 254 mm, and 100 inches a minute 2540 mm.
        QTest::newRow("inches")
            << "G20 G0 X0 Y0 Z0\nG1 X10 F100\n"_ba
            << std::optional(MachineLimits{{250, 1, 1}, {}, {}, 2000})
            << std::optional(QStringList{
                   u"The cuts span 254.0 mm in X; this machine travels 250.0 mm."_s,
                   u"The job feeds at 2,540 mm/min; this machine feeds at most 2,000 mm/min."_s});
    }
    void checksTheFit() {
        QFETCH(QByteArray, program);
        QFETCH(std::optional<MachineLimits>, limits);
        QFETCH(std::optional<QStringList>, expected);
        QCOMPARE(fitProblems(analyse(program), limits, QLocale(QLocale::English)), expected);
    }

    // Empty, unterminated, CR LF with a blank line, and CR alone.
    void countsLinesOfAnyEnding() {
        QCOMPARE(QList<qint64>({analyse({}, 1).lines, analyse("G0 X1\nG0 X2", 1).lines,
                                analyse("G0 X1\r\n\r\nG0 X2\r\n", 1).lines,
                                analyse("G0 X1\rG0 X2\r\rG0 X3", 1).lines}),
                 QList<qint64>({0, 2, 3, 4}));
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
