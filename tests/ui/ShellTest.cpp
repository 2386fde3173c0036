#include "BuildConfig.h"
#include "UiHarness.h"
#include "app/SettingsStore.h"
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
using namespace Qt::StringLiterals;

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

    std::unique_ptr<ModelHarness> h;
    std::unique_ptr<FeedServer> server;
    std::unique_ptr<TarnwickApp> app;
    std::unique_ptr<QTemporaryDir> shellDir;
    UrlCatcher catcher;

    std::unique_ptr<QSettings> shellStore() const { return temporaryStore(*shellDir, u"shell"_s); }

    std::unique_ptr<QSettings> checkerStore() const { return temporaryStore(h->dir, u"checker"_s); }

    void makeApp() {
        auto checker =
            std::make_unique<UpdateChecker>(checkerStore(), u"1.0"_s, nullptr, server->url);
        app = std::make_unique<TarnwickApp>(std::move(h->model), std::move(checker),
                                            [this] { return shellStore(); });
    }

    void launchApp() {
        makeApp();
        app->start();
        QVERIFY(QTest::qWaitForWindowExposed(&app->mainWindow()));
    }

    QAction* action(const QString& name) { return child<QAction>(&app->mainWindow(), name); }

    static QMessageBox* waitForUpdateAlert() {
        return waitForWindow<QMessageBox>(u"updateAlert"_s);
    }

    // The alert as the user sees it, against what the update alert is to say.
    static void closesOnEscape(QWidget* window) {
        QVERIFY(window);
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window));
        QTest::keyClick(window, Qt::Key_Escape);
        QTRY_VERIFY(!window->isVisible());
    }

    static void compareAlert(const QMessageBox* alert, const UpdateAlertContent& expected) {
        QVERIFY(alert);
        QCOMPARE(alert->windowTitle(), expected.title);
        QCOMPARE(alert->text(), expected.title);
        QCOMPARE(alert->informativeText(), expected.message);
        QCOMPARE(alert->icon(), expected.icon);
        QCOMPARE(alert->escapeButton()->text(), expected.dismissButton.value_or(QString()));
        QCOMPARE(alert->buttons().size(), expected.downloadUrl ? 2 : 1);
    }

