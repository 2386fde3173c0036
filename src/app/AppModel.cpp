#include "app/AppModel.h"

#include <QCollator>
#include <QFileInfo>
#include <QFutureWatcher>
#include <QtConcurrent/QtConcurrentRun>

#include <algorithm>

namespace tarnwick {

AppModel::AppModel(std::unique_ptr<MachineDiscovering> discoverer,
                   std::unique_ptr<MachineConnecting> connector, UploaderFactory makeUploader,
                   std::unique_ptr<AppPersistence> persistence, QObject* parent)
    : QObject(parent)
    , m_discoverer(std::move(discoverer))
    , m_connector(std::move(connector))
    , m_makeUploader(std::move(makeUploader))
    , m_persistence(std::move(persistence))
    , m_now([] { return QDateTime::currentDateTimeUtc(); }) {
    m_nameOrder.setCaseSensitivity(Qt::CaseInsensitive);
    m_selectedMachine = m_persistence->selectedMachine();
    if (m_selectedMachine) {
        m_machines = {*m_selectedMachine};
        m_selectedMachines = {*m_selectedMachine};
    }
    m_queue = new UploadQueue(*m_persistence, m_makeUploader, this);
    m_queue->setClock([this] { return m_now(); });
    // A retried pair makes the queue run again, and the window treats it as an upload again.
    connect(m_queue, &UploadQueue::runningChanged, this,
            [this] { setUploading(m_queue->isRunning()); });
    if (m_selectedMachine && m_selectedMachine->status == Machine::ConnectionStatus::Busy)
        m_announcedBusy.insert(m_selectedMachine->id());
    restoreRecentFiles();
    m_folderFollower = new FolderFollower(*m_persistence, this);
    connect(m_folderFollower, &FolderFollower::arrived, this, &AppModel::chooseFile);
    m_folderFollower->restore();
}

// A file on a network share that stalls can take seconds to answer, so the files are looked at
// on a worker thread and the recent files appear when they have all answered.
void AppModel::restoreRecentFiles() {
    const QList<JobFile> stored = m_persistence->recentFiles();
    // The watcher goes with the model, so a result that comes too late finds nothing to touch.
    auto* watcher = new QFutureWatcher<QList<JobFile>>(this);
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher] {
        watcher->deleteLater();
        // Files chosen meanwhile are the newest; they go first and are stored with the rest.
        const bool chosenMeanwhile = !m_recentFiles.isEmpty();
        QList<JobFile> recent = m_recentFiles;
        for (const JobFile& file : watcher->result()) {
            if (recent.size() < maximumRecentFiles &&
                std::none_of(recent.begin(), recent.end(),
                             [&](const JobFile& f) { return f.url == file.url; }))
                recent.append(file);
        }
        setRecentFiles(std::move(recent));
        if (chosenMeanwhile)
            m_persistence->setRecentFiles(m_recentFiles);
    });
    watcher->setFuture(QtConcurrent::run([stored] {
        QList<JobFile> existing;
        std::copy_if(stored.begin(), stored.end(), std::back_inserter(existing),
                     [](const JobFile& file) { return QFileInfo::exists(file.url.toLocalFile()); });
        return existing;
    }));
}

// Children (the running scan, checks and uploader) are deleted with the model, which ends
// them without a word; an uploader being deleted tells the machine that the upload stops.
AppModel::~AppModel() = default;

template <typename T>
void AppModel::assign(T& field, T value, void (AppModel::*changed)()) {
    if (field == value)
        return;
    field = std::move(value);
    Q_EMIT(this->*changed)();
}

void AppModel::setClock(Clock clock) {
    m_now = std::move(clock);
}

void AppModel::setErrorMessage(const std::optional<QString>& message) {
    assign(m_lastFailure, std::optional<Error>(), &AppModel::lastFailureChanged);
    assign(m_errorMessage, message, &AppModel::errorMessageChanged);
}

