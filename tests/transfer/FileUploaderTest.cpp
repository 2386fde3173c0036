#include "app/AppModel.h"
#include "protocol/MakeraConnection.h"
#include "support/ModelHarness.h"
#include "support/SimProcess.h"
#include "support/TestFiles.h"
#include "transfer/MakeraFileUploader.h"
#include "transfer/MakeraFilename.h"

#include <QRegularExpression>
#include <QTcpServer>
#include <QTest>

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using Phase = TransferProgress::Phase;

namespace {

// Short waits so that faults end quickly; the real ones are tested separately.
UploadTimings quickTimings() {
    return {3000ms, 300ms, 60ms, 10ms, 1500ms, 50ms};
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

// Runs the event loop until `done` holds or the bound passes. Unlike QTest::qWaitFor it never
// sleeps between events, so an exchange with the simulator goes at its own pace.
template <typename Predicate>
bool runUntil(Predicate done, int boundMs) {
    const QDeadlineTimer deadline(boundMs);
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (done() || deadline.hasExpired())
            loop.quit();
    });
    poll.start(5);
    loop.exec();
    return done();
}

// An uploader sending to a simulated machine of its own, and everything the upload reported.
struct SimUpload {
    explicit SimUpload(const QStringList& simArguments = {}, UploadTimings timings = quickTimings())
        : sim(simArguments)
        , port(sim.waitUntilListening())
        , uploader(timings) {
        uploader.setAutoDelete(false);
        QObject::connect(&uploader, &FileUploading::progress, &uploader,
                         [this](const TransferProgress& value) {
                             progress.append(value);
                             progressAt.append(clock.elapsed());
                         });
        clock.start();
        QObject::connect(&uploader, &Operation::finished, &uploader, [this] { finished = true; });
        QObject::connect(&uploader, &Operation::failed, &uploader,
                         [this](const Error& failure) { error = failure; });
    }

    // False when the simulated machine never started listening.
    bool start(const QString& name, const QByteArray& content) {
        uploader.upload(jobFile(dir, name, content), simMachine(port));
        return port != 0;
    }
    bool waitUntilEnded(int boundMs = 20000) {
        return runUntil([this] { return finished || error; }, boundMs);
    }
    // The machine received the cancel packet last (bounded wait).
    bool machineWasCancelled() {
        return runUntil([this] { return sim.loggedTypes().endsWith(u"fileCancel"_s); }, 3000);
    }

    SimProcess sim;
    const quint16 port;
    QTemporaryDir dir;
    MakeraFileUploader uploader;
    QList<TransferProgress> progress;
    QElapsedTimer clock;
    QList<qint64> progressAt; // when each value came, in ms
    bool finished = false;
    std::optional<Error> error;
};

// The log line of a transfer that ended waiting for the machine; without an error, its start.
QString waitEnded(const std::optional<Error>& error = {}) {
    return u"Transfer ended waiting for the machine: "_s + (error ? error->description() : u""_s);
}

// What the test does once the upload runs.
enum class Act {
    None,
    Truncate,
    Grow,
    Rewrite,
    Delete,
    Cancel,
    CancelWhileProbing,
    CancelWhenEveryChunkWasSent
};

