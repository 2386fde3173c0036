#include "UiHarness.h"
#include "gcode/GcodeAnalyser.h"
#include "ui/ElidedLabel.h"
#include "ui/FileJobAnalyser.h"
#include "ui/JobPreviewTexts.h"
#include "ui/JobPreviewView.h"
#include "ui/MachineLimitsDialog.h"
#include "ui/PathColours.h"
#include "ui/Style.h"
#include "ui/ToolpathRaster.h"
#include "ui/ToolpathView.h"
#include "ui/UploadConfirmationView.h"

#include <QDoubleSpinBox>
#include <QPushButton>
#include <QTest>

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace tarnwick::ui;
using namespace Qt::StringLiterals;

namespace {

const QLocale english(QLocale::English, QLocale::UnitedStates);

QString facts(const QList<JobPreviewTexts::Row>& rows) {
    QStringList lines;
    for (const JobPreviewTexts::Row& row : rows)
        lines << row.label + u": "_s + row.value;
    return lines.join(u'\n');
}

// The colour of the shallowest cut in the widget's palette.
QColor shallowest(const QWidget* widget) {
    return PathColours(style::accent(widget), style::secondaryText(widget),
                       style::panelFill(widget))
        .depth(0);
}

} // namespace

class JobPreviewTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(english); }

    // Millimetres, then inches without tools.
    void showsFactsInTheFilesUnits() {
        const std::pair<QByteArray, QString> cases[] = {
            {"G21 T2 M6 S9000 M3\nG0 X0 Y0 Z5\nG1 Z-1.5 F300\nG1 X120 Y80\nS12000 G91 X1\n"_ba,
             u"Cuts: 121.0 × 80.0 × 6.5 mm\nRapid moves: 0.0 × 0.0 × 0.0 mm\n"
             u"Units: Millimetres, absolute and incremental\nTools: T2\n"
             u"Spindle: 9,000 to 12,000 rpm\nFeed: 300 mm/min\nTime: about 30 s\n"
             u"Moves: 4\nLines: 5"_s},
            {"G20 F20\nG0 X0 Y0 Z0.1\nG1 X2 Y1 Z-0.4\n"_ba,
             u"Cuts: 2.000 × 1.000 × 0.500 in (50.8 × 25.4 × 12.7 mm)\n"
             u"Rapid moves: 0.000 × 0.000 × 0.000 in (0.0 × 0.0 × 0.0 mm)\n"
             u"Units: Inches, absolute\nTools: None\nSpindle: None\n"
             u"Feed: 20.0 in/min\nTime: about 7 s\nMoves: 2\nLines: 3"_s},
            // What a partial analysis did not find may be in the part it could not read.
            {"G21\nG0 X0 Y0 Z5\nU1\n"_ba,
             u"Cuts: Not known: line 3 uses U\nRapid moves: 0.0 × 0.0 × 0.0 mm\n"
             u"Units: Millimetres, absolute\nTools: Not known: line 3 uses U\n"
             u"Spindle: Not known: line 3 uses U\nFeed: Not known: line 3 uses U\n"
             u"Time: Not known: line 3 uses U\nMoves: 1\nLines: 3"_s}};
        for (const auto& [program, expected] : cases) {
            gcode::GcodeAnalyser analyser;
            analyser.feed(program.constData(), program.size());
            QCOMPARE(facts(JobPreviewTexts::rows(analyser.finish(), english)), expected);
        }
    }

    // Out-and-back paths and the ends of arcs reach the pixels: at 2 px per mm, each listed
    // point of the path is drawn as a cut.
    void drawsEveryMotion_data() {
        QTest::addColumn<QByteArray>("program");
        QTest::addColumn<QList<QPointF>>("drawn");
        const QByteArray head = "G21 M3 S1000 F100\nG0 X0 Y0 Z1\n";
        QTest::newRow("ramping slot")
            << head + "G1 Z0\nG1 X50 Z-0.5\nG1 X0 Z-1\nG1 X50 Z-1.5\nG1 X0 Z-2\n"
            << QList<QPointF>{{25, 0}, {50, 0}};
        QTest::newRow("out and back") << head + "G1 X30 Y20\nG1 X0 Y0\n"
                                      << QList<QPointF>{{15, 10}, {30, 20}};
        QTest::newRow("semicircle and back") << head + "G2 X40 Y0 I20\nG3 X0 Y0 I-20\n"
                                             << QList<QPointF>{{20, 20}, {40, 0}};
        QTest::newRow("full circle") << head + "G0 X40 Y20\nG2 I-20\n"
                                     << QList<QPointF>{{0, 20}, {20, 40}, {40, 20}, {20, 0}};
    }
    void drawsEveryMotion() {
        QFETCH(QByteArray, program);
        QFETCH(QList<QPointF>, drawn);
        gcode::GcodeAnalyser analyser;
        analyser.feed(program.constData(), program.size());
        analyser.finish();
        QTransform toPixels;
        toPixels.translate(10, 10).scale(2, 2);
        // Red stays red over white, and one depth colours every cut.
        const PathColours colours(Qt::red, Qt::gray, Qt::white);
        const QImage image =
            rasteriseToolpath(analyser.sketch().vertices(), toPixels, {120, 100}, colours, 0, 0);
        for (const QPointF& point : drawn)
            QCOMPARE(image.pixelColor(toPixels.map(point).toPoint()), QColor(Qt::red));
    }

    // The shallowest cut takes one end of the scale and the deepest the other.
    void coloursCutsByDepth() {
        gcode::GcodeAnalyser analyser;
        const QByteArray program =
            "G21 M3 F100\nG0 X0 Y0 Z0\nG1 X40\nG0 Z5\nG0 Y20\nG1 Z-5\nG1 X0\n";
        analyser.feed(program.constData(), program.size());
        analyser.finish();
        QTransform toPixels;
        toPixels.translate(10, 10).scale(2, 2);
        const PathColours colours(QColor(0x0a84ff), Qt::gray, QColor(0x323232));
        const QImage image =
            rasteriseToolpath(analyser.sketch().vertices(), toPixels, {120, 80}, colours, 0, -5);
        QCOMPARE(image.pixelColor(toPixels.map(QPointF(20, 0)).toPoint()), colours.depth(0));
        QCOMPARE(image.pixelColor(toPixels.map(QPointF(20, 20)).toPoint()), colours.depth(1));
        QVERIFY(colours.depth(0) != colours.depth(1));
    }

    // Cuts at both ends of the depth scale and rapid moves stand out from the background by at
    // least 3:1, whatever the palette's own accent and secondary colours.
    void keepsTheContrast_data() {
        QTest::addColumn<QColor>("accent");
        QTest::addColumn<QColor>("secondary");
        QTest::addColumn<QColor>("background");
        QTest::newRow("dark") << QColor(0x0a84ff) << QColor(0x8d8d93) << QColor(0x323232);
        QTest::newRow("dark, dim accent")
            << QColor(0x1d3b8a) << QColor(0x5a5a5a) << QColor(0x3a3a3a);
        QTest::newRow("light, pale accent")
            << QColor(0x9ad0ff) << QColor(0xc8c8c8) << QColor(0xf4f4f4);
    }
    void keepsTheContrast() {
        QFETCH(QColor, accent);
        QFETCH(QColor, secondary);
        QFETCH(QColor, background);
        QCOMPARE(contrastRatio(Qt::black, Qt::white), 21.0);
        const PathColours colours(accent, secondary, background);
        for (const QColor& colour :
             {colours.depth(0), colours.depth(0.5), colours.depth(1), colours.rapid()})
            QVERIFY2(contrastRatio(colour, background) >= 3, qPrintable(colour.name()));
    }

    // The point under the cursor stays there as the view zooms and pans; a double click fits the
    // whole path again, and the keys zoom and pan about the centre.
    void zoomsAndPansAboutTheCursor() {
        gcode::GcodeAnalyser analyser;
        const QByteArray program = "G21 M3 S1000 F100\nG0 X0 Y0 Z1\nG1 X100 Y60\nG1 X0\n";
        analyser.feed(program.constData(), program.size());
        analyser.finish();
        ToolpathView view;
        view.resize(400, 300);
        view.setPath(analyser.sketch().vertices());
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        const QPointF corner(100, 60);
        const QPointF fitted = view.mapFromPath(corner);
        const auto drawnAt = [&](QPointF position) {
            return view.grab().toImage().pixelColor(position.toPoint()) == shallowest(&view);
        };
        QVERIFY(drawnAt(fitted));

        const qreal reach = QLineF(view.mapFromPath({}), fitted).length();
        QWheelEvent wheel(fitted, view.mapToGlobal(fitted), {}, {0, 480}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&view, &wheel);
        QCOMPARE(view.mapFromPath(corner), fitted);
        QVERIFY(QLineF(view.mapFromPath({}), fitted).length() > 1.9 * reach);
        QVERIFY(drawnAt(fitted));

        const QPoint target(120, 200);
        QTest::mousePress(&view, Qt::LeftButton, {}, fitted.toPoint());
        QTest::mouseMove(&view, target);
        QTest::mouseRelease(&view, Qt::LeftButton, {}, target);
        // The mouse moves in whole pixels.
        const QPointF dragged = target + fitted - fitted.toPoint();
        QCOMPARE(view.mapFromPath(corner), dragged);
        QVERIFY(drawnAt(dragged));

        QTest::mouseDClick(&view, Qt::LeftButton, {}, target);
        QCOMPARE(view.mapFromPath(corner), fitted);

        const QPointF centre(200, 150);
        const QPointF middle = view.mapToPath(centre);
        QTest::keyClick(&view, Qt::Key_Plus);
        QCOMPARE(view.mapFromPath(middle), centre);
        QTest::keyClick(&view, Qt::Key_Left);
        QCOMPARE(view.mapFromPath(middle), centre + QPointF(40, 0));
        QTest::keyClick(&view, Qt::Key_0);
        QCOMPARE(view.mapFromPath(corner), fitted);
    }

    void roundsTheTime() {
        const std::pair<double, const char*> cases[] = {
            {59.4, "59 s"}, {89.0, "1 min"}, {4320.0, "1 h 12 min"}};
        for (const auto& [seconds, text] : cases)
            QCOMPARE(JobPreviewTexts::duration(seconds, english), QString::fromLatin1(text));
    }

    // The view follows each new choice; the path is drawn from above and from the front, and long
    // rows keep to the window's width.
    void followsTheChosenFile() {
        ModelHarness h;
        h.model->setJobAnalyser(std::make_unique<FileJobAnalyser>());
        JobPreviewView view(*h.model);
        view.resize(640, 300);
        view.show();
        QCOMPARE(shownText(&view, u"previewStatus"_s),
                 u"Choose a job file to see what it will cut."_s);

        h.model->chooseFile(JobFile::fromUrl(writeFile(h.dir, u"a.nc"_s, "G1 X9\n")).value());
        QPointer<JobAnalysis> first = h.model->jobAnalysis();
        h.model->chooseFile(
            JobFile::fromUrl(
                writeFile(h.dir, u"b.nc"_s, "G21 M3 F100\nG0 X0 Y0 Z0\nG1 X50 Y20\nO7\n"))
                .value());
        QVERIFY(first.isNull());
        QTRY_VERIFY(shownText(&view, u"previewFact"_s)
                        .startsWith(u"50.0 × 20.0 × 0.0 mm|0.0 × 0.0 × 0.0 mm|"_s));
        QCOMPARE(shownText(&view, u"previewWarnings"_s),
                 JobPreviewTexts::partialNote() +
                     u"\nLine 4: O is not supported, so the analysis is partial."_s);
        // Every cut is as deep as the shallowest, from above and from the front.
        const QColor shallow = shallowest(&view);
        for (const QString& name : {u"toolpath"_s, u"sideView"_s}) {
            const QImage drawing = view.findChild<QWidget*>(name)->grab().toImage();
            bool drawn = false;
            for (int y = 0; y < drawing.height() && !drawn; ++y)
                for (int x = 0; x < drawing.width() && !drawn; ++x)
                    drawn = drawing.pixelColor(x, y) == shallow;
            QVERIFY2(drawn, qPrintable(name));
        }

        // Twenty tools elide, whole in the tooltip, and never widen the window.
        const int least = view.minimumSizeHint().width();
        QByteArray program = "G21 M3 F100\nG0 X0 Y0 Z0\nG1 X50 Y20\nO7\n";
        for (int tool = 1; tool <= 20; ++tool)
            program += "T" + QByteArray::number(tool * 1000) + " M6\n";
        h.model->chooseFile(JobFile::fromUrl(writeFile(h.dir, u"c.nc"_s, program)).value());
        QTRY_VERIFY([&view] {
            const auto facts = view.findChildren<ElidedLabel*>(u"previewFact"_s);
            return std::any_of(facts.begin(), facts.end(), [](const ElidedLabel* fact) {
                return fact->toolTip().startsWith(u"T1000, T2000, "_s);
            });
        }());
        QCOMPARE(view.minimumSizeHint().width(), least);

        QFile::remove(h.model->selectedFile()->url.toLocalFile());
        h.model->chooseFile(*h.model->selectedFile());
        QTRY_VERIFY(
            shownText(&view, u"previewStatus"_s).startsWith(u"The file could not be read: "_s));
    }

    // Limits entered for one machine are kept by its identity; the preview and the sheet then
    // say in one line that the job does not fit it, and Upload stays enabled.
    void saysWhenTheJobDoesNotFitTheMachine() {
        WindowHarness h;
        h.model->setJobAnalyser(std::make_unique<FileJobAnalyser>());
        QVERIFY(h.show());
        const Machine mill = ModelHarness::machine(u"Bench Mill"_s, u"10.0.0.7"_s);
        h.selectFound(mill);
        QTest::mouseClick(child<QPushButton>(&h.window, u"machineLimitsButton"_s), Qt::LeftButton);
        auto* dialog = waitForWindow<MachineLimitsDialog>(u"machineLimits"_s);
        QVERIFY(dialog);
        child<QDoubleSpinBox>(dialog, u"travelX"_s)->setValue(360);
        child<QDoubleSpinBox>(dialog, u"travelY"_s)->setValue(200);
        auto* save = child<QPushButton>(dialog, u"saveLimitsButton"_s);
        QVERIFY(!save->isEnabled());
        child<QDoubleSpinBox>(dialog, u"travelZ"_s)->setValue(100);
        child<QSpinBox>(dialog, u"toolPositions"_s)->setValue(6);
        QTest::mouseClick(save, Qt::LeftButton);
        QTRY_COMPARE(gcode::limitsFromJson(h.model->persistence().machineLimits(mill.id())),
                     std::optional(gcode::MachineLimits{{360, 200, 100}, {}, 6, {}}));

        const QString span = u"The cuts span 412.0 mm in X; this machine travels 360.0 mm."_s;
        h.model->chooseFile(
            JobFile::fromUrl(
                writeFile(h.dir, u"wide.nc"_s, "G21 T7 M6 S9000 M3\nG0 X0 Y0 Z0\nG1 X412 F500\n"))
                .value());
        QTRY_COMPARE(shownText(&h.window, u"previewFit"_s),
                     u"This job does not fit Bench Mill. "_s + span);
        QCOMPARE(shownText(&h.window, u"previewWarnings"_s),
                 span + u"\nThe job uses tool T7; this machine's tool changer goes up to T6."_s);
        h.model->prepareUpload();
        auto* sheet = waitForWindow<UploadConfirmationView>(u"uploadConfirmation"_s);
        QVERIFY(sheet);
        QCOMPARE(shownText(sheet, u"sheetFit"_s), u"This job does not fit Bench Mill. "_s + span);
        QVERIFY(child<QPushButton>(sheet, u"uploadButton"_s)->isEnabled());
        sheet->reject();

        // Another machine has no limits, so nothing is checked.
        h.selectFound(ModelHarness::machine(u"Lathe"_s, u"10.0.0.8"_s));
        QCOMPARE(shownText(&h.window, u"previewFit"_s) + shownText(&h.window, u"previewWarnings"_s),
                 u"<0 shown><0 shown>"_s);
    }
};

QTEST_MAIN(JobPreviewTest)
#include "JobPreviewTest.moc"