void AppModel::showFailure(const Error& failure, const QString& message) {
    assign(m_lastFailure, std::optional(failure), &AppModel::lastFailureChanged);
    assign(m_errorMessage, std::optional(message), &AppModel::errorMessageChanged);
}

void AppModel::setShowConfirmation(bool show) {
    assign(m_showConfirmation, show, &AppModel::showConfirmationChanged);
}

void AppModel::dismissNotice() {
    assign(m_notice, std::optional<QString>(), &AppModel::noticeChanged);
}

void AppModel::discover() {
    if (m_scan) {
        m_scan->disconnect(this);
        m_scan->deleteLater();
    }
    setDiscovering(true);
    setErrorMessage(std::nullopt);
    resetMachines(m_selectedMachine ? QList<Machine>{*m_selectedMachine} : QList<Machine>{});
    m_announcedBusy.removeIf(
        [this](const QString& id) { return !m_selectedMachine || id != m_selectedMachine->id(); });
    m_machinesSorted = true;
    assign(m_isMachineListFull, false, &AppModel::isMachineListFullChanged);

    m_selectionHeard = false;
    m_scan = m_discoverer->discover(scanDuration, this);
    connect(m_scan, &MachineScan::machineFound, this, &AppModel::mergeDiscovered);
    connect(m_scan, &MachineScan::machineFound, this, [this](const Machine& machine) {
        if (m_selectedMachine && m_selectedMachine->id() == machine.id())
            m_selectionHeard = true;
    });
    connect(m_scan, &Operation::finished, this, [this] {
        keepListedSelection();
        setDiscovering(false);
        // A machine that was switched off keeps the status it last had until something asks it:
        // the scan not hearing it is reason enough to. The badge says how that ended.
        if (!m_selectionHeard)
            checkConnection(CheckFailure::Silent);
    });
    connect(m_scan, &Operation::failed, this, [this](const Error& error) {
        if (!error.is<CancellationError>())
            showFailure(error, discoveryFailureMessage(error));
        keepListedSelection();
        setDiscovering(false);
    });
}

// The other selected machines stay selected through a scan that hears them again; one that the
// scan did not hear is no longer listed, so it can no longer be a destination.
void AppModel::keepListedSelection() {
    QList<Machine> kept;
    for (const Machine& machine : std::as_const(m_selectedMachines)) {
        const auto listed = std::find_if(m_machines.cbegin(), m_machines.cend(),
                                         [&](const Machine& m) { return m.id() == machine.id(); });
        if (listed != m_machines.cend())
            kept.append(machine);
    }
    setSelectedMachines(std::move(kept));
}

void AppModel::mergeDiscovered(const Machine& machine) {
    const auto existing = std::find_if(m_machines.cbegin(), m_machines.cend(),
                                       [&](const Machine& m) { return m.id() == machine.id(); });
    if (existing != m_machines.cend()) {
        if (existing->name != machine.name)
            m_machinesSorted = false;
        noteAnnouncedBusy(machine);
        changeMachine(existing - m_machines.cbegin(), machine);
        return;
    }
    if (m_machines.size() >= maximumListedMachines) {
        assign(m_isMachineListFull, true, &AppModel::isMachineListFullChanged);
        return;
    }
    noteAnnouncedBusy(machine);
    const auto before = [this](const Machine& a, const Machine& b) {
        return m_nameOrder.compare(a.name, b.name) < 0;
    };
    // In a sorted list, inserting after every equal name is what a stable sort of the appended
    // list gives, at a fraction of the cost when machines arrive by the hundred.
    if (m_machinesSorted) {
        insertMachine(std::upper_bound(m_machines.cbegin(), m_machines.cend(), machine, before) -
                          m_machines.cbegin(),
                      machine);
        return;
    }
    QList<Machine> machines = m_machines;
    machines.append(machine);
    std::stable_sort(machines.begin(), machines.end(), before);
    m_machinesSorted = true;
    resetMachines(std::move(machines));
}

