#include "app/AppModel.h"
#include "support/FakeServices.h"
#include "support/SimProcess.h"
#include "support/TestFiles.h"
#include "transfer/MakeraFileUploader.h"

#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QMutex>
#include <QPointer>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTest>

using namespace tarnwick;
using namespace tarnwick::testing;

namespace {

// Short waits so that faults end quickly; the real ones are tested separately.
UploadTimings quickTimings() {
    UploadTimings timings;
    timings.connect = std::chrono::milliseconds(3000);
    timings.probeOverall = std::chrono::milliseconds(300);
    timings.probePacket = std::chrono::milliseconds(60);
    timings.openingPause = std::chrono::milliseconds(10);
    timings.packetWait = std::chrono::milliseconds(1500);
    return timings;
}

QByteArray patterned(qsizetype size, int seed = 1) {
    QByteArray bytes(size, Qt::Uninitialized);
    quint32 state = quint32(seed) * 2654435761u;
    for (qsizetype i = 0; i < size; ++i) {
        state = state * 1103515245u + 12345u;
        bytes[i] = char(state >> 24);
    }
    return bytes;
}

Machine simMachine(quint16 port) {
    return Machine{QStringLiteral("Simulator"), std::nullopt, QStringLiteral("127.0.0.1"), port,
                   Machine::ConnectionStatus::Discovered};
}

JobFile jobFile(const QTemporaryDir& dir, const QString& name, const QByteArray& content) {
    const Result<JobFile> file = JobFile::fromUrl(writeFile(dir, name, content));
    if (!file)
        qFatal("cannot make a job file: %s", qPrintable(file.error().description()));
    return file.value();
}

// Everything one upload reported, with the instant each progress value arrived.
struct Outcome {
    QList<TransferProgress> progress;
    QList<qint64> progressAtMs;
    bool finished = false;
    std::optional<Error> error;
    qint64 endedAtMs = -1;
};

// Connects to the uploader, and runs the event loop until it ended or the bound passed.
class Recorder {
public:
    explicit Recorder(MakeraFileUploader& uploader) {
        m_clock.start();
        QObject::connect(&uploader, &FileUploading::progress, &uploader,
                         [this](const TransferProgress& value) {
                             outcome.progress.append(value);
                             outcome.progressAtMs.append(m_clock.elapsed());
                         });
        QObject::connect(&uploader, &Operation::finished, &uploader, [this] {
            outcome.finished = true;
            outcome.endedAtMs = m_clock.elapsed();
        });
        QObject::connect(&uploader, &Operation::failed, &uploader, [this](const Error& error) {
            outcome.error = error;
            outcome.endedAtMs = m_clock.elapsed();
        });
    }
    bool ended() const { return outcome.finished || outcome.error.has_value(); }
    bool waitUntilEnded(int boundMs = 20000) {
        return QTest::qWaitFor([this] { return ended(); }, boundMs);
    }

    Outcome outcome;

private:
    QElapsedTimer m_clock;
};

// Runs one uploader with the quick timings to its end (or the recorder's bound).
Outcome uploadToTheEnd(const JobFile& file, const Machine& machine) {
    MakeraFileUploader uploader(quickTimings());
    Recorder recorder(uploader);
    uploader.upload(file, machine);
    recorder.waitUntilEnded();
    return recorder.outcome;
}

// An uploader with a recorder, sending to a simulated machine of its own.
struct SimUpload {
    explicit SimUpload(const QStringList& simArguments = {}, UploadTimings timings = quickTimings())
        : sim(simArguments)
        , port(sim.waitUntilListening())
        , uploader(timings)
        , recorder(uploader) {}

    // False when the simulated machine never started listening.
    bool start(const QString& name, const QByteArray& content) {
        uploader.upload(jobFile(dir, name, content), simMachine(port));
        return port != 0;
    }
    const Outcome& outcome() const { return recorder.outcome; }
    const Error& error() const { return *recorder.outcome.error; }

