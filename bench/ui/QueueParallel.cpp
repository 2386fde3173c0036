// Several machines at once through the desktop app: the real model and main window (offscreen)
// send one job file to MACHINES tarnwick-sim processes in parallel, and the same file to one of
// them alone, while a timer on the main thread records how late each tick fires.
//
//   queue-parallel SIM_PROGRAM [MACHINES] [SIZE_KIB] [LATENCY_MS] [RUNS]
//
// Defaults: 8 machines, 1024 KiB, 5 ms before every request, 5 runs. Prints the median time of
// one machine and of all of them, their ratio, and the main thread's worst lateness while all
// machines were sending. Run it on the offscreen platform in a release build.

#include "LatenessProbe.h"
#include "SilentConnector.h"
#include "app/AppModel.h"
#include "app/SettingsStore.h"
#include "transfer/MakeraFileUploader.h"
#include "ui/ContentView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <memory>
#include <vector>

using namespace tarnwick;

namespace {

class NoScan : public MachineDiscovering {
public:
    MachineScan* discover(std::chrono::milliseconds, QObject* parent) override {
        class Pending : public MachineScan {
        public:
            using MachineScan::MachineScan;
            void cancel() override { Q_EMIT failed(CancellationError{}); }
        };
        return new Pending(parent);
    }
};

// A simulated machine on 127.0.0.1 at a port the system picks.
std::unique_ptr<QProcess> startSimulator(const QString& program, const QString& store,
                                         int latencyMs, quint16& port) {
    auto sim = std::make_unique<QProcess>();
    sim->setProcessChannelMode(QProcess::SeparateChannels);
    sim->start(program, {QStringLiteral("--listen"), QStringLiteral("127.0.0.1:0"),
                         QStringLiteral("--no-announce"), QStringLiteral("--store"), store,
                         QStringLiteral("--ftype"), QStringLiteral("bench"),
                         QStringLiteral("--latency-ms"), QString::number(latencyMs)});
    if (!sim->waitForStarted(5000) || !sim->waitForReadyRead(5000))
        qFatal("the simulator did not start");
    const QString line = QString::fromUtf8(sim->readLine()).trimmed();
    port = quint16(line.section(u':', -1).toUInt());
    if (port == 0)
        qFatal("the simulator named no port: %s", qPrintable(line));
    return sim;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    const QStringList args = application.arguments();
    if (args.size() < 2)
        qFatal("usage: queue-parallel SIM_PROGRAM [MACHINES] [SIZE_KIB] [LATENCY_MS] [RUNS]");
    const auto number = [&](int index, int fallback) {
        return args.size() > index ? args.at(index).toInt() : fallback;
    };
    const int machineCount = std::max(1, number(2, 8));
    const int sizeKiB = std::max(1, number(3, 1024));
    const int latencyMs = number(4, 5);
    const int runs = std::max(1, number(5, 5));

    QTemporaryDir work;
    std::vector<std::unique_ptr<QProcess>> sims;
    QList<Machine> machines;
    for (int i = 0; i < machineCount; ++i) {
        quint16 port = 0;
        sims.push_back(startSimulator(args.at(1), work.filePath(QStringLiteral("sim%1").arg(i)),
                                      latencyMs, port));
        machines.append(Machine{QStringLiteral("Sim %1").arg(i), std::nullopt,
                                QStringLiteral("127.0.0.1"), port,
                                Machine::ConnectionStatus::Discovered});
    }
    QFile job(work.filePath(QStringLiteral("bench.nc")));
    if (!job.open(QIODevice::WriteOnly) || !job.write(QByteArray(qint64(sizeKiB) * 1024, 'G')) ||
        !job.flush())
        qFatal("cannot write the job file");
    job.close();
    const JobFile file = JobFile::fromUrl(QUrl::fromLocalFile(job.fileName())).value();

    AppModel model(std::make_unique<NoScan>(), std::make_unique<bench::SilentConnector>(),
                   MakeraFileUploader::factory(),
                   std::make_unique<AppPersistence>(
                       settings::openStoreFile(work.filePath(QStringLiteral("store.ini")))));
    ui::ContentView window(model);
    window.resize(1080, 720);
    window.show();
    model.chooseFile(file);
    QApplication::processEvents();

    // One run: choose the machines and let the window show them, as a user does before asking
    // for the upload; then upload and wait, the event loop turning, until the model says it has
    // ended. The probe, when there is one, starts as the upload is asked for.
    const auto send = [&](const QList<Machine>& to, bool probed) {
        model.selectMachines(to);
        QApplication::processEvents();
        std::unique_ptr<bench::LatenessProbe> probe;
        if (probed)
            probe = std::make_unique<bench::LatenessProbe>(nullptr);
        QEventLoop loop;
        QObject::connect(&model, &AppModel::isUploadingChanged, &loop, [&] {
            if (!model.isUploading())
                loop.quit();
        });
        QElapsedTimer clock;
        clock.start();
        model.upload(true);
        loop.exec();
        return std::pair{double(clock.nsecsElapsed()) / 1e6, std::move(probe)};
    };

    std::vector<double> one, all;
    QString lateness;
    for (int run = 0; run < runs; ++run) {
        one.push_back(send({machines.first()}, false).first);
        auto [elapsed, probe] = send(machines, true);
        all.push_back(elapsed);
        QTextStream report(&lateness);
        report << "run " << run + 1 << ' ';
        probe->report(report);
    }
    const auto& pairs = model.uploadQueue().pairs();
    const auto sent = std::count_if(pairs.cbegin(), pairs.cend(),
                                    [](const QueuedUpload& pair) { return pair.isSent(); });

    QTextStream out(stdout);
    out << "machines " << machineCount << "\nsize-kib " << sizeKiB << "\nlatency-ms " << latencyMs
        << "\nruns " << runs << "\nsent-in-last-run " << sent << " of " << pairs.size()
        << "\none-machine-median-ms " << median(one) << "\nall-machines-median-ms " << median(all)
        << "\nratio " << median(all) / median(one) << "\nmain thread while all machines sent:\n"
        << lateness;
    for (auto& sim : sims) {
        sim->kill();
        sim->waitForFinished(2000);
    }
    return sent == pairs.size() ? 0 : 1;
}