void AppModel::noteAnnouncedBusy(const Machine& machine) {
    const bool wasBusy = isSelectedMachineBusy();
    if (machine.status == Machine::ConnectionStatus::Busy)
        m_announcedBusy.insert(machine.id());
    else
        m_announcedBusy.remove(machine.id());
    if (isSelectedMachineBusy() != wasBusy)
        Q_EMIT isSelectedMachineBusyChanged();
}

bool AppModel::isSelectedMachineBusy() const {
    return m_selectedMachine && m_announcedBusy.contains(m_selectedMachine->id());
}

void AppModel::selectMachine(const std::optional<Machine>& machine) {
    if (!machine)
        return;
    setSelectedMachines({*machine});
    setSelectedMachine(machine);
    m_persistence->setSelectedMachine(m_selectedMachine);
    checkConnection();
}

void AppModel::selectMachines(const QList<Machine>& machines) {
    if (machines.size() <= 1) {
        selectMachine(machines.isEmpty() ? std::nullopt : std::optional(machines.first()));
        return;
    }
    // Only a machine that joins the selection is asked again; the others' status stands.
    QList<Machine> joining;
    for (const Machine& machine : machines) {
        if (std::none_of(m_selectedMachines.cbegin(), m_selectedMachines.cend(),
                         [&](const Machine& m) { return m.id() == machine.id(); }))
            joining.append(machine);
    }
    const bool firstChanged =
        !m_selectedMachine || m_selectedMachine->id() != machines.first().id();
    setSelectedMachines(machines);
    if (firstChanged) {
        setSelectedMachine(machines.first());
        m_persistence->setSelectedMachine(m_selectedMachine);
    }
    for (const Machine& machine : std::as_const(joining)) {
        checkConnection(machine, machine.id() == machines.first().id() ? CheckFailure::Reported
                                                                       : CheckFailure::Silent);
    }
}

void AppModel::checkSelectedMachine() {
    checkConnection();
}

void AppModel::checkConnection(CheckFailure failure) {
    if (m_selectedMachine)
        checkConnection(*m_selectedMachine, failure);
}

void AppModel::checkConnection(const Machine& machine, CheckFailure failure) {
    setCheckingConnection(true);
    updateStatus(Machine::ConnectionStatus::Connecting, machine.id());

    // Checks are not kept: several may run side by side, and the first to end clears the flag.
    ConnectionCheck* check = m_connector->checkConnection(machine, this);
    connect(check, &Operation::finished, this, [this, id = machine.id()] {
        updateStatus(Machine::ConnectionStatus::Connected, id);
        setCheckingConnection(false);
    });
    connect(check, &Operation::failed, this,
            [this, failure, id = machine.id()](const Error& error) {
                updateStatus(Machine::ConnectionStatus::Unavailable, id);
                if (failure == CheckFailure::Reported)
                    showFailure(error, tr("Connection check failed: %1").arg(error.description()));
                setCheckingConnection(false);
            });
}

void AppModel::updateStatus(Machine::ConnectionStatus status, const QString& machineID) {
    const auto entry = std::find_if(m_machines.cbegin(), m_machines.cend(),
                                    [&](const Machine& m) { return m.id() == machineID; });
    if (entry == m_machines.cend())
        return;
    Machine updated = *entry;
    updated.status = status;
    changeMachine(entry - m_machines.cbegin(), updated);
    QList<Machine> selected = m_selectedMachines;
    for (Machine& machine : selected) {
        if (machine.id() == machineID)
            machine = updated;
    }
    setSelectedMachines(std::move(selected));
    if (m_selectedMachine && m_selectedMachine->id() == machineID) {
        setSelectedMachine(updated);
        m_persistence->setSelectedMachine(m_selectedMachine);
    }
}

