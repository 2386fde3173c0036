#include "BuildConfig.h"
#include "app/AppPersistence.h"
#include "app/Errors.h"
#include "app/SettingsStore.h"
#include "app/UploadAdvice.h"
#include "cli/ExitCode.h"
#include "cli/ProgressBar.h"
#include "discovery/Announcer.h"
#include "gcode/MachineFit.h"
#include "support/SimProcess.h"
#include "support/TestFiles.h"
#include "update/FeedServer.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSet>
#include <QSettings>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <functional>
#include <list>
#include <memory>
#include <tuple>
#include <utility>

#ifdef Q_OS_UNIX
#include <csignal>
#endif

using namespace tarnwick;
using namespace tarnwick::cli;
using namespace tarnwick::testing;
using namespace Qt::StringLiterals;
using Phase = TransferProgress::Phase;

namespace {

struct CliResult {
    int exitCode = -1;
    QString out;
    QString err;

    QStringList all() const { return {QString::number(exitCode), out, err}; }
    QList<QJsonObject> jsonLines() const {
        QList<QJsonObject> lines;
        for (const QString& line : out.split(u'\n', Qt::SkipEmptyParts))
            lines.append(QJsonDocument::fromJson(line.toUtf8()).object());
        return lines;
    }
};

// tarnwick-cli with a settings store of its own, kept across the runs of one object.
class Cli {
public:
    std::unique_ptr<QSettings> store() const { return settings::openStoreFile(storePath()); }

    // Runs the tool to its end (at most 30 s, else exit code -1) while this thread's event loop
    // turns, calling whileRunning every 50 ms.
    CliResult run(const QStringList& arguments,
                  const std::function<void(QProcess&)>& whileRunning = {}) const {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("TARNWICK_SETTINGS_FILE"), storePath());
        // The texts and numbers compared are the English ones, whatever the user's locale.
        environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
        environment.insert(QStringLiteral("TARNWICK_LANGUAGE"), QStringLiteral("en_US"));
        process.setProcessEnvironment(environment);
        process.start(qEnvironmentVariable("TARNWICK_BIN_DIR") + u"/tarnwick-cli", arguments);
        for (int wait = 0; wait < 600 && process.state() != QProcess::NotRunning; ++wait) {
            QTest::qWait(50);
            if (whileRunning && process.state() == QProcess::Running)
                whileRunning(process);
        }
        process.kill();
        process.waitForFinished();
        if (process.exitStatus() != QProcess::NormalExit)
            return {};
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

private:
    QString storePath() const { return m_config.filePath(QStringLiteral("settings.ini")); }

    QTemporaryDir m_config;
};

// A row of runs: the arguments, separated by blanks, and the whole result expected.
void cliRow(const char* name, const QString& arguments, int exitCode, const QString& out,
            const QString& err = {}) {
    QTest::newRow(name) << arguments.split(u' ', Qt::SkipEmptyParts)
                        << CliResult{exitCode, out, err}.all();
}

QString at(quint16 port) {
    return u"127.0.0.1:%1"_s.arg(port);
}

// Sends the signal once, when every simulator has received a chunk: a second signal ends the
// tool at once, and a slow build may still be cancelling when the next poll comes.
std::function<void(QProcess&)> signalWhenSending(const QList<SimProcess*>& sims, int signal) {
    auto sent = std::make_shared<bool>(false);
    return [sims, signal, sent](QProcess& cli) {
        if (*sent || !std::all_of(sims.begin(), sims.end(), [](SimProcess* sim) {
                return sim->loggedTypes().contains(u"fileData"_s);
            }))
            return;
        *sent = true;
#ifdef Q_OS_UNIX
        ::kill(pid_t(cli.processId()), signal);
#else
        void(signal), cli.kill();
#endif
    };
}

// The events of a watch's JSON lines, each as "event file-name".
QStringList watchEvents(const QString& jsonLines, const QSet<QString>& kinds) {
    QStringList events;
    for (const QString& line : jsonLines.split(u'\n', Qt::SkipEmptyParts)) {
        const QJsonObject object = QJsonDocument::fromJson(line.toUtf8()).object();
        if (kinds.contains(object[u"event"_s].toString()))
            events.append(object[u"event"_s].toString() + u' ' +
                          QFileInfo(object[u"file"_s].toString()).fileName());
    }
    return events;
}

void writeWhole(const QString& path, const QByteArray& content) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
}

} // namespace

// tarnwick-cli's commands, each run as a user would, and what a person and a script read of an
// upload.
class CommandsTest : public QObject {
    Q_OBJECT

