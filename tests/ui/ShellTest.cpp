#include "BuildConfig.h"
#include "UiHarness.h"
#include "ui/AboutView.h"
#include "ui/ContentView.h"
#include "ui/SettingsView.h"
#include "ui/TarnwickApp.h"
#include "ui/ToggleSwitch.h"
#include "ui/UpdateAlert.h"
#include "update/FeedServer.h"
#include "update/UpdateChecker.h"

#include <QAction>
#include <QDesktopServices>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSet>
#include <QTest>

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace tarnwick::ui;

// Receives the addresses that "Download" asks the desktop to open.
class UrlCatcher : public QObject {
    Q_OBJECT

public:
    QList<QUrl> opened;

public Q_SLOTS:
    void open(const QUrl& url) { opened.append(url); }
};

class ShellTest : public QObject {
    Q_OBJECT

    std::unique_ptr<UiHarness> h;
    std::unique_ptr<FeedServer> server;
    std::unique_ptr<TarnwickApp> app;
    std::unique_ptr<QTemporaryDir> shellDir;
    UrlCatcher catcher;

    std::unique_ptr<QSettings> shellStore() const {
        return temporaryStore(*shellDir, QStringLiteral("shell"));
    }

    std::unique_ptr<QSettings> checkerStore() const {
        return temporaryStore(h->dir, QStringLiteral("checker"));
    }

    void makeApp(const QString& runningVersion = QStringLiteral("1.0")) {
        auto checker =
            std::make_unique<UpdateChecker>(checkerStore(), runningVersion, nullptr, server->url);
        app = std::make_unique<TarnwickApp>(std::move(h->model), std::move(checker),
                                            [this] { return shellStore(); });
    }

    void startApp() {
        app->start();
        QVERIFY(QTest::qWaitForWindowExposed(&app->mainWindow()));
    }

    QAction* action(const QString& name) { return child<QAction>(&app->mainWindow(), name); }

    QMessageBox* waitForUpdateAlert() {
        QMessageBox* alert = nullptr;
        const bool shown = QTest::qWaitFor([&] {
            return (alert = visibleWindow<QMessageBox>(QStringLiteral("updateAlert"))) != nullptr;
        });
        return shown ? alert : nullptr;
    }

    // The alert as the user sees it, against what the update alert is to say.
    static void compareAlert(const QMessageBox* alert, const UpdateAlertContent& expected) {
        QVERIFY(alert);
        QCOMPARE(alert->windowTitle(), expected.title);
        QCOMPARE(alert->text(), expected.title);
        QCOMPARE(alert->informativeText(), expected.message);
        QCOMPARE(alert->icon(), expected.icon);
        QStringList buttons;
        for (const QAbstractButton* button : alert->buttons())
            buttons.append(button->text());
        QStringList wanted{expected.dismissButton.value_or(QString())};
        if (expected.downloadUrl)
            wanted.append(QStringLiteral("Download"));
        buttons.sort();
        wanted.sort();
        QCOMPARE(buttons, wanted);
    }

private Q_SLOTS:
    void initTestCase() {
        QDesktopServices::setUrlHandler(QStringLiteral("https"), &catcher, "open");
    }

    void cleanupTestCase() { QDesktopServices::unsetUrlHandler(QStringLiteral("https")); }

    void init() {
        h = std::make_unique<UiHarness>();
        server = std::make_unique<FeedServer>();
        shellDir = std::make_unique<QTemporaryDir>();
        server->respond(200, "{\"version\":\"1.0\"}");
        catcher.opened.clear();
    }

    void cleanup() {
        app.reset();
        server.reset();
        h.reset();
    }

    void menusOfferTheCommands() {
        makeApp();
        QAction* choose = action(QStringLiteral("chooseJobFileAction"));
        QCOMPARE(choose->text(), QStringLiteral("Choose Job File\u2026"));
        QCOMPARE(choose->shortcut(), QKeySequence(QKeySequence::Open));
        QAction* about = action(QStringLiteral("aboutAction"));
        QCOMPARE(about->text(), QStringLiteral("About Tarnwick"));
        QCOMPARE(about->menuRole(), QAction::AboutRole);
        QAction* check = action(QStringLiteral("checkForUpdatesAction"));
        QCOMPARE(check->text(), QStringLiteral("Check for Updates\u2026"));
        QCOMPARE(check->menuRole(), QAction::ApplicationSpecificRole);
        QCOMPARE(action(QStringLiteral("settingsAction"))->menuRole(), QAction::PreferencesRole);
        QCOMPARE(action(QStringLiteral("quitAction"))->menuRole(), QAction::QuitRole);
    }

