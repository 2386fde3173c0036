#include "app/TransferProgress.h"

#include "app/RawValues.h"

#include <algorithm>

namespace tarnwick {

namespace {

constexpr RawValueTable<TransferProgress::Phase, 4> phaseRawValues{{
    std::pair{TransferProgress::Phase::Preparing, "preparing"},
    std::pair{TransferProgress::Phase::Uploading, "uploading"},
    std::pair{TransferProgress::Phase::Completed, "completed"},
    std::pair{TransferProgress::Phase::Cancelled, "cancelled"},
}};

} // namespace

double TransferProgress::fraction() const {
    if (totalBytes >= 1)
        return std::clamp(double(bytesSent) / double(totalBytes), 0.0, 1.0);
    return phase == Phase::Completed ? 1.0 : 0.0;
}

QString rawValue(TransferProgress::Phase phase) {
    return rawValueIn(phaseRawValues, phase);
}

std::optional<TransferProgress::Phase> phaseFromRawValue(const QString& text) {
    return valueForRawValueIn(phaseRawValues, text);
}

} // namespace tarnwick