    const quint16 scanPort = freeUdpPort();
    QUdpSocket holder;
    QTcpServer listening;
    QTemporaryDir dir;
    const QByteArray bytes = QByteArray("G0 X1 Y2\n").repeated(5000);
    const QString part = writeFile(dir, u"my part.nc"_s, bytes).toLocalFile();
    const QString second = writeFile(dir, u"second.nc"_s, bytes.left(20'000)).toLocalFile();

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }

    // A row's own --seconds or --port wins over the earlier one.
    void run_data() {
        QVERIFY(holder.bind(QHostAddress::AnyIPv4, 0, QUdpSocket::DontShareAddress));
        QVERIFY(listening.listen(QHostAddress::LocalHost, 0));
        QTcpServer closed;
        QVERIFY(closed.listen(QHostAddress::LocalHost, 0));
        const QString accepting = at(listening.serverPort());
        const QString scan = u"scan --seconds 1.5 --port %1 "_s.arg(scanPort);
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QStringList>("expected");
        cliRow("lines", scan, 0,
               u"Mill\t192.168.1.20:4000\tbusy\n"
               u"\u2068Tab\u2409and\u240Aline\u202E\u2069\t10.0.0.3:2222\tdiscovered\n"_s);
        cliRow("json", scan + u"--json"_s, 0,
               uR"({"ipAddress":"192.168.1.20","name":"Mill","port":4000,"status":"busy"}
{"ipAddress":"10.0.0.3","name":"Tab\tand\nline)"_s +
                   u"\u202E"_s + uR"(","port":2222,"status":"discovered"}
)"_s);
        // Whatever the platform calls a taken port, the tool passes it on.
        QUdpSocket rival;
        QVERIFY(
            !rival.bind(QHostAddress::AnyIPv4, holder.localPort(), QUdpSocket::DontShareAddress));
        cliRow("port taken", scan + u"--port %1"_s.arg(holder.localPort()), 1, {},
               u"Discovery failed: "_s + rival.errorString() + u'\n');
        cliRow("too long", scan + u"--seconds 3601"_s, 2, {},
               u"--seconds takes a number of seconds greater than 0 and at most 3600.\n"_s);
        cliRow("accepted", u"check "_s + accepting, 0,
               accepting + u" accepted the connection.\n"_s);
        cliRow("refused", u"check "_s + at(closed.serverPort()), 1, {},
               u"Connection check failed: Connection refused\n"_s);
        cliRow("port 0", u"check 1.2.3.4:0"_s, 2, {}, u"Enter a valid IPv4 address and port.\n"_s);
        for (QLatin1String feed : {"ftp://127.0.0.1/v.json"_L1, "http:/v.json"_L1})
            cliRow(feed.data(), u"check-update --feed-url "_s + feed, 2, {},
                   u"tarnwick-cli check-update: '%1' is not an http or https URL\n"_s.arg(feed));

        const QString job = writeFile(dir, u"job.nc"_s,
                                      "G20 T3 M6 S8000 M3\nG0 X0 Y0 Z0.5\nG1 Z-0.1 F10\n"
                                      "G2 X1 Y1 R-1\nM30\n")
                                .toLocalFile();
        // Inches in, millimetres out; the long arc swings out to X -1 and Y 2 inches.
        cliRow("inspect", u"inspect --json "_s + job, 0,
               uR"({"cutting":{"max":[25.4,50.8,12.7],"min":[-25.4,0,-2.54]},)"
               uR"("estimatedSeconds":31.9,"feed":{"max":254,"min":254},"lines":5,"motions":3,)"
               uR"("partial":false,"rapid":{"max":[0,0,12.7],"min":[0,0,12.7]},)"
               uR"("spindle":{"max":8000,"min":8000},"tools":[3],"units":"inch","warnings":[]})"
               u"\n"_s);
        const QString jobText =
            job + u"\nLines: 5, moves: 3, units: inch\nCutting: 50.800 × 50.800 × 15.240 mm "
                  u"(X -25.400 to 25.400, Y 0.000 to 50.800, Z -2.540 to 12.700)\nRapid: "
                  u"0.000 × 0.000 × 0.000 mm (X 0.000 to 0.000, Y 0.000 to 0.000, Z 12.700 to "
                  u"12.700)\nTools: T3\nSpindle: 8,000 to 8,000 rpm\nFeed: 254 to 254 mm/min\n"
                  u"Time: about 0.5 min\n"_s;
        cliRow("inspect text", u"inspect "_s + job, 0, jobText);
        cliRow("inspect fits", u"inspect %1 --limits 50.8,50.8,15.24,,3"_s.arg(job), 0,
               jobText + u"Fits: the job fits the machine's limits.\n"_s);
        cliRow("inspect does not fit", u"inspect %1 --limits 50,60,20,6000"_s.arg(job), 0,
               jobText + u"Does not fit: The cuts span 50.8 mm in X; this machine travels 50.0 "
                         u"mm.\nDoes not fit: The job turns the spindle at 8,000 rpm; this "
                         u"machine reaches 6,000 rpm.\n"_s);
        const auto badLimits = [&](const char* name, const QString& option, const QString& err) {
            cliRow(name, u"inspect %1 %2"_s.arg(job, option), 2, {}, err + u'\n');
        };
        badLimits(
            "limits too few", u"--limits 1,2"_s,
            u"--limits takes 3 to 6 values separated by commas: X,Y,Z[,RPM[,TOOLS[,FEED]]]."_s);
        badLimits("limits travel", u"--limits 1,0,1"_s,
                  u"--limits: the travel in Y must be a number of millimetres greater than 0, "
                  u"not “0”."_s);
        badLimits("limits rpm", u"--limits 1,1,1,fast"_s,
                  u"--limits: the highest spindle speed must be a number of rpm greater than 0, "
                  u"not “fast”."_s);
        badLimits("limits tools", u"--limits 1,1,1,,2.5"_s,
                  u"--limits: the number of tool positions must be a whole number of at least 1, "
                  u"not “2.5”."_s);
        badLimits("limits feed", u"--limits 1,1,1,,,-3"_s,
                  u"--limits: the highest feed must be a number of mm/min greater than 0, not "
                  u"“-3”."_s);
        badLimits("limits and machine", u"--limits 1,1,1 --machine 127.0.0.1"_s,
                  u"Give either --limits or --machine, not both."_s);
        badLimits("machine by name", u"--machine Mill"_s,
                  u"Enter a valid IPv4 address and port."_s);
        badLimits("machine without limits", u"--machine 127.0.0.1"_s,
                  u"No limits are stored for 127.0.0.1:2222. Enter them in the app under "
                  u"“Machine limits…”, or give --limits."_s);
        const QString rapid = writeFile(dir, u"rapid.nc"_s, "G21 G0 X1\n").toLocalFile();
        cliRow("inspect nothing set", u"inspect "_s + rapid, 0,
               rapid + u"\nLines: 1, moves: 1, units: mm\nCutting: none\nRapid: 0.000 × 0.000 × "
                       u"0.000 mm (X 1.000 to 1.000, Y 0.000 to 0.000, Z 0.000 to 0.000)\n"
                       u"Tools: none\nSpindle: none\nFeed: none\nTime: about 0.0 min\n"_s);
        cliRow(
            "inspect empty",
            u"inspect "_s + writeFile(dir, u"empty.gcode"_s, {}).toLocalFile() + u" --json"_s, 0,
            uR"({"cutting":null,"estimatedSeconds":0,"feed":null,"lines":0,"motions":0,)"
            uR"("partial":false,"rapid":null,"spindle":null,"tools":[],"units":null,"warnings":[]})"
            u"\n"_s);
        cliRow("inspect unusable",
               u"inspect "_s + writeFile(dir, u"inspect.txt"_s, "G0 X1\n").toLocalFile(), 2, {},
               JobFileError::unsupportedExtension(u"txt"_s).description() + u'\n');
        cliRow("inspect no file", u"inspect"_s, 2, {},
               u"Usage: tarnwick-cli inspect FILE [--json] [--limits X,Y,Z[,RPM[,TOOLS[,FEED]]] | "
               u"--machine ADDRESS[:PORT]]\n"_s);
    }
    void run() {
        QFETCH(QStringList, arguments);
        QFETCH(QStringList, expected);
        const CliResult result = Cli().run(arguments, [this](QProcess& tool) {
            // The tool listens once it has printed the first machine: the others follow it.
            announce(scanPort, "Mill,192.168.1.20,4000,1");
            if (tool.bytesAvailable() > 0) {
                announce(scanPort, "Mill,192.168.1.20,4000,0");
                announce(scanPort, "Tab\tand\nline\xE2\x80\xAE,10.0.0.3,2222,0");
            }
        });
        QCOMPARE(result.all(), expected);
    }

    // What the app stored for one machine is what inspect checks; another machine's is not.
    void inspectUsesTheLimitsStoredForTheMachine() {
        const Cli cli;
        settings::setMachineLimits(*cli.store(), u"127.0.0.1:2222"_s,
                                   gcode::toJson({{1, 100, 100}, {}, {}, 500}));
        settings::setMachineLimits(*cli.store(), u"127.0.0.1:4000"_s,
                                   gcode::toJson({{100, 100, 100}, {}, {}, {}}));
        const QString job =
            writeFile(dir, u"wide.nc"_s, "G21 G0 X0 Y0 Z0\nG1 X2.5 F800\n").toLocalFile();
        const auto fits = [&](const QString& machine) {
            const CliResult result =
                cli.run({u"inspect"_s, job, u"--json"_s, u"--machine"_s, machine});
            return QJsonDocument(result.jsonLines().value(0).value(u"fits"_s).toObject())
                .toJson(QJsonDocument::Compact);
        };
        QCOMPARE(fits(u"127.0.0.1"_s),
                 R"({"ok":false,"reasons":["The cuts span 2.5 mm in X; this machine travels )"
                 R"(1.0 mm.","The job feeds at 800 mm/min; this machine feeds at most 500 )"
                 R"(mm/min."]})"_ba);
        QCOMPARE(fits(u"127.0.0.1:4000"_s), R"({"ok":true,"reasons":[]})"_ba);
    }

    // The feed server answers from this process, so the tool runs while the event loop turns.
    void checkUpdatePrintsTheOutcomeAndKeepsTheIdentifier() {
        FeedServer server;
        const Cli cli;
        const auto run = [&](int status, const QByteArray& body) {
            server.respond(status, body);
            return cli.run({u"check-update"_s, u"--feed-url"_s, server.url.toString()}).all();
        };
        QCOMPARE(run(200, build::version), QStringList({u"0"_s, u"Up to Date\n"_s, QString()}));
        QCOMPARE(run(200, "{\"version\":\"999.0\",\"url\":\"https://x.example/999\"}"),
                 QStringList({u"0"_s, u"Update Available: 999.0 https://x.example/999\n"_s, {}}));
        QCOMPARE(run(404, {}),
                 QStringList({u"1"_s, QString(),
                              u"Update Check Failed: The update feed at "_s +
                                  server.url.toString() + u" could not be read.\n"_s}));
        const QString id = server.targets.value(0).section(u'=', 1).left(36);
        QCOMPARE(server.targets, QStringList(3, u"/quorle/version.json?uuid="_s + id + u"&v="_s +
                                                    QLatin1String(build::version)));
    }

    void helpDocumentsEveryExitCode() {
        const CliResult help = Cli().run({u"upload"_s, u"--help"_s});
        QCOMPARE(help.exitCode, 0);
        // Without a command, the usage goes where errors go.
        const CliResult bare = Cli().run({});
        QVERIFY(bare.exitCode == 2 && bare.err.startsWith(u"Usage: tarnwick-cli COMMAND"_s));
        for (int code = 0; code <= 8; ++code)
            QVERIFY2(help.out.contains(u"\n  %1  "_s.arg(code)), qPrintable(help.out));
        QVERIFY(help.out.simplified().contains(u"in any letter case"_s));
    }

    // Each class once and link faults by phase: text, advice and last JSON line. "%1" is the
    // simulator's port; `action` is a signal to send while sending, or -1 for a second run.
    void classes_data() {
        QTest::addColumn<QStringList>("sim");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("action");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("exitClass");
        QTest::addColumn<QString>("advice");
        const QStringList good{u"--ftype"_s, u"x"_s};
        const QStringList slow = good + QStringList{u"--latency-ms"_s, u"300"_s};
        const QStringList toSim{part, u"--to"_s, u"%1"_s};
        QTcpServer closed;
        QVERIFY(closed.listen(QHostAddress::LocalHost, 0));
        const QString refused = at(closed.serverPort());
        closed.close();
        const auto row = [](const char* name, QStringList sim, const QStringList& arguments,
                            int action, const QString& message, const char* exitClass,
                            const QString& advice = {}) {
            QTest::newRow(name) << sim << arguments << action << message
                                << QString::fromLatin1(exitClass) << advice;
        };
        const Error ended = UploadError::invalidResponse(u"The machine closed the connection."_s);
        const QString wholeFileMaybe =
            uploadAdvice(ended.atUploadStage(UploadStage::EveryChunkSent));
        QVERIFY(wholeFileMaybe.contains(u"The machine may have received the whole file"_s));
        row("uploaded", good, toSim, 0, {}, "0 ");
        row("unusable file", good,
            {writeFile(dir, u"notes.TXT"_s, "x").toLocalFile(), u"--to"_s, u"%1"_s}, 0,
            JobFileError::unsupportedExtension(u"txt"_s).description(), "2 usage");
        row("empty file", good,
            {writeFile(dir, u"empty.nc"_s, {}).toLocalFile(), u"--to"_s, u"%1"_s}, 0,
            u"empty.nc is empty, so there is nothing to send."_s, "2 usage");
#ifdef Q_OS_UNIX
        row("control character", good,
            {writeFile(dir, u"part\nM3.nc"_s, "G0\n").toLocalFile(), u"--to"_s, u"%1"_s}, 0,
            JobFileError::controlCharacterInName(u"part\u240AM3.nc"_s).description(), "2 usage");
#endif
        row("unreachable", {}, {part, u"--to"_s, refused}, 0, {}, "3 unreachable",
            uploadAdvice(PlatformError{PlatformError::Domain::Network, 0, {}}));
        row("refused", good + QStringList{u"--cancel-after"_s, u"1"_s}, toSim, 0,
            UploadError::rejected(u"The machine cancelled the transfer."_s).description(),
            "4 refused");
        row("timed out", good + QStringList{u"--silent-after"_s, u"1"_s}, toSim, 0,
            UploadError::timedOut().description(), "5 timeout",
            uploadAdvice(Error(UploadError::timedOut()).atUploadStage(UploadStage::Opened)));
        row("reset after the opening", good + QStringList{u"--reset-after"_s, u"0"_s}, toSim, 0,
            ended.description(), "1 failed",
            uploadAdvice(ended.atUploadStage(UploadStage::Opened)));
        row("reset after the last chunk", good + QStringList{u"--reset-after"_s, u"6"_s}, toSim, 0,
            ended.description(), "1 failed", wholeFileMaybe);
#ifdef Q_OS_UNIX
        row("SIGHUP", slow, toSim, SIGHUP, UploadError::cancelled().description(), "6 cancelled");
#endif
        row("duplicate", good, toSim, -1,
            u"This exact file was uploaded to this machine in the last 24 hours. Run the command "
            "again with --again to send it anyway."_s,
            "7 duplicate");
    }
    void classes() {
        QFETCH(QStringList, sim);
        QFETCH(QStringList, arguments);
        QFETCH(int, action);
        QFETCH(QString, message);
        QFETCH(QString, exitClass);
        SimProcess machine(sim);
        const quint16 port = sim.isEmpty() ? 0 : machine.waitUntilListening();
        const Cli cli;
        QStringList command{u"upload"_s, u"--json"_s};
        for (const QString& argument : arguments)
            command.append(argument == u"%1"_s ? at(port) : argument);
        if (action < 0)
            QCOMPARE(cli.run(command).exitCode, 0);
        const CliResult result = cli.run(command, action > 0 ? signalWhenSending({&machine}, action)
                                                             : std::function<void(QProcess&)>());
        const QJsonObject last = result.jsonLines().value(result.jsonLines().size() - 1);
        QCOMPARE(QString::number(result.exitCode) + u' ' + last.value(u"kind"_s).toString(),
                 exitClass);
        if (result.exitCode == 0) {
            QCOMPARE(last.value(u"phase"_s).toString(), u"completed"_s);
            QCOMPARE(machine.stored(u"my part.nc"_s), bytes);
            return;
        }
        QFETCH(QString, advice);
        const QString error = last.value(u"error"_s).toString();
        QVERIFY(message.isEmpty() || error == message);
        QCOMPARE(last.value(u"advice"_s).toString(), advice);
        QCOMPARE(result.err, error + u'\n' + (advice.isEmpty() ? advice : advice + u'\n'));
        if (result.exitCode == Usage)
            QCOMPARE(machine.loggedLines(), QStringList());
        if (action > 0)
            QTRY_COMPARE_WITH_TIMEOUT(machine.loggedTypes().last(), u"fileCancel"_s, 3000);
    }

    // A script reads the file prepared, the bytes the machine has taken and the end; no
    // "uploading" line before the first chunk went out.
    void jsonProgressStartsWithTheFirstChunk() {
        SimProcess machine({u"--ftype"_s, u"x"_s});
        const CliResult result = Cli().run(
            {u"upload"_s, part, u"--to"_s, at(machine.waitUntilListening()), u"--json"_s});
        QCOMPARE(result.exitCode, 0);
        QStringList steps;
        for (const QJsonObject& line : result.jsonLines()) {
            const QString phase = line[u"phase"_s].toString();
            const qint64 sent = line[u"bytesSent"_s].toInteger();
            if (phase == u"uploading"_s && sent > 0)
                steps.append(u"uploading some"_s);
            else if (phase != u"checking"_s)
                steps.append(u"%1 %2"_s.arg(phase).arg(sent));
        }
        steps.removeDuplicates();
        QCOMPARE(steps, QStringList({u"preparing 0"_s, u"uploading some"_s,
                                     u"completed %1"_s.arg(bytes.size())}));
    }

    // Two files to three machines, the middle one refusing: the others get both files, the
    // first failure in order decides the exit code, and every line names its pair.
    void servesEveryPairDespiteAFailure() {
        SimProcess first({u"--ftype"_s, u"x"_s}), last({u"--ftype"_s, u"x"_s});
        SimProcess failing({u"--ftype"_s, u"x"_s, u"--cancel-after"_s, u"1"_s});
        QStringList arguments{u"upload"_s, part, second, u"--json"_s};
        for (SimProcess* sim : {&first, &failing, &last})
            arguments << u"--to"_s << at(sim->waitUntilListening());
        const CliResult result = Cli().run(arguments);
        QList<QJsonObject> lines = result.jsonLines();
        const QJsonObject summary = lines.takeLast();
        // The exit code, succeeded, failed, then each pair's class.
        QList<int> counts{result.exitCode, summary[u"succeeded"_s].toInt(),
                          summary[u"failed"_s].toInt()};
        for (const QJsonValue& pair : summary.value(u"pairs"_s).toArray())
            counts.append(pair[u"exitCode"_s].toInt());
        QCOMPARE(counts, QList<int>({4, 4, 2, 0, 4, 0, 0, 4, 0}));
        for (const QJsonObject& line : std::as_const(lines))
            QVERIFY(line.contains(u"file"_s) && line.contains(u"machine"_s));
        for (SimProcess* sim : {&first, &last})
            QCOMPARE(sim->storedNames(), QStringList({u"my part.nc"_s, u"second.nc"_s}));
        QVERIFY(failing.storedNames().isEmpty());
    }

