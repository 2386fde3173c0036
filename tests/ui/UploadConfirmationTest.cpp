#include "UiHarness.h"
#include "ui/ContentView.h"
#include "ui/ElidedLabel.h"
#include "ui/ToggleSwitch.h"
#include "ui/UploadConfirmationView.h"

#include <QClipboard>
#include <QPushButton>
#include <QTest>

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace tarnwick::ui;

class UploadConfirmationTest : public QObject {
    Q_OBJECT

    std::unique_ptr<UiHarness> h;
    std::unique_ptr<ContentView> window;
    JobFile file;
    const Machine machine =
        UiHarness::machine(QStringLiteral("Bench Mill"), QStringLiteral("10.0.0.7"));

    UploadConfirmationView* present() {
        h->model->prepareUpload();
        UploadConfirmationView* sheet = nullptr;
        if (!QTest::qWaitFor([&] {
                return (sheet = visibleWindow<UploadConfirmationView>(
                            QStringLiteral("uploadConfirmation")));
            }))
            qFatal("the sheet did not appear");
        return sheet;
    }

    void recordEarlierUpload(qint64 secondsAgo) {
        h->model->persistence().recordUpload(
            UploadRecord{machine.id(), file.id(), file.size,
                         QDateTime::currentDateTimeUtc().addSecs(-secondsAgo)});
    }

    static QString value(const QWidget* sheet, const char* name) {
        return child<ElidedLabel>(sheet, QString::fromLatin1(name))->fullText();
    }

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }

    void init() {
        h = std::make_unique<UiHarness>();
        file = h->jobFile(QStringLiteral("bracket.gcode"), 48'000);
        window = std::make_unique<ContentView>(*h->model);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        Q_EMIT h->discoverer->scans.last()->machineFound(machine);
        h->model->selectMachine(machine);
        h->model->chooseFile(file);
    }

    void cleanup() {
        window.reset();
        h.reset();
    }

    void withoutARecentUploadTheSheetIsShortAndUploadIsReady() {
        UploadConfirmationView* sheet = present();
        QCOMPARE(sheet->height(), 350);
        QCOMPARE(sheet->windowModality(), Qt::WindowModal);
        QCOMPARE(shownText(sheet, QStringLiteral("sheetTitle")), QStringLiteral("Confirm upload"));
        QCOMPARE(shownText(sheet, QStringLiteral("sheetNote")),
                 QStringLiteral("This sends the file only. It will not start a job."));
        const QList<std::pair<const char*, QString>> values{
            {"destinationValue", QStringLiteral("Bench Mill")},
            {"addressValue", QStringLiteral("10.0.0.7:2222")},
            {"fileNameValue", QStringLiteral("bracket.gcode")},
            {"sizeValue", QStringLiteral("48 kB")},
            {"remotePathValue", QStringLiteral("/sd/gcodes/bracket.gcode")}};
        for (const auto& [name, text] : values)
            QCOMPARE(value(sheet, name), text);
        // The intent, whatever face the system has: a monospaced one.
        QCOMPARE(child<QLabel>(sheet, QStringLiteral("addressValue"))->font().styleHint(),
                 QFont::Monospace);
        QVERIFY(!child<QWidget>(sheet, QStringLiteral("duplicateWarning"))->isVisible());
        auto* upload = child<QPushButton>(sheet, QStringLiteral("uploadButton"));
        QVERIFY(upload->isEnabled() && upload->isDefault());
        QTest::keyClick(sheet, Qt::Key_Return);
        QCOMPARE(h->uploaders.made.size(), 1);
        QCOMPARE(h->uploaders.last()->file, std::optional(file));
        QTRY_VERIFY(!visibleWindow<UploadConfirmationView>(QStringLiteral("uploadConfirmation")));
    }

    void aRecentDuplicateNeedsUploadItAgain() {
        recordEarlierUpload(86'000);
        UploadConfirmationView* sheet = present();
        QCOMPARE(sheet->height(), 430);
        QCOMPARE(
            shownText(sheet, QStringLiteral("duplicateText")),
            QStringLiteral("This exact file was uploaded to this machine in the last 24 hours."));
        auto* again = child<ToggleSwitch>(sheet, QStringLiteral("uploadAgainSwitch"));
        QCOMPARE(again->text(), QStringLiteral("Upload it again"));
        auto* upload = child<QPushButton>(sheet, QStringLiteral("uploadButton"));
        QVERIFY(!upload->isEnabled());
        QTest::keyClick(sheet, Qt::Key_Return);
        QCOMPARE(h->uploaders.made.size(), 0);
        QTest::mouseClick(again, Qt::LeftButton);
        QVERIFY(upload->isEnabled());
        QTest::mouseClick(again, Qt::LeftButton);
        QVERIFY(!upload->isEnabled());
        // Each presentation starts with the switch off.
        QTest::mouseClick(again, Qt::LeftButton);
        QTest::keyClick(sheet, Qt::Key_Escape);
        QTRY_VERIFY(!visibleWindow<UploadConfirmationView>(QStringLiteral("uploadConfirmation")));
        sheet = present();
        again = child<ToggleSwitch>(sheet, QStringLiteral("uploadAgainSwitch"));
        QVERIFY(!again->isChecked());
        QTest::mouseClick(again, Qt::LeftButton);
        QTest::mouseClick(child<QPushButton>(sheet, QStringLiteral("uploadButton")),
                          Qt::LeftButton);
        QCOMPARE(h->uploaders.made.size(), 1);
    }

    void escapeAndCancelCloseWithoutUploading() {
        for (const bool byKey : {true, false}) {
            UploadConfirmationView* sheet = present();
            if (byKey)
                QTest::keyClick(sheet, Qt::Key_Escape);
            else
                QTest::mouseClick(child<QPushButton>(sheet, QStringLiteral("cancelButton")),
                                  Qt::LeftButton);
            QVERIFY(!h->model->showConfirmation());
            QTRY_VERIFY(
                !visibleWindow<UploadConfirmationView>(QStringLiteral("uploadConfirmation")));
        }
        QCOMPARE(h->uploaders.made.size(), 0);
        QCOMPARE(h->model->progress(), std::nullopt);
    }

    void longNamesElideAndTheRemotePathCopiesWhole() {
        const QString name = QString(200, QLatin1Char('x')) + QStringLiteral(".nc");
        h->model->chooseFile(h->jobFile(name));
        UploadConfirmationView* sheet = present();
        QCOMPARE(sheet->width(), 520);
        for (const char* label : {"fileNameValue", "remotePathValue"}) {
            auto* shown = child<ElidedLabel>(sheet, QString::fromLatin1(label));
            QVERIFY2(shown->text().contains(QChar(0x2026)), label);
            QVERIFY2(shown->mapTo(sheet, QPoint(shown->width(), 0)).x() <= sheet->width(), label);
            QVERIFY2(shown->toolTip() == shown->fullText(), label);
        }
        auto* remotePath = child<ElidedLabel>(sheet, QStringLiteral("remotePathValue"));
        remotePath->setFocus();
        QTest::keyClick(remotePath, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("/sd/gcodes/") + name);
    }

    void absentValuesAreDashes() {
        UiHarness empty;
        UploadConfirmationView sheet(*empty.model);
        for (const char* name :
             {"destinationValue", "addressValue", "fileNameValue", "sizeValue", "remotePathValue"})
            QCOMPARE(value(&sheet, name), QStringLiteral("\u2014"));
    }
};

QTEST_MAIN(UploadConfirmationTest)
#include "UploadConfirmationTest.moc"