    void chooseJobFileOpensThePanel() {
        makeApp();
        startApp();
        QVERIFY(!app->mainWindow().findChild<QFileDialog*>(QStringLiteral("jobFilePanel")));
        action(QStringLiteral("chooseJobFileAction"))->trigger();
        auto* panel = app->mainWindow().findChild<QFileDialog*>(QStringLiteral("jobFilePanel"));
        QVERIFY(panel);
        QCOMPARE(panel->windowTitle(), QStringLiteral("Choose a Makera job file"));
    }

    void theLaunchCheckRunsWhenAllowedAndStaysSilent() {
        makeApp();
        server->hold();
        startApp();
        QTRY_COMPARE(server->targets.size(), 1);
        QVERIFY(server->targets.first().contains(QStringLiteral("v=1.0")));
        QVERIFY(!action(QStringLiteral("checkForUpdatesAction"))->isEnabled());
        server->release();
        QTRY_VERIFY(!app->updateChecker().isChecking());
        QVERIFY(action(QStringLiteral("checkForUpdatesAction"))->isEnabled());
        QVERIFY(!visibleWindow<QMessageBox>(QStringLiteral("updateAlert")));
    }

    void noLaunchCheckWhenTurnedOff() {
        checkerStore()->setValue(QStringLiteral("automaticUpdateChecks"), false);
        makeApp();
        startApp();
        QTest::qWait(200);
        QVERIFY(server->targets.isEmpty());
        action(QStringLiteral("checkForUpdatesAction"))->trigger();
        QTRY_COMPARE(server->targets.size(), 1);
    }

    void aNewerVersionOffersADownload() {
        checkerStore()->setValue(QStringLiteral("automaticUpdateChecks"), false);
        server->respond(200, "{\"version\":\"9.4.1\",\"url\":\"https://example.test/get\"}");
        makeApp();
        startApp();
        QAction* check = action(QStringLiteral("checkForUpdatesAction"));
        server->hold();
        check->trigger();
        QVERIFY(!check->isEnabled());
        check->trigger();
        server->release();
        QMessageBox* alert = waitForUpdateAlert();
        QVERIFY(alert);
        QVERIFY(check->isEnabled());
        QCOMPARE(server->targets.size(), 1);
        const QUrl download(QStringLiteral("https://example.test/get"));
        compareAlert(alert, updateAvailableAlert(QStringLiteral("9.4.1"), download,
                                                 QString::fromUtf8(build::updateHost)));
        QTest::mouseClick(child<QPushButton>(alert, QStringLiteral("downloadButton")),
                          Qt::LeftButton);
        QCOMPARE(catcher.opened, QList<QUrl>{download});
        QVERIFY(!app->updateChecker().outcome().has_value());
    }

    void laterDismissesWithoutOpeningAnything() {
        checkerStore()->setValue(QStringLiteral("automaticUpdateChecks"), false);
        server->respond(200, "{\"version\":\"2.0\",\"url\":\"https://example.test/get\"}");
        makeApp();
        startApp();
        action(QStringLiteral("checkForUpdatesAction"))->trigger();
        QMessageBox* alert = waitForUpdateAlert();
        QVERIFY(alert);
        QTest::keyClick(alert, Qt::Key_Escape);
        QVERIFY(catcher.opened.isEmpty());
        QVERIFY(!app->updateChecker().outcome().has_value());
        QTRY_VERIFY(!visibleWindow<QMessageBox>(QStringLiteral("updateAlert")));
    }

