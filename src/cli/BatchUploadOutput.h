#pragma once

#include "cli/UploadOutput.h"

#include <QCoreApplication>

namespace tarnwick::cli {

// Several pairs: on a terminal one line per pair redrawn in place, otherwise a line per upload
// as it ends; then the failures and a summary. With --json every line names its pair and a last
// line sums up.
class BatchUploadOutput : public UploadOutput {
    Q_DECLARE_TR_FUNCTIONS(BatchUploadOutput)

public:
    BatchUploadOutput(const UploadBatch& batch, bool json);

    void checking(qsizetype index, qint64 bytesChecked, qint64 totalBytes) override;
    void progress(qsizetype index, const TransferProgress& progress) override;
    void ended(qsizetype index, const PairOutcome& outcome) override;
    void finished() override;

private:
    // The object with the keys that name pair `index`.
    QJsonObject withPair(qsizetype index, QJsonObject object) const;
    QString label(qsizetype index) const;
    void redraw(qsizetype index, const QString& state);
    void printJsonSummary() const;
    void printTextSummary() const;

    const UploadBatch& m_batch;
    const bool m_json;
    const bool m_live;
    const int m_columns;
};

} // namespace tarnwick::cli
