// How long the desktop app's main thread is kept from its event loop while a file uploads: the
// app's own window, model and uploader send FILE to the machine at ADDRESS:PORT while a timer on
// the main thread records how late each of its ticks fires.
//
//   upload-stall FILE ADDRESS:PORT
//
// Prints "worst-lateness-ms W", "p99-lateness-ms P" and "ticks N" once the upload has ended;
// exits 1 when the upload fails. Run it with a private XDG_CONFIG_HOME and the offscreen
// platform (bench/upload does both).

#include "LatenessProbe.h"
#include "app/AppModel.h"
#include "app/SettingsStore.h"
#include "ui/RealServices.h"
#include "ui/TarnwickApp.h"
#include "update/UpdateChecker.h"

#include <QApplication>
#include <QTextStream>
#include <QTimer>

using namespace tarnwick;

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

    bench::LatenessProbe* probe = nullptr;
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
        probe = new bench::LatenessProbe(&app);
        model.upload(true);
    });
    QApplication::exec();
    return exitCode;
}
