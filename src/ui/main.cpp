#include "app/AppModel.h"
#include "app/SettingsStore.h"
#include "i18n/Translations.h"
#include "ui/ContentView.h"
#include "ui/Icons.h"
#include "ui/RealServices.h"
#include "ui/TarnwickApp.h"
#include "update/UpdateChecker.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTextStream>
#include <QTimer>

using namespace tarnwick;

int main(int argc, char* argv[]) {
    QElapsedTimer sinceStart;
    sinceStart.start();
    QApplication application(argc, argv);
    setApplicationIdentity();
    i18n::useLanguage();
    i18n::followSystemLanguage();
    QApplication::setWindowIcon(ui::icons::applicationIcon());
    // Lets Wayland desktops match the window to the installed launcher entry and its icon.
    QGuiApplication::setDesktopFileName(QStringLiteral("tarnwick"));

    ui::TarnwickApp app(ui::makeAppModel(), ui::makeUpdateChecker());

    // TARNWICK_REPORT_STARTUP=1 prints the milliseconds from the start of main() to the first
    // showing of the main window and quits: the start-up benchmark reads it.
    if (qEnvironmentVariableIsSet("TARNWICK_REPORT_STARTUP")) {
        QObject::connect(&app.mainWindow(), &ui::ContentView::firstShown, &app, [&] {
            QTimer::singleShot(0, &app, [&] {
                QTextStream(stdout) << "startup-ms " << sinceStart.elapsed() << Qt::endl;
                QCoreApplication::quit();
            });
        });
    }
    app.start();
    return QApplication::exec();
}
