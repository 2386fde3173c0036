// Renders the windows in their key states, over fake services, to PNG files: the main window
// (empty, machines listed, file chosen, uploading, complete, failed with its alert and after it,
// a 200-character name, a queue of several files for several machines), the confirmation sheet with
// and without the duplicate warning and with the long name, the update-failure alert, About and
// Settings, each in a light and a dark palette, and all of them once more in German, whose longer
// words are the first to be cut off. With --icons DIR it renders the application icon at the sizes
// desktops ask for instead.

#include "i18n/Translations.h"
#include "ui/AboutView.h"
#include "ui/ContentView.h"
#include "ui/FileJobAnalyser.h"
#include "ui/Icons.h"
#include "ui/SettingsView.h"
#include "ui/UiHarness.h"
#include "ui/UpdateAlert.h"
#include "ui/UploadConfirmationView.h"
#include "update/FeedServer.h"
#include "update/UpdateChecker.h"

#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QPainter>
#include <QScrollArea>
#include <QStyle>
#include <QStyleFactory>
#include <QTest>
#include <QTextStream>

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace tarnwick::ui;

namespace {

QPalette lightPalette() {
    QPalette palette = QApplication::style()->standardPalette();
    palette.setColor(QPalette::Window, QColor(0xF2, 0xF2, 0xF4));
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Highlight, QColor(0x1F, 0x6F, 0xE0));
    palette.setColor(QPalette::PlaceholderText, QColor(0x80, 0x80, 0x86));
    return palette;
}

QPalette darkPalette() {
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(0x26, 0x26, 0x28));
    palette.setColor(QPalette::WindowText, QColor(0xEC, 0xEC, 0xEE));
    palette.setColor(QPalette::Base, QColor(0x1C, 0x1C, 0x1E));
    palette.setColor(QPalette::AlternateBase, QColor(0x2E, 0x2E, 0x30));
    palette.setColor(QPalette::Text, QColor(0xEC, 0xEC, 0xEE));
    palette.setColor(QPalette::Button, QColor(0x3A, 0x3A, 0x3C));
    palette.setColor(QPalette::ButtonText, QColor(0xEC, 0xEC, 0xEE));
    palette.setColor(QPalette::Highlight, QColor(0x3A, 0x86, 0xF0));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::PlaceholderText, QColor(0x98, 0x98, 0x9E));
    palette.setColor(QPalette::ToolTipBase, QColor(0x3A, 0x3A, 0x3C));
    palette.setColor(QPalette::ToolTipText, QColor(0xEC, 0xEC, 0xEE));
    palette.setColor(QPalette::Light, QColor(0x4A, 0x4A, 0x4C));
    palette.setColor(QPalette::Midlight, QColor(0x3E, 0x3E, 0x40));
    palette.setColor(QPalette::Mid, QColor(0x55, 0x55, 0x58));
    palette.setColor(QPalette::Dark, QColor(0x18, 0x18, 0x1A));
    palette.setColor(QPalette::Shadow, Qt::black);
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(0x70, 0x70, 0x74));
    return palette;
}

class Shooter {
public:
    Shooter(QString folder, QString appearance)
        : m_folder(std::move(folder))
        , m_appearance(std::move(appearance)) {}

    void save(const QImage& image, const QString& name) {
        const QString path = m_folder + QLatin1Char('/') + name + QLatin1Char('-') + m_appearance +
                             QStringLiteral(".png");
        if (!image.save(path))
            qFatal("cannot write %s", qPrintable(path));
        QTextStream(stdout) << path << '\n';
    }

    // The window with a dialog drawn over its upper middle, the way a sheet or alert appears.
    static QImage withDialog(QWidget* window, QWidget* dialog) {
        QImage image = window->grab().toImage();
        QPainter painter(&image);
        painter.fillRect(image.rect(), QColor(0, 0, 0, 60));
        const QImage front = dialog->grab().toImage();
        const QPoint at((image.width() - front.width()) / 2, 40);
        painter.fillRect(QRect(at, front.size()).adjusted(-1, -1, 1, 1), QColor(0, 0, 0, 90));
        painter.drawImage(at, front);
        return image;
    }

private:
    QString m_folder;
    QString m_appearance;
};

void settle() {
    QTest::qWait(30);
}

