#include "app/AppModel.h"

#include <QCollator>
#include <QFileInfo>

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
    m_selectedMachine = m_persistence->selectedMachine();
    const QList<JobFile> stored = m_persistence->recentFiles();
    std::copy_if(stored.begin(), stored.end(), std::back_inserter(m_recentFiles),
                 [](const JobFile& file) { return QFileInfo::exists(file.id()); });
    if (m_selectedMachine)
        m_machines = {*m_selectedMachine};
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

void AppModel::setErrorMessage(const std::optional<QString>& message) {
    assign(m_errorMessage, message, &AppModel::errorMessageChanged);
}

void AppModel::setShowConfirmation(bool show) {
    assign(m_showConfirmation, show, &AppModel::showConfirmationChanged);
}

void AppModel::discover() {
    if (m_scan) {
        m_scan->disconnect(this);
        m_scan->deleteLater();
    }
    setDiscovering(true);
    setErrorMessage(std::nullopt);
    setMachines(m_selectedMachine ? QList<Machine>{*m_selectedMachine} : QList<Machine>{});

    MachineScan* scan = m_discoverer->discover(scanDuration, this);
    m_scan = scan;
    connect(scan, &MachineScan::machineFound, this, &AppModel::mergeDiscovered);
    connect(scan, &Operation::finished, this, [this, scan] {
        scan->deleteLater();
        setDiscovering(false);
    });
    connect(scan, &Operation::failed, this, [this, scan](const Error& error) {
        scan->deleteLater();
        if (!error.is<CancellationError>())
            setErrorMessage(QStringLiteral("Discovery failed: ") + error.description());
        setDiscovering(false);
    });
}

void AppModel::mergeDiscovered(const Machine& machine) {
    QList<Machine> machines = m_machines;
    const auto existing = std::find_if(machines.begin(), machines.end(),
                                       [&](const Machine& m) { return m.id() == machine.id(); });
    if (existing != machines.end()) {
        *existing = machine;
    } else {
        machines.append(machine);
        QCollator collator;
        collator.setCaseSensitivity(Qt::CaseInsensitive);
        std::stable_sort(machines.begin(), machines.end(), [&](const Machine& a, const Machine& b) {
            return collator.compare(a.name, b.name) < 0;
        });
    }
    setMachines(std::move(machines));
}

void AppModel::selectMachine(const std::optional<Machine>& machine) {
    if (!machine)
        return;
    setSelectedMachine(machine);
    m_persistence->setSelectedMachine(m_selectedMachine);
    checkConnection();
}

void AppModel::checkConnection() {
    if (!m_selectedMachine)
        return;
    const Machine machine = *m_selectedMachine;
    setCheckingConnection(true);
    updateStatus(Machine::ConnectionStatus::Connecting, machine.id());

    // Checks are not kept: several may run side by side, and the first to end clears the flag.
    ConnectionCheck* check = m_connector->checkConnection(machine, this);
    connect(check, &Operation::finished, this, [this, check, id = machine.id()] {
        check->deleteLater();
        updateStatus(Machine::ConnectionStatus::Connected, id);
        setCheckingConnection(false);
    });
    connect(check, &Operation::failed, this, [this, check, id = machine.id()](const Error& error) {
        check->deleteLater();
        updateStatus(Machine::ConnectionStatus::Unavailable, id);
        setErrorMessage(QStringLiteral("Connection check failed: ") + error.description());
        setCheckingConnection(false);
    });
}

void AppModel::updateStatus(Machine::ConnectionStatus status, const QString& machineID) {
    QList<Machine> machines = m_machines;
    const auto entry = std::find_if(machines.begin(), machines.end(),
                                    [&](const Machine& m) { return m.id() == machineID; });
    if (entry == machines.end())
        return;
    entry->status = status;
    const Machine updated = *entry;
    setMachines(std::move(machines));
    if (m_selectedMachine && m_selectedMachine->id() == machineID) {
        setSelectedMachine(updated);
        m_persistence->setSelectedMachine(m_selectedMachine);
    }
}

