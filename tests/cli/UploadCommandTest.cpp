#include "CliRun.h"
#include "app/AppPersistence.h"
#include "discovery/Announcer.h"
#include "support/SimProcess.h"
#include "support/TestFiles.h"

#include <QJsonArray>
#include <QTcpServer>

#ifdef Q_OS_UNIX
#include <algorithm>
#include <csignal>
#include <memory>
#endif

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace Qt::StringLiterals;

namespace {

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

} // namespace

class UploadCommandTest : public QObject {
    Q_OBJECT

    QTemporaryDir dir;
    const QByteArray bytes = QByteArray("G0 X1 Y2\n").repeated(5000);
    const QString part = writeFile(dir, u"my part.nc"_s, bytes).toLocalFile();
    const QString second = writeFile(dir, u"second.nc"_s, bytes.left(20'000)).toLocalFile();

private Q_SLOTS:
    void helpDocumentsEveryExitCode() {
        const CliResult help = Cli().run({u"upload"_s, u"--help"_s});
        QCOMPARE(help.exitCode, 0);
        for (int code = 0; code <= 8; ++code)
            QVERIFY2(help.out.contains(u"\n  %1  "_s.arg(code)), qPrintable(help.out));
    }

    // Each class once, with its text and last JSON line. "%1" is the simulator's port; `action`
    // is a signal to send while sending, or -1 to compare a second run.
    void classes_data() {
        QTest::addColumn<QStringList>("sim");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("action");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("exitClass");
        const QStringList good{u"--ftype"_s, u"x"_s};
        const QStringList slow = good + QStringList{u"--latency-ms"_s, u"300"_s};
        const QStringList toSim{part, u"--to"_s, u"%1"_s};
        QTcpServer closed;
        QVERIFY(closed.listen(QHostAddress::LocalHost, 0));
        const QString refused = at(closed.serverPort());
        closed.close();
        const auto row = [](const char* name, QStringList sim, const QStringList& arguments,
                            int action, const QString& message, const char* exitClass) {
            QTest::newRow(name) << sim << arguments << action << message
                                << QString::fromLatin1(exitClass);
        };
        row("uploaded", good, toSim, 0, {}, "0 ");
        row("unusable file", good,
            {writeFile(dir, u"notes.TXT"_s, "x").toLocalFile(), u"--to"_s, u"%1"_s}, 0,
            JobFileError::unsupportedExtension(u"txt"_s).description(), "2 usage");
        row("unreachable", {}, {part, u"--to"_s, refused}, 0, {}, "3 unreachable");
        row("refused", good + QStringList{u"--cancel-after"_s, u"1"_s}, toSim, 0,
            UploadError::rejected(u"The machine cancelled the transfer."_s).description(),
            "4 refused");
        row("timed out", good + QStringList{u"--silent-after"_s, u"1"_s}, toSim, 0,
            UploadError::timedOut().description(), "5 timeout");
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
        if (!message.isEmpty())
            QCOMPARE(result.err, message + u'\n');
        QCOMPARE(last.value(u"error"_s).toString(), result.err.trimmed());
        if (action > 0)
            QTRY_COMPARE_WITH_TIMEOUT(machine.loggedTypes().last(), u"fileCancel"_s, 3000);
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

    // Announcements reach the tool on a test port; "%1" is the simulator's port.
    void machinesByName_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("announcements");
        QTest::addColumn<QString>("outcome");
        const QString mill = u"Bench Mill,127.0.0.1,%1,0"_s;
        QTest::newRow("resolves") << u"bench MILL"_s << QStringList{mill} << u"0 "_s;
        QTest::newRow("unknown") << u"Lathe"_s << QStringList{mill}
                                 << u"3 No machine named “Lathe” answered the scan.\n"_s;
        QTest::newRow("ambiguous")
            << u"Bench Mill"_s << QStringList{mill, u"Bench Mill,127.0.0.1,9,0"_s}
            << u"2 More than one machine is named “Bench Mill”: 127.0.0.1:%1, 127.0.0.1:9. Give "
               u"its "
               "address instead.\n"_s;
        QTest::newRow("busy") << u"Bench Mill"_s << QStringList{u"Bench Mill,127.0.0.1,%1,1"_s}
                              << u"1 “Bench Mill” at 127.0.0.1:%1 is busy, so nothing was sent to "
                                 "it. Add --busy-ok to send to it anyway.\n"_s;
    }
    void machinesByName() {
        QFETCH(QString, name);
        QFETCH(QStringList, announcements);
        QFETCH(QString, outcome);
        SimProcess sim({u"--ftype"_s, u"x"_s});
        const quint16 port = sim.waitUntilListening(), discovery = freeUdpPort();
        const CliResult result = Cli().run(
            {u"upload"_s, part, u"--to"_s, name, u"--discovery-port"_s, QString::number(discovery)},
            [&](QProcess&) {
                for (const QString& announcement : announcements)
                    announce(discovery, announcement.arg(port).toUtf8());
            });
        QCOMPARE(QString::number(result.exitCode) + u' ' + result.err, outcome.arg(port));
        QCOMPARE(sim.storedNames().size(), result.exitCode == 0 ? 1 : 0);
    }

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

        cli.store()->setValue(u"uploads"_s, QByteArray("[{\"damaged\""));
        QCOMPARE(run({}), QStringList({u"1"_s,
                                       {},
                                       u"The upload history in %1 could not be read.\n"_s.arg(
                                           QDir::toNativeSeparators(file.fileName()))}));
    }
};

QTEST_GUILESS_MAIN(UploadCommandTest)
#include "UploadCommandTest.moc"
