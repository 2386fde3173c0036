// How long the desktop app's main thread is kept from its event loop while a file uploads: the
// app's own window, model and uploader send FILE to the machine at ADDRESS:PORT while a timer on
// the main thread records how late each of its ticks fires.
//
//   upload-stall FILE ADDRESS:PORT
//
// Prints "worst-lateness-ms W", "p99-lateness-ms P" and "ticks N" once the upload has ended;
// exits 1 when the upload fails. Run it with a private XDG_CONFIG_HOME and the offscreen
// platform (bench/upload does both).

#include "app/AppModel.h"
#include "app/SettingsStore.h"
#include "ui/RealServices.h"
#include "ui/TarnwickApp.h"
#include "update/UpdateChecker.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTextStream>
#include <QTimer>

#include <algorithm>
#include <vector>

using namespace tarnwick;

namespace {

constexpr qint64 tickNs = 2'000'000;

// Measures the delay between each tick's due time and the moment it runs.
class LatenessProbe : public QObject {
public:
    explicit LatenessProbe(QObject* parent)
        : QObject(parent)
        , m_timer(this) {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(std::chrono::nanoseconds(tickNs) / std::chrono::milliseconds(1));
        QObject::connect(&m_timer, &QTimer::timeout, this, &LatenessProbe::tick);
        m_clock.start();
        m_due = tickNs;
        m_timer.start();
    }

    void report(QTextStream& out) {
        std::sort(m_lateness.begin(), m_lateness.end());
        const auto ms = [](qint64 ns) { return double(ns) / 1e6; };
        const qint64 worst = m_lateness.empty() ? 0 : m_lateness.back();
        const qint64 p99 = m_lateness.empty() ? 0 : m_lateness[m_lateness.size() * 99 / 100];
        out << "worst-lateness-ms " << ms(worst) << "\np99-lateness-ms " << ms(p99) << "\nticks "
            << m_lateness.size() << Qt::endl;
    }

private:
    void tick() {
        const qint64 now = m_clock.nsecsElapsed();
        m_lateness.push_back(std::max<qint64>(0, now - m_due));
        m_due = now + tickNs;
    }

    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_due = 0;
    std::vector<qint64> m_lateness;
};

} // namespace

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    setApplicationIdentity();
    const QStringList arguments = QCoreApplication::arguments();
    QTextStream out(stdout);
    if (arguments.size() != 3) {
        QTextStream(stderr) << "usage: upload-stall FILE ADDRESS:PORT" << Qt::endl;
        return 2;
    }
    const Result<JobFile> file = JobFile::fromUrl(QUrl::fromLocalFile(arguments[1]));
    const QStringList address = arguments[2].split(QLatin1Char(':'));
    if (!file || address.size() != 2) {
        QTextStream(stderr) << "upload-stall: bad file or address" << Qt::endl;
        return 2;
    }

    ui::TarnwickApp app(ui::makeAppModel(), ui::makeUpdateChecker());
    app.start();
    AppModel& model = app.model();
    Machine machine;
    machine.name = QStringLiteral("Benchmark machine");
    machine.ipAddress = address[0];
    machine.port = address[1].toUShort();
    model.selectMachine(machine);
    model.chooseFile(file.value());

    LatenessProbe* probe = nullptr;
    int exitCode = 0;
    QObject::connect(&model, &AppModel::isUploadingChanged, &app, [&] {
        if (model.isUploading())
            return;
        if (model.errorMessage()) {
            QTextStream(stderr) << "upload failed: " << *model.errorMessage() << Qt::endl;
            exitCode = 1;
        }
        probe->report(out);
        QCoreApplication::quit();
    });
    // Once the window has settled, the upload starts as the sheet's "Upload" would start it.
    QTimer::singleShot(500, &app, [&] {
        probe = new LatenessProbe(&app);
        model.upload(true);
    });
    QApplication::exec();
    return exitCode;
}