std::optional<Error> AppModel::addManualMachine(const QString& ipAddress, quint16 port) {
    if (!isCanonicalIPv4(ipAddress) || port == 0)
        return Error(DiscoveryPacketError::InvalidAddress);

    const Machine machine{QStringLiteral("Manual machine"), std::nullopt, ipAddress, port,
                          Machine::ConnectionStatus::Discovered};
    const bool listed = std::any_of(m_machines.begin(), m_machines.end(),
                                    [&](const Machine& m) { return m.id() == machine.id(); });
    if (!listed)
        setMachines(m_machines + QList<Machine>{machine});
    setSelectedMachine(machine);
    m_persistence->setSelectedMachine(m_selectedMachine);
    checkConnection();
    return std::nullopt;
}

void AppModel::chooseFile(const JobFile& file) {
    m_selectedFile = file;
    Q_EMIT selectedFileChanged();

    QList<JobFile> recent = m_recentFiles;
    recent.removeIf([&](const JobFile& f) { return f.url == file.url; });
    recent.prepend(file);
    if (recent.size() > maximumRecentFiles)
        recent.resize(maximumRecentFiles);
    m_recentFiles = recent;
    Q_EMIT recentFilesChanged();
    m_persistence->setRecentFiles(m_recentFiles);
}

void AppModel::prepareUpload() {
    if (!m_selectedMachine || !m_selectedFile || m_isUploading)
        return;
    setShowConfirmation(true);
}

std::optional<QString> AppModel::remotePath() const {
    if (!m_selectedFile)
        return std::nullopt;
    return remoteFolder + m_selectedFile->fileName();
}

bool AppModel::isRecentDuplicate() const {
    if (!m_selectedMachine || !m_selectedFile)
        return false;
    return tarnwick::isRecentDuplicate(m_persistence->uploadRecords(), m_selectedMachine->id(),
                                       m_selectedFile->id(), m_selectedFile->size, m_now());
}

void AppModel::upload(bool duplicateConfirmed) {
    if (!m_selectedMachine || !m_selectedFile)
        return;
    if (isRecentDuplicate() && !duplicateConfirmed)
        return;
    const Machine machine = *m_selectedMachine;
    const JobFile file = *m_selectedFile;

    setShowConfirmation(false);
    setProgress(std::nullopt);
    setErrorMessage(std::nullopt);
    setUploading(true);

    if (m_uploader) {
        m_uploader->disconnect(this);
        m_uploader->deleteLater();
    }
    FileUploading* uploader = m_makeUploader().release();
    uploader->setParent(this);
    m_uploader = uploader;
    connect(uploader, &FileUploading::progress, this, &AppModel::setProgress);
    connect(uploader, &FileUploading::checking, this, [this](qint64 checked, qint64 total) {
        assign(m_checkingFraction, std::optional(double(checked) / double(total)),
               &AppModel::checkingFractionChanged);
    });
    connect(uploader, &Operation::finished, this,
            [this, machine, file] { finishUpload(machine, file); });
    connect(uploader, &Operation::failed, this,
            [this, file](const Error& error) { failUpload(error, file); });
    uploader->upload(file, machine);
}

void AppModel::finishUpload(const Machine& machine, const JobFile& file) {
    m_persistence->recordUpload(UploadRecord{machine.id(), file.id(), file.size, m_now()});
    endUpload();
}

void AppModel::failUpload(const Error& error, const JobFile& file) {
    const TransferProgress cancelledValue{TransferProgress::Phase::Cancelled,
                                          m_progress ? m_progress->bytesSent : 0, file.size, 0};
    if (error.is<CancellationError>()) {
        setProgress(cancelledValue);
    } else {
        setErrorMessage(error.description());
        if (error.isUploadError(UploadError::Kind::Cancelled))
            setProgress(cancelledValue);
    }
    endUpload();
}

void AppModel::endUpload() {
    assign(m_checkingFraction, std::optional<double>(), &AppModel::checkingFractionChanged);
    setUploading(false);
    if (m_uploader) {
        m_uploader->disconnect(this);
        m_uploader->deleteLater();
        m_uploader = nullptr;
    }
}

void AppModel::cancelUpload() {
    if (m_uploader)
        m_uploader->cancel();
}

void AppModel::setMachines(QList<Machine> machines) {
    assign(m_machines, std::move(machines), &AppModel::machinesChanged);
}

void AppModel::setSelectedMachine(const std::optional<Machine>& machine) {
    assign(m_selectedMachine, machine, &AppModel::selectedMachineChanged);
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

} // namespace tarnwick
