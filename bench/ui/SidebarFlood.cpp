// What a flood of announcements costs the desktop app: a scan hears MACHINES distinct machines
// (default 1000) within one second, in bursts every 10 ms, and the app's real model, main window
// and sidebar take them in while a timer on the main thread records how late each tick fires.
//
//   sidebar-flood [MACHINES]
//
// Prints the worst and 99th-percentile tick lateness, the longest single burst, the rows the
// sidebar lists and the growth of the resident memory. Run it on the offscreen platform
// (QT_QPA_PLATFORM=offscreen) in a release build.

#include "LatenessProbe.h"
#include "SilentConnector.h"
#include "app/AppModel.h"
#include "app/SettingsStore.h"
#include "ui/ContentView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QListView>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTimer>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

using namespace tarnwick;
using namespace std::chrono_literals;

namespace {

// The resident set in bytes; 0 where the system does not say.
qint64 residentBytes() {
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> fields = statm.readAll().split(' ');
#ifdef Q_OS_UNIX
    return fields.size() > 1 ? fields[1].toLongLong() * sysconf(_SC_PAGESIZE) : 0;
#else
    return 0;
#endif
}

// A scan that never ends by itself; the flood feeds it.
class FloodScan : public MachineScan {
public:
    using MachineScan::MachineScan;
    void cancel() override { Q_EMIT failed(CancellationError{}); }
};

class FloodDiscoverer : public MachineDiscovering {
public:
    MachineScan* discover(std::chrono::milliseconds, QObject* parent) override {
        scan = new FloodScan(parent);
        return scan;
    }
    QPointer<FloodScan> scan;
};

} // namespace

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    const int machines = argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : 1000;
    constexpr int bursts = 100;
    QTemporaryDir storeDir;

    auto discoverer = std::make_unique<FloodDiscoverer>();
    FloodDiscoverer* flood = discoverer.get();
    AppModel model(
        std::move(discoverer), std::make_unique<bench::SilentConnector>(),
        [] { return std::unique_ptr<FileUploading>(); },
        std::make_unique<AppPersistence>(
            settings::openStoreFile(storeDir.filePath(QStringLiteral("store.ini")))));
    ui::ContentView window(model);
    window.resize(1080, 720);
    window.show();
    QApplication::processEvents();

    const qint64 memoryBefore = residentBytes();
    auto* probe = new bench::LatenessProbe(&window);
    QElapsedTimer clock;
    clock.start();
    qint64 longestBurstNs = 0;
    qint64 announcedMs = 0;
    int sent = 0;
    QTimer feeder;
    feeder.setTimerType(Qt::PreciseTimer);
    feeder.setInterval(10ms);
    QObject::connect(&feeder, &QTimer::timeout, [&] {
        QElapsedTimer burst;
        burst.start();
        const int until = std::min(machines, sent + (machines + bursts - 1) / bursts);
        for (; sent < until; ++sent) {
            // Names in no order, so that each one lands somewhere inside the sorted list.
            const quint32 tag = QRandomGenerator::global()->generate();
            Q_EMIT flood->scan->machineFound(Machine{
                QStringLiteral("Machine %1").arg(tag, 8, 16, QLatin1Char('0')), std::nullopt,
                QStringLiteral("10.%1.%2.%3")
                    .arg(sent >> 16)
                    .arg((sent >> 8) & 255)
                    .arg(sent & 255),
                2222, Machine::ConnectionStatus::Discovered});
        }
        longestBurstNs = std::max(longestBurstNs, burst.nsecsElapsed());
        if (sent == machines) {
            announcedMs = clock.elapsed();
            feeder.stop();
        }
    });
    feeder.start();
    // Half a second more to let the window draw what came last.
    QTimer::singleShot(1500ms, &application, &QCoreApplication::quit);
    QApplication::exec();

    QTextStream out(stdout);
    out << "machines-announced " << machines << "\nannounced-within-ms " << announcedMs
        << "\nrows-listed "
        << window.findChild<QListView*>(QStringLiteral("machineList"))->model()->rowCount()
        << "\nlongest-burst-ms " << double(longestBurstNs) / 1e6 << Qt::endl;
    probe->report(out);
    out << "memory-growth-mb " << double(residentBytes() - memoryBefore) / 1e6 << Qt::endl;
    return 0;
}
