#include "support/SimProcess.h"
#include "support/TestFiles.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#ifdef Q_OS_UNIX
#include <csignal>
#endif

using namespace tarnwick::testing;

namespace {

// One run of tarnwick-cli with its own settings store.
struct Run {
    int exitCode = -1;
    QByteArray out;
    QByteArray err;

    QList<QJsonObject> jsonLines() const {
        QList<QJsonObject> objects;
        for (const QByteArray& line : out.split('\n'))
            if (!line.isEmpty())
                objects.append(QJsonDocument::fromJson(line).object());
        return objects;
    }
};

class Cli {
public:
    Cli() {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("TARNWICK_SETTINGS_FILE"),
                           m_config.filePath(QStringLiteral("settings.ini")));
        m_process.setProcessEnvironment(environment);
        m_process.setProgram(binaryPath(QStringLiteral("tarnwick-cli")));
    }
    void start(const QStringList& arguments) {
        m_process.setArguments(arguments);
        m_process.start();
    }
    Run finish(int boundMs = 20000) {
        Run run;
        if (!m_process.waitForFinished(boundMs)) {
            m_process.kill();
            m_process.waitForFinished(3000);
            return run;
        }
        run.exitCode = m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -2;
        run.out = m_process.readAllStandardOutput();
        run.err = m_process.readAllStandardError();
        return run;
    }
    Run run(const QStringList& arguments) {
        start(arguments);
        return finish();
    }
    QProcess& process() { return m_process; }

private:
    QTemporaryDir m_config;
    QProcess m_process;
};

QByteArray content(qsizetype size) {
    QByteArray bytes(size, Qt::Uninitialized);
    for (qsizetype i = 0; i < size; ++i)
        bytes[i] = char("G0 X1 Y2\n"[i % 9]);
    return bytes;
}

} // namespace

class UploadCommandTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void helpDocumentsEverything() {
        Cli cli;
        const Run run = cli.run({QStringLiteral("upload"), QStringLiteral("--help")});
        QCOMPARE(run.exitCode, 0);
        for (const char* text : {"--to", "--again", "--json", "Ctrl-C", "0  ", "1  ", "2  "})
            QVERIFY2(run.out.contains(text), text);