// A tray: a contour with rounded corners, a circular pocket in rings of full circles, and the
// rapids between them.
QByteArray trayProgram() {
    QByteArray program = "G21 G90 G17\nT1 M6\nS16000 M3\nG0 X0 Y0 Z5\nG0 X5 Y0\nG1 Z-2 F600\n"
                         "G1 X95\nG3 X100 Y5 R5\nG1 Y55\nG3 X95 Y60 R5\nG1 X5\nG3 X0 Y55 R5\n"
                         "G1 Y5\nG3 X5 Y0 R5\nG0 Z5\nT2 M6\n";
    for (int ring = 1; ring <= 8; ++ring)
        program += QStringLiteral("G0 X%1 Y30\nG1 Z-6 F300\nG2 X%1 Y30 I%2 J0\nG0 Z5\n")
                       .arg(30 - ring * 2.5)
                       .arg(ring * 2.5)
                       .toLatin1();
    for (int row = 0; row <= 20; ++row)
        program += QStringLiteral("G1 X%1 Y%2 Z-1 F1200\nX%3\n")
                       .arg(row % 2 ? 90 : 55)
                       .arg(12 + row * 1.8)
                       .arg(row % 2 ? 55 : 90)
                       .toLatin1();
    return program + "G0 Z20\nM5\nM30\n";
}

// The preview of a finished analysis, scrolled into view below the job file card.
void shootPreview(Shooter& shooter, const QString& name, const QByteArray& program) {
    ModelHarness h;
    h.model->setJobAnalyser(std::make_unique<FileJobAnalyser>());
    ContentView window(*h.model);
    window.resize(1080, 900);
    window.show();
    if (!QTest::qWaitForWindowExposed(&window))
        qFatal("the window did not appear");
    h.model->chooseFile(
        JobFile::fromUrl(writeFile(h.dir, name + QStringLiteral(".nc"), program)).value());
    // The analysis is gone soon after it finishes, so its end is heard rather than looked at.
    bool finished = false;
    QObject::connect(h.model->jobAnalysis(), &Operation::finished,
                     [&finished] { finished = true; });
    if (!QTest::qWaitFor([&] { return finished; }))
        qFatal("the analysis did not finish");
    auto* preview = window.findChild<QWidget*>(QStringLiteral("jobPreview"));
    window.findChild<QScrollArea*>()->ensureWidgetVisible(preview, 0, 0);
    settle();
    shooter.save(window.grab().toImage(), name);
}

