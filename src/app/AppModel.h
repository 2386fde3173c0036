#pragma once

#include "app/AppPersistence.h"
#include "app/FolderFollower.h"
#include "app/Services.h"
#include "app/UploadQueue.h"
#include "app/UploadWorkflow.h"

#include <QCollator>
#include <QDateTime>
#include <QObject>
#include <QPointer>
#include <QSet>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace tarnwick {

// One file for one machine as the review shows it before anything is sent.
struct PlannedUpload {
    JobFile file;
    Machine machine;
    bool isRecentDuplicate = false;
};

// The one object through which every user action enters the program's logic. It lives on the
// main thread; every change of its observable state emits the matching *Changed() signal there.
class AppModel : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::seconds scanDuration{3};
    static constexpr int maximumRecentFiles = 8;
    static constexpr qint64 duplicateWindowSeconds = duplicateUploadWindowSeconds;
    // A scan lists no more machines than this: one faulty or hostile device announcing
    // thousands of addresses must not swamp the list, the window or the memory.
    static constexpr int maximumListedMachines = 256;

    using Clock = std::function<QDateTime()>;

    // Restores the selected machine; the recent files that still exist follow soon after, once
    // each has been looked at off the main thread.
    AppModel(std::unique_ptr<MachineDiscovering> discoverer,
             std::unique_ptr<MachineConnecting> connector, UploaderFactory makeUploader,
             std::unique_ptr<AppPersistence> persistence, QObject* parent = nullptr);
    ~AppModel() override;

    // Observable state.
    const QList<Machine>& machines() const { return m_machines; }
    const std::optional<Machine>& selectedMachine() const { return m_selectedMachine; }
    const std::optional<JobFile>& selectedFile() const { return m_selectedFile; }
    const QList<JobFile>& recentFiles() const { return m_recentFiles; }
    const std::optional<TransferProgress>& progress() const { return m_progress; }
    bool isDiscovering() const { return m_isDiscovering; }
    bool isCheckingConnection() const { return m_isCheckingConnection; }
    bool isUploading() const { return m_isUploading; }
    const std::optional<QString>& errorMessage() const { return m_errorMessage; }
    // The failure behind errorMessage, so that a view can tell its kind without reading the text;
    // none while there is no message or the message is a view's own.
    const std::optional<Error>& lastFailure() const { return m_lastFailure; }
    bool showConfirmation() const { return m_showConfirmation; }
    // How much of the job file was checked before sending, 0 to 1, while that takes a while.
    std::optional<double> checkingFraction() const { return m_checkingFraction; }
    // A problem that does not stop the user, such as an upload history that could not be saved.
    const std::optional<QString>& notice() const { return m_notice; }
    // The running or last scan heard more machines than the list takes.
    bool isMachineListFull() const { return m_isMachineListFull; }
    // The selected machine's last announcement said that it is busy. A connection check
    // replaces the busy status with what it found, so the flag is kept beside the status.
    bool isSelectedMachineBusy() const;
    // The listed machine's last announcement said that it is busy.
    bool isAnnouncedBusy(const QString& machineID) const {
        return m_announcedBusy.contains(machineID);
    }

    // The views write these two directly: a file's validation message or the alert's dismissal,
    // and the sheet's dismissal. A message from a view has no lastFailure.
    void setErrorMessage(const std::optional<QString>& message);
    void setShowConfirmation(bool show);
    // The user has read the notice; the next upload clears it too.
    void dismissNotice();

    // Workflows.
    void discover();
    void selectMachine(const std::optional<Machine>& machine);
    // Checks again that the selected machine answers, such as a selection restored from the
    // store whose status may be long out of date.
    void checkSelectedMachine();
    // Fails with DiscoveryPacketError::InvalidAddress and changes nothing when the address is
    // not canonical dotted decimal or the port is 0.
    std::optional<Error> addManualMachine(const QString& ipAddress, quint16 port);
    void chooseFile(const JobFile& file);

    // Several files and machines. Every chosen file goes to every selected machine; the first
    // of each is selectedFile and selectedMachine, so that one of each is the single upload.
    const QList<JobFile>& selectedFiles() const { return m_selectedFiles; }
    const QList<Machine>& selectedMachines() const { return m_selectedMachines; }
    // Adds files after those chosen (one already chosen is not added twice), each becoming a
    // recent file; the first added is shown.
    void addFiles(const QList<JobFile>& files);
    void removeFile(qsizetype index);
    // Makes a chosen file the one the preview shows; it stays where it is in the list.
    void showFile(qsizetype index);
    // The first machine becomes selectedMachine as selectMachine() does; each other machine's
    // connection is checked too, its failure told by its status alone.
    void selectMachines(const QList<Machine>& machines);
    // More than one file or more than one machine: the upload runs as a queue.
    bool isQueueUpload() const;
    // Every pair the review would send, files first, then machines.
    QList<PlannedUpload> plannedUploads() const;
    UploadQueue& uploadQueue() { return *m_queue; }
    void prepareUpload();
    bool isRecentDuplicate() const;
    std::optional<QString> remotePath() const;
    void upload(bool duplicateConfirmed);
    void cancelUpload();

    // The preview's reader of job files; without one no file is analysed.
    void setJobAnalyser(std::unique_ptr<JobAnalysing> analyser);
    // The analysis of the selected file, running or ended, with its result once it has one. A
    // new choice replaces (and so ends) the previous one.
    JobAnalysis* jobAnalysis() const { return m_jobAnalysis; }

    // What the user entered of the selected machine's limits, as the fit check reads them; empty
    // without either. A failure to keep them is shown as the error message.
    QJsonObject selectedMachineLimits() const;
    void setSelectedMachineLimits(const QJsonObject& limits);

    AppPersistence& persistence() { return *m_persistence; }
    // Each job file that arrives complete in the followed folder becomes the chosen file.
    FolderFollower& folderFollower() { return *m_folderFollower; }
    // The time that upload records and the duplicate window are measured with.
    void setClock(Clock clock);

