#pragma once

#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>

class QAction;
class QSettings;

namespace tarnwick {
class AppModel;
class UpdateChecker;
} // namespace tarnwick

namespace tarnwick::ui {

class AboutView;
class ContentView;
class SettingsView;
class UpdateAlert;

// The application: the one model and the one update checker, made before any window and kept
// for the life of the process, the main window with its menus, the About window, the settings
// pane and the update alert.
class TarnwickApp : public QObject {
    Q_OBJECT

public:
    using StoreOpener = std::function<std::unique_ptr<QSettings>()>;

    // `openStore` gives the settings store that the window's size and the settings pane use;
    // the shared standard store when none is given.
    TarnwickApp(std::unique_ptr<AppModel> model, std::unique_ptr<UpdateChecker> checker,
                StoreOpener openStore = {}, QObject* parent = nullptr);
    ~TarnwickApp() override;

    AppModel& model() { return *m_model; }
    UpdateChecker& updateChecker() { return *m_checker; }
    ContentView& mainWindow() { return *m_window; }
    UpdateAlert& updateAlert() { return *m_updateAlert; }

    // Shows the main window where the user left it; the window's place is stored again when
    // the application ends.
    void start();

    void showAbout();
    void showSettings();
    // Closes the main window (which may first ask about a running upload) and then quits.
    void quit();

Q_SIGNALS:
    // "Choose Job File…": the main window answers with its file panel.
    void chooseJobFile();

private:
    void buildMenus();
    void runLaunchTasks();
    void saveGeometry();

    StoreOpener m_openStore;
    std::unique_ptr<AppModel> m_model;
    std::unique_ptr<UpdateChecker> m_checker;
    std::unique_ptr<ContentView> m_window;
    UpdateAlert* m_updateAlert = nullptr;
    std::unique_ptr<AboutView> m_about;
    std::unique_ptr<SettingsView> m_settings;
    QAction* m_checkForUpdates = nullptr;
    bool m_started = false;
};

} // namespace tarnwick::ui