        const Run overview = cli.run({QStringLiteral("--help")});
        QCOMPARE(overview.exitCode, 0);
        QVERIFY(overview.out.contains("upload"));
    }

    void refusesBadInputWithExitCodeTwo() {
        Cli cli;
        QTemporaryDir dir;
        const QString good = writeFile(dir, QStringLiteral("part.nc"), "G0\n").toLocalFile();
        const QString text = writeFile(dir, QStringLiteral("notes.TXT"), "x").toLocalFile();

        const Run wrongType = cli.run(
            {QStringLiteral("upload"), text, QStringLiteral("--to"), QStringLiteral("127.0.0.1")});
        QCOMPARE(wrongType.exitCode, 2);
        QCOMPARE(wrongType.err.trimmed(), QByteArray("The .txt extension is not supported. Choose "
                                                     "an .nc, .cnc or .gcode file."));

        const Run folder = cli.run({QStringLiteral("upload"), dir.path(), QStringLiteral("--to"),
                                    QStringLiteral("127.0.0.1")});
        QCOMPARE(folder.exitCode, 2);
        QCOMPARE(folder.err.trimmed(), QByteArray("Please choose a regular file."));

        const Run missing =
            cli.run({QStringLiteral("upload"), dir.filePath(QStringLiteral("none.nc")),
                     QStringLiteral("--to"), QStringLiteral("127.0.0.1")});
        QCOMPARE(missing.exitCode, 2);
        QVERIFY(missing.err.contains("none.nc"));

        for (const QString& address :
             {QStringLiteral("192.168.001.5"), QStringLiteral("1.2.3"),
              QStringLiteral("127.0.0.1:0"), QStringLiteral("127.0.0.1:65536"),
              QStringLiteral("localhost")}) {
            const Run bad =
                cli.run({QStringLiteral("upload"), good, QStringLiteral("--to"), address});
            QCOMPARE(bad.exitCode, 2);
            QCOMPARE(bad.err.trimmed(), QByteArray("Enter a valid IPv4 address and port."));
        }

        const Run noAddress = cli.run({QStringLiteral("upload"), good});
        QCOMPARE(noAddress.exitCode, 2);
        const Run json = cli.run({QStringLiteral("upload"), good, QStringLiteral("--to"),
                                  QStringLiteral("1.2.3"), QStringLiteral("--json")});
        QCOMPARE(json.exitCode, 2);
        QCOMPARE(json.jsonLines().last().value(QStringLiteral("error")).toString(),
                 QStringLiteral("Enter a valid IPv4 address and port."));
    }

    void uploadsRecordsAndRefusesARecentDuplicate() {
        SimProcess sim({QStringLiteral("--ftype"), QStringLiteral("x")});
        const quint16 port = sim.waitUntilListening();
        QVERIFY(port != 0);
        QTemporaryDir dir;
        const QByteArray bytes = content(50000);
        const QString file = writeFile(dir, QStringLiteral("my part.nc"), bytes).toLocalFile();
        const QString address = QStringLiteral("127.0.0.1:%1").arg(port);
        Cli cli;

        const Run first = cli.run({QStringLiteral("upload"), file, QStringLiteral("--to"), address,
                                   QStringLiteral("--json")});
        QCOMPARE(first.exitCode, 0);
        QCOMPARE(sim.stored(QStringLiteral("my part.nc")), bytes);
        const QList<QJsonObject> lines = first.jsonLines();
        QVERIFY(lines.size() >= 3);
        QCOMPARE(lines.first(), (QJsonObject{{QStringLiteral("phase"), QStringLiteral("preparing")},
                                             {QStringLiteral("bytesSent"), 0},
                                             {QStringLiteral("totalBytes"), 50000},
                                             {QStringLiteral("bytesPerSecond"), 0}}));
        QCOMPARE(lines.last(), (QJsonObject{{QStringLiteral("phase"), QStringLiteral("completed")},
                                            {QStringLiteral("bytesSent"), 50000},
                                            {QStringLiteral("totalBytes"), 50000},
                                            {QStringLiteral("bytesPerSecond"), 0}}));
        const QJsonObject full = lines[lines.size() - 2];
        QCOMPARE(full.value(QStringLiteral("phase")).toString(), QStringLiteral("uploading"));
        QCOMPARE(full.value(QStringLiteral("bytesSent")).toInteger(), 50000);
        QVERIFY(full.value(QStringLiteral("bytesPerSecond")).toDouble() > 0);

        const Run again =
            cli.run({QStringLiteral("upload"), file, QStringLiteral("--to"), address});
        QCOMPARE(again.exitCode, 1);
        QVERIFY(again.err.contains(
            "This exact file was uploaded to this machine in the last 24 hours."));
        QVERIFY(again.err.contains("--again"));
        QCOMPARE(sim.loggedTypes().count(QStringLiteral("fileStart")), 1);

        // Without a terminal there is no progress bar, only the closing line.
        const Run confirmed = cli.run({QStringLiteral("upload"), file, QStringLiteral("--to"),
                                       address, QStringLiteral("--again")});
        QCOMPARE(confirmed.exitCode, 0);
        QVERIFY(!confirmed.out.contains('\r'));
        QVERIFY(confirmed.out.contains("my part.nc"));
        QCOMPARE(sim.loggedTypes().count(QStringLiteral("fileStart")), 2);

        // Another size of the same path is another file.
        writeFile(dir, QStringLiteral("my part.nc"), bytes + "M2\n");
        const Run changed = cli.run({QStringLiteral("upload"), file, QStringLiteral("--to"),
                                     address, QStringLiteral("--json")});
        QCOMPARE(changed.exitCode, 0);
    }

    void reportsAFailureOnStderrAndAsTheLastJsonLine() {
        SimProcess sim({QStringLiteral("--ftype"), QStringLiteral("x"),
                        QStringLiteral("--cancel-after"), QStringLiteral("1")});
        const quint16 port = sim.waitUntilListening();
        QVERIFY(port != 0);
        QTemporaryDir dir;
        const QString file =
            writeFile(dir, QStringLiteral("part.nc"), content(30000)).toLocalFile();
        Cli cli;
        const Run run =
            cli.run({QStringLiteral("upload"), file, QStringLiteral("--to"),
                     QStringLiteral("127.0.0.1:%1").arg(port), QStringLiteral("--json")});
        QCOMPARE(run.exitCode, 1);
        const QString message =
            QStringLiteral("The machine rejected the upload: The machine cancelled the transfer.");
        QCOMPARE(QString::fromUtf8(run.err.trimmed()), message);
        QCOMPARE(run.jsonLines().last(), (QJsonObject{{QStringLiteral("error"), message}}));

        // A failed upload is not recorded: the next attempt is no duplicate.
        const Run retry = cli.run({QStringLiteral("upload"), file, QStringLiteral("--to"),
                                   QStringLiteral("127.0.0.1:%1").arg(port)});
        QCOMPARE(retry.exitCode, 1);
        QVERIFY(!retry.err.contains("24 hours"));
    }

#ifdef Q_OS_UNIX
    void interruptCancelsAndTellsTheMachine() {
        SimProcess sim({QStringLiteral("--ftype"), QStringLiteral("x"),
                        QStringLiteral("--latency-ms"), QStringLiteral("300")});
        const quint16 port = sim.waitUntilListening();
        QVERIFY(port != 0);
        QTemporaryDir dir;
        const QString file =
            writeFile(dir, QStringLiteral("part.nc"), content(200000)).toLocalFile();
        Cli cli;
        cli.start({QStringLiteral("upload"), file, QStringLiteral("--to"),
                   QStringLiteral("127.0.0.1:%1").arg(port), QStringLiteral("--json")});
        QTRY_VERIFY_WITH_TIMEOUT(sim.loggedTypes().contains(QStringLiteral("fileData")), 8000);
        ::kill(pid_t(cli.process().processId()), SIGINT);
        const Run run = cli.finish(5000);
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.err.trimmed(), QByteArray("The upload was cancelled."));
        QCOMPARE(
            run.jsonLines().last(),
            (QJsonObject{{QStringLiteral("error"), QStringLiteral("The upload was cancelled.")}}));
        QTRY_COMPARE_WITH_TIMEOUT(sim.loggedTypes().last(), QStringLiteral("fileCancel"), 3000);
        QVERIFY(sim.storedNames().isEmpty());
    }
#endif
};

QTEST_GUILESS_MAIN(UploadCommandTest)
#include "UploadCommandTest.moc"
