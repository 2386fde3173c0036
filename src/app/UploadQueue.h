#pragma once

#include "app/UploadWorkflow.h"

#include <QList>
#include <QObject>
#include <QPointer>

#include <optional>

namespace tarnwick {

// One file for one machine in a queue of uploads, and how far it got.
struct QueuedUpload {
    enum class State {
        Waiting,
        Checking,
        Sending,
        Sent,
        // Sent, but the history could not keep its record: `error` says why.
        NotRecorded,
        Failed,
        Cancelled,
        // A recent duplicate that the user did not confirm; nothing was sent.
        DuplicateRefused
    };

    JobFile file;
    Machine machine;
    State state = State::Waiting;
    // The last value of the transfer while sending, and after it ended.
    std::optional<TransferProgress> progress = std::nullopt;
    // How much of the file was checked, 0 to 1, while checking.
    double checkedFraction = 0;
    std::optional<Error> error = std::nullopt;
    // Sent even when the same file went to the same machine in the last 24 hours.
    bool duplicateConfirmed = false;

    bool isRunning() const { return state == State::Checking || state == State::Sending; }
    bool hasEnded() const { return state != State::Waiting && !isRunning(); }
    bool isSent() const { return state == State::Sent || state == State::NotRecorded; }
    // A refused duplicate is sent when the user retries it: the retry is the confirmation.
    bool canRetry() const {
        return state == State::Failed || state == State::Cancelled ||
               state == State::DuplicateRefused;
    }
    // What became of the pair, in words: "Waiting", "Sent", or the failure's description.
    QString stateText() const;
};

// Every chosen file for every chosen machine: one file at a time per machine, in the order of the
// files, and the machines in parallel. A pair that fails or is cancelled does not stop the
// others, and each pair keeps its row for its whole life, so that a view can follow it by row.
class UploadQueue : public QObject {
    Q_OBJECT

public:
    UploadQueue(AppPersistence& history, UploaderFactory makeUploader, QObject* parent = nullptr);

    void setClock(UploadWorkflow::Clock clock) { m_now = std::move(clock); }

    // Files first, then machines: row i is file i / machineCount for machine i % machineCount.
    const QList<QueuedUpload>& pairs() const { return m_pairs; }
    bool isRunning() const;

    // Replaces an ended queue with every file for every machine and starts it; a recent
    // duplicate is refused, pair by pair, unless `duplicateConfirmed`. Does nothing while the
    // queue runs.
    void start(const QList<JobFile>& files, const QList<Machine>& machines,
               bool duplicateConfirmed);
    // Forgets an ended queue, such as when a single upload takes its place.
    void clear();
    // A waiting pair is dropped at once; a running one tells its machine that the upload stops.
    void cancel(qsizetype row);
    void cancelAll();
    // Sends a failed, cancelled or refused pair again, after the pairs still waiting for its
    // machine.
    void retry(qsizetype row);

    // How the queue ended, such as "5 of 6 sent; 1 failed: Bench Mill: …".
    QString summary() const;

Q_SIGNALS:
    void pairsReset();
    void pairChanged(qsizetype row);
    void runningChanged();
    // The last running pair ended.
    void ended();

private:
    void startNextPairs();
    void startPair(qsizetype row);
    void endPair(qsizetype row, const UploadOutcome& outcome);
    void changePair(qsizetype row);
    void noteRunning();

    AppPersistence& m_history;
    const UploaderFactory m_makeUploader;
    UploadWorkflow::Clock m_now;
    QList<QueuedUpload> m_pairs;
    QList<QPointer<UploadWorkflow>> m_workflows;
    // Rows that wait for their machine, in the order they are to be sent.
    QList<qsizetype> m_waiting;
    bool m_wasRunning = false;
};

} // namespace tarnwick
