#include "UiHarness.h"
#include "ui/ContentView.h"
#include "ui/ToggleSwitch.h"
#include "ui/UploadConfirmationView.h"

#include <QLabel>
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
                            QStringLiteral("uploadConfirmation"))) != nullptr;
            }))
            qFatal("the sheet did not appear");
        return sheet;
    }

    void recordEarlierUpload(qint64 secondsAgo) {
        h->model->persistence().recordUpload(
            UploadRecord{machine.id(), file.id(), file.size,
                         QDateTime::currentDateTimeUtc().addSecs(-secondsAgo)});
    }

    static QString value(const QWidget* sheet, const QString& name) {
        return child<QLabel>(sheet, name)->text();
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
        QCOMPARE(sheet->size(), QSize(520, 350));
        QVERIFY(sheet->isModal());
        QCOMPARE(sheet->windowModality(), Qt::WindowModal);
        QCOMPARE(value(sheet, QStringLiteral("sheetTitle")), QStringLiteral("Confirm upload"));
        QCOMPARE(value(sheet, QStringLiteral("sheetNote")),
                 QStringLiteral("This sends the file only. It will not start a job."));
        QCOMPARE(value(sheet, QStringLiteral("destinationValue")), QStringLiteral("Bench Mill"));
        QCOMPARE(value(sheet, QStringLiteral("addressValue")), QStringLiteral("10.0.0.7:2222"));
        QCOMPARE(value(sheet, QStringLiteral("fileNameValue")), QStringLiteral("bracket.gcode"));
        QCOMPARE(value(sheet, QStringLiteral("sizeValue")), QStringLiteral("48 kB"));
        QCOMPARE(value(sheet, QStringLiteral("remotePathValue")),
                 QStringLiteral("/sd/gcodes/bracket.gcode"));
        QVERIFY(
            child<QLabel>(sheet, QStringLiteral("addressValue"))->font().fixedPitch() ||
            QFontInfo(child<QLabel>(sheet, QStringLiteral("addressValue"))->font()).fixedPitch());
        QVERIFY(!child<QWidget>(sheet, QStringLiteral("duplicateWarning"))->isVisible());
        auto* upload = child<QPushButton>(sheet, QStringLiteral("uploadButton"));
        QVERIFY(upload->isEnabled());
        QVERIFY(upload->isDefault());

        QTest::keyClick(sheet, Qt::Key_Return);
        QCOMPARE(h->uploaders.made.size(), 1);
        QCOMPARE(h->uploaders.last()->file, std::optional(file));
        QVERIFY(!h->model->showConfirmation());
        QTRY_VERIFY(!visibleWindow<UploadConfirmationView>(QStringLiteral("uploadConfirmation")));
    }

    void aRecentDuplicateNeedsUploadItAgain() {
        recordEarlierUpload(86'000);
        UploadConfirmationView* sheet = present();
        QCOMPARE(sheet->size(), QSize(520, 430));
        QVERIFY(child<QWidget>(sheet, QStringLiteral("duplicateWarning"))->isVisible());
        QCOMPARE(
            value(sheet, QStringLiteral("duplicateText")),
            QStringLiteral("This exact file was uploaded to this machine in the last 24 hours."));
        auto* again = child<ToggleSwitch>(sheet, QStringLiteral("uploadAgainSwitch"));
        QCOMPARE(again->text(), QStringLiteral("Upload it again"));
        QVERIFY(!again->isChecked());
        auto* upload = child<QPushButton>(sheet, QStringLiteral("uploadButton"));
        QVERIFY(!upload->isEnabled());
        QTest::keyClick(sheet, Qt::Key_Return);
        QCOMPARE(h->uploaders.made.size(), 0);

        QTest::mouseClick(again, Qt::LeftButton);
        QVERIFY(upload->isEnabled());
        QTest::mouseClick(again, Qt::LeftButton);
        QVERIFY(!upload->isEnabled());
        QTest::mouseClick(again, Qt::LeftButton);
        QTest::mouseClick(upload, Qt::LeftButton);
        QCOMPARE(h->uploaders.made.size(), 1);
        QVERIFY(h->model->isUploading());
    }

    void anOlderUploadIsNoDuplicate() {
        recordEarlierUpload(86'401);
        UploadConfirmationView* sheet = present();
        QCOMPARE(sheet->height(), 350);
        QVERIFY(child<QPushButton>(sheet, QStringLiteral("uploadButton"))->isEnabled());
    }

    void escapeClosesWithoutUploading() {
        UploadConfirmationView* sheet = present();
        QTest::keyClick(sheet, Qt::Key_Escape);
        QVERIFY(!h->model->showConfirmation());
        QTRY_VERIFY(!visibleWindow<UploadConfirmationView>(QStringLiteral("uploadConfirmation")));
        QCOMPARE(h->uploaders.made.size(), 0);
        QVERIFY(!h->model->isUploading());
        QCOMPARE(h->model->progress(), std::nullopt);

        sheet = present();
        QTest::mouseClick(child<QPushButton>(sheet, QStringLiteral("cancelButton")),
                          Qt::LeftButton);
        QVERIFY(!h->model->showConfirmation());
        QCOMPARE(h->uploaders.made.size(), 0);
    }

    void eachPresentationStartsWithTheSwitchOff() {
        recordEarlierUpload(10);
        UploadConfirmationView* sheet = present();
        QTest::mouseClick(child<ToggleSwitch>(sheet, QStringLiteral("uploadAgainSwitch")),
                          Qt::LeftButton);
        QTest::keyClick(sheet, Qt::Key_Escape);
        QTRY_VERIFY(!visibleWindow<UploadConfirmationView>(QStringLiteral("uploadConfirmation")));
        sheet = present();
        QVERIFY(!child<ToggleSwitch>(sheet, QStringLiteral("uploadAgainSwitch"))->isChecked());
        QVERIFY(!child<QPushButton>(sheet, QStringLiteral("uploadButton"))->isEnabled());
    }

    void absentValuesAreDashes() {
        UiHarness empty;
        UploadConfirmationView sheet(*empty.model);
        const QString dash = QStringLiteral("\u2014");
        for (const char* name :
             {"destinationValue", "addressValue", "fileNameValue", "sizeValue", "remotePathValue"})
            QCOMPARE(value(&sheet, QString::fromLatin1(name)), dash);
        QCOMPARE(sheet.height(), 350);
    }
};

QTEST_MAIN(UploadConfirmationTest)
#include "UploadConfirmationTest.moc"
