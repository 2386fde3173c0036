#include "app/AppModel.h"

#include "support/FakeServices.h"
#include "support/TestFiles.h"

#include <QSignalSpy>
#include <QTest>

using namespace tarnwick;
using namespace tarnwick::testing;
using Status = Machine::ConnectionStatus;
using Phase = TransferProgress::Phase;

namespace {

Machine machine(const QString& name, const QString& address, quint16 port = 2222,
                Status status = Status::Discovered) {
    return {name, std::nullopt, address, port, status};
}

QStringList names(const QList<Machine>& machines) {
    QStringList result;
    for (const Machine& m : machines)
        result << m.name;
    return result;
}

} // namespace

class AppModelTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    FakeDiscoverer* m_discoverer = nullptr;
    FakeConnector* m_connector = nullptr;
    FakeUploaderFactory m_uploaders;
    QDateTime m_now = QDateTime(QDate(2026, 11, 23), QTime(12, 0), Qt::UTC);

    std::unique_ptr<AppModel> makeModel() {
        auto discoverer = std::make_unique<FakeDiscoverer>();
        auto connector = std::make_unique<FakeConnector>();
        m_discoverer = discoverer.get();
        m_connector = connector.get();
        auto model = std::make_unique<AppModel>(
            std::move(discoverer), std::move(connector), m_uploaders.factory(),
            std::make_unique<AppPersistence>(temporaryStore(m_dir)));
        model->setClock([this] { return m_now; });
        return model;
    }

    JobFile jobFile(const QString& name, const QByteArray& content = "G0 X1\n") {
        return JobFile::fromUrl(writeFile(m_dir, name, content)).value();
    }

    // A model with a machine selected and reachable, and a file chosen.
    std::unique_ptr<AppModel> readyModel(const JobFile& file) {
        auto model = makeModel();
        model->addManualMachine(QStringLiteral("127.0.0.1"), 2222);
        Q_EMIT m_connector->checks.last()->finished();
        model->chooseFile(file);
        return model;
    }

