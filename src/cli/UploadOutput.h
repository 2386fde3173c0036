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

} // namespace tarnwick::cli
