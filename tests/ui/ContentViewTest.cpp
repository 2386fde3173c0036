#include "UiHarness.h"
#include "app/UploadAdvice.h"
#include "app/UploadQueue.h"
#include "i18n/Translations.h"
#include "ui/ElidedLabel.h"
#include "ui/Formatting.h"
#include "ui/MachineListModel.h"
#include "ui/RecentFilesModel.h"
#include "ui/StatusBadge.h"
#include "ui/ToggleSwitch.h"
#include "ui/UploadConfirmationView.h"

#include <QAccessible>
#include <QClipboard>
#include <QFileDialog>
#include <QLayout>
#include <QLineEdit>
#include <QListView>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QToolButton>

#include <limits>

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace tarnwick::ui;
using namespace Qt::StringLiterals;

namespace {

using Status = Machine::ConnectionStatus;
using Phase = TransferProgress::Phase;

// Drags the files over the window and drops them there if it takes them; whether it did.
bool drop(QWidget* target, const QList<QUrl>& urls) {
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &enter);
    if (!enter.isAccepted())
        return false;
    QDropEvent dropped(QPointF(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &dropped);
    return true;
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

void addLanguageRows() {
    QTest::addColumn<QString>("language");
    QTest::newRow("English") << u"en_US"_s;
    QTest::newRow("German") << u"de_DE"_s;
}

// The application's font at 14 pt and the given language until the guard goes. True when the
// language has a catalogue.
auto largeFontIn(const QString& language, bool* translated) {
    const QFont usual = QApplication::font();
    QFont large = usual;
    large.setPointSizeF(14);
    QApplication::setFont(large);
    *translated = i18n::useLanguage(QLocale(language));
    return qScopeGuard([usual] {
        QApplication::setFont(usual);
        i18n::useLanguage(QLocale(QLocale::English, QLocale::UnitedStates));
    });
}

// The texts under `root` shown in less room than they ask for: labels lower than their text,
// buttons narrower or lower than theirs.
QStringList clippedTexts(const QWidget* root) {
    QStringList clipped;
    for (const QWidget* widget : root->findChildren<QWidget*>()) {
        const auto* label = qobject_cast<const QLabel*>(widget);
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        if ((!label && !button) || !widget->isVisibleTo(root->window()))
            continue;
        const int height = label && label->wordWrap() ? label->heightForWidth(label->width())
                                                      : widget->sizeHint().height();
        if (widget->height() < height || (button && button->width() < button->sizeHint().width()))
            clipped << (label ? label->text() : button->text());
    }
    return clipped;
}

} // namespace

class ContentViewTest : public QObject {
    Q_OBJECT

    std::unique_ptr<WindowHarness> h;
    const Machine bench = ModelHarness::machine(u"Bench Mill"_s, u"10.0.0.7"_s);
    const PlatformError refused{PlatformError::Domain::Network, 1, u"Connection refused"_s};

    template <typename T = QWidget>
    T* find(const char* name) {
        return child<T>(&h->window, QString::fromLatin1(name));
    }
    QString shown(const char* name) { return shownText(&h->window, QString::fromLatin1(name)); }
    MachineListModel* listModel() {
        return qobject_cast<MachineListModel*>(find<QListView>("machineList")->model());
    }

    FakeUploader* startUpload(qint64 size = 1000) {
        h->selectFound(bench);
        h->model->chooseFile(h->jobFile(u"part.nc"_s, size));
        h->model->prepareUpload();
        h->model->upload(false);
        return h->uploaders.last();
    }

