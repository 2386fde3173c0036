#include "UiHarness.h"
#include "app/SettingsStore.h"
#include "i18n/Translations.h"
#include "ui/TarnwickApp.h"
#include "ui/UploadConfirmationView.h"
#include "update/UpdateChecker.h"

#include <QLineEdit>
#include <QListView>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace tarnwick::ui;
using namespace Qt::StringLiterals;

// The language changes while the window is open: every text follows it in place, and whatever
// the user chose, typed or started stays as it was. The German texts are the catalogue's.
class LanguageChangeTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ModelHarness> h;
    std::unique_ptr<TarnwickApp> app;
    const Machine bench = ModelHarness::machine(u"Bench Mill"_s, u"10.0.0.7"_s);
    const Machine spare = ModelHarness::machine(u"Spare Mill"_s, u"10.0.0.8"_s);

    ContentView& window() { return app->mainWindow(); }

    template <typename T>
    T* find(const char* name) {
        return child<T>(&window(), QString::fromLatin1(name));
    }

    static void speak(const char* locale) {
        i18n::useLanguage(QLocale(QString::fromLatin1(locale)));
    }

private Q_SLOTS:
    void init() {
        h = std::make_unique<ModelHarness>();
        auto checkerStore = temporaryStore(h->dir, u"checker"_s);
        settings::setAutomaticUpdateChecks(*checkerStore, false);
        app = std::make_unique<TarnwickApp>(
            std::move(h->model),
            std::make_unique<UpdateChecker>(std::move(checkerStore), u"1.0"_s, nullptr, QUrl()),
            [this] { return temporaryStore(h->dir, u"shell"_s); });
        app->start();
        QVERIFY(QTest::qWaitForWindowActive(&window()));
        for (const Machine& machine : {bench, spare})
            Q_EMIT h->discoverer->scans.last()->machineFound(machine);
        Q_EMIT h->discoverer->scans.last()->finished();
    }

    void cleanup() {
        app.reset();
        speak("en_US");
    }

    // Whatever the user chose, typed or started stays through a change of language and back, the
    // review open and the focus where it was. That every text follows is the pseudo-translation
    // test's; here one text of each kind shows that the change happened.
    void theChoicesAndARunningUploadStay() {
        app->model().selectMachines({bench, spare});
        app->model().addFiles({h->jobFile(u"rough.nc"_s), h->jobFile(u"finish.nc"_s)});
        app->model().showFile(1);
        QTest::mouseClick(find<QPushButton>("enterAddressButton"), Qt::LeftButton);
        QTest::keyClicks(find<QLineEdit>("addressField"), u"10.0.0."_s);
        app->model().prepareUpload();
        auto* sheet = waitForWindow<UploadConfirmationView>(u"uploadConfirmation"_s);
        QVERIFY(sheet);
        QTRY_VERIFY(sheet->isAncestorOf(QApplication::focusWidget()));
        QWidget* focused = QApplication::focusWidget();
        auto* files = find<QListView>("chosenFileList");
        const auto state = [&] {
            QStringList shown{find<QLineEdit>("addressField")->text(),
                              QString::number(files->currentIndex().row()),
                              QString::number(sheet->isVisible()),
                              QString::number(QApplication::focusWidget() == focused)};
            for (const QModelIndex& row :
                 find<QListView>("machineList")->selectionModel()->selectedRows())
                shown << row.data().toString();
            return shown;
        };
        const QStringList chosen = state();
        QCOMPARE(chosen, QStringList({u"10.0.0."_s, u"1"_s, u"1"_s, u"1"_s, u"Bench Mill"_s,
                                      u"Spare Mill"_s}));
        // The menu, the sidebar, the sheet and a row's own button.
        const auto texts = [&] {
            return QStringList{
                window().menuBar()->actions().first()->text(), find<QLabel>("sidebarTitle")->text(),
                child<QPushButton>(sheet, u"uploadButton"_s)->text(),
                qobject_cast<QPushButton*>(files->indexWidget(files->model()->index(0, 0)))
                    ->text()};
        };
        speak("de_DE");
        QTRY_COMPARE(texts(),
                     QStringList({u"&Datei"_s, u"Maschinen"_s, u"Hochladen"_s, u"Entfernen"_s}));
        QCOMPARE(state(), chosen);
        speak("en_US");
        QTRY_COMPARE(texts(), QStringList({u"&File"_s, u"Machines"_s, u"Upload"_s, u"Remove"_s}));
        QCOMPARE(state(), chosen);

        sheet->reject();
        app->model().selectMachine(bench);
        Q_EMIT h->connector->checks.last()->finished();
        app->model().chooseFile(h->jobFile(u"part.nc"_s));
        app->model().upload(true);
        Q_EMIT h->uploaders.last()->progress({TransferProgress::Phase::Uploading, 400, 1000, 0});
        speak("de_DE");
        QTRY_COMPARE(find<QLabel>("transferTitle")->text(), u"Wird hochgeladen"_s);
        QCOMPARE(find<QProgressBar>("transferBar")->value(), 4000);
        QVERIFY(app->model().isUploading());
    }
};

QTEST_MAIN(LanguageChangeTest)
#include "LanguageChangeTest.moc"
