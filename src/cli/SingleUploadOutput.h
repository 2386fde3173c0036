#pragma once

#include "cli/ProgressBar.h"
#include "cli/UploadOutput.h"

#include <optional>

namespace tarnwick::cli {

// One file for one machine: a progress bar on a terminal, the closing line, and a failure on
// standard error; with --json a line per progress value and a last line for a failure.
class SingleUploadOutput : public UploadOutput {
public:
    SingleUploadOutput(const UploadPair& pair, bool json);

    void checking(qsizetype index, qint64 bytesChecked, qint64 totalBytes) override;
    void progress(qsizetype index, const TransferProgress& progress) override;
    void ended(qsizetype index, const PairOutcome& outcome) override;
    void finished() override {}

private:
    const UploadPair& m_pair;
    const bool m_json;
    std::optional<ProgressBar> m_bar;
};

} // namespace tarnwick::cli