    // What a window manager does when a dialog closes: the window below becomes active again.
    void returnToWindow() {
        QTRY_VERIFY(!QApplication::activeModalWidget());
        h->window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&h->window));
    }

    void click(const char* name) { QTest::mouseClick(find<QAbstractButton>(name), Qt::LeftButton); }

    // The badge and the selected machine's dot in the sidebar say the same.
    void expectStatus(Status status, int row = 0) {
        QCOMPARE(find<StatusBadge>("statusBadge")->status(), status);
        QCOMPARE(listModel()->index(row).data(MachineListModel::StatusRole).toInt(), int(status));
    }

    // The alert shows its title above the message, with an icon that fits the news.
    void expectAlert(QMessageBox::Icon icon, const QString& message) {
        QMessageBox* alert = errorAlert();
        QVERIFY(alert);
        QCOMPARE(alert->text(), u"Tarnwick"_s);
        QCOMPARE(alert->informativeText(), message);
        QCOMPARE(alert->icon(), icon);
    }

    static QMessageBox* errorAlert() { return waitForWindow<QMessageBox>(u"errorAlert"_s); }

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
    }

    void cleanup() { h.reset(); }

    void firstShowScansOnceAndShowsTheEmptyStates() {
        QCOMPARE(h->discoverer->scans.size(), 1);
        auto* scan = find<QToolButton>("scanButton");
        QCOMPARE(scan->toolTip(), u"Scan for Makera machines"_s);
        QVERIFY(scan->text().isEmpty() && !scan->isEnabled());
        QCOMPARE(scan->property("symbol").toString(), u"arrow.triangle.2.circlepath"_s);
        QCOMPARE(shown("emptyTitle"), u"Choose a destination"_s);
        QCOMPARE(shown("emptyDescription"),
                 u"Select a discovered machine or enter its IP address."_s);
        QCOMPARE(find<QPushButton>("chooseFileButton")->text(),
                 u"Choose an .nc, .cnc or .gcode file\u2026"_s);
        QCOMPARE(shown("recentFilesEmpty"), u"Files you choose will appear here."_s);
        QVERIFY(!find("transferSection")->isVisible() && !find("noMachinesHint")->isVisible());
        h->window.hide();
        h->window.show();
        QCOMPARE(h->discoverer->scans.size(), 1);
        // A scan that ends empty explains why.
        Q_EMIT h->discoverer->scans.last()->finished();
        QVERIFY(find<QLabel>("noMachinesHint")->text().contains(u"UDP port 3333"_s));
        QCOMPARE(scan->property("symbol").toString(), u"arrow.clockwise"_s);
        QTest::mouseClick(scan, Qt::LeftButton);
        QCOMPARE(h->discoverer->scans.size(), 2);
    }

    void aRestoredSelectionIsCheckedWhenTheWindowFirstAppears() {
        h.reset();
        Machine stored = bench;
        stored.status = Status::Connected;
        h = std::make_unique<WindowHarness>(stored);
        QCOMPARE(h->connector->checks.size(), 0);
        QVERIFY(h->show());
        QCOMPARE(h->connector->checks.size(), 1);
        expectStatus(Status::Connecting);
    }

    void clickingTheSelectedRowOrCheckAgainChecksAgain() {
        h->selectFound(bench);
        auto* list = find<QListView>("machineList");
        const QPoint firstRow = list->visualRect(list->model()->index(0, 0)).center();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, firstRow);
        QCOMPARE(h->connector->checks.size(), 2);
        QVERIFY(!find<QPushButton>("checkAgainButton")->isEnabled());
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, firstRow);
        QCOMPARE(h->connector->checks.size(), 2);
        Q_EMIT h->connector->checks.last()->finished();
        click("checkAgainButton");
        QCOMPARE(h->connector->checks.size(), 3);
        // A click on empty space leaves the selection and checks nothing.
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          QPoint(10, list->viewport()->height() - 4));
        QCOMPARE(list->selectionModel()->selectedRows(),
                 QModelIndexList{list->model()->index(0, 0)});
        QCOMPARE(h->connector->checks.size(), 3);
    }

    void theSidebarFollowsTheMachinesInPlace() {
        MachineListModel* rows = listModel();
        QSignalSpy resets(rows, &QAbstractItemModel::modelReset);
        QSignalSpy inserts(rows, &QAbstractItemModel::rowsInserted);
        FakeScan* scan = h->discoverer->scans.last();
        const Machine gamma = ModelHarness::machine(u"gamma"_s, u"10.0.0.3"_s);
        for (const Machine& machine :
             {gamma, ModelHarness::machine(u"Alpha"_s, u"10.0.0.9"_s, 2223),
              ModelHarness::machine(u"beta\n2"_s, u"10.0.0.9"_s)})
            Q_EMIT scan->machineFound(machine);
        h->model->selectMachine(gamma);
        Q_EMIT scan->machineFound(Machine{u"aardvark"_s, {}, u"10.0.0.3"_s, 2222, Status::Busy});
        QCOMPARE(resets.size(), 0);
        QCOMPARE(inserts.size(), 3);
        // Name order, a renamed machine stays in place, a line break shows as a symbol; the port
        // shows where it is not the usual one or the address is shared.
        const QList<std::tuple<QString, QString, Status>> expected{
            {u"Alpha"_s, u"10.0.0.9:2223"_s, Status::Discovered},
            {u"beta\u240A2"_s, u"10.0.0.9:2222"_s, Status::Discovered},
            {u"aardvark"_s, u"10.0.0.3"_s, Status::Connecting}};
        QCOMPARE(rows->rowCount(), expected.size());
        for (int row = 0; row < rows->rowCount(); ++row) {
            const auto& [name, address, status] = expected[row];
            QCOMPARE(rows->index(row).data().toString(), name);
            QCOMPARE(rows->index(row).data(MachineListModel::AddressRole).toString(), address);
            QCOMPARE(rows->index(row).data(MachineListModel::StatusRole).toInt(), int(status));
        }
        // The selected machine's dot says what its badge says; its announcement says busy.
        QVERIFY(rows->index(2).data(MachineListModel::BusyRole).toBool());
        expectStatus(Status::Connecting, 2);
        QCOMPARE(find<QListView>("machineList")->selectionModel()->selectedRows(),
                 QModelIndexList{rows->index(2)});
    }

    void aScanListsAtMostTheLimitAndSaysSo() {
        auto* note = find<QLabel>("listLimitNote");
        QVERIFY(!note->isVisible());
        for (int i = 0; i <= AppModel::maximumListedMachines; ++i)
            Q_EMIT h->discoverer->scans.last()->machineFound(ModelHarness::machine(
                u"Machine %1"_s.arg(i), u"10.0.%1.%2"_s.arg(i / 200).arg(i % 200)));
        QCOMPARE(listModel()->rowCount(), AppModel::maximumListedMachines);
        QCOMPARE(shown("listLimitNote"),
                 u"Stopped listing more: the scan heard more than 256 machines."_s);
        h->model->discover();
        QVERIFY(!note->isVisible());
    }

    void manualEntryAddsOrExplains() {
        auto* address = find<QLineEdit>("addressField");
        auto* port = find<QLineEdit>("portField");
        click("enterAddressButton");
        QTest::keyClick(address, Qt::Key_Escape);
        QVERIFY(!address->isVisible() && find("enterAddressButton")->hasFocus());
        click("enterAddressButton");
        QCOMPARE(address->placeholderText() + port->placeholderText() + port->text(),
                 u"IP addressPort2222"_s);
        QVERIFY(!find<QPushButton>("addButton")->isEnabled());
        QTest::keyClicks(address, u"10.0.0.9"_s);
        // One rejected port: the port field re-judges "Add" as it changes.
        port->setText(u"12a"_s);
        QVERIFY(!find<QPushButton>("addButton")->isEnabled());
        port->setText(u"8080"_s);
        click("addButton");
        QCOMPARE(h->model->selectedMachine()->id(), u"10.0.0.9:8080"_s);
        QVERIFY(!address->isVisible());
        // The fields keep their text; a rejected entry shows the one message.
        click("enterAddressButton");
        QCOMPARE(address->text(), u"10.0.0.9"_s);
        address->setText(u"192.168.001.5"_s);
        click("addButton");
        expectAlert(QMessageBox::Warning, u"Enter a valid IPv4 address and port."_s);
        // The alert's one button clears the message; an empty message still says something.
        QMessageBox* alert = errorAlert();
        QCOMPARE(alert->windowTitle(), u"Tarnwick"_s);
        QCOMPARE(alert->buttons().size(), 1);
        QCOMPARE(alert->buttons().first()->text(), u"OK"_s);
        QTest::mouseClick(alert->buttons().first(), Qt::LeftButton);
        QCOMPARE(h->model->errorMessage(), std::nullopt);
        QTRY_VERIFY(!visibleWindow<QMessageBox>(u"errorAlert"_s));
        h->model->setErrorMessage(QString());
        expectAlert(QMessageBox::Warning, u"Unknown error"_s);
        click("cancelEntryButton");
        QVERIFY(!address->isVisible() && find("enterAddressButton")->isVisible());
    }

    // Review opens the sheet; Cancel closes it without a call on the model, Return uploads
    // without a duplicate.
    void reviewNeedsAMachineAndAFileAndOpensTheSheet() {
        auto* review = find<QPushButton>("reviewButton");
        const JobFile file = h->jobFile(u"part.nc"_s, 1'234'567);
        h->model->chooseFile(file);
        QVERIFY(review->isVisible() && !review->isEnabled() && review->isDefault());
        QCOMPARE(shown("fileName") + u" "_s + shown("fileSize"), u"part.nc 1.2 MB"_s);
        QCOMPARE(shown("remoteFolderNote"), u"Sent uncompressed to /sd/gcodes on the machine"_s);
        QCOMPARE(find<QPushButton>("chooseAnotherButton")->text(), u"Choose Another\u2026"_s);
        h->selectFound(bench);
        QCOMPARE(shown("destinationName") + shown("destinationSubtitle"),
                 bench.name + machineSubtitle(bench));
        QTest::mouseClick(review, Qt::LeftButton);
        UploadConfirmationView* sheet =
            waitForWindow<UploadConfirmationView>(u"uploadConfirmation"_s);
        QVERIFY(sheet);
        QTest::mouseClick(child<QPushButton>(sheet, u"cancelButton"_s), Qt::LeftButton);
        QVERIFY(!h->model->showConfirmation());
        QVERIFY(closed());
        QCOMPARE(h->uploaders.made.size(), 0);
        sheet = present();
        QCOMPARE(sheet->size(), QSize(520, 350));
        QCOMPARE(sheet->windowModality(), Qt::WindowModal);
        QCOMPARE(shownText(sheet, u"sheetTitle"_s), u"Confirm upload"_s);
        QCOMPARE(shownText(sheet, u"sheetNote"_s),
                 u"This sends the file only. It will not start a job."_s);
        const QList<std::pair<const char*, QString>> values{
            {"destinationValue", u"Bench Mill"_s},
            {"addressValue", u"10.0.0.7:2222"_s},
            {"fileNameValue", u"part.nc"_s},
            {"sizeValue", u"1.2 MB"_s},
            {"remotePathValue", u"/sd/gcodes/part.nc"_s}};
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
        QVERIFY(!review->isEnabled());
    }

    void transferCardShowsEachPhaseAndWhatItSends() {
        FakeUploader* uploader = startUpload();
        Q_EMIT uploader->progress({Phase::Preparing, 0, 1000, 0});
        QVERIFY(find("transferSection")->isVisible());
        QCOMPARE(shown("transferTitle") + shown("transferPercent"), u"Preparing0%"_s);
        QCOMPARE(shown("transferBytes"), u"0 bytes of 1 kB"_s);
        QCOMPARE(shown("transferRate"), u"<0 shown>"_s);
        // Another file and machine chosen meanwhile do not change what the card names.
        h->selectFound(ModelHarness::machine(u"Annex"_s, u"10.0.0.8"_s));
        h->model->chooseFile(h->jobFile(u"other.nc"_s));
        Q_EMIT uploader->progress({Phase::Uploading, 500, 1000, 100});
        QCOMPARE(shown("transferSubject"), u"Sending \u201Cpart.nc\u201D to Bench Mill"_s);
        QCOMPARE(shown("transferTitle") + shown("transferPercent"), u"Uploading50%"_s);
        QCOMPARE(find<QProgressBar>("transferBar")->value(),
                 find<QProgressBar>("transferBar")->maximum() / 2);
        QCOMPARE(shown("transferRate") + shown("transferTimeLeft"), u"100 bytes/sAbout 5 s left"_s);
        Q_EMIT uploader->progress(
            {Phase::Uploading, 600, 1000, std::numeric_limits<double>::quiet_NaN()});
        QCOMPARE(shown("transferRate") + shown("transferTimeLeft"), u"<0 shown><0 shown>"_s);
        // Every control within reach has a name for assistive technology.
        click("enterAddressButton");
        for (QWidget* widget : h->window.findChildren<QWidget*>()) {
            if (!widget->isVisible() || !(widget->focusPolicy() & Qt::TabFocus))
                continue;
            QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(widget);
            QVERIFY2(accessible && !accessible->text(QAccessible::Name).isEmpty(),
                     qPrintable(widget->objectName()));
        }
        // The user's own cancel, which the keyboard test presses, is no warning.
        Q_EMIT uploader->failed(UploadError::cancelled());
        QCOMPARE(shown("transferTitle") + shown("transferBytes"), u"Cancelled600 bytes of 1 kB"_s);
        QVERIFY(!find("cancelUploadButton")->isVisible() &&
                !find("transferFailureIcon")->isVisible());
        expectAlert(QMessageBox::Information, u"The upload was cancelled."_s);
    }

    void aFailedUploadStaysFailedAndLeavesNoConnectedBadge() {
        FakeUploader* uploader = startUpload(100'000'000);
        expectStatus(Status::Connected);
        Q_EMIT uploader->progress({Phase::Uploading, 2'000'000, 100'000'000, 7'300'000});
        Q_EMIT uploader->failed(refused);
        // Beneath the failure, what happened and what to try.
        expectAlert(QMessageBox::Warning, u"Connection refused\n\n"_s + uploadAdvice(refused));
        QCOMPARE(h->connector->checks.size(), 2);
        Q_EMIT h->connector->checks.last()->failed(refused);
        expectStatus(Status::Unavailable);
        // The upload's own failure is what the user reads, and the card keeps it.
        QCOMPARE(h->model->errorMessage(), std::optional(u"Connection refused"_s));
        QTest::keyClick(errorAlert(), Qt::Key_Escape);
        QCOMPARE(h->model->errorMessage(), std::nullopt);
        QCOMPARE(shown("transferTitle") + shown("transferFailure"),
                 u"Upload failedConnection refused"_s);
        QCOMPARE(shown("transferSubject"), u"\u201Cpart.nc\u201D to Bench Mill"_s);
        QCOMPARE(shown("transferRate"), u"<0 shown>"_s);
        QVERIFY(find("transferFailureIcon")->isVisible());
        // The next upload starts clean, and its end is green and full.
        h->model->upload(true);
        FakeUploader* next = h->uploaders.last();
        Q_EMIT next->progress({Phase::Preparing, 0, 100'000'000, 0});
        QCOMPARE(shown("transferTitle") + shown("transferFailure"), u"Preparing<0 shown>"_s);
        Q_EMIT next->progress({Phase::Completed, 100'000'000, 100'000'000, 0});
        Q_EMIT next->finished();
        QTRY_COMPARE(shown("transferTitle") + u" / "_s + shown("transferSubject"),
                     u"Upload complete / Sent \u201Cpart.nc\u201D to Bench Mill"_s);
        auto* bar = find<QProgressBar>("transferBar");
        QCOMPARE(bar->value(), bar->maximum());
        QCOMPARE(bar->palette().color(QPalette::Highlight), QColor(0x2B, 0xA8, 0x4A));
    }

    void longNamesElideAndNeverWidenTheWindow() {
        const QString longName = QString(96, u'n') + u"-middle-"_s + QString(96, u'e');
        h->selectFound(bench);
        h->model->chooseFile(h->jobFile(u"short.nc"_s));
        QApplication::processEvents();
        const QSize size = h->window.size();
        const int least = h->window.minimumSizeHint().width();
        h->selectFound(ModelHarness::machine(longName, u"10.0.0.5"_s));
        h->model->chooseFile(h->jobFile(longName + u".nc"_s));
        QApplication::processEvents();
        QCOMPARE(h->window.size(), size);
        QCOMPARE(h->window.minimumSizeHint().width(), least);
        for (const char* name : {"fileName", "destinationName"}) {
            auto* label = find<ElidedLabel>(name);
            QVERIFY2(label->text().contains(u'\u2026') && label->text().size() < longName.size(),
                     name);
            QVERIFY2(label->toolTip().startsWith(longName), name);
        }
        // Copying takes the whole name, not what fits.
        find<ElidedLabel>("fileName")->setFocus();
        press(Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), longName + u".nc"_s);
        // The sheet keeps its width; its remote path copies whole.
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
        QCOMPARE(QGuiApplication::clipboard()->text(), u"/sd/gcodes/"_s + longName + u".nc"_s);
    }

    void recentFilesShowTheFiveNewestAndChooseAgain() {
        QList<JobFile> files;
        for (int i = 1; i <= 6; ++i) {
            files.append(h->jobFile(u"job%1.nc"_s.arg(i), i * 1000));
            h->model->chooseFile(files.last());
        }
        auto* list = find<QListView>("recentFileList");
        QStringList rows;
        for (int row = 0; row < list->model()->rowCount(); ++row)
            rows << list->model()->index(row, 0).data().toString() + u' ' +
                        list->model()->index(row, 0).data(RecentFilesModel::SizeRole).toString();
        QCOMPARE(rows, (QStringList{u"job6.nc 6 kB"_s, u"job5.nc 5 kB"_s, u"job4.nc 4 kB"_s,
                                    u"job3.nc 3 kB"_s, u"job2.nc 2 kB"_s}));
        QCOMPARE(list->height(), 5 * list->sizeHintForRow(0));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualRect(list->model()->index(3, 0)).center());
        QTRY_COMPARE(h->model->selectedFile(), std::optional(files[2]));
        QCOMPARE(list->model()->index(0, 0).data().toString(), u"job3.nc"_s);
    }

    // Chosen through the card's panel: a job file that arrives complete in the folder becomes
    // the chosen file, one that was there before does not, and one click stops following.
    void aFileArrivingInTheFollowedFolderBecomesTheChosenFile() {
        QTemporaryDir folder;
        QFile old(writeFile(folder, u"old.nc"_s, "G0").toLocalFile());
        QVERIFY(old.open(QIODevice::ReadWrite) &&
                old.setFileTime(QDateTime::currentDateTime().addSecs(-60),
                                QFileDevice::FileModificationTime));
        old.close();
        child<QPushButton>(&h->window, u"followFolderButton"_s)->click();
        auto* panel = waitForWindow<QFileDialog>(u"followFolderPanel"_s);
        QVERIFY(panel);
        panel->selectFile(folder.path());
        QMetaObject::invokeMethod(panel, &QDialog::accept);
        const QString shown = QDir::toNativeSeparators(QDir(folder.path()).absolutePath());
        QCOMPARE(shownText(&h->window, u"followedFolderText"_s),
                 u"Following %1. New job files in it become the chosen file."_s.arg(shown));

        writeFile(folder, u"part.nc"_s, "G1 X1\n");
        QTRY_VERIFY_WITH_TIMEOUT(h->model->selectedFile(), 15000);
        QCOMPARE(h->model->selectedFile()->fileName(), u"part.nc"_s);
        QCOMPARE(shownText(&h->window, u"followedFolderText"_s),
                 u"Following %1. Last arrived: part.nc."_s.arg(shown));
        QCOMPARE(AppPersistence(temporaryStore(h->dir)).followedFolder(),
                 QDir(folder.path()).absolutePath());

        child<QPushButton>(&h->window, u"stopFollowingButton"_s)->click();
        QCOMPARE(shownText(&h->window, u"followedFolderText"_s), u"<0 shown>"_s);
        QCOMPARE(AppPersistence(temporaryStore(h->dir)).followedFolder(), QString());
    }

    void droppedFilesAreValidatedLikeChosenOnes() {
        // Several files at once are all chosen; the first is the one shown.
        const QList<QUrl> two{writeFile(h->dir, u"a.nc"_s, "G0"),
                              writeFile(h->dir, u"b.nc"_s, "G0")};
        QVERIFY(drop(&h->window, two));
        QCOMPARE(h->model->selectedFiles().size(), 2);
        QCOMPARE(h->model->selectedFile()->url, two.first());
        QVERIFY(drop(&h->window, {writeFile(h->dir, u"notes.txt"_s, "G0")}));
        QCOMPARE(h->model->errorMessage(),
                 std::optional(Error(JobFileError::unsupportedExtension(u"txt"_s)).description()));
        const QUrl upper = writeFile(h->dir, u"PART.GCODE"_s, "G1 X1");
        QVERIFY(drop(&h->window, {upper}));
        QCOMPARE(h->model->selectedFile()->url, upper);
#ifdef Q_OS_UNIX
        QVERIFY(drop(&h->window, {writeFile(h->dir, u"part\rM3.nc"_s, "G0")}));
        QCOMPARE(h->model->errorMessage(),
                 std::optional(u"The file name “part\u240DM3.nc” contains a control character, "
                               "which the machine cannot take. Rename the file."_s));
        QCOMPARE(h->model->selectedFile()->url, upper);
#endif
    }

    void theWholeRoadWorksWithKeysAlone() {
        Q_EMIT h->discoverer->scans.last()->machineFound(bench);
        Q_EMIT h->discoverer->scans.last()->finished();
        find("scanButton")->setFocus();
        QStringList order{focusName()};
        for (int i = 0; i < 3; ++i, order.append(focusName()))
            press(Qt::Key_Tab);
        QCOMPARE(order, (QStringList{u"scanButton"_s, u"machineList"_s, u"enterAddressButton"_s,
                                     u"chooseFileButton"_s}));
        press(Qt::Key_Backtab);
        press(Qt::Key_Backtab);
        press(Qt::Key_Down);
        press(Qt::Key_Space);
        QCOMPARE(h->model->selectedMachine()->id(), bench.id());

        const JobFile file = h->jobFile(u"keys.nc"_s);
        h->model->persistence().recordUpload(UploadRecord{u"10.0.0.9:2222"_s, file.id(), file.size,
                                                          QDateTime::currentDateTimeUtc()});
        tabTo("chooseFileButton");
        press(Qt::Key_Space);
        QTRY_COMPARE(QApplication::focusWidget()->window()->objectName(), u"jobFilePanel"_s);
        // The panel offers existing job files only, one or several.
        auto* panel = find<QFileDialog>("jobFilePanel");
        QCOMPARE(panel->windowTitle(), u"Choose a Makera job file"_s);
        QCOMPARE(panel->labelText(QFileDialog::Accept), u"Choose"_s);
        QCOMPARE(panel->fileMode(), QFileDialog::ExistingFiles);
        QCOMPARE(panel->nameFilters(), QStringList{u"Makera job files (*.nc *.cnc *.gcode)"_s});
        QTest::keyClicks(QApplication::focusWidget(), file.url.toLocalFile());
        press(Qt::Key_Return);
        QTRY_COMPARE(h->model->selectedFile(), std::optional(file));

        returnToWindow();
        QCOMPARE(focusName(), u"reviewButton"_s);
        // Return in the address field adds the machine; it does not reach the review.
        tabTo("enterAddressButton");
        press(Qt::Key_Space);
        QTest::keyClicks(QApplication::focusWidget(), u"10.0.0.9"_s);
        press(Qt::Key_Return);
        QCOMPARE(h->model->selectedMachine()->id(), u"10.0.0.9:2222"_s);
        QVERIFY(!h->model->showConfirmation());
        // Elsewhere Return is the window's default: "Review Upload".
        press(Qt::Key_Return);
        auto* sheet = waitForWindow<UploadConfirmationView>(u"uploadConfirmation"_s);
        QVERIFY(sheet);
        QTRY_COMPARE(QApplication::focusWidget()->window(), sheet);
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

    void closingDuringAnUploadAsksAndCancelsFirst() {
        QVERIFY(h->window.close());
        QVERIFY(h->show());
        FakeUploader* uploader = startUpload();
        QVERIFY(!h->window.close());
        QMessageBox* question = waitForWindow<QMessageBox>(u"stopUploadQuestion"_s);
        QVERIFY(question);
        QCOMPARE(uploader->cancelCalls, 0);
        QTest::mouseClick(child<QPushButton>(question, u"stopAndQuitButton"_s), Qt::LeftButton);
        QCOMPARE(uploader->cancelCalls, 1);
        QVERIFY(h->window.isVisible());
        Q_EMIT uploader->failed(UploadError::cancelled());
        QTRY_VERIFY(!h->window.isVisible());
    }

    // Escape closes it without a call on the model, and each presentation starts switched off.
    void aRecentDuplicateNeedsUploadItAgain() {
        const JobFile file = h->jobFile(u"bracket.gcode"_s, 48'000);
        h->selectFound(bench);
        h->model->chooseFile(file);
        h->model->persistence().recordUpload(UploadRecord{
            bench.id(), file.id(), file.size, QDateTime::currentDateTimeUtc().addSecs(-86'000)});
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

    // Ctrl-click adds a machine and keeps the first as the selection; every file goes to every
    // machine, one per machine at a time. Each chosen file and each pair has its own button, one
    // click or key press away; Cancel All tells each machine that is sending.
    void severalFilesAndMachinesRunAsOneQueue() {
        const Machine shop = ModelHarness::machine(u"Shop Mill"_s, u"10.0.0.8"_s);
        Q_EMIT h->discoverer->scans.last()->machineFound(bench);
        Q_EMIT h->discoverer->scans.last()->machineFound(shop);
        auto* machines = find<QListView>("machineList");
        const auto rowCentre = [&](int row) {
            return machines->visualRect(machines->model()->index(row, 0)).center();
        };
        QTest::mouseClick(machines->viewport(), Qt::LeftButton, {}, rowCentre(1));
        QTest::mouseClick(machines->viewport(), Qt::LeftButton, Qt::ControlModifier, rowCentre(0));
        QCOMPARE(h->model->selectedMachine()->id(), shop.id());
        QCOMPARE(h->model->selectedMachines().size(), 2);
        QCOMPARE(h->window.findChildren<QWidget*>(u"selectedMachineRow"_s).size(), 2);

        const JobFile rough = h->jobFile(u"rough.nc"_s), finish = h->jobFile(u"finish.nc"_s);
        h->model->addFiles({rough, h->jobFile(u"spare.nc"_s), finish});
        auto* chosen = find<QListView>("chosenFileList");
        const auto rowButton = [](QListView* list, int row) {
            return qobject_cast<QPushButton*>(list->indexWidget(list->model()->index(row, 0)));
        };
        QCOMPARE(rowButton(chosen, 1)->accessibleName(), u"Remove spare.nc from the upload"_s);
        QTest::mouseClick(rowButton(chosen, 1), Qt::LeftButton);
        QCOMPARE(h->model->selectedFiles(), (QList<JobFile>{rough, finish}));
        QCOMPARE(QApplication::focusWidget(), chosen);
        press(Qt::Key_Up);
        QCOMPARE(QApplication::focusWidget(), chosen);
        QCOMPARE(h->model->selectedFile(), rough);
        h->model->persistence().recordUpload(
            UploadRecord{bench.id(), finish.id(), finish.size, QDateTime::currentDateTimeUtc()});
        UploadConfirmationView* sheet = present();
        auto* pairs = child<QListView>(sheet, u"plannedUploads"_s);
        QVERIFY(pairs->isVisible() && !child<QWidget>(sheet, u"sheetDetails"_s)->isVisible());
        QCOMPARE(pairs->model()->index(3, 0).data().toString(),
                 u"finish.nc → Bench Mill (10.0.0.7:2222) · /sd/gcodes/finish.nc · sent in the "
                 u"last 24 hours"_s);
        QTest::mouseClick(child<ToggleSwitch>(sheet, u"uploadAgainSwitch"_s), Qt::LeftButton);
        QTest::mouseClick(child<QPushButton>(sheet, u"uploadButton"_s), Qt::LeftButton);

        QTRY_VERIFY(find<QWidget>("queueSection")->isVisible());
        auto* queue = find<QListView>("queueList");
        QCOMPARE(queue->model()->rowCount(), 4);
        QVERIFY(!rowButton(chosen, 0)->isVisibleTo(chosen));
        QTRY_COMPARE(h->uploaders.made.size(), 2);
        QCOMPARE(rowButton(queue, 0)->accessibleName(),
                 u"Cancel the upload of rough.nc to Shop Mill"_s);
        QTest::mouseClick(rowButton(queue, 0), Qt::LeftButton);
        QCOMPARE(h->uploaders.made.at(0)->cancelCalls, 1);
        Q_EMIT h->uploaders.made.at(0)->failed(UploadError::cancelled());
        QTRY_COMPARE(h->uploaders.made.size(), 3);
        QCOMPARE(rowButton(queue, 0)->text(), u"Retry"_s);
        returnToWindow();
        tabTo("queueListButton");
        QCOMPARE(QApplication::focusWidget(), rowButton(queue, 0));
        press(Qt::Key_Space);
        QCOMPARE(h->model->uploadQueue().pairs().at(0).state, QueuedUpload::State::Waiting);
        QCOMPARE(rowButton(queue, 0)->text(), u"Cancel"_s);

        QTest::mouseClick(find<QPushButton>("cancelAllButton"), Qt::LeftButton);
        for (FakeUploader* uploader : h->uploaders.made) {
            if (uploader && uploader->cancelCalls > 0)
                Q_EMIT uploader->failed(UploadError::cancelled());
        }
        QTRY_VERIFY(!h->model->isUploading());
        QCOMPARE(h->uploaders.made.size(), 3);
        QCOMPARE(shownText(&h->window, u"queueSummary"_s), u"0 of 4 sent; 4 cancelled"_s);
        QCOMPARE(rowButton(queue, 3)->text(), u"Retry"_s);
    }

    // The badge says what the check found, the card and the sheet what the machine announced.
    // The sheet's sizes hold at the default font; at 14 pt it grows instead of clipping a text,
    // and so do the queue and the lists of files and machines.
    void aBusyMachineSaysSoAndLargeFontsFit_data() {
        addLanguageRows();
    }
    void aBusyMachineSaysSoAndLargeFontsFit() {
        QFETCH(QString, language);
        bool german = false;
        const auto restore = largeFontIn(language, &german);
        QCOMPARE(german, language == u"de_DE"_s);
        h->selectFound(ModelHarness::machine(u"Bench Mill"_s, u"10.0.0.7"_s, 2222, Status::Busy));
        const JobFile file = h->jobFile(u"part.nc"_s);
        h->model->chooseFile(file);
        h->model->persistence().recordUpload(
            {bench.id(), file.id(), file.size, QDateTime::currentDateTimeUtc()});
        UploadConfirmationView* sheet = present();
        QVERIFY(sheet->width() >= 520 && sheet->height() >= 430);
        QCOMPARE(clippedTexts(sheet), QStringList());
        // The window was made before the language changed, the sheet after.
        const QString busy = german ? u"Die Maschine hat gemeldet, dass sie belegt ist."_s
                                    : u"The machine reported that it is busy."_s;
        expectStatus(Status::Connected);
        QTRY_COMPARE(shown("destinationBusy") + u'|' + shownText(sheet, u"sheetBusy"_s),
                     busy + u'|' + busy);
        Q_EMIT h->discoverer->scans.last()->machineFound(bench);
        QCOMPARE(shown("destinationBusy") + shownText(sheet, u"sheetBusy"_s),
                 u"<0 shown><0 shown>"_s);
        sheet->reject();

        // The queue, the chosen files and the chosen machines give every text its room, and each
        // row's button lies within its row.
        const Machine shop = ModelHarness::machine(u"Shop Mill"_s, u"10.0.0.8"_s);
        Q_EMIT h->discoverer->scans.last()->machineFound(shop);
        h->model->selectMachines({bench, shop});
        h->model->addFiles({h->jobFile(u"roughing.nc"_s)});
        // Before the upload the files have their Remove buttons; during it the pairs theirs.
        const auto checkFits = [&] {
            for (const char* name : {"queueSection", "chosenFiles", "destinationSection"})
                QCOMPARE(clippedTexts(find(name)), QStringList());
            for (const char* name : {"queueList", "chosenFileList"}) {
                auto* list = find<QListView>(name);
                for (int row = 0; row < list->model()->rowCount(); ++row) {
                    const QModelIndex index = list->model()->index(row, 0);
                    const QWidget* button = list->indexWidget(index);
                    QVERIFY2(!button || button->isHidden() ||
                                 list->visualRect(index).contains(button->geometry()),
                             name);
                }
            }
        };
        checkFits();
        h->model->upload(true);
        QTRY_COMPARE(h->uploaders.made.size(), 2);
        Q_EMIT h->uploaders.made.at(0)->failed(UploadError::timedOut());
        QTRY_COMPARE(h->uploaders.made.size(), 3);
        checkFits();
    }

    void absentValuesAreDashes() {
        ModelHarness empty;
        UploadConfirmationView sheet(*empty.model);
        for (const char* name :
             {"destinationValue", "addressValue", "fileNameValue", "sizeValue", "remotePathValue"})
            QCOMPARE(value(&sheet, name), u"\u2014"_s);
    }
};

QTEST_MAIN(ContentViewTest)
#include "ContentViewTest.moc"