private Q_SLOTS:
    void init() {
        temporaryStore(m_dir)->clear();
        m_uploaders.made.clear();
    }

    void scanMergesAndSortsByName() {
        auto model = makeModel();
        QSignalSpy discovering(model.get(), &AppModel::isDiscoveringChanged);
        model->discover();
        QVERIFY(model->isDiscovering());
        QCOMPARE(m_discoverer->durations,
                 QList<std::chrono::milliseconds>{std::chrono::seconds(3)});

        FakeScan* scan = m_discoverer->scans.last();
        Q_EMIT scan->machineFound(machine(QStringLiteral("gamma"), QStringLiteral("10.0.0.3")));
        Q_EMIT scan->machineFound(machine(QStringLiteral("Alpha"), QStringLiteral("10.0.0.1")));
        Q_EMIT scan->machineFound(machine(QStringLiteral("beta"), QStringLiteral("10.0.0.2")));
        QCOMPARE(names(model->machines()),
                 (QStringList{QStringLiteral("Alpha"), QStringLiteral("beta"),
                              QStringLiteral("gamma")}));

        // A re-announced machine replaces its entry in place, status included, without re-sorting.
        Q_EMIT scan->machineFound(
            machine(QStringLiteral("zulu"), QStringLiteral("10.0.0.1"), 2222, Status::Busy));
        QCOMPARE(
            names(model->machines()),
            (QStringList{QStringLiteral("zulu"), QStringLiteral("beta"), QStringLiteral("gamma")}));
        QCOMPARE(model->machines().first().status, Status::Busy);

        Q_EMIT scan->finished();
        QVERIFY(!model->isDiscovering());
        QCOMPARE(discovering.count(), 2);
    }

    void scanStartsFromTheSelectionAlone() {
        auto model = makeModel();
        model->addManualMachine(QStringLiteral("10.0.0.9"), 80);
        model->discover();
        Q_EMIT m_discoverer->scans.last()->machineFound(
            machine(QStringLiteral("Mill"), QStringLiteral("10.0.0.1")));
        QCOMPARE(names(model->machines()),
                 (QStringList{QStringLiteral("Manual machine"), QStringLiteral("Mill")}));
        model->selectMachine(model->machines().at(1));

        // The manual machine is no longer selected, so the next scan drops it.
        model->discover();
        QCOMPARE(names(model->machines()), QStringList{QStringLiteral("Mill")});

        // A broadcast for the selected machine replaces the entry but not the selection.
        Q_EMIT m_discoverer->scans.last()->machineFound(
            machine(QStringLiteral("Renamed"), QStringLiteral("10.0.0.1")));
        QCOMPARE(model->selectedMachine()->name, QStringLiteral("Mill"));
        QCOMPARE(names(model->machines()), QStringList{QStringLiteral("Renamed")});
    }

    void failingScanKeepsWhatItMerged() {
        auto model = makeModel();
        model->discover();
        FakeScan* scan = m_discoverer->scans.last();
        Q_EMIT scan->machineFound(machine(QStringLiteral("Mill"), QStringLiteral("10.0.0.1")));
        Q_EMIT scan->failed(PlatformError{PlatformError::Domain::Network, 8,
                                          QStringLiteral("The address is already in use")});
        QCOMPARE(model->errorMessage(),
                 QStringLiteral("Discovery failed: The address is already in use"));
        QCOMPARE(model->machines().size(), 1);
        QVERIFY(!model->isDiscovering());

        model->discover();
        QVERIFY(!model->errorMessage());
        m_discoverer->scans.last()->cancel();
        QVERIFY(!model->errorMessage());
        QVERIFY(!model->isDiscovering());
    }

    void rescanEndsThePreviousScanSilently() {
        auto model = makeModel();
        model->discover();
        QPointer<FakeScan> first = m_discoverer->scans.last();
        model->discover();
        Q_EMIT first->machineFound(machine(QStringLiteral("Stale"), QStringLiteral("10.0.0.7")));
        Q_EMIT first->finished();
        QVERIFY(model->machines().isEmpty());
        QVERIFY(model->isDiscovering());
        QTRY_VERIFY(first.isNull());
    }

    void manualAddressRule_data() {
        QTest::addColumn<QString>("address");
        QTest::addColumn<int>("port");
        QTest::addColumn<bool>("accepted");
        QTest::newRow("leading zeros") << QStringLiteral("192.168.001.5") << 2222 << false;
        QTest::newRow("over 255") << QStringLiteral("256.1.1.1") << 2222 << false;
        QTest::newRow("three pieces") << QStringLiteral("1.2.3") << 2222 << false;
        QTest::newRow("five pieces") << QStringLiteral("1.2.3.4.5") << 2222 << false;
        QTest::newRow("empty piece") << QStringLiteral("1..2.3.4") << 2222 << false;
        QTest::newRow("sign") << QStringLiteral("+1.2.3.4") << 2222 << false;
        QTest::newRow("blank") << QStringLiteral("1.2.3.4 ") << 2222 << false;
        QTest::newRow("other digits") << QStringLiteral("1.2.3.\u0664") << 2222 << false;
        QTest::newRow("empty") << QString() << 2222 << false;
        QTest::newRow("port 0") << QStringLiteral("192.168.1.5") << 0 << false;
        QTest::newRow("all zeros") << QStringLiteral("0.0.0.0") << 1 << true;
        QTest::newRow("all ones") << QStringLiteral("255.255.255.255") << 1 << true;
    }
    void manualAddressRule() {
        QFETCH(QString, address);
        QFETCH(int, port);
        QFETCH(bool, accepted);
        auto model = makeModel();
        const auto error = model->addManualMachine(address, quint16(port));
        QCOMPARE(!error, accepted);
        if (!accepted) {
            QCOMPARE(*error, Error(DiscoveryPacketError::InvalidAddress));
            QVERIFY(model->machines().isEmpty());
            QVERIFY(!model->selectedMachine());
            QVERIFY(m_connector->checks.isEmpty());
            return;
        }
        const Machine expected =
            machine(QStringLiteral("Manual machine"), address, quint16(port), Status::Connecting);
        QCOMPARE(model->machines(), QList<Machine>{expected});
        QCOMPARE(model->selectedMachine(), expected);
        QCOMPARE(m_connector->checks.last()->machine.id(), expected.id());
    }

    void manualEntryOfAListedMachineTakesTheListedEntry() {
        auto model = makeModel();
        model->discover();
        Q_EMIT m_discoverer->scans.last()->machineFound(
            machine(QStringLiteral("Mill"), QStringLiteral("10.0.0.1")));
        QVERIFY(!model->addManualMachine(QStringLiteral("10.0.0.1"), 2222));
        QCOMPARE(model->machines().size(), 1);
        QCOMPARE(model->selectedMachine()->name, QStringLiteral("Mill"));
        QCOMPARE(model->selectedMachine()->status, Status::Connecting);
    }

    void overlappingChecks() {
        auto model = makeModel();
        model->discover();
        FakeScan* scan = m_discoverer->scans.last();
        Q_EMIT scan->machineFound(machine(QStringLiteral("A"), QStringLiteral("10.0.0.1")));
        Q_EMIT scan->machineFound(machine(QStringLiteral("B"), QStringLiteral("10.0.0.2")));
        model->selectMachine(model->machines().at(0));
        model->selectMachine(model->machines().at(1));
        QCOMPARE(m_connector->checks.size(), 2);
        QVERIFY(model->isCheckingConnection());

        // The first check to end clears the flag even though the other still runs.
        Q_EMIT m_connector->checks.at(1)->finished();
        QVERIFY(!model->isCheckingConnection());
        QCOMPARE(model->selectedMachine()->status, Status::Connected);

        Q_EMIT m_connector->checks.at(0)->failed(UploadError::timedOut());
        QCOMPARE(model->machines().at(0).status, Status::Unavailable);
        QCOMPARE(model->selectedMachine()->status, Status::Connected);
        QCOMPARE(model->errorMessage(),
                 QStringLiteral("Connection check failed: The machine did not respond before the "
                                "upload timed out."));
        QCOMPARE(model->persistence().selectedMachine(), model->selectedMachine());
        QTRY_VERIFY(m_connector->checks.at(0).isNull() && m_connector->checks.at(1).isNull());
    }

    void selectingNothingKeepsTheSelection() {
        auto model = makeModel();
        model->addManualMachine(QStringLiteral("10.0.0.1"), 2222);
        model->selectMachine(std::nullopt);
        QCOMPARE(model->selectedMachine()->ipAddress, QStringLiteral("10.0.0.1"));
        QCOMPARE(m_connector->checks.size(), 1);
    }

    void recentFilesMoveToTheFrontAndKeepEight() {
        auto model = makeModel();
        QList<JobFile> files;
        for (int n = 0; n < 9; ++n)
            files << jobFile(QStringLiteral("part%1.nc").arg(n));
        for (int n = 0; n < 8; ++n)
            model->chooseFile(files[n]);
        model->chooseFile(files[2]);
        QCOMPARE(model->recentFiles().first(), files[2]);
        QCOMPARE(model->recentFiles().size(), 8);
        model->chooseFile(files[8]);
        QCOMPARE(model->recentFiles().size(), 8);
        QVERIFY(!model->recentFiles().contains(files[0]));
        QCOMPARE(model->persistence().recentFiles(), model->recentFiles());
        QCOMPARE(model->selectedFile(), files[8]);
        QCOMPARE(model->remotePath(), QStringLiteral("/sd/gcodes/part8.nc"));
    }

    void restartRestoresSelectionAndExistingRecentFiles() {
        const JobFile kept = jobFile(QStringLiteral("kept.nc"));
        const JobFile removed = jobFile(QStringLiteral("removed.nc"));
        {
            auto model = makeModel();
            model->addManualMachine(QStringLiteral("10.0.0.4"), 2222);
            Q_EMIT m_connector->checks.last()->finished();
            model->chooseFile(kept);
            model->chooseFile(removed);
        }
        QVERIFY(QFile::remove(removed.id()));

        auto model = makeModel();
        const Machine expected = machine(QStringLiteral("Manual machine"),
                                         QStringLiteral("10.0.0.4"), 2222, Status::Connected);
        QCOMPARE(model->selectedMachine(), expected);
        QCOMPARE(model->machines(), QList<Machine>{expected});
        QCOMPARE(model->recentFiles(), QList<JobFile>{kept});
        QCOMPARE(model->persistence().recentFiles().size(), 2);
        QVERIFY(m_connector->checks.isEmpty());
        QVERIFY(!model->selectedFile());
    }

    void duplicateWindowIsInclusive_data() {
        QTest::addColumn<qint64>("age");
        QTest::addColumn<qint64>("sizeDelta");
        QTest::addColumn<bool>("duplicate");
        QTest::newRow("just now") << qint64(0) << qint64(0) << true;
        QTest::newRow("exactly a day") << qint64(86400) << qint64(0) << true;
        QTest::newRow("a day and a second") << qint64(86401) << qint64(0) << false;
        QTest::newRow("another size") << qint64(10) << qint64(1) << false;
    }
    void duplicateWindowIsInclusive() {
        QFETCH(qint64, age);
        QFETCH(qint64, sizeDelta);
        QFETCH(bool, duplicate);
        const JobFile file = jobFile(QStringLiteral("part.nc"));
        auto model = readyModel(file);
        QVERIFY(!model->isRecentDuplicate());
        model->persistence().recordUpload(UploadRecord{model->selectedMachine()->id(), file.id(),
                                                       file.size + sizeDelta, m_now.addSecs(-age)});
        QCOMPARE(model->isRecentDuplicate(), duplicate);
    }

    void reviewNeedsMachineFileAndNoUpload() {
        auto model = makeModel();
        model->prepareUpload();
        QVERIFY(!model->showConfirmation());
        model->chooseFile(jobFile(QStringLiteral("part.nc")));
        model->prepareUpload();
        QVERIFY(!model->showConfirmation());

        model->addManualMachine(QStringLiteral("127.0.0.1"), 2222);
        model->prepareUpload();
        QVERIFY(model->showConfirmation());
        model->upload(false);
        QVERIFY(model->isUploading());
        QVERIFY(!model->showConfirmation());
        model->prepareUpload();
        QVERIFY(!model->showConfirmation());
    }

    void recentDuplicateNeedsConfirmation() {
        const JobFile file = jobFile(QStringLiteral("part.nc"));
        auto model = readyModel(file);
        model->persistence().recordUpload(
            UploadRecord{model->selectedMachine()->id(), file.id(), file.size, m_now});
        model->prepareUpload();
        model->upload(false);
        QVERIFY(m_uploaders.made.isEmpty());
        QVERIFY(model->showConfirmation());
        model->upload(true);
        QCOMPARE(m_uploaders.made.size(), 1);
    }

    void successfulUploadRecordsHistory() {
        const JobFile file = jobFile(QStringLiteral("part.nc"));
        auto model = readyModel(file);
        model->upload(false);
        QPointer<FakeUploader> uploader = m_uploaders.last();
        QCOMPARE(uploader->file, file);
        QCOMPARE(uploader->machine->id(), QStringLiteral("127.0.0.1:2222"));
        QVERIFY(model->isUploading());

        const TransferProgress done{Phase::Completed, file.size, file.size, 0};
        Q_EMIT uploader->progress({Phase::Preparing, 0, file.size, 0});
        Q_EMIT uploader->progress(done);
        Q_EMIT uploader->finished();
        QVERIFY(!model->isUploading());
        QCOMPARE(model->progress(), done);
        const UploadRecord expected{QStringLiteral("127.0.0.1:2222"), file.id(), file.size, m_now};
        QCOMPARE(model->persistence().uploadRecords(), QList<UploadRecord>{expected});
        QVERIFY(model->isRecentDuplicate());
        QVERIFY(!model->errorMessage());
        QTRY_VERIFY(!uploader);
    }

    void uploadEndings_data() {
        QTest::addColumn<Error>("error");
        QTest::addColumn<std::optional<QString>>("message");
        QTest::addColumn<bool>("cancelledValue");
        QTest::newRow("machine cancelled")
            << Error(UploadError::rejected(QStringLiteral("The machine cancelled the transfer.")))
            << std::optional<QString>(QStringLiteral(
                   "The machine rejected the upload: The machine cancelled the transfer."))
            << false;
        QTest::newRow("timed out")
            << Error(UploadError::timedOut())
            << std::optional<QString>(
                   QStringLiteral("The machine did not respond before the upload timed out."))
            << false;
        QTest::newRow("user cancelled")
            << Error(UploadError::cancelled())
            << std::optional<QString>(QStringLiteral("The upload was cancelled.")) << true;
        QTest::newRow("task cancelled")
            << Error(CancellationError{}) << std::optional<QString>() << true;
    }
    void uploadEndings() {
        QFETCH(Error, error);
        QFETCH(std::optional<QString>, message);
        QFETCH(bool, cancelledValue);
        const JobFile file = jobFile(QStringLiteral("part.nc"), QByteArray(20000, 'G'));
        auto model = readyModel(file);
        model->upload(false);
        const TransferProgress last{Phase::Uploading, 8192, 20000, 1e6};
        Q_EMIT m_uploaders.last()->progress(last);
        Q_EMIT m_uploaders.last()->failed(error);

        QCOMPARE(model->errorMessage(), message);
        const TransferProgress cancelled{Phase::Cancelled, 8192, 20000, 0};
        QCOMPARE(model->progress(), cancelledValue ? cancelled : last);
        QVERIFY(!model->isUploading());
        QVERIFY(model->persistence().uploadRecords().isEmpty());
    }

    void cancelReachesTheRunningUploaderOnly() {
        const JobFile file = jobFile(QStringLiteral("part.nc"));
        auto model = readyModel(file);
        model->cancelUpload();
        model->upload(false);
        model->cancelUpload();
        QCOMPARE(m_uploaders.last()->cancelCalls, 1);
        Q_EMIT m_uploaders.last()->failed(UploadError::cancelled());
        // No progress had arrived: the cancelled value starts from 0.
        QCOMPARE(model->progress(), (TransferProgress{Phase::Cancelled, 0, file.size, 0}));
        model->cancelUpload();
        QCOMPARE(m_uploaders.made.size(), 1);
    }

    void destroyingTheModelEndsItsWork() {
        const JobFile file = jobFile(QStringLiteral("part.nc"));
        auto model = readyModel(file);
        model->discover();
        model->upload(false);
        QPointer<FakeScan> scan = m_discoverer->scans.last();
        const int destroyedBefore = FakeUploader::destroyed;
        model.reset();
        QVERIFY(scan.isNull());
        QCOMPARE(FakeUploader::destroyed, destroyedBefore + 1);
    }
};

QTEST_GUILESS_MAIN(AppModelTest)
#include "AppModelTest.moc"
