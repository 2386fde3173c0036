#include "UiHarness.h"
#include "app/SettingsStore.h"
#include "i18n/Translations.h"
#include "ui/ElidedLabel.h"
#include "ui/TarnwickApp.h"
#include "ui/UploadConfirmationView.h"
#include "update/UpdateChecker.h"

#include <QAction>
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

    // The same texts wherever the review is: the menu, the sidebar, the file card.
    QStringList windowTexts() {
        return {window().menuBar()->actions().first()->text(),
                find<QAction>("chooseJobFileAction")->text(), find<QLabel>("sidebarTitle")->text(),
                find<QPushButton>("reviewButton")->text()};
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

    // Two machines and two files chosen, an address half typed and the review open.
    void theReviewAndTheChoicesStay() {
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
        const auto sheetTexts = [sheet] {
            return QStringList{sheet->windowTitle(), child<QLabel>(sheet, u"sheetTitle"_s)->text(),
                               child<QPushButton>(sheet, u"uploadButton"_s)->text()};
        };
        const auto choices = [this] {
            QStringList shown{
                find<QLineEdit>("addressField")->text(),
                QString::number(find<QListView>("chosenFileList")->currentIndex().row())};
            QStringList machines;
            for (const QModelIndex& row :
                 find<QListView>("machineList")->selectionModel()->selectedRows())
                machines << row.data().toString();
            machines.sort();
            return shown + machines;
        };
        const QStringList chosen{u"10.0.0."_s, u"1"_s, u"Bench Mill"_s, u"Spare Mill"_s};
        QCOMPARE(choices(), chosen);
        // A row's own button says what it does in the words of the moment.
        const auto removeText = [this] {
            auto* files = find<QListView>("chosenFileList");
            return qobject_cast<QPushButton*>(files->indexWidget(files->model()->index(0, 0)))
                ->text();
        };
        QCOMPARE(removeText(), u"Remove"_s);

        speak("de_DE");
        QTRY_COMPARE(windowTexts(), QStringList({u"&Datei"_s, u"Auftragsdatei wählen…"_s,
                                                 u"Maschinen"_s, u"Hochladen prüfen"_s}));
        QCOMPARE(sheetTexts(), QStringList({u"Hochladen bestätigen"_s, u"Hochladen bestätigen"_s,
                                            u"Hochladen"_s}));
        QCOMPARE(visibleWindow<UploadConfirmationView>(u"uploadConfirmation"_s), sheet);
        QCOMPARE(QApplication::focusWidget(), focused);
        QCOMPARE(choices(), chosen);
        QTRY_COMPARE(removeText(), u"Entfernen"_s);

        speak("en_US");
        QTRY_COMPARE(windowTexts(), QStringList({u"&File"_s, u"Choose Job File…"_s, u"Machines"_s,
                                                 u"Review Upload"_s}));
        QCOMPARE(sheetTexts(),
                 QStringList({u"Confirm upload"_s, u"Confirm upload"_s, u"Upload"_s}));
    }

    // The transfer card keeps what is sent where and how far it got, in the new words.
    void aRunningUploadKeepsItsProgress() {
        app->model().selectMachine(bench);
        Q_EMIT h->connector->checks.last()->finished();
        app->model().chooseFile(h->jobFile(u"part.nc"_s));
        app->model().upload(true);
        Q_EMIT h->uploaders.last()->progress({TransferProgress::Phase::Uploading, 400, 1000, 0});
        const auto card = [this] {
            return QStringList{find<QLabel>("transferTitle")->text(),
                               find<ElidedLabel>("transferSubject")->fullText(),
                               find<QPushButton>("cancelUploadButton")->text(),
                               QString::number(find<QProgressBar>("transferBar")->value())};
        };
        QCOMPARE(card(), QStringList({u"Uploading"_s, u"Sending “part.nc” to Bench Mill"_s,
                                      u"Cancel"_s, u"4000"_s}));

        speak("de_DE");
        QTRY_COMPARE(card(),
                     QStringList({u"Wird hochgeladen"_s, u"„part.nc“ wird an Bench Mill gesendet"_s,
                                  u"Abbrechen"_s, u"4000"_s}));
        QVERIFY(app->model().isUploading());
    }
};

QTEST_MAIN(LanguageChangeTest)
#include "LanguageChangeTest.moc"
