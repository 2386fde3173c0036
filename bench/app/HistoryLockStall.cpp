// Another program holds the upload history's lock for two seconds while an upload ends: prints
// how late the main thread's ticks ran meanwhile and when the record landed.
//   history-lock-stall [HOLD_MS]     (default 2000)

#include "LatenessProbe.h"
#include "app/SettingsStore.h"
#include "app/UploadWorkflow.h"

#include <QCoreApplication>
#include <QFile>
#include <QLockFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include <cstdio>

using namespace tarnwick;

namespace {

// Finishes at once: the upload itself is not what is measured.
class InstantUploader : public FileUploading {
public:
    void upload(const JobFile& file, const Machine&) override {
        QTimer::singleShot(0, this, [this, size = file.size] {
            Q_EMIT progress({TransferProgress::Phase::Completed, size, size, 0});
            Q_EMIT finished();
        });
    }
    void cancel() override {}
};

int holdLock(const QString& path, int milliseconds) {
    QLockFile lock(path);
    if (!lock.lock())
        return 1;
    std::puts("locked");
    std::fflush(stdout);
    QThread::msleep(milliseconds);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    if (arguments.size() == 4 && arguments.at(1) == QLatin1String("--hold"))
        return holdLock(arguments.at(2), arguments.at(3).toInt());
    const int holdMs = arguments.size() > 1 ? arguments.at(1).toInt() : 2000;

    QTemporaryDir dir;
    const QString storePath = dir.filePath(QStringLiteral("store.ini"));
    AppPersistence history(std::make_unique<QSettings>(storePath, QSettings::IniFormat));
    QFile job(dir.filePath(QStringLiteral("part.nc")));
    if (!job.open(QIODevice::WriteOnly) || job.write("G0 X0\n") != 6)
        return 1;
    job.close();
    const JobFile file = JobFile::fromUrl(QUrl::fromLocalFile(job.fileName())).value();
    const Machine machine{QStringLiteral("Bench"), std::nullopt, QStringLiteral("127.0.0.1"), 1,
                          Machine::ConnectionStatus::Connected};

    QProcess otherProgram;
    otherProgram.start(app.applicationFilePath(),
                       {QStringLiteral("--hold"),
                        settings::writeLockPath(QSettings(storePath, QSettings::IniFormat)),
                        QString::number(holdMs)});
    if (!otherProgram.waitForReadyRead(10'000))
        return 1;

    QElapsedTimer clock;
    clock.start();
    bench::LatenessProbe probe(&app);
    UploadWorkflow workflow(file, machine, history,
                            [] { return std::make_unique<InstantUploader>(); });
    QObject::connect(&workflow, &UploadWorkflow::ended, &app, [&](const UploadOutcome& outcome) {
        QTextStream out(stdout);
        out << "hold-ms " << holdMs << "\nrecorded-after-ms " << clock.elapsed() << "\nrecorded "
            << (outcome.kind == UploadOutcome::Kind::Uploaded ? "yes" : "no") << Qt::endl;
        probe.report(out);
        app.quit();
    });
    workflow.start(false);
    const int status = app.exec();
    otherProgram.waitForFinished();
    return status;
}
