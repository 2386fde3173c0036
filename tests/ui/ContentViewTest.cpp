#include "ui/ContentView.h"

#include "UiHarness.h"
#include "ui/StatusBadge.h"
#include "ui/UploadConfirmationView.h"

#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>

#include <limits>

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace tarnwick::ui;

namespace {

// Texts of the labels with the given name that the user can see, in layout order.
QStringList visibleTexts(const QWidget* parent, const QString& objectName) {
    QStringList texts;
    for (const QLabel* label : parent->findChildren<QLabel*>(objectName))
        if (label->isVisibleTo(parent->window()))
            texts.append(label->text());
    return texts;
}

QString shownText(const QWidget* parent, const QString& objectName) {
    const QStringList texts = visibleTexts(parent, objectName);
    return texts.size() == 1 ? texts.first() : QStringLiteral("<%1 shown>").arg(texts.size());
}

void sendDrop(QWidget* target, const QUrl& url) {
    QMimeData data;
    data.setUrls({url});
    QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(QPointF(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &drop);
}

} // namespace

class ContentViewTest : public QObject {
    Q_OBJECT

    std::unique_ptr<UiHarness> h;
    std::unique_ptr<ContentView> window;

    void showWindow() {
        window = std::make_unique<ContentView>(*h->model);
        window->resize(1000, 760);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    }

    // A machine found by the first scan and selected, with the check finished.
    void selectFoundMachine(const Machine& machine) {
        Q_EMIT h->discoverer->scans.last()->machineFound(machine);
        h->model->selectMachine(machine);
        Q_EMIT h->connector->checks.last()->finished();
    }

    FakeUploader* startUpload(qint64 size = 1000) {
        selectFoundMachine(
            UiHarness::machine(QStringLiteral("Bench Mill"), QStringLiteral("10.0.0.7")));
        h->model->chooseFile(h->jobFile(QStringLiteral("part.nc"), size));
        h->model->prepareUpload();
        h->model->upload(false);
        return h->uploaders.last();
    }

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }

    void init() {
        h = std::make_unique<UiHarness>();
        showWindow();
    }

    void cleanup() {
        window.reset();
        h.reset();
    }

    void firstShowScansOnceAndTheScanButtonFollowsTheScan() {
        QCOMPARE(h->discoverer->scans.size(), 1);
        QCOMPARE(window->minimumSize(), QSize(900, 620));
        auto* sidebar = child<QWidget>(window.get(), QStringLiteral("machineSidebar"));
        QCOMPARE(sidebar->width(), 300);
        QCOMPARE(sidebar->minimumWidth(), 260);
        QCOMPARE(sidebar->maximumWidth(), 340);
        QCOMPARE(child<QWidget>(window.get(), QStringLiteral("detailColumn"))->maximumWidth(), 820);
        auto* scan = child<QToolButton>(window.get(), QStringLiteral("scanButton"));
        QCOMPARE(scan->toolTip(), QStringLiteral("Scan for Makera machines"));
        QVERIFY(scan->text().isEmpty());
        QVERIFY(!scan->isEnabled());
        QCOMPARE(scan->property("symbol").toString(),
                 QStringLiteral("arrow.triangle.2.circlepath"));

        window->hide();
        window->show();
        QCOMPARE(h->discoverer->scans.size(), 1);

        Q_EMIT h->discoverer->scans.last()->finished();
        QVERIFY(scan->isEnabled());
        QCOMPARE(scan->property("symbol").toString(), QStringLiteral("arrow.clockwise"));
        QTest::mouseClick(scan, Qt::LeftButton);
        QCOMPARE(h->discoverer->scans.size(), 2);
    }