#ifdef Q_OS_UNIX
    void terminateCancelsEveryRunningPair() {
        const QStringList slow{u"--ftype"_s, u"x"_s, u"--latency-ms"_s, u"300"_s};
        SimProcess a(slow), b(slow);
        const QString machineA = at(a.waitUntilListening()), machineB = at(b.waitUntilListening());
        const CliResult result =
            Cli().run({u"upload"_s, part, u"--to"_s, machineA, u"--to"_s, machineB},
                      signalWhenSending({&a, &b}, SIGTERM));
        const QString cancelled = UploadError::cancelled().description();
        QCOMPARE(result.all(), QStringList({u"6"_s, u"0 of 2 uploads succeeded.\n"_s,
                                            u"my part.nc → %1: %3\nmy part.nc → %2: %3\n"_s.arg(
                                                machineA, machineB, cancelled)}));
        for (SimProcess* sim : {&a, &b})
            QTRY_COMPARE_WITH_TIMEOUT(sim->loggedTypes().last(), u"fileCancel"_s, 3000);
    }
#endif

    // Simulators announce themselves to a test port, each a second after the one before; "%1"
    // and "%2" are their ports.
    void machinesByName_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QList<QStringList>>("sims");
        QTest::addColumn<QString>("outcome");
        const QStringList mill{u"--name"_s, u"Bench Mill"_s};
        QTest::newRow("resolves") << u"bench MILL"_s << QList<QStringList>{mill} << u"0 "_s;
        QTest::newRow("unknown") << u"Lathe"_s << QList<QStringList>{mill}
                                 << u"3 No machine named “Lathe” answered the scan.\n"_s;
        QTest::newRow("twins a second apart")
            << u"Bench Mill"_s << QList<QStringList>{mill, mill}
            << u"2 More than one machine is named “Bench Mill”: 127.0.0.1:%1, 127.0.0.1:%2. Give "
               u"its address instead.\n"_s;
        QTest::newRow("busy") << u"Bench Mill"_s
                              << QList<QStringList>{mill + QStringList{u"--busy"_s}}
                              << u"1 “Bench Mill” at 127.0.0.1:%1 is busy, so nothing was sent to "
                                 "it. Add --busy-ok to send to it anyway.\n"_s;
    }
    void machinesByName() {
        QFETCH(QString, name);
        QFETCH(QList<QStringList>, sims);
        QFETCH(QString, outcome);
        const quint16 discovery = freeUdpPort();
        std::list<SimProcess> started;
        QStringList ports;
        QElapsedTimer sinceLast;
        const CliResult result = Cli().run(
            {u"upload"_s, part, u"--to"_s, name, u"--discovery-port"_s, QString::number(discovery)},
            [&](QProcess&) {
                if (ports.size() == sims.size() || (!ports.isEmpty() && sinceLast.elapsed() < 1000))
                    return;
                const QStringList arguments =
                    sims[ports.size()] +
                    QStringList{u"--ftype"_s, u"x"_s, u"--announce-to"_s, at(discovery)};
                ports << QString::number(started.emplace_back(arguments).waitUntilListening());
                sinceLast.start();
            });
        // Twins are named in the order heard, which a slow start of the tool can swap.
        const auto filled = [&](qsizetype first) {
            return QString(outcome)
                .replace(u"%1"_s, ports.value(first))
                .replace(u"%2"_s, ports.value(1 - first));
        };
        const QString said = QString::number(result.exitCode) + u' ' + result.err;
        QVERIFY2(said == filled(0) || said == filled(1), qPrintable(said));
        QCOMPARE(
            int(std::count_if(started.begin(), started.end(),
                              [](const SimProcess& sim) { return !sim.storedNames().isEmpty(); })),
            result.exitCode == 0 ? 1 : 0);
    }

    // --once in a folder of new files; a row without simulator arguments sends to a closed port.
    void watchOnce_data() {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QStringList>("sim");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QStringList>("stored");
        QTest::addColumn<int>("starts");
        const QStringList good{u"--ftype"_s, u"x"_s};
        QStringList hundred;
        for (int i = 0; i < 100; ++i)
            hundred.append(u"part %1.nc"_s.arg(i, 3, 10, QLatin1Char('0')));
        QTest::newRow("100 at once") << hundred << good << 0 << hundred << 100;
        QTest::newRow("temporary names")
            << QStringList{u"a.nc~"_s,        u".b.nc"_s, u"c.nc.tmp"_s,
                           u"d.gcode.part"_s, u"e.txt"_s, u"f.CNC"_s}
            << good << 0 << QStringList{u"f.CNC"_s} << 1;
        QTest::newRow("empty folder") << QStringList() << good << 0 << QStringList() << 0;
        QTest::newRow("unreachable")
            << QStringList{u"f.nc"_s} << QStringList() << 3 << QStringList() << 0;
        QTest::newRow("refused") << QStringList{u"f.nc"_s}
                                 << good + QStringList{u"--cancel-after"_s, u"1"_s} << 4
                                 << QStringList() << 1;
        // A file name with a slash stands for a folder that does not exist.
        QTest::newRow("no folder") << QStringList{u"gone/"_s} << good << 2 << QStringList() << 0;
    }
    void watchOnce() {
        QFETCH(QStringList, files);
        QFETCH(QStringList, sim);
        QFETCH(int, exitCode);
        QFETCH(QStringList, stored);
        QFETCH(int, starts);
        QTemporaryDir folder;
        QString watched = folder.path();
        for (const QString& name : files) {
            if (name.endsWith(u'/'))
                watched = folder.filePath(name);
            else
                writeWhole(folder.filePath(name), bytes.left(2000) + name.toUtf8());
        }
        SimProcess machine(sim.isEmpty() ? QStringList{u"--ftype"_s, u"x"_s} : sim);
        QTcpServer closed;
        QVERIFY(closed.listen(QHostAddress::LocalHost, 0));
        const quint16 port = sim.isEmpty() ? closed.serverPort() : machine.waitUntilListening();
        closed.close();
        const CliResult result =
            Cli().run({u"watch"_s, watched, u"--to"_s, at(port), u"--once"_s, u"--json"_s});
        QCOMPARE(result.exitCode, exitCode);
        QCOMPARE(machine.storedNames(), stored);
        QCOMPARE(machine.loggedTypes().count(u"fileStart"_s), starts);
        for (const QString& name : stored)
            QCOMPARE(machine.stored(name), bytes.left(2000) + name.toUtf8());
    }

