// A very large sparse job file sent through MakeraFileUploader to tarnwick-sim on 127.0.0.1:
// peak resident memory of both sides, time to the first chunk, throughput, and how long the
// uploader's cancel() takes to end the upload in each of its phases. Prints medians.
//
//     large-upload SIM-BINARY [--size-mib N] [--runs N] [--transfer-seconds N] [--cancel-runs N]
//
// With --transfer-seconds the transfer is cut after that long and its rate taken over that time.

#include "transfer/MakeraFileUploader.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <sys/resource.h>

using namespace tarnwick;
using namespace std::chrono_literals;

namespace {

// Runs the event loop until `done` holds. Unlike QTest::qWaitFor it never sleeps between events,
// which would add its 10 ms to every request of the machine.
bool spinUntil(const std::function<bool()>& done, int boundMs) {
    QEventLoop loop;
    QTimer check;
    QElapsedTimer clock;
    clock.start();
    QObject::connect(&check, &QTimer::timeout, &loop, [&] {
        if (done() || clock.elapsed() > boundMs)
            loop.quit();
    });
    check.start(1);
    if (!done())
        loop.exec();
    return done();
}

double median(QList<double> values) {
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? 0 : values[values.size() / 2];
}

// Peak resident set of a process from /proc, in MiB; 0 where there is none.
double peakResidentMiB(qint64 pid) {
    QFile status(QStringLiteral("/proc/%1/status").arg(pid));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024;
    return 0;
}

class Sim {
public:
    Sim(const QString& binary, const QString& store, const QStringList& extra = {}) {
        m_process.start(
            binary, QStringList{QStringLiteral("--listen"), QStringLiteral("127.0.0.1:0"),
                                QStringLiteral("--no-announce"), QStringLiteral("--store"), store} +
                        extra);
        m_process.waitForReadyRead(10000);
        port = quint16(m_process.readLine().trimmed().split(':').last().toUInt());
    }
    ~Sim() {
        m_process.kill();
        m_process.waitForFinished(5000);
    }
    double peakResidentMiB() const { return ::peakResidentMiB(m_process.processId()); }
    Machine machine() const {
        return {QStringLiteral("Bench"), std::nullopt, QStringLiteral("127.0.0.1"), port,
                Machine::ConnectionStatus::Discovered};
    }

    quint16 port = 0;

private:
    QProcess m_process;
};

struct Run {
    double firstChunkS = 0;
    double seconds = 0;
    qint64 bytes = 0;
    bool ok = false;
};

Run uploadOnce(const JobFile& file, const Sim& sim, int transferSeconds) {
    MakeraFileUploader uploader;
    uploader.setAutoDelete(false);
    Run run;
    bool ended = false;
    QElapsedTimer clock;
    QObject::connect(
        &uploader, &FileUploading::progress, &uploader, [&](const TransferProgress& value) {
            run.bytes = value.bytesSent;
            if (value.phase != TransferProgress::Phase::Uploading || run.firstChunkS != 0)
                return;
            run.firstChunkS = double(clock.nsecsElapsed()) / 1e9;
            if (transferSeconds > 0)
                QTimer::singleShot(transferSeconds * 1000, &uploader, [&] {
                    run.seconds = double(clock.nsecsElapsed()) / 1e9;
                    run.ok = true;
                    uploader.cancel();
                });
        });
    QObject::connect(&uploader, &Operation::finished, &uploader, [&] { run.ok = ended = true; });
    QObject::connect(&uploader, &Operation::failed, &uploader, [&](const Error& error) {
        if (!run.ok)
            std::fprintf(stderr, "upload failed: %s\n", qPrintable(error.description()));
        ended = true;
    });
    clock.start();
    uploader.upload(file, sim.machine());
    spinUntil([&] { return ended; }, 3600 * 1000);
    if (run.seconds == 0)
        run.seconds = double(clock.nsecsElapsed()) / 1e9;
    return run;
}

// Starts an upload, cancels it once `reached` says the phase is on, and returns the seconds from
// cancel() to the end of the stream, and to the end of the uploader's work in the thread pool.
std::pair<double, double>
cancelLatency(const JobFile& file, const Machine& machine, UploadTimings timings,
              const std::function<bool(const QList<TransferProgress>&, qint64 checked)>& reached) {
    MakeraFileUploader uploader(timings);
    uploader.setAutoDelete(false);
    QList<TransferProgress> values;
    qint64 checked = 0;
    bool ended = false;
    QObject::connect(&uploader, &FileUploading::progress, &uploader,
                     [&](const TransferProgress& value) { values.append(value); });
    QObject::connect(&uploader, &FileUploading::checking, &uploader,
                     [&](qint64 bytes, qint64) { checked = bytes; });
    QObject::connect(&uploader, &Operation::finished, &uploader, [&] { ended = true; });
    QObject::connect(&uploader, &Operation::failed, &uploader, [&](const Error&) { ended = true; });
    uploader.upload(file, machine);
    if (!spinUntil([&] { return reached(values, checked) || ended; }, 60000) || ended)
        return {-1, -1};
    QElapsedTimer clock;
    clock.start();
    uploader.cancel();
    spinUntil([&] { return ended; }, 60000);
    const double toEnd = double(clock.nsecsElapsed()) / 1e9;
    QThreadPool::globalInstance()->waitForDone();
    return {toEnd, double(clock.nsecsElapsed()) / 1e9};
}

} // namespace

