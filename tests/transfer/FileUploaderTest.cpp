#include "app/AppModel.h"
#include "support/FakeServices.h"
#include "support/SimProcess.h"
#include "support/TestFiles.h"
#include "transfer/MakeraFileUploader.h"

#include <QLoggingCategory>
#include <QMutex>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTest>

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace std::chrono_literals;

namespace {

// Short waits so that faults end quickly; the real ones are tested separately.
UploadTimings quickTimings() {
    return {3000ms, 300ms, 60ms, 10ms, 1500ms, 50ms};
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

QStringList args(const char* line) {
    return QString::fromLatin1(line).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

Machine simMachine(quint16 port) {
    return Machine{QStringLiteral("Simulator"), std::nullopt, QStringLiteral("127.0.0.1"), port,
                   Machine::ConnectionStatus::Discovered};
}

JobFile jobFile(const QTemporaryDir& dir, const QString& name, const QByteArray& content) {
    return JobFile::fromUrl(writeFile(dir, name, content)).value();
}

// Everything one upload reported; waits (bounded) for its end.
struct Recorder {
    explicit Recorder(FileUploading& uploader) {
        QObject::connect(&uploader, &FileUploading::progress, &uploader,
                         [this](const TransferProgress& value) { progress.append(value); });
        QObject::connect(&uploader, &Operation::finished, &uploader, [this] { finished = true; });
        QObject::connect(&uploader, &Operation::failed, &uploader,
                         [this](const Error& failure) { error = failure; });
    }
    bool waitUntilEnded(int boundMs = 20000) {
        return QTest::qWaitFor([this] { return finished || error; }, boundMs);
    }

    QList<TransferProgress> progress;
    bool finished = false;
    std::optional<Error> error;
};

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
    const Error& error() const { return *recorder.error; }
    // The machine received the cancel packet last (bounded wait).
    bool machineWasCancelled() {
        return QTest::qWaitFor(
            [this] { return sim.loggedTypes().endsWith(QStringLiteral("fileCancel")); }, 3000);
    }

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
        lines().clear();
        m_previous = qInstallMessageHandler(&LogCapture::handle);
        QLoggingCategory::setFilterRules(QStringLiteral("*.upload.debug=true"));
    }
    ~LogCapture() {
        qInstallMessageHandler(m_previous);
        QLoggingCategory::setFilterRules(QString());
    }
    static QStringList& lines() {
        static QStringList captured;
        return captured;
    }

private:
    static void handle(QtMsgType, const QMessageLogContext& context, const QString& text) {
        if (QByteArrayView(context.category).endsWith(".upload"))
            lines().append(text);
    }

    QtMessageHandler m_previous;
};

const Error machineCancelled =
    UploadError::rejected(QStringLiteral("The machine cancelled the transfer."));

// Platform errors are compared by what they are, never by the system's wording.
bool sameFailure(const Error& actual, const Error& expected) {
    const auto* platform = expected.get<PlatformError>();
    const auto* other = actual.get<PlatformError>();
    if (!platform)
        return actual == expected;
    return other && other->domain == platform->domain && other->code == platform->code;
}

} // namespace

class FileUploaderTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void storesTheFileDespiteFaults_data() {
        QTest::addColumn<QStringList>("simArguments");
        QTest::addColumn<QString>("name");
        QTest::addColumn<qsizetype>("size");
        QTest::newRow("plain, ftype report")
            << args("--ftype abc1") << QStringLiteral("my part.nc") << qsizetype(20000);
        QTest::newRow("every framing fault")
            << args("--split-writes --noise --bad-checksum --unknown-frame")
            << QStringLiteral("a b?.gcode") << qsizetype(20000);
        QTest::newRow("retry as the first request")
            << args("--retry-after 0") << QStringLiteral("x*!~ y.cnc") << qsizetype(9000);
        QTest::newRow("chunks out of order, view again")
            << args("--shuffle-chunks --view-again-after 2") << QStringLiteral("part.nc")
            << qsizetype(70000);
        QTest::newRow("status chatter during the upload")
            << args("--chatter-ms 20 --chatter-during-upload") << QStringLiteral("part.nc")
            << qsizetype(40000);
    }
    void storesTheFileDespiteFaults() {
        QFETCH(QStringList, simArguments);
        QFETCH(QString, name);
        QFETCH(qsizetype, size);
        SimUpload upload(simArguments);
        LogCapture log;
        const QByteArray content = patterned(size);
        QVERIFY(upload.start(name, content));
        QVERIFY(upload.recorder.waitUntilEnded());

        QVERIFY2(upload.recorder.finished,
                 upload.recorder.error ? qPrintable(upload.error().description()) : "no outcome");
        QCOMPARE(upload.sim.stored(name), content);
        const QList<TransferProgress>& values = upload.recorder.progress;
        QCOMPARE(values.first(),
                 (TransferProgress{TransferProgress::Phase::Preparing, 0, size, 0}));
        QCOMPARE(values.last(),
                 (TransferProgress{TransferProgress::Phase::Completed, size, size, 0}));
        QCOMPARE(values[values.size() - 2].phase, TransferProgress::Phase::Uploading);
        QCOMPARE(values[values.size() - 2].bytesSent, size);
        QVERIFY(values[values.size() - 2].bytesPerSecond > 0);
        // The probe, the opening and never a cancel packet.
        const QStringList types = upload.sim.loggedTypes();
        QCOMPARE(types.mid(0, 3), args("controlMulti fileStart fileMD5"));
        QVERIFY(!types.contains(QStringLiteral("fileCancel")));

        const QStringList lines = log.lines();
        QCOMPARE(lines.first(), QStringLiteral("Connecting to 127.0.0.1:%1").arg(upload.port));
        QCOMPARE(lines[1],
                 simArguments.contains(QStringLiteral("--ftype"))
                     ? QStringLiteral("Machine reports ftype = abc1; sending uncompressed")
                     : QStringLiteral("Machine did not report ftype; sending uncompressed"));
        QCOMPARE(lines[2],
                 QStringLiteral("Uploading %1 bytes to /sd/gcodes/%2 in %3 chunks, md5 %4")
                     .arg(size)
                     .arg(name)
                     .arg((size + 8191) / 8192)
                     .arg(QString::fromLatin1(MakeraUploadSession::md5Hex(content))));
        QCOMPARE(lines.last(),
                 QStringLiteral("Machine reported the end of the file after %1 bytes").arg(size));
    }

    void endsWithTheSpecifiedFailure_data() {
        QTest::addColumn<QStringList>("simArguments");
        QTest::addColumn<Error>("error");
        QTest::addColumn<bool>("cancelPacketSent");
        QTest::newRow("machine cancels") << args("--cancel-after 1") << machineCancelled << false;
        QTest::newRow("machine cancels at once")
            << args("--cancel-after 0") << machineCancelled << false;
        QTest::newRow("machine falls silent")
            << args("--silent-after 2") << Error(UploadError::timedOut()) << true;
        QTest::newRow("silent after the last chunk")
            << args("--silent-after 5")
            << Error(UploadError::timedOut(
                   QStringLiteral("The machine may have received the whole file: check it on the "
                                  "machine before sending it again.")))
            << true;
        QTest::newRow("machine closes the connection")
            << args("--close-after 1")
            << Error(UploadError::invalidResponse(
                   QStringLiteral("The machine closed the connection.")))
            << false;
        QTest::newRow("machine resets the connection")
            << args("--reset-after 1")
            << Error(PlatformError{
                   PlatformError::Domain::Network, int(QAbstractSocket::NetworkError), {}})
            << false;
        QTest::newRow("chunk out of range") << args("--bad-chunk-after 1")
                                            << Error(UploadError::invalidResponse(QStringLiteral(
                                                   "Requested chunk 6 is outside 1...5.")))
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

        QVERIFY(!upload.recorder.finished);
        QVERIFY2(sameFailure(upload.error(), error), qPrintable(upload.error().description()));
        QVERIFY(upload.sim.storedNames().isEmpty());
        if (cancelPacketSent) {
            QVERIFY(upload.machineWasCancelled());
            QVERIFY(log.lines().contains(
                QStringLiteral("Transfer ended waiting for the machine: ") + error.description()));
        } else {
            QTest::qWait(100);
            QVERIFY(!upload.sim.loggedTypes().contains(QStringLiteral("fileCancel")));
        }
        if (error == machineCancelled)
            QVERIFY(log.lines().last().startsWith(QStringLiteral("Machine cancelled after ")));
    }

    void fileChangedDuringTheUpload_data() {
        QTest::addColumn<int>("change");
        QTest::newRow("truncated") << 0;
        QTest::newRow("grown") << 1;
        QTest::newRow("rewritten in place, same size") << 2;
        QTest::newRow("deleted") << 3;
    }
    void fileChangedDuringTheUpload() {
        QFETCH(int, change);
        SimUpload upload(args("--ftype x --latency-ms 15"));
        const qsizetype size = 100 * 8192;
        QVERIFY(upload.start(QStringLiteral("part.nc"), patterned(size)));
        QTRY_VERIFY_WITH_TIMEOUT(upload.sim.loggedTypes().contains(QStringLiteral("fileData")),
                                 8000);
        QFile file(upload.dir.filePath(QStringLiteral("part.nc")));
        const bool changed = change == 0   ? file.resize(size / 3)
                             : change == 1 ? file.open(QIODevice::Append) && file.write("G0\n") == 3
                             : change == 2 ? file.open(QIODevice::ReadWrite) &&
                                                 file.write(patterned(size, 2)) == size
                                           : file.remove();
        QVERIFY(changed);
        file.close();
        QVERIFY(upload.recorder.waitUntilEnded());
        QCOMPARE(upload.error(), Error(JobFileError::changedWhileSending()));
        QVERIFY(upload.machineWasCancelled());
        QVERIFY(upload.sim.storedNames().isEmpty());
    }

    void probeEndsAfterSilenceOrChatterAndTheOpeningPausesInFull() {
        // Real probe limits (0.4 s of silence, 2 s in all) and pause, measured at the machine:
        // a packet read late there shortens the gap it sees, so the lower bounds leave room for
        // a loaded machine while still failing when a wait is skipped or cut short.
        for (const bool chatter : {false, true}) {
            SimUpload upload(chatter ? args("--chatter-ms 100") : QStringList(), UploadTimings());
            QVERIFY(upload.start(QStringLiteral("part.nc"), patterned(100)));
            QVERIFY(upload.recorder.waitUntilEnded());
            QVERIFY(upload.recorder.finished);
            const QList<qint64> at = upload.sim.loggedArrivalsUs();
            QCOMPARE(upload.sim.loggedTypes().mid(0, 3), args("controlMulti fileStart fileMD5"));
            const qint64 probed = (at[1] - at[0]) / 1000;
            if (chatter) {
                QVERIFY2(probed >= 1800 && probed < 3000, qPrintable(QString::number(probed)));
            } else {
                QVERIFY2(probed >= 300 && probed < 1500, qPrintable(QString::number(probed)));
            }
            QVERIFY2(at[2] - at[1] >= 150000, qPrintable(QString::number(at[2] - at[1])));
        }
    }

    void failsBeforeSendingTheFile_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("port"); // -1: the simulator's, -2: one where nothing listens
        QTest::addColumn<Error>("error");
        QTest::addColumn<int>("progressValues");
        QTest::newRow("backslash")
            << QStringLiteral("a\\b.nc") << QByteArray("G0\n") << -1
            << Error(
                   UploadError::rejected(QStringLiteral("The filename contains a path separator.")))
            << 1;
        QTest::newRow("empty") << QStringLiteral("empty.nc") << QByteArray() << -1
                               << Error(UploadError::rejected(QStringLiteral("empty.nc is empty.")))
                               << 0;
        QTest::newRow("missing") << QStringLiteral("gone.nc") << QByteArray("G0\n") << -1
                                 << Error(PlatformError{PlatformError::Domain::File,
                                                        int(QFileDevice::OpenError),
                                                        {}})
                                 << 0;
        QTest::newRow("port 0") << QStringLiteral("part.nc") << QByteArray("G0\n") << 0
                                << Error(UploadError::rejected(
                                       QStringLiteral("0 is not a usable TCP port.")))
                                << 1;
        QTest::newRow("nothing listens")
            << QStringLiteral("part.nc") << QByteArray("G0\n") << -2
            << Error(PlatformError{PlatformError::Domain::Network,
                                   int(QAbstractSocket::ConnectionRefusedError),
                                   {}})
            << 1;
    }
    void failsBeforeSendingTheFile() {
        QFETCH(QString, name);
        QFETCH(int, port);
        QFETCH(Error, error);
        SimProcess sim;
        QTcpServer closed;
        QVERIFY(closed.listen(QHostAddress::LocalHost, 0));
        const quint16 closedPort = closed.serverPort();
        closed.close();
        const quint16 simPort = sim.waitUntilListening();
        QVERIFY(simPort != 0);
        QTemporaryDir dir;
        QFETCH(QByteArray, content);
        const JobFile file = jobFile(dir, name, content);
        // This row's file goes before the upload starts.
        if (name == QStringLiteral("gone.nc"))
            QVERIFY(QFile::remove(file.url.toLocalFile()));

        MakeraFileUploader uploader(quickTimings());
        Recorder recorder(uploader);
        uploader.upload(file, simMachine(port == -1 ? simPort : port == -2 ? closedPort : 0));
        QVERIFY(recorder.waitUntilEnded());
        QVERIFY2(recorder.error && sameFailure(*recorder.error, error),
                 recorder.error ? qPrintable(recorder.error->description()) : "finished");
        QTEST(int(recorder.progress.size()), "progressValues");
        QTest::qWait(100);
        QCOMPARE(sim.loggedPackets(), QStringList());
    }

    void cancelEndsTheWaitAndTellsTheMachine_data() {
        QTest::addColumn<QStringList>("simArguments");
        QTest::addColumn<QString>("cancelAfter");
        QTest::addColumn<QString>("logged");
        QTest::newRow("probe") << QStringList() << QStringLiteral("controlMulti")
                               << QStringLiteral(
                                      "Machine did not report ftype; sending uncompressed");
        QTest::newRow("transfer")
            << args("--ftype x --latency-ms 300") << QStringLiteral("fileData")
            << QStringLiteral("Transfer ended waiting for the machine: The upload was cancelled.");
    }
    void cancelEndsTheWaitAndTellsTheMachine() {
        QFETCH(QStringList, simArguments);
        QFETCH(QString, cancelAfter);
        UploadTimings timings = quickTimings();
        timings.probePacket = 5000ms;
        timings.probeOverall = 8000ms;
        SimUpload upload(simArguments, timings);
        LogCapture log;
        QVERIFY(upload.start(QStringLiteral("part.nc"), patterned(100000)));
        QTRY_VERIFY_WITH_TIMEOUT(upload.sim.loggedTypes().contains(cancelAfter), 8000);
        upload.uploader.cancel();
        QVERIFY(upload.recorder.waitUntilEnded(2000));
        QCOMPARE(upload.error(), Error(UploadError::cancelled()));
        QTEST(log.lines().last(), "logged");
        QVERIFY(upload.machineWasCancelled());
        // Nothing of the file went out after the probe.
        QVERIFY(cancelAfter != QStringLiteral("controlMulti") ||
                upload.sim.loggedTypes() == args("controlMulti fileCancel"));
        QVERIFY(upload.sim.storedNames().isEmpty());
    }

    void destroyingARunningUploaderTellsTheMachine() {
        SimUpload upload(args("--ftype x --latency-ms 200"));
        auto* uploader = new MakeraFileUploader(quickTimings());
        uploader->upload(jobFile(upload.dir, QStringLiteral("part.nc"), patterned(100000)),
                         simMachine(upload.port));
        QTRY_VERIFY_WITH_TIMEOUT(upload.sim.loggedTypes().contains(QStringLiteral("fileData")),
                                 8000);
        uploader->cancel();
        delete uploader;
        QVERIFY(upload.machineWasCancelled());

        // Deleted while checking the file: nothing is sent.
        const qsizetype sent = upload.sim.loggedPackets().size();
        uploader = new MakeraFileUploader(quickTimings());
        uploader->upload(jobFile(upload.dir, QStringLiteral("early.nc"), patterned(1000)),
                         simMachine(upload.port));
        delete uploader;
        QTest::qWait(300);
        QCOMPARE(upload.sim.loggedPackets().size(), sent);
    }

    void progressIsThrottledButTheWholeFileIsAlwaysReported() {
        SimUpload upload(args("--ftype x --latency-ms 1"));
        const qsizetype size = 300 * 8192 + 5;
        QElapsedTimer clock;
        QList<qint64> at;
        QList<TransferProgress> uploading;
        QObject::connect(&upload.uploader, &FileUploading::progress, &upload.uploader,
                         [&](const TransferProgress& value) {
                             if (value.phase == TransferProgress::Phase::Uploading) {
                                 uploading.append(value);
                                 at.append(clock.elapsed());
                             }
                         });
        clock.start();
        QVERIFY(upload.start(QStringLiteral("big.nc"), patterned(size)));
        QVERIFY(upload.recorder.waitUntilEnded(30000));
        QVERIFY(upload.recorder.finished);

        // 301 replies went out; a value came at most every 50 ms, and the last at once.
        QVERIFY(uploading.size() >= 2 && uploading.size() < 301);
        for (qsizetype i = 1; i < uploading.size(); ++i) {
            QVERIFY(i + 1 == at.size() || at[i] - at[i - 1] >= 45);
            QVERIFY(uploading[i].bytesSent >= uploading[i - 1].bytesSent);
        }
        QCOMPARE(uploading.last().bytesSent, size);
        QCOMPARE(uploading.last().totalBytes, size);
    }

    void theModelShowsTheCheckingCancelsAndUploadsThroughTheFactory() {
        SimProcess sim(args("--ftype x"));
        const quint16 port = sim.waitUntilListening();
        QVERIFY(port != 0);
        QTemporaryDir dir;
        AppModel model(std::make_unique<FakeDiscoverer>(), std::make_unique<FakeConnector>(),
                       MakeraFileUploader::factory(),
                       std::make_unique<AppPersistence>(temporaryStore(dir)));
        QVERIFY(!model.addManualMachine(QStringLiteral("127.0.0.1"), port));
        // Sparse where the file system allows: long to hash, cheap to make.
        QFile large(dir.filePath(QStringLiteral("large.nc")));
        QVERIFY(large.open(QIODevice::WriteOnly) && large.resize(qint64(2) << 30));
        large.close();
        model.chooseFile(JobFile::fromUrl(QUrl::fromLocalFile(large.fileName())).value());

        model.upload(false);
        QTRY_VERIFY_WITH_TIMEOUT(model.checkingFraction().has_value(), 10000);
        QVERIFY(*model.checkingFraction() >= 0 && *model.checkingFraction() <= 1);
        QCOMPARE(model.progress(), std::nullopt);
        model.cancelUpload();
        QTRY_VERIFY_WITH_TIMEOUT(!model.isUploading(), 3000);
        QCOMPARE(model.errorMessage(), QStringLiteral("The upload was cancelled."));
        QCOMPARE(model.progress()->phase, TransferProgress::Phase::Cancelled);
        QCOMPARE(model.checkingFraction(), std::nullopt);
        QCOMPARE(sim.loggedPackets(), QStringList());

        const QByteArray content = patterned(30000);
        model.chooseFile(jobFile(dir, QStringLiteral("model part.nc"), content));
        model.upload(false);
        QTRY_VERIFY_WITH_TIMEOUT(!model.isUploading(), 15000);
        QCOMPARE(model.errorMessage(), std::nullopt);
        QCOMPARE(*model.progress(),
                 (TransferProgress{TransferProgress::Phase::Completed, 30000, 30000, 0}));
        QCOMPARE(sim.stored(QStringLiteral("model part.nc")), content);
        QCOMPARE(model.persistence().uploadRecords().size(), 1);
        QVERIFY(model.isRecentDuplicate());
    }

    void chatterDoesNotExtendTheNineSecondsForARequest() {
        SimUpload upload(
            args("--ftype x --silent-after 1 --chatter-ms 200 --chatter-during-upload"),
            UploadTimings());
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
        QVERIFY(upload.machineWasCancelled());
    }
};

QTEST_GUILESS_MAIN(FileUploaderTest)
#include "FileUploaderTest.moc"