std::optional<Error> AppModel::addManualMachine(const QString& ipAddress, quint16 port) {
    if (!isCanonicalIPv4(ipAddress) || port == 0)
        return Error(DiscoveryPacketError::InvalidAddress);

    const Machine machine{tr("Manual machine"), std::nullopt, ipAddress, port,
                          Machine::ConnectionStatus::Discovered};
    const bool listed = std::any_of(m_machines.begin(), m_machines.end(),
                                    [&](const Machine& m) { return m.id() == machine.id(); });
    if (!listed) {
        insertMachine(m_machines.size(), machine);
        m_machinesSorted = false;
    }
    setSelectedMachines({machine});
    setSelectedMachine(machine);
    m_persistence->setSelectedMachine(m_selectedMachine);
    checkConnection();
    return std::nullopt;
}

void AppModel::chooseFile(const JobFile& file) {
    setSelectedFiles({file});
    m_selectedFile = file;
    Q_EMIT selectedFileChanged();
    analyseSelectedFile();
    rememberRecentFile(file);
}

void AppModel::addFiles(const QList<JobFile>& files) {
    QList<JobFile> chosen = m_selectedFiles;
    for (const JobFile& file : files) {
        if (std::none_of(chosen.cbegin(), chosen.cend(),
                         [&](const JobFile& f) { return f.url == file.url; }))
            chosen.append(file);
        rememberRecentFile(file);
    }
    setSelectedFiles(std::move(chosen));
    if (!files.isEmpty() && m_selectedFile != files.first()) {
        m_selectedFile = files.first();
        Q_EMIT selectedFileChanged();
        analyseSelectedFile();
    }
}

void AppModel::removeFile(qsizetype index) {
    if (index < 0 || index >= m_selectedFiles.size())
        return;
    QList<JobFile> chosen = m_selectedFiles;
    const JobFile removed = chosen.takeAt(index);
    setSelectedFiles(chosen);
    if (m_selectedFile && m_selectedFile->url == removed.url) {
        m_selectedFile = chosen.isEmpty()
                             ? std::nullopt
                             : std::optional(chosen.at(std::min(index, chosen.size() - 1)));
        Q_EMIT selectedFileChanged();
        analyseSelectedFile();
    }
}

void AppModel::showFile(qsizetype index) {
    if (index < 0 || index >= m_selectedFiles.size() || m_selectedFile == m_selectedFiles.at(index))
        return;
    m_selectedFile = m_selectedFiles.at(index);
    Q_EMIT selectedFileChanged();
    analyseSelectedFile();
}

void AppModel::rememberRecentFile(const JobFile& file) {
    QList<JobFile> recent = m_recentFiles;
    recent.removeIf([&](const JobFile& f) { return f.url == file.url; });
    recent.prepend(file);
    if (recent.size() > maximumRecentFiles)
        recent.resize(maximumRecentFiles);
    setRecentFiles(std::move(recent));
    m_persistence->setRecentFiles(m_recentFiles);
}

void AppModel::setJobAnalyser(std::unique_ptr<JobAnalysing> analyser) {
    m_jobAnalyser = std::move(analyser);
    analyseSelectedFile();
}

void AppModel::analyseSelectedFile() {
    // Deleting the running analysis ends it without a word, so only the new one reports.
    delete m_jobAnalysis;
    if (m_jobAnalyser && m_selectedFile) {
        m_jobAnalysis = m_jobAnalyser->analyse(*m_selectedFile, this);
        // Its result serves the preview and the fit check until the next choice.
        m_jobAnalysis->setAutoDelete(false);
    }
    Q_EMIT jobAnalysisChanged();
}

void AppModel::prepareUpload() {
    if (!m_selectedMachine || !m_selectedFile || m_isUploading)
        return;
    setShowConfirmation(true);
}

std::optional<QString> AppModel::remotePath() const {
    if (!m_selectedFile)
        return std::nullopt;
    return QLatin1String(machineJobFolder) + m_selectedFile->fileName();
}

bool AppModel::isRecentDuplicate() const {
    if (!m_selectedMachine || !m_selectedFile)
        return false;
    if (isQueueUpload()) {
        const QList<PlannedUpload> planned = plannedUploads();
        return std::any_of(planned.cbegin(), planned.cend(),
                           [](const PlannedUpload& pair) { return pair.isRecentDuplicate; });
    }
    return UploadWorkflow::isRecentDuplicate(*m_persistence, *m_selectedMachine, *m_selectedFile,
                                             m_now());
}