    SimProcess sim;
    const quint16 port;
    QTemporaryDir dir;
    MakeraFileUploader uploader;
    Recorder recorder;
};

// The uploader's log lines, captured while an object of this type exists.
class LogCapture {
public:
    LogCapture() {
        s_lines.clear();
        s_clock.start();
        m_previous = qInstallMessageHandler(&LogCapture::handle);
        QLoggingCategory::setFilterRules(QStringLiteral("*.upload.debug=true"));
    }
    ~LogCapture() {
        qInstallMessageHandler(m_previous);
        QLoggingCategory::setFilterRules(QString());
    }
    static QStringList lines() {
        QMutexLocker locker(&s_mutex);
        QStringList texts;
        for (const auto& [at, text] : s_lines)
            texts.append(text);
        return texts;
    }
    // When the first line starting with `prefix` was logged, in ms; -1 when none was.
    static qint64 loggedAt(const QString& prefix) {
        QMutexLocker locker(&s_mutex);
        for (const auto& [at, text] : s_lines)
            if (text.startsWith(prefix))
                return at;
        return -1;
    }

private:
    static void handle(QtMsgType, const QMessageLogContext& context, const QString& text) {
        if (QByteArrayView(context.category).endsWith(".upload")) {
            QMutexLocker locker(&s_mutex);
            s_lines.append({s_clock.elapsed(), text});
        }
    }

    QtMessageHandler m_previous;
    static inline QMutex s_mutex;
    static inline QList<std::pair<qint64, QString>> s_lines;
    static inline QElapsedTimer s_clock;
};

const Error machineCancelled =
    UploadError::rejected(QStringLiteral("The machine cancelled the transfer."));

} // namespace

class FileUploaderTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void storesTheFileDespiteFaults_data() {
        QTest::addColumn<QStringList>("simArguments");
        QTest::addColumn<qsizetype>("size");
        QTest::newRow("plain, one short chunk") << QStringList() << qsizetype(100);
        QTest::newRow("plain, 20000 bytes") << QStringList() << qsizetype(20000);
        QTest::newRow("exactly two chunks") << QStringList() << qsizetype(16384);
        QTest::newRow("ftype report")
            << QStringList{QStringLiteral("--ftype"), QStringLiteral("abc1")} << qsizetype(20000);
        QTest::newRow("latency") << QStringList{QStringLiteral("--latency-ms"),
                                                QStringLiteral("20")}
                                 << qsizetype(30000);
        QTest::newRow("frames in small pieces")
            << QStringList{QStringLiteral("--split-writes")} << qsizetype(20000);
        QTest::newRow("noise between frames")
            << QStringList{QStringLiteral("--noise")} << qsizetype(40000);
        QTest::newRow("bad checksum frames")
            << QStringList{QStringLiteral("--bad-checksum")} << qsizetype(40000);
        QTest::newRow("unknown frames")
            << QStringList{QStringLiteral("--unknown-frame")} << qsizetype(40000);
        QTest::newRow("every framing fault at once")
            << QStringList{QStringLiteral("--split-writes"), QStringLiteral("--noise"),
                           QStringLiteral("--bad-checksum"), QStringLiteral("--unknown-frame")}
            << qsizetype(20000);
        QTest::newRow("retry as the first request")
            << QStringList{QStringLiteral("--retry-after"), QStringLiteral("0")}
            << qsizetype(20000);
        QTest::newRow("retry after a chunk")
            << QStringList{QStringLiteral("--retry-after"), QStringLiteral("2")}
            << qsizetype(40000);
        QTest::newRow("second view request")
            << QStringList{QStringLiteral("--view-again-after"), QStringLiteral("2")}
            << qsizetype(40000);
        QTest::newRow("chunks out of order")
            << QStringList{QStringLiteral("--shuffle-chunks")} << qsizetype(70000);
        QTest::newRow("status chatter")
            << QStringList{QStringLiteral("--chatter-ms"), QStringLiteral("20")}
            << qsizetype(20000);
    }
    void storesTheFileDespiteFaults() {
        QFETCH(QStringList, simArguments);
        QFETCH(qsizetype, size);
        SimUpload upload(simArguments);
        const QByteArray content = patterned(size);
        QVERIFY(upload.start(QStringLiteral("part.nc"), content));
        QVERIFY(upload.recorder.waitUntilEnded());

        QVERIFY2(upload.outcome().finished,
                 upload.outcome().error ? qPrintable(upload.error().description()) : "no outcome");
        QCOMPARE(upload.sim.stored(QStringLiteral("part.nc")), content);
        const QList<TransferProgress>& values = upload.outcome().progress;
        QCOMPARE(values.first(),
                 (TransferProgress{TransferProgress::Phase::Preparing, 0, size, 0}));
        QCOMPARE(values.last(),
                 (TransferProgress{TransferProgress::Phase::Completed, size, size, 0}));
        QCOMPARE(values[values.size() - 2].phase, TransferProgress::Phase::Uploading);
        QCOMPARE(values[values.size() - 2].bytesSent, size);
        QVERIFY(values[values.size() - 2].bytesPerSecond > 0);
        // The probe, the opening and never a cancel packet.
        const QStringList types = upload.sim.loggedTypes();
        QCOMPARE(types.mid(0, 3),
                 (QStringList{QStringLiteral("controlMulti"), QStringLiteral("fileStart"),
                              QStringLiteral("fileMD5")}));
        QVERIFY(!types.contains(QStringLiteral("fileCancel")));
    }

    void endsWithTheSpecifiedFailure_data() {
        QTest::addColumn<QStringList>("simArguments");
        QTest::addColumn<Error>("error");
        QTest::addColumn<bool>("cancelPacketSent");
        QTest::newRow("machine cancels")
            << QStringList{QStringLiteral("--cancel-after"), QStringLiteral("1")}
            << machineCancelled << false;
        QTest::newRow("machine cancels at once")
            << QStringList{QStringLiteral("--cancel-after"), QStringLiteral("0")}
            << machineCancelled << false;
        QTest::newRow("machine falls silent")
            << QStringList{QStringLiteral("--silent-after"), QStringLiteral("2")}
            << Error(UploadError::timedOut()) << true;
        QTest::newRow("machine closes the connection")
            << QStringList{QStringLiteral("--close-after"), QStringLiteral("1")}
            << Error(UploadError::invalidResponse(
                   QStringLiteral("The machine closed the connection.")))
            << false;
        QTest::newRow("chunk out of range")
            << QStringList{QStringLiteral("--bad-chunk-after"), QStringLiteral("1")}
            << Error(UploadError::invalidResponse(
                   QStringLiteral("Requested chunk 6 is outside 1...5.")))
            << false;
    }
    void endsWithTheSpecifiedFailure() {
        QFETCH(QStringList, simArguments);
        QFETCH(Error, error);
        QFETCH(bool, cancelPacketSent);
        SimUpload upload(simArguments);
        LogCapture log;
        QVERIFY(upload.start(QStringLiteral("part.nc"), patterned(40000)));
        QVERIFY(upload.recorder.waitUntilEnded());

        QVERIFY(!upload.outcome().finished);
        QCOMPARE(upload.error(), error);
        QVERIFY(upload.sim.storedNames().isEmpty());
        if (cancelPacketSent) {
            QTRY_VERIFY_WITH_TIMEOUT(
                upload.sim.loggedTypes().contains(QStringLiteral("fileCancel")), 3000);
            QVERIFY(log.lines().contains(
                QStringLiteral("Transfer ended waiting for the machine: ") + error.description()));
        } else {
            QTest::qWait(100);
            QVERIFY(!upload.sim.loggedTypes().contains(QStringLiteral("fileCancel")));
        }
        if (error == machineCancelled) {
            const QStringList lines = log.lines();
            QVERIFY(std::any_of(lines.begin(), lines.end(), [](const QString& line) {
                return line.startsWith(QStringLiteral("Machine cancelled after "));
            }));
        }
    }

    void logsTheUploadAndTheReportedFileType() {
        SimUpload upload({QStringLiteral("--ftype"), QStringLiteral("abc1"),
                          QStringLiteral("--chatter-ms"), QStringLiteral("30")});
        const QByteArray content = patterned(20000);
        LogCapture log;
        QVERIFY(upload.start(QStringLiteral("my part.nc"), content));
        QVERIFY(upload.recorder.waitUntilEnded());
        QVERIFY(upload.outcome().finished);

        const QStringList lines = log.lines();
        QCOMPARE(lines.first(), QStringLiteral("Connecting to 127.0.0.1:%1").arg(upload.port));
        QVERIFY(
            lines.contains(QStringLiteral("Machine reports ftype = abc1; sending uncompressed")));
        QVERIFY(lines.contains(QStringLiteral("Uploading 20000 bytes to /sd/gcodes/my part.nc in 3 "
                                              "chunks, md5 ") +
                               QString::fromLatin1(MakeraUploadSession::md5Hex(content))));
        QCOMPARE(lines.last(),
                 QStringLiteral("Machine reported the end of the file after 20000 bytes"));
    }

    void probeEndsAfterSilenceOrChatter() {
        // Real probe limits: 0.4 s of silence, 2 s in all.
        UploadTimings timings;
        timings.openingPause = std::chrono::milliseconds(10);
        for (const bool chatter : {false, true}) {
            SimUpload upload(
                chatter ? QStringList{QStringLiteral("--chatter-ms"), QStringLiteral("100")}
                        : QStringList(),
                timings);
            LogCapture log;
            QVERIFY(upload.start(QStringLiteral("part.nc"), patterned(100)));
            QVERIFY(upload.recorder.waitUntilEnded());
            QVERIFY(upload.outcome().finished);
            const qint64 probed = log.loggedAt(QStringLiteral("Machine did not report ftype")) -
                                  log.loggedAt(QStringLiteral("Connecting to"));
            if (chatter) {
                QVERIFY2(probed >= 1950 && probed < 3000, qPrintable(QString::number(probed)));
            } else {
                QVERIFY2(probed >= 390 && probed < 1500, qPrintable(QString::number(probed)));
            }
        }
    }

    void namesWithBlanksAndQuestionMarksArriveWhole() {
        SimProcess sim({QStringLiteral("--ftype"), QStringLiteral("x")});
        const quint16 port = sim.waitUntilListening();
        QVERIFY(port != 0);
        QTemporaryDir dir;
        for (const QString& name : {QStringLiteral("my part.nc"), QStringLiteral("a b?.gcode"),
                                    QStringLiteral("x*!~ y.cnc")}) {
            const QByteArray content = patterned(9000, int(name.size()));
            QVERIFY(uploadToTheEnd(jobFile(dir, name, content), simMachine(port)).finished);
            QCOMPARE(sim.stored(name), content);
        }
    }

    void refusesBeforeSendingAnything() {
        SimProcess sim;
        const quint16 port = sim.waitUntilListening();
        QVERIFY(port != 0);
        QTemporaryDir dir;

        const Outcome backslash =
            uploadToTheEnd(jobFile(dir, QStringLiteral("a\\b.nc"), "G0\n"), simMachine(port));
        QCOMPARE(backslash.error, Error(UploadError::rejected(
                                      QStringLiteral("The filename contains a path separator."))));

        const Outcome empty = uploadToTheEnd(jobFile(dir, QStringLiteral("empty.nc"), QByteArray()),
                                             simMachine(port));
        QCOMPARE(empty.error, Error(UploadError::rejected(QStringLiteral("empty.nc is empty."))));
        QVERIFY(empty.progress.isEmpty());

        const JobFile gone = jobFile(dir, QStringLiteral("gone.nc"), "G0\n");
        QVERIFY(QFile::remove(gone.url.toLocalFile()));
        const Outcome missing = uploadToTheEnd(gone, simMachine(port));
        QVERIFY(missing.error && missing.error->is<PlatformError>());
        QVERIFY(missing.progress.isEmpty());

        QTest::qWait(100);
        QCOMPARE(sim.loggedPackets(), QStringList());
    }

    void connectionFailures() {
        QTemporaryDir dir;
        const JobFile file = jobFile(dir, QStringLiteral("part.nc"), "G0\n");

        QCOMPARE(uploadToTheEnd(file, simMachine(0)).error,
                 Error(UploadError::rejected(QStringLiteral("0 is not a usable TCP port."))));

        // A port that nothing listens on.
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost, 0));
        const quint16 closedPort = server.serverPort();
        server.close();
        const Outcome refused = uploadToTheEnd(file, simMachine(closedPort));
        QVERIFY(refused.error && refused.error->is<PlatformError>());
        QCOMPARE(refused.progress.size(), 1);
    }

    void cancelDuringTheProbeSendsNoFileStart() {
        UploadTimings timings = quickTimings();
        timings.probePacket = std::chrono::milliseconds(5000);
        timings.probeOverall = std::chrono::milliseconds(8000);
        SimUpload upload({}, timings);
        LogCapture log;
        QVERIFY(upload.start(QStringLiteral("part.nc"), patterned(20000)));
        QTRY_VERIFY_WITH_TIMEOUT(upload.sim.loggedTypes().contains(QStringLiteral("controlMulti")),
                                 5000);
        upload.uploader.cancel();
        QVERIFY(upload.recorder.waitUntilEnded(2000));
        QCOMPARE(upload.error(), Error(UploadError::cancelled()));
        QCOMPARE(upload.error().description(), QStringLiteral("The upload was cancelled."));
        QTRY_COMPARE_WITH_TIMEOUT(
            upload.sim.loggedTypes(),
            (QStringList{QStringLiteral("controlMulti"), QStringLiteral("fileCancel")}), 3000);
        QVERIFY(log.lines().contains(
            QStringLiteral("Machine did not report ftype; sending uncompressed")));
    }

    void cancelDuringTheTransferWakesTheWait() {
        SimUpload upload({QStringLiteral("--ftype"), QStringLiteral("x"),
                          QStringLiteral("--latency-ms"), QStringLiteral("300")});
        LogCapture log;
        QVERIFY(upload.start(QStringLiteral("part.nc"), patterned(100000)));
        QTRY_VERIFY_WITH_TIMEOUT(upload.sim.loggedTypes().contains(QStringLiteral("fileData")),
                                 8000);
        QElapsedTimer clock;
        clock.start();
        upload.uploader.cancel();
        QVERIFY(upload.recorder.waitUntilEnded(2000));
        QVERIFY(clock.elapsed() < 250);
        QCOMPARE(upload.error(), Error(UploadError::cancelled()));
        QVERIFY(log.lines().contains(
            QStringLiteral("Transfer ended waiting for the machine: The upload was cancelled.")));
        QTRY_COMPARE_WITH_TIMEOUT(upload.sim.loggedTypes().last(), QStringLiteral("fileCancel"),
                                  3000);
        QVERIFY(upload.sim.storedNames().isEmpty());
    }

    void destroyingARunningUploaderTellsTheMachine() {
        SimProcess sim({QStringLiteral("--ftype"), QStringLiteral("x"),
                        QStringLiteral("--latency-ms"), QStringLiteral("200")});
        const quint16 port = sim.waitUntilListening();
        QVERIFY(port != 0);
        QTemporaryDir dir;
        auto* uploader = new MakeraFileUploader(quickTimings());
        QSignalSpy failed(uploader, &Operation::failed);
        QSignalSpy finished(uploader, &Operation::finished);
        uploader->upload(jobFile(dir, QStringLiteral("part.nc"), patterned(100000)),
                         simMachine(port));
        QTRY_VERIFY_WITH_TIMEOUT(sim.loggedTypes().contains(QStringLiteral("fileData")), 8000);
        uploader->cancel();
        delete uploader;
        QTRY_COMPARE_WITH_TIMEOUT(sim.loggedTypes().last(), QStringLiteral("fileCancel"), 3000);
        QCOMPARE(failed.size(), 0);
        QCOMPARE(finished.size(), 0);

        // Deleted while reading: nothing is ever emitted, nothing is sent.
        SimProcess quiet;
        const quint16 quietPort = quiet.waitUntilListening();
        auto* early = new MakeraFileUploader(quickTimings());
        bool emitted = false;
        QObject::connect(early, &FileUploading::progress, this, [&] { emitted = true; });
        early->upload(jobFile(dir, QStringLiteral("early.nc"), patterned(1000)),
                      simMachine(quietPort));
        delete early;
        QTest::qWait(300);
        QVERIFY(!emitted);
        QCOMPARE(quiet.loggedPackets(), QStringList());
    }

    void progressIsThrottledButTheWholeFileIsAlwaysReported() {
        SimUpload upload({QStringLiteral("--ftype"), QStringLiteral("x"),
                          QStringLiteral("--latency-ms"), QStringLiteral("1")});
        const qsizetype size = 300 * 8192 + 5;
        QVERIFY(upload.start(QStringLiteral("big.nc"), patterned(size)));
        QVERIFY(upload.recorder.waitUntilEnded(30000));
        QVERIFY(upload.outcome().finished);

        const Outcome& outcome = upload.outcome();
        QList<TransferProgress> uploading;
        QList<qint64> at;
        for (qsizetype i = 0; i < outcome.progress.size(); ++i) {
            if (outcome.progress[i].phase == TransferProgress::Phase::Uploading) {
                uploading.append(outcome.progress[i]);
                at.append(outcome.progressAtMs[i]);
            }
        }
        // 301 replies went out; a value came at most every 50 ms, and the last at once.
        QVERIFY(uploading.size() >= 2);
        QVERIFY(uploading.size() < 301);
        for (qsizetype i = 1; i + 1 < at.size(); ++i)
            QVERIFY2(at[i] - at[i - 1] >= 45, qPrintable(QString::number(at[i] - at[i - 1])));
        for (qsizetype i = 1; i < uploading.size(); ++i)
            QVERIFY(uploading[i].bytesSent >= uploading[i - 1].bytesSent);
        QCOMPARE(uploading.last().bytesSent, size);
        QCOMPARE(uploading.last().totalBytes, size);
        QCOMPARE(outcome.progress.last().phase, TransferProgress::Phase::Completed);
    }

    void theModelUploadsThroughTheFactoryAndCancels() {
        SimProcess sim({QStringLiteral("--ftype"), QStringLiteral("x"),
                        QStringLiteral("--latency-ms"), QStringLiteral("100")});
        const quint16 port = sim.waitUntilListening();
        QVERIFY(port != 0);
        QTemporaryDir dir;
        AppModel model(std::make_unique<FakeDiscoverer>(), std::make_unique<FakeConnector>(),
                       MakeraFileUploader::factory(),
                       std::make_unique<AppPersistence>(temporaryStore(dir)));
        QVERIFY(!model.addManualMachine(QStringLiteral("127.0.0.1"), port));
        const QByteArray content = patterned(30000);
        model.chooseFile(jobFile(dir, QStringLiteral("model part.nc"), content));

        model.upload(false);
        QVERIFY(model.isUploading());
        QTRY_VERIFY_WITH_TIMEOUT(!model.isUploading(), 15000);
        QCOMPARE(model.errorMessage(), std::nullopt);
        QCOMPARE(*model.progress(),
                 (TransferProgress{TransferProgress::Phase::Completed, 30000, 30000, 0}));
        QCOMPARE(sim.stored(QStringLiteral("model part.nc")), content);
        QCOMPARE(model.persistence().uploadRecords().size(), 1);
        QVERIFY(model.isRecentDuplicate());

        model.upload(true);
        QTRY_VERIFY_WITH_TIMEOUT(sim.loggedTypes().count(QStringLiteral("fileStart")) == 2, 8000);
        model.cancelUpload();
        QTRY_VERIFY_WITH_TIMEOUT(!model.isUploading(), 3000);
        QCOMPARE(model.errorMessage(), QStringLiteral("The upload was cancelled."));
        QCOMPARE(model.progress()->phase, TransferProgress::Phase::Cancelled);
        QTRY_COMPARE_WITH_TIMEOUT(sim.loggedTypes().last(), QStringLiteral("fileCancel"), 3000);
        QCOMPARE(model.persistence().uploadRecords().size(), 1);
    }

    void realSilenceTimesOutAfterNineSeconds() {
        SimUpload upload({QStringLiteral("--ftype"), QStringLiteral("x"),
                          QStringLiteral("--silent-after"), QStringLiteral("1")},
                         UploadTimings());
        LogCapture log;
        QVERIFY(upload.start(QStringLiteral("part.nc"), patterned(20000)));
        QTRY_VERIFY_WITH_TIMEOUT(upload.sim.loggedTypes().contains(QStringLiteral("fileData")),
                                 5000);
        QElapsedTimer silence;
        silence.start();
        QVERIFY(upload.recorder.waitUntilEnded(15000));
        QVERIFY2(silence.elapsed() >= 8900, qPrintable(QString::number(silence.elapsed())));
        QCOMPARE(upload.error(), Error(UploadError::timedOut()));
        QCOMPARE(upload.error().description(),
                 QStringLiteral("The machine did not respond before the upload timed out."));
        QTRY_COMPARE_WITH_TIMEOUT(upload.sim.loggedTypes().last(), QStringLiteral("fileCancel"),
                                  3000);
        QVERIFY(log.lines().contains(QStringLiteral("Transfer ended waiting for the machine: The "
                                                    "machine did not respond before the upload "
                                                    "timed out.")));
    }
};

QTEST_GUILESS_MAIN(FileUploaderTest)
#include "FileUploaderTest.moc"
