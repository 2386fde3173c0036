#include "ui/ContentView.h"

#include "UiHarness.h"
#include "ui/ElidedLabel.h"
#include "ui/MachineListModel.h"
#include "ui/StatusBadge.h"
#include "ui/ToggleSwitch.h"
#include "ui/UploadConfirmationView.h"

#include <QAccessible>
#include <QClipboard>
#include <QFileDialog>
#include <QLayout>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

#include <limits>

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace tarnwick::ui;

namespace {

using Status = Machine::ConnectionStatus;
using Phase = TransferProgress::Phase;

void sendDrop(QWidget* target, const QUrl& url) {
    QMimeData data;
    data.setUrls({url});
    QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(QPointF(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &drop);
}

// A key pressed where the keyboard focus is, as a user without a mouse presses it.
void press(int key, Qt::KeyboardModifiers modifiers = {}) {
    QWidget* focus = QApplication::focusWidget();
    QVERIFY2(focus, "nothing has the keyboard focus");
    QTest::keyClick(focus, Qt::Key(key), modifiers);
}

QString focusName() {
    return QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : QString();
}

// Tabs on until the named control has the focus, as far as a window's controls go.
void tabTo(const char* name) {
    for (int i = 0; i < 30 && focusName() != QLatin1String(name); ++i)
        press(Qt::Key_Tab);
    QCOMPARE(focusName(), QString::fromLatin1(name));
}

} // namespace

class ContentViewTest : public QObject {
    Q_OBJECT

    std::unique_ptr<UiHarness> h;
    std::unique_ptr<ContentView> window;
    const Machine bench =
        UiHarness::machine(QStringLiteral("Bench Mill"), QStringLiteral("10.0.0.7"));

    void showWindow() {
        window = std::make_unique<ContentView>(*h->model);
        window->resize(1000, 760);
        window->show();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
    }

    template <typename T = QWidget>
    T* find(const char* name) {
        return child<T>(window.get(), QString::fromLatin1(name));
    }
    QString shown(const char* name) { return shownText(window.get(), QString::fromLatin1(name)); }
    MachineListModel* listModel() {
        return qobject_cast<MachineListModel*>(find<QListView>("machineList")->model());
    }
    QRect rowRect(int row) {
        auto* list = find<QListView>("machineList");
        return list->visualRect(list->model()->index(row, 0));
    }

    // A machine found by the first scan and selected, with the check finished.
    void selectFoundMachine(const Machine& machine) {
        Q_EMIT h->discoverer->scans.last()->machineFound(machine);
        h->model->selectMachine(machine);
        Q_EMIT h->connector->checks.last()->finished();
    }

    FakeUploader* startUpload(qint64 size = 1000) {
        selectFoundMachine(bench);
        h->model->chooseFile(h->jobFile(QStringLiteral("part.nc"), size));
        h->model->prepareUpload();
        h->model->upload(false);
        return h->uploaders.last();
    }

    // What a window manager does when a dialog closes: the window below becomes active again.
    void returnToWindow() {
        QTRY_VERIFY(!QApplication::activeModalWidget());
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
    }

    QMessageBox* errorAlert() {
        QMessageBox* alert = nullptr;
        return QTest::qWaitFor([&] {
            return (alert = visibleWindow<QMessageBox>(QStringLiteral("errorAlert"))) != nullptr;
        })
                   ? alert
                   : nullptr;
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
        QCOMPARE(h->connector->checks.size(), 0);
        auto* scan = find<QToolButton>("scanButton");
        QCOMPARE(scan->toolTip(), QStringLiteral("Scan for Makera machines"));
        QCOMPARE(scan->accessibleName(), QStringLiteral("Scan for Makera machines"));
        QVERIFY(scan->text().isEmpty());
        QVERIFY(!scan->isEnabled());
        QCOMPARE(scan->property("symbol").toString(),
                 QStringLiteral("arrow.triangle.2.circlepath"));
        window->hide();
        window->show();
        QCOMPARE(h->discoverer->scans.size(), 1);
        Q_EMIT h->discoverer->scans.last()->finished();
        QCOMPARE(scan->property("symbol").toString(), QStringLiteral("arrow.clockwise"));
        QTest::mouseClick(scan, Qt::LeftButton);
        QCOMPARE(h->discoverer->scans.size(), 2);
    }