bool perform(Act act, SimUpload& upload, qsizetype size) {
    QFile file(upload.dir.filePath(u"part.nc"_s));
    if (act >= Act::Cancel)
        upload.uploader.cancel();
    return act == Act::Truncate ? file.resize(size / 3)
           : act == Act::Grow   ? file.open(QIODevice::Append) && file.write("G0\n") == 3
           : act == Act::Rewrite
               ? file.open(QIODevice::ReadWrite) && file.write(patterned(size, 2)) == size
           : act == Act::Delete ? file.remove()
                                : true;
}

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
        QTest::newRow("every framing fault, status chatter")
            << args("--split-writes --noise --bad-checksum --unknown-frame --chatter-ms 20 "
                    "--chatter-during-upload")
            << QStringLiteral("a b?.gcode") << qsizetype(40000);
        QTest::newRow("retry as the first request, chunks out of order, view again")
            << args("--retry-after 0 --shuffle-chunks --view-again-after 2")
            << QStringLiteral("x*!~ y.cnc") << qsizetype(70000);
        QTest::newRow("300 chunks and a few bytes")
            << args("--ftype abc1 --latency-ms 1") << QStringLiteral("big.nc")
            << qsizetype(300 * 8192 + 5);
    }
    void storesTheFileDespiteFaults() {
        QFETCH(QStringList, simArguments);
        QFETCH(QString, name);
        QFETCH(qsizetype, size);
        SimUpload upload(simArguments);
        const QByteArray content = patterned(size);
        // The log lines that tell what the upload did; the test fails when one is missing.
        QTest::ignoreMessage(QtInfoMsg,
                             qPrintable(u"Connecting to 127.0.0.1:%1"_s.arg(upload.port)));
        QTest::ignoreMessage(QtInfoMsg, simArguments.contains(u"--ftype"_s)
                                            ? "Machine reports ftype = abc1; sending uncompressed"
                                            : "Machine did not report ftype; sending uncompressed");
        QTest::ignoreMessage(
            QtInfoMsg,
            qPrintable(u"Uploading %1 bytes to /sd/gcodes/%2 in %3 chunks, md5 %4"_s.arg(size)
                           .arg(name)
                           .arg((size + 8191) / 8192)
                           .arg(QString::fromLatin1(MakeraUploadSession::md5Hex(content)))));
        QTest::ignoreMessage(
            QtInfoMsg,
            qPrintable(u"Machine reported the end of the file after %1 bytes"_s.arg(size)));
        QVERIFY(upload.start(name, content));
        QVERIFY(upload.waitUntilEnded());

        QVERIFY2(upload.finished,
                 upload.error ? qPrintable(upload.error->description()) : "no outcome");
        QCOMPARE(upload.sim.stored(name), content);
        const QList<TransferProgress>& values = upload.progress;
        QCOMPARE(values.first(), (TransferProgress{Phase::Preparing, 0, size, 0}));
        QCOMPARE(values.last(), (TransferProgress{Phase::Completed, size, size, 0}));
        const qsizetype whole = values.size() - 2;
        QCOMPARE(values[whole].bytesSent, size);
        // The rate's clock starts after this one and before the first value (20 ms of slack).
        const double rate = values[whole].bytesPerSecond, at = upload.progressAt[whole];
        QVERIFY(rate >= size * 1000.0 / at &&
                rate * (at - upload.progressAt[1] - 20) <= size * 1000.0);
        // Values for part of the file come at most every 50 ms; the whole file shows at once.
        for (qsizetype i = 2; i + 1 < values.size(); ++i) {
            QCOMPARE(values[i].phase, Phase::Uploading);
            QVERIFY(values[i].bytesSent == size ||
                    upload.progressAt[i] - upload.progressAt[i - 1] >= 45);
        }
        // The probe, the opening and never a cancel packet.
        const QStringList types = upload.sim.loggedTypes();
        QCOMPARE(types.mid(0, 3), args("controlMulti fileStart fileMD5"));
        QVERIFY(!types.contains(QStringLiteral("fileCancel")));
    }

    // Every way an upload ends without the file: a fault at the machine, the file changing while
    // it is sent, or the user cancelling; and how far it had come, which decides the advice.
    void endsWithoutTheFile_data() {
        QTest::addColumn<QStringList>("simArguments");
        QTest::addColumn<Act>("act");
        QTest::addColumn<Error>("error");
        QTest::addColumn<UploadStage>("stage");
        QTest::addColumn<bool>("cancelPacketSent");
        QTest::addColumn<QString>("logged"); // the start of an error line; none when it logs none
        const auto row = [](const char* name, const char* simArguments, Act act, const Error& error,
                            UploadStage stage, bool cancelPacketSent, const QString& logged = {}) {
            QTest::newRow(name) << args(simArguments) << act << error << stage << cancelPacketSent
                                << logged;
        };
        const Error changed = JobFileError::changedWhileSending();
        const Error timedOut = UploadError::timedOut(), cancelled = UploadError::cancelled();
        const Error closed =
            UploadError::invalidResponse(QStringLiteral("The machine closed the connection."));
        const UploadStage opened = UploadStage::Opened, all = UploadStage::EveryChunkSent;
        row("machine cancels", "--ftype x --cancel-after 1", Act::None,
            UploadError::rejected(u"The machine cancelled the transfer."_s), opened, false,
            QStringLiteral("Machine cancelled after 8192 bytes"));
        row("silent after the last chunk", "--ftype x --silent-after 100", Act::None, timedOut, all,
            true, waitEnded(timedOut));
        row("machine resets the connection at once", "--ftype x --reset-after 0", Act::None, closed,
            opened, false, waitEnded(closed));
        row("machine closes after the last chunk", "--ftype x --close-after 100", Act::None, closed,
            all, false, waitEnded(closed));
        row("chunk out of range", "--ftype x --bad-chunk-after 1", Act::None,
            UploadError::invalidResponse(QStringLiteral("Requested chunk 101 is outside 1...100.")),
            opened, false);
        row("file truncated", "--ftype x --latency-ms 15", Act::Truncate, changed, opened, true);
        row("file grown", "--ftype x --latency-ms 15", Act::Grow, changed, opened, true);
        row("file rewritten in place, same size", "--ftype x --latency-ms 15", Act::Rewrite,
            changed, opened, true);
        row("file deleted", "--ftype x --latency-ms 15", Act::Delete, changed, opened, true);
        row("cancelled while probing", "", Act::CancelWhileProbing, cancelled,
            UploadStage::NotOpened, true);
        row("cancelled while transferring", "--ftype x --latency-ms 300", Act::Cancel, cancelled,
            opened, true, waitEnded(cancelled));
        row("cancelled after the last chunk", "--ftype x --silent-after 100",
            Act::CancelWhenEveryChunkWasSent, cancelled, all, true, waitEnded(cancelled));
    }
    void endsWithoutTheFile() {
        QFETCH(QStringList, simArguments);
        QFETCH(Act, act);
        QFETCH(Error, error);
        // Quick timings, but a probe longer than the bound on the end below: only a cancel that
        // wakes the probe meets it.
        SimUpload upload(simArguments, {3000ms, 8000ms, 8000ms, 10ms, 1500ms, 50ms});
        QFETCH(QString, logged);
        if (!logged.isEmpty())
            QTest::ignoreMessage(QtCriticalMsg,
                                 QRegularExpression(u"^"_s + QRegularExpression::escape(logged)));
        const qsizetype size = 100 * 8192;
        QVERIFY(upload.start(QStringLiteral("part.nc"), patterned(size)));
        const QStringList opening = act == Act::CancelWhileProbing
                                        ? args("controlMulti fileCancel")
                                        : args("controlMulti fileStart fileMD5");
        if (act != Act::None) {
            // The file's chunks come in blocks of 64: a change shows when the second is read.
            const QString seen = act == Act::CancelWhileProbing ? opening[0] : u"fileData"_s;
            const qsizetype times = act == Act::CancelWhenEveryChunkWasSent ? 100 : 1;
            QVERIFY(runUntil([&] { return upload.sim.loggedTypes().count(seen) == times; }, 8000));
            QVERIFY(perform(act, upload, size));
        }
        QVERIFY(upload.waitUntilEnded(6000));

        QVERIFY(!upload.finished);
        QVERIFY2(sameFailure(*upload.error, error), qPrintable(upload.error->description()));
        QTEST(upload.error->uploadStage(), "stage");
        QVERIFY(upload.sim.storedNames().isEmpty());
        QFETCH(bool, cancelPacketSent);
        QVERIFY(cancelPacketSent
                    ? upload.machineWasCancelled()
                    : !runUntil([&] { return upload.sim.loggedTypes().contains(u"fileCancel"_s); },
                                100));
        QCOMPARE(upload.sim.loggedTypes().mid(0, opening.size()), opening);
    }

    // The real waits, measured at the machine: the probe ends after 0.4 s of silence or 2 s in
    // all, the opening pauses 0.2 s, and status chatter does not extend the 9 s for a request. A
    // packet read late there shortens the gap it sees, so the lower bounds leave room for a loaded
    // machine while still failing when a wait is skipped or cut short.
    void theRealWaits() {
        for (const bool chatter : {false, true}) {
            SimUpload upload(chatter
                                 ? args("--chatter-ms 100 --chatter-during-upload --silent-after 1")
                                 : QStringList(),
                             UploadTimings());
            QVERIFY(upload.start(u"part.nc"_s, patterned(20000)));
            QVERIFY(
                runUntil([&] { return upload.sim.loggedTypes().contains(u"fileData"_s); }, 8000));
            QElapsedTimer silence;
            silence.start();
            QVERIFY(upload.waitUntilEnded(15000));
            const QStringList at = upload.sim.loggedFields(2, 2);
            const auto gapUs = [&](int i) { return at[i + 1].toLongLong() - at[i].toLongLong(); };
            QCOMPARE(upload.sim.loggedTypes().mid(0, 3), args("controlMulti fileStart fileMD5"));
            const qint64 probed = gapUs(0) / 1000;
            QVERIFY2(chatter ? probed >= 1800 && probed < 3000 : probed >= 300 && probed < 1500,
                     qPrintable(QString::number(probed)));
            QVERIFY2(gapUs(1) >= 150000, qPrintable(QString::number(gapUs(1))));
            if (!chatter) {
                QVERIFY(upload.finished);
                continue;
            }
            QVERIFY2(silence.elapsed() >= 8900, qPrintable(QString::number(silence.elapsed())));
            QCOMPARE(upload.error, Error(UploadError::timedOut()));
            QVERIFY(upload.machineWasCancelled());
        }
    }

    void failsBeforeSendingTheFile_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("port"); // -1: the simulator's, -2: one where nothing listens
        QTest::addColumn<Error>("error");
        QTest::addColumn<int>("progressValues");
        const auto row = [](const char* name, const QString& file, const QByteArray& content,
                            int port, const Error& error, int progressValues) {
            QTest::newRow(name) << file << content << port << error << progressValues;
        };
        row("backslash", u"a\\b.nc"_s, "G0\n", -1,
            MakeraFilename::uploadCommand(u"a\\b.nc"_s).error(), 1);
        row("empty", u"empty.nc"_s, {}, -1, UploadError::rejected(u"empty.nc is empty."_s), 0);
        row("missing", u"gone.nc"_s, "G0\n", -1,
            PlatformError{PlatformError::Domain::File, int(QFileDevice::OpenError), {}}, 0);
        row("port 0", u"part.nc"_s, "G0\n", 0, MakeraConnection::create(simMachine(0)).error(), 1);
        row("nothing listens", u"part.nc"_s, "G0\n", -2,
            PlatformError{
                PlatformError::Domain::Network, int(QAbstractSocket::ConnectionRefusedError), {}},
            1);
    }
    void failsBeforeSendingTheFile() {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        QFETCH(int, port);
        QFETCH(Error, error);
        SimUpload upload;
        QVERIFY(upload.port != 0);
        QTcpServer closed;
        QVERIFY(closed.listen(QHostAddress::LocalHost, 0));
        const quint16 closedPort = closed.serverPort();
        closed.close();
        const JobFile file = jobFile(upload.dir, name, content);
        // This row's file goes before the upload starts.
        if (name == u"gone.nc"_s)
            QVERIFY(QFile::remove(file.url.toLocalFile()));

        upload.uploader.upload(file, simMachine(port == -1   ? upload.port
                                                : port == -2 ? closedPort
                                                             : 0));
        QVERIFY(upload.waitUntilEnded());
        QVERIFY(!upload.finished);
        QVERIFY2(sameFailure(*upload.error, error), qPrintable(upload.error->description()));
        QTEST(int(upload.progress.size()), "progressValues");
        QTest::qWait(100);
        QCOMPARE(upload.sim.loggedPackets(), QStringList());
    }

    void destroyingARunningUploaderTellsTheMachine() {
        SimUpload upload(args("--ftype x --latency-ms 200"));
        UploadTimings timings = quickTimings();
        timings.openingPause = 1000ms;
        // Deleted while checking the file (nothing is sent), in the opening pause and while the
        // file is sent (the machine is told).
        for (const QString& last : {QString(), u"fileStart"_s, u"fileData"_s}) {
            const QStringList before = upload.sim.loggedPackets();
            auto* uploader = new MakeraFileUploader(timings);
            uploader->upload(jobFile(upload.dir, last + u"job.nc"_s, patterned(100000)),
                             simMachine(upload.port));
            QVERIFY(last.isEmpty() ||
                    runUntil([&] { return upload.sim.loggedTypes().endsWith(last); }, 8000));
            delete uploader;
            QVERIFY2(last.isEmpty()
                         ? !runUntil([&] { return upload.sim.loggedPackets() != before; }, 300)
                         : upload.machineWasCancelled(),
                     qPrintable(last));
        }
    }

    void theModelShowsTheCheckingCancelsAndUploadsThroughTheFactory() {
        SimProcess sim(args("--ftype x"));
        const quint16 port = sim.waitUntilListening();
        QVERIFY(port != 0);
        ModelHarness h(std::nullopt, MakeraFileUploader::factory());
        AppModel& model = *h.model;
        QVERIFY(!model.addManualMachine(u"127.0.0.1"_s, port));
        // Sparse where the file system allows: long to hash, cheap to make.
        model.chooseFile(h.jobFile(u"large.nc"_s, qint64(2) << 30));

        model.upload(false);
        QTRY_VERIFY_WITH_TIMEOUT(model.checkingFraction().has_value(), 10000);
        QVERIFY(*model.checkingFraction() >= 0 && *model.checkingFraction() <= 1);
        QCOMPARE(model.progress(), std::nullopt);
        model.cancelUpload();
        QTRY_VERIFY_WITH_TIMEOUT(!model.isUploading(), 3000);
        QCOMPARE(model.errorMessage(), Error(UploadError::cancelled()).description());
        QCOMPARE(model.progress()->phase, Phase::Cancelled);
        QCOMPARE(model.checkingFraction(), std::nullopt);
        QCOMPARE(sim.loggedPackets(), QStringList());

        const QByteArray content = patterned(30000);
        model.chooseFile(jobFile(h.dir, QStringLiteral("model part.nc"), content));
        model.upload(false);
        QTRY_VERIFY_WITH_TIMEOUT(!model.isUploading(), 15000);
        QCOMPARE(model.errorMessage(), std::nullopt);
        QCOMPARE(*model.progress(), (TransferProgress{Phase::Completed, 30000, 30000, 0}));
        QCOMPARE(sim.stored(QStringLiteral("model part.nc")), content);
        QCOMPARE(model.persistence().uploadRecords().size(), 1);
        QVERIFY(model.isRecentDuplicate());
    }
};

QTEST_GUILESS_MAIN(FileUploaderTest)
#include "FileUploaderTest.moc"
