#include "CliRun.h"
#include "support/TestFiles.h"

using namespace tarnwick::testing;
using namespace Qt::StringLiterals;

class InspectCommandTest : public QObject {
    Q_OBJECT

    QTemporaryDir dir;

private Q_SLOTS:
    void run_data() {
        const QString job = writeFile(dir, u"job.nc"_s,
                                      "G20 T3 M6 S8000 M3\nG0 X0 Y0 Z0.5\nG1 Z-0.1 F10\n"
                                      "G2 X1 Y1 R-1\nM30\n")
                                .toLocalFile();
        const QString empty = writeFile(dir, u"empty.gcode"_s, {}).toLocalFile();
        const QString text = writeFile(dir, u"notes.txt"_s, "G0 X1\n").toLocalFile();
        cliColumns();
        // Inches in, millimetres out; the long arc swings out to X -1 and Y 2 inches.
        cliRow("json", u"inspect --json "_s + job, 0,
               uR"({"cutting":{"max":[25.4,50.8,12.7],"min":[-25.4,0,-2.54]},)"
               uR"("estimatedSeconds":31.9,"feed":{"max":254,"min":254},"lines":5,"motions":3,)"
               uR"("partial":false,"rapid":{"max":[0,0,12.7],"min":[0,0,12.7]},)"
               uR"("spindle":{"max":8000,"min":8000},"tools":[3],"units":"inch","warnings":[]})"
               u"\n"_s);
        cliRow(
            "empty json", u"inspect "_s + empty + u" --json"_s, 0,
            uR"({"cutting":null,"estimatedSeconds":0,"feed":null,"lines":0,"motions":0,)"
            uR"("partial":false,"rapid":null,"spindle":null,"tools":[],"units":null,"warnings":[]})"
            u"\n"_s);
        cliRow("unusable", u"inspect "_s + text, 2, {},
               u"The .txt extension is not supported. Choose an .nc, .cnc or .gcode file.\n"_s);
        cliRow("no file", u"inspect"_s, 2, {}, u"Usage: tarnwick-cli inspect FILE [--json]\n"_s);
    }
    void run() { compareCliRun(); }
};

QTEST_GUILESS_MAIN(InspectCommandTest)
#include "InspectCommandTest.moc"
