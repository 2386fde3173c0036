#include "ui/TarnwickApp.h"

#include "app/AppModel.h"
#include "app/SettingsStore.h"
#include "ui/AboutView.h"
#include "ui/ContentView.h"
#include "ui/FollowedFolderLine.h"
#include "ui/Retranslation.h"
#include "ui/SettingsView.h"
#include "ui/UpdateAlert.h"
#include "update/UpdateChecker.h"

#include <QAction>
#include <QApplication>
#include <QMenuBar>
#include <QScreen>
#include <QSettings>

namespace tarnwick::ui {

TarnwickApp::TarnwickApp(std::unique_ptr<AppModel> model, std::unique_ptr<UpdateChecker> checker,
                         StoreOpener openStore, QObject* parent)
    : QObject(parent)
    , m_openStore(openStore ? std::move(openStore) : StoreOpener(openStandardStore))
    , m_model(std::move(model))
    , m_checker(std::move(checker))
    , m_window(std::make_unique<ContentView>(*m_model)) {
    m_updateAlert = new UpdateAlert(*m_checker, m_window.get());
    connect(this, &TarnwickApp::chooseJobFile, m_window.get(), &ContentView::openFilePanel);
    connect(m_window.get(), &ContentView::firstShown, this, &TarnwickApp::runLaunchTasks);
    // A file from the followed folder waits for the user's review: the window asks to be seen.
    connect(&m_model->folderFollower(), &FolderFollower::arrived, m_window.get(),
            [this] { QApplication::alert(m_window.get()); });
    buildMenus();
}

// The windows go before the model and the checker that they show.
TarnwickApp::~TarnwickApp() {
    if (m_started)
        saveGeometry();
    m_about.reset();
    m_settings.reset();
    m_window.reset();
}

void TarnwickApp::buildMenus() {
    QMenuBar* bar = m_window->menuBar();

    QMenu* file = bar->addMenu(QString());
    QAction* choose = file->addAction(QString());
    choose->setObjectName(QStringLiteral("chooseJobFileAction"));
    choose->setShortcut(QKeySequence::Open);
    connect(choose, &QAction::triggered, this, &TarnwickApp::chooseJobFile);
    QAction* follow = file->addAction(QString());
    follow->setObjectName(QStringLiteral("followFolderAction"));
    connect(follow, &QAction::triggered, this, [this] {
        FollowedFolderLine::chooseFolder(m_window.get(), m_model->folderFollower());
    });
    file->addSeparator();
    QAction* settings = file->addAction(QString());
    settings->setObjectName(QStringLiteral("settingsAction"));
    settings->setMenuRole(QAction::PreferencesRole);
    settings->setShortcut(QKeySequence::Preferences);
    connect(settings, &QAction::triggered, this, &TarnwickApp::showSettings);
    file->addSeparator();
    QAction* quitAction = file->addAction(QString());
    quitAction->setObjectName(QStringLiteral("quitAction"));
    quitAction->setMenuRole(QAction::QuitRole);
    quitAction->setShortcut(QKeySequence::Quit);
    connect(quitAction, &QAction::triggered, this, &TarnwickApp::quit);

    // On macOS the roles move these two into the application menu.
    QMenu* help = bar->addMenu(QString());
    QAction* about = help->addAction(QString());
    about->setObjectName(QStringLiteral("aboutAction"));
    about->setMenuRole(QAction::AboutRole);
    connect(about, &QAction::triggered, this, &TarnwickApp::showAbout);
    m_checkForUpdates = help->addAction(QString());
    m_checkForUpdates->setObjectName(QStringLiteral("checkForUpdatesAction"));
    m_checkForUpdates->setMenuRole(QAction::ApplicationSpecificRole);
    connect(m_checkForUpdates, &QAction::triggered, this, [this] { m_checker->check(true); });
    connect(m_checker.get(), &UpdateChecker::isCheckingChanged, m_checkForUpdates,
            [this](bool checking) { m_checkForUpdates->setEnabled(!checking); });
    m_checkForUpdates->setEnabled(!m_checker->isChecking());

    keepTranslated(m_window.get(), [=, this] {
        file->setTitle(tr("&File"));
        choose->setText(tr("Choose Job File\u2026"));
        follow->setText(tr("Follow a Folder\u2026"));
        settings->setText(tr("Settings\u2026"));
        quitAction->setText(tr("Quit"));
        help->setTitle(tr("&Help"));
        about->setText(tr("About Tarnwick"));
        m_checkForUpdates->setText(tr("Check for Updates\u2026"));
    });
}

void TarnwickApp::start() {
    m_started = true;
    const std::unique_ptr<QSettings> store = m_openStore();
    const QByteArray geometry = settings::windowGeometry(*store);
    if (geometry.isEmpty() || !m_window->restoreGeometry(geometry))
        m_window->resize(1080, 720);
    m_window->show();
}

void TarnwickApp::runLaunchTasks() {
    if (m_checker->automaticChecksEnabled())
        m_checker->check(false);
}

void TarnwickApp::saveGeometry() {
    const std::unique_ptr<QSettings> store = m_openStore();
    settings::setWindowGeometry(*store, m_window->saveGeometry());
}

void TarnwickApp::showAbout() {
    if (!m_about) {
        m_about = std::make_unique<AboutView>();
        m_about->setWindowIcon(m_window->windowIcon());
    }
    if (!m_about->isVisible()) {
        if (const QScreen* screen = m_window->screen()) {
            QRect frame = m_about->frameGeometry();
            frame.moveCenter(screen->availableGeometry().center());
            m_about->move(frame.topLeft());
        }
    }
    m_about->show();
    m_about->raise();
    m_about->activateWindow();
}

void TarnwickApp::showSettings() {
    if (!m_settings)
        m_settings = std::make_unique<SettingsView>(m_openStore());
    if (!m_settings->isVisible()) {
        // Beside the window it was asked from, not wherever the window system puts new ones.
        m_settings->adjustSize();
        QRect frame = m_settings->frameGeometry();
        frame.moveCenter(m_window->frameGeometry().center());
        m_settings->move(frame.topLeft());
    }
    m_settings->show();
    m_settings->raise();
    m_settings->activateWindow();
}

void TarnwickApp::quit() {
    if (m_about)
        m_about->close();
    if (m_settings)
        m_settings->close();
    // The window refuses while an upload runs and asks instead; once the upload is cancelled
    // it closes, and the last window closing ends the application.
    if (m_window->close())
        QCoreApplication::quit();
}

} // namespace tarnwick::ui
