#include "UiHarness.h"
#include "ui/ElidedLabel.h"
#include "ui/ToggleSwitch.h"
#include "ui/UploadConfirmationView.h"

#include <QClipboard>
#include <QPushButton>

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace tarnwick::ui;
using namespace Qt::StringLiterals;

class UploadConfirmationTest : public QObject {
    Q_OBJECT

    std::unique_ptr<WindowHarness> h;
    JobFile file;
    const Machine machine = ModelHarness::machine(u"Bench Mill"_s, u"10.0.0.7"_s);

    UploadConfirmationView* present() {
        h->model->prepareUpload();
        auto* sheet = waitForWindow<UploadConfirmationView>(u"uploadConfirmation"_s);
        if (!sheet)
            qFatal("the sheet did not appear");
        return sheet;
    }

    bool closed() const {
        return QTest::qWaitFor(
            [] { return !visibleWindow<UploadConfirmationView>(u"uploadConfirmation"_s); });
    }

    static QString value(const QWidget* sheet, const char* name) {
        return child<ElidedLabel>(sheet, QString::fromLatin1(name))->fullText();
    }

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }

    void init() {
        h = std::make_unique<WindowHarness>();
        QVERIFY(h->show());
        file = h->jobFile(u"bracket.gcode"_s, 48'000);
        h->selectFound(machine);
        h->model->chooseFile(file);
    }

    void cleanup() { h.reset(); }

    // Cancel closes it without a call on the model; Return uploads without a duplicate.
    void withoutARecentUploadTheSheetIsShortAndUploadIsReady() {
        QTest::mouseClick(child<QPushButton>(present(), u"cancelButton"_s), Qt::LeftButton);
        QVERIFY(!h->model->showConfirmation());
        QVERIFY(closed());
        QCOMPARE(h->uploaders.made.size(), 0);
        UploadConfirmationView* sheet = present();
        QCOMPARE(sheet->size(), QSize(520, 350));
        QCOMPARE(sheet->windowModality(), Qt::WindowModal);
        QCOMPARE(shownText(sheet, u"sheetTitle"_s), u"Confirm upload"_s);
        QCOMPARE(shownText(sheet, u"sheetNote"_s),
                 u"This sends the file only. It will not start a job."_s);
        const QList<std::pair<const char*, QString>> values{
            {"destinationValue", u"Bench Mill"_s},
            {"addressValue", u"10.0.0.7:2222"_s},
            {"fileNameValue", u"bracket.gcode"_s},
            {"sizeValue", u"48 kB"_s},
            {"remotePathValue", u"/sd/gcodes/bracket.gcode"_s}};
        for (const auto& [name, text] : values)
            QCOMPARE(value(sheet, name), text);
        // The intent, whatever face the system has: a monospaced one.
        QCOMPARE(child<QLabel>(sheet, u"addressValue"_s)->font().styleHint(), QFont::Monospace);
        QVERIFY(!child<QWidget>(sheet, u"duplicateWarning"_s)->isVisible());
        auto* upload = child<QPushButton>(sheet, u"uploadButton"_s);
        QVERIFY(upload->isEnabled() && upload->isDefault());
        QTest::keyClick(sheet, Qt::Key_Return);
        QCOMPARE(h->uploaders.made.size(), 1);
        QCOMPARE(h->uploaders.last()->file, std::optional(file));
        QVERIFY(closed());
    }

    // Escape closes it without a call on the model, and each presentation starts switched off.
    void aRecentDuplicateNeedsUploadItAgain() {
        h->model->persistence().recordUpload(UploadRecord{
            machine.id(), file.id(), file.size, QDateTime::currentDateTimeUtc().addSecs(-86'000)});
        UploadConfirmationView* sheet = present();
        QCOMPARE(sheet->height(), 430);
        QCOMPARE(shownText(sheet, u"duplicateText"_s),
                 u"This exact file was uploaded to this machine in the last 24 hours."_s);
        auto* again = child<ToggleSwitch>(sheet, u"uploadAgainSwitch"_s);
        QCOMPARE(again->text(), u"Upload it again"_s);
        auto* upload = child<QPushButton>(sheet, u"uploadButton"_s);
        QVERIFY(!upload->isEnabled());
        QTest::keyClick(sheet, Qt::Key_Return);
        QCOMPARE(h->uploaders.made.size(), 0);
        QTest::mouseClick(again, Qt::LeftButton);
        QVERIFY(upload->isEnabled());
        QTest::mouseClick(again, Qt::LeftButton);
        QVERIFY(!upload->isEnabled());
        QTest::mouseClick(again, Qt::LeftButton);
        QTest::keyClick(sheet, Qt::Key_Escape);
        QVERIFY(!h->model->showConfirmation());
        QVERIFY(closed());
        QCOMPARE(h->uploaders.made.size(), 0);
        sheet = present();
        again = child<ToggleSwitch>(sheet, u"uploadAgainSwitch"_s);
        QVERIFY(!again->isChecked());
        QTest::mouseClick(again, Qt::LeftButton);
        QTest::mouseClick(child<QPushButton>(sheet, u"uploadButton"_s), Qt::LeftButton);
        QCOMPARE(h->uploaders.made.size(), 1);
    }

    void longNamesElideAndTheRemotePathCopiesWhole() {
        const QString name = QString(200, u'x') + u".nc"_s;
        h->model->chooseFile(h->jobFile(name));
        UploadConfirmationView* sheet = present();
        QCOMPARE(sheet->width(), 520);
        for (const char* label : {"fileNameValue", "remotePathValue"}) {
            auto* shown = child<ElidedLabel>(sheet, QString::fromLatin1(label));
            QVERIFY2(shown->text().contains(u'\u2026'), label);
            QVERIFY2(shown->mapTo(sheet, QPoint(shown->width(), 0)).x() <= sheet->width(), label);
        }
        auto* remotePath = child<ElidedLabel>(sheet, u"remotePathValue"_s);
        remotePath->setFocus();
        QTest::keyClick(remotePath, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), u"/sd/gcodes/"_s + name);
    }

    void absentValuesAreDashes() {
        ModelHarness empty;
        UploadConfirmationView sheet(*empty.model);
        for (const char* name :
             {"destinationValue", "addressValue", "fileNameValue", "sizeValue", "remotePathValue"})
            QCOMPARE(value(&sheet, name), u"\u2014"_s);
    }
};

QTEST_MAIN(UploadConfirmationTest)
#include "UploadConfirmationTest.moc"