    void upToDateAndFailedChecksSayOK() {
        checkerStore()->setValue(QStringLiteral("automaticUpdateChecks"), false);
        makeApp();
        startApp();
        action(QStringLiteral("checkForUpdatesAction"))->trigger();
        QMessageBox* alert = waitForUpdateAlert();
        compareAlert(alert, upToDateAlert());
        QTest::mouseClick(alert->buttons().first(), Qt::LeftButton);
        QVERIFY(!app->updateChecker().outcome().has_value());
        QTRY_VERIFY(!visibleWindow<QMessageBox>(QStringLiteral("updateAlert")));

        server->respond(404, "missing");
        action(QStringLiteral("checkForUpdatesAction"))->trigger();
        alert = waitForUpdateAlert();
        compareAlert(alert, updateFailedAlert(QStringLiteral("The update feed at ") +
                                              server->url.toString() +
                                              QStringLiteral(" could not be read.")));
    }

    void aboutShowsOneOfTheQuotesAnewEachTime() {
        makeApp();
        QSet<QString> seen;
        for (int i = 0; i < 40; ++i) {
            app->showAbout();
            auto* about = visibleWindow<AboutView>(QStringLiteral("aboutView"));
            QVERIFY(about);
            QVERIFY(AboutView::quotes().contains(about->quote()));
            QCOMPARE(child<QLabel>(about, QStringLiteral("aboutQuote"))->text(),
                     QStringLiteral("\u201C") + about->quote() + QStringLiteral("\u201D"));
            seen.insert(about->quote());
            about->close();
        }
        QVERIFY(seen.size() > 1);
        app->showAbout();
        auto* shown = visibleWindow<AboutView>(QStringLiteral("aboutView"));
        QCOMPARE(shown->windowTitle(), QStringLiteral("About Tarnwick"));
        QCOMPARE(shown->width(), 380);
        QCOMPARE(child<QLabel>(shown, QStringLiteral("aboutVersion"))->text(),
                 QStringLiteral("Version ") + QString::fromUtf8(build::version) +
                     QStringLiteral(" (") + QString::fromUtf8(build::buildNumber) +
                     QStringLiteral(")"));
    }

    void settingsSwitchIsWhatTheCheckerReads() {
        makeApp();
        startApp();
        app->mainWindow().move(40, 30);
        app->showSettings();
        auto* settings = visibleWindow<SettingsView>(QStringLiteral("settingsView"));
        QVERIFY(settings);
        // Centred, give or take the frame the platform adds once the window shows.
        QVERIFY((settings->frameGeometry().center() - app->mainWindow().frameGeometry().center())
                    .manhattanLength() <= 8);
        auto* toggle = child<ToggleSwitch>(settings, QStringLiteral("automaticChecksSwitch"));
        QCOMPARE(toggle->text(), QStringLiteral("Check for updates automatically"));
        QVERIFY(toggle->isChecked());
        QVERIFY(child<QLabel>(settings, QStringLiteral("settingsCaption"))
                    ->text()
                    .startsWith(QStringLiteral("At launch, Tarnwick asks ") +
                                QString::fromUtf8(build::updateHost) + QStringLiteral("/quorle ")));
        QTest::mouseClick(toggle, Qt::LeftButton);
        const UpdateChecker reader(shellStore(), std::nullopt, nullptr, server->url);
        QVERIFY(!reader.automaticChecksEnabled());
        QTest::mouseClick(toggle, Qt::LeftButton);
        const UpdateChecker again(shellStore(), std::nullopt, nullptr, server->url);
        QVERIFY(again.automaticChecksEnabled());
    }

    void theWindowComesBackWhereItWas() {
        checkerStore()->setValue(QStringLiteral("automaticUpdateChecks"), false);
        makeApp();
        startApp();
        app->mainWindow().resize(1234, 777);
        QTRY_COMPARE(app->mainWindow().size(), QSize(1234, 777));
        app.reset();
        QVERIFY(!shellStore()->value(TarnwickApp::geometryKey).toByteArray().isEmpty());

        h = std::make_unique<UiHarness>();
        checkerStore()->setValue(QStringLiteral("automaticUpdateChecks"), false);
        makeApp();
        startApp();
        QCOMPARE(app->mainWindow().size(), QSize(1234, 777));
    }
};

QTEST_MAIN(ShellTest)
#include "ShellTest.moc"