private Q_SLOTS:
    void initTestCase() { QDesktopServices::setUrlHandler(u"https"_s, &catcher, "open"); }

    void cleanupTestCase() { QDesktopServices::unsetUrlHandler(u"https"_s); }

    void init() {
        h = std::make_unique<ModelHarness>();
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
        QAction* choose = action(u"chooseJobFileAction"_s);
        QCOMPARE(choose->text(), u"Choose Job File\u2026"_s);
        QCOMPARE(choose->shortcut(), QKeySequence(QKeySequence::Open));
        QAction* about = action(u"aboutAction"_s);
        QCOMPARE(about->text(), u"About Tarnwick"_s);
        QCOMPARE(about->menuRole(), QAction::AboutRole);
        QAction* check = action(u"checkForUpdatesAction"_s);
        QCOMPARE(check->text(), u"Check for Updates\u2026"_s);
        QCOMPARE(check->menuRole(), QAction::ApplicationSpecificRole);
        QCOMPARE(action(u"settingsAction"_s)->menuRole(), QAction::PreferencesRole);
        QCOMPARE(action(u"quitAction"_s)->menuRole(), QAction::QuitRole);
        QVERIFY(!app->mainWindow().findChild<QFileDialog*>(u"jobFilePanel"_s));
        choose->trigger();
        QVERIFY(app->mainWindow().findChild<QFileDialog*>(u"jobFilePanel"_s));
    }

    void theLaunchCheckRunsWhenAllowedAndStaysSilent() {
        server->hold();
        launchApp();
        QTRY_COMPARE(server->targets.size(), 1);
        QVERIFY(!action(u"checkForUpdatesAction"_s)->isEnabled());
        server->release();
        QTRY_VERIFY(!app->updateChecker().isChecking());
        QVERIFY(action(u"checkForUpdatesAction"_s)->isEnabled());
        QVERIFY(!visibleWindow<QMessageBox>(u"updateAlert"_s));
    }

    // Each manual check shows its outcome; one in flight takes no second request.
    void turnedOffThereIsNoLaunchCheckButManualChecksShowEachOutcome() {
        settings::setAutomaticUpdateChecks(*checkerStore(), false);
        launchApp();
        QTest::qWait(200);
        QVERIFY(server->targets.isEmpty());
        QAction* check = action(u"checkForUpdatesAction"_s);
        check->trigger();
        QMessageBox* alert = waitForUpdateAlert();
        compareAlert(alert, upToDateAlert());
        QTest::mouseClick(alert->buttons().first(), Qt::LeftButton);
        QVERIFY(!app->updateChecker().outcome().has_value());
        QTRY_VERIFY(!visibleWindow<QMessageBox>(u"updateAlert"_s));

        server->respond(404, "missing");
        check->trigger();
        alert = waitForUpdateAlert();
        compareAlert(alert, updateFailedAlert(u"The update feed at "_s + server->url.toString() +
                                              u" could not be read."_s));
        QTest::keyClick(alert, Qt::Key_Escape);
        QTRY_VERIFY(!visibleWindow<QMessageBox>(u"updateAlert"_s));

        server->respond(200, "{\"version\":\"9.4.1\",\"url\":\"https://example.test/get\"}");
        server->hold();
        check->trigger();
        QVERIFY(!check->isEnabled());
        check->trigger();
        server->release();
        QVERIFY((alert = waitForUpdateAlert()));
        QVERIFY(check->isEnabled());
        QCOMPARE(server->targets.size(), 3);
        const QUrl download(u"https://example.test/get"_s);
        compareAlert(alert, updateAvailableAlert(u"9.4.1"_s, download,
                                                 QString::fromUtf8(build::updateHost)));
        QCOMPARE(child<QPushButton>(alert, u"downloadButton"_s)->text(), u"Download"_s);
        QTest::mouseClick(child<QPushButton>(alert, u"downloadButton"_s), Qt::LeftButton);
        QCOMPARE(catcher.opened, QList<QUrl>{download});
        QVERIFY(!app->updateChecker().outcome().has_value());
        // "Later" dismisses without opening anything.
        QTRY_VERIFY(!visibleWindow<QMessageBox>(u"updateAlert"_s));
        check->trigger();
        QVERIFY((alert = waitForUpdateAlert()));
        QTest::keyClick(alert, Qt::Key_Escape);
        QCOMPARE(catcher.opened.size(), 1);
        QVERIFY(!app->updateChecker().outcome().has_value());
    }

    void aboutShowsOneOfTheQuotesAnewEachTime() {
        makeApp();
        QSet<QString> seen;
        for (int i = 0; i < 40; ++i) {
            app->showAbout();
            auto* about = visibleWindow<AboutView>(u"aboutView"_s);
            QVERIFY(about);
            QCOMPARE(about->windowTitle(), u"About Tarnwick"_s);
            QCOMPARE(child<QLabel>(about, u"aboutVersion"_s)->text(),
                     AboutView::versionLine(QString::fromUtf8(build::version),
                                            QString::fromUtf8(build::buildNumber)));
            QVERIFY(AboutView::quotes().contains(about->quote()));
            QCOMPARE(child<QLabel>(about, u"aboutQuote"_s)->text(),
                     u"\u201C"_s + about->quote() + u"\u201D"_s);
            seen.insert(about->quote());
            about->close();
        }
        QVERIFY(seen.size() > 1);
        app->showAbout();
        closesOnEscape(visibleWindow<AboutView>(u"aboutView"_s));
    }

    void settingsSwitchIsWhatTheCheckerReads() {
        launchApp();
        app->mainWindow().move(40, 30);
        app->showSettings();
        auto* settings = visibleWindow<SettingsView>(u"settingsView"_s);
        QVERIFY(settings);
        // Centred, give or take the frame the platform adds once the window shows.
        QVERIFY((settings->frameGeometry().center() - app->mainWindow().frameGeometry().center())
                    .manhattanLength() <= 8);
        auto* toggle = child<ToggleSwitch>(settings, u"automaticChecksSwitch"_s);
        QCOMPARE(toggle->text(), u"Check for updates automatically"_s);
        QVERIFY(toggle->isChecked());
        QCOMPARE(child<QLabel>(settings, u"settingsCaption"_s)->text(),
                 SettingsView::explanation(QString::fromUtf8(build::updateHost)));
        for (const bool enabled : {false, true}) {
            QTest::mouseClick(toggle, Qt::LeftButton);
            const UpdateChecker reader(shellStore(), std::nullopt, nullptr, server->url);
            QCOMPARE(reader.automaticChecksEnabled(), enabled);
        }
        closesOnEscape(settings);
    }

    void theWindowComesBackWhereItWas() {
        settings::setAutomaticUpdateChecks(*checkerStore(), false);
        launchApp();
        app->mainWindow().resize(1234, 777);
        QTRY_COMPARE(app->mainWindow().size(), QSize(1234, 777));
        app.reset();
        QVERIFY(!settings::windowGeometry(*shellStore()).isEmpty());

        h = std::make_unique<ModelHarness>();
        settings::setAutomaticUpdateChecks(*checkerStore(), false);
        launchApp();
        QCOMPARE(app->mainWindow().size(), QSize(1234, 777));
    }
};

QTEST_MAIN(ShellTest)
#include "ShellTest.moc"
