#pragma once

#include "app/UploadWorkflow.h"
#include "cli/ExitCode.h"

#include <QObject>

#include <optional>

namespace tarnwick::cli {

// One file for one machine.
struct UploadPair {
    JobFile file;
    Machine machine;
    // Why the machine must not be sent to (it announced itself busy); nothing is sent then.
    std::optional<QString> skipReason;
};

// Every field has a default, so that an outcome names only what it has.
struct PairOutcome {
    ExitCode code = Success;
    // The failure as the user reads it; empty on success.
    QString message{};
    // The upload went through but its record could not be kept.
    std::optional<QString> warning{};
    // Beneath a failure: what happened and what to try, in plain words; may be empty.
    QString advice{};
};

// One pair as the command-line tool runs it: the upload workflow, a busy machine skipped, and the
// outcome told as an exit class. Ends exactly once with ended(), also when cancelled before it
// started.
class PairUpload : public QObject {
    Q_OBJECT

public:
    PairUpload(UploadPair pair, bool again, AppPersistence& persistence, QObject* parent);

    const UploadPair& pair() const { return m_pair; }

    void start();
    // Before start() the pair ends as cancelled without a word to the machine.
    void cancel();

    static QString duplicateMessage();

Q_SIGNALS:
    void checking(qint64 bytesChecked, qint64 totalBytes);
    // The upload's progress values, but none that says "uploading" with no byte taken yet.
    void progress(const tarnwick::TransferProgress& progress);
    void ended(const tarnwick::cli::PairOutcome& outcome);

private:
    void end(const UploadOutcome& outcome);

    const UploadPair m_pair;
    const bool m_again;
    UploadWorkflow* const m_workflow;
    UploadReach m_reach;
    bool m_ended = false;
};

} // namespace tarnwick::cli