#ifdef Q_OS_UNIX
    // A file written slowly in pieces goes once and whole; an unchanged re-save does not go; a
    // re-export of the same size goes again. Each step waits for the watch's answer to the last.
    void watchSendsEachCompleteVersionOnce() {
        SimProcess machine({u"--ftype"_s, u"x"_s});
        const QString target = at(machine.waitUntilListening());
        QTemporaryDir folder;
        const QString path = folder.filePath(u"slow.nc"_s);
        const QByteArray first = bytes.left(8000), other = QByteArray(8000, 'G');
        const QSet<QString> answers{u"sent"_s, u"unchanged"_s, u"failed"_s};
        QFile slow(path);
        QVERIFY(slow.open(QIODevice::WriteOnly));
        QElapsedTimer sincePiece;
        sincePiece.start();
        qsizetype written = 0, step = 0;
        const CliResult result = Cli().run(
            {u"watch"_s, folder.path(), u"--to"_s, target, u"--json"_s}, [&](QProcess& cli) {
                if (written < first.size()) {
                    if (sincePiece.elapsed() >= 300) {
                        slow.write(first.mid(written, 1000));
                        slow.flush();
                        written += 1000;
                        sincePiece.start();
                    }
                    return;
                }
                const qsizetype answered =
                    watchEvents(QString::fromUtf8(cli.peek(1 << 20)), answers).size();
                if (answered <= step)
                    return;
                step = answered;
                if (step == 1)
                    writeWhole(path, first);
                else if (step == 2)
                    writeWhole(path, other);
                else
                    ::kill(pid_t(cli.processId()), SIGINT);
            });
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(watchEvents(result.out, answers),
                 QStringList({u"sent slow.nc"_s, u"unchanged slow.nc"_s, u"sent slow.nc"_s}));
        QCOMPARE(machine.loggedTypes().count(u"fileStart"_s), 2);
        QCOMPARE(machine.stored(u"slow.nc"_s), other);
    }

    // The machine is found by name, busy: the file waits until it announces itself idle.
    void watchWaitsForABusyMachine() {
        SimProcess machine({u"--ftype"_s, u"x"_s});
        const QByteArray announced =
            "Bench Mill,127.0.0.1," + QByteArray::number(machine.waitUntilListening()) + ",";
        const quint16 discovery = freeUdpPort();
        QTemporaryDir folder;
        writeWhole(folder.filePath(u"part.nc"_s), bytes);
        QByteArray status = "1";
        const CliResult result =
            Cli().run({u"watch"_s, folder.path(), u"--to"_s, u"bench mill"_s, u"--json"_s,
                       u"--discovery-port"_s, QString::number(discovery)},
                      [&](QProcess& cli) {
                          announce(discovery, announced + status);
                          const QStringList events =
                              watchEvents(QString::fromUtf8(cli.peek(1 << 20)),
                                          {u"busy"_s, u"sent"_s, u"failed"_s});
                          if (events.contains(u"busy "_s) && status == "1") {
                              QVERIFY(machine.loggedTypes().isEmpty());
                              status = "0";
                          }
                          if (events.size() > 1)
                              ::kill(pid_t(cli.processId()), SIGINT);
                      });
        QCOMPARE(watchEvents(result.out, {u"busy"_s, u"sent"_s, u"failed"_s}),
                 QStringList({u"busy "_s, u"sent part.nc"_s}));
        QCOMPARE(machine.stored(u"part.nc"_s), bytes);
    }