    void emptyStates() {
        auto* list = child<QListWidget>(window.get(), QStringLiteral("machineList"));
        QCOMPARE(list->count(), 0);
        QVERIFY(child<QWidget>(window.get(), QStringLiteral("destinationEmpty"))->isVisible());
        QVERIFY(!child<QWidget>(window.get(), QStringLiteral("destinationMachine"))->isVisible());
        const auto* destination = child<QWidget>(window.get(), QStringLiteral("destinationCard"));
        QCOMPARE(shownText(destination, QStringLiteral("emptyTitle")),
                 QStringLiteral("Choose a destination"));
        QCOMPARE(shownText(destination, QStringLiteral("emptyDescription")),
                 QStringLiteral("Select a discovered machine or enter its IP address."));
        auto* choose = child<QPushButton>(window.get(), QStringLiteral("chooseFileButton"));
        QVERIFY(choose->isVisible());
        QCOMPARE(choose->text(), QStringLiteral("Choose an .nc, .cnc or .gcode file\u2026"));
        auto* recentEmpty = child<QLabel>(window.get(), QStringLiteral("recentFilesEmpty"));
        QVERIFY(recentEmpty->isVisible());
        QCOMPARE(recentEmpty->text(), QStringLiteral("Files you choose will appear here."));
        QVERIFY(!child<QWidget>(window.get(), QStringLiteral("transferSection"))->isVisible());

        // While the scan runs the list shows; a scan that ends empty explains why.
        auto* hint = child<QLabel>(window.get(), QStringLiteral("noMachinesHint"));
        QVERIFY(!hint->isVisible());
        Q_EMIT h->discoverer->scans.last()->finished();
        QVERIFY(hint->isVisible());
        QVERIFY(hint->text().contains(QStringLiteral("UDP port 3333")));
        QVERIFY(hint->text().contains(QStringLiteral("VPN")));
        QVERIFY(hint->text().contains(QStringLiteral("Enter IP address")));
    }

    void machinesAreListedAndSelectionWritesThroughTheModel() {
        const Machine idle =
            UiHarness::machine(QStringLiteral("Bench"), QStringLiteral("10.0.0.7"));
        const Machine busy = UiHarness::machine(QStringLiteral("Annex"), QStringLiteral("10.0.0.8"),
                                                2222, Machine::ConnectionStatus::Busy);
        Q_EMIT h->discoverer->scans.last()->machineFound(idle);
        Q_EMIT h->discoverer->scans.last()->machineFound(busy);
        auto* list = child<QListWidget>(window.get(), QStringLiteral("machineList"));
        QCOMPARE(list->count(), 2);
        QCOMPARE(visibleTexts(list, QStringLiteral("machineName")),
                 (QStringList{QStringLiteral("Annex"), QStringLiteral("Bench")}));
        QCOMPARE(visibleTexts(list, QStringLiteral("machineAddress")),
                 (QStringList{QStringLiteral("10.0.0.8"), QStringLiteral("10.0.0.7")}));
        QCOMPARE(visibleTexts(list, QStringLiteral("busyLabel")),
                 QStringList{QStringLiteral("Busy")});
        QVERIFY(list->itemWidget(list->item(0))->findChild<QLabel*>(QStringLiteral("busyLabel")));
        QVERIFY(!list->itemWidget(list->item(1))->findChild<QLabel*>(QStringLiteral("busyLabel")));
        QCOMPARE(list->itemWidget(list->item(0))->findChild<StatusDot*>()->size(), QSize(9, 9));

        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualItemRect(list->item(1)).center());
        QTRY_VERIFY(h->model->selectedMachine().has_value());
        QCOMPARE(h->model->selectedMachine()->id(), idle.id());
        QCOMPARE(h->connector->checks.size(), 1);
        QCOMPARE(list->selectedItems(), QList<QListWidgetItem*>{list->item(1)});

        const auto* destination = child<QWidget>(window.get(), QStringLiteral("destinationCard"));
        QVERIFY(child<QWidget>(window.get(), QStringLiteral("destinationMachine"))->isVisible());
        QCOMPARE(shownText(destination, QStringLiteral("destinationName")),
                 QStringLiteral("Bench"));
        QCOMPARE(shownText(destination, QStringLiteral("destinationSubtitle")),
                 QStringLiteral("Model unknown \u00B7 10.0.0.7:2222"));
        auto* badge = child<StatusBadge>(window.get(), QStringLiteral("statusBadge"));
        QCOMPARE(badge->text(), QStringLiteral("Connecting"));
        Q_EMIT h->connector->checks.last()->finished();
        QCOMPARE(badge->text(), QStringLiteral("Connected"));