Q_SIGNALS:
    void machinesChanged();
    // The rows of machines() that a change touched, each emitted just before machinesChanged():
    // a machine inserted at `row`, the machine at `row` changed in place (its id stays), or the
    // whole list replaced.
    void machineInserted(int row);
    void machineChanged(int row);
    void machinesReset();
    void selectedMachineChanged();
    void selectedFileChanged();
    void recentFilesChanged();
    void selectedFilesChanged();
    void selectedMachinesChanged();
    void progressChanged();
    void isDiscoveringChanged();
    void isCheckingConnectionChanged();
    void isUploadingChanged();
    void errorMessageChanged();
    void lastFailureChanged();
    void showConfirmationChanged();
    void checkingFractionChanged();
    void noticeChanged();
    void isMachineListFullChanged();
    void isSelectedMachineBusyChanged();
    void jobAnalysisChanged();
    // How the upload that isUploading followed ended, as it ends.
    void uploadEnded(const tarnwick::UploadOutcome& outcome);
    void machineLimitsChanged();

private:
    void restoreRecentFiles();
    enum class CheckFailure {
        Reported,
        Silent
    };
    void checkConnection(CheckFailure failure = CheckFailure::Reported);
    void checkConnection(const Machine& machine, CheckFailure failure);
    void startQueue(bool duplicateConfirmed);
    void rememberRecentFile(const JobFile& file);
    void setSelectedFiles(QList<JobFile> files);
    void setSelectedMachines(QList<Machine> machines);
    void keepListedSelection();
    void updateStatus(Machine::ConnectionStatus status, const QString& machineID);
    void mergeDiscovered(const Machine& machine);
    void noteAnnouncedBusy(const Machine& machine);
    void finishUpload(const UploadOutcome& outcome, const Machine& machine, const JobFile& file);
    void failUpload(const Error& error, const JobFile& file);
    void recheckAfter(const Error& error, const Machine& machine);
    void showFailure(const Error& failure, const QString& message);
    void analyseSelectedFile();

    template <typename T>
    void assign(T& field, T value, void (AppModel::*changed)());
    void insertMachine(qsizetype row, const Machine& machine);
    void changeMachine(qsizetype row, const Machine& machine);
    void resetMachines(QList<Machine> machines);
    void setRecentFiles(QList<JobFile> files);
    void setSelectedMachine(const std::optional<Machine>& machine);
    void setProgress(const std::optional<TransferProgress>& progress);
    void setDiscovering(bool discovering);
    void setCheckingConnection(bool checking);
    void setUploading(bool uploading);

    std::unique_ptr<MachineDiscovering> m_discoverer;
    std::unique_ptr<MachineConnecting> m_connector;
    UploaderFactory m_makeUploader;
    std::unique_ptr<AppPersistence> m_persistence;
    FolderFollower* m_folderFollower = nullptr;
    Clock m_now;

    QList<Machine> m_machines;
    std::optional<Machine> m_selectedMachine;
    std::optional<JobFile> m_selectedFile;
    QList<JobFile> m_selectedFiles;
    QList<Machine> m_selectedMachines;
    UploadQueue* m_queue = nullptr;
    QList<JobFile> m_recentFiles;
    std::optional<TransferProgress> m_progress;
    bool m_isDiscovering = false;
    bool m_isCheckingConnection = false;
    bool m_isUploading = false;
    std::optional<QString> m_errorMessage;
    std::optional<Error> m_lastFailure;
    bool m_showConfirmation = false;
    std::optional<double> m_checkingFraction;
    std::optional<QString> m_notice;
    bool m_isMachineListFull = false;
    // The listed machines whose last announcement said busy, by id.
    QSet<QString> m_announcedBusy;
    // Whether m_machines is in name order, so that a new machine can be inserted in place
    // instead of sorting the whole list again.
    bool m_machinesSorted = true;
    QCollator m_nameOrder;

    QPointer<MachineScan> m_scan;
    // Whether the running scan has heard the selected machine.
    bool m_selectionHeard = false;
    QPointer<UploadWorkflow> m_upload;
    std::unique_ptr<JobAnalysing> m_jobAnalyser;
    QPointer<JobAnalysis> m_jobAnalysis;
};

} // namespace tarnwick