bool AppModel::isQueueUpload() const {
    return m_selectedFiles.size() > 1 || m_selectedMachines.size() > 1;
}

QList<PlannedUpload> AppModel::plannedUploads() const {
    // One read of the history for every pair: the review lists them all at once.
    const QList<UploadRecord> history = m_persistence->uploadRecords();
    const QDateTime now = m_now();
    QList<PlannedUpload> planned;
    for (const JobFile& file : m_selectedFiles) {
        for (const Machine& machine : m_selectedMachines)
            planned.append(
                {file, machine,
                 tarnwick::isRecentDuplicate(history, machine.id(), file.id(), file.size, now)});
    }
    return planned;
}

void AppModel::upload(bool duplicateConfirmed) {
    if (!m_selectedMachine || !m_selectedFile)
        return;
    if (isRecentDuplicate() && !duplicateConfirmed)
        return;
    if (isQueueUpload())
        return startQueue(duplicateConfirmed);
    m_queue->clear();
    const Machine machine = *m_selectedMachine;
    const JobFile file = *m_selectedFile;

    setShowConfirmation(false);
    setProgress(std::nullopt);
    setErrorMessage(std::nullopt);
    dismissNotice();
    setUploading(true);

    if (m_upload) {
        m_upload->disconnect(this);
        m_upload->deleteLater();
    }
    m_upload = new UploadWorkflow(file, machine, *m_persistence, m_makeUploader, this);
    m_upload->setClock(m_now);
    connect(m_upload, &UploadWorkflow::progress, this, &AppModel::setProgress);
    connect(m_upload, &UploadWorkflow::checking, this, [this](qint64 checked, qint64 total) {
        assign(m_checkingFraction, std::optional(double(checked) / double(total)),
               &AppModel::checkingFractionChanged);
    });
    connect(m_upload, &UploadWorkflow::ended, this,
            [this, machine, file](const UploadOutcome& outcome) {
                finishUpload(outcome, machine, file);
            });
    m_upload->start(duplicateConfirmed);
}

void AppModel::finishUpload(const UploadOutcome& outcome, const Machine& machine,
                            const JobFile& file) {
    switch (outcome.kind) {
    case UploadOutcome::Kind::Uploaded:
        break;
    case UploadOutcome::Kind::UploadedNotRecorded:
        // The file is on the machine whatever happens to the history; the user only learns that
        // the next duplicate warning may be missing.
        assign(m_notice, std::optional(outcome.notRecordedMessage()), &AppModel::noticeChanged);
        break;
    case UploadOutcome::Kind::Failed:
        failUpload(*outcome.error, file);
        break;
    case UploadOutcome::Kind::DuplicateRefused:
        // Another program sent the same file a moment ago: the sheet asks again.
        setShowConfirmation(true);
        break;
    }
    assign(m_checkingFraction, std::optional<double>(), &AppModel::checkingFractionChanged);
    m_upload->deleteLater();
    m_upload = nullptr;
    setUploading(false);
    Q_EMIT uploadEnded(outcome);
    if (outcome.kind == UploadOutcome::Kind::Failed)
        recheckAfter(*outcome.error, machine);
}

void AppModel::failUpload(const Error& error, const JobFile& file) {
    const TransferProgress cancelledValue{TransferProgress::Phase::Cancelled,
                                          m_progress ? m_progress->bytesSent : 0, file.size, 0};
    if (error.is<CancellationError>()) {
        setProgress(cancelledValue);
    } else {
        showFailure(error, error.description());
        if (error.isUploadError(UploadError::Kind::Cancelled))
            setProgress(cancelledValue);
    }
}

// A failed upload may be the first sign that the machine went away: the badge must not keep
// saying "Connected" beside the failure. The failure itself is what the user reads.
void AppModel::recheckAfter(const Error& error, const Machine& machine) {
    const bool reachabilityInDoubt = !error.is<CancellationError>() && !error.is<JobFileError>() &&
                                     !error.isUploadError(UploadError::Kind::Cancelled);
    if (reachabilityInDoubt && m_selectedMachine && m_selectedMachine->id() == machine.id())
        checkConnection(CheckFailure::Silent);
}