        // Clicking below the rows, or deselecting with the modifier, leaves the selection.
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          QPoint(10, list->viewport()->height() - 4));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::ControlModifier,
                          list->visualItemRect(list->item(1)).center());
        QTest::qWait(10);
        QCOMPARE(h->model->selectedMachine()->id(), idle.id());
        QCOMPARE(list->selectedItems().size(), 1);
        QCOMPARE(list->row(list->selectedItems().first()), 1);
        QCOMPARE(h->connector->checks.size(), 1);
    }

    void addIsEnabledOnlyForAnAddressAndAPortNumber() {
        auto* enter = child<QPushButton>(window.get(), QStringLiteral("enterAddressButton"));
        QCOMPARE(enter->text(), QStringLiteral("Enter IP address"));
        auto* address = child<QLineEdit>(window.get(), QStringLiteral("addressField"));
        auto* port = child<QLineEdit>(window.get(), QStringLiteral("portField"));
        auto* add = child<QPushButton>(window.get(), QStringLiteral("addButton"));
        QVERIFY(!address->isVisible());
        QTest::mouseClick(enter, Qt::LeftButton);
        QVERIFY(address->isVisible());
        QVERIFY(!enter->isVisible());
        QCOMPARE(address->placeholderText(), QStringLiteral("IP address"));
        QCOMPARE(port->placeholderText(), QStringLiteral("Port"));
        QCOMPARE(port->text(), QStringLiteral("2222"));
        QCOMPARE(port->width(), 80);

        QVERIFY(!add->isEnabled());
        QTest::keyClicks(address, QStringLiteral("10.0.0.9"));
        QVERIFY(add->isEnabled());
        port->clear();
        QVERIFY(!add->isEnabled());
        for (const char* bad : {"70000", "12a", "-1"}) {
            port->setText(QString::fromLatin1(bad));
            QVERIFY2(!add->isEnabled(), bad);
        }
        port->setText(QStringLiteral("+8080"));
        QVERIFY(add->isEnabled());
        QTest::mouseClick(add, Qt::LeftButton);
        QVERIFY(h->model->selectedMachine().has_value());
        QCOMPARE(h->model->selectedMachine()->id(), QStringLiteral("10.0.0.9:8080"));
        QCOMPARE(h->model->selectedMachine()->name, QStringLiteral("Manual machine"));
        QVERIFY(!address->isVisible());
        QVERIFY(enter->isVisible());

        // The fields keep their text; a rejected entry shows the one message.
        QTest::mouseClick(enter, Qt::LeftButton);
        QCOMPARE(address->text(), QStringLiteral("10.0.0.9"));
        address->setText(QStringLiteral("192.168.001.5"));
        QTest::mouseClick(add, Qt::LeftButton);
        QCOMPARE(h->model->errorMessage(),
                 std::optional(QStringLiteral("Enter a valid IPv4 address and port.")));
        QVERIFY(address->isVisible());
        QCOMPARE(h->model->selectedMachine()->id(), QStringLiteral("10.0.0.9:8080"));

        auto* cancel = child<QPushButton>(window.get(), QStringLiteral("cancelEntryButton"));
        QTest::mouseClick(cancel, Qt::LeftButton);
        QVERIFY(!address->isVisible());
    }

    void reviewUploadNeedsAMachineAFileAndNoUpload() {
        auto* review = child<QPushButton>(window.get(), QStringLiteral("reviewButton"));
        QVERIFY(!review->isEnabled());
        h->model->chooseFile(h->jobFile(QStringLiteral("part.nc"), 1'234'567));
        QVERIFY(review->isVisible());
        QVERIFY(!review->isEnabled());
        const auto* card = child<QWidget>(window.get(), QStringLiteral("fileCard"));
        QCOMPARE(shownText(card, QStringLiteral("fileName")), QStringLiteral("part.nc"));
        QCOMPARE(shownText(card, QStringLiteral("fileSize")), QStringLiteral("1.2 MB"));
        QCOMPARE(shownText(card, QStringLiteral("remoteFolderNote")),
                 QStringLiteral("Sent uncompressed to /sd/gcodes on the machine"));
        QCOMPARE(child<QPushButton>(window.get(), QStringLiteral("chooseAnotherButton"))->text(),
                 QStringLiteral("Choose Another\u2026"));

        selectFoundMachine(
            UiHarness::machine(QStringLiteral("Bench Mill"), QStringLiteral("10.0.0.7")));
        QVERIFY(review->isEnabled());
        QTest::mouseClick(review, Qt::LeftButton);
        QVERIFY(h->model->showConfirmation());
        QTRY_VERIFY(visibleWindow<UploadConfirmationView>(QStringLiteral("uploadConfirmation")));

        h->model->upload(false);
        QVERIFY(h->model->isUploading());
        QVERIFY(!review->isEnabled());
        QTRY_VERIFY(!visibleWindow<UploadConfirmationView>(QStringLiteral("uploadConfirmation")));
    }

    void transferCardShowsEachPhase() {
        FakeUploader* uploader = startUpload();
        auto* section = child<QWidget>(window.get(), QStringLiteral("transferSection"));
        auto* card = child<QWidget>(window.get(), QStringLiteral("transferCard"));
        auto* cancel = child<QPushButton>(window.get(), QStringLiteral("cancelUploadButton"));
        auto* bar = child<QProgressBar>(window.get(), QStringLiteral("transferBar"));
        QVERIFY(!section->isVisible());

        Q_EMIT uploader->progress({TransferProgress::Phase::Preparing, 0, 1000, 0});
        QVERIFY(section->isVisible());
        QCOMPARE(shownText(card, QStringLiteral("transferTitle")), QStringLiteral("Preparing"));
        QCOMPARE(shownText(card, QStringLiteral("transferPercent")), QStringLiteral("0%"));
        QCOMPARE(shownText(card, QStringLiteral("transferBytes")),
                 QStringLiteral("0 bytes") + QStringLiteral(" of ") + QStringLiteral("1 kB"));
        QVERIFY(visibleTexts(card, QStringLiteral("transferRate")).isEmpty());
        QVERIFY(cancel->isVisible());

        Q_EMIT uploader->progress({TransferProgress::Phase::Uploading, 500, 1000, 100});
        QCOMPARE(shownText(card, QStringLiteral("transferTitle")), QStringLiteral("Uploading"));
        QCOMPARE(shownText(card, QStringLiteral("transferPercent")), QStringLiteral("50%"));
        QCOMPARE(bar->value(), bar->maximum() / 2);
        QCOMPARE(shownText(card, QStringLiteral("transferRate")),
                 QStringLiteral("100 bytes") + QStringLiteral("/s"));
        QCOMPARE(shownText(card, QStringLiteral("transferTimeLeft")),
                 QStringLiteral("About 5 s left"));

        // A rate that is no usable number hides the rate and the time left.
        Q_EMIT uploader->progress({TransferProgress::Phase::Uploading, 600, 1000,
                                   std::numeric_limits<double>::quiet_NaN()});
        QVERIFY(visibleTexts(card, QStringLiteral("transferRate")).isEmpty());
        QVERIFY(visibleTexts(card, QStringLiteral("transferTimeLeft")).isEmpty());

        QTest::mouseClick(cancel, Qt::LeftButton);
        QCOMPARE(uploader->cancelCalls, 1);
        Q_EMIT uploader->failed(UploadError::cancelled());
        QCOMPARE(shownText(card, QStringLiteral("transferTitle")), QStringLiteral("Cancelled"));
        QCOMPARE(shownText(card, QStringLiteral("transferBytes")),
                 QStringLiteral("600 bytes") + QStringLiteral(" of ") + QStringLiteral("1 kB"));
        QVERIFY(!cancel->isVisible());
        QVERIFY(section->isVisible());
        auto* alert = visibleWindow<QMessageBox>(QStringLiteral("errorAlert"));
        QTRY_VERIFY((alert = visibleWindow<QMessageBox>(QStringLiteral("errorAlert"))));
        QCOMPARE(alert->text(), QStringLiteral("The upload was cancelled."));
    }

    void completedTransferIsGreenAndFull() {
        FakeUploader* uploader = startUpload(4'700'000'000);
        Q_EMIT uploader->progress(
            {TransferProgress::Phase::Uploading, 2'400'000'000, 4'700'000'000, 48'000'000});
        auto* card = child<QWidget>(window.get(), QStringLiteral("transferCard"));
        QCOMPARE(shownText(card, QStringLiteral("transferBytes")),
                 QStringLiteral("2.4 GB") + QStringLiteral(" of ") + QStringLiteral("4.7 GB"));
        QCOMPARE(shownText(card, QStringLiteral("transferPercent")), QStringLiteral("51%"));
        auto* bar = child<QProgressBar>(window.get(), QStringLiteral("transferBar"));
        QVERIFY(bar->palette().color(QPalette::Highlight) != QColor(0x2B, 0xA8, 0x4A));

        Q_EMIT uploader->progress(
            {TransferProgress::Phase::Completed, 4'700'000'000, 4'700'000'000, 48'000'000});
        Q_EMIT uploader->finished();
        QCOMPARE(shownText(card, QStringLiteral("transferTitle")),
                 QStringLiteral("Upload complete"));
        QCOMPARE(shownText(card, QStringLiteral("transferPercent")), QStringLiteral("100%"));
        QCOMPARE(bar->value(), bar->maximum());
        QCOMPARE(bar->palette().color(QPalette::Highlight), QColor(0x2B, 0xA8, 0x4A));
        QVERIFY(
            !child<QPushButton>(window.get(), QStringLiteral("cancelUploadButton"))->isVisible());
        QVERIFY(child<QPushButton>(window.get(), QStringLiteral("reviewButton"))->isEnabled());
    }

    void recentFilesShowFiveRowsWithDividersBetween() {
        QList<JobFile> files;
        for (int i = 1; i <= 6; ++i) {
            files.append(h->jobFile(QStringLiteral("job%1.nc").arg(i), i * 1000));
            h->model->chooseFile(files.last());
        }
        auto* recent = child<QWidget>(window.get(), QStringLiteral("recentFiles"));
        QVERIFY(!child<QLabel>(window.get(), QStringLiteral("recentFilesEmpty"))->isVisible());
        QCOMPARE(visibleTexts(recent, QStringLiteral("recentFileName")),
                 (QStringList{QStringLiteral("job6.nc"), QStringLiteral("job5.nc"),
                              QStringLiteral("job4.nc"), QStringLiteral("job3.nc"),
                              QStringLiteral("job2.nc")}));
        QCOMPARE(visibleTexts(recent, QStringLiteral("recentFileSize")).first(),
                 QStringLiteral("6 kB"));

        // The order in the layout: row, divider, row, …, row — nothing after the fifth row.
        QStringList kinds;
        QLayout* rows = recent->findChild<QPushButton*>(QStringLiteral("recentFileRow"))
                            ->parentWidget()
                            ->layout();
        for (int i = 0; i < rows->count(); ++i)
            kinds.append(rows->itemAt(i)->widget()->objectName());
        QCOMPARE(kinds.count(QStringLiteral("recentFileRow")), 5);
        QCOMPARE(kinds.count(QStringLiteral("recentDivider")), 4);
        QCOMPARE(kinds.last(), QStringLiteral("recentFileRow"));
        for (int i = 0; i + 1 < kinds.size(); ++i)
            QVERIFY(kinds[i] != kinds[i + 1]);

        const QList<QPushButton*> buttons =
            recent->findChildren<QPushButton*>(QStringLiteral("recentFileRow"));
        QTest::mouseClick(buttons[3], Qt::LeftButton);
        QTRY_COMPARE(h->model->selectedFile(), std::optional(files[2]));
        QCOMPARE(visibleTexts(recent, QStringLiteral("recentFileName")).first(),
                 QStringLiteral("job3.nc"));
    }

    void errorAlertShowsTheMessageAndOkClearsIt() {
        h->model->setErrorMessage(QStringLiteral("Connection check failed: refused"));
        QMessageBox* alert = nullptr;
        QTRY_VERIFY((alert = visibleWindow<QMessageBox>(QStringLiteral("errorAlert"))));
        QCOMPARE(alert->windowTitle(), QStringLiteral("Tarnwick"));
        QCOMPARE(alert->text(), QStringLiteral("Connection check failed: refused"));
        QCOMPARE(alert->buttons().size(), 1);
        QCOMPARE(alert->buttons().first()->text(), QStringLiteral("OK"));
        QTest::mouseClick(alert->buttons().first(), Qt::LeftButton);
        QCOMPARE(h->model->errorMessage(), std::nullopt);
        QTRY_VERIFY(!visibleWindow<QMessageBox>(QStringLiteral("errorAlert")));

        h->model->setErrorMessage(QString());
        QTRY_VERIFY((alert = visibleWindow<QMessageBox>(QStringLiteral("errorAlert"))));
        QCOMPARE(alert->text(), QStringLiteral("Unknown error"));
        QTest::keyClick(alert, Qt::Key_Escape);
        QCOMPARE(h->model->errorMessage(), std::nullopt);
    }

    void droppedFilesAreValidatedLikeChosenOnes() {
        sendDrop(window.get(), writeFile(h->dir, QStringLiteral("notes.txt"), "G0"));
        QCOMPARE(h->model->errorMessage(),
                 std::optional(QStringLiteral(
                     "The .txt extension is not supported. Choose an .nc, .cnc or .gcode file.")));
        QCOMPARE(h->model->selectedFile(), std::nullopt);
        QTRY_VERIFY(visibleWindow<QMessageBox>(QStringLiteral("errorAlert")));
        h->model->setErrorMessage(std::nullopt);

        sendDrop(window.get(), QUrl::fromLocalFile(h->dir.path()));
        QCOMPARE(h->model->errorMessage(),
                 std::optional(QStringLiteral("Please choose a regular file.")));
        h->model->setErrorMessage(std::nullopt);

        // Two files at once are not a choice: the window does not take them.
        QMimeData two;
        two.setUrls({writeFile(h->dir, QStringLiteral("a.nc"), "G0"),
                     writeFile(h->dir, QStringLiteral("b.nc"), "G0")});
        QDragEnterEvent enterTwo(QPoint(50, 50), Qt::CopyAction, &two, Qt::LeftButton,
                                 Qt::NoModifier);
        QApplication::sendEvent(window.get(), &enterTwo);
        QVERIFY(!enterTwo.isAccepted());

        const QUrl upper = writeFile(h->dir, QStringLiteral("PART.GCODE"), "G1 X1");
        sendDrop(window.get(), upper);
        QVERIFY(h->model->selectedFile().has_value());
        QCOMPARE(h->model->selectedFile()->url, upper);
        QCOMPARE(h->model->recentFiles().size(), 1);
    }

    void filePanelOffersOnlyJobFiles() {
        QTest::mouseClick(child<QPushButton>(window.get(), QStringLiteral("chooseFileButton")),
                          Qt::LeftButton);
        QFileDialog* panel = nullptr;
        QTRY_VERIFY((panel = visibleWindow<QFileDialog>(QStringLiteral("jobFilePanel"))) ||
                    (panel = window->findChild<QFileDialog*>(QStringLiteral("jobFilePanel"))));
        QCOMPARE(panel->windowTitle(), QStringLiteral("Choose a Makera job file"));
        QCOMPARE(panel->labelText(QFileDialog::Accept), QStringLiteral("Choose"));
        QCOMPARE(panel->fileMode(), QFileDialog::ExistingFile);
        QCOMPARE(panel->nameFilters(),
                 QStringList{QStringLiteral("Makera job files (*.nc *.cnc *.gcode)")});

        const JobFile file = h->jobFile(QStringLiteral("chosen.cnc"), 42);
        panel->selectUrl(file.url);
        QMetaObject::invokeMethod(panel, "accept");
        QCOMPARE(h->model->selectedFile(), std::optional(file));
    }

    void closingDuringAnUploadAsksAndCancelsFirst() {
        FakeUploader* uploader = startUpload();
        QVERIFY(!window->close());
        QVERIFY(window->isVisible());
        QMessageBox* question = nullptr;
        QTRY_VERIFY((question = visibleWindow<QMessageBox>(QStringLiteral("stopUploadQuestion"))));
        QCOMPARE(uploader->cancelCalls, 0);
        QTest::mouseClick(child<QPushButton>(question, QStringLiteral("stopAndQuitButton")),
                          Qt::LeftButton);
        QCOMPARE(uploader->cancelCalls, 1);
        QVERIFY(window->isVisible());
        Q_EMIT uploader->failed(UploadError::cancelled());
        QTRY_VERIFY(!window->isVisible());
    }

    void closingWithoutAnUploadDoesNotAsk() {
        QVERIFY(window->close());
        QVERIFY(!visibleWindow<QMessageBox>(QStringLiteral("stopUploadQuestion")));
    }
};

QTEST_MAIN(ContentViewTest)
#include "ContentViewTest.moc"
