#pragma once

#include "cli/PairUpload.h"

#include <QList>

namespace tarnwick::cli {

// Every file to every machine: one upload at a time per machine, in the order of the files, and
// the machines in parallel. A failed pair does not stop the others.
class UploadBatch : public QObject {
    Q_OBJECT

public:
    UploadBatch(const QList<JobFile>& files, const QList<UploadPair>& machines, bool again,
                AppPersistence& persistence, QObject* parent = nullptr);

    // Files first, then machines: pair i is file i / machineCount for machine i % machineCount.
    const QList<PairUpload*>& pairs() const { return m_pairs; }
    const QList<PairOutcome>& outcomes() const { return m_outcomes; }

    void start();
    // Cancels every running pair (each machine is told) and every pair not started yet.
    void cancelAll();

    // 0 when every pair succeeded, otherwise the class of the first failure in pair order.
    ExitCode exitCode() const;

Q_SIGNALS:
    void pairChecking(qsizetype index, qint64 bytesChecked, qint64 totalBytes);
    void pairProgress(qsizetype index, const tarnwick::TransferProgress& progress);
    void pairEnded(qsizetype index, const tarnwick::cli::PairOutcome& outcome);
    void finished();

private:
    void pairDone(qsizetype index, const PairOutcome& outcome);

    const qsizetype m_machineCount;
    QList<PairUpload*> m_pairs;
    QList<PairOutcome> m_outcomes;
    qsizetype m_ended = 0;
    bool m_cancelling = false;
};

} // namespace tarnwick::cli