    void aRestoredSelectionIsCheckedWhenTheWindowFirstAppears() {
        window.reset();
        Machine stored = bench;
        stored.status = Status::Connected;
        h = std::make_unique<UiHarness>(stored);
        QCOMPARE(h->connector->checks.size(), 0);
        showWindow();
        QCOMPARE(h->connector->checks.size(), 1);
        QCOMPARE(h->connector->checks.last()->machine.id(), bench.id());
        QCOMPARE(find<StatusBadge>("statusBadge")->text(), QStringLiteral("Connecting"));
        Q_EMIT h->connector->checks.last()->failed(
            PlatformError{PlatformError::Domain::Network, 1, QStringLiteral("Connection refused")});
        QCOMPARE(find<StatusBadge>("statusBadge")->text(), QStringLiteral("Unavailable"));
        QCOMPARE(listModel()->index(0).data(MachineListModel::StatusRole).toInt(),
                 int(Status::Unavailable));
    }

    void clickingTheSelectedRowOrCheckAgainChecksAgain() {
        selectFoundMachine(bench);
        QCOMPARE(h->connector->checks.size(), 1);
        auto* list = find<QListView>("machineList");
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, rowRect(0).center());
        QCOMPARE(h->connector->checks.size(), 2);
        auto* again = find<QPushButton>("checkAgainButton");
        QVERIFY(!again->isEnabled());
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, rowRect(0).center());
        QCOMPARE(h->connector->checks.size(), 2);
        Q_EMIT h->connector->checks.last()->finished();
        QTest::mouseClick(again, Qt::LeftButton);
        QCOMPARE(h->connector->checks.size(), 3);
        // A click on empty space leaves the selection and checks nothing.
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          QPoint(10, list->viewport()->height() - 4));
        QCOMPARE(h->model->selectedMachine()->id(), bench.id());
        QCOMPARE(list->selectionModel()->selectedRows().size(), 1);
    }

    void anUploadThatCannotReachTheMachineLeavesNoConnectedBadge() {
        FakeUploader* uploader = startUpload();
        QCOMPARE(find<StatusBadge>("statusBadge")->text(), QStringLiteral("Connected"));
        const PlatformError refused{PlatformError::Domain::Network, 1,
                                    QStringLiteral("Connection refused")};
        Q_EMIT uploader->failed(refused);
        QCOMPARE(h->connector->checks.size(), 2);
        Q_EMIT h->connector->checks.last()->failed(refused);
        QCOMPARE(find<StatusBadge>("statusBadge")->text(), QStringLiteral("Unavailable"));
        QCOMPARE(listModel()->index(0).data(MachineListModel::StatusRole).toInt(),
                 int(Status::Unavailable));
        // The upload's own failure is what the user reads, not the check's.
        QCOMPARE(h->model->errorMessage(), std::optional(QStringLiteral("Connection refused")));
    }

    void theSidebarFollowsTheMachinesInPlace() {
        MachineListModel* rows = listModel();
        QSignalSpy resets(rows, &QAbstractItemModel::modelReset);
        QSignalSpy inserts(rows, &QAbstractItemModel::rowsInserted);
        FakeScan* scan = h->discoverer->scans.last();
        const Machine gamma =
            UiHarness::machine(QStringLiteral("gamma"), QStringLiteral("10.0.0.3"));
        Q_EMIT scan->machineFound(gamma);
        Q_EMIT scan->machineFound(
            UiHarness::machine(QStringLiteral("Alpha"), QStringLiteral("10.0.0.9"), 2223));
        Q_EMIT scan->machineFound(
            UiHarness::machine(QStringLiteral("beta"), QStringLiteral("10.0.0.9")));
        Q_EMIT scan->machineFound(
            UiHarness::machine(QStringLiteral("delta"), QStringLiteral("10.0.0.4"), 80));
        h->model->selectMachine(gamma);
        Machine renamed = gamma;
        renamed.name = QStringLiteral("aardvark");
        renamed.status = Status::Busy;
        Q_EMIT scan->machineFound(renamed);
        QCOMPARE(resets.size(), 0);
        QCOMPARE(inserts.size(), 4);
        // Name order; the port shows where it is not the usual one or the address is shared.
        const QList<std::tuple<QString, QString, Status>> expected{
            {QStringLiteral("Alpha"), QStringLiteral("10.0.0.9:2223"), Status::Discovered},
            {QStringLiteral("beta"), QStringLiteral("10.0.0.9:2222"), Status::Discovered},
            {QStringLiteral("delta"), QStringLiteral("10.0.0.4:80"), Status::Discovered},
            {QStringLiteral("aardvark"), QStringLiteral("10.0.0.3"), Status::Busy}};
        QCOMPARE(rows->rowCount(), expected.size());
        for (int row = 0; row < rows->rowCount(); ++row) {
            const QModelIndex index = rows->index(row);
            QCOMPARE(index.data().toString(), std::get<0>(expected[row]));
            QCOMPARE(index.data(MachineListModel::AddressRole).toString(),
                     std::get<1>(expected[row]));
            QCOMPARE(index.data(MachineListModel::StatusRole).toInt(),
                     int(std::get<2>(expected[row])));
        }
        const QModelIndexList selected =
            find<QListView>("machineList")->selectionModel()->selectedRows();
        QCOMPARE(selected, QModelIndexList{rows->index(3)});
    }

    void aScanListsAtMostTheLimitAndSaysSo() {
        auto* note = find<QLabel>("listLimitNote");
        QVERIFY(!note->isVisible());
        for (int i = 0; i <= AppModel::maximumListedMachines; ++i)
            Q_EMIT h->discoverer->scans.last()->machineFound(
                UiHarness::machine(QStringLiteral("Machine %1").arg(i),
                                   QStringLiteral("10.0.%1.%2").arg(i / 200).arg(i % 200)));
        QCOMPARE(listModel()->rowCount(), AppModel::maximumListedMachines);
        QVERIFY(note->isVisible());
        QCOMPARE(note->text(),
                 QStringLiteral("Stopped listing more: the scan heard more than 256 machines."));
        h->model->discover();
        QVERIFY(!note->isVisible());
    }

    void emptyStates() {
        QCOMPARE(shown("emptyTitle"), QStringLiteral("Choose a destination"));
        QCOMPARE(shown("emptyDescription"),
                 QStringLiteral("Select a discovered machine or enter its IP address."));
        QCOMPARE(find<QPushButton>("chooseFileButton")->text(),
                 QStringLiteral("Choose an .nc, .cnc or .gcode file\u2026"));
        QCOMPARE(shown("recentFilesEmpty"), QStringLiteral("Files you choose will appear here."));
        QVERIFY(!find("transferSection")->isVisible());
        // While the scan runs the list shows; a scan that ends empty explains why.
        auto* hint = find<QLabel>("noMachinesHint");
        QVERIFY(!hint->isVisible());
        Q_EMIT h->discoverer->scans.last()->finished();
        QVERIFY(hint->isVisible());
        for (const char* part : {"UDP port 3333", "VPN", "Enter IP address"})
            QVERIFY2(hint->text().contains(QString::fromLatin1(part)), part);
    }

    void manualEntryAddsOrExplains() {
        auto* enter = find<QPushButton>("enterAddressButton");
        auto* address = find<QLineEdit>("addressField");
        auto* port = find<QLineEdit>("portField");
        auto* add = find<QPushButton>("addButton");
        QTest::mouseClick(enter, Qt::LeftButton);
        QVERIFY(address->isVisible() && !enter->isVisible());
        QCOMPARE(address->placeholderText(), QStringLiteral("IP address"));
        QCOMPARE(port->placeholderText(), QStringLiteral("Port"));
        QCOMPARE(port->text(), QStringLiteral("2222"));
        QVERIFY(!add->isEnabled());
        QTest::keyClicks(address, QStringLiteral("10.0.0.9"));
        port->setText(QStringLiteral("12a"));
        QVERIFY(!add->isEnabled());
        port->setText(QStringLiteral("8080"));
        QTest::mouseClick(add, Qt::LeftButton);
        QCOMPARE(h->model->selectedMachine()->id(), QStringLiteral("10.0.0.9:8080"));
        QVERIFY(!address->isVisible() && enter->isVisible());
        // The fields keep their text; a rejected entry shows the one message.
        QTest::mouseClick(enter, Qt::LeftButton);
        QCOMPARE(address->text(), QStringLiteral("10.0.0.9"));
        address->setText(QStringLiteral("192.168.001.5"));
        QTest::mouseClick(add, Qt::LeftButton);
        QCOMPARE(h->model->errorMessage(),
                 std::optional(QStringLiteral("Enter a valid IPv4 address and port.")));
        QVERIFY(address->isVisible());
        QTest::mouseClick(find<QPushButton>("cancelEntryButton"), Qt::LeftButton);
        QVERIFY(!address->isVisible());
    }

    void reviewUploadNeedsAMachineAFileAndNoUpload() {
        auto* review = find<QPushButton>("reviewButton");
        h->model->chooseFile(h->jobFile(QStringLiteral("part.nc"), 1'234'567));
        QVERIFY(review->isVisible() && !review->isEnabled());
        QVERIFY(review->isDefault());
        QCOMPARE(shown("fileName"), QStringLiteral("part.nc"));
        QCOMPARE(shown("fileSize"), QStringLiteral("1.2 MB"));
        QCOMPARE(shown("remoteFolderNote"),
                 QStringLiteral("Sent uncompressed to /sd/gcodes on the machine"));
        QCOMPARE(find<QPushButton>("chooseAnotherButton")->text(),
                 QStringLiteral("Choose Another\u2026"));
        selectFoundMachine(bench);
        QCOMPARE(shown("destinationName"), QStringLiteral("Bench Mill"));
        QCOMPARE(shown("destinationSubtitle"),
                 QStringLiteral("Model unknown \u00B7 10.0.0.7:2222"));
        QTest::mouseClick(review, Qt::LeftButton);
        QTRY_VERIFY(visibleWindow<UploadConfirmationView>(QStringLiteral("uploadConfirmation")));
        h->model->upload(false);
        QVERIFY(!review->isEnabled());
        QTRY_VERIFY(!visibleWindow<UploadConfirmationView>(QStringLiteral("uploadConfirmation")));
    }

    void transferCardShowsEachPhaseAndWhatItSends() {
        FakeUploader* uploader = startUpload();
        auto* cancel = find<QPushButton>("cancelUploadButton");
        Q_EMIT uploader->progress({Phase::Preparing, 0, 1000, 0});
        QVERIFY(find("transferSection")->isVisible());
        QCOMPARE(shown("transferTitle"), QStringLiteral("Preparing"));
        QCOMPARE(shown("transferPercent"), QStringLiteral("0%"));
        QCOMPARE(shown("transferBytes"), QStringLiteral("0 bytes of 1 kB"));
        QCOMPARE(shown("transferSubject"),
                 QStringLiteral("Sending \u201Cpart.nc\u201D to Bench Mill"));
        QCOMPARE(shown("transferRate"), QStringLiteral("<0 shown>"));
        // Another file and machine chosen meanwhile do not change what the card names.
        selectFoundMachine(UiHarness::machine(QStringLiteral("Annex"), QStringLiteral("10.0.0.8")));
        h->model->chooseFile(h->jobFile(QStringLiteral("other.nc")));
        Q_EMIT uploader->progress({Phase::Uploading, 500, 1000, 100});
        QCOMPARE(shown("transferSubject"),
                 QStringLiteral("Sending \u201Cpart.nc\u201D to Bench Mill"));
        QCOMPARE(shown("transferTitle"), QStringLiteral("Uploading"));
        QCOMPARE(shown("transferPercent"), QStringLiteral("50%"));
        QCOMPARE(find<QProgressBar>("transferBar")->value(),
                 find<QProgressBar>("transferBar")->maximum() / 2);
        QCOMPARE(shown("transferRate"), QStringLiteral("100 bytes/s"));
        QCOMPARE(shown("transferTimeLeft"), QStringLiteral("About 5 s left"));
        Q_EMIT uploader->progress(
            {Phase::Uploading, 600, 1000, std::numeric_limits<double>::quiet_NaN()});
        QCOMPARE(shown("transferRate") + shown("transferTimeLeft"),
                 QStringLiteral("<0 shown><0 shown>"));

        // The user's own cancel is no warning.
        QTest::mouseClick(cancel, Qt::LeftButton);
        QCOMPARE(uploader->cancelCalls, 1);
        Q_EMIT uploader->failed(UploadError::cancelled());
        QCOMPARE(shown("transferTitle"), QStringLiteral("Cancelled"));
        QCOMPARE(shown("transferBytes"), QStringLiteral("600 bytes of 1 kB"));
        QVERIFY(!cancel->isVisible());
        QVERIFY(!find("transferFailureIcon")->isVisible());
        QMessageBox* alert = errorAlert();
        QVERIFY(alert);
        QCOMPARE(alert->informativeText(), QStringLiteral("The upload was cancelled."));
        QCOMPARE(alert->icon(), QMessageBox::Information);
    }

    void aFailedUploadStaysFailedAfterItsAlert() {
        FakeUploader* uploader = startUpload(100'000'000);
        Q_EMIT uploader->progress({Phase::Uploading, 2'000'000, 100'000'000, 7'300'000});
        Q_EMIT uploader->failed(UploadError::timedOut());
        QMessageBox* alert = errorAlert();
        QVERIFY(alert);
        QCOMPARE(alert->icon(), QMessageBox::Warning);
        QTest::keyClick(alert, Qt::Key_Escape);
        QCOMPARE(h->model->errorMessage(), std::nullopt);
        QCOMPARE(shown("transferTitle"), QStringLiteral("Upload failed"));
        QCOMPARE(shown("transferFailure"), Error(UploadError::timedOut()).description());
        QCOMPARE(shown("transferSubject"), QStringLiteral("\u201Cpart.nc\u201D to Bench Mill"));
        QCOMPARE(shown("transferRate"), QStringLiteral("<0 shown>"));
        QVERIFY(find("transferFailureIcon")->isVisible());
        // The next upload starts clean.
        h->model->upload(true);
        Q_EMIT h->uploaders.last()->progress({Phase::Preparing, 0, 100'000'000, 0});
        QCOMPARE(shown("transferTitle"), QStringLiteral("Preparing"));
        QCOMPARE(shown("transferFailure"), QStringLiteral("<0 shown>"));
    }

    void completedTransferIsGreenAndFull() {
        FakeUploader* uploader = startUpload(4'700'000'000);
        Q_EMIT uploader->progress({Phase::Uploading, 2'400'000'000, 4'700'000'000, 48'000'000});
        QCOMPARE(shown("transferBytes"), QStringLiteral("2.4 GB of 4.7 GB"));
        auto* bar = find<QProgressBar>("transferBar");
        QVERIFY(bar->palette().color(QPalette::Highlight) != QColor(0x2B, 0xA8, 0x4A));
        Q_EMIT uploader->progress({Phase::Completed, 4'700'000'000, 4'700'000'000, 48'000'000});
        Q_EMIT uploader->finished();
        QCOMPARE(shown("transferTitle"), QStringLiteral("Upload complete"));
        QCOMPARE(shown("transferSubject"),
                 QStringLiteral("Sent \u201Cpart.nc\u201D to Bench Mill"));
        QCOMPARE(bar->value(), bar->maximum());
        QCOMPARE(bar->palette().color(QPalette::Highlight), QColor(0x2B, 0xA8, 0x4A));
        QVERIFY(find<QPushButton>("reviewButton")->isEnabled());
    }

    void longNamesElideAndNeverWidenTheWindow() {
        const QString longName = QString(96, QLatin1Char('n')) + QStringLiteral("-middle-") +
                                 QString(96, QLatin1Char('e'));
        selectFoundMachine(bench);
        h->model->chooseFile(h->jobFile(QStringLiteral("short.nc")));
        QApplication::processEvents();
        const int width = window->width();
        const int least = window->minimumSizeHint().width();
        const Machine machine = UiHarness::machine(longName, QStringLiteral("10.0.0.5"));
        selectFoundMachine(machine);
        h->model->chooseFile(h->jobFile(longName + QStringLiteral(".nc")));
        QApplication::processEvents();
        QCOMPARE(window->width(), width);
        QCOMPARE(window->minimumSizeHint().width(), least);
        for (const char* name : {"fileName", "destinationName"}) {
            auto* label = find<ElidedLabel>(name);
            QVERIFY2(label->text().contains(QChar(0x2026)) &&
                         label->text().size() < longName.size(),
                     name);
            QVERIFY2(label->toolTip().startsWith(longName), name);
        }
        // Copying takes the whole name, not what fits.
        find<ElidedLabel>("fileName")->setFocus();
        press(Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), longName + QStringLiteral(".nc"));
    }

    void recentFilesShowFiveRowsWithDividersBetween() {
        QList<JobFile> files;
        for (int i = 1; i <= 6; ++i) {
            files.append(h->jobFile(QStringLiteral("job%1.nc").arg(i), i * 1000));
            h->model->chooseFile(files.last());
        }
        auto* recent = find("recentFiles");
        QStringList kinds;
        QLayout* rows = recent->findChild<QPushButton*>(QStringLiteral("recentFileRow"))
                            ->parentWidget()
                            ->layout();
        for (int i = 0; i < rows->count(); ++i)
            kinds.append(rows->itemAt(i)->widget()->objectName());
        const QString row = QStringLiteral("recentFileRow"),
                      divider = QStringLiteral("recentDivider");
        QCOMPARE(kinds, (QStringList{row, divider, row, divider, row, divider, row, divider, row}));
        const QList<QPushButton*> buttons = recent->findChildren<QPushButton*>(row);
        QCOMPARE(buttons.first()->accessibleName(), QStringLiteral("job6.nc"));
        QTest::mouseClick(buttons[3], Qt::LeftButton);
        QTRY_COMPARE(h->model->selectedFile(), std::optional(files[2]));
    }

    void errorAlertPutsItsTitleAboveTheMessage() {
        h->model->setErrorMessage(QStringLiteral("Connection check failed: refused"));
        QMessageBox* alert = errorAlert();
        QVERIFY(alert);
        QCOMPARE(alert->windowTitle(), QStringLiteral("Tarnwick"));
        QCOMPARE(alert->text(), QStringLiteral("Tarnwick"));
        QCOMPARE(alert->informativeText(), QStringLiteral("Connection check failed: refused"));
        QCOMPARE(alert->icon(), QMessageBox::Warning);
        QCOMPARE(alert->buttons().size(), 1);
        QCOMPARE(alert->buttons().first()->text(), QStringLiteral("OK"));
        QTest::mouseClick(alert->buttons().first(), Qt::LeftButton);
        QCOMPARE(h->model->errorMessage(), std::nullopt);
        QTRY_VERIFY(!visibleWindow<QMessageBox>(QStringLiteral("errorAlert")));
        h->model->setErrorMessage(QString());
        QVERIFY((alert = errorAlert()));
        QCOMPARE(alert->informativeText(), QStringLiteral("Unknown error"));
    }

    void droppedFilesAreValidatedLikeChosenOnes() {
        sendDrop(window.get(), writeFile(h->dir, QStringLiteral("notes.txt"), "G0"));
        QCOMPARE(
            h->model->errorMessage(),
            std::optional(
                Error(JobFileError::unsupportedExtension(QStringLiteral("txt"))).description()));
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
        QCOMPARE(h->model->selectedFile()->url, upper);
    }

    void filePanelOffersOnlyJobFiles() {
        QTest::mouseClick(find<QPushButton>("chooseFileButton"), Qt::LeftButton);
        auto* panel = find<QFileDialog>("jobFilePanel");
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

    void theWholeRoadWorksWithKeysAlone() {
        Q_EMIT h->discoverer->scans.last()->machineFound(bench);
        Q_EMIT h->discoverer->scans.last()->finished();
        find("scanButton")->setFocus();
        QStringList order{focusName()};
        for (int i = 0; i < 3; ++i) {
            press(Qt::Key_Tab);
            order.append(focusName());
        }
        QCOMPARE(order, (QStringList{QStringLiteral("scanButton"), QStringLiteral("machineList"),
                                     QStringLiteral("enterAddressButton"),
                                     QStringLiteral("chooseFileButton")}));
        press(Qt::Key_Backtab);
        press(Qt::Key_Backtab);
        press(Qt::Key_Down);
        press(Qt::Key_Space);
        QCOMPARE(h->model->selectedMachine()->id(), bench.id());

        tabTo("enterAddressButton");
        press(Qt::Key_Space);
        QCOMPARE(focusName(), QStringLiteral("addressField"));
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("10.0.0.9"));
        press(Qt::Key_Return);
        QCOMPARE(h->model->selectedMachine()->id(), QStringLiteral("10.0.0.9:2222"));

        const JobFile file = h->jobFile(QStringLiteral("keys.nc"));
        h->model->persistence().recordUpload(UploadRecord{QStringLiteral("10.0.0.9:2222"),
                                                          file.id(), file.size,
                                                          QDateTime::currentDateTimeUtc()});
        tabTo("chooseFileButton");
        press(Qt::Key_Space);
        QTRY_VERIFY(QApplication::activeModalWidget() ||
                    visibleWindow<QFileDialog>(QStringLiteral("jobFilePanel")));
        QTRY_VERIFY(QApplication::focusWidget() &&
                    QApplication::focusWidget()->window()->objectName() ==
                        QStringLiteral("jobFilePanel"));
        QTest::keyClicks(QApplication::focusWidget(), file.url.toLocalFile());
        press(Qt::Key_Return);
        QTRY_COMPARE(h->model->selectedFile(), std::optional(file));

        returnToWindow();
        QCOMPARE(focusName(), QStringLiteral("reviewButton"));
        press(Qt::Key_Space);
        UploadConfirmationView* sheet = nullptr;
        QTRY_VERIFY(
            (sheet = visibleWindow<UploadConfirmationView>(QStringLiteral("uploadConfirmation"))));
        QTRY_VERIFY(QApplication::focusWidget() && QApplication::focusWidget()->window() == sheet);
        for (int i = 0; i < 10 && !qobject_cast<ToggleSwitch*>(QApplication::focusWidget()); ++i)
            press(Qt::Key_Tab);
        press(Qt::Key_Space);
        press(Qt::Key_Return);
        QVERIFY(h->model->isUploading());
        Q_EMIT h->uploaders.last()->progress({Phase::Preparing, 0, file.size, 0});

        returnToWindow();
        tabTo("cancelUploadButton");
        press(Qt::Key_Space);
        QCOMPARE(h->uploaders.last()->cancelCalls, 1);
    }

    void everyControlHasAnAccessibleName() {
        startUpload();
        Q_EMIT h->uploaders.last()->progress({Phase::Uploading, 10, 1000, 5});
        QTest::mouseClick(find<QPushButton>("enterAddressButton"), Qt::LeftButton);
        for (QWidget* widget : window->findChildren<QWidget*>()) {
            if (!widget->isVisible() || !(widget->focusPolicy() & Qt::TabFocus))
                continue;
            QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(widget);
            QVERIFY2(accessible && !accessible->text(QAccessible::Name).isEmpty(),
                     qPrintable(widget->objectName()));
        }
    }

    void closingDuringAnUploadAsksAndCancelsFirst() {
        QVERIFY(window->close());
        showWindow();
        FakeUploader* uploader = startUpload();
        QVERIFY(!window->close());
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
};

QTEST_MAIN(ContentViewTest)
#include "ContentViewTest.moc"
