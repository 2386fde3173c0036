#include "app/AppModel.h"

#include "app/SettingsStore.h"
#include "support/ModelHarness.h"

#include <QLockFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <cstdio>

using namespace tarnwick;
using namespace tarnwick::testing;
using namespace Qt::StringLiterals;
using Status = Machine::ConnectionStatus;
using Phase = TransferProgress::Phase;

namespace {

// Makes this executable the other program that holds a lock file for two seconds.
constexpr char holdLockVariable[] = "TARNWICK_TEST_HOLD_LOCK";

QStringList names(const QList<Machine>& machines) {
    QStringList result;
    for (const Machine& m : machines)
        result << m.name + u' ' + rawValue(m.status);
    return result;
}

} // namespace

class AppModelTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ModelHarness> h;
    const QDateTime m_now = QDateTime(QDate(2026, 11, 23), QTime(12, 0), Qt::UTC);

    void announce(const QString& name, const QString& address, Status status = Status::Discovered) {
        Q_EMIT h->discoverer->scans.last()->machineFound(
            ModelHarness::machine(name, address, 2222, status));
    }

    // The model with a machine selected and reachable, and a file chosen.
    AppModel* readyModel(const JobFile& file) {
        h->model->addManualMachine(u"127.0.0.1"_s, 2222);
        Q_EMIT h->connector->checks.last()->finished();
        h->model->chooseFile(file);
        return h->model.get();
    }