int main(int argc, char* argv[]) {
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.addPositionalArgument(QStringLiteral("sim"), QStringLiteral("The tarnwick-sim binary."));
    parser.addOption({QStringLiteral("size-mib"), QStringLiteral("File size."), QStringLiteral("N"),
                      QStringLiteral("5120")});
    parser.addOption({QStringLiteral("runs"), QStringLiteral("Whole uploads."), QStringLiteral("N"),
                      QStringLiteral("3")});
    parser.addOption({QStringLiteral("transfer-seconds"), QStringLiteral("Cut each transfer."),
                      QStringLiteral("N"), QStringLiteral("0")});
    parser.addOption({QStringLiteral("cancel-runs"), QStringLiteral("Cancels per phase."),
                      QStringLiteral("N"), QStringLiteral("5")});
    parser.process(app);
    if (parser.positionalArguments().size() != 1)
        parser.showHelp(2);
    const QString simBinary = parser.positionalArguments().first();
    const qint64 size = parser.value(QStringLiteral("size-mib")).toLongLong() << 20;

    QTemporaryDir dir;
    QFile sparse(dir.filePath(QStringLiteral("large.nc")));
    if (!sparse.open(QIODevice::WriteOnly) || !sparse.resize(size))
        qFatal("cannot make the sparse file");
    sparse.close();
    const JobFile large = JobFile::fromUrl(QUrl::fromLocalFile(sparse.fileName())).value();

    QList<double> firstChunk, throughput, simPeak;
    for (int i = 0; i < parser.value(QStringLiteral("runs")).toInt(); ++i) {
        Sim sim(simBinary, dir.filePath(QStringLiteral("store")));
        const Run run =
            uploadOnce(large, sim, parser.value(QStringLiteral("transfer-seconds")).toInt());
        if (!run.ok)
            return 1;
        firstChunk.append(run.firstChunkS);
        throughput.append(double(run.bytes) / 1e6 / (run.seconds - run.firstChunkS));
        simPeak.append(sim.peakResidentMiB());
        QFile::remove(dir.filePath(QStringLiteral("store/gcodes/large.nc")));
        std::printf("run %d: first chunk after %.2f s, %.1f MB/s, whole upload %.1f s\n", i + 1,
                    run.firstChunkS, throughput.last(), run.seconds);
        std::fflush(stdout);
    }
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("%lld MiB sparse file, %lld runs (medians):\n", size >> 20,
                qint64(firstChunk.size()));
    std::printf("  uploader peak RSS %.0f MiB, simulator peak RSS %.0f MiB\n",
                double(usage.ru_maxrss) / 1024, median(simPeak));
    std::printf("  time to first chunk %.2f s (hashing included), transfer %.1f MB/s\n",
                median(firstChunk), median(throughput));

    // Each phase made long enough to be caught in it.
    QTemporaryDir small;
    QFile smallFile(small.filePath(QStringLiteral("small.nc")));
    if (!smallFile.open(QIODevice::WriteOnly) || smallFile.write(QByteArray(1 << 20, 'G')) < 0)
        qFatal("cannot make the small file");
    smallFile.close();
    const JobFile smallJob = JobFile::fromUrl(QUrl::fromLocalFile(smallFile.fileName())).value();
    const auto prepared = [](const QList<TransferProgress>& values, qint64) {
        return !values.isEmpty();
    };
    UploadTimings longProbe;
    longProbe.probePacket = 30s;
    longProbe.probeOverall = 60s;
    UploadTimings longPause;
    longPause.probeOverall = 1ms;
    longPause.openingPause = 30s;
    struct Phase {
        const char* name;
        const JobFile* file;
        QStringList simArguments;
        UploadTimings timings;
        std::function<bool(const QList<TransferProgress>&, qint64)> reached;
        int afterMs;
    };
    const QList<Phase> phases{
        {"checking", &large, {}, {}, [](const auto&, qint64 checked) { return checked > 0; }, 0},
        {"probing", &smallJob, {}, longProbe, prepared, 300},
        {"opening pause", &smallJob, {}, longPause, prepared, 300},
        {"transferring",
         &smallJob,
         {QStringLiteral("--latency-ms"), QStringLiteral("400")},
         {},
         [](const QList<TransferProgress>& values, qint64) {
             return !values.isEmpty() && values.last().phase == TransferProgress::Phase::Uploading;
         },
         100},
    };
    std::printf("cancel latency (median of %d, seconds): to the end of the stream / to the end of "
                "all work\n",
                parser.value(QStringLiteral("cancel-runs")).toInt());
    for (const Phase& phase : phases) {
        QList<double> toEnd, toIdle;
        for (int i = 0; i < parser.value(QStringLiteral("cancel-runs")).toInt(); ++i) {
            Sim sim(simBinary, small.filePath(QStringLiteral("store")), phase.simArguments);
            const auto reached = [&](const QList<TransferProgress>& values, qint64 checked) {
                static QElapsedTimer since;
                if (!phase.reached(values, checked)) {
                    since.invalidate();
                    return false;
                }
                if (!since.isValid())
                    since.start();
                return since.elapsed() >= phase.afterMs;
            };
            const auto [end, idle] =
                cancelLatency(*phase.file, sim.machine(), phase.timings, reached);
            if (end < 0)
                continue;
            toEnd.append(end);
            toIdle.append(idle);
        }
        if (toEnd.isEmpty())
            std::printf("  %-14s not reached\n", phase.name);
        else
            std::printf("  %-14s %.4f / %.4f\n", phase.name, median(toEnd), median(toIdle));
    }
    return 0;
}
