#include "cli/UploadBatch.h"

namespace tarnwick::cli {

UploadBatch::UploadBatch(const QList<JobFile>& files, const QList<UploadPair>& machines, bool again,
                         AppPersistence& persistence, QObject* parent)
    : QObject(parent)
    , m_machineCount(machines.size()) {
    for (const JobFile& file : files) {
        for (UploadPair pair : machines) {
            pair.file = file;
            const qsizetype index = m_pairs.size();
            auto* upload = new PairUpload(std::move(pair), again, persistence, this);
            connect(upload, &PairUpload::checking, this, [this, index](qint64 done, qint64 all) {
                Q_EMIT pairChecking(index, done, all);
            });
            connect(upload, &PairUpload::progress, this,
                    [this, index](const TransferProgress& value) {
                        Q_EMIT pairProgress(index, value);
                    });
            connect(upload, &PairUpload::ended, this,
                    [this, index](const PairOutcome& outcome) { pairDone(index, outcome); });
            m_pairs.append(upload);
        }
    }
    m_outcomes.resize(m_pairs.size());
}

void UploadBatch::start() {
    if (m_pairs.isEmpty()) {
        Q_EMIT finished();
        return;
    }
    for (qsizetype machine = 0; machine < m_machineCount && !m_cancelling; ++machine)
        m_pairs[machine]->start();
}

void UploadBatch::cancelAll() {
    m_cancelling = true;
    for (PairUpload* pair : std::as_const(m_pairs))
        pair->cancel();
}

ExitCode UploadBatch::exitCode() const {
    for (const PairOutcome& outcome : m_outcomes) {
        if (outcome.code != Success)
            return outcome.code;
    }
    return Success;
}

void UploadBatch::pairDone(qsizetype index, const PairOutcome& outcome) {
    m_outcomes[index] = outcome;
    ++m_ended;
    Q_EMIT pairEnded(index, outcome);
    // The machine's next file; a pair that ends at once comes back here before this returns.
    const qsizetype next = index + m_machineCount;
    if (!m_cancelling && next < m_pairs.size())
        return m_pairs[next]->start();
    if (m_ended == m_pairs.size())
        Q_EMIT finished();
}

} // namespace tarnwick::cli