void AppModel::startQueue(bool duplicateConfirmed) {
    setShowConfirmation(false);
    setProgress(std::nullopt);
    setErrorMessage(std::nullopt);
    dismissNotice();
    setUploading(true);
    m_queue->start(m_selectedFiles, m_selectedMachines, duplicateConfirmed);
}

void AppModel::cancelUpload() {
    if (m_upload)
        m_upload->cancel();
    else
        m_queue->cancelAll();
}

void AppModel::insertMachine(qsizetype row, const Machine& machine) {
    m_machines.insert(row, machine);
    Q_EMIT machineInserted(int(row));
    Q_EMIT machinesChanged();
}

void AppModel::changeMachine(qsizetype row, const Machine& machine) {
    if (m_machines.at(row) == machine)
        return;
    m_machines[row] = machine;
    Q_EMIT machineChanged(int(row));
    Q_EMIT machinesChanged();
}

void AppModel::resetMachines(QList<Machine> machines) {
    if (m_machines == machines)
        return;
    m_machines = std::move(machines);
    Q_EMIT machinesReset();
    Q_EMIT machinesChanged();
}

void AppModel::setSelectedFiles(QList<JobFile> files) {
    assign(m_selectedFiles, std::move(files), &AppModel::selectedFilesChanged);
}

void AppModel::setSelectedMachines(QList<Machine> machines) {
    assign(m_selectedMachines, std::move(machines), &AppModel::selectedMachinesChanged);
}

void AppModel::setRecentFiles(QList<JobFile> files) {
    assign(m_recentFiles, std::move(files), &AppModel::recentFilesChanged);
}

void AppModel::setSelectedMachine(const std::optional<Machine>& machine) {
    const bool wasBusy = isSelectedMachineBusy();
    assign(m_selectedMachine, machine, &AppModel::selectedMachineChanged);
    if (isSelectedMachineBusy() != wasBusy)
        Q_EMIT isSelectedMachineBusyChanged();
}

void AppModel::setProgress(const std::optional<TransferProgress>& progress) {
    // Checking the file is over once the upload reports anything else.
    assign(m_checkingFraction, std::optional<double>(), &AppModel::checkingFractionChanged);
    assign(m_progress, progress, &AppModel::progressChanged);
}

void AppModel::setDiscovering(bool discovering) {
    assign(m_isDiscovering, discovering, &AppModel::isDiscoveringChanged);
}

void AppModel::setCheckingConnection(bool checking) {
    assign(m_isCheckingConnection, checking, &AppModel::isCheckingConnectionChanged);
}

void AppModel::setUploading(bool uploading) {
    assign(m_isUploading, uploading, &AppModel::isUploadingChanged);
}

QJsonObject AppModel::selectedMachineLimits() const {
    return m_selectedMachine ? m_persistence->machineLimits(m_selectedMachine->id())
                             : QJsonObject();
}

void AppModel::setSelectedMachineLimits(const QJsonObject& limits) {
    if (!m_selectedMachine)
        return;
    // All machines' limits are one document rewritten under the store's lock, which another
    // program may hold for seconds.
    auto* writing = new QFutureWatcher<std::optional<Error>>(this);
    connect(writing, &QFutureWatcherBase::finished, this, [this, writing] {
        writing->deleteLater();
        if (const std::optional<Error> error = writing->result())
            setErrorMessage(
                tr("The machine's limits could not be saved: %1").arg(error->description()));
        Q_EMIT machineLimitsChanged();
    });
    writing->setFuture(
        QtConcurrent::run(&AppPersistence::writers(),
                          [open = m_persistence->opener(), machine = m_selectedMachine->id(),
                           limits] { return open()->setMachineLimits(machine, limits); }));
}

} // namespace tarnwick