// Two files for three machines: one pair sending, one failed, one refused as a recent duplicate,
// the others sent or waiting, each with its own button.
void shootQueue(Shooter& shooter, ModelHarness& h, ContentView& window) {
    QList<Machine> machines;
    h.model->discover();
    for (const auto& [name, address] : {std::pair{"Bench Mill", "192.168.1.40"},
                                        {"Garage Mill", "192.168.1.52"},
                                        {"Lab CNC", "192.168.1.77"}}) {
        machines << ModelHarness::machine(QString::fromUtf8(name), QString::fromUtf8(address));
        Q_EMIT h.discoverer->scans.last()->machineFound(machines.last());
    }
    Q_EMIT h.discoverer->scans.last()->finished();
    h.model->selectMachines(machines);
    const JobFile roughing = h.jobFile(QStringLiteral("tray-roughing.nc"), 2'400'000);
    const JobFile finishing = h.jobFile(QStringLiteral("tray-finishing.nc"), 5'100'000);
    h.model->chooseFile(roughing);
    h.model->addFiles({finishing});
    const qsizetype before = h.uploaders.made.size();
    h.model->upload(false);
    // Sent from elsewhere while the queue runs: the third machine refuses it as a duplicate.
    h.model->persistence().recordUpload(UploadRecord{
        machines.at(2).id(), finishing.id(), finishing.size, QDateTime::currentDateTimeUtc()});
    const auto uploader = [&](qsizetype index) {
        if (!QTest::qWaitFor([&] { return h.uploaders.made.size() > before + index; }))
            qFatal("the queue did not start its uploads");
        return h.uploaders.made.at(before + index);
    };
    for (const qsizetype index : {0, 2}) {
        Q_EMIT uploader(index)->progress(
            {TransferProgress::Phase::Completed, roughing.size, roughing.size, 0});
        Q_EMIT uploader(index)->finished();
    }
    Q_EMIT uploader(1)->failed(UploadError::timedOut());
    Q_EMIT uploader(3)->progress(
        {TransferProgress::Phase::Uploading, 1'900'000, finishing.size, 640'000});
    settle();
    auto* scrollArea = window.findChild<QScrollArea*>();
    scrollArea->ensureWidgetVisible(window.findChild<QWidget*>(QStringLiteral("queueSection")), 0,
                                    0);
    settle();
    shooter.save(window.grab().toImage(), QStringLiteral("main-queue"));
    scrollArea->ensureWidgetVisible(
        window.findChild<QWidget*>(QStringLiteral("destinationSection")));
    h.model->uploadQueue().cancelAll();
    for (FakeUploader* running : h.uploaders.made) {
        if (running && running->cancelCalls > 0)
            Q_EMIT running->failed(UploadError::cancelled());
    }
    settle();
}

void shootAppearance(const QString& folder, const QString& appearance, const QPalette& palette) {
    QApplication::setPalette(palette);
    Shooter shooter(folder, appearance);
    ModelHarness h;
    ContentView window(*h.model);
    window.resize(1080, 760);
    window.show();
    if (!QTest::qWaitForWindowExposed(&window))
        qFatal("the window did not appear");
    FakeScan* scan = h.discoverer->scans.last();
    Q_EMIT scan->finished();
    settle();
    shooter.save(window.grab().toImage(), QStringLiteral("main-empty"));

    h.model->discover();
    scan = h.discoverer->scans.last();
    const Machine workshop{QStringLiteral("Workshop"), QStringLiteral("Test Rig"),
                           QStringLiteral("192.168.1.40"), 2222,
                           Machine::ConnectionStatus::Discovered};
    Q_EMIT scan->machineFound(workshop);
    Q_EMIT scan->machineFound(ModelHarness::machine(QStringLiteral("Garage Mill"),
                                                    QStringLiteral("192.168.1.52"), 2222,
                                                    Machine::ConnectionStatus::Busy));
    Q_EMIT scan->machineFound(
        ModelHarness::machine(QStringLiteral("Lab CNC"), QStringLiteral("192.168.1.77")));
    Q_EMIT scan->finished();
    h.model->selectMachine(workshop);
    Q_EMIT h.connector->checks.last()->finished();
    settle();
    shooter.save(window.grab().toImage(), QStringLiteral("main-machines"));

    const QStringList older{QStringLiteral("bracket-v2.nc"), QStringLiteral("lid-engrave.cnc"),
                            QStringLiteral("sign-2mm-flat.gcode"), QStringLiteral("coaster.nc")};
    qint64 size = 48'000;
    for (const QString& name : older)
        h.model->chooseFile(h.jobFile(name, size *= 3));
    const JobFile job = h.jobFile(QStringLiteral("walnut-tray-roughing.nc"), 3'870'000'000);
    h.model->chooseFile(job);
    settle();
    shooter.save(window.grab().toImage(), QStringLiteral("main-file"));

    h.model->prepareUpload();
    settle();
    auto* sheet = visibleWindow<UploadConfirmationView>(QStringLiteral("uploadConfirmation"));
    shooter.save(Shooter::withDialog(&window, sheet), QStringLiteral("sheet"));
    sheet->reject();
    settle();

    h.model->persistence().recordUpload(
        UploadRecord{workshop.id(), job.id(), job.size, QDateTime::currentDateTimeUtc()});
    h.model->prepareUpload();
    settle();
    sheet = visibleWindow<UploadConfirmationView>(QStringLiteral("uploadConfirmation"));
    shooter.save(Shooter::withDialog(&window, sheet), QStringLiteral("sheet-duplicate"));

    h.model->upload(true);
    FakeUploader* uploader = h.uploaders.last();
    Q_EMIT uploader->progress(
        {TransferProgress::Phase::Uploading, 1'412'000'000, job.size, 7'400'000});
    settle();
    shooter.save(window.grab().toImage(), QStringLiteral("main-uploading"));

    Q_EMIT uploader->progress({TransferProgress::Phase::Completed, job.size, job.size, 7'350'000});
    Q_EMIT uploader->finished();
    settle();
    shooter.save(window.grab().toImage(), QStringLiteral("main-complete"));

    h.model->upload(true);
    uploader = h.uploaders.last();
    Q_EMIT uploader->progress(
        {TransferProgress::Phase::Uploading, 220'000'000, job.size, 6'900'000});
    Q_EMIT uploader->failed(UploadError::timedOut());
    settle();
    auto* alert = visibleWindow<QMessageBox>(QStringLiteral("errorAlert"));
    shooter.save(Shooter::withDialog(&window, alert), QStringLiteral("main-failed"));
    alert->close();
    // The failure made the app check the machine again; it does not answer either.
    Q_EMIT h.connector->checks.last()->failed(UploadError::timedOut());
    settle();
    shooter.save(window.grab().toImage(), QStringLiteral("main-failed-after-alert"));

    const QString longName =
        QStringLiteral("walnut-tray-") + QString(180, QLatin1Char('x')) + QStringLiteral("-final");
    const Machine longMachine{longName, QStringLiteral("Test Rig"), QStringLiteral("192.168.1.41"),
                              2222, Machine::ConnectionStatus::Discovered};
    h.model->discover();
    Q_EMIT h.discoverer->scans.last()->machineFound(longMachine);
    Q_EMIT h.discoverer->scans.last()->finished();
    h.model->selectMachine(longMachine);
    Q_EMIT h.connector->checks.last()->finished();
    h.model->chooseFile(h.jobFile(longName + QStringLiteral(".nc"), 1'250'000));
    settle();
    shooter.save(window.grab().toImage(), QStringLiteral("main-long-name"));
    h.model->prepareUpload();
    settle();
    sheet = visibleWindow<UploadConfirmationView>(QStringLiteral("uploadConfirmation"));
    shooter.save(Shooter::withDialog(&window, sheet), QStringLiteral("sheet-long-name"));
    sheet->reject();
    settle();
    shootQueue(shooter, h, window);

    // A feed that refuses the connection, as an unreachable update host does.
    FeedServer feed;
    feed.respond(0, QByteArray());
    QTemporaryDir checkerDir;
    UpdateChecker checker(temporaryStore(checkerDir), QStringLiteral("1.0"), nullptr, feed.url);
    UpdateAlert updateAlert(checker, &window);
    checker.check(true);
    QMessageBox* updateFailure = nullptr;
    if (!QTest::qWaitFor([&] {
            return (updateFailure = visibleWindow<QMessageBox>(QStringLiteral("updateAlert")));
        }))
        qFatal("the update alert did not appear");
    settle();
    shooter.save(Shooter::withDialog(&window, updateFailure), QStringLiteral("update-failed"));
    updateFailure->close();

    AboutView about;
    about.show();
    settle();
    shooter.save(about.grab().toImage(), QStringLiteral("about"));

    shootPreview(shooter, QStringLiteral("preview"), trayProgram());
    shootPreview(shooter, QStringLiteral("preview-warnings"),
                 "G0 X0 Y0 Z5\nG1 Z-1 F400\nG1 X40 Y25\nO100 CALL\nG2 X80 Y0 R-30\n");

    QTemporaryDir settingsDir;
    SettingsView settings(temporaryStore(settingsDir));
    settings.show();
    settle();
    shooter.save(settings.grab().toImage(), QStringLiteral("settings"));
}

int renderIcons(const QString& folder) {
    QDir().mkpath(folder);
    for (int size : {16, 24, 32, 48, 64, 128, 256, 512}) {
        const QString path = QStringLiteral("%1/tarnwick-%2.png").arg(folder).arg(size);
        if (!icons::applicationIcon().pixmap(size, size).save(path))
            return 1;
        QTextStream(stdout) << path << '\n';
    }
    return 0;
}

} // namespace

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() == 3 && arguments[1] == QLatin1String("--icons"))
        return renderIcons(arguments[2]);
    if (arguments.size() != 2) {
        QTextStream(stderr) << "usage: tarnwick-screenshots FOLDER | --icons FOLDER\n";
        return 2;
    }
    QDir().mkpath(arguments[1]);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    shootAppearance(arguments[1], QStringLiteral("light"), lightPalette());
    shootAppearance(arguments[1], QStringLiteral("dark"), darkPalette());
    const QLocale german(QLocale::German, QLocale::Germany);
    if (!i18n::useLanguage(german))
        qFatal("the German catalogue is missing");
    shootAppearance(arguments[1], QStringLiteral("light-de"), lightPalette());
    return 0;
}
