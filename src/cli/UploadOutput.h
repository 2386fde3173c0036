#pragma once

#include "cli/UploadBatch.h"

#include <memory>

namespace tarnwick::cli {

// What a person or a script reads of a batch of uploads, as it runs.
class UploadOutput {
public:
    virtual ~UploadOutput() = default;

    // One file for one machine reads as a single upload always has; several pairs get a line
    // each (in JSON, keys that name the pair) and a summary.
    static std::unique_ptr<UploadOutput> create(const UploadBatch& batch, bool json);

    virtual void checking(qsizetype index, qint64 bytesChecked, qint64 totalBytes) = 0;
    virtual void progress(qsizetype index, const TransferProgress& progress) = 0;
    virtual void ended(qsizetype index, const PairOutcome& outcome) = 0;
    virtual void finished() = 0;
};

// A failure before any pair started (bad usage, an unusable file, an unknown machine), or the
// failure of a single upload with its advice beneath it.
void reportFailure(const QString& message, ExitCode code, bool json, const QString& advice = {});

// The line a successful upload leaves: where the file went.
QString uploadedLine(const UploadPair& pair);

QJsonObject toJson(const TransferProgress& progress);
QJsonObject checkingToJson(qint64 bytesChecked, qint64 totalBytes);

} // namespace tarnwick::cli