private Q_SLOTS:
    void init() {
        h = std::make_unique<ModelHarness>();
        h->model->setClock([this] { return m_now; });
    }

    void scanMergesSortsAndStartsFromTheSelection() {
        AppModel* model = h->model.get();
        model->addManualMachine(u"10.0.0.9"_s, 2222);
        QSignalSpy discovering(model, &AppModel::isDiscoveringChanged);
        // The rows each change touched, as the sidebar hears of them.
        QStringList rows;
        connect(model, &AppModel::machineInserted, this,
                [&](int row) { rows << u"+%1"_s.arg(row); });
        connect(model, &AppModel::machineChanged, this,
                [&](int row) { rows << u"~%1"_s.arg(row); });
        connect(model, &AppModel::machinesReset, this, [&] { rows << u"reset"_s; });
        model->discover();
        QCOMPARE(h->discoverer->durations,
                 QList<std::chrono::milliseconds>{std::chrono::seconds(3)});
        announce(u"gamma"_s, u"10.0.0.3"_s);
        announce(u"Alpha"_s, u"10.0.0.1"_s);
        announce(u"beta"_s, u"10.0.0.2"_s);
        // A re-announced machine replaces its entry in place, status included, without re-sorting.
        announce(u"zulu"_s, u"10.0.0.1"_s, Status::Busy);
        QCOMPARE(names(model->machines()),
                 QStringList({u"zulu busy"_s, u"beta discovered"_s, u"gamma discovered"_s,
                              u"Manual machine connecting"_s}));
        // The next new machine sorts the whole list again, the renamed one included.
        announce(u"delta"_s, u"10.0.0.4"_s);
        QCOMPARE(names(model->machines()),
                 QStringList({u"beta discovered"_s, u"delta discovered"_s, u"gamma discovered"_s,
                              u"Manual machine connecting"_s, u"zulu busy"_s}));
        QCOMPARE(rows, QStringList({u"+0"_s, u"+0"_s, u"+1"_s, u"~0"_s, u"reset"_s}));
        Q_EMIT h->discoverer->scans.last()->finished();
        QCOMPARE(discovering.count(), 2);

        // Only the selection survives into the next scan; its re-announcement keeps the selection.
        // The other selected machines stay selected when the scan hears them again.
        model->selectMachines(
            {model->machines().at(0), model->machines().at(1), model->machines().at(3)});
        model->discover();
        announce(u"Renamed"_s, u"10.0.0.2"_s);
        QCOMPARE(names(model->machines()), QStringList{u"Renamed discovered"_s});
        QCOMPARE(model->selectedMachine()->name, u"beta"_s);
        announce(u"delta"_s, u"10.0.0.4"_s);
        Q_EMIT h->discoverer->scans.last()->finished();
        QCOMPARE(names(model->selectedMachines()),
                 QStringList({u"beta connecting"_s, u"delta connecting"_s}));
    }

    void scanFailuresAndRescans() {
        AppModel* model = h->model.get();
        model->discover();
        QPointer<FakeScan> first = h->discoverer->scans.last();
        announce(u"Mill"_s, u"10.0.0.1"_s);
        const Error inUse = PlatformError{PlatformError::Domain::Network, 8, u"In use"_s};
        Q_EMIT first->failed(inUse);
        QCOMPARE(model->errorMessage(), u"Discovery failed: In use"_s);
        QCOMPARE(model->lastFailure(), inUse);
        QCOMPARE(model->machines().size(), 1);
        QVERIFY(!model->isDiscovering());

        // A new scan ends the previous one silently; a cancelled scan shows nothing.
        model->discover();
        QVERIFY(!model->errorMessage() && !model->lastFailure());
        model->discover();
        Q_EMIT h->discoverer->scans.at(1)->machineFound(
            ModelHarness::machine(u"Stale"_s, u"10.0.0.7"_s));
        Q_EMIT h->discoverer->scans.at(1)->finished();
        QVERIFY(model->machines().isEmpty() && model->isDiscovering());
        h->discoverer->scans.last()->cancel();
        QVERIFY(!model->errorMessage() && !model->isDiscovering());
        QTRY_VERIFY(first.isNull() && h->discoverer->scans.at(1).isNull());
    }

    // A scan that does not hear the selected machine asks it again; the badge, not an alert,
    // says how that ended.
    void aScanThatMissesTheSelectionChecksItAgain() {
        AppModel* model = h->model.get();
        model->addManualMachine(u"10.0.0.9"_s, 2222);
        Q_EMIT h->connector->checks.last()->finished();
        model->discover();
        announce(u"Mill"_s, u"10.0.0.9"_s);
        Q_EMIT h->discoverer->scans.last()->finished();
        QCOMPARE(h->connector->checks.size(), 1);
        model->discover();
        Q_EMIT h->discoverer->scans.last()->finished();
        QCOMPARE(h->connector->checks.size(), 2);
        QCOMPARE(model->selectedMachine()->status, Status::Connecting);
        Q_EMIT h->connector->checks.last()->failed(UploadError::timedOut());
        QCOMPARE(model->selectedMachine()->status, Status::Unavailable);
        QVERIFY(!model->errorMessage());
    }

    // The address rule itself is the records' table; here the model's use of it. An address
    // already listed selects that machine.
    void manualAddressesAndOverlappingChecks() {
        AppModel* model = h->model.get();
        model->discover();
        announce(u"A"_s, u"10.0.0.1"_s);
        announce(u"B"_s, u"10.0.0.2"_s);
        const std::optional<Error> invalid = DiscoveryPacketError::InvalidAddress;
        QCOMPARE(model->addManualMachine(u"192.168.001.5"_s, 2222), invalid);
        QCOMPARE(model->addManualMachine(u"10.0.0.2"_s, 0), invalid);
        QVERIFY(h->connector->checks.isEmpty() && !model->selectedMachine());
        model->selectMachine(model->machines().at(0));
        QCOMPARE(model->addManualMachine(u"10.0.0.2"_s, 2222), std::nullopt);
        model->selectMachine(std::nullopt); // keeps the selection, starts nothing
        QCOMPARE(h->connector->checks.size(), 2);

        // The first check to end clears the flag even though the other still runs.
        Q_EMIT h->connector->checks.at(1)->finished();
        QVERIFY(!model->isCheckingConnection());
        Q_EMIT h->connector->checks.at(0)->failed(UploadError::timedOut());
        QCOMPARE(model->selectedMachine(), model->machines().at(1));
        QCOMPARE(model->errorMessage(),
                 u"Connection check failed: "_s + UploadError::timedOut().description());
        QCOMPARE(model->persistence().selectedMachine(), model->selectedMachine());
        // A failing check alone clears the flag too.
        QCOMPARE(model->addManualMachine(u"0.0.0.0"_s, 1), std::nullopt);
        Q_EMIT h->connector->checks.at(2)->failed(UploadError::timedOut());
        QVERIFY(!model->isCheckingConnection());
        QCOMPARE(names(model->machines()), QStringList({u"A unavailable"_s, u"B connected"_s,
                                                        u"Manual machine unavailable"_s}));
        QTRY_VERIFY(h->connector->checks.at(0).isNull() && h->connector->checks.at(1).isNull());
    }

    // A check replaces the announced "busy"; the flag stays beside the status, never stored,
    // until the machine announces itself again or another is selected.
    void theAnnouncedBusyFlagOutlivesTheCheck() {
        AppModel* model = h->model.get();
        QSignalSpy busyChanged(model, &AppModel::isSelectedMachineBusyChanged);
        model->discover();
        announce(u"Mill"_s, u"10.0.0.1"_s, Status::Busy);
        model->selectMachine(model->machines().at(0));
        Q_EMIT h->connector->checks.last()->finished();
        QCOMPARE(model->persistence().selectedMachine()->status, Status::Connected);
        model->discover();
        QVERIFY(model->isSelectedMachineBusy());
        announce(u"Mill"_s, u"10.0.0.1"_s);
        announce(u"Mill"_s, u"10.0.0.1"_s, Status::Busy);
        model->addManualMachine(u"10.0.0.2"_s, 2222);
        QCOMPARE(busyChanged.count(), 4);
    }

    void recentFilesMoveToTheFrontAndKeepEight() {
        AppModel* model = h->model.get();
        QList<JobFile> files;
        for (int n = 0; n < 9; ++n)
            model->chooseFile(files.emplace_back(h->jobFile(u"part%1.nc"_s.arg(n))));
        model->chooseFile(files[2]);
        QCOMPARE(model->recentFiles().size(), 8);
        QCOMPARE(model->recentFiles().mid(0, 3), QList<JobFile>({files[2], files[8], files[7]}));
        QCOMPARE(model->persistence().recentFiles(), model->recentFiles());
        QCOMPARE(model->selectedFile(), files[2]);
        QCOMPARE(model->remotePath(), u"/sd/gcodes/part2.nc"_s);
    }

    void restartRestoresSelectionAndExistingRecentFiles() {
        const JobFile kept = h->jobFile(u"kept.nc"_s);
        const JobFile removed = h->jobFile(u"removed.nc"_s);
        readyModel(kept)->chooseFile(removed);
        QVERIFY(QFile::remove(removed.url.toLocalFile()));

        h->restart();
        AppModel* model = h->model.get();
        QCOMPARE(names(model->machines()), QStringList{u"Manual machine connected"_s});
        QCOMPARE(model->selectedMachine(), model->machines().first());
        // The files are looked at off the main thread: they arrive after the constructor.
        QVERIFY(model->recentFiles().isEmpty());
        QTRY_COMPARE(model->recentFiles(), QList<JobFile>{kept});
        QCOMPARE(model->persistence().recentFiles().size(), 2);
        QVERIFY(h->connector->checks.isEmpty() && !model->selectedFile());
    }

    void reviewNeedsMachineFileNoUploadAndConfirmedDuplicate() {
        const JobFile file = h->jobFile(u"part.nc"_s);
        AppModel* model = h->model.get();
        model->chooseFile(file);
        model->prepareUpload();
        QVERIFY(!model->showConfirmation() && !model->isRecentDuplicate());
        model->addManualMachine(u"127.0.0.1"_s, 2222);
        model->persistence().recordUpload({u"127.0.0.1:2222"_s, file.id(), file.size, m_now});
        model->prepareUpload();
        QVERIFY(model->showConfirmation() && model->isRecentDuplicate());
        model->upload(false);
        QVERIFY(h->uploaders.made.isEmpty() && model->showConfirmation());
        model->upload(true);
        QVERIFY(model->isUploading() && !model->showConfirmation());
        model->prepareUpload();
        QVERIFY(!model->showConfirmation());
        QCOMPARE(h->uploaders.made.size(), 1);
    }

    // A finished upload is recorded; when the history cannot be saved, the upload still counts as
    // done and the user is told once, until dismissed or the next upload starts.
    void finishedUploadsAreRecordedOrNoticed() {
        const JobFile file = h->jobFile(u"part.nc"_s);
        AppModel* model = readyModel(file);
        QSignalSpy notices(model, &AppModel::noticeChanged);
        model->upload(false);
        QPointer<FakeUploader> uploader = h->uploaders.last();
        QCOMPARE(uploader->file, file);
        QCOMPARE(uploader->machine->id(), u"127.0.0.1:2222"_s);
        const TransferProgress done{Phase::Completed, file.size, file.size, 0};
        Q_EMIT uploader->progress({Phase::Preparing, 0, file.size, 0});
        Q_EMIT uploader->progress(done);
        Q_EMIT uploader->finished();
        QTRY_VERIFY(!model->isUploading());
        QVERIFY(!model->errorMessage() && !model->notice());
        QCOMPARE(model->progress(), done);
        const UploadRecord record{u"127.0.0.1:2222"_s, file.id(), file.size, m_now};
        QCOMPARE(model->persistence().uploadRecords(), QList<UploadRecord>{record});
        QTRY_VERIFY(!uploader);

        QLockFile otherWriter(settings::writeLockPath(*temporaryStore(h->dir)));
        QVERIFY(otherWriter.lock());
        model->persistence().setLockWait(std::chrono::milliseconds(10));
        const Error notSaved = model->persistence().recordUpload(record).value();
        QStringList seen;
        for (int run = 0; run < 3; ++run) {
            if (run == 2) {
                model->dismissNotice();
                otherWriter.unlock();
            }
            model->upload(true);
            seen << model->notice().value_or(u"none"_s);
            Q_EMIT h->uploaders.last()->finished();
            QTRY_VERIFY(!model->isUploading());
            QVERIFY(!model->errorMessage());
            seen << model->notice().value_or(u"none"_s);
        }
        const QString notice =
            u"The upload history could not be saved: "_s + notSaved.description();
        QCOMPARE(seen, QStringList({u"none"_s, notice, u"none"_s, notice, u"none"_s, u"none"_s}));
        QCOMPARE(model->persistence().uploadRecords(), QList<UploadRecord>({record, record}));
        QCOMPARE(notices.count(), 4);
    }

    // Another program holds the history's lock for two seconds: the record lands once it lets go,
    // and the main thread turns meanwhile.
    void aRecordWaitsForAnotherProgramsLockOffTheMainThread() {
        const JobFile file = h->jobFile(u"part.nc"_s);
        AppModel* model = readyModel(file);
        QProcess otherProgram;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QString::fromLatin1(holdLockVariable),
                           settings::writeLockPath(*temporaryStore(h->dir)));
        otherProgram.setProcessEnvironment(environment);
        otherProgram.start(QCoreApplication::applicationFilePath(), {});
        QVERIFY(otherProgram.waitForReadyRead(10'000));

        model->upload(false);
        Q_EMIT h->uploaders.last()->finished();
        bool recordedBeforeTheNextTurn = true;
        QTimer::singleShot(0, model, [&] {
            recordedBeforeTheNextTurn = !model->persistence().uploadRecords().isEmpty();
        });
        QTRY_VERIFY_WITH_TIMEOUT(!model->isUploading(), 20'000);
        QVERIFY(!recordedBeforeTheNextTurn);
        const UploadRecord record{u"127.0.0.1:2222"_s, file.id(), file.size, m_now};
        QCOMPARE(model->persistence().uploadRecords(), QList<UploadRecord>{record});
        QVERIFY(!model->notice());
    }

    // The user reads the error's own text; a cancellation shows the cancelled value, which
    // starts from 0 when no progress came.
    void uploadEndings() {
        const struct {
            Error error;
            bool shown;
            bool cancelledValue;
            int sent;
        } rows[] = {{UploadError::rejected(u"x"_s), true, false, 8192},
                    {UploadError::cancelled(), true, true, 8192},
                    {UploadError::cancelled(), true, true, 0},
                    {CancellationError{}, false, true, 8192}};
        for (const auto& row : rows) {
            init();
            AppModel* model = readyModel(h->jobFile(u"part.nc"_s, 20000));
            model->cancelUpload(); // nothing runs yet
            model->upload(false);
            const TransferProgress last{Phase::Uploading, row.sent, 20000, 1e6};
            if (row.sent)
                Q_EMIT h->uploaders.last()->progress(last);
            model->cancelUpload();
            QCOMPARE(h->uploaders.last()->cancelCalls, 1);
            Q_EMIT h->uploaders.last()->failed(row.error);
            // Only a failure that was not a cancel puts the machine's reachability in doubt.
            QCOMPARE(h->connector->checks.size(), row.cancelledValue ? 1 : 2);
            QCOMPARE(model->errorMessage(),
                     row.shown ? std::optional(row.error.description()) : std::nullopt);
            QCOMPARE(model->lastFailure(), row.shown ? std::optional(row.error) : std::nullopt);
            const TransferProgress cancelled{Phase::Cancelled, row.sent, 20000, 0};
            QCOMPARE(model->progress(), std::optional(row.cancelledValue ? cancelled : last));
            QVERIFY(!model->isUploading() && model->persistence().uploadRecords().isEmpty());
            model->cancelUpload();
            QCOMPARE(h->uploaders.last()->cancelCalls, 1);
        }
    }

    void destroyingTheModelEndsItsWork() {
        AppModel* model = readyModel(h->jobFile(u"part.nc"_s));
        model->discover();
        model->upload(false);
        QPointer<FakeScan> scan = h->discoverer->scans.last();
        h->model.reset();
        QVERIFY(scan.isNull() && !h->uploaders.last());
    }
};

int main(int argc, char** argv) {
    if (const QString lockPath = qEnvironmentVariable(holdLockVariable); !lockPath.isEmpty()) {
        QLockFile lock(lockPath);
        if (!lock.lock())
            return 1;
        std::puts("locked");
        std::fflush(stdout);
        QThread::sleep(2);
        return 0;
    }
    QCoreApplication app(argc, argv);
    AppModelTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "AppModelTest.moc"