#endif

    void historyPrintsNewestFirstFilteredAndChangesNothing() {
        const Cli cli;
        const QDateTime now = QDateTime::currentDateTimeUtc().addMSecs(-1500);
        const QList<UploadRecord> records{
            {u"192.168.1.20:4000"_s, u"/jobs/c.nc"_s, 3000, now.addSecs(-3600)},
            {u"192.168.1.21:2222"_s, u"/jobs/b,c.nc"_s, 2000, now.addSecs(-7200)},
            {u"192.168.1.20:2222"_s, u"/jobs/a.nc"_s, 1000, now.addDays(-3)}};
        AppPersistence persistence(cli.store());
        for (qsizetype i = records.size() - 1; i >= 0; --i)
            QCOMPARE(persistence.recordUpload(records[i]), std::nullopt);
        QStringList iso, local;
        for (const UploadRecord& record : records) {
            iso.append(record.uploadedAt.toString(Qt::ISODate));
            local.append(record.uploadedAt.toLocalTime().toString(u"yyyy-MM-dd HH:mm:ss"_s));
        }
        const auto run = [&](const QString& arguments) {
            return cli.run(QString(u"history "_s + arguments).split(u' ', Qt::SkipEmptyParts))
                .all();
        };
        QFile file(cli.store()->fileName());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray stored = file.readAll();

        QCOMPARE(run({}),
                 QStringList({u"0"_s,
                              local[0] + u"\t192.168.1.20:4000\t3000\t/jobs/c.nc\n"_s + local[1] +
                                  u"\t192.168.1.21:2222\t2000\t/jobs/b,c.nc\n"_s + local[2] +
                                  u"\t192.168.1.20:2222\t1000\t/jobs/a.nc\n"_s,
                              {}}));
        QCOMPARE(
            run(u"--json --machine 192.168.1.20"_s).value(1),
            uR"({"file":"/jobs/c.nc","machine":"192.168.1.20:4000","size":3000,"uploadedAt":"%1"}
{"file":"/jobs/a.nc","machine":"192.168.1.20:2222","size":1000,"uploadedAt":"%2"}
)"_s.arg(iso[0], iso[2]));
        QCOMPARE(
            run(u"--csv --since 1d"_s).value(1),
            u"uploadedAt,machine,file,size\n%1,192.168.1.20:4000,/jobs/c.nc,3000\n%2,192.168.1.21:2222,\"/jobs/b,c.nc\",2000\n"_s
                .arg(iso[0], iso[1]));
        QCOMPARE(run(u"--since 7x"_s).value(2),
                 u"--since takes a duration such as 90s, 45m, 12h, 7d or 2w.\n"_s);
        QVERIFY(file.seek(0));
        QCOMPARE(file.readAll(), stored);

        const QStringList unreadable{u"1"_s,
                                     {},
                                     u"The upload history in %1 could not be read.\n"_s.arg(
                                         QDir::toNativeSeparators(file.fileName()))};
        cli.store()->setValue(u"uploads"_s, QByteArray("[{\"damaged\""));
        QCOMPARE(run({}), unreadable);
        file.close();
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(patterned(999)) == 999);
        file.close();
        QCOMPARE(run({}), unreadable);
    }

    void lines() {
        const std::pair<TransferProgress, const char*> rows[] = {
            {{Phase::Preparing, 0, 2'000'000, 0},
             "[..............................]   0%  0 bytes of 2.0 MB  connecting"},
            {{Phase::Uploading, 500'000, 2'000'000, 250'000},
             "[########......................]  25%  500 kB of 2.0 MB  250 kB/s  About 6 s left"},
            {{Phase::Uploading, 1'000'000, 200'000'000, 1'000'000},
             "[..............................]   1%  1.0 MB of 200 MB  1.0 MB/s  About 4 min left"},
            {{Phase::Completed, 2'000'000, 2'000'000, 0},
             "[##############################] 100%  2.0 MB of 2.0 MB  done"},
        };
        for (const auto& [progress, line] : rows)
            QCOMPARE(ProgressBar::line(progress), QLatin1String(line));
    }

    // A line fits in the terminal's width less one column; a shorter line blanks out what is
    // left of the longer one before it; the line ends once.
    void redrawsInPlaceAndEndsTheLineOnce() {
        QString text;
        QTextStream stream(&text);
        ProgressBar bar(stream, 60);
        bar.finish();
        bar.show({Phase::Uploading, 500'000, 2'000'000, 250'000});
        bar.showChecking(420, 1000);
        bar.finish();
        bar.finish();
        const QString first = ProgressBar::line({Phase::Uploading, 500'000, 2'000'000, 250'000});
        QCOMPARE(text, u'\r' + first.left(58) + u"…\r"_s +
                           QStringLiteral("Checking the file… 42%").leftJustified(59) + u'\n');
    }

    // The class follows the error's type and how far the upload had come, never its text.
    void exitClasses() {
        const PlatformError reset{PlatformError::Domain::Network, 1, QStringLiteral("reset")};
        const PlatformError unreadable{PlatformError::Domain::File, 1, QStringLiteral("gone")};
        const UploadReach before{false, false}, connected{true, false}, sending{true, true};
        const std::tuple<Error, UploadReach, const char*> rows[] = {
            {UploadError::invalidResponse({}), sending, "1 failed"},
            {MakeraPacketError::truncated(), sending, "1 failed"},
            {reset, sending, "1 failed"},
            {reset, connected, "3 unreachable"},
            {Error(reset).atUploadStage(UploadStage::Opened), connected, "1 failed"},
            {UploadError::timedOut(), before, "3 unreachable"},
            {UploadError::timedOut(), connected, "5 timeout"},
            {CancellationError{}, before, "6 cancelled"},
            {JobFileError::changedWhileSending(), sending, "8 file"},
            {unreadable, sending, "8 file"},
        };
        for (const auto& [error, reach, kind] : rows) {
            const ExitCode code = exitCodeFor(error, reach);
            QCOMPARE(QString::number(code) + u' ' + kindName(code), QLatin1String(kind));
        }
    }
};

QTEST_GUILESS_MAIN(CommandsTest)
#include "CommandsTest.moc"
